#include "tools/frmtooldata.h"

#include "core/logger.h"
#include "core/msgbox.h"
#include "core/vb.h"
#include "tools/frmtooltype.h"
#include "tools/tooltable.h"
#include "tools/tooltypes.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

using namespace vb;

namespace {
// Guarded: the dialog goes with its owner if that is unloaded first.
QPointer<FrmToolData> gfrmToolData;
const QString vbCrLf = QStringLiteral("\r\n");
}

FrmToolData &frmToolData()
{
    if (!gfrmToolData) {
        gfrmToolData = new FrmToolData(DialogOwner());
        gfrmToolData->Form_Load();
    }
    return *gfrmToolData.data();
}

bool blnFrmToolDataLoaded() { return !gfrmToolData.isNull(); }

void UnloadFrmToolData()
{
    delete gfrmToolData.data();
}

FrmToolData::FrmToolData(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmToolData"));
    setAccessibleDescription(QStringLiteral("Tool data"));
    setModal(true);
    lblToolNumber = new QLabel(QStringLiteral("Tool Number:"), this);
    txtToolNumber = new QLineEdit(this);
    lblToolType = new QLabel(QStringLiteral("Type of Tool:"), this);
    cboToolType = new QComboBox(this);
    cmdToolType = new QPushButton(QStringLiteral("Add / Remove Tool Types"), this);
    lblToolDiam = new QLabel(QStringLiteral("Diameter (mm):"), this);
    txtToolDiam = new QLineEdit(this);
    cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    // Every control is read by its own text; the fields by the label that is their buddy.
    const struct { QWidget *w; const char *name; } names[] = {
        {lblToolNumber, "lblToolNumber"}, {txtToolNumber, "txtToolNumber"}, {lblToolType, "lblToolType"},
        {cboToolType, "cboToolType"},     {cmdToolType, "cmdToolType"},     {lblToolDiam, "lblToolDiam"},
        {txtToolDiam, "txtToolDiam"},     {cmdOk, "cmdOk"},                 {cmdCancel, "cmdCancel"},
    };
    for (const auto &n : names)
        n.w->setObjectName(QString::fromLatin1(n.name));
    cmdToolType->setToolTip(QStringLiteral("Customize the list of Type of Tool"));
    lblToolNumber->setBuddy(txtToolNumber);
    lblToolType->setBuddy(cboToolType);
    lblToolDiam->setBuddy(txtToolDiam);
    // Short enough that every number fits the table's 16-bit tool number and the analysed
    // file's diameter field.
    // Pasted text passes the key filters as a control character: the validators keep it to
    // what the filters would have let through.
    txtToolNumber->setMaxLength(4);
    txtToolDiam->setMaxLength(7);
    txtToolNumber->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), this));
    txtToolDiam->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*\\.?[0-9]{0,3}")), this));
    txtToolNumber->setFixedWidth(80);
    txtToolDiam->setFixedWidth(80);
    cboToolType->setMinimumWidth(160);
    cboToolType->setMaxVisibleItems(20);
    cmdOk->setEnabled(false);
    cmdOk->setDefault(true);
    cmdToolType->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);
    txtToolNumber->installEventFilter(this);
    txtToolDiam->installEventFilter(this);

    auto *fields = new QGridLayout;
    fields->addWidget(lblToolNumber, 0, 0);
    fields->addWidget(txtToolNumber, 0, 1, Qt::AlignLeft);
    fields->addWidget(lblToolType, 1, 0);
    fields->addWidget(cboToolType, 1, 1);
    fields->addWidget(cmdToolType, 2, 1);
    fields->addWidget(lblToolDiam, 3, 0);
    fields->addWidget(txtToolDiam, 3, 1, Qt::AlignLeft);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cboToolType, &QComboBox::activated, this, [this] { OkStatus(); });
    connect(cboToolType, &QComboBox::currentIndexChanged, this, [this] { OkStatus(); });
    connect(txtToolNumber, &QLineEdit::textChanged, this, [this] { OkStatus(); });
    connect(txtToolDiam, &QLineEdit::textChanged, this, [this] { OkStatus(); });
    connect(cmdToolType, &QPushButton::clicked, this, [this] { cmdToolType_Click(); });
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void FrmToolData::Form_Load() try {
    ToolTypeStandardShow(cboToolType);
    ToolTypeUserLoad();
    ToolTypeUserShow(cboToolType);
    CentreOverMainWindow(this);
    OkStatus();
} catch (...) {
    LogError("frmToolData", "Form_Load");
}

