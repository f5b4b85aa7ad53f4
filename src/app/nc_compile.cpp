#include "app/nc_compile.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/ncxdump.h"
#include "tools/tooltable.h"

#if __has_include("nc/reader.h")
#include "nc/reader.h"
#define BRANTOK_HAVE_READER 1
#endif

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace {

enum : int { kDone = 0, kRefused = 1, kTrapped = 2, kUsage = 64 };

void Print(const QString &text, FILE *to = stdout)
{
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (!shown.endsWith(u'\n'))
        shown += u'\n';
    std::fputs(shown.toUtf8().constData(), to);
    std::fflush(to);
}

#ifdef BRANTOK_HAVE_READER
bool gblnRefused = false;

// The program's forms as text: a fault in the NC file is printed and not corrected, a box is
// printed and answered with its first button, the trap ends with exit code 2.
void InstallCompileHooks()
{
    ResetUiHooks();
    uiHooks().correctFile = [](const QString &, const QString &errorText, const QString &) {
        gblnRefused = true;
        Print(errorText);
        return QStringLiteral("Cancel");
    };
    uiHooks().messageBox = [](const QString &text, int32_t flags, const QString &) -> int16_t {
        gblnRefused = true;
        Print(text);
        switch (flags & 0x0F) {
        case 2: return 3;
        case 3: case 4: return 6;
        case 5: return 4;
        default: return 1;
        }
    };
    uiHooks().endProcess = [](int) {
        std::fflush(nullptr);
        std::_Exit(kTrapped);
    };
}
#endif

} // namespace

int NcCompile(const QStringList &args)
{
    if (args.size() != 1 || args.at(0).isEmpty()) {
        std::fputs("usage: brantok-nc compile FILE\n", stderr);
        return kUsage;
    }
#ifndef BRANTOK_HAVE_READER
    Print(QStringLiteral("brantok-nc: this build has no NC reader; compile is not available"), stderr);
    return kUsage;
#else
    const QString strFile = QFileInfo(args.at(0)).absoluteFilePath();
    InstallCompileHooks();
    gblnRefused = false;
    ReadStartSettings();
    ToolDataLoad();
    gblnCancel = false;
    // As the file chooser decides: a file on removable media keeps its analysed file in the
    // temporary folder.
    gblnAnalysedToTemp = blnRemovableMedia(strFile);
    gfnCompFileReason = &strCompFileReason;
    ReadCommands(strFile);
    if (gblnRefused || gintReadResult != 0)
        return kRefused;

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
            return kRefused;
        Print(QStringLiteral("The CNC file is being analysed because ") + gstrAnalysedReason + u'.');
        EvaluateCommands();
    }
    Print(QStringLiteral("Analysed file: ") + gstrAnalysedFile);
    return kDone;
#endif
}

int NcDump(const QStringList &args)
{
    if (args.size() != 1 || args.at(0).isEmpty()) {
        std::fputs("usage: brantok-nc dump FILE.ncx\n", stderr);
        return kUsage;
    }
    QFile file(args.at(0));
    if (!file.open(QIODevice::ReadOnly)) {
        Print(args.at(0) + QStringLiteral(": ") + file.errorString(), stderr);
        return kRefused;
    }
    const QByteArray bytes = file.readAll();
    const QString dump = strDumpAnalysedFile(bytes, QFileInfo(args.at(0)).fileName());
    std::fputs(dump.toUtf8().constData(), stdout);
    return ParseAnalysedFile(bytes).problems.isEmpty() ? kDone : kRefused;
}
