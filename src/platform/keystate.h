// "Is this key down at this moment": the key read of the jog loop and of the waits for
// Enter and Space to come up again.
//
// The logical keys are the Windows virtual-key codes the program was laid out with
// (VK_RIGHT 39, VK_NUMPAD5 101, ...). The jog loop polls them every round instead of
// reacting to key events, so that a held key moves without the keyboard's repeat delay and
// several keys count at once.
//
// This header is Qt-free so that the core logic can ask; the real answer comes from
// EventKeyState (platform/eventkeystate.h), an application-wide event filter the program
// installs at start. Until one is installed every key reads as up: nothing moves and no
// wait blocks.
#pragma once

#include <functional>
#include <set>

// --- The logical keys (virtual-key codes).
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0D;       // Enter, and the keypad's Enter
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;         // Alt
constexpr int VK_CAPITAL = 0x14;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
// Directions of the jog loop come only from these six: the dedicated arrow and page keys,
// never from the keypad's navigation functions.
constexpr int VK_PRIOR = 0x21;        // Page Up: Z +
constexpr int VK_NEXT = 0x22;         // Page Down: Z -
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;         // X -
constexpr int VK_UP = 0x26;           // Y +
constexpr int VK_RIGHT = 0x27;        // X +
constexpr int VK_DOWN = 0x28;         // Y -
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
// 0x30..0x39 are the digits of the main row, 0x41..0x5A the letters.
constexpr int VK_0 = 0x30;
constexpr int VK_A = 0x41;
// The numeric keypad: digits are the jog speeds (1..9 = 10..90 mm/min), 0 and the dot are
// rapid. They count as these codes whatever the NumLock state.
constexpr int VK_NUMPAD0 = 0x60;
constexpr int VK_NUMPAD1 = 0x61;
constexpr int VK_NUMPAD2 = 0x62;
constexpr int VK_NUMPAD3 = 0x63;
constexpr int VK_NUMPAD4 = 0x64;
constexpr int VK_NUMPAD5 = 0x65;
constexpr int VK_NUMPAD6 = 0x66;
constexpr int VK_NUMPAD7 = 0x67;
constexpr int VK_NUMPAD8 = 0x68;
constexpr int VK_NUMPAD9 = 0x69;
constexpr int VK_MULTIPLY = 0x6A;
constexpr int VK_ADD = 0x6B;
constexpr int VK_SUBTRACT = 0x6D;
constexpr int VK_DECIMAL = 0x6E;      // the keypad's dot (or comma, by keyboard layout)
constexpr int VK_DIVIDE = 0x6F;
constexpr int VK_F1 = 0x70;           // F1..F12 are 0x70..0x7B
constexpr int VK_NUMLOCK = 0x90;

// The key read. One instance is in force at a time (SetKeyState).
class KeyState {
public:
    virtual ~KeyState() = default;
    // True while the key with this virtual-key code is held down.
    virtual bool blnKeyDown(int vk) const = 0;
};

// The key state in force; never null (all keys up when none is installed).
KeyState &keyState();
// Installs a key state (not owned); nullptr goes back to "all keys up".
void SetKeyState(KeyState *state);
// The program's question "is this key down now".
bool KeyIsDown(int vk);
// Returns once Enter and Space are both up. The key that pressed a button or closed a box
// must not reach what comes next. Events run meanwhile (the release is one of them); the
// caller makes sure no click can act during the wait. No time-out: a held key holds.
void WaitEnterSpaceUp();

// The test double: keys are pressed and released by the test. `onQuery`, when set, runs
// before every answer with the key asked about, so a test can change the keys as a polling
// loop goes round ("release Enter on the third look"); capture the fake by reference.
class FakeKeyState : public KeyState {
public:
    bool blnKeyDown(int vk) const override;
    void Press(int vk) { m_down.insert(vk); }
    void Release(int vk) { m_down.erase(vk); }
    void ReleaseAll() { m_down.clear(); }
    int queries() const { return m_queries; }
    std::function<void(int vk)> onQuery;

private:
    std::set<int> m_down;
    mutable int m_queries = 0;
};

// Installs a key state for the life of a scope and puts the previous one back.
class ScopedKeyState {
public:
    explicit ScopedKeyState(KeyState *state);
    ~ScopedKeyState();
    ScopedKeyState(const ScopedKeyState &) = delete;
    ScopedKeyState &operator=(const ScopedKeyState &) = delete;

private:
    KeyState *m_previous;
};
