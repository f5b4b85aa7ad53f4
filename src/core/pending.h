// Procedures that other parts of the program provide and that the start, the stop and the
// main window call already. Until each part is built, the stand-in here does what is safe:
// nothing, or the plain first step. Each names the part that replaces it; when that part
// arrives, its stand-in is deleted from pending.cpp and its header included instead.
#pragma once

#include <QString>

#include <cstdint>

// --- Recent files (replaced by the recent-files part).
void MRUGetFileList();                                  // fills mnuMMru from the store
void MRUSaveFileList();                                 // writes mnuMMru back
void mnuMMru_Click(int intIndex);                       // LaunchFile(its Tag, Index)

// --- File choice and import (replaced by the file selection part).
void LaunchFile(const QString &strFile, int16_t intMRUIndex);   // into the set-up wizard
void mnuTimport_Click();

// --- Machining set-up wizard, offset wizard, billet help.
void ShowSetMill();
void SetSetStep(int16_t intStep);
void ShowOffset();
void SetOffStep(int16_t intStep);
// The ways back from a wizard's task on the manual screen (-1: the task has ended).
void ReturnToSetMill(int16_t intStep);
void ReturnToOffset();
void ShowBillet(const QString &strReturn);
void ShowMethod();                                     // after a run: the subsequent-part screen

// --- Code editor (replaced by the code editor part).
void ShowCodeEditor();                                  // frmCNCEdit, modal
void CodeEditorDeactivated();                           // unloads frmFind when the editor is loaded
