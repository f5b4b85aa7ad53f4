// The start and the stop of the program: Main, MainProcess (on the first tick of
// tmrShow), Shutdown (the only orderly way out), and the single-instance check.
#pragma once

#include <QString>

// The entry: refuses a second copy, shows frmSplash, reads the settings, loads the tool
// table and the recent files, opens the link and arms tmrShow. Returns once the start is
// armed; the program then lives on events.
void Main();
// Ends the program if another copy runs: the first copy's window is brought forward, or,
// if it can't be found, the refusal box. Never returns in the second copy.
void CheckPrevInstance();
class InstanceGuard;
void CheckPrevInstance(InstanceGuard &guard);   // the same with a given guard (tests)
// The second stage of the start: shows frmMain, then the first-run path or the file from
// the command line.
void MainProcess();
// tmrShow's first tick: MainProcess, then frmSplash hidden.
void tmrShow_Timer();
// Drops RTS, closes the port, deletes the work file, saves the recent files, unloads every
// form from the last to the first and ends the process. Runs once; a second call returns.
void Shutdown();

// The command line as one text (the whole of it is one NC file path). Set by main().
void SetCommandLine(const QString &strCommand);
QString CommandLine();

// Tests: Shutdown may run again.
void ResetShutdown();
