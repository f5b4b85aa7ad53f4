// The serial port with the controller emulator on the other end, in this process.
//
// On a FakeClock (tests) the emulator runs whenever the clock moves; on the real clock a
// 1 ms timer runs it. Bytes written stay in bytesToWrite() until the next run, as with a
// real port whose bytes leave when the event loop turns; the emulator then takes them at
// 57600 baud. Its answers arrive as `received`.
#pragma once

#include "platform/clock.h"
#include "platform/controller_emulator.h"
#include "platform/serial_port.h"

#include <QTimer>

class EmulatorPort : public SerialPort {
    Q_OBJECT
public:
    explicit EmulatorPort(Clock &clock);
    ~EmulatorPort() override;

    bool open() override;
    void close() override;
    bool isOpen() const override { return m_open; }
    QString errorString() const override { return {}; }
    void write(const QByteArray &bytes) override;
    int64_t bytesToWrite() const override { return m_pending.size(); }
    QByteArray readAll() override;
    void setRts(bool high) override;
    bool dsr() override { return m_controller.dsr(); }
    QString deviceName() const override { return QStringLiteral("emulator"); }

    ControllerEmulator &controller() { return m_controller; }
    // Hands over what was written, runs the emulator to the clock's time and delivers
    // its answers. Called by the clock or the timer; tests may call it too.
    void poll();
    // Every byte written, in order (what the controller was sent).
    const QByteArray &written() const { return m_written; }

private:
    Clock &m_clock;
    FakeClock *m_fake = nullptr;
    int m_listener = 0;
    QTimer m_timer;
    bool m_open = false;
    bool m_polling = false;
    ControllerEmulator m_controller;
    QByteArray m_pending;
    QByteArray m_received;
    QByteArray m_written;
};
