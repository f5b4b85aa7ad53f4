// "Check Program" in the code editor: the text in the editor read by the program's own NC
// reader, exactly as the set-up wizard reads a file before milling, so that the operator
// corrects a program where it is written instead of at the machine.
//
// The text is written, as Save would write it (one byte a character, CR LF), to a file in a
// temporary folder, and ReadCommands reads that file with the tool table and settings in
// force. The reader's correction window is not shown: its text comes back here. The reader's
// results (command table, used tools, billet, header, the NC file's name) are put back as
// they were afterwards, so a check leaves the program's state as it found it.
//
// Outcomes:
//   - clean: a box with the number of commands, the tools in order of use and the billet;
//   - a fault on a line: the caret on that line (selected), then the reader's own message;
//   - a fault of the whole program (no tools, no speed, ...): the reader's message alone;
//   - a fault the reader leaves to the error trap: the trap's report, and the editor stays
//     with the text (milling would end the program there).
#include "files/cncedit.h"

#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/textfile.h"

#include <QApplication>
#include <QFileInfo>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolBar>

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kTitle = QStringLiteral("Check Program");

// Everything ReadCommands writes, kept to be put back after the check.
struct ReaderState {
    QString strNCFile = gstrNCFile;
    QString strHeader = gstrHeader;
    QString strAnalysedReason = gstrAnalysedReason;
    bool blnAnalysedValid = gblnAnalysedValid;
    int16_t intReadResult = gintReadResult;
    bool blnCancel = gblnCancel;
    float sngLength = gsngBilletLength, sngWidth = gsngBilletWidth, sngDepth = gsngBilletDepth;
    vb::Table<CommandRecord> typCommands = gtypCommands;
    int32_t lngCommandCount = glngCommandCount;
    vb::Table<int16_t> intUsedTools = gintUsedTools;
    int16_t intUsedToolCount = gintUsedToolCount;
    CompFileReasonFn fnCompFileReason = gfnCompFileReason;
    UiHooks hooks = uiHooks();

    void Restore() const
    {
        gstrNCFile = strNCFile;
        gstrHeader = strHeader;
        gstrAnalysedReason = strAnalysedReason;
        gblnAnalysedValid = blnAnalysedValid;
        gintReadResult = intReadResult;
        gblnCancel = blnCancel;
        gsngBilletLength = sngLength;
        gsngBilletWidth = sngWidth;
        gsngBilletDepth = sngDepth;
        gtypCommands = typCommands;
        glngCommandCount = lngCommandCount;
        gintUsedTools = intUsedTools;
        gintUsedToolCount = intUsedToolCount;
        gfnCompFileReason = fnCompFileReason;
        uiHooks() = hooks;
    }
};

struct CheckResult {
    bool blnFault = false;     // the reader refused the program
    bool blnTrapped = false;   // the reader's fault went to the error trap (report shown)
    QString strError;          // the reader's text for the correction window
    int32_t lngLine = 0;       // the faulty line from 1, 0 for a fault of the whole program
    QString strSummary;        // the clean read's summary
};

// The line number the reader put at the head of its text ("Line 12:" CR LF ...), else 0.
int32_t lngLineOfError(const QString &strError)
{
    static const QRegularExpression head(QStringLiteral("^Line (\\d+):\r\n"));
    const QRegularExpressionMatch m = head.match(strError);
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}

QString strCleanSummary()
{
    QStringList tools;
    for (int16_t i = 1; i <= gintUsedToolCount; ++i)
        tools << QString::number(gintUsedTools(i));
    return QStringLiteral("The program reads cleanly.") + kCrLf + kCrLf + QStringLiteral("Commands: ") +
           QString::number(glngCommandCount) + kCrLf + QStringLiteral("Tools used: ") + tools.join(u' ') + kCrLf +
           QStringLiteral("Billet: length ") + vb::Format000(gsngBilletLength) + QStringLiteral(" mm, width ") +
           vb::Format000(gsngBilletWidth) + QStringLiteral(" mm, depth ") + vb::Format000(gsngBilletDepth) +
           QStringLiteral(" mm");
}

