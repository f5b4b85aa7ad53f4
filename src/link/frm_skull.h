// frmSkull, the hardware alarm window ("Brantok Hardware Configuration"), and the
// installation of the link's screen hooks for the program.
#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

// A small fixed dialog drawn from the link's SkullForm state; it writes the operator's
// answer (Tag, the "Work Offline" tick) back there and hides.
class FrmSkull : public QDialog {
    Q_OBJECT
public:
    explicit FrmSkull(QWidget *owner);
    QLabel *imgSkull;
    QLabel *lblSkull;
    QCheckBox *chkOffline;
    QPushButton *cmdOk;
    QPushButton *cmdCancel;

protected:
    // Esc does nothing: the operator answers with a button.
    void reject() override {}

private:
    void cmdOk_Click();
    void cmdCancel_Click();
};

// Call once at start, before SetupComms: real serial devices, and the alarm window shown
// over `mainWindow` (centred on it, with its icon; the active window when null).
void InstallLinkUi(QWidget *mainWindow = nullptr);
