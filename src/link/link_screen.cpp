#include "link/link_screen.h"

#include "core/hooks.h"
#include "core/state.h"
#include "link/comms.h"

#include <cstdlib>

SkullForm frmSkull;
SpindleControls gSpindleControls;

namespace {

LinkHooks defaultHooks()
{
    LinkHooks h;
    // Stand-in until the program installs its Shutdown: the port is left as Shutdown
    // leaves it (RTS low, closed) and the process ends.
    h.shutdown = [] {
        if (SerialPort *p = comSerial(); p && p->isOpen()) {
            p->setRts(false);
            p->close();
        }
        uiHooks().endProcess(0);
    };
    return h;
}

} // namespace

LinkHooks &linkHooks()
{
    static LinkHooks hooks = defaultHooks();
    return hooks;
}

void ResetLinkHooks() { linkHooks() = defaultHooks(); }

void frmSkullLoad()
{
    if (frmSkull.loaded)
        return;
    frmSkull = SkullForm();
    frmSkull.loaded = true;
    frmSkull.lblSkull = QStringLiteral("Message");
    frmSkull.cmdOkCaption = QStringLiteral("Ok");
    tmrOnline().stop();   // no watchdog while the alarm is up
}

void frmSkullShowModal()
{
    frmSkullLoad();
    frmSkull.Tag.clear();
    if (linkHooks().showSkull)
        linkHooks().showSkull();
}

void frmSkullUnload()
{
    if (!frmSkull.loaded)
        return;
    frmSkull = SkullForm();
    tmrOnline().start();
}

void frmSkull_cmdOk_Click() { frmSkull.Tag = QStringLiteral("Ok"); }

void frmSkull_cmdCancel_Click()
{
    frmSkull.Tag = QStringLiteral("Cancel");
    gblnCancel = true;
}

[[noreturn]] void CallShutdown()
{
    if (linkHooks().shutdown)
        linkHooks().shutdown();
    // Shutdown never returns; a stand-in that did still ends here.
    uiHooks().endProcess(0);
    std::_Exit(0);
}
