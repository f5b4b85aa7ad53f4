// The manual key loop. Runs inside frmSplash's tmrKeyControl tick and pumps the message loop
// every round, so every click, key event and reply of the link runs inside it. Click handlers
// only set flags (gblnKeyLoop, gblnSpindleStartReq, ...); this loop alone writes to the line.
#include "link/keycontrol.h"

#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/vb.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "nc/stepcode.h"
#include "platform/clock.h"
#include "platform/keystate.h"

#include <QThread>

#include <algorithm>
#include <cstdlib>

int16_t gintKeyDirX = 0, gintKeyDirY = 0, gintKeyDirZ = 0;
int16_t gintRampDirX = 0, gintRampDirY = 0, gintRampDirZ = 0;
float gsngRampSpeed = 0.0f;
int32_t glngDisplayX = 0, glngDisplayY = 0, glngDisplayZ = 0;
float gsngShownX = 0.0f, gsngShownY = 0.0f, gsngShownZ = 0.0f;
KeyboardScreen gKeyboard;

namespace {

constexpr int kMaxRecords = 16;   // records in one frame; a round never composes more

void Call(const std::function<void()> &hook)
{
    if (hook)
        hook();
}

// The steps of one round of a rapid, by the ramp speed (mm/min) at the start of the round.
// More steps a frame at speed keep the frame's time above the PC's turn-around.
int16_t intRapidSteps(float sngRamp)
{
    if (sngRamp < 40.0f)
        return 2;
    if (sngRamp < 80.0f)
        return 6;
    if (sngRamp < 150.0f)
        return 10;
    return 16;
}

void AppendStep(QByteArray &strSteps, const ComposedStep &step) { strSteps.append(step.data(), 4); }

// Lamps and speed labels go to the screen only when they change: screen work stays out of
// the motion path.
void ShowLamps(int16_t intMask, float sngSpeed)
{
    KeyboardScreen next = gKeyboard;
    for (int i = 0; i < 6; ++i) {
        next.imgArrows[static_cast<size_t>(i)] = (intMask & (1 << i)) != 0;
        next.lblSpeedVisible[static_cast<size_t>(i)] = sngSpeed != 0.0f && (intMask & (1 << i)) != 0;
    }
    if (sngSpeed != 0.0f)
        next.lblSpeed = vb::FormatGeneral(sngSpeed);
    if (next.imgArrows != gKeyboard.imgArrows || next.lblSpeedVisible != gKeyboard.lblSpeedVisible ||
        next.lblSpeed != gKeyboard.lblSpeed) {
        gKeyboard = next;
        Call(keyboardHooks().lampsChanged);
    }
}

// Offline nothing answers and the replies are paid at once, so the loop would count steps as
// fast as the PC can compose them. A rehearsal should look like the machine: each frame is
// given the time the controller would take to run it (the sum of its records' counts at
// 921 600 Hz), and the next frame waits until the one before would have finished.
double gdblOfflineFrameEnd = 0.0;   // clock, s

void OfflinePace(const QByteArray &frame)
{
    double secs = 0.0;
    for (qsizetype i = 1; i + 3 <= frame.size(); i += 3) {
        const int timer = static_cast<uint8_t>(frame[i + 1]) + 256 * static_cast<uint8_t>(frame[i + 2]);
        secs += (65536 - timer) / 921600.0;
    }
    while (appClock().seconds() < gdblOfflineFrameEnd && gblnKeyLoop)
        DoEvents();
    gdblOfflineFrameEnd = std::max(gdblOfflineFrameEnd, appClock().seconds()) + secs;
}

// The door. The controller stops all motion when the door opens, and a frame sent while it is
// open would be counted here but not made. So once the door is seen open, the loop sends no
// motion frame of any kind (a ramp-down neither) until the door is closed again and, when the
// spindle had been running, the operator has answered the door message.
bool gblnDoorHold = false;
bool gblnDoorMessageOwed = false;   // the spindle ran when the door opened: the operator is told
bool gblnSpindleSeen = false;       // the spindle flag as last seen with the door closed

// Checked wherever the loop is about to move. "O" clears the spindle flag as it sets the
// door-stopped flag, and a "D" then copies the cleared spindle flag over the door-stopped
// flag; the spindle flag seen before the door opened keeps the message owed all the same.
bool blnDoorBarsMotion()
{
    if (gblnDoorOpen || gblnDoorStopped) {
        if (!gblnDoorHold)
            gsngRampSpeed = 0.0f;   // the controller has stopped the rapid where it was
        gblnDoorHold = true;
        if (gblnDoorStopped || gblnSpindleSeen)
            gblnDoorMessageOwed = true;
        gblnSpindleSeen = false;
    } else if (!gblnDoorHold) {
        gblnSpindleSeen = gblnSpindleOn;
    }
    return gblnDoorHold;
}

int32_t &Display(int16_t intAxis)
{
    return intAxis == 0 ? glngDisplayX : (intAxis == 1 ? glngDisplayY : glngDisplayZ);
}

} // namespace

