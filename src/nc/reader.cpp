#include "nc/reader.h"

#include "nc/analysed.h"

#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/textfile.h"
#include "tools/tooltable.h"

#include <QFileInfo>

#include <cfloat>
#include <cmath>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

// The NC file while strHeaderFromCommands reads it; ReadError closes it.
TextLineInput gNCInput;

bool isBlankOrTab(QChar c) { return c == u' ' || c == u'\t'; }
bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

// Trim: blanks only, as the original's Trim.
QStringView trimBlanks(QStringView s)
{
    while (!s.isEmpty() && s.front() == u' ')
        s = s.mid(1);
    while (!s.isEmpty() && s.back() == u' ')
        s.chop(1);
    return s;
}

// A value stored into a single: a number beyond the float range is fault 6 "Overflow",
// as assigning it to a single was.
float toSingle(double x)
{
    if (std::fabs(x) > static_cast<double>(FLT_MAX))
        vb::Err(vb::kOverflow);
    return static_cast<float>(x);
}

// One read of strHeaderFromCommands: the modal working record and the flags that live
// from line to line. Its steps have no trap of their own: a fault in them is a fault of
// strHeaderFromCommands and is reported under that name.
struct NcRead {
    CommandRecord work;          // the working record that makes the language modal
    float sngFeed = 0.0f;        // the modal feed, mm/min: the last accepted F
    bool blnNLine = false;       // an N line was seen
    bool blnCutting = false;     // a G1, G2, G3 or G4 was seen
    bool blnFirstTool = false;   // the first tool was just named: S must come before any G
    bool blnSpeed = false;       // an S followed the first tool
    bool blnFault = false;       // a fault was reported: the read is over

    NcRead()
    {
        work.sngX = work.sngY = work.sngZ = kNotProgrammed;
    }

    void fault(const QString &strMessage)
    {
        blnFault = true;
        ReadError(work.lngLine, work.strText, strMessage);
    }

    // After every accepted word: the table entry of this line becomes the working record.
    void accept() { gtypCommands(glngCommandCount) = work; }

    void commandLine(const QString &strLine, int32_t lngLine);
    void word(QChar ch, QStringView &rest);
    void coordinate(float &sngAxis, QChar chAxis, QStringView &rest);
};

void NcRead::commandLine(const QString &strLine, int32_t lngLine)
{
    blnNLine = true;
    work.sngI = work.sngJ = work.sngR = 0.0f;
    work.lngLine = lngLine;

    // Control characters and blanks at the end go (a CR that a foreign line end left,
    // trailing tabs).
    qsizetype end = strLine.size();
    while (end > 0 && strLine.at(end - 1).unicode() < 33)
        --end;
    work.strText = strLine.left(end);

    // Without the "N"; a "'" starts a comment that runs to the end of the line.
    const QString strText = work.strText;   // the view below must not follow work.strText
    QStringView rest = QStringView(strText).mid(1);
    const qsizetype quote = rest.indexOf(u'\'');
    if (quote >= 0) {
        rest = rest.left(quote);
        while (!rest.isEmpty() && rest.back() == u' ')
            rest.chop(1);
    }

    const QString strBad = strUnHandledChar(rest);
    if (!strBad.isEmpty()) {
        fault(QStringLiteral("has an unrecognised character (") + strBad + QStringLiteral(")."));
        return;
    }

    // The number of the N word has no use: it need not be ascending, nor present.
    while (!rest.isEmpty() && isDigit(rest.front()))
        rest = rest.mid(1);

    // A new, zero-filled entry. It stays zero-filled when no word of the line is accepted.
    gtypCommands.Append(CommandRecord());
    glngCommandCount = vb::Int32(static_cast<int64_t>(glngCommandCount) + 1);

    while (!rest.isEmpty() && !blnFault) {
        const QChar ch = rest.front();
        rest = rest.mid(1);
        if (isBlankOrTab(ch))
            continue;
        word(ch, rest);
    }
}

