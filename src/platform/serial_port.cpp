#include "platform/serial_port.h"

#include "platform/emulator_port.h"

#include <cerrno>

#include <unistd.h>

namespace {

SerialDeviceFactory &deviceFactory()
{
    static SerialDeviceFactory f;
    return f;
}

std::function<std::unique_ptr<SerialPort>(int16_t)> &portOverride()
{
    static std::function<std::unique_ptr<SerialPort>(int16_t)> f;
    return f;
}

// A port for a device that this build can't open (no serial library installed).
class MissingPort : public SerialPort {
public:
    explicit MissingPort(QString path) : m_path(std::move(path)) {}
    bool open() override { return false; }
    void close() override {}
    bool isOpen() const override { return false; }
    QString errorString() const override { return QStringLiteral("No serial port support for ") + m_path; }
    void write(const QByteArray &) override {}
    int64_t bytesToWrite() const override { return 0; }
    QByteArray readAll() override { return {}; }
    void setRts(bool) override {}
    bool dsr() override { return false; }
    QString deviceName() const override { return m_path; }

private:
    QString m_path;
};

} // namespace

SerialDevice ResolveSerialDevice(int16_t intPort)
{
    SerialDevice d;
    d.portNumber = intPort;
    QByteArray env = qgetenv("BRANTOK_COM" + QByteArray::number(intPort)).trimmed();
    if (env == "emulator") {
        d.emulator = true;
    } else if (!env.isEmpty()) {
        d.path = QString::fromLocal8Bit(env);
    } else {
        // COM1 is the first port, /dev/ttyS0. Port 0 has no device of that name.
        d.path = QStringLiteral("/dev/ttyS") + QString::number(intPort - 1);
    }
    d.assumeDsr = qgetenv("BRANTOK_ASSUME_DSR").trimmed() == "1";
    return d;
}

QString SerialOpenFailureText(const QString &path, const QString &driverText)
{
    const QByteArray local = path.toLocal8Bit();
    if (!local.isEmpty() && ::access(local.constData(), R_OK | W_OK) != 0 && errno == EACCES)
        return QStringLiteral("Permission denied on ") + path +
               QStringLiteral(". Your user may not use this serial port: add it to the 'dialout' group "
                              "(sudo usermod -aG dialout $USER), then log out and back in.");
    return driverText + QStringLiteral(" (") + path + QStringLiteral(")");
}

void SetSerialDeviceFactory(SerialDeviceFactory factory) { deviceFactory() = std::move(factory); }

void SetSerialPortOverride(std::function<std::unique_ptr<SerialPort>(int16_t)> factory)
{
    portOverride() = std::move(factory);
}

std::unique_ptr<SerialPort> CreateSerialPort(int16_t intPort)
{
    if (portOverride())
        return portOverride()(intPort);
    SerialDevice d = ResolveSerialDevice(intPort);
    if (d.emulator)
        return std::make_unique<EmulatorPort>(appClock());
    if (deviceFactory())
        return deviceFactory()(d);
    return std::make_unique<MissingPort>(d.path);
}
