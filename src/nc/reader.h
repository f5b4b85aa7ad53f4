// The NC program reader: from an NC text file to the command table.
//
// An NC file is a "%" line, then "*" comment lines (the header, with the billet size) and
// "N" command lines: one command per line, absolute millimetres, feed in mm/min, spindle
// speed in rpm. The reader checks every word against the tool table and the machine's
// limits, stops at the first fault and shows the file with the faulty line marked in the
// correction window (frmEdit); a corrected file is read again from the top by the caller.
//
// Results: gtypCommands / glngCommandCount, gintUsedTools / gintUsedToolCount (nc/commands.h),
// gstrHeader, the billet size and gintReadResult (core/state.h).
//
// All procedures run on the user-interface thread and report faults through the error trap
// under the module name "modReader".
#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>

// The entry point, called by the set-up wizard's read loop (FileSelected) with the chosen
// file. Stores the path in gstrNCFile, asks whether a valid analysed file exists
// (gfnCompFileReason), sets gintReadResult to 1 when gblnCancel is set, else 0, parses the
// file unless a valid analysed file exists, and always takes the billet size from the header.
// Afterwards gintReadResult is 0 (read well), 1 (cancelled, or the operator gave up on a
// fault) or 2 (the operator corrected the file: read it again).
void ReadCommands(const QString &strFile);

// Reads gstrNCFile into the command table and returns the header text ("*" lines without
// their "*", each ended CR LF). Faults go through ReadError. Pumps the event loop after
// every line and stops when gblnCancel is set.
QString strHeaderFromCommands();

// Takes the number at the front of `strLine` (blanks trimmed first): the leading run of
// "0".."9", "." and "-", read with Val. The taken characters leave `strLine`.
// Nothing taken: 65536 (kNoValue), the mark of a letter that stood without a value.
float sngGetVal(QString &strLine);
// The same on a view into a longer line: the reader walks long lines without copying them.
float sngGetVal(QStringView &strLine);

// The first character of `strLine` that may not stand in a command line (anything but
// ".", "-", blank, tab, "0".."9" and the letters F G H I J K M N P R S T X Y Z), or "".
QString strUnHandledChar(QStringView strLine);

// Reports a fault of the NC file and lets the operator correct it: closes the file, stops
// the busy display, shows the correction window with "Line n:" and the line (when lngLine is
// above 0) and the message, the first occurrence of strLine marked in red. gintReadResult
// becomes 2 when the operator saved a correction ("Ok"), else 1.
void ReadError(int32_t lngLine, const QString &strLine, const QString &strMessage);

// The file chooser's quick look at a file: the "*" lines after a "%" within the first
// 10 lines, each ended CR LF; "*** NOT A Brantok FILE ***" for a file whose first lines
// aren't text of this kind; "" when no "%" stands in the first 10 lines. A file that
// can't be opened gives "".
QString strHeader(const QString &strFile);

// Sets gsngBilletLength / Width / Depth (mm) from the "Billet ..." lines of gstrHeader.
void GetBilletSize();

// Appends a tool number to gintUsedTools unless it is there already.
void ToolAddToUsedList(int16_t intToolNumber);

// Whether a valid analysed file can stand in for the NC text: returns the reason why it
// can't (empty when it can) and sets gblnAnalysedValid. The program uses the analysed-file
// cache's strCompFileReason; `brantok-nc check` always reads the text and puts the stand-in here.
using CompFileReasonFn = QString (*)();
extern CompFileReasonFn gfnCompFileReason;
// The stand-in: clears gblnAnalysedValid, "there is no previously analysed version of this NC file".
QString strNoCompFileReason();

// The reader's working state back to before any read (tests).
void ResetReader();
