// Step encoding and the buffered writing of step records. Called for every single step of a
// compilation, so the hot path (strComposedStep, SendStepToBuffer) does no allocation and
// no text handling: a record is built in 8 bytes on the stack and appended to the buffer.
#include "nc/stepcode.h"

#include "core/filenum.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "tools/tooltable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cmath>

StepBuffer gstrStepBuffer;
int32_t glngStepTimer = -1;
float gsngStepSpeedX = 0.0f;
float gsngStepSpeedY = 0.0f;
float gsngStepSpeedZ = 0.0f;
int32_t glngFirstMove = -1;
bool gblnStepsToWorkFile = false;
int16_t gintAnalysedFile = 0;
float gsngOldToolOffset = 0.0f;
float gsngToolOffset = 0.0f;
bool gblnToolOffsetPending = false;

void StepBuffer::grow(size_t needed)
{
    size_t capacity = std::max<size_t>(4096, m_capacity * 2);
    while (capacity < needed)
        capacity *= 2;
    auto data = std::make_unique<char[]>(capacity);
    if (m_size)
        std::memcpy(data.get(), m_data.get(), m_size);
    m_data = std::move(data);
    m_capacity = capacity;
}

void ResetStepState()
{
    gstrStepBuffer.clear();
    glngStepTimer = -1;
    gsngStepSpeedX = gsngStepSpeedY = gsngStepSpeedZ = 0.0f;
    gintPlayX = gintPlayY = gintPlayZ = 0;
    gintLastDirX = gintLastDirY = gintLastDirZ = -1;
    glngFirstMove = -1;
    gblnStepsToWorkFile = false;
    gintAnalysedFile = 0;
    gsngOldToolOffset = gsngToolOffset = 0.0f;
    gblnToolOffsetPending = false;
}

namespace {

inline void putLong(char *p, int32_t value)
{
    const uint32_t u = static_cast<uint32_t>(value);
    p[0] = static_cast<char>(u & 0xFF);
    p[1] = static_cast<char>((u >> 8) & 0xFF);
    p[2] = static_cast<char>((u >> 16) & 0xFF);
    p[3] = static_cast<char>((u >> 24) & 0xFF);
}

inline void countAxis(int32_t &pos, int16_t delta)
{
    if (__builtin_add_overflow(pos, static_cast<int32_t>(delta), &pos))
        vb::Err(vb::kOverflow);
}

// Steps 3 and 4 of SendStepToBuffer, shared with the backlash steps: store the record unless it
// belongs to the first move (whose steps are replaced by its coordinates), flush a full buffer
// (never on command 0), and count the position unless this is the run that moves without
// counting (the negative number of the machining-time lead-in).
inline void storeRecord(int32_t lngCommand, const ComposedStep &step, int16_t intX, int16_t intY, int16_t intZ)
{
    if (lngCommand != glngFirstMove) {
        char rec[8];
        putLong(rec, lngCommand);
        std::memcpy(rec + 4, step.data(), 4);
        gstrStepBuffer.append(rec, 8);
        if (lngCommand != 0 && gstrStepBuffer.size() > kFlushAbove)
            FlushStepBuffer();
    }
    if (static_cast<int64_t>(lngCommand) != -static_cast<int64_t>(glngFirstMove)) {
        countAxis(glngPosX, intX);
        countAxis(glngPosY, intY);
        countAxis(glngPosZ, intZ);
    }
}

// Play due on one axis when it reverses with this step: the due play times the new direction,
// and the axis is armed with its full backlash for the next reversal.
inline int16_t playCount(int16_t intDir, int16_t &intLastDir, int16_t &intPlay, int16_t intBacklash)
{
    if (intDir == 0 || intDir == intLastDir)
        return 0;
    intLastDir = intDir;
    int16_t count = vb::Int16(static_cast<int64_t>(intPlay) * intDir);
    intPlay = intBacklash;
    return count;
}

inline int16_t towardsZero(int16_t n) { return n > 0 ? n - 1 : (n < 0 ? n + 1 : 0); }

} // namespace

