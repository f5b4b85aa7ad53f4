// The link to the controller: the port, the reset, the wait for replies with its 10-second
// time-out, the hardware alarm and the watchdog.
//
// Every frame the PC sends gets exactly one reply character. A sender waits until the
// port's bytesToWrite() is below 1 (pumping), adds 1 to gintBuffersOut, then writes the
// frame; it never has more than 2 frames out. Offline it adds 1 and sends nothing, and
// blnGetReplies pays it off.
//
// The port `comSerial` and the watchdog `tmrOnline` live here for the whole run. The start
// screen hosts them: it calls SetupComms at start and starts tmrOnline when it loads.
// Everything runs on the one thread; every wait pumps, so comSerial_OnComm, timers and
// clicks run inside the waits and may re-enter them.
#pragma once

#include "platform/serial_port.h"

#include <QByteArray>
#include <QTimer>

#include <cstdint>

// --- State of the link (gblnOnline, gintBuffersOut, gblnDoorOpen, gblnDoorStopped,
// gblnSpindleOn, gblnCancel are in core/state.h).
extern QByteArray gstrReplies;   // reply characters received and not yet consumed, oldest first
extern int32_t glngTestFactor;   // fewest idle polls seen before a reply (the rate test sets it high)
extern double gsngWaitStart;     // clock at the start of the current wait, seconds (monotonic)

// The serial port; null until SetupComms has made it.
SerialPort *comSerial();
// The watchdog, every 5000 ms; runs tmrOnline_Timer. Started by the start screen's load.
QTimer &tmrOnline();

// Opens the link at start (and when the settings go online again).
void SetupComms();
// Resets the controller, learns the door state, re-arms the play of the axes.
void SendReset();
// Waits for every outstanding reply (blnAll) or for one. True when done or cancelled,
// false after the 10-second time-out (the alarm has been shown, gintBuffersOut is 0).
bool blnGetReplies(bool blnAll);
// Offline: true. Online: true once DSR is present; meanwhile the alarm. False when the
// operator chose to work offline in the alarm.
bool blnControllerAvailable();
// The modal hardware alarm.
void ShowAlarm();
// Acts on the tick in frmSkull's "Work Offline"; call while frmSkull is loaded.
void GoOffline();
// The port's receive and error event: 2 received, 1001..1011 line errors.
void comSerial_OnComm(int16_t intCommEvent);
// The watchdog: online, idle and no DSR raises the alarm, then a fresh reset.
void tmrOnline_Timer();

// Waits until the port has taken all written bytes, pumping; then counts the frame out and
// writes it (offline only counts it). The one way every sender puts a frame on the line.
void SendFrame(const QByteArray &frame);

// Closes the port and forgets it (tests; the settings dialog going offline uses GoOffline's way).
void CloseComms();
// Back to the state before SetupComms (tests).
void ResetComms();
