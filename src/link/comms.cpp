#include "link/comms.h"

#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "platform/clock.h"

#include <cmath>
#include <memory>

QByteArray gstrReplies;
int32_t glngTestFactor = 0;
double gsngWaitStart = 0.0;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

std::unique_ptr<SerialPort> &port()
{
    static std::unique_ptr<SerialPort> p;
    return p;
}

// The 2-second wait for a reset answer and the 10-second wait for replies, in seconds.
constexpr double kResetWait = 2.0;
constexpr double kReplyTimeout = 10.0;

double now() { return appClock().seconds(); }

// A reset, or the start offline: the play of every axis is due at the next positive move.
void ResetPlay()
{
    gintLastDirX = gintLastDirY = gintLastDirZ = -1;
    gintPlayX = gintBacklashX;
    gintPlayY = gintBacklashY;
    gintPlayZ = gintBacklashZ;
}

// SetupComms' own handler: the port could not be opened. The alarm window says why, then
// the program ends.
void SetupCommsFailed(int16_t intPort, const QString &strDescription)
{
    frmSkullLoad();
    frmSkull.lblSkull = QStringLiteral("An error occurred during initialization of the COM settings.") + kCrLf +
                        QStringLiteral("Com Port ") + QString::number(intPort) + QStringLiteral(" ") +
                        strDescription + kCrLf +
                        QStringLiteral("Please check the serial connection and restart the program.");
    frmSkullShowModal();
    frmSkullUnload();
    CallShutdown();
}

} // namespace

SerialPort *comSerial() { return port().get(); }

QTimer &tmrOnline()
{
    static QTimer *t = [] {
        auto *timer = new QTimer();   // lives to the end of the process, like the start screen
        timer->setInterval(5000);
        QObject::connect(timer, &QTimer::timeout, [] { tmrOnline_Timer(); });
        return timer;
    }();
    return *t;
}

void SetupComms()
{
    int16_t intPort = 0;
    try {
        if (!gblnOnline) {
            ResetPlay();
            return;
        }
        gstrComport = strRegistryValueGet(QStringLiteral("Comport"), QStringLiteral("COM1"));
        // Only the last character counts: "COM12" opens port 2. Deliberate, and kept.
        intPort = vb::CInt(vb::Val(vb::Right(gstrComport, 1)));
        if (port()) {
            port()->close();
            port().reset();
        }
        port() = CreateSerialPort(intPort);
        SerialPort *p = port().get();
        QObject::connect(p, &SerialPort::received, p, [] { comSerial_OnComm(SerialPort::comEvReceive); });
        QObject::connect(p, &SerialPort::lineError, p, [](int ev) { comSerial_OnComm(static_cast<int16_t>(ev)); });
        if (!p->open()) {
            SetupCommsFailed(intPort, p->errorString());
            return;
        }
        // The control keeps RTS low until the reset raises it.
        p->setRts(false);
        if (!p->isOpen()) {
            StdMsgBox(QStringLiteral("An error occurred during initialization of the COM settings.") + kCrLf +
                          QStringLiteral("Please check the serial connection and restart the program."),
                      vbCritical, QStringLiteral("Communications Error"));
            CallShutdown();
        }
        if (blnControllerAvailable())
            SendReset();
        else
            CallShutdown();   // "Work Offline" ticked at start ends the program; next start is offline
    } catch (const TrapEnded &) {
        throw;
    } catch (...) {
        int32_t number = 0;
        QString description;
        FaultOf(std::current_exception(), number, description);
        SetupCommsFailed(intPort, description);
    }
}

