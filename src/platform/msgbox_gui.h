// The message box of the program's windows: the safety steps around the platform's box.
//
// Installed behind the core's message-box hook by InstallGuiHooks, so every box that
// intStdMsgBox shows goes through GuiMsgBox:
//   1. the default mouse pointer while the box is up (an hourglass stretch shows an arrow);
//   2. the owner is the first form in collection order that is visible and enabled;
//   3. every enabled form is disabled, in collection order, and remembered;
//   4. the box, brought to the foreground;
//   5. wait until Enter and Space are both up, so the key that closed the box can't press
//      the default button underneath;
//   6. the remembered forms are enabled again; the pointer comes back.
#pragma once

#include <QString>
#include <QWidget>

#include <cstdint>
#include <functional>

struct MsgBoxPlatform {
    // Shows the platform's box over `owner` (null: no owner) and returns the button pressed
    // in the system numbering (1 OK .. 7 No), 0 when the box failed.
    std::function<int16_t(QWidget *owner, const QString &text, int32_t flags, const QString &title)> showBox;
    // Is the key (13 Enter, 32 Space) down at this moment.
    std::function<bool(int keyCode)> keyDown;
    // One round of the wait for the keys: lets input events through so a release is seen.
    std::function<void()> pump;
};

// The parts in force; tests replace members and call ResetMsgBoxPlatform afterwards.
MsgBoxPlatform &msgBoxPlatform();
void ResetMsgBoxPlatform();

// The steps above; what uiHooks().messageBox calls in the program.
int16_t GuiMsgBox(const QString &strMessage, int32_t intFlags, const QString &strTitle);

// The real box: a QMessageBox with the flags' buttons, icon and default button.
int16_t intPlatformMsgBox(QWidget *owner, const QString &strMessage, int32_t intFlags, const QString &strTitle);

// The list of disabled forms the last box kept: collection indexes as "000" each
// ("000002" for the forms 0 and 2). Kept for tests.
QString LastDisabledFormList();
