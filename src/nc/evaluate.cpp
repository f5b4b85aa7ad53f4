// EvaluateCommands and its progress display. Called by the machining set-up wizard (and by
// `brantok-nc compile`) on the user interface thread; it yields once a move through
// UpdateProgress, which is when the operator's cancel key can set gblnCancel.
#include "nc/evaluate.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <QElapsedTimer>
#include <QFile>

#include <cmath>

float gsngPathTotal = 0.0f;

namespace {

// The first pass: an estimate of the program's path for the progress bar. Lines count their
// length (a coordinate still at 300.0 is not programmed and adds nothing); arcs count a
// quarter of pi times the sum of their axis distances, whatever their form.
void EstimatePath()
{
    float sngLastX = 0.0f, sngLastY = 0.0f, sngLastZ = 0.0f;
    for (int32_t n = 1; n <= glngCommandCount; ++n) {
        const CommandRecord &cmd = gtypCommands(n);
        if (cmd.intType == kCmdRapid || cmd.intType == kCmdLine) {
            double sum = 0.0;
            const float to[3] = {cmd.sngX, cmd.sngY, cmd.sngZ};
            float *last[3] = {&sngLastX, &sngLastY, &sngLastZ};
            for (int a = 0; a < 3; ++a) {
                if (to[a] < kNotProgrammed) {
                    const double d = static_cast<double>(to[a]) - *last[a];
                    sum += d * d;
                    *last[a] = to[a];
                }
            }
            gsngPathTotal = static_cast<float>(gsngPathTotal + std::sqrt(sum));
        } else if (cmd.intType == kCmdArcCw || cmd.intType == kCmdArcCcw) {
            const double d = std::fabs(static_cast<double>(cmd.sngX) - sngLastX) +
                             std::fabs(static_cast<double>(cmd.sngY) - sngLastY) +
                             std::fabs(static_cast<double>(cmd.sngZ) - sngLastZ);
            gsngPathTotal = static_cast<float>(gsngPathTotal + d * 3.14159 / 4);
            sngLastX = cmd.sngX;
            sngLastY = cmd.sngY;
            sngLastZ = cmd.sngZ;
        }
    }
}

// The closing sequence of a compilation that was not cancelled.
void CloseProgram()
{
    // A program that ended on a T with no move after it: a marker, then the Z correction of
    // the last tool, so the machine ends with the offsets as the program left them.
    if (gblnToolOffsetPending) {
        SendStepToBuffer(0, 0, 0, 0, 0.0f, 0.0f, 0.0f, kStepToolMarker);
        BuffMakeline(0, gsngCurX, gsngCurY, gsngCurZ, gsngRapidSpeed, false);
    }
    // Backlash return: every axis that last moved positive moves back through its play, so the
    // next job starts with the play known. Command number 0: the stream stops ahead of these.
    const auto returnCount = [](int16_t &intLastDir, int16_t &intPlay, int16_t intBacklash) -> int16_t {
        if (intLastDir != 1)
            return 0;
        intLastDir = -1;
        intPlay = intBacklash;
        return vb::Int16(-static_cast<int32_t>(intBacklash));
    };
    int16_t cx = returnCount(gintLastDirX, gintPlayX, gintBacklashX);
    int16_t cy = returnCount(gintLastDirY, gintPlayY, gintBacklashY);
    int16_t cz = returnCount(gintLastDirZ, gintPlayZ, gintBacklashZ);
    while (cx != 0 || cy != 0 || cz != 0) {
        SendStepToBuffer(0, static_cast<int16_t>(vb::Sgn(cx)), static_cast<int16_t>(vb::Sgn(cy)),
                         static_cast<int16_t>(vb::Sgn(cz)), gsngRapidSpeed, gsngRapidSpeed, gsngRapidSpeed, kStepMove);
        cx = static_cast<int16_t>(cx - vb::Sgn(cx));
        cy = static_cast<int16_t>(cy - vb::Sgn(cy));
        cz = static_cast<int16_t>(cz - vb::Sgn(cz));
    }
    SendStepToBuffer(0, 0, 0, 0, 0.0f, 0.0f, 0.0f, kStepEnd);
}

} // namespace