void SendReset() try {
    if (gblnOnline && port()) {
        port()->setRts(false);
        DoEvents();
        port()->setRts(true);
        DoEvents();
    }
    // The end is rounded to whole seconds: the wait lasts 1.5 to 2.5 s.
    const double end = vb::RoundHalfEven(now() + kResetWait);
    while (gstrReplies.isEmpty() && now() < end)
        DoEvents();
    gintBuffersOut = 0;
    if (gstrReplies.contains('F')) {
        gblnDoorOpen = true;
        if (linkHooks().setPanel)
            linkHooks().setPanel(QStringLiteral("door"), QStringLiteral("Door Open"));
        gstrReplies.clear();
    } else if (gstrReplies.contains('G')) {
        gblnDoorOpen = false;
        if (linkHooks().setPanel)
            linkHooks().setPanel(QStringLiteral("door"), QStringLiteral("Door Closed"));
        OpenSpindleStart();
        gstrReplies.clear();
    } else {
        frmSkullLoad();
        frmSkull.lblSkull = QStringLiteral("The controller has failed to respond to a reset command.") + kCrLf + kCrLf +
                            QStringLiteral("Please check the connections and restart the program.");
        frmSkullShowModal();
        GoOffline();
        frmSkullUnload();
        if (gblnOnline)
            CallShutdown();
    }
    ResetPlay();
} catch (...) {
    LogError("F1Mill", "SendReset");
}

bool blnGetReplies(bool blnAll) try {
    gsngWaitStart = now();
    bool result = true;
    if (gintBuffersOut < 1)
        return result;
    int32_t wanted = blnAll ? gintBuffersOut : 1;
    // A cancel from before must not cut this wait short; it is given back at the end.
    const bool blnWasCancelled = gblnCancel;
    gblnCancel = false;
    int32_t idlePolls = 0;
    bool counted = false;
    while (!(now() - gsngWaitStart >= kReplyTimeout || wanted <= 0 || gblnCancel)) {
        if (!gblnOnline) {
            counted = true;
        } else if (gstrReplies.isEmpty()) {
            ++idlePolls;
            // Offline chosen in the alarm: the previous round's count stands for this one.
            if (blnControllerAvailable())
                counted = false;
        } else {
            if (idlePolls < glngTestFactor)
                glngTestFactor = idlePolls;
            if (gstrReplies.at(0) == 'D')
                gblnDoorStopped = gblnSpindleOn;
            gstrReplies.remove(0, 1);
            counted = true;
        }
        if (counted) {
            --gintBuffersOut;
            --wanted;
        }
        DoEvents();
    }
    if (now() - gsngWaitStart >= kReplyTimeout && !gblnCancel && wanted > 0) {
        ShowAlarm();
        gintBuffersOut = 0;
        result = false;
    }
    if (blnWasCancelled)
        gblnCancel = true;
    return result;
} catch (...) {
    LogError("modComms", "blnGetReplies");
}

bool blnControllerAvailable() try {
    if (!gblnOnline)
        return true;
    while (gblnOnline) {
        if (port() && port()->dsr())
            return true;
        ShowAlarm();
    }
    return false;
} catch (...) {
    LogError("modComms", "blnControllerAvailable");
}

void ShowAlarm() try {
    if (linkHooks().setPanel)
        linkHooks().setPanel(QStringLiteral("door"), QString());
    frmSkullLoad();
    frmSkull.lblSkull = QStringLiteral("There is a problem with the hardware.") + kCrLf + kCrLf +
                        QStringLiteral("Is the controller connected to the computer and powered on?") + kCrLf + kCrLf +
                        QStringLiteral("Check the connections and click Ok to try again") + kCrLf +
                        QStringLiteral("or tick the box below and click Ok to work offline.");
    frmSkull.cmdOkCaption = QStringLiteral("Ok");
    frmSkull.cmdCancelVisible = false;
    frmSkullShowModal();
    GoOffline();
    frmSkullUnload();
} catch (...) {
    LogError("modComms", "ShowAlarm");
}

void GoOffline() try {
    if (!frmSkull.chkOffline)
        return;
    RegistryValuePut(QStringLiteral("Online"), QStringLiteral("No"));
    if (port() && port()->isOpen()) {
        port()->setRts(false);
        port()->close();
    }
    gblnOnline = false;
    if (linkHooks().setPanel)
        linkHooks().setPanel(QStringLiteral("online"), QStringLiteral("Working Offline"));
} catch (...) {
    LogError("modComms", "GoOffline");
}

