// The tool offset wizard (picOffset, mode 7): measures each tool's length offset with a
// strip of thin paper. First the bright rim of the empty spindle nips the paper on a skimmed
// billet (Z = 0, the datum), then each tool in turn nips it on the same surface; the Z count
// of that nip, in mm, is the tool's offset.
//
// Steps 0..6 (the operator reads 1..7). A step's page stands in the wizard; its task, the
// work the page before announced, runs on the manual screen when the step is entered going
// forward. Order: 0 1 2 3 4 5 6, then More gives 3 4 5 6 for each further tool.
//
//   step  title                                   task (manual screen)          picture
//   0     Step 1: Prepare a Datum Surface         -
//   1     Step 2: Set the Measurement Datum       skim the billet (spindle)     Skim
//   2     Step 3: Raise the Milling Head          nip paper with the rim        Paper      -> datum Z = 0
//   3     Step 4: Select Tool (grid)              raise the head
//   4     Step 5: Measure the offset (grid)       -
//   5     Step 6: Raise the Tool                  nip paper with the tool       OffsetTop  -> offset stored
//   6     Step 7: Remove the Tool                 raise the head
//
// Entered by SetMode(7) (the main menu's "Offsets", or Get Offsets of the set-up wizard
// through tmrGetOffset); always ends at the main menu (Cancel, Finish).
#pragma once

#include <QPixmap>
#include <QString>

#include <cstdint>

// Called by SetMode(7): centres the panel and its frames, sets up the tool grid.
void ShowOffset();
// Composes and shows the page of step `intStep`, and runs its task if the move is forward.
void SetOffStep(int16_t intStep);
// The navigation buttons for gintOffStep.
void SetOffNavBtns();
// Back from a task on the manual screen (KeyControl's end, when the set-up wizard isn't on).
void ReturnToOffset();

// The page and the task of a step as rich text, and its title (for the tests and the
// screenshots as much as for SetOffStep). Pages 3 and 4 need gintOffsetTool for 4.
QString strOffStepTitle(int16_t intStep);
QString strOffStepPage(int16_t intStep);
QString strOffStepTask(int16_t intStep);   // empty: the step has no task

// The pictures beside the tasks (offset_art.cpp): "Skim", "Paper", "OffsetTop".
QPixmap ilsOffsetPicture(const QString &strKey);
