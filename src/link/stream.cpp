// The machining stream: StartMilling, intSendNextBuffer, SendToMill. See stream.h.
//
// Everything runs on the one thread, inside tmrStartMilling's tick. The waits (blnGetReplies,
// the port's write wait, the message boxes, the in-run prompt) pump the event loop, so the
// serial events, Esc on the main window and the watchdog run inside them and only set flags:
// gblnCancel (Esc, a cancelled prompt, a time-out), gblnDoorStopped and gblnSpindleOn (the
// door and the spindle, from the controller's characters). The loop acts on the flags.
#include "link/stream.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/vb.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"
#include "platform/clock.h"
#include "tools/tooltable.h"

#include <QFile>
#include <QtEndian>

#include <cmath>
#include <cstring>

int16_t gintBufferSlot = 0;
std::array<SentBuffer, 16> gtypSentBuffers{};
int32_t glngRunCommand = 0;
int32_t glngLastTag = 0;
int32_t glngCodeFindPos = 0;
int32_t glngLastTick = 0;
int32_t glngMachiningTime = 0;
float gsngSpindleSpeed = 0.0f;
bool gblnMillDone = false;
QString gstrMillCode;

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Control bytes of the records that are never sent, and the status each gives.
int16_t StopStatus(uint8_t code)
{
    switch (code) {
    case 144: return 6;
    case 160: return 7;
    case 176: return 8;
    case 192: return 15;
    default: return 0;
    }
}

void SetPanel(const char *key, const QString &text)
{
    if (linkHooks().setPanel)
        linkHooks().setPanel(QString::fromLatin1(key), text);
}

// Reads n bytes into out. False when the file ended first (the missing bytes read as zero),
// which is what the end-of-file test after a read tells.
bool GetBytes(int16_t intFile, char *out, qint64 n)
{
    QFile &f = FileOf(intFile);
    const bool whole = f.pos() + n <= f.size();
    const QByteArray b = FileGet(intFile, n);
    std::memcpy(out, b.constData(), static_cast<size_t>(n));
    return whole;
}

int32_t GetLong(int16_t intFile)
{
    unsigned char b[4];
    GetBytes(intFile, reinterpret_cast<char *>(b), 4);
    return static_cast<int32_t>(uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24);
}

int16_t GetInt(int16_t intFile)
{
    unsigned char b[2];
    GetBytes(intFile, reinterpret_cast<char *>(b), 2);
    return static_cast<int16_t>(uint16_t(b[0]) | uint16_t(b[1]) << 8);
}

// The clock in whole seconds (the machining time's tick).
int32_t ClockSeconds() { return vb::CLng(appClock().seconds()); }

// The command's text as the code display holds it: tabs as two blanks.
QString CodeText(const QString &strText) { return QString(strText).replace(u'\t', QStringLiteral("  ")); }

// Shows glngRunCommand: the bar and the line marked in the code display.
void ShowRunCommand()
{
    int32_t progress = glngCommandCount > 0 ? vb::CLng(glngRunCommand * 100.0 / glngCommandCount) : 100;
    if (progress > 100)
        progress = 100;
    if (streamHooks().millProgress)
        streamHooks().millProgress(static_cast<int16_t>(progress));
    if (streamHooks().markCode)
        streamHooks().markCode(qMax(glngCodeFindPos, 0), 0);
    if (glngRunCommand < 1 || glngRunCommand > glngCommandCount)
        return;
    // Only the first 37 characters are looked for: long lines are found by their start.
    const QString find = vb::Left(CodeText(gtypCommands(glngRunCommand).strText), 37);
    if (find.isEmpty())
        return;
    glngCodeFindPos = static_cast<int32_t>(gstrMillCode.indexOf(find, qMax(glngCodeFindPos, 0)));
    if (glngCodeFindPos >= 0 && streamHooks().markCode)
        streamHooks().markCode(glngCodeFindPos, static_cast<int32_t>(find.size()));
}

// The questions after an interruption. Abandoned: the operator chose No or Cancel and the
// screen to go back to has been asked for.
enum class Answer { GoOn, Abandoned };

