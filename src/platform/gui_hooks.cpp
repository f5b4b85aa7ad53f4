#include "platform/gui_hooks.h"

#include "core/hooks.h"
#include "files/frmedit.h"

void InstallGuiHooks()
{
    // Filled in as the forms arrive.
    InstallFrmEditHook();
}
