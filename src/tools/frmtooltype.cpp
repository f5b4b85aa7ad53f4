#include "tools/frmtooltype.h"

#include "core/logger.h"
#include "core/vb.h"
#include "tools/tooltable.h"
#include "tools/tooltypes.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

using namespace vb;

namespace {
// Guarded: the dialog goes with its owner if that is unloaded first.
QPointer<FrmToolType> gfrmToolType;
}

FrmToolType &frmToolType()
{
    if (!gfrmToolType) {
        gfrmToolType = new FrmToolType(DialogOwner());
        gfrmToolType->Form_Load();
    }
    return *gfrmToolType.data();
}

bool blnFrmToolTypeLoaded() { return !gfrmToolType.isNull(); }

void UnloadFrmToolType()
{
    delete gfrmToolType.data();
}

QWidget *MainWindowForDialogs()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmMain"))
            return w;
    return QApplication::activeWindow();
}

QWidget *DialogOwner()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    return MainWindowForDialogs();
}

void CentreOverMainWindow(QWidget *dialog)
{
    dialog->adjustSize();
    QWidget *main = MainWindowForDialogs();
    QRect over;
    if (main && main != dialog)
        over = main->frameGeometry();
    else if (QScreen *screen = QGuiApplication::primaryScreen())
        over = screen->availableGeometry();
    dialog->move(over.center() - QPoint(dialog->width() / 2, dialog->height() / 2));
}

void ToolTypeStandardShow(QListWidget *list) try {
    list->clear();
    list->addItems(gstrToolTypeStandard());
} catch (...) {
    LogError("F1Mill", "ToolTypeStandardShow");
}

void ToolTypeStandardShow(QComboBox *list) try {
    list->clear();
    list->addItems(gstrToolTypeStandard());
    list->setCurrentIndex(-1);
} catch (...) {
    LogError("F1Mill", "ToolTypeStandardShow");
}

void ToolTypeUserShow(QListWidget *list) try {
    for (int16_t i = 1; i <= gintToolTypeCount; ++i) {
        auto *item = new QListWidgetItem(gstrToolTypes(i), list);
        item->setData(Qt::UserRole, static_cast<int>(i));
    }
} catch (...) {
    LogError("F1Mill", "ToolTypeUserShow");
}

void ToolTypeUserShow(QComboBox *list) try {
    const int current = list->currentIndex();
    for (int16_t i = 1; i <= gintToolTypeCount; ++i)
        list->addItem(gstrToolTypes(i), static_cast<int>(i));
    list->setCurrentIndex(current);
} catch (...) {
    LogError("F1Mill", "ToolTypeUserShow");
}

int16_t intMatchRow(const QString &strText, QListWidget *list) try {
    for (int i = 0; i < list->count(); ++i)
        if (UCase(list->item(i)->text()) == strText)
            return Int16(i);
    return -1;
} catch (...) {
    LogError("frmToolType", "intMatchRow");
}

int16_t intItemData(QListWidget *list, int row) { return Int16(list->item(row)->data(Qt::UserRole).toInt()); }

