// The emulator program (build/brantok-emulator) on a pseudo-terminal, driven by its commands
// on standard input, and a link world's COM1 on the real QSerialPort and the real clock: for
// the tests that go through the real line.
#pragma once

#include "link/link_world.h"
#include "platform/qt_serial_port.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QString>

// The emulator program, and the status line it prints on request.
class EmulatorProcess {
public:
    EmulatorProcess()
    {
        m_proc.setProgram(QStringLiteral(BRANTOK_BINARY_DIR "/brantok-emulator"));
        m_proc.start();
        if (m_proc.waitForStarted(5000) && m_proc.waitForReadyRead(5000))
            path = QString::fromLocal8Bit(m_proc.readLine()).trimmed();
    }
    ~EmulatorProcess()
    {
        if (m_proc.state() == QProcess::NotRunning)
            return;
        m_proc.write("quit\n");
        if (!m_proc.waitForFinished(3000))
            m_proc.kill();
        m_proc.waitForFinished(3000);
    }
    // Ends the program at once (SIGKILL), as a pulled adapter ends the device.
    void kill()
    {
        m_proc.kill();
        m_proc.waitForFinished(3000);
    }
    void command(const char *line) { m_proc.write(line); m_proc.write("\n"); m_proc.waitForBytesWritten(1000); }
    // The value after `key` in a fresh status line.
    long long status(const char *key)
    {
        command("status");
        QByteArray line;
        QElapsedTimer t;
        t.start();
        while (!line.endsWith('\n') && t.elapsed() < 5000) {
            m_proc.waitForReadyRead(100);
            line += m_proc.readLine();
        }
        const QList<QByteArray> words = line.trimmed().split(' ');
        const qsizetype i = words.indexOf(key);
        return i >= 0 && i + 1 < words.size() ? words[i + 1].toLongLong() : -1;
    }
    QString path;

private:
    QProcess m_proc;
};


// The real line, keeping every frame the link handed to it.
class RecordingLine : public QtSerialLine {
public:
    using QtSerialLine::QtSerialLine;
    void write(const QByteArray &bytes) override
    {
        sent += bytes;
        QtSerialLine::write(bytes);
    }
    QByteArray sent;
};

// Makes a link world's COM1 `device` on the real clock. The alarm is answered "Work Offline",
// never waiting for a cable in a test, after `onAlarm` has seen it.
struct RealLine {
    RecordingLine *line = nullptr;

    RealLine(LinkWorld &w, const QString &device, bool assumeDsr, std::function<void()> onAlarm = {})
    {
        SetClock(nullptr);
        SetSerialPortOverride([this, device, assumeDsr](int16_t n) -> std::unique_ptr<SerialPort> {
            auto p = std::make_unique<RecordingLine>(SerialDevice{n, device, false, assumeDsr});
            line = p.get();
            return p;
        });
        w.onSkull = [onAlarm] {
            if (onAlarm)
                onAlarm();
            frmSkull.chkOffline = true;
        };
    }
};
