// The analysed-file check and the writing of its header and command table.
// strCompFileReason is called by the reader before it parses anything: with a valid analysed
// file the NC text is not read at all and the machining stream plays the file as it stands.
#include "nc/analysed.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/stepcode.h"
#include "tools/tooltable.h"

#include <QCryptographicHash>
#include <QFile>

QString gstrAnalysedFile;
QByteArray gstrDigest;


namespace {

int16_t getInt(int16_t intFile)
{
    const QByteArray b = FileGet(intFile, 2);
    return static_cast<int16_t>(static_cast<uint8_t>(b[0]) | (static_cast<uint8_t>(b[1]) << 8));
}

int32_t getLong(int16_t intFile)
{
    const QByteArray b = FileGet(intFile, 4);
    uint32_t u = 0;
    for (int i = 3; i >= 0; --i)
        u = (u << 8) | static_cast<uint8_t>(b[i]);
    return static_cast<int32_t>(u);
}

// The command table and the step records must fill the file up to its trailer exactly, and the
// records must end with the end marker the compiler writes last. Only a damaged file fails
// here (a flipped command count, a cut that happens to leave a matching trailer); trusting
// one would size the stream's command table from garbage or play steps that were never
// compiled. Walks the table by its lengths without reading the texts: each command takes at
// least 6 bytes, so even a huge damaged count stops at the end of the file.
QString strBodyCheck(int16_t intFile, qint64 length)
{
    const QString invalid = QString::fromLatin1(AnalysedReason::kInvalid);
    const qint64 body = length - 4;   // bytes ahead of the trailer
    const int32_t count = getLong(intFile);
    qint64 at = FileOf(intFile).pos();
    if (count < 0 || at > body)
        return invalid;
    for (int32_t n = 1; n <= count; ++n) {
        if (at + 2 > body)
            return invalid;
        const int16_t len = getInt(intFile);
        if (len < 0)
            return invalid;
        at += 2 + len + 4;
        if (at > body)
            return invalid;
        FileSeek(intFile, at);
    }
    const qint64 steps = body - at;
    if (steps < 8 || steps % 8 != 0)
        return invalid;
    FileSeek(intFile, body - 8);
    if (FileGet(intFile, 8) != QByteArray(8, '\0'))
        return invalid;
    return QString();
}

// The checks of an existing analysed file, in their order; the first that fails gives the
// reason. Reads past the end read as zero, so a damaged file ends in a reason, never a fault.
QString strFileCheck(int16_t intFile)
{
    using namespace AnalysedReason;
    const qint64 length = FileLength(intFile);
    if (length < 9)
        return QString::fromLatin1(kInvalid);
    FileSeek(intFile, length - 4);
    if (getLong(intFile) != length)
        return QString::fromLatin1(kIncomplete);
    FileSeek(intFile, 0);
    if (FileGet(intFile, 16) != gstrDigest)
        return QString::fromLatin1(kChanged);
    if (getLong(intFile) != vb::CLng(gsngRapidSpeed * 100.0))
        return QString::fromLatin1(kRapid);
    const int16_t bx = getInt(intFile), by = getInt(intFile), bz = getInt(intFile);
    if (bx != gintBacklashX || by != gintBacklashY || bz != gintBacklashZ)
        return QString::fromLatin1(kBacklash);
    gintUsedToolCount = getInt(intFile);
    // A count below zero can't be a table: only a damaged file holds one.
    if (gintUsedToolCount < 0) {
        gintUsedToolCount = 0;
        return QString::fromLatin1(kInvalid);
    }
    gintUsedTools.Erase();
    gintUsedTools.Redim(gintUsedToolCount);
    for (int16_t i = 1; i <= gintUsedToolCount; ++i) {
        const int16_t number = getInt(intFile);
        gintUsedTools(i) = number;
        const QString tool = QStringLiteral("Tool ") + QString::number(number);
        const int16_t id = intToolGetId(number);
        if (id == 0)
            return tool + QStringLiteral(" can no longer be found");
        // Compared in 32 bits: an unknown offset (-2000.0) simply differs.
        if (getInt(intFile) != vb::CLng(gtypTools(id).sngDiameter * 100.0))
            return tool + QStringLiteral(" has a new diameter");
        if (getInt(intFile) != vb::CLng(gtypTools(id).sngOffset * 100.0))
            return tool + QStringLiteral(" has a new offset");
    }
    return strBodyCheck(intFile, length);
}

} // namespace