Answer CancelTo(bool blnWizard)
{
    if (blnWizard) {
        if (streamHooks().backToWizard)
            streamHooks().backToWizard();
    } else if (streamHooks().backToMenu) {
        streamHooks().backToMenu();
    }
    return Answer::Abandoned;
}

Answer AskToContinue(const QString &strTitle)
{
    const int16_t answer = intStdMsgBox(QStringLiteral("Do you want to continue machining?") + kCrLf +
                                            QStringLiteral("Click YES to carry on ") + kCrLf +
                                            QStringLiteral("or NO to return to Main Menu"),
                                        vbYesNo + vbQuestion + vbDefaultButton2, strTitle);
    if (answer != vbYes)
        return CancelTo(true);
    gblnCancel = false;
    for (;;) {
        SpindleStart();
        if (gblnSpindleOn)
            break;
        if (intStdMsgBox(QStringLiteral("Please close the door and click RETRY to carry on") + kCrLf +
                             QStringLiteral("or CANCEL to return to Main Menu"),
                         vbRetryCancel + vbExclamation, QString()) != vbRetry)
            return CancelTo(false);
    }
    if (intStdMsgBox(QStringLiteral("Please confirm that the spindle speed control knob is set to ") +
                         QString::number(std::lround(gsngSpindleSpeed)) + kCrLf +
                         QStringLiteral("Click OK to carry on or CANCEL to return to Main Menu"),
                     vbOKCancel + vbQuestion, QStringLiteral("Machining interrupted")) != vbOK)
        return CancelTo(false);
    return Answer::GoOn;
}

// A run that is over without its end: both files closed, the work file deleted (there is
// no resume; the next run starts from the method screen and makes a new one), spindle off.
void AbandonRun()
{
    FileClose(gintAnalysedFile);
    gintAnalysedFile = 0;
    KillWorkFile();
    gintWorkFile = 0;
    SpindleStop();
}

} // namespace

StreamHooks &streamHooks()
{
    static StreamHooks hooks;
    return hooks;
}

void ResetStreamHooks() { streamHooks() = StreamHooks(); }

QString strMachiningTime(int32_t lngSeconds)
{
    return vb::Format00(lngSeconds / 3600) + u':' + vb::Format00(lngSeconds / 60 % 60) + u':' +
           vb::Format00(lngSeconds % 60);
}

void ResetStreamState()
{
    gintBufferSlot = 0;
    gtypSentBuffers = {};
    glngRunCommand = 0;
    glngLastTag = 0;
    glngCodeFindPos = 0;
    glngLastTick = 0;
    glngMachiningTime = 0;
    gsngSpindleSpeed = 0.0f;
    gblnMillDone = false;
    gstrMillCode.clear();
}

