// Procedures that other parts of the program provide and that the start, the stop and the
// main window call already. Until each part is built, the stand-in here does what is safe:
// nothing, or the plain first step. Each names the part that replaces it; when that part
// arrives, its stand-in is deleted from pending.cpp and its header included instead.
#pragma once

#include <QString>

#include <cstdint>

// --- Recent files, file choice and import: declared in their own headers, stand-ins here.
#include "files/filechoice.h"
#include "files/recent.h"

// --- Billet help. (The set-up wizard: guide/setmill.h; the offset wizard: its own header.)
void ShowBillet(const QString &strReturn);

// --- Code editor (replaced by the code editor part).
void ShowCodeEditor();                                  // frmCNCEdit, modal
void CodeEditorDeactivated();                           // unloads frmFind when the editor is loaded
