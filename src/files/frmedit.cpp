#include "files/frmedit.h"

#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "nc/textfile.h"

#include <QApplication>
#include <QColor>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

FrmEdit *gfrmEdit = nullptr;

// The main window, when one is shown: the window the program's forms centre on.
QWidget *MainWindow()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmMain") && w->isVisible())
            return w;
    return nullptr;
}

} // namespace

FrmEdit::FrmEdit(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmEdit"));
    setAccessibleDescription(QStringLiteral("Correct the NC file"));
    setModal(true);

    txtError = new QPlainTextEdit(this);
    txtError->setObjectName(QStringLiteral("txtError"));
    txtError->setAccessibleName(QStringLiteral("Fault in the NC file"));
    txtError->setReadOnly(true);
    txtError->setFixedHeight(txtError->fontMetrics().lineSpacing() * 5 + 12);

    rtbEdit = new QPlainTextEdit(this);
    rtbEdit->setObjectName(QStringLiteral("rtbEdit"));
    rtbEdit->setAccessibleName(QStringLiteral("NC file text"));
    rtbEdit->setLineWrapMode(QPlainTextEdit::NoWrap);
    rtbEdit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    cmdOk = new QPushButton(tr("&OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setAccessibleDescription(QStringLiteral("Save the corrected file and read it again"));
    cmdOk->setAutoDefault(false);   // Enter belongs to the editor
    cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAccessibleDescription(QStringLiteral("Leave the file as it is"));
    cmdCancel->setAutoDefault(false);

    // txtError across the top, rtbEdit fills the rest, the buttons in the bottom corner.
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtError);
    layout->addWidget(rtbEdit, 1);
    layout->addLayout(buttons);

    connect(cmdOk, &QPushButton::clicked, this, &FrmEdit::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmEdit::cmdCancel_Click);
    resize(720, 520);
}

void FrmEdit::Form_Load(const QString &strPath) try {
    strFile = strPath;
    QWidget *main = MainWindow();
    if (main)
        setWindowIcon(main->windowIcon());
    const QRect area = main ? main->frameGeometry()
                            : (screen() ? screen()->availableGeometry() : QRect(0, 0, 1024, 768));
    move(area.center() - rect().center());

    QString strText;
    const bool blnLoaded = blnTextFileLoad(strFile, strText);
    rtbEdit->setPlainText(strText);
    cmdOk->setEnabled(blnLoaded);
    setWindowTitle(QStringLiteral("File: ") + strFile);
} catch (...) {
    LogError("frmEdit", "Form_Load");
}

void FrmEdit::ShowFault(const QString &strError, const QString &strLine) try {
    QString shown = strError;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    txtError->setPlainText(shown);
    if (strLine.isEmpty())
        return;   // a fault of the whole file: no line to mark
    QTextCursor found = rtbEdit->document()->find(strLine, 0, QTextDocument::FindCaseSensitively);
    if (found.isNull())
        return;
    QTextCharFormat red;
    red.setForeground(QColor(255, 0, 0));
    found.mergeCharFormat(red);
    // The selection collapses to the start of the line, which is brought into view.
    found.setPosition(found.selectionStart());
    rtbEdit->setTextCursor(found);
    rtbEdit->centerCursor();
} catch (...) {
    LogError("frmEdit", "ShowFault");
}

void FrmEdit::cmdOk_Click() try {
    QString strError;
    if (!blnTextFileSave(strFile, rtbEdit->document()->toRawText(), strError)) {
        // The file stays as it was and so does the operator's text: try again, or Cancel.
        StdMsgBox(QStringLiteral("Cannot save file ") + strFile + QStringLiteral("\r\n") + strError, vbExclamation,
                  QStringLiteral("File not saved"));
        return;
    }
    Tag = QStringLiteral("Ok");
    hide();
} catch (...) {
    LogError("frmEdit", "cmdOk_Click");
}

void FrmEdit::cmdCancel_Click() try {
    Tag = QStringLiteral("Cancel");
    hide();
} catch (...) {
    LogError("frmEdit", "cmdCancel_Click");
}

void FrmEdit::reject() { cmdCancel_Click(); }

FrmEdit *frmEdit()
{
    if (!gfrmEdit)
        gfrmEdit = new FrmEdit(MainWindow());
    return gfrmEdit;
}

void UnloadFrmEdit()
{
    delete gfrmEdit;
    gfrmEdit = nullptr;
}

QString strCorrectFileWithFrmEdit(const QString &strFile, const QString &strError, const QString &strLine)
{
    FrmEdit *form = frmEdit();
    form->Form_Load(strFile);
    form->ShowFault(strError, strLine);
    form->exec();
    const QString strTag = form->Tag;
    UnloadFrmEdit();
    return strTag;
}

void InstallFrmEditHook() { uiHooks().correctFile = strCorrectFileWithFrmEdit; }
