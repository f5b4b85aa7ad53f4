#include "app/nc_compile.h"

#include "app/nc_console.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/ncxdump.h"
#include "nc/reader.h"
#include "preview/toolpath.h"
#include "tools/tooltable.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

int CompileToAnalysed(const QString &strPath)
{
    const QString strFile = QFileInfo(strPath).absoluteFilePath();
    InstallConsoleHooks();
    ReadStartSettings();
    if (!blnLoadTools())
        return kExitFault;
    gblnCancel = false;
    // As the file chooser decides: a file on removable media keeps its analysed file in the
    // temporary folder.
    gblnAnalysedToTemp = blnRemovableMedia(strFile);
    gfnCompFileReason = &strCompFileReason;
    ReadCommands(strFile);
    if (gblnRefused || gintReadResult != 0)
        return kExitFault;

    if (gblnAnalysedValid) {
        Print(QStringLiteral("The analysed file is up to date."));
    } else {
        // The program measures every unknown offset before it compiles; without the window
        // there is nobody to measure, and an unknown offset must never reach the steps.
        bool blnUnknown = false;
        for (int16_t i = 1; i <= gintUsedToolCount; ++i) {
            const int16_t id = intToolGetId(gintUsedTools(i));
            if (id != 0 && gtypTools(id).sngOffset == gintToolUnknownOffset) {
                Print(QStringLiteral("Tool %1 has no measured offset: measure it before the program is compiled.")
                          .arg(gintUsedTools(i)));
                blnUnknown = true;
            }
        }
        if (blnUnknown)
            return kExitFault;
        Print(QStringLiteral("The CNC file is being analysed because ") + gstrAnalysedReason + u'.');
        EvaluateCommands();
    }
    Print(QStringLiteral("Analysed file: ") + gstrAnalysedFile);
    return kExitClean;
}

QString strToolType(int16_t intNumber)
{
    const int16_t id = intToolGetId(intNumber);
    return id != 0 ? gtypTools(id).strType : QString();
}

int NcCompile(const QStringList &args)
{
    if (args.size() != 1 || args.at(0).isEmpty()) {
        std::fputs("usage: brantok-nc compile [--tools TOOLS] FILE\n", stderr);
        return kExitUsage;
    }
    const int result = CompileToAnalysed(args.at(0));
    if (result != kExitClean)
        return result;
    const Toolpath path = LoadToolpathFile(gstrAnalysedFile);
    if (!path.error.isEmpty()) {
        Print(path.error, stderr);
        return kExitFault;
    }
    Print(strPreviewTimeLine(path));
    return kExitClean;
}

int NcDump(const QStringList &args)
{
    if (args.size() != 1 || args.at(0).isEmpty()) {
        std::fputs("usage: brantok-nc dump FILE.ncx\n", stderr);
        return kExitUsage;
    }
    QFile file(args.at(0));
    if (!file.open(QIODevice::ReadOnly)) {
        Print(args.at(0) + QStringLiteral(": ") + file.errorString(), stderr);
        return kExitFault;
    }
    const QByteArray bytes = file.readAll();
    const QString dump = strDumpAnalysedFile(bytes, QFileInfo(args.at(0)).fileName());
    std::fputs(dump.toUtf8().constData(), stdout);
    return ParseAnalysedFile(bytes).problems.isEmpty() ? kExitClean : kExitFault;
}
