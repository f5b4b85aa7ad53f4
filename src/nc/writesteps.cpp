// WriteSteps: the walk over the command table that turns each command into step records.
// Called by EvaluateCommands with the analysed file open and the step state reset.
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/arcstep.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"
#include "tools/tooltable.h"

namespace {

// The first complete G0 is stored as coordinates, not steps: its start is known only at
// machining time. Two records, both stamped with minus the command number:
//   -n | Z hundredths (16) | 0 (16)        -n | X hundredths (16) | Y hundredths (16)
void AppendFirstMoveRecords(int32_t n, const CommandRecord &cmd)
{
    QByteArray rec = strLongToLongString(-n) + strIntToIntString(vb::CInt(cmd.sngZ * 100.0)) +
                     strIntToIntString(0) + strLongToLongString(-n) +
                     strIntToIntString(vb::CInt(cmd.sngX * 100.0)) + strIntToIntString(vb::CInt(cmd.sngY * 100.0));
    gstrStepBuffer.append(rec);
}

} // namespace

void WriteSteps() try {
    gstrStepBuffer.clear();
    for (int32_t n = 1; n <= glngCommandCount; ++n)
        if (gtypCommands(n).intType == kCmdRapid)
            gtypCommands(n).sngValue = gsngRapidSpeed;

    float sngDone = 0.0f, sngLastX = 0.0f, sngLastY = 0.0f, sngLastZ = 0.0f;
    bool blnFirstTool = true;
    for (int32_t n = 1; n <= glngCommandCount && !gblnCancel; ++n) {
        const CommandRecord cmd = gtypCommands(n);
        switch (cmd.intType) {
        case kCmdRapid:
            if (glngFirstMove == -1) {
                // A G0 with a coordinate not yet programmed can't be the first move: passed over.
                if (cmd.sngX == kNotProgrammed || cmd.sngY == kNotProgrammed || cmd.sngZ == kNotProgrammed)
                    break;
                glngFirstMove = n;
                AppendFirstMoveRecords(n, cmd);
                BuffMakeline(n, cmd.sngX, cmd.sngY, cmd.sngZ, cmd.sngValue, true);  // steps suppressed, counted
                UpdateProgress(sngDone, sngLastX, sngLastY, sngLastZ, cmd.sngX, cmd.sngY, cmd.sngZ);
                // The lead-in ends with the play taken up on every axis: the play is known.
                gintLastDirX = gintLastDirY = gintLastDirZ = -1;
                gintPlayX = gintBacklashX;
                gintPlayY = gintBacklashY;
                gintPlayZ = gintBacklashZ;
            } else {
                BuffMakeline(n, cmd.sngX, cmd.sngY, cmd.sngZ, cmd.sngValue, true);
                UpdateProgress(sngDone, sngLastX, sngLastY, sngLastZ, cmd.sngX, cmd.sngY, cmd.sngZ);
            }
            break;
        case kCmdLine:
            BuffMakeline(n, cmd.sngX, cmd.sngY, cmd.sngZ, cmd.sngValue, false);
            UpdateProgress(sngDone, sngLastX, sngLastY, sngLastZ, cmd.sngX, cmd.sngY, cmd.sngZ);
            break;
        case kCmdArcCw:
            BuffMakeArc(n, cmd.sngX, cmd.sngY, cmd.sngZ, cmd.sngValue, 1);
            UpdateProgress(sngDone, sngLastX, sngLastY, sngLastZ, cmd.sngX, cmd.sngY, cmd.sngZ);
            break;
        case kCmdArcCcw:
            BuffMakeArc(n, cmd.sngX, cmd.sngY, cmd.sngZ, cmd.sngValue, -1);
            UpdateProgress(sngDone, sngLastX, sngLastY, sngLastZ, cmd.sngX, cmd.sngY, cmd.sngZ);
            break;
        case kStepReserved:
        case kStepEnd:
            SendStepToBuffer(n, 0, 0, 0, 0.0f, 0.0f, 0.0f, cmd.intType);
            break;
        case kCmdSpeed:
            SendStepToBuffer(n, 0, 0, 0, cmd.sngValue, cmd.sngValue, cmd.sngValue, kStepSpeed);
            break;
        case kCmdTool:
            // The first tool is the one the Z origin is set with: it needs no correction.
            if (blnFirstTool) {
                blnFirstTool = false;
                gintCurrentTool = vb::CInt(cmd.sngValue);
                gsngToolOffset = gtypTools(intToolGetId(gintCurrentTool)).sngOffset;
            }
            SendStepToBuffer(n, 0, 0, 0, cmd.sngValue, cmd.sngValue, cmd.sngValue, kStepTool);
            break;
        default:
            break;  // 0 and G4 (14) produce nothing: no dwell reaches the machine
        }
    }
} catch (...) {
    LogError("modSteps", "WriteSteps");
}
