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
    {"check", NcCheck, "check [--tools TOOLS] FILE      read an NC program as Brantok does; exit 0 clean, 1 fault, 2 error trap"},
    {"compile", NcCompile, "compile [--tools TOOLS] FILE    compile an NC program as Brantok does before machining"},
    {"dump", NcDump, "dump FILE.ncx                   show an analysed file readably"},
    {"preview", NcPreview, "preview [--tools TOOLS] FILE -o OUT.png [--size WxH]\n"
                           "                                  draw the toolpath (FILE an NC program or .ncx); print the machining time"},
};

// The usage: asked for (--help) on standard output, after a wrong command line on standard error.
int Usage(FILE *to = stderr, int intExit = kExitUsage)
{
    std::fputs("usage: brantok-nc COMMAND ...\n", to);
    for (const NcCommand &c : kCommands)
        std::fprintf(to, "  brantok-nc %s\n", c.usage);
    std::fputs("  TOOLS: a tool table to use instead of the store's, one tool a line as the store keeps\n"
               "         it: number|type|diameter|offset (offset -2000 for unknown)\n"
               "  brantok-nc --help                          this text\n", to);
    return intExit;
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
    if (args.size() == 1 && (args.at(0) == QLatin1String("--help") || args.at(0) == QLatin1String("-h")))
        return Usage(stdout, kExitClean);
    for (const NcCommand &c : kCommands) {
        if (args.at(0) != QLatin1String(c.name))
            continue;
        QStringList rest = args.mid(1);
        if (c.run != NcDump && !rest.isEmpty() && rest.at(0) == QLatin1String("--tools")) {
            if (rest.size() < 2 || rest.at(1).isEmpty())
                return Usage();
            gstrToolFile = rest.at(1);
            rest = rest.mid(2);
        }
        return c.run(rest);
    }
    return Usage();
}
