// The program: a widget application whose life is Main's start and then events.
#include "core/f1mill.h"
#include "platform/gui_hooks.h"

#include <QApplication>
#include <QStringList>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Brantok"));
    QApplication::setOrganizationName(QStringLiteral("Ostrane"));
    // The main window is closed only through Shutdown, which ends the process itself.
    QApplication::setQuitOnLastWindowClosed(false);
    InstallGuiHooks();
    // The whole command line is one NC file path.
    SetCommandLine(QApplication::arguments().mid(1).join(u' '));
    Main();
    return QApplication::exec();
}
