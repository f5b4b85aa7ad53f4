// The error trap and the file questions.
//
// Every procedure that has a trap is written as a function-try-block:
//
//     void ToolDataLoad() try {
//         ...
//     } catch (...) {
//         LogError("F1Mill", "ToolDataLoad");
//     }
//
// LogError reads the fault's number and description from the exception in flight,
// shows "An error has occurred in ..." and ends the process at once: no Shutdown,
// no saving. Open files and the serial port are left to the operating system.
#pragma once

#include <QString>

#include <cstdint>
#include <exception>
#include <functional>

// True: running with the trap disarmed, faults go on to the debugger. A build switch,
// false in every release build. Set once by gblnVBInDesign.
extern bool gblnInDesign;
void gblnVBInDesign();

// The program's title and version as the reports show them ("Brantok", "1.0.0").
QString AppTitle();
QString AppVersion();

// The trap's tail: report the fault in flight under `strModule` / `strProcedure`, then end.
// Called only from inside a catch handler.
[[noreturn]] void LogError(const char *strModule, const char *strProcedure);
// The same with the number and description given.
[[noreturn]] void LogError(const QString &strModule, const QString &strProcedure, int32_t lngNumber,
                           const QString &strDescription);

// The number and description of an exception, as the trap reports them:
// a run-time fault keeps its own; out of memory is 7; anything else is 5.
void FaultOf(std::exception_ptr e, int32_t &number, QString &description);

// The report of `Main`'s own handler ("Cannot start ..."), shown and then the end.
[[noreturn]] void ReportStartFault();

// The text and title LogError shows (exposed for the command-line tool and tests).
QString TrapReport(const QString &strModule, const QString &strProcedure, int32_t lngNumber,
                   const QString &strDescription);
QString TrapTitle();

// Thrown by a test's end-of-process hook so that a trapped fault unwinds instead of ending
// the test program. LogError passes it on untouched: the first report is the one that counts.
struct TrapEnded : std::exception {
    const char *what() const noexcept override { return "the error trap ended the program"; }
};

// A path ending in a separator is never a file; otherwise true only for an existing file.
bool blnStdFileExists(const QString &strFile);
// Optical media always; a removable disk only with less than 5 MiB free; anything else no.
bool blnRemovableMedia(const QString &strPath);
