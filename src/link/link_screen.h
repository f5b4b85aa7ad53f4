// What the link shows on screen, as plain state plus narrow hooks, so that the protocol and
// the spindle logic build with Qt Core only and tests can watch every control.
//
// The program's forms install the hooks (InstallLinkUi in frm_skull.h for the alarm window;
// frmMain for the status panels and the spindle controls). Unset hooks do nothing.
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

// The hardware alarm window frmSkull ("Brantok Hardware Configuration"): what the link puts
// in it and what the operator leaves in it. Loaded by frmSkullLoad, shown modally by
// frmSkullShowModal, read (chkOffline, Tag) and then unloaded by frmSkullUnload.
struct SkullForm {
    bool loaded = false;
    QString lblSkull;              // the message
    QString cmdOkCaption;          // "Ok"
    bool cmdCancelVisible = true;  // "Cancel"
    bool chkOffline = false;       // "Work Offline", ticked by the operator
    QString Tag;                   // "Ok" or "Cancel" once the operator has answered
};
extern SkullForm frmSkull;

// The spindle controls of the main window, as the link sets them.
// Pictures: picSpindleStart shows image 2 while the spindle turns, else 1;
// picSpindleStop image 3 while it turns, else 4.
struct SpindleControls {
    bool picSpindleStartEnabled = true;
    bool picSpindleStopEnabled = false;
    bool mnuMStartEnabled = true;
    bool mnuMStopEnabled = false;
    bool picStartTextEnabled = true;   // set by the manual screen, read by the link
    int16_t picSpindleStartImage = 1;
    int16_t picSpindleStopImage = 4;
    QString picSpindleStartToolTip;
    QString picSpindleStopToolTip;
    QString picStartTextToolTip;
    bool picStoppedVisible = false;
    QString lblStopped;                // the warning beside picStopped
};
extern SpindleControls gSpindleControls;

struct LinkHooks {
    // Shows frmSkull modally; returns when the operator has clicked Ok or Cancel (the
    // window calls frmSkull_cmdOk_Click / frmSkull_cmdCancel_Click and hides itself).
    std::function<void()> showSkull;
    // A status bar panel by key ("online", "spindle", "door") gets a text.
    std::function<void(const QString &key, const QString &text)> setPanel;
    // gSpindleControls has changed: redraw the spindle pictures, tool tips, menus, warning.
    std::function<void()> spindleControlsChanged;
    // The program's orderly end. Never returns. Until the program installs its own, the
    // stand-in drops RTS, closes the port and ends the process.
    std::function<void()> shutdown;
};
LinkHooks &linkHooks();
void ResetLinkHooks();

// frmSkull's events.
void frmSkullLoad();        // also switches tmrOnline off
void frmSkullShowModal();
void frmSkullUnload();      // also switches tmrOnline on
void frmSkull_cmdOk_Click();
void frmSkull_cmdCancel_Click();

// Calls the installed Shutdown. Never returns.
[[noreturn]] void CallShutdown();
