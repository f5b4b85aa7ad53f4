#include "platform/qt_serial_port.h"

#include <QFileInfo>

QtSerialLine::QtSerialLine(const SerialDevice &device) : m_device(device)
{
    m_port.setPortName(device.path);
    connect(&m_port, &QSerialPort::readyRead, this, [this] {
        m_failuresInRow = 0;
        emit received();
    });
    // Line errors are not reported (a lost reply shows as the time-out). clearError() itself
    // signals NoError: ignore that too. Only a device that went away is acted on.
    connect(&m_port, &QSerialPort::errorOccurred, this, &QtSerialLine::portError);
}

void QtSerialLine::portError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError)
        return;
    ++m_errorsSeen;
    if (m_lost)
        return;
    // Gone for certain: a resource error. Gone as good as certain: reads or writes that keep
    // failing with nothing received in between (a pseudo-terminal whose other end was killed
    // reads as end of file, which QSerialPort reports as a read error on every turn of the
    // event loop). A single failure on a live line is left alone.
    if (error == QSerialPort::ReadError || error == QSerialPort::WriteError) {
        if (++m_failuresInRow < kFailuresForLost)
            return;
    } else if (error != QSerialPort::ResourceError) {
        return;
    }
    m_lost = true;
    // Closed on the next turn of the event loop, not inside QSerialPort's own notification:
    // until then its notifiers may fire once more, after that nothing is left to fire.
    QMetaObject::invokeMethod(
        this, [this] {
            if (m_lost && m_port.isOpen())
                m_port.close();
        },
        Qt::QueuedConnection);
}

bool QtSerialLine::open()
{
    m_error.clear();
    m_noModemLines = false;
    m_rtsHigh = false;
    m_port.setBaudRate(57600);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setParity(QSerialPort::NoParity);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    if (!m_port.open(QIODevice::ReadWrite)) {
        m_error = SerialOpenFailureText(m_device.path, m_port.errorString());
        m_port.clearError();
        return false;
    }
    // The settings are applied again once open (some drivers forget them on open).
    m_port.setBaudRate(57600);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    m_lost = false;
    m_failuresInRow = 0;
    return true;
}

void QtSerialLine::close()
{
    if (m_port.isOpen())
        m_port.close();
    m_rtsHigh = false;
}

void QtSerialLine::write(const QByteArray &bytes)
{
    if (!m_port.isOpen() || m_lost)
        return;
    m_port.write(bytes);
    // Hand the frame to the driver now rather than on the next turn of the event loop:
    // the controller is waiting for it.
    m_port.flush();
}

void QtSerialLine::modemLinesFailed()
{
    m_noModemLines = true;
    m_port.clearError();
}

void QtSerialLine::setRts(bool high)
{
    if (!m_port.isOpen())
        return;
    if (!m_noModemLines && !m_port.setRequestToSend(high)) {
        if (m_port.error() == QSerialPort::UnsupportedOperationError)
            modemLinesFailed();
        else
            m_port.clearError();
    }
    if (m_noModemLines && m_device.assumeDsr && high && !m_rtsHigh)
        m_port.clear(QSerialPort::AllDirections);   // the reset, as a pseudo-terminal can carry it
    m_rtsHigh = high;
}

bool QtSerialLine::dsr()
{
    if (m_lost) {
        // A real adapter plugged back in has its device again; open it afresh. A line without
        // modem lines is a pseudo-terminal whose other end has gone for good (its name may
        // already belong to someone else's terminal).
        if (m_noModemLines || !QFileInfo::exists(m_device.path))
            return false;
        if (m_port.isOpen())
            m_port.close();
        m_port.clearError();
        if (!open())
            return false;
    }
    if (!m_port.isOpen())
        return false;
    if (!m_noModemLines) {
        QSerialPort::PinoutSignals s = m_port.pinoutSignals();
        if (m_lost)
            return false;   // the question itself found the device gone
        if (m_port.error() == QSerialPort::UnsupportedOperationError)
            modemLinesFailed();
        else {
            if (m_port.error() != QSerialPort::NoError)
                m_port.clearError();
            return s.testFlag(QSerialPort::DataSetReadySignal);
        }
    }
    return m_device.assumeDsr;
}

void InstallSerialDevices()
{
    SetSerialDeviceFactory([](const SerialDevice &d) { return std::make_unique<QtSerialLine>(d); });
}
