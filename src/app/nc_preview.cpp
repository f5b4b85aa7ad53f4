#include "app/nc_preview.h"

#include "app/nc_compile.h"
#include "app/nc_console.h"

#include "core/state.h"
#include "nc/analysed.h"
#include "preview/render.h"
#include "preview/toolpath.h"
#include "tools/tooltable.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <cstdio>

namespace {

int PreviewUsage()
{
    std::fputs("usage: brantok-nc preview [--tools TOOLS] FILE -o OUT.png [--size WxH]\n", stderr);
    return kExitUsage;
}

} // namespace

int NcPreview(const QStringList &args)
{
    QString strFile, strOut;
    QSize size(1200, 800);
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        if ((a == QLatin1String("-o") || a == QLatin1String("--size")) && i + 1 < args.size()) {
            const QString value = args.at(++i);
            if (a == QLatin1String("-o")) {
                strOut = value;
                continue;
            }
            const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("^(\\d{2,5})x(\\d{2,5})$")).match(value);
            if (!m.hasMatch())
                return PreviewUsage();
            size = QSize(m.captured(1).toInt(), m.captured(2).toInt());
            if (size.width() < 200 || size.height() < 150 || size.width() > 8000 || size.height() > 8000) {
                Print(QStringLiteral("The picture must be between 200 x 150 and 8000 x 8000 pixels."), stderr);
                return kExitUsage;
            }
        } else if (!a.startsWith(u'-') && strFile.isEmpty()) {
            strFile = a;
        } else {
            return PreviewUsage();
        }
    }
    if (strFile.isEmpty() || strOut.isEmpty())
        return PreviewUsage();

    QString strAnalysed;
    if (strFile.endsWith(QStringLiteral(".ncx"), Qt::CaseInsensitive)) {
        // An analysed file stands on its own; the tool table only names the tools' types.
        InstallConsoleHooks();
        ReadStartSettings();
        if (!blnLoadTools())
            return kExitFault;
        strAnalysed = strFile;
    } else {
        const int result = CompileToAnalysed(strFile);
        if (result != kExitClean)
            return result;
        strAnalysed = gstrAnalysedFile;
    }
    Toolpath path = LoadToolpathFile(strAnalysed, &strToolType);
    if (!path.error.isEmpty()) {
        Print(path.error, stderr);
        return kExitFault;
    }
    ReadBilletFromHeader(path, QFileInfo(strFile).absoluteFilePath());

    const QImage image = RenderPreview(path, size, {}, QFileInfo(strFile).fileName());
    QSaveFile out(strOut);
    if (!out.open(QIODevice::WriteOnly) || !image.save(&out, "PNG") || !out.commit()) {
        Print(strOut + QStringLiteral(": the picture could not be written (") + out.errorString() + u')', stderr);
        return kExitFault;
    }
    Print(strPreviewTimeLine(path));
    Print(strPreviewExtentLine(path));
    Print(QStringLiteral("Moves: %1 cuts, %2 rapids, %3 steps").arg(path.cutMoves).arg(path.rapidMoves).arg(path.steps.size()));
    if (path.outsideMoves > 0)
        Print(QStringLiteral("Warning: %1 moves leave the working envelope of 200 x 100 mm from the origin.")
                  .arg(path.outsideMoves));
    Print(QStringLiteral("Picture: ") + strOut);
    return kExitClean;
}
