// The start and the stop of the program.
#include "core/f1mill.h"

#include "core/frm_about.h"
#include "core/frm_main.h"
#include "options/frm_settings.h"
#include "core/frm_splash.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/store.h"
#include "core/window_hook.h"
#include "files/filechoice.h"
#include "files/recent.h"
#include "link/comms.h"
#include "nc/stepcode.h"
#include "link/frm_skull.h"
#include "link/link_screen.h"
#include "link/machining_screen.h"
#include "platform/serial_port.h"
#include "platform/forms.h"
#include "platform/instance_guard.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QCoreApplication>

namespace {
QString gstrCommand;
bool gblnShutdownRun = false;   // Shutdown's static flag

// Steps 7 to 13 of the start, under the ordinary trap.
void MainSettingsAndLink() try {
    // 7. Twips per pixel: fixed at 15 here (the window position is kept in twips).
    gintTwipsPerPixel = 15;
    // 8. The settings, in their order, with their defaults.
    ReadStartSettings();
    // 9. The tool table.
    ToolDataLoad();
    // 10. The recent files (their first entry is the first touch of frmMain).
    MRUGetFileList();
    // 11. The link: opens the port when online; may go offline or end the program.
    InstallLinkUi(nullptr);
    linkHooks().shutdown = [] { Shutdown(); };
    linkHooks().setPanel = [](const QString &key, const QString &text) {
        frmMain()->stbPanel(key)->setText(text);
    };
    InstallMachiningUi();
    SetupComms();
    // 12. At the latest this loads frmMain.
    frmMain()->stbPanel(QStringLiteral("spindle"))->setText(QStringLiteral("Spindle Stopped"));
    // 13. MainProcess on the first tick, once the pump runs.
    frmSplash()->tmrShow->start(100);
} catch (...) {
    LogError("F1Mill", "Main");
}
} // namespace

void SetCommandLine(const QString &strCommand) { gstrCommand = strCommand; }
QString CommandLine() { return gstrCommand; }
void ResetShutdown() { gblnShutdownRun = false; }

void CheckPrevInstance() { CheckPrevInstance(TheInstanceGuard()); }

void CheckPrevInstance(InstanceGuard &guard)
{
    // No trap here: nothing has been opened, and a fault must not leave a second copy up.
    if (guard.acquire())
        return;   // the first copy: it listens for later ones
    // Another copy runs. Ask it to come forward; if it can't be reached, say why we stop.
    if (!guard.askFirstToRaise()) {
        // The application title as it stands after the rename that keeps the search from
        // finding this copy itself.
        const QString strTitle = QStringLiteral("unwanted instance");
        StdMsgBox(strTitle + QStringLiteral(" cannot start as a previous instance is still running"), vbCritical,
                  strTitle);
    }
    uiHooks().endProcess(0);
}

void Main()
{
    // 1. The start's own handler, until the ordinary trap can take over.
    try {
        // 2. One copy only.
        CheckPrevInstance();
        // 3, 4. frmSplash, shown and painted at once.
        FrmSplash *splash = frmSplash();
        splash->show();
        splash->repaint();
        // 5. Now it is known whether the trap is armed.
        gblnVBInDesign();
    } catch (...) {
        ReportStartFault();
    }
    // 6. The ordinary trap from here on (under the development switch the fault goes on).
    MainSettingsAndLink();
}

void tmrShow_Timer() try {
    frmSplash()->tmrShow->stop();
    MainProcess();
    if (frmSplashLoaded())
        frmSplash()->hide();
} catch (...) {
    LogError("frmSplash", "tmrShow_Timer");
}

void MainProcess() try {
    // 1. The main window, not modal.
    FrmMain *main = frmMain();
    main->show();
    // 2, 3. The first run: the welcome, then the settings. A file on the command line
    //       waits for a run that has been set up.
    if (strRegistryValueGet(QStringLiteral("Set"), QStringLiteral("No")) == QLatin1String("No")) {
        frmSplash()->hide();
        FrmAbout *about = frmAbout();
        about->picFirst->move(240 / gintTwipsPerPixel, 1280 / gintTwipsPerPixel);
        about->picFirst->setVisible(true);
        ShowModal(about, main);
        Unload(about);
        ShowSettingsDialog();
    } else if (!gstrCommand.isEmpty()) {
        // 4. The whole command line, unaltered, is one NC file.
        LaunchFile(gstrCommand, 0);
    }
} catch (...) {
    LogError("F1Mill", "MainProcess");
}

void Shutdown() try {
    // 1. Once: a second entry through the pump during the unloading returns at once.
    if (gblnShutdownRun)
        return;
    gblnShutdownRun = true;
    // 2. The controller sees RTS drop (its reset), then the port closes.
    if (SerialPort *port = comSerial(); port && port->isOpen()) {
        port->setRts(false);
        port->close();
    }
    // 3. The work step file.
    KillFile(gstrWorkFile, gintWorkFile);
    // 4. The recent files.
    MRUSaveFileList();
    // 5. No more activation events.
    if (!gblnInDesign)
        Unhook();
    // 6. Every form, from the last loaded to the first, letting events run after each.
    for (int i = static_cast<int>(Forms().size()) - 1; i >= 0; --i) {
        const QList<QWidget *> forms = Forms();
        if (i < forms.size())
            Unload(forms[i]);
        DoEvents();
    }
    // 7. The end.
    TheInstanceGuard().release();
    uiHooks().endProcess(0);
} catch (...) {
    LogError("F1Mill", "Shutdown");
}
