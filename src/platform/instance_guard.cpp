#include "platform/instance_guard.h"

#include "platform/forms.h"

#include <QDir>
#include <QFile>
#include <QEventLoop>
#include <QTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QWidget>

#include <unistd.h>

namespace {
constexpr int kReachMs = 2000;   // how long a second copy waits for the first, ms
const QByteArray kRaise = "raise\n";
const QByteArray kDone = "ok\n";
} // namespace

void BringToFront(QWidget *w)
{
    if (!w)
        return;
    if (w->isMinimized())
        w->showNormal();
    w->raise();
    w->activateWindow();
}

InstanceGuard::InstanceGuard(const QString &folder) : m_folder(folder)
{
    if (m_folder.isEmpty()) {
        // The user's runtime folder; without one (a bare session), a private folder of the
        // user's own in the temporary folder.
        if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
            m_folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
        if (m_folder.isEmpty()) {
            m_folder = QDir::tempPath() + QStringLiteral("/brantok-") + QString::number(getuid());
            QDir().mkpath(m_folder);
            QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }
    onRaise = [] {
        QWidget *top = nullptr;
        for (QWidget *w : Forms())
            if (w->isVisible() || w->isMinimized())
                top = w->inherits("QMainWindow") ? w : (top ? top : w);
        BringToFront(top);
    };
}

InstanceGuard::~InstanceGuard() { release(); }

QString InstanceGuard::lockPath() const { return m_folder + QStringLiteral("/Brantok.lock"); }
QString InstanceGuard::socketPath() const { return m_folder + QStringLiteral("/Brantok.socket"); }

bool InstanceGuard::acquire()
{
    QDir().mkpath(m_folder);
    m_lock = std::make_unique<QLockFile>(lockPath());
    m_lock->setStaleLockTime(0);   // stale only when its process is gone
    if (!m_lock->tryLock(0)) {
        m_lock.reset();
        return false;
    }
    // A socket left by a copy that crashed would refuse our listen.
    QLocalServer::removeServer(socketPath());
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] { answer(); });
    m_server->listen(socketPath());
    return true;
}

void InstanceGuard::answer()
{
    while (QLocalSocket *s = m_server->nextPendingConnection()) {
        connect(s, &QLocalSocket::disconnected, s, &QObject::deleteLater);
        connect(s, &QLocalSocket::readyRead, this, [this, s] {
            if (!s->canReadLine())
                return;
            if (s->readLine() == kRaise) {
                ++m_requests;
                if (onRaise)
                    onRaise();
                s->write(kDone);
                s->flush();
            }
        });
    }
}

bool InstanceGuard::askFirstToRaise()
{
    // A local loop rather than the blocking waits: the second copy has nothing else to do,
    // and a test can hold both copies in one process.
    QLocalSocket s;
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    bool answered = false;
    connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(&s, &QLocalSocket::connected, &loop, [&] { s.write(kRaise); });
    connect(&s, &QLocalSocket::errorOccurred, &loop, &QEventLoop::quit);
    connect(&s, &QLocalSocket::readyRead, &loop, [&] {
        if (s.canReadLine()) {
            answered = s.readLine() == kDone;
            loop.quit();
        }
    });
    s.connectToServer(socketPath());
    limit.start(kReachMs);
    if (s.state() != QLocalSocket::UnconnectedState)
        loop.exec();
    return answered;
}

void InstanceGuard::release()
{
    if (m_server) {
        m_server->close();
        m_server.reset();
    }
    if (m_lock) {
        m_lock->unlock();
        m_lock.reset();
    }
}

InstanceGuard &TheInstanceGuard()
{
    static InstanceGuard *guard = new InstanceGuard();   // lives to the end of the process
    return *guard;
}
