// The emulator program (build/brantok-emulator) on a pseudo-terminal, driven by its commands
// on standard input: for the tests that go through the real QSerialPort.
#pragma once

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
        for (int i = 0; i + 1 < words.size(); ++i)
            if (words[i] == key)
                return words[i + 1].toLongLong();
        return -1;
    }
    QString path;

private:
    QProcess m_proc;
};