KeyboardHooks &keyboardHooks()
{
    static KeyboardHooks hooks;
    return hooks;
}

QString strDistanceLabel(int32_t lngSteps) { return vb::FormatFixed(static_cast<float>(lngSteps / 72.0), 2); }

void KeyControl() try {
    // Kept from round to round.
    int16_t intMask = 0;          // lamps: bit 0 X+, 1 X-, 2 Y+, 3 Y-, 4 Z+, 5 Z-
    int16_t intPrimary = 0;       // first axis held in the order X, Y, Z: 2 X+, 1 X-, 4 Y+, 3 Y-, 6 Z+, 5 Z-
    int16_t intLastPrimary = 0;
    bool blnRapid = false;
    bool blnLastRapid = false;
    float sngSpeed = 0.0f;        // mm/min
    int16_t intSteps = 0;         // steps this round
    bool blnSpeedKey = false;     // a numeric speed key (or rapid) is held
    bool blnMoved = false;        // the last round sent steps
    QByteArray strSteps;
    gblnDoorHold = gblnDoorMessageOwed = false;
    gblnSpindleSeen = gblnSpindleOn;

    while (gblnKeyLoop) {
        // 1. Never more than two frames out.
        if (gintBuffersOut == 2) {
            blnGetReplies(false);
            if (gintBuffersOut >= 2)
                continue;
        }
        // 2. A fresh round.
        intLastPrimary = intPrimary;
        blnLastRapid = blnRapid;
        intPrimary = 0;
        blnRapid = false;
        intMask = 0;
        sngSpeed = 0.0f;
        intSteps = 0;
        gintKeyDirX = gintKeyDirY = gintKeyDirZ = 0;
        if (!blnDoorBarsMotion()) {
            // 3. Directions: Right over Left, Up over Down, Page Up over Page Down.
            if (KeyIsDown(VK_RIGHT)) {
                gintKeyDirX = 1;
                intMask |= 1;
            } else if (KeyIsDown(VK_LEFT)) {
                gintKeyDirX = -1;
                intMask |= 2;
            }
            if (KeyIsDown(VK_UP)) {
                gintKeyDirY = 1;
                intMask |= 4;
            } else if (KeyIsDown(VK_DOWN)) {
                gintKeyDirY = -1;
                intMask |= 8;
            }
            if (KeyIsDown(VK_PRIOR)) {
                gintKeyDirZ = 1;
                intMask |= 16;
            } else if (KeyIsDown(VK_NEXT)) {
                gintKeyDirZ = -1;
                intMask |= 32;
            }
            if (gintKeyDirX != 0)
                intPrimary = gintKeyDirX > 0 ? 2 : 1;
            else if (gintKeyDirY != 0)
                intPrimary = gintKeyDirY > 0 ? 4 : 3;
            else if (gintKeyDirZ != 0)
                intPrimary = gintKeyDirZ > 0 ? 6 : 5;
            // Speeds. With Numpad 0 held the digits are not looked at: under RapidUseDot,
            // Numpad 0 without the dot gives neither rapid nor a speed.
            if (KeyIsDown(VK_NUMPAD0)) {
                if (!gblnRapidUseDot || KeyIsDown(VK_DECIMAL))
                    blnRapid = true;
            } else {
                for (int k = 1; k <= 9; ++k) {
                    if (KeyIsDown(VK_NUMPAD0 + k)) {
                        sngSpeed = static_cast<float>(k * 10);
                        intSteps = kSpeedKeySteps[static_cast<size_t>(k - 1)];
                        break;
                    }
                }
            }
            // 4. Rapid moves one axis only, the first held.
            if (blnRapid) {
                sngSpeed = gsngRapidSpeed;
                intSteps = 16;
                gintKeyDirX = intPrimary == 2 ? 1 : (intPrimary == 1 ? -1 : 0);
                gintKeyDirY = intPrimary == 4 ? 1 : (intPrimary == 3 ? -1 : 0);
                gintKeyDirZ = intPrimary == 6 ? 1 : (intPrimary == 5 ? -1 : 0);
                intMask = intPrimary == 0 ? 0 : static_cast<int16_t>(1 << (intPrimary % 2 == 0 ? intPrimary - 2 : intPrimary));
            }
        }
        // 5. A rapid that stops or turns, and a spindle request, first ramp down to rest;
        // this round then counts as "let go".
        if ((blnLastRapid && (!blnRapid || intPrimary != intLastPrimary)) || gblnSpindleStartReq ||
            gblnSpindleStopReq) {
            RampDown();
            gintKeyDirX = gintKeyDirY = gintKeyDirZ = 0;
            intMask = 0;
            intPrimary = 0;
            sngSpeed = 0.0f;
            blnRapid = false;
        }
        // 6, 7. Lamps and speed labels.
        ShowLamps(intMask, sngSpeed);
        if (sngSpeed != 0.0f) {
            blnSpeedKey = true;
        } else {
            blnSpeedKey = false;
            sngSpeed = gsngRapidSpeed;
            intSteps = 1;
        }
        // 8. Spindle requests, with the line quiet.
        if (gblnSpindleStartReq) {
            blnGetReplies(true);
            SpindleStart();
            gblnSpindleStartReq = false;
        }
        if (gblnSpindleStopReq) {
            blnGetReplies(true);
            SpindleStop();
            gblnSpindleStopReq = false;
        }
        if (intMask != 0 && !blnDoorBarsMotion()) {
            // 9. Moving. An arrow alone is one single step however long it is held; the
            // message loop still gets its turn, so the release and Done are heard.
            if (!blnSpeedKey && blnMoved) {
                DoEvents();
                continue;
            }
            Call(keyboardHooks().focusPosition);
            strSteps.clear();
            if (sngSpeed == 10.0f)
                sngSpeed = 12.0f;   // 768000 / 10 would not fit the 16-bit timer
            if (blnRapid)
                intSteps = intRapidSteps(gsngRampSpeed);
            for (int i = 0; i < intSteps; ++i) {
                if (blnRapid) {
                    gintRampDirX = gintKeyDirX;
                    gintRampDirY = gintKeyDirY;
                    gintRampDirZ = gintKeyDirZ;
                    if (gsngRampSpeed < gsngRapidSpeed)
                        gsngRampSpeed = static_cast<float>(gsngRampSpeed + gsngRapidSpeed / 64.0);
                    else
                        gsngRampSpeed = gsngRapidSpeed;
                    AppendStep(strSteps, strComposedStep(gintKeyDirX, gintKeyDirY, gintKeyDirZ, gsngRampSpeed,
                                                         gsngRampSpeed, gsngRampSpeed, kStepMove));
                } else {
                    AppendStep(strSteps, strComposedStep(gintKeyDirX, gintKeyDirY, gintKeyDirZ,
                                                         static_cast<float>(gintKeyDirX * sngSpeed),
                                                         static_cast<float>(gintKeyDirY * sngSpeed),
                                                         static_cast<float>(gintKeyDirZ * sngSpeed), kStepMove));
                }
                PositionUpdate(gintKeyDirX, gintKeyDirY, gintKeyDirZ);
            }
            SendKeyBuff(strSteps);
            blnMoved = true;
            DoEvents();
        } else {
            // 10. Let go: the labels off, the line quiet, then the position on screen.
            ShowLamps(0, 0.0f);
            blnGetReplies(true);
            gsngStepSpeedX = gsngStepSpeedY = gsngStepSpeedZ = 0.0f;
            const float x = static_cast<float>(glngDisplayX / 72.0);
            const float y = static_cast<float>(glngDisplayY / 72.0);
            const float z = static_cast<float>(glngDisplayZ / 72.0);
            if (x != gsngShownX || y != gsngShownY || z != gsngShownZ) {
                gKeyboard.lblPos = {vb::FormatFixed(x, 2), vb::FormatFixed(y, 2), vb::FormatFixed(z, 2)};
                Call(keyboardHooks().positionsChanged);
                gsngShownX = x;
                gsngShownY = y;
                gsngShownZ = z;
            }
            blnMoved = false;
            DoEvents();
            // Standing still with nothing out: a short sleep, so that the screen waiting for a
            // key doesn't keep a core busy. A key is seen within 1 ms all the same.
            if (gintBuffersOut == 0)
                QThread::msleep(1);
            if (blnDoorBarsMotion()) {
                // Told even when the door has been closed again before this round: the
                // answer is what gives the keys back.
                if (gblnDoorMessageOwed) {
                    StdMsgBox(QStringLiteral("The spindle has been stopped because the door was opened"),
                              vbExclamation, QStringLiteral("Door Status"));
                    gblnDoorMessageOwed = false;
                    gblnDoorStopped = false;
                }
                if (!gblnDoorOpen && !gblnDoorStopped)
                    gblnDoorHold = false;
            }
        }
    }
    blnGetReplies(true);
    // The machine stands: a rapid cut short by Esc or Back must not start the next one at speed.
    gsngRampSpeed = 0.0f;
    ShowLamps(0, 0.0f);
    SpindleStop();
    Call(keyboardHooks().loopEnded);
} catch (...) {
    LogError("modKeyboard", "KeyControl");
}

