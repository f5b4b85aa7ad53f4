#include "files/frmfind.h"

#include "core/logger.h"
#include "files/cncedit.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

QString gstrFindText;
int32_t glngFindPos = 0;

namespace {

FrmFind *g_frmFind = nullptr;

// The editor's text area, or null when the editor isn't loaded.
QPlainTextEdit *EditorText()
{
    return frmCNCEditLoaded() ? frmCNCEdit()->rtbCNCEdit : nullptr;
}

// Where the caret goes when the text area is given a new text: the top, nothing selected.
void CaretToTop(QPlainTextEdit *rtb)
{
    QTextCursor top(rtb->document());
    top.setPosition(0);
    rtb->setTextCursor(top);
}

} // namespace

FrmFind *frmFind() { return FormInstance(g_frmFind); }
bool frmFindLoaded() { return g_frmFind != nullptr; }

void UnloadFrmFind()
{
    if (g_frmFind)
        Unload(g_frmFind);
}

void ResetFind()
{
    gstrFindText.clear();
    glngFindPos = 0;
}

FrmFind::FrmFind() : QDialog(frmCNCEditLoaded() ? frmCNCEdit() : nullptr)
{
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("Find"));
    lblFind = new QLabel(QStringLiteral("Find:"), this);
    txtFind = new QLineEdit(this);
    txtFind->setObjectName(QStringLiteral("txtFind"));
    lblFind->setBuddy(txtFind);
    cmdFind = new QPushButton(QStringLiteral("&Find Next"), this);
    cmdFind->setObjectName(QStringLiteral("cmdFind"));
    cmdFind->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    lblReplace = new QLabel(QStringLiteral("Replace with:"), this);
    txtReplace = new QLineEdit(this);
    txtReplace->setObjectName(QStringLiteral("txtReplace"));
    lblReplace->setBuddy(txtReplace);
    cmdReplace = new QPushButton(QStringLiteral("&Replace"), this);
    cmdReplace->setObjectName(QStringLiteral("cmdReplace"));
    cmdReplace->setAutoDefault(false);
    cmdReplaceAll = new QPushButton(QStringLiteral("Replace &All"), this);
    cmdReplaceAll->setObjectName(QStringLiteral("cmdReplaceAll"));
    cmdReplaceAll->setAutoDefault(false);

    // The boxes at the left, the buttons in a column at the right. The dialog takes the
    // size of what is shown: Find hides the replace row and its two buttons.
    auto *grid = new QGridLayout(this);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->addWidget(lblFind, 0, 0);
    grid->addWidget(txtFind, 0, 1);
    grid->addWidget(cmdFind, 0, 2);
    grid->addWidget(lblReplace, 1, 0);
    grid->addWidget(txtReplace, 1, 1);
    grid->addWidget(cmdReplace, 1, 2);
    grid->addWidget(cmdReplaceAll, 2, 2);
    grid->addWidget(cmdCancel, 3, 2);
    txtFind->setMinimumWidth(260);

    connect(txtFind, &QLineEdit::textChanged, this, [this] { txtFind_Change(); });
    connect(txtReplace, &QLineEdit::textChanged, this, [this] { txtReplace_Change(); });
    connect(cmdFind, &QPushButton::clicked, this, [this] { cmdFind_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(cmdReplace, &QPushButton::clicked, this, [this] { cmdReplace_Click(); });
    connect(cmdReplaceAll, &QPushButton::clicked, this, [this] { cmdReplaceAll_Click(); });
}

FrmFind::~FrmFind()
{
    if (g_frmFind == this)
        g_frmFind = nullptr;
}

void FrmFind::Form_Load() try {
    // Centred over the editor once its size is known (ShowFind).
    cmdFind->setEnabled(false);
    cmdReplace->setEnabled(false);
    cmdReplaceAll->setEnabled(false);
    QPlainTextEdit *rtb = EditorText();
    if (!rtb)
        return;
    const QTextCursor sel = rtb->textCursor();
    txtFind->setText(sel.selectedText());
    FindSetup(sel.selectedText(), sel.selectionStart());
} catch (...) {
    LogError("frmFind", "Form_Load");
}

bool FrmFind::event(QEvent *e)
{
    const bool blnDone = QDialog::event(e);
    if (e->type() == QEvent::WindowActivate)
        Form_Activate();
    return blnDone;
}

void FrmFind::Form_Activate() try {
    txtFind->selectAll();
    txtFind->setFocus();
    txtReplace->selectAll();
} catch (...) {
    LogError("frmFind", "Form_Activate");
}

void FrmFind::txtFind_Change() try {
    cmdFind->setEnabled(!txtFind->text().trimmed().isEmpty());
} catch (...) {
    LogError("frmFind", "txtFind_Change");
}

void FrmFind::txtReplace_Change() try {
    // Replacing with nothing can't be done here: both texts must hold something.
    const bool blnBoth = !txtFind->text().trimmed().isEmpty() && !txtReplace->text().trimmed().isEmpty();
    cmdReplace->setEnabled(blnBoth);
    cmdReplaceAll->setEnabled(blnBoth);
} catch (...) {
    LogError("frmFind", "txtReplace_Change");
}

void FrmFind::cmdFind_Click() try {
    FindNext(txtFind->text());
} catch (...) {
    LogError("frmFind", "cmdFind_Click");
}

void FrmFind::cmdReplace_Click() try {
    QPlainTextEdit *rtb = EditorText();
    if (!rtb)
        return;
    if (!rtb->textCursor().hasSelection())
        FindNext(txtFind->text());
    QTextCursor sel = rtb->textCursor();
    // Whatever is selected is replaced, whether a search found it or not.
    if (!sel.hasSelection())
        return;
    // The text becomes the part before the selection, the replacement and the rest: done
    // on the selection itself (one step to undo, no copy of a long text), then the caret
    // goes to the top as for any new text, and the search goes on from the hit.
    sel.insertText(txtReplace->text());
    CaretToTop(rtb);
    FindNext(txtFind->text());
} catch (...) {
    LogError("frmFind", "cmdReplace_Click");
}

void FrmFind::cmdReplaceAll_Click() try {
    QPlainTextEdit *rtb = EditorText();
    if (!rtb)
        return;
    // Every occurrence from the first character, case ignored, no count and no report.
    // The raw text keeps what the plain text would change (a no-break space, byte 160).
    const QString strOld = rtb->document()->toRawText();
    QString strNew = strOld;
    strNew.replace(txtFind->text(), txtReplace->text(), Qt::CaseInsensitive);
    if (strNew == strOld)
        return;   // nothing found: the text and its undo history stay as they are
    // The whole text is set in one edit, so one Undo takes the replacement back.
    QTextCursor all(rtb->document());
    all.beginEditBlock();
    all.select(QTextCursor::Document);
    all.insertText(strNew);
    all.endEditBlock();
    CaretToTop(rtb);
} catch (...) {
    LogError("frmFind", "cmdReplaceAll_Click");
}

void FrmFind::cmdCancel_Click() try {
    Unload(this);
} catch (...) {
    LogError("frmFind", "cmdCancel_Click");
}

void FrmFind::reject() { cmdCancel_Click(); }

void ShowFind(FrmCNCEdit *editor, bool blnReplace)
{
    FrmFind *form = frmFind();
    for (QWidget *w : {static_cast<QWidget *>(form->lblReplace), static_cast<QWidget *>(form->txtReplace),
                       static_cast<QWidget *>(form->cmdReplace), static_cast<QWidget *>(form->cmdReplaceAll)})
        w->setVisible(blnReplace);
    form->adjustSize();
    if (editor)
        form->move(editor->frameGeometry().center() - QPoint(form->width() / 2, form->height() / 2));
    ShowModal(form, nullptr);
}

void FindSetup(const QString &strText, int32_t lngStart) try {
    if (!strText.isEmpty()) {
        gstrFindText = strText;
        glngFindPos = lngStart;
    } else {
        gstrFindText.clear();
        glngFindPos = -1;
    }
} catch (...) {
    LogError("frmFind", "FindSetup");
}

int32_t lngEditorFind(const QString &strText, int32_t lngStart)
{
    QPlainTextEdit *rtb = EditorText();
    if (!rtb || strText.isEmpty() || lngStart < 0 || lngStart >= rtb->document()->characterCount())
        return -1;
    const QTextCursor hit = rtb->document()->find(strText, lngStart);
    if (hit.isNull())
        return -1;
    rtb->setTextCursor(hit);
    rtb->ensureCursorVisible();
    return hit.selectionStart();
}

void FindNext(const QString &strText) try {
    if (strText == gstrFindText || strText.isEmpty()) {
        // On from the last hit; past the end, round to the top without a word.
        glngFindPos = lngEditorFind(gstrFindText, glngFindPos + 1);
        if (glngFindPos == -1)
            glngFindPos = lngEditorFind(gstrFindText, 0);
    } else {
        gstrFindText = strText;
        glngFindPos = lngEditorFind(strText, 0);
    }
    // No message for a search that failed: the buttons and the unchanged selection say it.
    if (!strText.isEmpty() && frmFindLoaded()) {
        g_frmFind->cmdReplace->setEnabled(glngFindPos != -1);
        g_frmFind->cmdReplaceAll->setEnabled(glngFindPos != -1);
    }
} catch (...) {
    LogError("frmFind", "FindNext");
}