void StartMilling() try {
    // 1. The lead-in starts where the machine stands.
    gsngCurX = static_cast<float>(glngPosX / 72.0);
    gsngCurY = static_cast<float>(glngPosY / 72.0);
    gsngCurZ = static_cast<float>(glngPosZ / 72.0);
    glngLastTag = 0;
    // 2. The analysed file, and a new work file. A work file left by an earlier run (its end
    //    prompt cancelled before Done) goes first, so temporary files don't pile up.
    KillWorkFile();
    gintAnalysedFile = FreeFile();
    FileOpen(gintAnalysedFile, gstrAnalysedFile, FileMode::Binary);
    gstrWorkFile = strTempFile();
    gintWorkFile = FreeFile();
    FileOpen(gintWorkFile, gstrWorkFile, FileMode::Binary);
    // 3. The header, as the compiler wrote it: digest, rapid, backlash, used tools, commands.
    FileGet(gintAnalysedFile, 16 + 4 + 3 * 2);
    const int16_t intTools = GetInt(gintAnalysedFile);
    FileGet(gintAnalysedFile, static_cast<qint64>(qMax<int16_t>(intTools, 0)) * 6);
    glngCommandCount = GetLong(gintAnalysedFile);
    gtypCommands.Erase();   // a fresh table: ReDim, not ReDim Preserve
    gtypCommands.Redim(qMax(glngCommandCount, 0));
    // 4. The command table and the code display's text (one command a line).
    QString code;
    for (int32_t i = 1; i <= glngCommandCount && !gblnCancel; ++i) {
        const int16_t len = GetInt(gintAnalysedFile);
        const QByteArray text = FileGet(gintAnalysedFile, qMax<int16_t>(len, 0));
        CommandRecord &cmd = gtypCommands(i);
        cmd.strText = QString::fromLatin1(text);
        if (i > 1)
            code += u'\n';
        code += CodeText(cmd.strText);
        cmd.sngValue = static_cast<float>(GetLong(gintAnalysedFile) / 1000.0);
        if (streamHooks().prepareProgress)
            streamHooks().prepareProgress(vb::CInt(i * 95.0 / glngCommandCount));
        DoEvents();
    }
    // 5. The code, then the records ahead of the first move into the work file.
    int32_t lngTag = 0;
    int16_t intFirst = 0;
    if (!gblnCancel) {
        gstrMillCode = code;
        if (streamHooks().loadCode)
            streamHooks().loadCode(gstrMillCode);
        for (;;) {
            char rec[8];
            GetBytes(gintAnalysedFile, rec, 8);
            std::memcpy(&lngTag, rec, 4);   // little-endian on every platform we build for
            lngTag = qFromLittleEndian(lngTag);
            if (lngTag <= 0) {
                intFirst = static_cast<int16_t>(uint16_t(uint8_t(rec[4])) | uint16_t(uint8_t(rec[5])) << 8);
                break;
            }
            FilePut(gintWorkFile, rec, 8);
        }
    }
    FileClose(gintWorkFile);
    // 6.
    DoEvents();
    if (gblnCancel) {
        // Nothing half-done: no file stays open for a run that will not start.
        FileClose(gintAnalysedFile);
        gintAnalysedFile = 0;
        KillWorkFile();
        gintWorkFile = 0;
        return;
    }
    // 7. The first move: its tag is minus its command number; Z in hundredths of a mm.
    glngFirstMove = lngTag;
    FileOpen(gintWorkFile, gstrWorkFile, FileMode::Append);
    gblnStepsToWorkFile = true;
    gstrStepBuffer.clear();
    if (lngTag < 0) {
        const int32_t N = -lngTag;
        // 8. Z first, so the tool comes down (or goes up) before it travels.
        BuffMakeZline(N, static_cast<float>(intFirst / 100.0 - gsngOriginToolOffset + gsngCurrentToolOffset),
                      gsngRapidSpeed);
        FlushStepBuffer();
        // 9. Then X and Y, from the first move's second record.
        GetLong(gintAnalysedFile);
        const float x = static_cast<float>(GetInt(gintAnalysedFile) / 100.0);
        const float y = static_cast<float>(GetInt(gintAnalysedFile) / 100.0);
        BuffMakeline(N, x, y, gsngCurZ, gsngRapidSpeed, true);
        // 10. Every axis that last moved positive moves back through its play, so the
        //     program starts with the play known.
        int16_t owedX = 0, owedY = 0;
        if (gintLastDirX == 1) {
            gintLastDirX = -1;
            gintPlayX = gintBacklashX;
            owedX = gintBacklashX;
        }
        if (gintLastDirY == 1) {
            gintLastDirY = -1;
            gintPlayY = gintBacklashY;
            owedY = gintBacklashY;
        }
        while (owedX > 0 || owedY > 0) {
            const int16_t sx = owedX > 0 ? -1 : 0;
            const int16_t sy = owedY > 0 ? -1 : 0;
            SendStepToBuffer(N, sx, sy, 0, sx * 12.0f, sy * 12.0f, 0.0f, kStepMove);
            owedX = static_cast<int16_t>(owedX + sx);
            owedY = static_cast<int16_t>(owedY + sy);
        }
    }
    // 11.
    FlushStepBuffer();
    FileClose(gintWorkFile);
    gintWorkFile = 0;
    if (streamHooks().prepareProgress)
        streamHooks().prepareProgress(100);
} catch (...) {
    LogError("modComms", "StartMilling");
}

