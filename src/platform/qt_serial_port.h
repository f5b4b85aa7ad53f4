// The real serial line on QSerialPort: 57600 baud, 8 data bits, no parity, 1 stop bit, no
// handshaking (the reply characters are the only flow control).
//
// A line without modem lines (a pseudo-terminal: the RTS and DSR ioctls fail, Qt error 7)
// has no DSR. Only with BRANTOK_ASSUME_DSR=1 does it count as DSR present, and then the
// reset (RTS low, then high) is given as a flush of both directions, which the emulator
// program on the other end of a pseudo-terminal sees in packet mode. A missing cable on a
// real port reads as no DSR, whatever the option.
//
// A device that goes away while open (a USB adapter pulled; the emulator program ended on a
// pseudo-terminal) makes QSerialPort report a resource error, or read errors on every turn
// of the event loop while the dead descriptor stays open. The line closes the port at the
// resource error or at the third read or write error in a row, so nothing spins, and from
// then on it has no DSR: the link's own alarm takes over. Sends go nowhere. A real adapter
// is looked for again each time DSR is asked (the operator plugged it back and clicked Ok);
// a pseudo-terminal never comes back.
#pragma once

#include "platform/serial_port.h"

#include <QSerialPort>

class QtSerialLine : public SerialPort {
    Q_OBJECT
public:
    explicit QtSerialLine(const SerialDevice &device);

    bool open() override;
    void close() override;
    bool isOpen() const override { return m_port.isOpen(); }
    QString errorString() const override { return m_error; }
    void write(const QByteArray &bytes) override;
    // Nothing waits to go out on a device that has gone: a sender must not wait for it.
    int64_t bytesToWrite() const override { return m_lost || !m_port.isOpen() ? 0 : m_port.bytesToWrite(); }
    QByteArray readAll() override { return m_port.isOpen() ? m_port.readAll() : QByteArray(); }
    void setRts(bool high) override;
    bool dsr() override;
    QString deviceName() const override { return m_device.path; }
    // The line has no modem lines (known after the first try to use them).
    bool noModemLines() const { return m_noModemLines; }
    // The device went away while open, and has not been found again.
    bool deviceLost() const { return m_lost; }
    // Errors QSerialPort reported since the port was made (tests: a flood shows here).
    int errorsSeen() const { return m_errorsSeen; }

private:
    void modemLinesFailed();
    void portError(QSerialPort::SerialPortError error);

    SerialDevice m_device;
    QSerialPort m_port;
    QString m_error;
    bool m_noModemLines = false;
    bool m_rtsHigh = false;
    bool m_lost = false;
    int m_errorsSeen = 0;
    int m_failuresInRow = 0;   // read or write errors since bytes last came in
    static constexpr int kFailuresForLost = 3;
};

// Lets the link open real devices (call once at start, before SetupComms).
void InstallSerialDevices();
