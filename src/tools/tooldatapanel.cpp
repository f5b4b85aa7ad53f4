#include "tools/tooldatapanel.h"

#include "core/logger.h"
#include "core/msgbox.h"
#include "core/vb.h"
#include "tools/frmtooldata.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace vb;

namespace {
const QString vbCrLf = QStringLiteral("\r\n");
}

ToolDataPanel::ToolDataPanel(QWidget *parent, std::function<void(int16_t)> setMode)
    : QFrame(parent), m_setMode(std::move(setMode))
{
    setObjectName(QStringLiteral("picTools"));
    setAccessibleName(QStringLiteral("Tool Data Table"));
    setAutoFillBackground(true);
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    grdTools = new ToolGrid(QStringLiteral("grdTools"), QStringLiteral("cmdSort"), this);
    cmdAdd = new QPushButton(QStringLiteral("Add"), this);
    cmdEdit = new QPushButton(QStringLiteral("Edit"), this);
    cmdDelete = new QPushButton(QStringLiteral("Delete"), this);
    cmdOk = new QPushButton(QStringLiteral("Done"), this);
    const struct { QPushButton *b; const char *name; const char *accessible; } names[] = {
        {cmdAdd, "cmdAdd", "Add a tool"},
        {cmdEdit, "cmdEdit", "Edit the selected tool"},
        {cmdDelete, "cmdDelete", "Delete the selected tool"},
        {cmdOk, "cmdOk", "Save the tool table"},
    };
    for (const auto &n : names) {
        n.b->setObjectName(QString::fromLatin1(n.name));
        n.b->setAccessibleDescription(QString::fromLatin1(n.accessible));
        n.b->setAutoDefault(false);
        n.b->setMinimumWidth(90);
    }
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdEdit);
    buttons->addWidget(cmdDelete);
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    layout->addWidget(grdTools, 0, Qt::AlignHCenter);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    ToolGridSetup(*grdTools);
    connect(grdTools, &ToolGrid::Click, this, [this] { grdTools_Click(); });
    connect(grdTools, &ToolGrid::SortClick, this, [this](int i) { cmdSort_Click(i); });
    // A wider grid (scroll bar) widens the page: keep it centred.
    connect(grdTools, &ToolGrid::SizeChanged, this, [this] {
        if (isVisible())
            Centre();
    });
    connect(cmdAdd, &QPushButton::clicked, this, [this] { cmdAdd_Click(); });
    connect(cmdEdit, &QPushButton::clicked, this, [this] { cmdEdit_Click(); });
    connect(cmdDelete, &QPushButton::clicked, this, [this] { cmdDelete_Click(); });
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    SetEditDelete(false);
}

void ToolDataPanel::Centre()
{
    adjustSize();
    if (QWidget *p = parentWidget())
        move((p->width() - width()) / 2, (p->height() - height()) / 2);
}

void ToolDataPanel::SetEditDelete(bool enabled)
{
    cmdEdit->setEnabled(enabled);
    cmdDelete->setEnabled(enabled);
}

void ToolDataPanel::ShowToolData() try {
    Centre();
    SetEditDelete(false);
    ToolGridSetup(*grdTools);
    if (m_setMode)
        m_setMode(5);
    grdTools->SetCell(0, 0);
    Centre();
} catch (...) {
    LogError("frmMain", "ShowToolData");
}

// The index in gtypTools of the tool in the selected row (its hidden column 4).
int16_t ToolDataPanel::intSelectedIndex() { return CInt(Val(grdTools->TextMatrix(grdTools->Row(), 4))); }

void ToolDataPanel::grdTools_Click() try {
    if (grdTools->Row() >= 1 && grdTools->Row() <= gintToolRows) {
        SetEditDelete(true);
    } else {
        SetEditDelete(false);
        grdTools->SetCell(0, 0);
    }
} catch (...) {
    LogError("frmMain", "grdTools_Click");
}

void ToolDataPanel::cmdSort_Click(int index) try {
    if (gintToolRows > 1)
        GridSort(*grdTools, Int16(index));
} catch (...) {
    LogError("frmMain", "cmdSort_Click");
}