void RampDown() try {
    // A door that opens meanwhile has stopped the rapid: nothing more is sent.
    while (gsngRampSpeed > 0.0f && !blnDoorBarsMotion()) {
        QByteArray strSteps;
        for (int i = 0; i < kMaxRecords && gsngRampSpeed > 0.0f; ++i) {
            gsngRampSpeed = static_cast<float>(gsngRampSpeed - gsngRapidSpeed / 64.0);
            if (gsngRampSpeed > 0.0f) {
                AppendStep(strSteps, strComposedStep(gintRampDirX, gintRampDirY, gintRampDirZ, gsngRampSpeed,
                                                     gsngRampSpeed, gsngRampSpeed, kStepMove));
                PositionUpdate(gintRampDirX, gintRampDirY, gintRampDirZ);
            }
        }
        if (!strSteps.isEmpty())
            SendKeyBuff(strSteps);
        blnGetReplies(false);
    }
    gsngRampSpeed = 0.0f;
} catch (...) {
    LogError("modKeyboard", "RampDown");
}

void SendKeyBuff(const QByteArray &strSteps) try {
    // Frame: a length byte that counts itself, then bytes 0..2 of each 4-byte composed step.
    QByteArray frame(1, '\0');
    for (qsizetype i = 0; i + 4 <= strSteps.size(); i += 4)
        frame.append(strSteps.constData() + i, 3);
    if (frame.size() > 1 + 3 * kMaxRecords)
        vb::Err(vb::kInvalidCall);   // a round composes 16 steps at most
    frame[0] = static_cast<char>(frame.size());
    if (gblnOnline && !blnControllerAvailable())
        CallShutdown();   // "Work Offline" chosen in the alarm with the line in use
    if (!gblnOnline)
        OfflinePace(frame);
    SendFrame(frame);
} catch (...) {
    LogError("modKeyboard", "SendKeyBuff");
}

