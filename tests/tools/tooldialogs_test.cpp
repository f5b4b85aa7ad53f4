// The tool dialog (key filters, OkStatus, the two duplicate checks) and the tool types dialog.
#include "core/msgbox.h"
#include "core/store.h"
#include "tools/frmtooldata.h"
#include "tools/frmtooltype.h"
#include "tools/tooltable.h"
#include "tools/tooltypes.h"
#include "toolscreens_support.h"

#include <QListWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace {

QStringList Items(QListWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

QStringList Types()
{
    QStringList out;
    for (int i = 1; i <= gintToolTypeCount; ++i)
        out << gstrToolTypes(i);
    return out;
}

} // namespace

TEST_F(ToolScreens, KeyFilters)
{
    FrmToolData &dlg = frmToolData();
    Type(dlg.txtToolNumber, QStringLiteral("1x2-3.+ e\b"));   // digits and backspace only
    EXPECT_EQ(dlg.txtToolNumber->text(), QStringLiteral("12"));
    struct Case { const char *text; int caret; bool selectAll; char key; bool passes; };
    const Case cases[] = {
        {"", 0, false, '5', true},      {"12", 2, false, '.', true},    {"1.2", 3, false, '.', false},
        {"1.23", 4, false, '4', true},  {"1.234", 5, false, '5', false}, {"1.234", 3, false, '5', false},
        {"1.234", 1, false, '5', true}, {"1.234", 0, true, '.', true},  {"1", 1, false, '-', false},
        {"1.234", 5, false, '\b', true}, {"", 0, false, ',', false},
    };
    for (const Case &c : cases) {
        dlg.txtToolDiam->setText(QString::fromLatin1(c.text));
        dlg.txtToolDiam->setCursorPosition(c.caret);
        if (c.selectAll)
            dlg.txtToolDiam->selectAll();
        EXPECT_EQ(dlg.txtToolDiam_KeyPress(QChar::fromLatin1(c.key)), c.passes)
            << c.text << " caret " << c.caret << " key " << c.key;
    }
    dlg.txtToolDiam->clear();
    Type(dlg.txtToolDiam, QStringLiteral("12a.5.6789"));
    EXPECT_EQ(dlg.txtToolDiam->text(), QStringLiteral("12.567"));
}

TEST_F(ToolScreens, OkOnlyWithNumberTypeAndDiameter)
{
    FrmToolData &dlg = frmToolData();
    EXPECT_EQ(dlg.cboToolType->currentIndex(), -1);   // no type chosen for a new tool
    struct Case { const char *number; bool type; const char *diameter; bool ok; };
    const Case cases[] = {
        {"", false, "", false},  {"5", false, "6", false}, {"5", true, "", false}, {"0", true, "6", false},
        {"5", true, "6", true},  {"5", true, "0", true},   {"005", true, ".", true},
    };
    for (const Case &c : cases) {
        dlg.txtToolNumber->setText(QString::fromLatin1(c.number));
        dlg.cboToolType->setCurrentIndex(c.type ? 2 : -1);
        dlg.txtToolDiam->setText(QString::fromLatin1(c.diameter));
        EXPECT_EQ(dlg.cmdOk->isEnabled(), c.ok) << c.number << "/" << c.type << "/" << c.diameter;
    }
}

TEST_F(ToolScreens, BothDuplicateMessagesKeepTheDialogOpen)
{
    SetTools({{12, "End mill", 6.0f, gintToolUnknownOffset}});
    ShowPage();
    WhenDialogUp([this] {
        FrmToolData &dlg = frmToolData();
        Type(dlg.txtToolNumber, QStringLiteral("12"));
        dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(QStringLiteral("End mill")));
        Type(dlg.txtToolDiam, QStringLiteral("6"));
        dlg.cmdOk->click();
        ASSERT_EQ(m_boxes->shown().size(), 1u);
        EXPECT_EQ(m_boxes->last().text,
                  QStringLiteral("Tool number 12 is already in use\r\nPlease enter a different number"));
        EXPECT_EQ(m_boxes->last().flags, vbExclamation);
        EXPECT_EQ(dlg.txtToolNumber->selectedText(), QStringLiteral("12"));

        dlg.txtToolNumber->setText(QStringLiteral("13"));
        dlg.cmdOk->click();
        ASSERT_EQ(m_boxes->shown().size(), 2u);
        EXPECT_EQ(m_boxes->last().text,
                  QStringLiteral("You already have a tool of type End mill\r\nwith diameter 6mm\r\nPlease change your selection"));
        EXPECT_EQ(dlg.txtToolDiam->selectedText(), QStringLiteral("6"));

        // "6.0" is the same diameter; "6.01" is another tool. A type that differs in case only
        // is another type.
        dlg.txtToolDiam->setText(QStringLiteral("6.0"));
        dlg.cmdOk->click();
        EXPECT_EQ(m_boxes->shown().size(), 3u);
        dlg.txtToolDiam->setText(QStringLiteral("6.01"));
        dlg.cmdOk->click();
        EXPECT_EQ(m_boxes->shown().size(), 3u);
        EXPECT_FALSE(dlg.isVisible());
    });
    m_panel->cmdAdd->click();
    EXPECT_EQ(gtypTools(2).intNumber, 13);
}

