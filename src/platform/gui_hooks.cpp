#include "platform/gui_hooks.h"

#include "core/frm_main.h"
#include "core/hooks.h"
#include "platform/keystate.h"
#include "platform/msgbox_gui.h"

void InstallGuiHooks()
{
    InstallKeyState();
    uiHooks().messageBox = GuiMsgBox;
    uiHooks().pageTurnStart = PageTurnStart;
    uiHooks().pageTurnStop = PageTurnStop;
}
