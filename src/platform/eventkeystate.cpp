#include "platform/eventkeystate.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>

#ifdef BRANTOK_HAVE_XCB
#include <QtGui/qguiapplication_platform.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#endif

namespace {

// The keypad by its X11 / Wayland key code (evdev + 8), NumLock and layout aside.
int intKeypadByScanCode(quint32 scanCode)
{
    switch (scanCode) {
    case 90: return VK_NUMPAD0;
    case 87: return VK_NUMPAD1;
    case 88: return VK_NUMPAD2;
    case 89: return VK_NUMPAD3;
    case 83: return VK_NUMPAD4;
    case 84: return VK_NUMPAD5;
    case 85: return VK_NUMPAD6;
    case 79: return VK_NUMPAD7;
    case 80: return VK_NUMPAD8;
    case 81: return VK_NUMPAD9;
    case 91: return VK_DECIMAL;    // KP dot / KP delete
    case 129: return VK_DECIMAL;   // KP comma of some layouts
    case 104: return VK_RETURN;    // KP enter
    case 63: return VK_MULTIPLY;
    case 86: return VK_ADD;
    case 82: return VK_SUBTRACT;
    case 106: return VK_DIVIDE;
    default: return 0;
    }
}

// A key marked as the keypad's, by what it sends: the digit with NumLock on, the
// navigation function printed under it with NumLock off.
int intKeypadByQtKey(int qtKey)
{
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return VK_NUMPAD0 + (qtKey - Qt::Key_0);
    switch (qtKey) {
    case Qt::Key_Insert: return VK_NUMPAD0;
    case Qt::Key_End: return VK_NUMPAD1;
    case Qt::Key_Down: return VK_NUMPAD2;
    case Qt::Key_PageDown: return VK_NUMPAD3;
    case Qt::Key_Left: return VK_NUMPAD4;
    case Qt::Key_Clear: return VK_NUMPAD5;    // KP_Begin
    case Qt::Key_Right: return VK_NUMPAD6;
    case Qt::Key_Home: return VK_NUMPAD7;
    case Qt::Key_Up: return VK_NUMPAD8;
    case Qt::Key_PageUp: return VK_NUMPAD9;
    case Qt::Key_Period:
    case Qt::Key_Comma:
    case Qt::Key_Delete: return VK_DECIMAL;
    case Qt::Key_Enter:
    case Qt::Key_Return: return VK_RETURN;
    case Qt::Key_Asterisk: return VK_MULTIPLY;
    case Qt::Key_Plus: return VK_ADD;
    case Qt::Key_Minus: return VK_SUBTRACT;
    case Qt::Key_Slash: return VK_DIVIDE;
    default: return 0;
    }
}

int intMainKey(int qtKey)
{
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return VK_0 + (qtKey - Qt::Key_0);
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return VK_A + (qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return VK_F1 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace: return VK_BACK;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return VK_TAB;
    case Qt::Key_Return:
    case Qt::Key_Enter: return VK_RETURN;
    case Qt::Key_Shift: return VK_SHIFT;
    case Qt::Key_Control: return VK_CONTROL;
    case Qt::Key_Alt: return VK_MENU;
    case Qt::Key_CapsLock: return VK_CAPITAL;
    case Qt::Key_Escape: return VK_ESCAPE;
    case Qt::Key_Space: return VK_SPACE;
    case Qt::Key_PageUp: return VK_PRIOR;
    case Qt::Key_PageDown: return VK_NEXT;
    case Qt::Key_End: return VK_END;
    case Qt::Key_Home: return VK_HOME;
    case Qt::Key_Left: return VK_LEFT;
    case Qt::Key_Up: return VK_UP;
    case Qt::Key_Right: return VK_RIGHT;
    case Qt::Key_Down: return VK_DOWN;
    case Qt::Key_Insert: return VK_INSERT;
    case Qt::Key_Delete: return VK_DELETE;
    case Qt::Key_NumLock: return VK_NUMLOCK;
    default: return 0;
    }
}

bool blnPlatformHasEvdevCodes()
{
    const QString name = QGuiApplication::platformName();
    return name == QLatin1String("xcb") || name.startsWith(QLatin1String("wayland"));
}

} // namespace

int intVirtualKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 scanCode, bool blnEvdevCodes)
{
    if (blnEvdevCodes && scanCode != 0) {
        if (int vk = intKeypadByScanCode(scanCode))
            return vk;
    }
    if (modifiers & Qt::KeypadModifier)
        return intKeypadByQtKey(qtKey);
    return intMainKey(qtKey);
}

KeymapReader X11KeymapReader()
{
#ifdef BRANTOK_HAVE_XCB
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return {};
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return {};
    // One round trip to the server (well under a millisecond on the same machine).
    return [connection](std::array<uint8_t, 32> &keys) {
        xcb_query_keymap_reply_t *reply = xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr);
        if (!reply)
            return false;
        static_assert(sizeof(reply->keys) == 32);
        std::memcpy(keys.data(), reply->keys, keys.size());
        std::free(reply);
        return true;
    };
#else
    return {};
#endif
}

EventKeyState::EventKeyState(QObject *parent)
    : EventKeyState(blnPlatformHasEvdevCodes(), X11KeymapReader(), parent)
{
}

EventKeyState::EventKeyState(bool blnEvdevCodes, KeymapReader keymap, QObject *parent)
    : QObject(parent), m_blnEvdevCodes(blnEvdevCodes), m_keymap(std::move(keymap))
{
    Install();
}

int EventKeyState::intServerState(quint32 scanCode, bool blnFresh) const
{
    if (!m_keymap || scanCode == 0 || scanCode > 255)
        return -1;
    if (blnFresh || !m_keysAge.isValid() || m_keysAge.elapsed() >= 2) {
        if (!m_keymap(m_keys)) {
            m_keysAge.invalidate();
            return -1;
        }
        m_keysAge.start();
    }
    return (m_keys[scanCode / 8] >> (scanCode % 8)) & 1;
}

EventKeyState::~EventKeyState()
{
    if (&keyState() == this)
        SetKeyState(nullptr);
}

void EventKeyState::Install()
{
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(this);
}

bool EventKeyState::blnKeyDown(int vk) const
{
    for (auto it = m_held.begin(); it != m_held.end();) {
        if (it->second != vk) {
            ++it;
            continue;
        }
        // Held by the events; the server has the last word (a release may have been lost).
        const auto scan = it->first >> 32 ? quint32{0} : static_cast<quint32>(it->first);
        if (intServerState(scan, false) != 0)
            return true;
        it = m_held.erase(it);
    }
    return false;
}

void EventKeyState::ClearAll() { m_held.clear(); }

bool EventKeyState::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto *key = static_cast<const QKeyEvent *>(event);
        if (key->isAutoRepeat())
            break;
        const int vk = intVirtualKey(key->key(), key->modifiers(), key->nativeScanCode(), m_blnEvdevCodes);
        // The physical key: its scan code; without one, the virtual-key code, which for the
        // keypad doesn't change with NumLock or Shift.
        const uint64_t physical =
            key->nativeScanCode() != 0 ? key->nativeScanCode() : (uint64_t{1} << 32) | static_cast<uint32_t>(vk);
        m_keysAge.invalidate();   // the next answer reads the server anew
        if (event->type() == QEvent::KeyPress) {
            if (vk != 0)
                m_held[physical] = vk;
        } else if (m_held.count(physical) != 0 && intServerState(key->nativeScanCode(), true) != 1) {
            m_held.erase(physical);
        }
        // A release while the server still has the key down is an auto-repeat pair that Qt
        // didn't mark: the key stays held.
        break;
    }
    case QEvent::ApplicationStateChange:
    case QEvent::ApplicationDeactivate:
    case QEvent::ApplicationActivate:
        // Keys released elsewhere are never reported: all count as up from here on.
        ClearAll();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void InstallEventKeyState()
{
    // Owned by the application object; gone (and null here) with it.
    static QPointer<EventKeyState> state;
    if (!state)
        state = new EventKeyState(QCoreApplication::instance());
    SetKeyState(state);
}
