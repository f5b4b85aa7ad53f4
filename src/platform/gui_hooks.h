// Installs the program's forms behind the core's hooks: the message box with its safety
// steps, the busy display, the correction window and the end of the process.
#pragma once

void InstallGuiHooks();
