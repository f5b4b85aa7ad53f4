// brantok-nc: the NC tools of Brantok on the command line, for operators who want to check a
// program without the window, and for the tests. Each command lives in its own file; this
// only picks one.
#include "app/nc_check.h"
#include "app/nc_console.h"
#include "app/nc_compile.h"
#include "app/nc_preview.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct NcCommand {
    const char *name;
    int (*run)(const QStringList &args);
    const char *usage;
};

const NcCommand kCommands[] = {
    {"check", NcCheck, "check FILE      read an NC program as Brantok does; exit 0 clean, 1 fault, 2 error trap"},
    {"compile", NcCompile, "compile FILE    compile an NC program as Brantok does before machining"},
    {"dump", NcDump, "dump FILE.ncx   show an analysed file readably"},
    {"preview", NcPreview, "preview FILE -o OUT.png [--size WxH]\n"
                           "                  draw the toolpath (FILE an NC program or .ncx); print the machining time"},
};

int Usage()
{
    std::fputs("usage: brantok-nc COMMAND ...\n", stderr);
    for (const NcCommand &c : kCommands)
        std::fprintf(stderr, "  brantok-nc %s\n", c.usage);
    return kExitUsage;
}

} // namespace

int main(int argc, char **argv)
{
    // The preview paints text, which needs the GUI application; it draws into a picture, so
    // it needs no screen: without one it takes the offscreen platform.
    const bool blnPaints = argc > 1 && std::strcmp(argv[1], "preview") == 0;
    if (blnPaints && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app = blnPaints ? std::make_unique<QGuiApplication>(argc, argv)
                                                      : std::make_unique<QCoreApplication>(argc, argv);
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    if (args.isEmpty())
        return Usage();
    for (const NcCommand &c : kCommands)
        if (args.at(0) == QLatin1String(c.name))
            return c.run(args.mid(1));
    return Usage();
}
