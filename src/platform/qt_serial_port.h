// The real serial line on QSerialPort: 57600 baud, 8 data bits, no parity, 1 stop bit, no
// handshaking (the reply characters are the only flow control).
//
// A line without modem lines (a pseudo-terminal: the RTS and DSR ioctls fail, Qt error 7)
// has no DSR. Only with BRANTOK_ASSUME_DSR=1 does it count as DSR present, and then the
// reset (RTS low, then high) is given as a flush of both directions, which the emulator
// program on the other end of a pseudo-terminal sees in packet mode. A missing cable on a
// real port reads as no DSR, whatever the option.
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
    int64_t bytesToWrite() const override { return m_port.bytesToWrite(); }
    QByteArray readAll() override { return m_port.readAll(); }
    void setRts(bool high) override;
    bool dsr() override;
    QString deviceName() const override { return m_device.path; }
    // The line has no modem lines (known after the first try to use them).
    bool noModemLines() const { return m_noModemLines; }

private:
    void modemLinesFailed();

    SerialDevice m_device;
    QSerialPort m_port;
    QString m_error;
    bool m_noModemLines = false;
    bool m_rtsHigh = false;
};

// Lets the link open real devices (call once at start, before SetupComms).
void InstallSerialDevices();
