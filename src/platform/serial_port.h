// The serial line to the controller, as the link sees it: a small interface with a real
// implementation on QSerialPort (qt_serial_port.h, needs Qt SerialPort) and one on the
// built-in controller emulator (emulator_port.h, Qt Core only).
//
// Port names: the link asks for port n (COMn). That is /dev/ttyS(n-1) unless the
// environment variable BRANTOK_COMn names another device (/dev/ttyUSB0, /dev/pts/3) or
// holds the word "emulator" for the built-in emulator. A device without modem lines (a
// pseudo-terminal) has no DSR; it counts as DSR present only when BRANTOK_ASSUME_DSR=1.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

class SerialPort : public QObject {
    Q_OBJECT
public:
    // Line errors, numbered as the receive event numbers them. All are ignored by the link.
    enum : int16_t {
        comEvReceive = 2,
        comEventBreak = 1001, comEventFrame = 1004, comEventOverrun = 1006, comEventRxOver = 1008,
        comEventRxParity = 1009, comEventTxFull = 1010, comEventDCB = 1011,
    };

    // Opens at 57600 baud, 8N1, no handshaking. False with errorString() on failure.
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    virtual QString errorString() const = 0;
    // Queues the bytes for sending (they leave as the event loop runs).
    virtual void write(const QByteArray &bytes) = 0;
    // Bytes written and not yet handed to the line.
    virtual int64_t bytesToWrite() const = 0;
    // Everything received and not yet read.
    virtual QByteArray readAll() = 0;
    // The controller's reset and enable line.
    virtual void setRts(bool high) = 0;
    // The controller is connected and powered.
    virtual bool dsr() = 0;
    virtual QString deviceName() const = 0;

signals:
    void received();              // bytes are waiting for readAll
    void lineError(int commEvent); // one of the comEvent numbers above
};

// Where COMn leads.
struct SerialDevice {
    int16_t portNumber = 1;
    QString path;            // device path; empty for the emulator
    bool emulator = false;
    bool assumeDsr = false;  // a line without modem lines counts as DSR present
};
SerialDevice ResolveSerialDevice(int16_t intPort);

// Why a device could not be opened, for the alarm after "Com Port n": a device the user has
// no right to (EACCES) gets the Linux remedy, the "dialout" group; any other failure keeps
// the driver's text and names the device.
QString SerialOpenFailureText(const QString &path, const QString &driverText);

// Makes the port for a device (not yet open). The program installs the QSerialPort one at
// start (InstallSerialDevices); without it a device port fails to open.
using SerialDeviceFactory = std::function<std::unique_ptr<SerialPort>(const SerialDevice &)>;
void SetSerialDeviceFactory(SerialDeviceFactory factory);
// Tests: every port the link asks for comes from here instead. Empty function: back to normal.
void SetSerialPortOverride(std::function<std::unique_ptr<SerialPort>(int16_t intPort)> factory);

// The port the link uses for COMn: the override, the built-in emulator, or the device.
std::unique_ptr<SerialPort> CreateSerialPort(int16_t intPort);
