#include "platform/qt_serial_port.h"

QtSerialLine::QtSerialLine(const SerialDevice &device) : m_device(device)
{
    m_port.setPortName(device.path);
    connect(&m_port, &QSerialPort::readyRead, this, &SerialPort::received);
    // Line errors are not reported (a lost reply shows as the time-out). clearError() itself
    // signals NoError: ignore that too.
    connect(&m_port, &QSerialPort::errorOccurred, this, [](QSerialPort::SerialPortError) {});
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
    if (!m_port.isOpen())
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
    if (!m_port.isOpen())
        return false;
    if (!m_noModemLines) {
        QSerialPort::PinoutSignals s = m_port.pinoutSignals();
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
