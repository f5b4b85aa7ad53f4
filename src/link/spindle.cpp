#include "link/spindle.h"

#include "core/logger.h"
#include "core/state.h"
#include "link/comms.h"
#include "link/link_screen.h"

namespace {

void SetPanel(const char *key, const char *text)
{
    if (linkHooks().setPanel)
        linkHooks().setPanel(QString::fromLatin1(key), QString::fromLatin1(text));
}

} // namespace

void SpindleControlsChanged()
{
    if (linkHooks().spindleControlsChanged)
        linkHooks().spindleControlsChanged();
}

QByteArray SpindleFrame(bool blnOn)
{
    QByteArray frame;
    frame.append(char(4));
    frame.append(char(blnOn ? 19 : 3));
    frame.append(char(0));
    frame.append(char(0));
    return frame;
}

bool blnSpindleControl(bool blnOn) try {
    bool blnTaken = true;   // the controller has answered the record
    if (!gblnOnline) {
        gblnDoorOpen = false;   // offline the door counts as closed
    } else if (blnGetReplies(true)) {
        SendFrame(SpindleFrame(blnOn));
        blnTaken = blnGetReplies(true);   // the record has been taken when this returns
    } else {
        blnTaken = false;   // the line never got quiet: nothing was sent
    }
    // With the door open a start still goes out; the controller refuses it and so do we.
    if (!blnOn) {
        gblnSpindleOn = false;
        return false;
    }
    // A start that timed out counts as not running: the in-run prompt stays at "Close Door"
    // and a run does not go on with a spindle the controller may never have started.
    gblnSpindleOn = blnTaken && !gblnDoorOpen;
    return gblnSpindleOn;
} catch (...) {
    LogError("modComms", "blnSpindleControl");
}

void SpindleStart() try {
    if (blnSpindleControl(true)) {
        SetPanel("spindle", "Spindle Rotating");
        SpindleControls &c = gSpindleControls;
        c.picSpindleStartEnabled = false;
        c.picSpindleStopEnabled = true;
        c.mnuMStartEnabled = false;
        c.mnuMStopEnabled = true;
        c.picSpindleStartImage = 2;
        c.picSpindleStopImage = 3;
        c.picSpindleStartToolTip.clear();
        c.picSpindleStopToolTip = QStringLiteral("Stop the Spindle");
        c.picStartTextToolTip.clear();
    }
    gSpindleControls.picStoppedVisible = false;
    SpindleControlsChanged();
} catch (...) {
    LogError("modComms", "SpindleStart");
}

void SpindleStop() try {
    // A spindle already flagged stopped ("O" or "P" cleared the flag) gets no record.
    if (gblnSpindleOn)
        blnSpindleControl(false);
    SetPanel("spindle", "Spindle Stopped");
    SpindleControls &c = gSpindleControls;
    c.picSpindleStartEnabled = !gblnDoorOpen;
    c.picSpindleStopEnabled = false;
    c.mnuMStartEnabled = !gblnDoorOpen && c.picStartTextEnabled;
    c.mnuMStopEnabled = false;
    c.picSpindleStartImage = 1;
    c.picSpindleStopImage = 4;
    // "Start the spindle" and "Stop the Spindle" differ in spelling on purpose.
    c.picSpindleStartToolTip = QStringLiteral("Start the spindle");
    c.picSpindleStopToolTip.clear();
    c.picStartTextToolTip = QStringLiteral("Close Door before starting Spindle");
    SpindleControlsChanged();
} catch (...) {
    LogError("modComms", "SpindleStop");
}

void OpenSpindleStart()
{
    SpindleControls &c = gSpindleControls;
    c.picStartTextToolTip.clear();
    c.picSpindleStartEnabled = true;
    c.mnuMStartEnabled = gintMode == 2 && c.picStartTextEnabled;
    SpindleControlsChanged();
}

void picSpindleStart_Click() { gblnSpindleStartReq = true; }
void mnuMStart_Click() { gblnSpindleStartReq = true; }
void picSpindleStop_Click() { gblnSpindleStopReq = true; }
void mnuMStop_Click() { gblnSpindleStopReq = true; }
