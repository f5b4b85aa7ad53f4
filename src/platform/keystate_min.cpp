// A minimal key-state source for Enter, Space and Esc, enough for the message box's wait.
// Replaced by the manual-control key layer, which answers for every key.
//
// An application-wide event filter keeps the set of keys held down. Presses and releases
// are matched on the physical key (the native scan code; the Qt key only when there is
// none, as with synthetic events), because the Qt key of a release depends on the
// modifiers held at release time. Auto-repeat is ignored. A set, not counters: the filter
// may see one event several times on its way to the focus widget.
#include "platform/keystate.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>

#include <map>

namespace {

int keyCodeOf(int qtKey)
{
    switch (qtKey) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Space: return 32;
    case Qt::Key_Escape: return 27;
    default: return 0;
    }
}

class KeyWatch : public QObject {
public:
    std::map<quint64, int> down;   // physical key -> key code

    bool eventFilter(QObject *, QEvent *e) override
    {
        if (e->type() == QEvent::KeyPress || e->type() == QEvent::KeyRelease) {
            auto *k = static_cast<QKeyEvent *>(e);
            if (k->isAutoRepeat())
                return false;
            quint64 id = k->nativeScanCode() ? (quint64(1) << 40) | k->nativeScanCode() : quint64(unsigned(k->key()));
            if (e->type() == QEvent::KeyPress) {
                int code = keyCodeOf(k->key());
                if (code)
                    down[id] = code;
            } else {
                down.erase(id);
            }
        } else if (e->type() == QEvent::ApplicationDeactivate) {
            down.clear();
        }
        return false;
    }
};

KeyWatch *watch()
{
    static KeyWatch *w = nullptr;
    if (!w && QCoreApplication::instance()) {
        w = new KeyWatch;
        w->setParent(QCoreApplication::instance());
        QCoreApplication::instance()->installEventFilter(w);
        if (qGuiApp)
            QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, w, [](Qt::ApplicationState s) {
            if (s != Qt::ApplicationActive && w)
                w->down.clear();
        });
    }
    return w;
}

} // namespace

void InstallKeyState() { watch(); }

bool KeyIsDown(int intKeyCode)
{
    KeyWatch *w = watch();
    if (!w)
        return false;
    for (const auto &[id, code] : w->down)
        if (code == intKeyCode)
            return true;
    return false;
}
