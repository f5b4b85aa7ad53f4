// The analysed-file cache. A compilation's result is kept beside the NC file ("name.ncx") and
// reused for as long as nothing that went into it has changed: the NC text (MD5 digest), the
// rapid speed, the backlash, and the diameter and offset of every tool the program uses.
//
// Layout, integers signed, low byte first, no padding:
//
//   16        MD5 digest of the NC file
//    4        rapid speed * 100, rounded
//    2 x 3    backlash X, Y, Z, steps
//    2        count of used tools
//    6 each   tool number, diameter * 100, offset * 100 (2 bytes each, rounded)
//    4        count of commands
//   per cmd   2 length of the text, the text (one byte a character), 4 value * 1000 rounded
//    8 each   step records, first-move records included, ending with the end marker
//    4        trailer: the length of the whole file, this field included
#pragma once

#include <QByteArray>
#include <QString>

extern QString gstrAnalysedFile;   // path of the analysed file of gstrNCFile
extern QByteArray gstrDigest;      // 16-byte MD5 of gstrNCFile; 16 blanks when files aren't kept

// The reason why the analysed file of gstrNCFile can't be used, or an empty text when it can.
// Sets gstrAnalysedFile, gstrDigest, gblnAnalysedValid, and for a good file gintUsedTools.
// A stale file is deleted.
QString strCompFileReason();
// The header of a new analysed file (digest, rapid speed, backlash, used tools).
QByteArray strAnalysedHeader();
// Writes the command count and each command's text and value to gintAnalysedFile.
void SaveCommands();
// 16-byte MD5 of a file (yielding while it reads) and of a text.
QByteArray strDigestFile(const QString &strFile);
QByteArray strDigestString(const QString &strText);

// The reason texts, as the wizard shows them after "because ...".
namespace AnalysedReason {
inline const char *const kNotKept = "the setting 'Retain calculated Mill steps' is turned off";
inline const char *const kNoSpace = "there is insufficient space to keep an analysed version on the source drive";
inline const char *const kNone = "there is no previously analysed version of this NC file";
inline const char *const kInvalid = "the previously analysed version of this NC file is invalid";
inline const char *const kIncomplete = "the previously analysed version of this NC file is incomplete";
inline const char *const kChanged = "the NC file has been changed";
inline const char *const kRapid = "the Rapid Traverse Speed has been changed";
inline const char *const kBacklash = "the Backlash compensation values have been changed";
} // namespace AnalysedReason
