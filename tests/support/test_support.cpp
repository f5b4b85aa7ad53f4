#include "support/test_support.h"

#include "core/store.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

ScriptedBoxes::ScriptedBoxes()
{
    uiHooks().messageBox = [this](const QString &text, int32_t flags, const QString &title) -> int16_t {
        m_shown.push_back({text, flags, title});
        if (!m_answers.empty()) {
            int16_t a = m_answers.front();
            m_answers.pop_front();
            return a;
        }
        // The first button of each set: OK, OK, Abort, Yes, Yes, Retry.
        static const int16_t first[] = {1, 1, 3, 6, 6, 4};
        return (flags & 0x0F) < 6 ? first[flags & 0x0F] : int16_t{1};
    };
}

ScriptedBoxes::~ScriptedBoxes() { ResetUiHooks(); }

TrapRecorder::TrapRecorder() : m_boxes(std::make_unique<ScriptedBoxes>())
{
    uiHooks().endProcess = [this](int) {
        m_reports << (m_boxes->shown().empty() ? QString() : m_boxes->last().text);
        m_titles << (m_boxes->shown().empty() ? QString() : m_boxes->last().title);
        throw TrapEnded();
    };
}

TrapRecorder::~TrapRecorder() { ResetUiHooks(); }

TempStore::TempStore()
{
    m_path = m_dir.path() + QStringLiteral("/Brantok.conf");
    m_hadEnv = qEnvironmentVariableIsSet("BRANTOK_STORE");
    m_oldEnv = qgetenv("BRANTOK_STORE");
    qputenv("BRANTOK_STORE", m_path.toLocal8Bit());
}

TempStore::~TempStore()
{
    if (m_hadEnv)
        qputenv("BRANTOK_STORE", m_oldEnv);
    else
        qunsetenv("BRANTOK_STORE");
}

void TempStore::writeRaw(const QByteArray &ini) { WriteFile(m_path, ini); }

QByteArray TempStore::readRaw() const { return ReadFileBytes(m_path); }

QString WriteFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    f.write(bytes);
    return path;
}

QByteArray ReadFileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool PumpUntil(const std::function<bool()> &done, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}

QString TrapReport(const std::function<void()> &f)
{
    TrapRecorder trap;
    EXPECT_THROW(f(), TrapEnded);
    return trap.fired() ? trap.report() : QString();
}

QString ExpectedTrap(const char *module, const char *procedure, int number, const QString &description)
{
    return TrapReport(QString::fromLatin1(module), QString::fromLatin1(procedure), number, description);
}

NcToolRun RunBrantokNc(const QStringList &args, const QString &storePath)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("BRANTOK_STORE"), storePath);
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(BRANTOK_BINARY_DIR "/brantok-nc"), args);
    NcToolRun r;
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit)
        return r;
    r.exitCode = p.exitCode();
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

int StoreToolsFile(const QString &path)
{
    QFile tools(path);
    if (!tools.open(QIODevice::ReadOnly))
        return -1;
    int n = 0;
    for (const QByteArray &line : tools.readAll().split('\n'))
        if (!line.trimmed().isEmpty())
            RegistryValuePut(strToolValueName(++n), QString::fromLatin1(line.trimmed()));
    RegistryValuePut(QStringLiteral("ToolCount"), QString::number(n));
    return n;
}
