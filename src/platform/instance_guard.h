// One copy of the program at a time.
//
// The first copy holds a lock file in the user's runtime folder and listens on a local
// socket beside it. A second copy finds the lock taken, connects and asks the first to
// bring its window forward, then ends silently. Only when the first copy can't be
// reached (it hangs, or its socket is gone) does the second say why it stops.
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class InstanceGuard : public QObject {
    Q_OBJECT
public:
    // `folder`: where the lock and the socket live (empty: the user's runtime folder).
    explicit InstanceGuard(const QString &folder = QString());
    ~InstanceGuard() override;

    // True: this is the first copy; the lock is held and later copies are listened for.
    bool acquire();
    // In a second copy: asks the first to raise its window. False when it can't be reached
    // within 2 s.
    bool askFirstToRaise();
    // Gives up the lock and stops listening (Shutdown).
    void release();

    // What the first copy does when asked (default: un-minimise and raise the first
    // visible form, the main window once it is up).
    std::function<void()> onRaise;
    int raiseRequests() const { return m_requests; }

    QString lockPath() const;
    QString socketPath() const;

private:
    void answer();
    QString m_folder;
    std::unique_ptr<QLockFile> m_lock;
    std::unique_ptr<QLocalServer> m_server;
    int m_requests = 0;
};

// The program's guard (runtime folder).
InstanceGuard &TheInstanceGuard();

// Brings a window to the front: un-minimised, raised and activated.
void BringToFront(QWidget *w);
