// Stand-ins for procedures that other parts of the program provide (see pending.h).
// Each is replaced, and deleted here, when its part is built.
#include "core/pending.h"

#include "core/frm_main.h"
#include "core/state.h"

void ShowSetMill() {}
// Every step change stops the busy book. Step 10 ("Cancel: Return to Menu") leads to the
// menu: without the wizard's page, at once.
void SetSetStep(int16_t intStep)
{
    PageTurnStop();
    if (intStep == 10)
        ShowMenu(QString());
}
// Without the wizards a task can't have been theirs; should one end here, the menu.
void ReturnToSetMill(int16_t) { ShowMenu(QString()); }
void ShowMethod() { SetMode(8); }   // the subsequent-part screen, as it stands

