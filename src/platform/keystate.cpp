#include "platform/keystate.h"

#include "core/hooks.h"

#include <QThread>

namespace {

// Before the program installs its event filter, and in tools without one: every key is up.
class NoKeysDown : public KeyState {
public:
    bool blnKeyDown(int) const override { return false; }
};

NoKeysDown gNoKeys;
KeyState *gKeyState = nullptr;

} // namespace

KeyState &keyState() { return gKeyState ? *gKeyState : static_cast<KeyState &>(gNoKeys); }

void SetKeyState(KeyState *state) { gKeyState = state; }

bool KeyIsDown(int vk) { return keyState().blnKeyDown(vk); }

void WaitEnterSpaceUp()
{
    while (KeyIsDown(VK_RETURN) || KeyIsDown(VK_SPACE)) {
        DoEvents();
        QThread::msleep(1);
    }
}

bool FakeKeyState::blnKeyDown(int vk) const
{
    ++m_queries;
    if (onQuery)
        onQuery(vk);
    return m_down.count(vk) != 0;
}

ScopedKeyState::ScopedKeyState(KeyState *state) : m_previous(gKeyState) { SetKeyState(state); }

ScopedKeyState::~ScopedKeyState() { SetKeyState(m_previous); }