int16_t intSendNextBuffer(int16_t intFile, bool &blnEof) try {
    // 1. A new slot in the ring.
    const int16_t intSlot = gintBufferSlot;
    gintBufferSlot = static_cast<int16_t>((gintBufferSlot + 1) % 16);
    SentBuffer &slot = gtypSentBuffers[static_cast<size_t>(gintBufferSlot)];
    slot = SentBuffer();
    blnEof = false;
    int16_t intRecords = 0;
    bool blnStop = false;
    int16_t intStatus = 0;
    QByteArray buffer;
    buffer.reserve(49);
    buffer.append(char(0));   // the length byte, filled in below
    // 2. Up to 16 records.
    while (!blnEof && intRecords < 16 && !blnStop && !gblnCancel) {
        const int32_t lngTag = GetLong(intFile);
        if (lngTag == 0) {
            blnEof = true;   // the end of the stream, or of the file
            continue;
        }
        if (lngTag != glngLastTag) {
            glngRunCommand = lngTag < 0 ? -lngTag : lngTag;
            ShowRunCommand();
            glngLastTag = lngTag;
            if (!slot.blnCommandSet) {
                slot.lngCommand = glngRunCommand;
                slot.blnCommandSet = true;
            }
        }
        char step[3];
        if (!GetBytes(intFile, step, 3)) {
            blnEof = true;
            continue;
        }
        if (gblnCancel)
            continue;
        char control = 0;
        GetBytes(intFile, &control, 1);
        const uint8_t code = static_cast<uint8_t>(control);
        if (code >= 128) {
            blnStop = true;
            intStatus = StopStatus(code);
            continue;
        }
        if (gblnCancel) {
            intStatus = -1;
            continue;
        }
        if (!gblnSpindleOn) {
            // The spindle is off (a tool change stopped it, or the door or the drive did):
            // the operator is led through what must be done before the next step.
            const QString strStart = gintCurrentTool == gintNextTool ? QStringLiteral("2")
                                     : gblnToolInserted             ? QStringLiteral("0")
                                                                    : QStringLiteral("1");
            const QString strTag =
                streamHooks().millPrompt ? streamHooks().millPrompt(strStart) : QStringLiteral("Cancel");
            if (strTag == QLatin1String("Cancel"))
                gblnCancel = true;
            glngLastTick = ClockSeconds();   // the time in the prompt is not machining time
            // A cancelled prompt: this step is not sent; the operator is asked first, and a
            // Yes goes on from the next record, as after Esc.
            if (gblnCancel)
                continue;
        }
        buffer.append(step, 3);
        ++intRecords;
        slot.intX = static_cast<int16_t>(slot.intX + ((code >> 1) & 3) - 1);
        slot.intY = static_cast<int16_t>(slot.intY + ((code >> 3) & 3) - 1);
        slot.intZ = static_cast<int16_t>(slot.intZ + ((code >> 5) & 3) - 1);
    }
    // 3. Nothing to send: the slot is given back.
    if (intRecords == 0) {
        gintBufferSlot = intSlot;
        return intStatus;
    }
    // 4. The position counts what has been sent; it runs ahead of the tool by up to 2 frames.
    glngPosX += slot.intX;
    glngPosY += slot.intY;
    glngPosZ += slot.intZ;
    // 5. The machining time, at most once a second on screen.
    if (gblnShowTime) {
        const int32_t now = ClockSeconds();
        const int32_t newTime = glngMachiningTime + now - glngLastTick;
        glngLastTick = now;
        if (newTime > glngMachiningTime) {
            glngMachiningTime = newTime;
            SetPanel("timer", QStringLiteral("Machining Time: ") + strMachiningTime(glngMachiningTime) +
                                  QStringLiteral("  "));
        }
    }
    // 6. The frame goes out: counted first, then written once the port has taken the last.
    buffer[0] = char(intRecords * 3 + 1);
    ++gintBuffersOut;
    if (gblnOnline) {
        while (comSerial() && comSerial()->bytesToWrite() >= 1)
            DoEvents();
        if (comSerial())
            comSerial()->write(buffer);
    }
    return intStatus;
} catch (...) {
    LogError("modComms", "intSendNextBuffer");
}