FrmToolType::FrmToolType(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmToolType"));
    setAccessibleDescription(QStringLiteral("Tool types"));
    setModal(true);
    // A name only where there is no text to read: the lists (their labels stand above them).
    auto named = [](QWidget *w, const char *name, const QString &accessible = QString()) {
        w->setObjectName(QString::fromLatin1(name));
        if (!accessible.isEmpty())
            w->setAccessibleName(accessible);
        return w;
    };
    lblStandard = new QLabel(QStringLiteral("Basic Tool Types"), this);
    lblStandardNote = new QLabel(QStringLiteral("(may not be changed)"), this);
    lstTypeStandard = new QListWidget(this);
    lblUser = new QLabel(QStringLiteral("Custom Types in use"), this);
    lblUserNote = new QLabel(QStringLiteral("(may not be changed)"), this);
    lstTypeUser = new QListWidget(this);
    lblUserNew = new QLabel(QStringLiteral("Unused Tool Types"), this);
    lstTypeUserNew = new QListWidget(this);
    lblNewType = new QLabel(QStringLiteral("New Tool Type:"), this);
    txtNewType = new QLineEdit(this);
    cmdAdd = new QPushButton(QStringLiteral("Add"), this);
    cmdDelete = new QPushButton(QStringLiteral("Delete"), this);
    cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    named(lblStandard, "lblStandard");
    named(lblStandardNote, "lblStandardNote");
    named(lstTypeStandard, "lstTypeStandard", QStringLiteral("Basic Tool Types"));
    named(lblUser, "lblUser");
    named(lblUserNote, "lblUserNote");
    named(lstTypeUser, "lstTypeUser", QStringLiteral("Custom Types in use"));
    named(lblUserNew, "lblUserNew");
    named(lstTypeUserNew, "lstTypeUserNew", QStringLiteral("Unused Tool Types"));
    named(lblNewType, "lblNewType");
    named(txtNewType, "txtNewType");   // read by its buddy, "New Tool Type:"
    named(cmdAdd, "cmdAdd");
    named(cmdDelete, "cmdDelete");
    named(cmdOk, "cmdOk");
    named(cmdCancel, "cmdCancel");
    lblNewType->setBuddy(txtNewType);
    for (QListWidget *list : {lstTypeStandard, lstTypeUser, lstTypeUserNew}) {
        list->setSelectionMode(QAbstractItemView::SingleSelection);
        list->setFixedSize(150, 150);
    }
    txtNewType->setFixedWidth(150);
    cmdAdd->setEnabled(false);
    cmdDelete->setEnabled(false);
    cmdOk->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);
    cmdAdd->setAutoDefault(false);
    cmdDelete->setAutoDefault(false);

    auto *lists = new QGridLayout;
    lists->addWidget(lblStandard, 0, 0);
    lists->addWidget(lblStandardNote, 1, 0);
    lists->addWidget(lstTypeStandard, 2, 0);
    lists->addWidget(lblUser, 0, 1);
    lists->addWidget(lblUserNote, 1, 1);
    lists->addWidget(lstTypeUser, 2, 1);
    lists->addWidget(lblUserNew, 0, 2);
    lists->addWidget(lstTypeUserNew, 2, 2);
    lists->addWidget(cmdDelete, 3, 2);
    lists->addWidget(lblNewType, 4, 0);
    lists->addWidget(txtNewType, 5, 0);
    lists->addWidget(cmdAdd, 5, 1, Qt::AlignLeft);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(lists);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(lstTypeStandard, &QListWidget::currentRowChanged, this, [this] { lstTypeStandard_Click(); });
    connect(lstTypeUser, &QListWidget::currentRowChanged, this, [this] { lstTypeUser_Click(); });
    connect(lstTypeUserNew, &QListWidget::currentRowChanged, this, [this] { lstTypeUserNew_Click(); });
    connect(txtNewType, &QLineEdit::textChanged, this, [this] { txtNewType_Change(); });
    connect(cmdAdd, &QPushButton::clicked, this, [this] { cmdAdd_Click(); });
    connect(cmdDelete, &QPushButton::clicked, this, [this] { cmdDelete_Click(); });
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void FrmToolType::Form_Load() try {
    blnInClick = true;
    CentreOverMainWindow(this);
    ToolTypeStandardShow(lstTypeStandard);
    ToolTypeUserLoad();
    ToolTypeUserShow(lstTypeUser);
    // Custom types no tool uses (the name compared with case) move to the unused list.
    for (int i = lstTypeUser->count() - 1; i >= 0; --i) {
        const QString name = lstTypeUser->item(i)->text();
        bool blnUsed = false;
        for (int16_t t = 1; t <= gintToolCount && !blnUsed; ++t)
            blnUsed = gtypTools(t).strType == name;
        if (!blnUsed)
            lstTypeUserNew->addItem(lstTypeUser->takeItem(i));
    }
    for (QListWidget *list : {lstTypeStandard, lstTypeUser, lstTypeUserNew})
        list->setCurrentRow(-1);
    blnInClick = false;
    txtNewType->setFocus();
} catch (...) {
    LogError("frmToolType", "Form_Load");
}

