// The real key state: an application-wide event filter that keeps the set of keys held.
//
// Facts it is built on (X11 and Wayland, Qt 6):
// - A release's Qt key depends on the modifiers at release time (press 8, press Shift,
//   release 8 arrives as Key_Asterisk). So a release is matched to its press by the
//   physical key, the native scan code; only when the platform gives no scan code (0) is
//   the key's own code used, normalised to its virtual-key code.
// - Auto-repeat presses and releases are ignored: a held key is one press.
// - The filter sees one event several times while it propagates from a child to its
//   parents, so the keys held are a set, never a counter.
// - A key released while another application has the focus is never reported. Every key
//   therefore counts as up once the application is deactivated (and again when it comes
//   back): a key still held must be pressed anew. A stuck arrow key would jog the machine.
// - Even inside the program a release can be lost: while a modal window comes up or goes
//   away, the window system may deliver it to a window that Qt blocks or that no longer
//   exists. On X11 the server's own keyboard state is therefore asked as well: a key the
//   server reports up is up, whatever the events said. The same answer tells an auto-repeat
//   release that Qt didn't mark (the key is still down at the server) from a real one.
// - The numeric keypad sends digits with NumLock on and navigation keys with it off, both
//   marked with the keypad modifier. Either way they are the keypad's digits and dot
//   (VK_NUMPAD0..9, VK_DECIMAL), so a keypad key never reads as an arrow or page key.
//   On X11 and Wayland the scan code of the keypad is known as well (evdev code + 8) and
//   identifies the keypad key by itself.
#pragma once

#include "platform/keystate.h"

#include <QElapsedTimer>
#include <QObject>
#include <QtGlobal>

#include <array>
#include <cstdint>
#include <functional>
#include <map>

// The virtual-key code of a key event, 0 for a key the program doesn't know.
// `blnEvdevCodes`: the scan codes are the X11 / Wayland key codes (evdev + 8).
int intVirtualKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 scanCode, bool blnEvdevCodes);

// The window system's keyboard state: bit (code % 8) of byte (code / 8) is set while the key
// with that X11 key code is down. Returns false when the state can't be read.
using KeymapReader = std::function<bool(std::array<uint8_t, 32> &keys)>;
// The X server's reader on the xcb platform; empty elsewhere.
KeymapReader X11KeymapReader();

class EventKeyState : public QObject, public KeyState {
    Q_OBJECT
public:
    // Installs itself as an event filter on the application. `blnEvdevCodes` as above;
    // by default true on the xcb and wayland platforms, and the X server's keyboard state
    // asked on xcb.
    explicit EventKeyState(QObject *parent = nullptr);
    EventKeyState(bool blnEvdevCodes, KeymapReader keymap, QObject *parent);
    ~EventKeyState() override;

    bool blnKeyDown(int vk) const override;
    // Every key up (the application lost or regained the focus).
    void ClearAll();
    // The number of physical keys held (tests).
    int intKeysHeld() const { return static_cast<int>(m_held.size()); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Install();
    // The server's word on a scan code: 1 down, 0 up, -1 no word to be had.
    // `blnFresh` reads anew; otherwise a reading up to 2 ms old will do.
    int intServerState(quint32 scanCode, bool blnFresh) const;
    bool m_blnEvdevCodes;
    KeymapReader m_keymap;
    // Physical key -> the virtual-key code it had when pressed. Keys found released at the
    // server are dropped while answering, hence mutable.
    mutable std::map<uint64_t, int> m_held;
    mutable std::array<uint8_t, 32> m_keys{};
    mutable QElapsedTimer m_keysAge;
};

// Creates the program's key state and installs it behind KeyIsDown. Called once by main
// after the application object exists.
void InstallEventKeyState();
