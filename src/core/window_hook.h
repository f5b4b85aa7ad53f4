// What the program needs of the window system's activation messages: when the program
// comes back to the front on the main menu, the menu entries' caret is hidden again
// (tmrCaret); when it goes to the back, the find dialog of the code editor closes.
// Hook from frmMain's load to Shutdown.
#pragma once

#include <QtGlobal>

void Hook();
void Unhook();
bool IsHooked();
// The handler of the activation events (the window procedure's one message).
void lngWindowProc(bool blnActivated);
