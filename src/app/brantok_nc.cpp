// brantok-nc: the NC tools of Brantok on the command line.
#include "app/nc_compile.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    const QString command = args.isEmpty() ? QString() : args.takeFirst();
    if (command == QLatin1String("compile"))
        return NcCompile(args);
    if (command == QLatin1String("dump"))
        return NcDump(args);
    std::fputs("usage: brantok-nc compile FILE   compile an NC program as Brantok does before machining\n"
               "       brantok-nc dump FILE.ncx  show an analysed file readably\n",
               stderr);
    return 64;
}