void NcRead::coordinate(float &sngAxis, QChar chAxis, QStringView &rest)
{
    // The coordinate is set before it is checked; a fault ends the read anyway.
    sngAxis = sngGetVal(rest);
    const QString letter(chAxis);
    if (sngAxis == kNoValue)
        fault(QStringLiteral("has a") + (chAxis == u'X' ? QStringLiteral("n ") : QStringLiteral(" ")) + letter +
              QStringLiteral(" code but no value."));
    else if (work.intType < kCmdRapid || work.intType > kCmdArcCcw)
        fault(QStringLiteral("the ") + letter + QStringLiteral(" code is not used by this command."));
    else
        accept();
}

void NcRead::word(QChar ch, QStringView &rest)
{
    switch (ch.unicode()) {
    case u'G': {
        if (blnFirstTool) {
            fault(QStringLiteral("has a G-code but there is no rotational speed (S)") + kCrLf +
                  QStringLiteral("following the first tool definition."));
            return;
        }
        // Only the one character after G counts: "G01" is G0 and a bare "1".
        QChar g;
        if (!rest.isEmpty()) {
            g = rest.front();
            rest = rest.mid(1);
        }
        switch (g.unicode()) {
        case u'0': work.intType = kCmdRapid; work.sngValue = gsngRapidSpeed; break;
        case u'1': work.intType = kCmdLine; work.sngValue = sngFeed; break;
        case u'2': work.intType = kCmdArcCcw; work.sngValue = sngFeed; break;
        case u'3': work.intType = kCmdArcCw; work.sngValue = sngFeed; break;
        case u'4': work.intType = kCmdDwell; work.sngValue = gsngRapidSpeed; break;
        default:
            fault(QStringLiteral("has an invalid G-code.") + kCrLf +
                  QStringLiteral("Brantok accepts G0(rapid), G1(cut), G2(arc ccw)") +
                  QStringLiteral(" G3(arc cw) and G4(dwell).") + kCrLf);
            return;
        }
        if (work.intType != kCmdRapid)
            blnCutting = true;
        accept();
        return;
    }
    case u'F': {
        float sngVal = sngGetVal(rest);
        // F below 1 is a fraction of the speed in force: F0.5 after F200 is 100 mm/min.
        if (sngVal < 1.0f)
            sngVal = toSingle(static_cast<double>(sngVal) * static_cast<double>(work.sngValue));
        if (sngVal == kNoValue)
            fault(QStringLiteral("has an F (Feed rate) code but no value."));
        else if (sngVal < 0.0f || sngVal > gsngRapidSpeed)
            fault(QStringLiteral("has an invalid F (Feed rate) value."));
        else {
            sngFeed = sngVal;
            work.sngValue = sngVal;
            accept();
        }
        return;
    }
    case u'I':
    case u'J': {
        const float sngVal = sngGetVal(rest);
        const bool blnI = ch == u'I';
        if (sngVal == kNoValue)
            fault(blnI ? QStringLiteral("has an I code but no value.") : QStringLiteral("has a J code but no value."));
        else if (work.sngR > 0.0f)
            fault(blnI ? QStringLiteral("has an R value in addition to an I value.")
                       : QStringLiteral("has an R value in addition to a J value."));
        else {
            (blnI ? work.sngI : work.sngJ) = sngVal;
            accept();
        }
        return;
    }
    case u'R': {
        const float sngVal = sngGetVal(rest);
        if (sngVal == kNoValue)
            fault(QStringLiteral("has an R (arc radius) code but no value."));
        else if (!(sngVal > 0.0f))
            fault(QStringLiteral("has an invalid R (arc radius) value."));
        else if (work.sngI != 0.0f || work.sngJ != 0.0f)
            fault(QStringLiteral("has an I or J value in addition to an R value."));
        else {
            work.sngR = sngVal;
            accept();
        }
        return;
    }
    case u'S': {
        const float sngVal = sngGetVal(rest);
        const float sngMax = gblnWoodworker ? 8000.0f : 2000.0f;   // rpm
        if (sngVal == kNoValue)
            fault(QStringLiteral("has an S (rotational speed) code but no value."));
        else if (sngVal < 50.0f || sngVal > sngMax)
            fault(QStringLiteral("has an invalid S (rotational speed) value."));
        // S stands on the line after its T. On the very first N line this looks before the
        // table's first entry: fault 9, and the trap takes the read.
        else if (gtypCommands(glngCommandCount - 1).intType != kCmdTool)
            fault(QStringLiteral("has an S (rotational speed) value") + kCrLf +
                  QStringLiteral("without a preceeding Tool definition."));
        else {
            work.intType = kCmdSpeed;
            work.sngValue = sngVal;
            if (blnFirstTool) {
                blnFirstTool = false;
                blnSpeed = true;
            }
            accept();
        }
        return;
    }
    case u'T': {
        const float sngVal = sngGetVal(rest);
        if (sngVal == kNoValue) {
            fault(QStringLiteral("has a T (Tool number) code but no value."));
            return;
        }
        // The whole part names the tool. One outside the 16-bit tool numbers can't be in
        // the table.
        const double dblWhole = vb::Int(static_cast<double>(sngVal));
        const bool blnInRange = dblWhole >= -32768.0 && dblWhole <= 32767.0;
        const int16_t intTool = blnInRange ? static_cast<int16_t>(dblWhole) : int16_t(0);
        if (!blnInRange || intToolGetId(intTool) == 0) {
            fault(QStringLiteral("Tool number ") + vb::FormatGeneral(static_cast<float>(dblWhole)) +
                  QStringLiteral(" is not listed in the Tool Data Table."));
            return;
        }
        work.intType = kCmdTool;
        work.sngValue = sngVal;
        accept();
        ToolAddToUsedList(intTool);
        blnFirstTool = gintUsedToolCount == 1;
        return;
    }
    case u'P': {
        // Written into X before any check, where it stays as the modal X.
        work.sngX = sngGetVal(rest);
        if (work.sngX == kNoValue)
            fault(QStringLiteral("has a P code but no value."));
        else if (work.intType != kCmdDwell)
            fault(QStringLiteral("the P code is not used by this command."));
        else
            accept();
        return;
    }
    case u'X': coordinate(work.sngX, ch, rest); return;
    case u'Y': coordinate(work.sngY, ch, rest); return;
    case u'Z': coordinate(work.sngZ, ch, rest); return;
    case u'-':
    case u'.':
    case u'0': case u'1': case u'2': case u'3': case u'4':
    case u'5': case u'6': case u'7': case u'8': case u'9':
        fault(QStringLiteral("has a numeric value without a parameter letter"));
        return;
    default:   // H, K, M, N: allowed characters, but no command of Brantok
        fault(QStringLiteral("has a command letter (") + ch + QStringLiteral(") that is not") + kCrLf +
              QStringLiteral("recognised by Brantok."));
        return;
    }
}

