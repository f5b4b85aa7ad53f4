// The words of the set-up wizard: the title, page and task of each step, the end-stop
// warning and the page of the final calculations. Each page is rich text with the pages'
// one prologue (the desktop's sans-serif font at 10 points, colours black, blue, red) and
// hanging numbered lines; guide/rich_page.h has the pieces.
//
// Steps are the wizard's own numbers (0..10); the operator reads titles one higher, and
// 8 (reading), 9 (analysis) and 10 (cancel) stand outside that order. A step is fresh unless
// the subsequent-part choice asked to repeat a part or to make a new one on the same billet.
#pragma once

#include <QString>

#include <cstdint>

// The title of step n ("" for a number that isn't a step).
QString strSetStepTitle(int16_t intStep, bool blnFresh);
// The page of step n. blnBack: reached with Back (the origin steps then drop their numbered
// lines); blnToolUnknown: at step 1, a tool of the program has no measured offset.
// Reads the shared state it names: the billet size (step 2), the first tool (step 3), the
// reason for the analysis (step 9).
QString strSetStepPage(int16_t intStep, bool blnFresh, bool blnBack, bool blnToolUnknown);
// The task run on the manual screen when step n is entered going forward; "" for none.
QString strSetTask(int16_t intStep, bool blnFresh);
// The cutter picture that stands beside the task of step n ("CutterTop", "CutterSide",
// "CutterFront"), "" for none.
QString strSetTaskCutter(int16_t intStep);
// The task of step n runs with the spindle controls.
bool blnSetTaskSpindle(int16_t intStep);
// Step n shows the end-stop warning over its page.
bool blnSetStepWarns(int16_t intStep, bool blnFresh);
// The end-stop warning of rtbWarn.
QString strSetWarning();
// "Step 9: Final calculations": the page under the machining screen while the run is prepared.
QString strFinalCalculationsPage();
// A body of paragraphs as a whole page, with the prologue.
QString strSetPageDocument(const QString &strBody);