// A click in one list clears the selection of the other two.
void FrmToolType::ClearOthers(QListWidget *clicked)
{
    if (blnInClick)
        return;
    blnInClick = true;
    for (QListWidget *list : {lstTypeStandard, lstTypeUser, lstTypeUserNew})
        if (list != clicked) {
            list->setCurrentRow(-1);
            list->clearSelection();
        }
    blnInClick = false;
}

void FrmToolType::lstTypeStandard_Click() try {
    ClearOthers(lstTypeStandard);
} catch (...) {
    LogError("frmToolType", "lstTypeStandard_Click");
}

void FrmToolType::lstTypeUser_Click() try {
    ClearOthers(lstTypeUser);
} catch (...) {
    LogError("frmToolType", "lstTypeUser_Click");
}

void FrmToolType::lstTypeUserNew_Click() try {
    if (blnInClick)
        return;
    ClearOthers(lstTypeUserNew);
    cmdDelete->setEnabled(lstTypeUserNew->currentRow() >= 0);
} catch (...) {
    LogError("frmToolType", "lstTypeUserNew_Click");
}

void FrmToolType::txtNewType_Change() try {
    if (Trim(txtNewType->text()).isEmpty()) {
        cmdAdd->setEnabled(false);
        return;
    }
    const QString wanted = UCase(Trim(txtNewType->text()));
    bool blnExists = false;
    blnInClick = true;
    for (QListWidget *list : {lstTypeStandard, lstTypeUser, lstTypeUserNew}) {
        list->clearSelection();
        list->setCurrentRow(-1);
        const int16_t row = intMatchRow(wanted, list);
        if (row >= 0) {
            list->setCurrentRow(row);
            blnExists = true;
        }
    }
    blnInClick = false;
    if (blnExists) {
        // The name is there already (case aside): nothing to add.
        cmdAdd->setEnabled(false);
        txtNewType->selectAll();
        txtNewType->setFocus();
    } else {
        cmdAdd->setEnabled(true);
        cmdDelete->setEnabled(false);
    }
} catch (...) {
    LogError("frmToolType", "txtNewType_Change");
}

void FrmToolType::cmdAdd_Click() try {
    gintToolTypeCount = Int16(gintToolTypeCount + 1);
    gstrToolTypes.Redim(gintToolTypeCount);
    gstrToolTypes(gintToolTypeCount) = Trim(txtNewType->text());
    auto *item = new QListWidgetItem(gstrToolTypes(gintToolTypeCount), lstTypeUserNew);
    item->setData(Qt::UserRole, static_cast<int>(gintToolTypeCount));
    txtNewType->clear();
    cmdAdd->setEnabled(false);
} catch (...) {
    LogError("frmToolType", "cmdAdd_Click");
}

// The items that stay keep their old index as item data; a second delete in the same
// visit therefore takes the index of the list as it was when the dialog opened.
void FrmToolType::cmdDelete_Click() try {
    const int row = lstTypeUserNew->currentRow();
    if (row < 0)
        return;
    const int16_t index = intItemData(lstTypeUserNew, row);
    blnInClick = true;
    delete lstTypeUserNew->takeItem(row);
    lstTypeUserNew->setCurrentRow(-1);
    blnInClick = false;
    cmdDelete->setEnabled(false);
    gintToolTypeCount = Int16(gintToolTypeCount - 1);
    for (int i = index; i <= gintToolTypeCount; ++i)
        gstrToolTypes(i) = gstrToolTypes(i + 1);
    gstrToolTypes.Redim(gintToolTypeCount);
} catch (...) {
    LogError("frmToolType", "cmdDelete_Click");
}

void FrmToolType::cmdOk_Click() try {
    Tag = QStringLiteral("Ok");
    hide();
} catch (...) {
    LogError("frmToolType", "cmdOk_Click");
}

void FrmToolType::cmdCancel_Click() try {
    Tag = QStringLiteral("Cancel");
    hide();
} catch (...) {
    LogError("frmToolType", "cmdCancel_Click");
}
