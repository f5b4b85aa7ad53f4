#include "platform/emulator_port.h"

EmulatorPort::EmulatorPort(Clock &clock) : m_clock(clock), m_fake(dynamic_cast<FakeClock *>(&clock))
{
    m_timer.setInterval(1);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &EmulatorPort::poll);
    m_controller.advanceTo(m_clock.nsecs());
}

EmulatorPort::~EmulatorPort()
{
    if (m_fake && m_listener)
        m_fake->removeListener(m_listener);
}

bool EmulatorPort::open()
{
    if (m_open)
        return true;
    m_open = true;
    if (m_fake)
        m_listener = m_fake->addListener([this](int64_t) { poll(); });
    else
        m_timer.start();
    return true;
}

void EmulatorPort::close()
{
    if (!m_open)
        return;
    // Closing the port drops its modem lines: the controller is held in reset.
    m_controller.setRts(false, m_clock.nsecs());
    m_open = false;
    m_timer.stop();
    if (m_fake && m_listener) {
        m_fake->removeListener(m_listener);
        m_listener = 0;
    }
    m_pending.clear();
    m_received.clear();
}

void EmulatorPort::write(const QByteArray &bytes)
{
    if (!m_open)
        return;
    m_pending.append(bytes);
    m_written.append(bytes);
}

QByteArray EmulatorPort::readAll()
{
    QByteArray out;
    out.swap(m_received);
    return out;
}

void EmulatorPort::setRts(bool high)
{
    if (m_open)
        m_controller.setRts(high, m_clock.nsecs());
}

void EmulatorPort::poll()
{
    if (!m_open || m_polling)
        return;
    m_polling = true;   // the receive handler may pump and so come back here
    int64_t now = m_clock.nsecs();
    if (!m_pending.isEmpty()) {
        m_controller.receive(m_pending, now);
        m_pending.clear();
    }
    m_controller.advanceTo(now);
    QByteArray out = m_controller.takeOutput();
    m_polling = false;
    if (!out.isEmpty()) {
        m_received.append(out);
        emit received();
    }
}