void PositionUpdate(int16_t intX, int16_t intY, int16_t intZ) try {
    glngPosX = vb::Int32(static_cast<int64_t>(glngPosX) + intX);
    glngPosY = vb::Int32(static_cast<int64_t>(glngPosY) + intY);
    glngPosZ = vb::Int32(static_cast<int64_t>(glngPosZ) + intZ);
    // The axis's key direction, also for a ramp-down step.
    glngDisplayX = lngKeyboardPos(glngDisplayX, gintBacklashX, gintPlayX, gintLastDirX, gintKeyDirX,
                                  static_cast<int16_t>(std::abs(intX)));
    glngDisplayY = lngKeyboardPos(glngDisplayY, gintBacklashY, gintPlayY, gintLastDirY, gintKeyDirY,
                                  static_cast<int16_t>(std::abs(intY)));
    glngDisplayZ = lngKeyboardPos(glngDisplayZ, gintBacklashZ, gintPlayZ, gintLastDirZ, gintKeyDirZ,
                                  static_cast<int16_t>(std::abs(intZ)));
} catch (...) {
    LogError("modKeyboard", "PositionUpdate");
}

int32_t lngKeyboardPos(int32_t lngPos, int16_t intBacklash, int16_t &intPlay, int16_t &intLastDir, int16_t intDir,
                       int16_t intSteps) try {
    if (intDir == 0)
        return lngPos;
    int16_t intSlack = vb::Int16(intBacklash - intPlay);
    if (intDir != intLastDir) {
        // A reversal: the play taken up so far in the old direction is slack in the new one.
        intLastDir = intDir;
        intPlay = intSlack;
        intSlack = vb::Int16(intBacklash - intPlay);
    }
    if (intSteps > intSlack) {
        intPlay = intBacklash;
        return vb::Int32(lngPos + static_cast<int64_t>(intSteps - intSlack) * intDir);
    }
    intPlay = vb::Int16(intPlay + intSteps);
    return lngPos;
} catch (...) {
    LogError("modKeyboard", "lngKeyboardPos");
}