QString strCompFileReason() try {
    uiHooks().pageTurnStart(QStringLiteral("Performing file checks"));
    if (gblnAnalysedToTemp)
        gstrAnalysedFile = strTempFile();
    else
        gstrAnalysedFile = vb::Left(gstrNCFile, gstrNCFile.size() - 3) + QStringLiteral("ncx");

    if (!gblnKeepFiles || gblnAnalysedToTemp) {
        gblnAnalysedValid = false;
        gstrDigest = QByteArray(16, ' ');
        return QString::fromLatin1(gblnAnalysedToTemp ? AnalysedReason::kNoSpace : AnalysedReason::kNotKept);
    }

    gstrDigest = strDigestFile(gstrNCFile);
    DoEvents();
    if (gblnCancel)
        return QString();

    if (!blnStdFileExists(gstrAnalysedFile)) {
        gblnAnalysedValid = false;
        return QString::fromLatin1(AnalysedReason::kNone);
    }

    const int16_t intFile = FreeFile();
    FileOpen(intFile, gstrAnalysedFile, FileMode::Input);
    const QString reason = strFileCheck(intFile);
    FileClose(intFile);
    if (!reason.isEmpty()) {
        if (!QFile::remove(gstrAnalysedFile))
            vb::Err(vb::kPermissionDenied);
        gblnAnalysedValid = false;
        return reason;
    }
    gblnAnalysedValid = true;
    return QString();
} catch (...) {
    LogError("modAnalysed", "strCompFileReason");
}

QByteArray strAnalysedHeader() try {
    QByteArray header = gstrDigest;
    header += strLongToLongString(vb::CLng(gsngRapidSpeed * 100.0));
    header += strIntToIntString(gintBacklashX);
    header += strIntToIntString(gintBacklashY);
    header += strIntToIntString(gintBacklashZ);
    header += strIntToIntString(gintUsedToolCount);
    for (int16_t i = 1; i <= gintUsedToolCount; ++i) {
        const ToolData &tool = gtypTools(intToolGetId(gintUsedTools(i)));
        header += strIntToIntString(gintUsedTools(i));
        header += strIntToIntString(vb::CInt(tool.sngDiameter * 100.0));
        header += strIntToIntString(vb::CInt(tool.sngOffset * 100.0));
    }
    return header;
} catch (...) {
    LogError("modAnalysed", "strAnalysedHeader");
}

void SaveCommands() try {
    QByteArray block = strLongToLongString(glngCommandCount);
    for (int32_t n = 1; n <= glngCommandCount; ++n) {
        const CommandRecord &cmd = gtypCommands(n);
        // The text is ANSI: one byte a character.
        const QByteArray text = cmd.strText.toLatin1();
        block += strIntToIntString(vb::Int16(text.size()));
        block += text;
        block += strLongToLongString(vb::CLng(cmd.sngValue * 1000.0));
        if (block.size() >= 65536) {
            FilePut(gintAnalysedFile, block);
            block.clear();
        }
    }
    FilePut(gintAnalysedFile, block);
} catch (...) {
    LogError("modAnalysed", "SaveCommands");
}

QByteArray strDigestFile(const QString &strFile) try {
    const int16_t intFile = FreeFile();
    FileOpen(intFile, strFile, FileMode::Input);
    QFile &file = FileOf(intFile);
    QCryptographicHash md5(QCryptographicHash::Md5);
    // Blocks of 64 bytes, the digest's own block size; the interface gets a turn every 64 KiB.
    char block[64];
    qint64 got;
    int blocks = 0;
    while ((got = file.read(block, sizeof block)) > 0) {
        md5.addData(QByteArrayView(block, got));
        if (++blocks % 1024 == 0)
            DoEvents();
    }
    FileClose(intFile);
    return md5.result();
} catch (...) {
    LogError("MD5Driver", "strDigestFile");
}

QByteArray strDigestString(const QString &strText) try {
    return QCryptographicHash::hash(strText.toLatin1(), QCryptographicHash::Md5);
} catch (...) {
    LogError("MD5Driver", "strDigestString");
}
