// frmSplash: the start screen. Loaded first by Main and unloaded only by Shutdown; after
// the start it is hidden and lives on as the owner of the timers that must run whatever
// screen or dialog is up (the key loop, the deferred close, the port watch, the caret).
// The link part adds the serial control here.
#pragma once

#include "platform/forms.h"

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class FrmSplash : public QWidget, public Form {
    Q_OBJECT
public:
    FrmSplash();
    ~FrmSplash() override;

    QLabel *imgHead;
    QLabel *lblVersion;
    QLabel *lblTitle;

    QTimer *tmrShow;         // 100 ms one-shot, armed by Main: MainProcess
    QTimer *tmrKeyControl;   // 20 ms one-shot: the manual key loop (manual control)
    QTimer *tmrKeyRelease;   // 5 ms, until Enter, Space and Esc are up: closes gfrmToClose
    QString tmrKeyReleaseTag;   // "Unload" or "Hide"
    QTimer *tmrOnline;       // 5000 ms, repeating: the port watch (serial link)
    QTimer *tmrCaret;        // 50 ms one-shot: hides the caret of the main menu

    void Form_Load() override;
    void tmrKeyControl_Timer();   // the manual key loop: returns when the manual screen ends
    void tmrKeyRelease_Timer();
    void tmrCaret_Timer();
};

FrmSplash *frmSplash();
bool frmSplashLoaded();

// "Version 1.0.0": the version line of frmSplash and frmAbout.
QString VersionText();

// The dialog that tmrKeyRelease closes once the keys that closed it are up.
extern QPointer<QWidget> gfrmToClose;
// Arms the deferred close: `strTag` "Unload" unloads the form, anything else hides it.
void DeferredClose(QWidget *form, const QString &strTag);
