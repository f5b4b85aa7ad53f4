// Command evaluation: compiles the command table into the analysed file. Runs after the
// reader when no valid analysed file exists, under the progress bar. It simulates the whole
// program, so every position, backlash and tool value it touches is saved at the start and
// put back at the end: the machine's real state is unchanged by a compilation.
#pragma once

#include <cstdint>

extern float gsngPathTotal;   // estimated total path of the program, mm: the progress bar's 100 %

// Compiles gtypCommands into gstrAnalysedFile. Expects gblnCancel clear and gstrAnalysedFile /
// gstrDigest set by strCompFileReason. With gblnAnalysedValid set it only builds the profile
// and resets the step state. Leaves gblnStepsToWorkFile set.
void EvaluateCommands();
// Walks the command table through the steppers (called by EvaluateCommands with the analysed
// file open). Stops at the next command once gblnCancel is set.
void WriteSteps();
// Adds the straight distance from the last point to (sngX, sngY, sngZ) to sngDone, shows the
// percentage of gsngPathTotal (at most 100) and yields; the point becomes the last point.
void UpdateProgress(float &sngDone, float &sngLastX, float &sngLastY, float &sngLastZ, float sngX, float sngY,
                    float sngZ);