// Ok is possible with a tool number above 0, a type chosen and a diameter typed ("0" passes).
void FrmToolData::OkStatus() try {
    cmdOk->setEnabled(Val(txtToolNumber->text()) > 0 && cboToolType->currentIndex() >= 0 &&
                      !txtToolDiam->text().isEmpty());
} catch (...) {
    LogError("frmToolData", "OkStatus");
}

// Digits and control characters only.
bool FrmToolData::txtToolNumber_KeyPress(QChar chr) try {
    return chr < u' ' || chr.isDigit();
} catch (...) {
    LogError("frmToolData", "txtToolNumber_KeyPress");
}

// Digits and one point, at most three digits behind it; control characters pass.
bool FrmToolData::txtToolDiam_KeyPress(QChar chr) try {
    if (chr < u' ')
        return true;
    const QString text = txtToolDiam->text();
    if (!txtToolDiam->hasSelectedText()) {
        const int dot = text.indexOf(u'.');
        if (chr == u'.' && dot >= 0)
            return false;
        if (chr.isDigit() && dot >= 0 && text.length() - dot - 1 >= 3 && txtToolDiam->cursorPosition() > dot)
            return false;
    }
    return (chr >= u'0' && chr <= u'9') || chr == u'.';
} catch (...) {
    LogError("frmToolData", "txtToolDiam_KeyPress");
}

bool FrmToolData::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && (watched == txtToolNumber || watched == txtToolDiam)) {
        const auto *key = static_cast<QKeyEvent *>(event);
        // Keys that type nothing (arrows, Delete, Home) are not characters and always pass.
        const QString text = key->text();
        if (!text.isEmpty() && text.at(0) != QChar(0x7F)) {
            bool blnPass = true;
            for (QChar c : text)
                blnPass = blnPass && (watched == txtToolNumber ? txtToolNumber_KeyPress(c) : txtToolDiam_KeyPress(c));
            if (!blnPass)
                return true;   // swallowed
        }
    }
    return QDialog::eventFilter(watched, event);
}

void FrmToolData::cmdToolType_Click() try {
    const QString chosen = cboToolType->currentIndex() >= 0 ? cboToolType->currentText() : QString();
    FrmToolType &types = frmToolType();
    types.setWindowTitle(QStringLiteral("Add or remove Tool Types"));
    types.exec();
    if (types.Tag == QLatin1String("Ok"))
        ToolTypeUserSave();
    else
        ToolTypeUserLoad();
    ToolTypeStandardShow(cboToolType);
    ToolTypeUserShow(cboToolType);
    // The type chosen before stays chosen when it is still in the list.
    cboToolType->setCurrentIndex(cboToolType->findText(chosen, Qt::MatchExactly | Qt::MatchCaseSensitive));
    UnloadFrmToolType();
    OkStatus();
} catch (...) {
    LogError("frmToolData", "cmdToolType_Click");
}

void FrmToolData::cmdCancel_Click() try {
    Tag = QStringLiteral("Cancel");
    hide();
} catch (...) {
    LogError("frmToolData", "cmdCancel_Click");
}

// Two checks, the record being edited left out of both: the tool number must be free, and
// no other tool may have the same type and diameter.
void FrmToolData::cmdOk_Click() try {
    const int16_t intEdited = Tag.isEmpty() ? int16_t{0} : CInt(Val(Tag));
    const int16_t intNumber = CInt(Val(txtToolNumber->text()));
    for (int16_t i = 1; i <= gintToolCount; ++i) {
        if (i == intEdited)
            continue;
        if (gtypTools(i).intNumber == intNumber) {
            StdMsgBox(QStringLiteral("Tool number ") + txtToolNumber->text() + QStringLiteral(" is already in use") + vbCrLf +
                          QStringLiteral("Please enter a different number"),
                      vbExclamation, QStringLiteral("Tool number"));
            txtToolNumber->setSelection(0, 9);
            txtToolNumber->setFocus();
            return;
        }
    }
    const QString strType = cboToolType->currentText();
    const auto sngDiameter = static_cast<float>(Val(txtToolDiam->text()));
    for (int16_t i = 1; i <= gintToolCount; ++i) {
        if (i == intEdited)
            continue;
        if (gtypTools(i).strType == strType && gtypTools(i).sngDiameter == sngDiameter) {
            StdMsgBox(QStringLiteral("You already have a tool of type ") + strType + vbCrLf + QStringLiteral("with diameter ") +
                          txtToolDiam->text() + QStringLiteral("mm") + vbCrLf + QStringLiteral("Please change your selection"),
                      vbExclamation, QStringLiteral("Tool type"));
            txtToolDiam->setSelection(0, 9);
            txtToolDiam->setFocus();
            return;
        }
    }
    Tag = QStringLiteral("Ok");
    hide();
} catch (...) {
    LogError("frmToolData", "cmdOk_Click");
}