void DistanceSet(int16_t intAxis, int32_t lngSteps) try {
    if (intAxis < 0 || intAxis > 2)
        return;
    Display(intAxis) = lngSteps;
    gKeyboard.lblPos[static_cast<size_t>(intAxis)] = strDistanceLabel(lngSteps);
    Call(keyboardHooks().positionsChanged);
} catch (...) {
    LogError("frmMain", "DistanceSet");
}

void DistanceReset(int16_t intAxis) try {
    for (int16_t a = 0; a < 3; ++a) {
        if (intAxis == a || intAxis == 3) {
            Display(a) = 0;
            gKeyboard.lblPos[static_cast<size_t>(a)] = QStringLiteral("0.00");
        }
    }
    Call(keyboardHooks().positionsChanged);
} catch (...) {
    LogError("frmMain", "DistanceReset");
}

void ResetKeyControl()
{
    gintKeyDirX = gintKeyDirY = gintKeyDirZ = 0;
    gintRampDirX = gintRampDirY = gintRampDirZ = 0;
    gsngRampSpeed = 0.0f;
    glngDisplayX = glngDisplayY = glngDisplayZ = 0;
    gsngShownX = gsngShownY = gsngShownZ = 0.0f;
    gdblOfflineFrameEnd = 0.0;
    gblnDoorHold = gblnDoorMessageOwed = gblnSpindleSeen = false;
    gKeyboard = KeyboardScreen();
    keyboardHooks() = KeyboardHooks();
}
