// The spindle and the door interlock. The spindle is switched by a one-record frame in the
// step stream; the controller refuses to start it while the door is open, and the PC mirrors
// that: it counts the spindle as stopped whenever the door was open.
//
//     spindle on:  4, 19, 0, 0     (length, command 19 = bits 0, 1, 4, timer 0)
//     spindle off: 4,  3, 0, 0
//
// The screen controls live on the main window; their state is gSpindleControls
// (link_screen.h), redrawn through linkHooks().spindleControlsChanged.
#pragma once

#include <QByteArray>

// Sends the spindle record and waits for it to be taken; true when the spindle now runs.
// Offline the door counts as closed and nothing is sent.
bool blnSpindleControl(bool blnOn);
// Starts the spindle and sets the controls when it runs; always hides the warning.
void SpindleStart();
// Stops the spindle (no record when it is already flagged stopped) and sets the controls.
void SpindleStop();
// The door is closed (a "G" reset answer or an "S"): the start control may be used again.
void OpenSpindleStart();

// The frame that switches the spindle.
QByteArray SpindleFrame(bool blnOn);

// Clicks on the spindle pictures and menu entries only ask; the manual key loop acts.
void picSpindleStart_Click();
void mnuMStart_Click();
void picSpindleStop_Click();
void mnuMStop_Click();

// Tells the screen that gSpindleControls changed.
void SpindleControlsChanged();