QByteArray strLongToLongString(int32_t lngValue)
{
    char p[4];
    putLong(p, lngValue);
    return QByteArray(p, 4);
}

QByteArray strIntToIntString(int16_t intValue)
{
    const uint16_t u = static_cast<uint16_t>(intValue);
    const char p[2] = {static_cast<char>(u & 0xFF), static_cast<char>(u >> 8)};
    return QByteArray(p, 2);
}

ComposedStep strComposedStep(int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX, float sngSpeedY,
                             float sngSpeedZ, int16_t intType) try {
    ComposedStep out{};
    if (intType != kStepMove) {
        glngStepTimer = 0;
        gsngStepSpeedX = gsngStepSpeedY = gsngStepSpeedZ = 0.0f;
        out[3] = static_cast<char>(intType == kStepSpeed ? kCodeSpeed : (intType == kStepTool ? kCodeTool : 0));
        return out;
    }
    // The record carries the timer of the step before it: the controller loads the count for
    // the next step while it makes this one.
    if (glngStepTimer == 0)
        glngStepTimer = kTimerFloor;
    const int32_t timer = glngStepTimer;

    // A diagonal step is longer: the axis speeds drop so that the path speed stays.
    const int axes = (intX != 0) + (intY != 0) + (intZ != 0);
    if (axes == 2) {
        if (intX != 0) sngSpeedX = static_cast<float>(sngSpeedX / 1.41421);
        if (intY != 0) sngSpeedY = static_cast<float>(sngSpeedY / 1.41421);
        if (intZ != 0) sngSpeedZ = static_cast<float>(sngSpeedZ / 1.41421);
    } else if (axes == 3) {
        sngSpeedX = static_cast<float>(sngSpeedX / 1.73205);
        sngSpeedY = static_cast<float>(sngSpeedY / 1.73205);
        sngSpeedZ = static_cast<float>(sngSpeedZ / 1.73205);
    }
    gsngStepSpeedX = static_cast<float>(intX * sngSpeedX);
    gsngStepSpeedY = static_cast<float>(intY * sngSpeedY);
    gsngStepSpeedZ = static_cast<float>(intZ * sngSpeedZ);
    float m = std::max({std::fabs(gsngStepSpeedX), std::fabs(gsngStepSpeedY), std::fabs(gsngStepSpeedZ)});
    if (m == 0.0f)
        m = 12.0f;  // speed 0 goes at the slowest speed a record can carry

    // m mm/min is 1.2 m steps/s; 768000 / m is the count at the controller's 921600 Hz tick.
    // Most steps repeat the speed of the step before (a feed held, an arc): the last speed's
    // timer is kept, which spares the division. The result is the same either way.
    static float lastM = -1.0f;
    static int32_t lastTimer = 0;
    if (m != lastM) {
        int32_t t = 65536 - vb::CLng(768000.0 / m);
        if (t < kTimerFloor)
            t = kTimerFloor;
        lastM = m;
        lastTimer = t;
    }
    glngStepTimer = lastTimer;

    int flags = 0;
    if (intX != 0) flags |= 4;
    if (intY != 0) flags |= 8;
    if (intZ != 0) flags |= 16;
    if (intX > 0) flags |= 32;
    if (intY > 0) flags |= 64;
    if (intZ > 0) flags |= 128;
    int code = (intX + 1) * 2 + (intY + 1) * 8 + (intZ + 1) * 32;
    if (m == gsngRapidSpeed)
        code += 1;
    out[0] = static_cast<char>(flags);
    // Low byte, then the high byte of the value divided by 256 truncated: -1 gives 255, 0.
    out[1] = static_cast<char>(static_cast<uint32_t>(timer) & 0xFF);
    out[2] = static_cast<char>(static_cast<uint32_t>(timer / 256) & 0xFF);
    out[3] = static_cast<char>(code);
    return out;
} catch (...) {
    LogError("modSteps", "strComposedStep");
}

