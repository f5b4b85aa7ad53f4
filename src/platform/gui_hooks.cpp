#include "platform/gui_hooks.h"

#include "core/hooks.h"

void InstallGuiHooks()
{
    // Filled in as the forms arrive.
}
