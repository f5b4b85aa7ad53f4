// Is a key down at this moment: what the message box's wait for Enter and Space asks.
//
// Keys are the program's key codes: 13 Enter (either Enter key), 32 Space, 27 Esc.
// The answer comes from the key events the application has seen: a key counts as down
// from its press to its release, and every key counts as up once the application has
// been deactivated (a release in another window never reaches us).
//
// This is the one call the message box needs. The manual-control key layer provides the
// full implementation (every key of the pad, repeat, the keypad mapping); until it is
// there, keystate_min.cpp answers for the few keys above.
#pragma once

bool KeyIsDown(int intKeyCode);
// Starts watching the keys; called once at start, before any form is shown, so that a key
// already held when a box appears is known.
void InstallKeyState();
