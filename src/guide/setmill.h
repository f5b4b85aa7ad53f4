// The machining set-up wizard: from the wish to mill a part to the first step pulse.
// Choose the NC file, confirm the tool offsets, analyse the file, secure the billet, set
// the Z, X and Y origins with the cutter on the manual screen, and start the run.
//
// Steps (gintSetStep): 0 choose a file, 8 reading it, 1 the tools, 9 the analysis,
// 2 the billet, 3 the first tool (task: secure the billet), 4 Z (task: touch the top),
// 5 X (task: touch the left hand end), 6 Y (task: touch the front), 7 ready (task: raise the
// cutter), 10 the cancel page. A task runs on the manual screen when its step is entered
// going forward; the key loop comes back through ReturnToSetMill.
//
// Everything runs on the one thread: reading, analysing and the start pump the message loop
// inside cmdSetNav_Click, whose busy flag drops every other navigation click meanwhile; the
// stop that works there is the Esc key (the main window's key preview sets gblnCancel).
#pragma once

#include <QString>

#include <cstdint>

// The step being shown was reached with Back; cleared at every click of a navigation button.
extern bool gblnSetStepBack;
// Start may be enabled: set on reaching step 7, cleared by ShowSetMill and by any Back.
extern bool gblnStartAllowed;

// SetMode(3): centres the panel, clears gblnStartAllowed, sets up the tool grid.
void ShowSetMill();
// Composes and shows the page of step n and runs its task (see above).
void SetSetStep(int32_t intStep);
// The navigation buttons for gintSetStep.
void SetSetNavBtns();
// The way back from the manual screen (-1: a task has ended) and the entry with a file
// already chosen (8: from the recent files or the command line).
void ReturnToSetMill(int16_t intStep);
// Reads the chosen file, again as long as the correction window corrected it.
void FileSelected(const QString &strFile);
// The navigation buttons: 0 Get Offsets / No, 1 Cancel, 2 Back, 3 Next / Yes / Ok, 4 Start.
void cmdSetNav_Click(int16_t intIndex);
// The tool grid's sort buttons.
void cmdSetSort_Click(int16_t intIndex);
// Billet help from step 3's page.
void cmdExplain_Click();

// Back to the state before any wizard (tests).
void ResetSetMill();

// Our button to the toolpath preview, in the file header's corner: shown (blnAnalysed) on the
// steps after the analysis while the analysed file exists.
class QPushButton;
QPushButton *cmdSetPreview();
void ShowSetMillPreview(bool blnAnalysed);
void cmdSetPreview_Click();