// The whole-file checks, then the arc check; each fault is reported and ends the checks.
void checkWholeFile(NcRead &r)
{
    const QString strCannot = QStringLiteral("This file cannot be processed as it does not contain") + kCrLf;
    if (!r.blnCutting) {
        // Only N lines prove that a "%" was there; without them the file is taken as having none.
        if (r.blnNLine)
            ReadError(0, QString(), strCannot + QStringLiteral("any G-codes that are cutting operations.") + kCrLf);
        else
            ReadError(0, QString(),
                      QStringLiteral("The selected file does not have a % sign to indicate the start of the NC code."));
        return;
    }
    if (gintUsedToolCount == 0) {
        ReadError(0, QString(), strCannot + QStringLiteral("any Tool definitions.") + kCrLf);
        return;
    }
    if (!r.blnSpeed) {
        ReadError(0, QString(), strCannot + QStringLiteral("a Rotational Speed definition.") + kCrLf);
        return;
    }
    // A radius arc can't end where it starts: a full circle needs the centre form.
    // The first entry has no entry before it: fault 9, taken by the trap.
    for (int32_t lngI = 1; lngI <= glngCommandCount; ++lngI) {
        const CommandRecord &typCmd = gtypCommands(lngI);
        if ((typCmd.intType == kCmdArcCw || typCmd.intType == kCmdArcCcw) && typCmd.sngR > 0.0f) {
            const CommandRecord &typPrev = gtypCommands(lngI - 1);
            if (typCmd.sngX == typPrev.sngX && typCmd.sngY == typPrev.sngY && typCmd.sngZ == typPrev.sngZ) {
                ReadError(typCmd.lngLine, typCmd.strText, QStringLiteral("does not define a valid arc"));
                return;
            }
        }
    }
}

} // namespace