// Reads strFile with the reader as milling does, but with the text itself always read (an
// analysed file has nothing to say about a text being edited) and without the busy display
// of the main window.
CheckResult ReadWithReader(const QString &strFile)
{
    CheckResult r;
    const ReaderState saved;
    uiHooks().correctFile = [&r](const QString &, const QString &strError, const QString &) {
        r.blnFault = true;
        r.strError = strError;
        r.lngLine = lngLineOfError(strError);
        return QStringLiteral("Cancel");
    };
    uiHooks().pageTurnStart = [](const QString &) {};
    uiHooks().pageTurnStop = [] {};
    // The trap shows its report; then, instead of the end of the program, the read unwinds.
    uiHooks().endProcess = [](int) { throw TrapEnded(); };
    gfnCompFileReason = strNoCompFileReason;
    gblnCancel = false;
    try {
        ReadCommands(strFile);
        if (!r.blnFault && gintReadResult == 0)
            r.strSummary = strCleanSummary();
        else
            r.blnFault = true;
    } catch (const TrapEnded &) {
        r.blnFault = true;
        r.blnTrapped = true;
    } catch (...) {
        saved.Restore();
        throw;   // the trap is disarmed (development build): on to the debugger
    }
    saved.Restore();
    return r;
}

} // namespace

void FrmCNCEdit::mnuECheck_Click() try {
    if (blnChecking)
        return;
    const QString strText = rtbCNCEdit->document()->toRawText();
    CheckResult r;
    {
        QTemporaryDir dir;
        const QString strName =
            strFileName.isEmpty() ? QStringLiteral("Untitled.brx") : QFileInfo(strFileName).fileName();
        const QString strFile = dir.filePath(strName);
        QString strError;
        if (!dir.isValid() || !blnTextFileSave(strFile, strText, strError)) {
            StdMsgBox(QStringLiteral("The program cannot be checked: the temporary folder can't be written.") +
                          kCrLf + (dir.isValid() ? strError : dir.errorString()),
                      vbExclamation, kTitle);
            return;
        }
        // The reader lets the event loop run after every line: nothing in the window may
        // change the text meanwhile, nor close it.
        blnChecking = true;
        for (QWidget *w : {static_cast<QWidget *>(menuBar()), static_cast<QWidget *>(tlbEdit),
                           static_cast<QWidget *>(rtbCNCEdit)})
            w->setEnabled(false);
        QApplication::setOverrideCursor(Qt::WaitCursor);
        struct Done {
            FrmCNCEdit *form;
            ~Done()
            {
                QApplication::restoreOverrideCursor();
                for (QWidget *w : {static_cast<QWidget *>(form->menuBar()), static_cast<QWidget *>(form->tlbEdit),
                                   static_cast<QWidget *>(form->rtbCNCEdit)})
                    w->setEnabled(true);
                form->blnChecking = false;
            }
        } done{this};
        r = ReadWithReader(strFile);
    }
    if (!r.blnFault) {
        StdMsgBox(r.strSummary, vbInformation, kTitle);
        return;
    }
    if (r.blnTrapped)
        return;   // the trap's report has been shown
    if (r.lngLine > 0) {
        // The line as the file has it: every line break of the text, paragraph or line
        // separator, is a line end in the file.
        qsizetype start = 0;
        for (int32_t lngLine = 1; lngLine < r.lngLine && start >= 0; ++lngLine) {
            qsizetype next = -1;
            for (qsizetype i = start; i < strText.size(); ++i)
                if (strText.at(i) == QChar::ParagraphSeparator || strText.at(i) == QChar::LineSeparator) {
                    next = i + 1;
                    break;
                }
            start = next;
        }
        if (start >= 0) {
            qsizetype end = start;
            while (end < strText.size() && strText.at(end) != QChar::ParagraphSeparator &&
                   strText.at(end) != QChar::LineSeparator)
                ++end;
            QTextCursor line(rtbCNCEdit->document());
            line.setPosition(static_cast<int>(start));
            line.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
            rtbCNCEdit->setTextCursor(line);
            rtbCNCEdit->centerCursor();
            rtbCNCEdit->setFocus();
            DisplayPosition();
        }
    }
    StdMsgBox(r.strError, vbExclamation, kTitle);
} catch (...) {
    LogError("frmCNCEdit", "mnuECheck_Click");
}