void SendStepToBuffer(int32_t lngCommand, int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX,
                      float sngSpeedY, float sngSpeedZ, int16_t intType) try {
    // Backlash steps go ahead of a reversing step. The test here only spares the call on the
    // common step that reverses nothing; SendPlayToBuffer makes the same test itself.
    if (intType == kStepMove && ((intX != 0 && intX != gintLastDirX) || (intY != 0 && intY != gintLastDirY) ||
                                 (intZ != 0 && intZ != gintLastDirZ)))
        SendPlayToBuffer(lngCommand, intX, intY, intZ, sngSpeedX, sngSpeedY, sngSpeedZ);

    const ComposedStep step = strComposedStep(intX, intY, intZ, sngSpeedX, sngSpeedY, sngSpeedZ, intType);
    storeRecord(lngCommand, step, intX, intY, intZ);

    if (intType == kStepTool) {
        // The tool changes here; the next motion moves the Z difference between the tools.
        gintCurrentTool = vb::CInt(gtypCommands(lngCommand).sngValue);
        gsngOldToolOffset = gsngToolOffset;
        gsngToolOffset = gtypTools(intToolGetId(gintCurrentTool)).sngOffset;
        gblnToolOffsetPending = true;
    }
} catch (...) {
    LogError("modSteps", "SendStepToBuffer");
}

void SendPlayToBuffer(int32_t lngCommand, int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX,
                      float sngSpeedY, float sngSpeedZ) try {
    int16_t cx = playCount(intX, gintLastDirX, gintPlayX, gintBacklashX);
    int16_t cy = playCount(intY, gintLastDirY, gintPlayY, gintBacklashY);
    int16_t cz = playCount(intZ, gintLastDirZ, gintPlayZ, gintBacklashZ);
    // All reversing axes take up together, at the speed of the step that reversed them.
    while (vb::Int16(static_cast<int64_t>(std::abs(cx)) + std::abs(cy) + std::abs(cz)) > 0) {
        const int16_t sx = static_cast<int16_t>(vb::Sgn(cx));
        const int16_t sy = static_cast<int16_t>(vb::Sgn(cy));
        const int16_t sz = static_cast<int16_t>(vb::Sgn(cz));
        const ComposedStep step =
            strComposedStep(sx, sy, sz, std::fabs(sngSpeedX) * sx, std::fabs(sngSpeedY) * sy,
                            std::fabs(sngSpeedZ) * sz, kStepMove);
        storeRecord(lngCommand, step, sx, sy, sz);
        cx = towardsZero(cx);
        cy = towardsZero(cy);
        cz = towardsZero(cz);
    }
} catch (...) {
    LogError("modSteps", "SendPlayToBuffer");
}

void FlushStepBuffer()
{
    if (gstrStepBuffer.isEmpty())
        return;
    FilePut(gblnStepsToWorkFile ? gintWorkFile : gintAnalysedFile, gstrStepBuffer.data(), gstrStepBuffer.size());
    gstrStepBuffer.clear();
}

QString strTempFile() try {
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/QORXXXXXX.tmp"));
    file.setAutoRemove(false);
    if (!file.open())
        vb::Err(vb::kPathFileAccess);
    QString path = file.fileName();
    file.close();
    return path;
} catch (...) {
    LogError("modSteps", "strTempFile");
}

void KillFile(const QString &strFile, int16_t intFile) try {
    if (strFile.isEmpty())
        return;
    if (intFile > 0)
        FileClose(intFile);
    if (blnStdFileExists(strFile) && !QFile::remove(strFile))
        vb::Err(vb::kPermissionDenied);
} catch (...) {
    LogError("modSteps", "KillFile");
}

void KillWorkFile() try {
    KillFile(gstrWorkFile, gintWorkFile);
} catch (...) {
    LogError("modSteps", "KillWorkFile");
}
