// The machining stream: plays an analysed file to the controller.
//
// StartMilling prepares a run: it reads the command table back from the analysed file (for
// the code display and the values of S and T), copies the records that stand ahead of the
// first positioning move into the work step file and appends the lead-in to it (Z first,
// then X and Y at the rapid speed, then the X/Y backlash take-up). SendToMill, entered from
// tmrStartMilling, plays the work file and then the rest of the analysed file, two frames
// out at most; intSendNextBuffer reads records and makes one frame of them.
//
// A record (8 bytes, written by the step compiler):
//
//     +---------+---------+----------+----------+---------+
//     | tag 32  | command | timer lo | timer hi | control |
//     +---------+---------+----------+----------+---------+
//     tag      command number; 0 ends the stream; negative marks the first move
//     control  < 128 an ordinary step (bit 0 rapid; bits 1-2, 3-4, 5-6: X, Y, Z delta + 1)
//              144 / 192 stop points (status 6 / 15), 160 spindle speed (7), 176 tool (8),
//              any other value of 128 and up ends the frame (status 0).
//              A record of 128 or more is never sent.
//
// Qt Core only. The machining panel, the in-run prompt and the screens a run returns to are
// reached through streamHooks(); the status panels through linkHooks().setPanel.
#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <functional>

// One frame sent, in the ring of the last 16: the steps it carried on each axis.
struct SentBuffer {
    int16_t intX = 0;
    int16_t intY = 0;
    int16_t intZ = 0;
    int32_t lngCommand = 0;    // first command in the frame
    bool blnCommandSet = false;
};

// --- State of a run (module-level; written only by the stream and the in-run prompt).
extern int16_t gintBufferSlot;                  // 0..15, the ring slot of the last frame
extern std::array<SentBuffer, 16> gtypSentBuffers;
extern int32_t glngRunCommand;                  // command being sent, always positive
extern int32_t glngLastTag;                     // tag last seen (a repeat shows nothing new)
extern int32_t glngCodeFindPos;                 // where the last find in the code display stood
extern int32_t glngLastTick;                    // clock in whole seconds at the last time update
extern int32_t glngMachiningTime;               // seconds shown in panel "timer"
extern float gsngSpindleSpeed;                  // rpm of the last speed record, for the prompts
extern bool gblnMillDone;                       // the end prompt was finished with Done
extern QString gstrMillCode;                    // the text of rtbMillCode (one command a line)

// What the stream shows and opens. Unset members do nothing; millPrompt unset answers
// "Cancel" (with no prompt on screen nobody can confirm a tool or the spindle).
struct StreamHooks {
    // The code display: load the text (plain), and mark [start, start + length) (length 0:
    // collapse the mark only).
    std::function<void(const QString &text)> loadCode;
    std::function<void(int32_t start, int32_t length)> markCode;
    // pgbMillProg, 0..100, while the code runs; pgbProgress, 0..100, while StartMilling reads.
    std::function<void(int16_t percent)> millProgress;
    std::function<void(int16_t percent)> prepareProgress;
    // The in-run prompt (frmMill), modal: loaded, given the start step as its tag, shown,
    // unloaded. Returns the tag it was left with ("Cancel" when the operator gave up).
    std::function<QString(const QString &startTag)> millPrompt;
    // No to "continue machining?": SetMode(3), SetSetStep(10).
    std::function<void()> backToWizard;
    // Cancel in the spindle or knob question: tmrShowMenu with an empty tag.
    std::function<void()> backToMenu;
    // The end of the program, after the end prompts: the subsequent-part screen.
    std::function<void()> showMethod;
};
StreamHooks &streamHooks();
void ResetStreamHooks();

// Prepares the run from gstrAnalysedFile (see above). Leaves gintAnalysedFile open at the
// first step after the first move and gstrWorkFile closed and complete.
void StartMilling();
// The run; returns when it is over (finished, abandoned, or the operator went back).
void SendToMill();
// Makes one frame from intFile and sends it. Status: 0, -1 cancelled, or 6, 7, 8, 15 when a
// stop record ended the frame. blnEof is set when the stream or the file has ended.
int16_t intSendNextBuffer(int16_t intFile, bool &blnEof);
// tmrStartMilling's tick (it is one-shot): SendToMill unless the run was cancelled.
void tmrStartMilling_Timer();

// "hh:mm:ss" of a number of seconds.
QString strMachiningTime(int32_t lngSeconds);

// Back to the state before any run (tests).
void ResetStreamState();
