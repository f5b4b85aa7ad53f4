#include "platform/gui_hooks.h"

#include "core/frm_main.h"
#include "core/hooks.h"
#include "files/frmedit.h"
#include "platform/eventkeystate.h"
#include "platform/msgbox_gui.h"

void InstallGuiHooks()
{
    InstallEventKeyState();
    uiHooks().messageBox = GuiMsgBox;
    uiHooks().pageTurnStart = PageTurnStart;
    uiHooks().pageTurnStop = PageTurnStop;
    InstallFrmEditHook();
}
