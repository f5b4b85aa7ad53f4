// The state that more than one part of the program shares. Each variable has one owner
// that writes it (named in the comment); others only read it unless said.
// A flag is a bool here. Positions are motor steps, 72 to the millimetre on every axis.
#pragma once

#include <QString>

#include <cstdint>

// --- Settings: read once by Main, changed by the settings dialog.
extern bool gblnOnline;            // a controller is to be used; false works offline
extern bool gblnWoodworker;        // the machine is the F1 WoodWorker (spindle to 8000 rpm)
extern float gsngRapidSpeed;       // rapid traverse speed, mm/min
extern QString gstrPassword;       // settings password in scrambled form, or "None"
extern QString gstrComport;        // serial port name ("COM1"), set by SetupComms
extern bool gblnShowTime;          // show the elapsed machining time
extern bool gblnKeepFiles;         // keep analysed files beside the NC file
extern bool gblnRapidUseDot;       // rapid under manual control needs the dot key as well
extern int16_t gintBacklashX;      // backlash compensation, steps
extern int16_t gintBacklashY;
extern int16_t gintBacklashZ;

// --- Run state.
extern int16_t gintTwipsPerPixel;  // screen twips per pixel, read once by Main (15 here)
extern int16_t gintMode;           // current screen mode 1..8, written only by SetMode
extern bool gblnCancel;            // the operator cancelled the work in hand; long loops test it
extern bool gblnKeyLoop;           // the manual key loop goes on; clearing it ends KeyControl
extern bool gblnSetupWizard;       // the manual screen returns to the set-up wizard (else the offset wizard)
extern int16_t gintSetStep;        // current step of the set-up wizard
extern int16_t gintOffStep;        // current step of the offset wizard
extern bool gblnNewPart;           // choices on the subsequent-part screen
extern bool gblnRepeatPart;
extern bool gblnToolInserted;      // a tool has been called for; the spindle switch may stand at CNC
extern bool gblnToolInMachine;     // a first tool is in; later tool prompts say "Change"
extern int16_t gintCurrentTool;    // tool number in the spindle
extern int16_t gintNextTool;       // tool number the program asks for
extern float gsngOriginToolOffset; // offset of the tool that set the Z origin, mm
extern float gsngCurrentToolOffset;// offset of the run's first tool, mm
extern int16_t gintOffsetTool;     // index in the tool table of the tool being measured, 0 for none
extern int32_t glngPosX;           // machine position, steps, counted from what was sent
extern int32_t glngPosY;
extern int32_t glngPosZ;
extern bool gblnDoorOpen;          // door state as the controller last reported it
extern bool gblnSpindleOn;         // spindle state as the controller last reported it
extern bool gblnSpindleStartReq;   // the operator asked for spindle start; KeyControl acts on it
extern bool gblnSpindleStopReq;    // ... for spindle stop
extern int16_t gintBuffersOut;     // frames sent and not yet answered (at most 2)
extern bool gblnDoorStopped;       // the door stopped the running spindle; the run or the key loop deals with it
extern int16_t gintLastDirX;       // last direction of each axis, +1 or -1 (the play model)
extern int16_t gintLastDirY;
extern int16_t gintLastDirZ;
extern int16_t gintPlayX;          // play still due at the next reversal of each axis, steps
extern int16_t gintPlayY;
extern int16_t gintPlayZ;

// --- NC file and tools.
extern QString gstrMillFile;       // path of the NC file chosen for machining
extern QString gstrNCFile;         // path of the NC file being read or analysed
extern QString gstrHeader;         // the comment header of the NC file, lines ended by CR LF
extern int16_t gintReadResult;     // 0 read well, 1 cancelled, 2 corrected and to be read again
extern float gsngBilletLength;     // billet size from the header, mm
extern float gsngBilletWidth;
extern float gsngBilletDepth;
extern QString gstrAnalysedReason; // why the analysed file can't be reused
extern bool gblnAnalysedValid;     // a valid analysed file exists for the NC file
extern bool gblnAnalysedToTemp;    // the analysed file goes to the temporary folder
extern int16_t gintMRUCount;       // recent-file menu entries
extern int16_t gintWorkFile;       // file number of the work step file (0: none open)
extern QString gstrWorkFile;       // path of the work step file

// Settings read at start, in the order Main reads them, with their defaults.
void ReadStartSettings();
// Back to the values before any start (tests).
void ResetSharedState();