void UpdateProgress(float &sngDone, float &sngLastX, float &sngLastY, float &sngLastZ, float sngX, float sngY,
                    float sngZ) try {
    const double dX = static_cast<double>(sngX) - sngLastX;
    const double dY = static_cast<double>(sngY) - sngLastY;
    const double dZ = static_cast<double>(sngZ) - sngLastZ;
    sngDone = static_cast<float>(sngDone + std::sqrt(dX * dX + dY * dY + dZ * dZ));
    if (!gblnCancel) {
        // A program with no path at all divides by zero, as the original does: 0 / 0 is an
        // overflow, anything else / 0 a division by zero; both go to the trap.
        if (gsngPathTotal == 0.0f)
            vb::Err(sngDone == 0.0f ? vb::kOverflow : vb::kDivisionByZero);
        // Capped before it is rounded (the same result): a path far beyond the estimate, as a
        // G1 ahead of the first G0 to coordinates not yet programmed makes, shows 100.
        double percent = static_cast<double>(sngDone) * 100 / gsngPathTotal;
        if (percent > 100)
            percent = 100;
        uiHooks().progress(vb::CInt(percent));
        // The interface gets its turn at most every 20 ms: a turn of the event loop costs more
        // than a short move, and 20 ms is far below what an operator's Esc can tell apart.
        static QElapsedTimer sinceYield;
        if (!sinceYield.isValid() || sinceYield.elapsed() >= 20) {
            DoEvents();
            sinceYield.start();
        }
    }
    sngLastX = sngX;
    sngLastY = sngY;
    sngLastZ = sngZ;
} catch (...) {
    LogError("modEvaluate", "UpdateProgress");
}

void EvaluateCommands() try {
    // 1. Save what the simulation will touch; start from a known play on every axis.
    const int32_t savedPos[3] = {glngPosX, glngPosY, glngPosZ};
    const int16_t savedBacklash[3] = {gintBacklashX, gintBacklashY, gintBacklashZ};
    const int16_t savedPlay[3] = {gintPlayX, gintPlayY, gintPlayZ};
    const int16_t savedDir[3] = {gintLastDirX, gintLastDirY, gintLastDirZ};
    gintLastDirX = gintLastDirY = gintLastDirZ = -1;
    gintPlayX = gintBacklashX;
    gintPlayY = gintBacklashY;
    gintPlayZ = gintBacklashZ;
    gblnToolOffsetPending = false;
    if (!gblnNewPart && !gblnRepeatPart) {
        gintCurrentTool = 0;
        gintNextTool = 0;
    }
    gintAccelIndex = 0;
    CreateAccelProfile(0.4f);
    gblnStepsToWorkFile = false;

    // 2. A valid analysed file needs only the profile and the reset state.
    if (!gblnAnalysedValid) {
        // 3. and 4.
        gsngCurX = gsngCurY = gsngCurZ = 0.0f;
        glngStepTimer = -1;
        glngFirstMove = -1;
        gsngPathTotal = 0.0f;
        EstimatePath();

        // 5. and 6. A fresh file: header, command table, steps.
        if (blnStdFileExists(gstrAnalysedFile) && !QFile::remove(gstrAnalysedFile))
            vb::Err(vb::kPermissionDenied);
        gintAnalysedFile = FreeFile();
        FileOpen(gintAnalysedFile, gstrAnalysedFile, FileMode::Output);
        FilePut(gintAnalysedFile, strAnalysedHeader());
        SaveCommands();
        WriteSteps();

        // 7. to 9. A finished program gets its closing steps, the last block and the trailer.
        if (!gblnCancel) {
            CloseProgram();
            FlushStepBuffer();
            FilePut(gintAnalysedFile, strLongToLongString(vb::Int32(FileLength(gintAnalysedFile) + 4)));
        }

        // 10. A cancelled compilation leaves no file, or (files kept) one without a trailer,
        //     which the next check throws out as incomplete.
        FileClose(gintAnalysedFile);
        gintAnalysedFile = 0;
        if (gblnCancel && (!gblnKeepFiles || gblnAnalysedToTemp) && blnStdFileExists(gstrAnalysedFile))
            QFile::remove(gstrAnalysedFile);
    }

    // 11. The machine's own state back; from now on step buffers go to the work file.
    glngPosX = savedPos[0];
    glngPosY = savedPos[1];
    glngPosZ = savedPos[2];
    gintBacklashX = savedBacklash[0];
    gintBacklashY = savedBacklash[1];
    gintBacklashZ = savedBacklash[2];
    gintPlayX = savedPlay[0];
    gintPlayY = savedPlay[1];
    gintPlayZ = savedPlay[2];
    gintLastDirX = savedDir[0];
    gintLastDirY = savedDir[1];
    gintLastDirZ = savedDir[2];
    gblnStepsToWorkFile = true;
} catch (...) {
    LogError("modEvaluate", "EvaluateCommands");
}