CompFileReasonFn gfnCompFileReason = strCompFileReason;

QString strNoCompFileReason()
{
    gblnAnalysedValid = false;
    return QStringLiteral("there is no previously analysed version of this NC file");
}

void ReadCommands(const QString &strFile) try {
    gstrNCFile = strFile;
    // A file that is gone or is no file has no analysed version to check: the read below
    // tells the operator what is wrong with it.
    const QFileInfo info(strFile);
    const bool blnReadable = !strFile.isEmpty() && info.isFile() && info.isReadable();
    gstrAnalysedReason = blnReadable && gfnCompFileReason ? gfnCompFileReason() : strNoCompFileReason();
    gintReadResult = gblnCancel ? 1 : 0;
    if (!gblnAnalysedValid)
        gstrHeader = strHeaderFromCommands();
    GetBilletSize();
} catch (...) {
    LogError("modReader", "ReadCommands");
}

QString strHeaderFromCommands() try {
    uiHooks().pageTurnStart(QStringLiteral("Reading CNC file"));
    gtypCommands.Erase();
    glngCommandCount = 0;
    gintUsedTools.Erase();
    gintUsedToolCount = 0;
    gsngBilletLength = gsngBilletWidth = gsngBilletDepth = 0.0f;
    NcRead r;
    QString strHeaderText;

    // The file was chosen a moment ago; if it went in between (a medium taken out), the
    // operator is told and goes back as after a cancel.
    switch (gNCInput.Open(gstrNCFile)) {
    case TextLineInput::OpenResult::Ok:
        break;
    case TextLineInput::OpenResult::Missing:
        uiHooks().pageTurnStop();
        StdMsgBox(QStringLiteral("Cannot find file ") + gstrNCFile, vbExclamation, QStringLiteral("File not found"));
        gintReadResult = 1;
        return QString();
    case TextLineInput::OpenResult::NotReadable:
        uiHooks().pageTurnStop();
        StdMsgBox(QStringLiteral("Cannot read file ") + gstrNCFile + kCrLf + gNCInput.ErrorString(), vbExclamation,
                  QStringLiteral("File not readable"));
        gintReadResult = 1;
        return QString();
    }

    int32_t lngLine = 0;   // physical line, from 1, over every line of the file

    // Everything before a line of "%" alone is ignored.
    while (!gblnCancel && !gNCInput.AtEnd()) {
        const QString strLine = gNCInput.LineInput();
        lngLine = vb::Int32(static_cast<int64_t>(lngLine) + 1);
        if (trimBlanks(strLine) == u"%")
            break;
        DoEvents();
    }

    while (!r.blnFault && !gblnCancel && !gNCInput.AtEnd()) {
        const QString strLine = gNCInput.LineInput();
        lngLine = vb::Int32(static_cast<int64_t>(lngLine) + 1);
        if (strLine.startsWith(u'*'))
            strHeaderText += strLine.mid(1) + kCrLf;   // header lines may stand anywhere
        else if (strLine.startsWith(u'N'))
            r.commandLine(strLine, lngLine);
        // Any other line, a G-code without its N included, does nothing.
        if (!r.blnFault)
            DoEvents();
    }
    gNCInput.Close();
    if (r.blnFault || gblnCancel)
        return strHeaderText;

    checkWholeFile(r);
    return strHeaderText;
} catch (...) {
    LogError("modReader", "strHeaderFromCommands");
}

float sngGetVal(QStringView &strLine) try {
    strLine = trimBlanks(strLine);
    qsizetype n = 0;
    while (n < strLine.size() && (isDigit(strLine[n]) || strLine[n] == u'.' || strLine[n] == u'-'))
        ++n;
    if (n == 0)
        return kNoValue;
    const QString strTaken = strLine.left(n).toString();
    strLine = strLine.mid(n);
    return toSingle(vb::Val(strTaken));
} catch (...) {
    LogError("modReader", "sngGetVal");
}

