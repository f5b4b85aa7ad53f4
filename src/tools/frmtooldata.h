// The dialog for one tool: number, type and diameter. Used by the tool page's Add
// ("Add a new Tool") and Edit ("Edit Tool Data"). The caller puts the index of the record
// being edited into Tag (empty for a new tool); the dialog answers "Ok" or "Cancel" there.
// The offset is not the dialog's: the offset wizard measures it.
#pragma once

#include <QDialog>
#include <QString>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class FrmToolData : public QDialog {
    Q_OBJECT
public:
    explicit FrmToolData(QWidget *parent);

    QString Tag;

    QLabel *lblToolNumber = nullptr;
    QLineEdit *txtToolNumber = nullptr;
    QLabel *lblToolType = nullptr;
    QComboBox *cboToolType = nullptr;
    QPushButton *cmdToolType = nullptr;
    QLabel *lblToolDiam = nullptr;
    QLineEdit *txtToolDiam = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;

    void Form_Load();
    void OkStatus();
    // Key filters: true lets the character through. `chr` is the character typed.
    bool txtToolNumber_KeyPress(QChar chr);
    bool txtToolDiam_KeyPress(QChar chr);
    void cmdToolType_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

// The one instance, loaded on first use; Unload destroys it.
FrmToolData &frmToolData();
bool blnFrmToolDataLoaded();
void UnloadFrmToolData();