void comSerial_OnComm(int16_t intCommEvent) try {
    QString strError;   // line errors change nothing; a lost reply shows as the time-out
    switch (intCommEvent) {
    case SerialPort::comEventBreak: strError = QStringLiteral("A Break signal was received."); break;
    case SerialPort::comEventDCB: strError = QStringLiteral("Unexpected error retrieving Device Control Block (DCB) for the port."); break;
    case SerialPort::comEventFrame: strError = QStringLiteral("Framing Error. The hardware detected a framing error."); break;
    case SerialPort::comEventOverrun: strError = QStringLiteral("Port Overrun. A character was not read from the hardware before the next character arrived and was lost."); break;
    case SerialPort::comEventRxOver: strError = QStringLiteral("Receive Buffer Overflow. There is no room in the receive buffer."); break;
    case SerialPort::comEventRxParity: strError = QStringLiteral("Parity Error. The hardware detected a parity error."); break;
    case SerialPort::comEventTxFull: strError = QStringLiteral("Transmit Buffer Full. The transmit buffer was full while trying to queue a character."); break;
    case SerialPort::comEvReceive: {
        if (!port())
            return;
        QByteArray strInput = port()->readAll();
        // Always in this order, whatever the order of arrival: door open, door shut, spindle.
        if (strInput.contains('O')) {
            gblnDoorOpen = true;
            if (gblnSpindleOn) {
                gblnDoorStopped = true;
                gSpindleControls.lblStopped =
                    QStringLiteral("Spindle has been stopped. Close door and Click the green button to restart.");
                gSpindleControls.picStoppedVisible = true;
                SpindleControlsChanged();
                gblnSpindleOn = false;
            }
            SpindleStop();
            if (linkHooks().setPanel)
                linkHooks().setPanel(QStringLiteral("door"), QStringLiteral("Door Open"));
            strInput.replace("O", "");
        }
        if (strInput.contains('S')) {
            gblnDoorOpen = false;
            if (linkHooks().setPanel)
                linkHooks().setPanel(QStringLiteral("door"), QStringLiteral("Door Closed"));
            OpenSpindleStart();
            strInput.replace("S", "");
        }
        if (strInput.contains('P')) {
            if (gblnSpindleOn) {
                gSpindleControls.lblStopped =
                    QStringLiteral("Spindle has been stopped automatically. Click the green button to restart.");
                gSpindleControls.picStoppedVisible = true;
                SpindleControlsChanged();
                gblnSpindleOn = false;
                SpindleStop();
            }
            strInput.replace("P", "");
        }
        // Stray characters are dropped when no reply is due; a reset answer always passes.
        if (strInput == "F" || strInput == "G" || gintBuffersOut > 0)
            gstrReplies.append(strInput);
        break;
    }
    default:
        break;
    }
    (void)strError;
} catch (...) {
    LogError("frmSplash", "comSerial_OnComm");
}

void tmrOnline_Timer() try {
    if (gblnOnline && gintBuffersOut == 0 && !(port() && port()->dsr())) {
        ShowAlarm();
        if (gblnOnline)
            SendReset();
    }
} catch (...) {
    LogError("frmSplash", "tmrOnline_Timer");
}

void SendFrame(const QByteArray &frame)
{
    if (!gblnOnline || !port()) {
        ++gintBuffersOut;
        return;
    }
    while (port() && port()->bytesToWrite() >= 1)
        DoEvents();
    ++gintBuffersOut;
    if (port())
        port()->write(frame);
}

void CloseComms()
{
    if (port() && port()->isOpen())
        port()->close();
}

void ResetComms()
{
    if (port()) {
        port()->close();
        port().reset();
    }
    tmrOnline().stop();
    gstrReplies.clear();
    glngTestFactor = 0;
    gsngWaitStart = 0.0;
    frmSkull = SkullForm();
    gSpindleControls = SpindleControls();
}
