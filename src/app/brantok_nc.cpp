// brantok-nc: the NC tools of Brantok on the command line, for operators who want to check a
// program without the window, and for the tests. Each command lives in its own file; this
// only picks one.
#include "app/nc_check.h"
#include "app/nc_console.h"
#include "app/nc_compile.h"

#include <QCoreApplication>

#include <cstdio>

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
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    if (args.isEmpty())
        return Usage();
    for (const NcCommand &c : kCommands)
        if (args.at(0) == QLatin1String(c.name))
            return c.run(args.mid(1));
    return Usage();
}