TEST_F(ToolScreens, ToolTypesInUseUnusedAndTheCaseRules)
{
    m_store->writeRaw("[General]\nToolTypes=3\nToolType01=Vee cutter\nToolType02=Fly cutter\nToolType03=Engraver\n");
    // "engraver" differs in case from the custom type: it doesn't hold it.
    SetTools({{1, "Vee cutter", 3.0f, 0.0f}, {2, "engraver", 1.0f, 0.0f}});
    FrmToolType &dlg = frmToolType();
    EXPECT_EQ(Items(dlg.lstTypeUser), QStringList({"Vee cutter"}));
    EXPECT_EQ(Items(dlg.lstTypeUserNew), QStringList({"Engraver", "Fly cutter"}));

    // A type in use can't be chosen for deletion; an unused one can.
    dlg.lstTypeUser->setCurrentRow(0);
    EXPECT_FALSE(dlg.cmdDelete->isEnabled());
    dlg.lstTypeUserNew->setCurrentRow(1);
    EXPECT_TRUE(dlg.cmdDelete->isEnabled());

    // Names are compared without case when adding.
    struct Case { const char *text; bool canAdd; QListWidget *matched; int row; };
    const Case cases[] = {
        {"end MILL", false, dlg.lstTypeStandard, 3}, {" fly cutter ", false, dlg.lstTypeUserNew, 1},
        {"Dovetail", true, nullptr, -1}, {"   ", false, nullptr, -1},
    };
    for (const Case &c : cases) {
        dlg.txtNewType->setText(QString::fromLatin1(c.text));
        EXPECT_EQ(dlg.cmdAdd->isEnabled(), c.canAdd) << c.text;
        if (c.matched) {
            EXPECT_EQ(c.matched->currentRow(), c.row) << c.text;
        }
    }
    EXPECT_FALSE(dlg.cmdDelete->isEnabled());   // a new name takes Delete away

    // Added trimmed, at the end of the array and of the unused list.
    dlg.txtNewType->setText(QStringLiteral("  Dovetail  "));
    dlg.cmdAdd->click();
    EXPECT_EQ(Types(), QStringList({"Vee cutter", "Fly cutter", "Engraver", "Dovetail"}));
    EXPECT_EQ(intItemData(dlg.lstTypeUserNew, 2), 4);

    // A second delete in one visit uses the old index: Engraver still carries 3, which after
    // Fly cutter's delete is past the new count, so nothing moves and the last element goes.
    ASSERT_EQ(Items(dlg.lstTypeUserNew), QStringList({"Engraver", "Fly cutter", "Dovetail"}));
    dlg.lstTypeUserNew->setCurrentRow(1);
    dlg.cmdDelete->click();
    EXPECT_EQ(Types(), QStringList({"Vee cutter", "Engraver", "Dovetail"}));
    dlg.lstTypeUserNew->setCurrentRow(0);
    dlg.cmdDelete->click();
    EXPECT_EQ(Types(), QStringList({"Vee cutter", "Engraver"}));
    EXPECT_EQ(Items(dlg.lstTypeUserNew), QStringList({"Dovetail"}));
}

TEST_F(ToolScreens, ToolTypesOkSavesCancelKeeps)
{
    m_store->writeRaw("[General]\nToolTypes=2\nToolType01=Vee cutter\nToolType02=Fly cutter\n");
    FrmToolData &data = frmToolData();
    EXPECT_EQ(data.cboToolType->count(), 9);
    data.cboToolType->setCurrentIndex(data.cboToolType->findText(QStringLiteral("Drill")));

    // Add "Dovetail", then Ok: stored, and in the type list.
    WhenDialogUp([] {
        FrmToolType &types = frmToolType();
        types.txtNewType->setText(QStringLiteral(" Dovetail"));
        types.cmdAdd->click();
        types.cmdOk->click();
    });
    data.cmdToolType->click();
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolType03"), QString()), QStringLiteral("Dovetail"));
    EXPECT_GE(data.cboToolType->findText(QStringLiteral("Dovetail")), 7);
    EXPECT_EQ(data.cboToolType->currentText(), QStringLiteral("Drill"));   // the choice stays
    // Delete it again, then Cancel: it is still there.
    WhenDialogUp([] {
        FrmToolType &types = frmToolType();
        types.lstTypeUserNew->setCurrentRow(types.lstTypeUserNew->count() - 1);
        types.cmdDelete->click();
        types.cmdCancel->click();
    });
    data.cmdToolType->click();
    EXPECT_EQ(gintToolTypeCount, 3);
}