float sngGetVal(QString &strLine)
{
    QStringView view(strLine);
    const float sngVal = sngGetVal(view);
    strLine = view.toString();
    return sngVal;
}

QString strUnHandledChar(QStringView strLine) try {
    for (const QChar c : strLine) {
        switch (c.unicode()) {
        case u'.': case u'-': case u' ': case u'\t':
        case u'0': case u'1': case u'2': case u'3': case u'4':
        case u'5': case u'6': case u'7': case u'8': case u'9':
        case u'F': case u'G': case u'H': case u'I': case u'J': case u'K': case u'M':
        case u'N': case u'P': case u'R': case u'S': case u'T': case u'X': case u'Y': case u'Z':
            continue;
        default:
            return QString(c);
        }
    }
    return QString();
} catch (...) {
    LogError("modReader", "strUnHandledChar");
}

void ReadError(int32_t lngLine, const QString &strLine, const QString &strMessage) try {
    gNCInput.Close();
    uiHooks().pageTurnStop();
    QString strError;
    if (lngLine > 0)
        strError = QStringLiteral("Line ") + QString::number(lngLine) + QStringLiteral(":") + kCrLf + strLine + kCrLf;
    strError += strMessage + kCrLf;
    // The correction window: shows gstrNCFile, the text above, the line marked; modal.
    const QString strTag = uiHooks().correctFile(gstrNCFile, strError, strLine);
    gintReadResult = strTag == QStringLiteral("Ok") ? 2 : 1;
    DoEvents();
} catch (...) {
    LogError("modReader", "ReadError");
}

QString strHeader(const QString &strFile) try {
    TextLineInput file;
    if (file.Open(strFile) != TextLineInput::OpenResult::Ok)
        return QString();   // nothing to show for a file that can't be read
    bool blnForeign = false;
    bool blnPercent = false;
    for (int intI = 0; intI < 10 && !file.AtEnd(); ++intI) {
        const QString strLine = file.LineInput();
        if (strLine.startsWith(u'%')) {
            blnPercent = true;
            break;
        }
        if (strLine.isEmpty() || strLine.front() < u' ' || strLine.front() > u'z')
            blnForeign = true;
    }
    QString strResult;
    if (blnPercent) {
        while (!file.AtEnd()) {
            const QString strRead = file.LineInput();
            const QStringView strLine = trimBlanks(strRead);
            if (strLine.isEmpty())
                continue;
            if (!strLine.startsWith(u'*'))
                break;
            strResult += strLine.mid(1).toString();
            strResult += kCrLf;
        }
    }
    file.Close();
    return blnForeign ? QStringLiteral("*** NOT A Brantok FILE ***") : strResult;
} catch (...) {
    LogError("modReader", "strHeader");
}

void GetBilletSize() try {
    const QStringList lines = gstrHeader.split(kCrLf);
    for (const QString &strLine : lines) {
        const QString strUpper = vb::UCase(strLine);
        if (!strUpper.contains(QStringLiteral("BILLET")))
            continue;
        qsizetype pos = 0;
        while (pos < strLine.size() && !isDigit(strLine.at(pos)))
            ++pos;
        if (pos == strLine.size())
            continue;
        // From the first digit on: a sign before it is lost.
        const float sngVal = toSingle(vb::Val(strLine.mid(pos)));
        if (strUpper.contains(QStringLiteral("LENGTH")))
            gsngBilletLength = sngVal;
        else if (strUpper.contains(QStringLiteral("WIDTH")))
            gsngBilletWidth = sngVal;
        else if (strUpper.contains(QStringLiteral("DEPTH")))
            gsngBilletDepth = sngVal;
    }
} catch (...) {
    LogError("modReader", "GetBilletSize");
}

void ToolAddToUsedList(int16_t intToolNumber) try {
    for (int16_t intI = 1; intI <= gintUsedToolCount; ++intI)
        if (gintUsedTools(intI) == intToolNumber)
            return;
    gintUsedToolCount = vb::Int16(static_cast<int64_t>(gintUsedToolCount) + 1);
    gintUsedTools.Append(intToolNumber);
} catch (...) {
    LogError("modReader", "ToolAddToUsedList");
}

void ResetReader()
{
    gNCInput.Close();
}
