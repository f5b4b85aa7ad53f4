#include "core/window_hook.h"

#include "core/frm_splash.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "files/cncedit.h"
#include "core/state.h"

#include <QGuiApplication>

namespace {
QMetaObject::Connection g_hook;
}

void lngWindowProc(bool blnActivated) try {
    if (blnActivated) {
        if (gintMode == 1)
            frmSplash()->tmrCaret->start();
    } else {
        CodeEditorDeactivated();
    }
} catch (...) {
    LogError("Logger", "lngWindowProc");
}

void Hook()
{
    if (g_hook || !qGuiApp)
        return;
    g_hook = QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, qGuiApp,
                              [](Qt::ApplicationState s) {
                                  if (s == Qt::ApplicationActive)
                                      lngWindowProc(true);
                                  else if (s == Qt::ApplicationInactive)
                                      lngWindowProc(false);
                              });
}

void Unhook()
{
    if (g_hook) {
        QObject::disconnect(g_hook);
        g_hook = {};
    }
    DoEvents();
}

bool IsHooked() { return static_cast<bool>(g_hook); }
