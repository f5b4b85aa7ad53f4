// The tool types dialog: the basic types, the custom types that tools use (both fixed),
// the custom types no tool uses (these may be deleted), and a box to add a new one.
// It edits gstrToolTypes in memory; its caller (the tool dialog's "Add / Remove Tool Types")
// saves them on "Ok" and reloads them from the store otherwise.
#pragma once

#include <QDialog>
#include <QString>

#include <cstdint>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class FrmToolType : public QDialog {
    Q_OBJECT
public:
    explicit FrmToolType(QWidget *parent);

    QString Tag;   // the answer: "Ok" or "Cancel"

    QLabel *lblStandard = nullptr;
    QLabel *lblStandardNote = nullptr;
    QListWidget *lstTypeStandard = nullptr;
    QLabel *lblUser = nullptr;
    QLabel *lblUserNote = nullptr;
    QListWidget *lstTypeUser = nullptr;
    QLabel *lblUserNew = nullptr;
    QListWidget *lstTypeUserNew = nullptr;
    QLabel *lblNewType = nullptr;
    QLineEdit *txtNewType = nullptr;
    QPushButton *cmdAdd = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;

    void Form_Load();
    void lstTypeStandard_Click();
    void lstTypeUser_Click();
    void lstTypeUserNew_Click();
    void txtNewType_Change();
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

private:
    void ClearOthers(QListWidget *clicked);
    bool blnInClick = false;
};

// The one instance, loaded on first use; Unload destroys it.
FrmToolType &frmToolType();
bool blnFrmToolTypeLoaded();
void UnloadFrmToolType();

// Clears a list or combo and fills in the seven basic types.
void ToolTypeStandardShow(QListWidget *list);
void ToolTypeStandardShow(QComboBox *list);
// Appends the custom types, each with its index in gstrToolTypes as item data.
void ToolTypeUserShow(QListWidget *list);
void ToolTypeUserShow(QComboBox *list);
// The row whose upper-cased text equals strText, or -1.
int16_t intMatchRow(const QString &strText, QListWidget *list);

// The item data (index in gstrToolTypes) of a list row.
int16_t intItemData(QListWidget *list, int row);

// The main window, over which the dialogs centre themselves (the top-level widget named
// "frmMain"; the active window while there is none).
QWidget *MainWindowForDialogs();
// The window a dialog belongs to: the modal dialog in front (so that a dialog opened from a
// dialog stays above it), else the main window.
QWidget *DialogOwner();
// Centres a dialog over the main window.
void CentreOverMainWindow(QWidget *dialog);
