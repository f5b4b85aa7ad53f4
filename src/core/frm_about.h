// frmAbout: the about box, and on the first run the welcome notice (picFirst).
#pragma once

#include "platform/forms.h"

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QPushButton>

class FrmAbout : public QDialog, public Form {
    Q_OBJECT
public:
    FrmAbout();
    ~FrmAbout() override;
    QLabel *imgHead;
    QLabel *lblVersion;
    QLabel *lblDescription;
    QLabel *lblEmail;        // holds the address the mail link opens
    QPushButton *cmdOk;
    QFrame *picFirst;        // the first-run welcome, hidden unless MainProcess shows it
    QLabel *lblFirst;

    void Form_Load() override;
    void cmdOk_Click();
    void lblEmail_Click();
protected:
    void reject() override;   // Esc and the close box unload the form, as Ok does
};

FrmAbout *frmAbout();
bool frmAboutLoaded();

// The address behind lblEmail.
QString SupportAddress();