void SendToMill() try {
    // 1.
    gintBufferSlot = 0;
    gsngSpindleSpeed = 0.0f;
    glngMachiningTime = 0;
    glngCodeFindPos = 0;
    glngLastTick = ClockSeconds();   // the machining time counts from the start of the run
    bool blnPriming = true;
    bool blnRun = true;
    bool blnEof = false;
    SetPanel("status", QStringLiteral("Machining"));
    gintWorkFile = FreeFile();
    FileOpen(gintWorkFile, gstrWorkFile, FileMode::Binary);
    int16_t intFile = gintWorkFile;

    // The end of the work file goes on into the analysed file.
    auto send = [&]() -> int16_t {
        const int16_t status = intSendNextBuffer(intFile, blnEof);
        if (blnEof && intFile == gintWorkFile) {
            intFile = gintAnalysedFile;
            blnEof = false;
        }
        return status;
    };

    // 2. An Esc or a time-out during the last frame still gets its question.
    while (blnRun && !(blnEof && !gblnCancel)) {
        DoEvents();
        QString strTitle;
        if (gblnCancel) {
            SpindleStop();
            strTitle = QStringLiteral("Machining interrupted");
        } else if (gblnDoorStopped && gblnDoorOpen) {
            gblnDoorStopped = false;
            strTitle = QStringLiteral("Door Open");
        } else if (gblnDoorStopped) {
            // The door is closed again: what is in the controller runs out (a "D" tells).
            blnGetReplies(true);
            // Nothing is out any more and no "D" has cleared the flag (the door opened and
            // closed while no frame ran): the operator is asked all the same, rather than
            // the run waiting here for a reply that can't come.
            if (!gblnDoorStopped || gintBuffersOut > 0)
                continue;
            gblnDoorStopped = false;
            strTitle = QStringLiteral("Door Open");
        }
        if (!strTitle.isEmpty()) {
            // 3.-5.
            if (AskToContinue(strTitle) == Answer::Abandoned) {
                blnRun = false;
                AbandonRun();
                break;
            }
            // 6.
            if (gblnDoorStopped) {
                blnGetReplies(true);
                continue;
            }
        }
        // 7. Keep two frames out.
        int16_t intStatus = 0;
        if (gintBuffersOut < 2 || blnPriming) {
            intStatus = send();
            if (intStatus == 0) {
                blnPriming = false;
                if (gintBuffersOut < 2 && !blnEof)
                    intStatus = send();
            }
        }
        if (intStatus == 0) {
            // 8. One reply frees a place.
            if (!blnGetReplies(false))
                gblnCancel = true;
            continue;
        }
        // 9. A stop record: the machine finishes all that stands before it first.
        if (!blnGetReplies(true)) {
            gblnCancel = true;
            continue;
        }
        switch (intStatus) {
        case -1:
            blnRun = false;
            AbandonRun();
            break;
        case 7:
            gsngSpindleSpeed = gtypCommands(glngRunCommand).sngValue;
            break;
        case 8:
            // The spindle stops for the change; the next step opens the prompt.
            if (vb::Int(gtypCommands(glngRunCommand).sngValue) != gintCurrentTool) {
                gintNextTool = vb::CInt(gtypCommands(glngRunCommand).sngValue);
                SpindleStop();
            }
            break;
        default:
            break;
        }
    }
    if (!blnRun)
        return;
    // 3. The end of the program. The machine finishes what it holds first: the spindle
    //    may already be off (a "P"), and then SpindleStop would not wait for it, leaving
    //    frames counted out behind the end prompts (and the watchdog blind).
    blnGetReplies(true);
    FileClose(gintWorkFile);
    FileClose(gintAnalysedFile);
    gintWorkFile = 0;
    gintAnalysedFile = 0;
    SpindleStop();
    if (streamHooks().millPrompt)
        streamHooks().millPrompt(QStringLiteral("5"));
    gsngCurrentToolOffset = gtypTools(intToolGetId(gintCurrentTool)).sngOffset;
    if (streamHooks().showMethod)
        streamHooks().showMethod();
} catch (...) {
    LogError("modComms", "SendToMill");
}

void tmrStartMilling_Timer()
{
    if (!gblnCancel)
        SendToMill();
}
