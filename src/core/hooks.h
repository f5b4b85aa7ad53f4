// What the core logic needs of the user interface, as narrow hooks.
// The NC pipeline and the store build without widgets: they reach the message box,
// the busy display, the correction window and the end of the process only through
// these. The program installs its forms here at start; the command-line tool and the
// tests install their own. Unset hooks fall back to plain console behaviour.
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

struct UiHooks {
    // The platform message box, behind `intStdMsgBox` (the title is already filled in).
    // Returns the button pressed: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No.
    std::function<int16_t(const QString &text, int32_t flags, const QString &title)> messageBox;
    // The busy display: a page-turning book and a bold status text.
    std::function<void(const QString &status)> pageTurnStart;
    std::function<void()> pageTurnStop;
    // The correction window for a faulty NC line: shows `file` with `faultyLine` marked and
    // `errorText` above it. Returns "Ok" once the corrected text is saved over the file,
    // "Cancel" otherwise.
    std::function<QString(const QString &file, const QString &errorText, const QString &faultyLine)> correctFile;
    // The compilation's progress bar on the main window, 0 to 100 (percent of the estimated
    // path). Called once a move while compiling; the console and the tests ignore it.
    std::function<void(int16_t percent)> progress;
    // Ends the process at once, with no clean-up. Must not return.
    std::function<void(int exitCode)> endProcess;
};

// The hooks in force. Never null members after `ResetUiHooks`.
UiHooks &uiHooks();
// Back to the console defaults (the box is printed to standard error and answered with its
// first button; no busy display; a faulty NC file is not corrected; the process ends).
void ResetUiHooks();

// Set by the test programs: a process that ends inside a test (the console ending, not a
// test's own hook) exits with a failure code instead of the code asked for, so that it can
// never pass for a finished test.
extern bool gblnUnderTest;

// Lets queued events run: timers, the serial line, the operator's clicks.
void DoEvents();

// Called at the end of every DoEvents, after the queued events have run. Tests put the tick
// of their fake clock here, so that every turn of a waiting loop moves time on. Kept apart
// from UiHooks: ResetUiHooks leaves it alone. An empty function removes it.
void SetPumpHook(std::function<void()> hook);