// A new tool goes to the end of the table and of the grid, whatever the sort, with its
// offset unknown.
void ToolDataPanel::cmdAdd_Click() try {
    FrmToolData &dlg = frmToolData();
    dlg.setWindowTitle(QStringLiteral("Add a new Tool"));
    dlg.Tag.clear();
    dlg.exec();
    if (dlg.Tag == QLatin1String("Ok")) {
        gintToolCount = Int16(gintToolCount + 1);
        gintToolRows = Int16(gintToolRows + 1);
        gtypTools.Redim(gintToolCount);
        ToolData &tool = gtypTools(gintToolCount);
        tool.intNumber = CInt(Val(dlg.txtToolNumber->text()));
        tool.strType = dlg.cboToolType->currentText();
        tool.sngDiameter = static_cast<float>(Val(dlg.txtToolDiam->text()));
        tool.sngOffset = gintToolUnknownOffset;
        tool.blnHide = false;
        // The grid's rows follow the tools it shows (tools hidden by the set-up wizard aren't).
        if (gintToolRows > ToolGrid::kRowsInView)
            grdTools->AddItem();
        const auto row = strToolRow(gintToolCount);
        for (int c = 0; c < ToolGrid::kCols; ++c)
            grdTools->SetTextMatrix(gintToolRows, c, row[static_cast<size_t>(c)]);
        if (gintToolRows == ToolGrid::kRowsInView + 1)
            grdTools->SetGridWidth(grdTools->GridWidth() + grdTools->ScrollBarWidth());
        grdTools->SelectRow(gintToolRows);
        if (gintToolRows > ToolGrid::kRowsInView)
            grdTools->SetTopRow(gintToolRows - ToolGrid::kRowsInView + 1);
        SetEditDelete(true);
    }
    UnloadFrmToolData();
} catch (...) {
    LogError("frmMain", "cmdAdd_Click");
}

void ToolDataPanel::cmdEdit_Click() try {
    const int row = grdTools->Row();
    const int16_t index = intSelectedIndex();
    ToolData &tool = gtypTools(index);
    FrmToolData &dlg = frmToolData();
    dlg.setWindowTitle(QStringLiteral("Edit Tool Data"));
    dlg.txtToolNumber->setText(QString::number(tool.intNumber));
    dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(tool.strType, Qt::MatchExactly | Qt::MatchCaseSensitive));
    dlg.txtToolDiam->setText(Format000(tool.sngDiameter));
    dlg.Tag = QString::number(index);
    dlg.exec();
    if (dlg.Tag == QLatin1String("Ok")) {
        tool.intNumber = CInt(Val(dlg.txtToolNumber->text()));
        tool.strType = dlg.cboToolType->currentText();
        tool.sngDiameter = static_cast<float>(Val(dlg.txtToolDiam->text()));
        const auto cells = strToolRow(index);
        for (int c = 0; c < 3; ++c)
            grdTools->SetTextMatrix(row, c, cells[static_cast<size_t>(c)]);
    }
    UnloadFrmToolData();
    grdTools->SelectRow(row);
} catch (...) {
    LogError("frmMain", "cmdEdit_Click");
}

void ToolDataPanel::cmdDelete_Click() try {
    const int row = grdTools->Row();
    const int16_t index = intSelectedIndex();
    const ToolData &tool = gtypTools(index);
    const QString question = QStringLiteral("Are you sure you want to delete:") + vbCrLf + QStringLiteral("Tool no. ") +
                             QString::number(tool.intNumber) + vbCrLf + QStringLiteral("(") + tool.strType +
                             QStringLiteral("  ") + Format000(tool.sngDiameter) + QStringLiteral(" mm)?") + vbCrLf;
    if (intStdMsgBox(question, vbYesNo + vbDefaultButton2, QStringLiteral("Tool Deletion")) != vbYes) {
        grdTools->SelectRow(row);
        return;
    }
    if (gintToolRows > ToolGrid::kRowsInView)
        grdTools->RemoveItem(gintToolRows);
    for (int i = index; i < gintToolCount; ++i)
        gtypTools(i) = gtypTools(i + 1);
    gintToolCount = Int16(gintToolCount - 1);
    gtypTools.Redim(gintToolCount);
    gintToolRows = Int16(gintToolRows - 1);
    SetEditDelete(false);
    ToolDataShow(*grdTools);
    grdTools->SetCell(0, 0);
} catch (...) {
    LogError("frmMain", "cmdDelete_Click");
}

void ToolDataPanel::cmdOk_Click() try {
    ToolDataSave();
    if (m_setMode)
        m_setMode(1);
} catch (...) {
    LogError("frmMain", "cmdOk_Click");
}
