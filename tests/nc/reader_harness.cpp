#include "nc/reader_harness.h"

#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "tools/tooltable.h"

#include <QFile>

ReaderHarness::ReaderHarness()
{
    ResetSharedState();
    ResetReader();
    gsngRapidSpeed = 500.0f;
    gblnWoodworker = false;
    gtypTools.Erase();
    for (int16_t n : {1, 2, 3, 7}) {
        ToolData t;
        t.intNumber = n;
        t.strType = QStringLiteral("End mill");
        t.sngDiameter = 3.0f;
        gtypTools.Append(t);
    }
    gintToolCount = 4;
    install();
}

ReaderHarness::~ReaderHarness()
{
    ResetUiHooks();
    ResetReader();
    ResetSharedState();
}

void ReaderHarness::install()
{
    uiHooks().correctFile = [this](const QString &file, const QString &errorText, const QString &faultyLine) {
        corrections.push_back({file, errorText, faultyLine});
        return answer ? answer(corrections.back()) : QStringLiteral("Cancel");
    };
    uiHooks().pageTurnStart = [this](const QString &status) { busy << QStringLiteral("start ") + status; };
    uiHooks().pageTurnStop = [this] { busy << QStringLiteral("stop"); };
}

QString ReaderHarness::write(const QString &name, const QByteArray &bytes)
{
    const QString path = m_dir.path() + u'/' + name;
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
    return path;
}

QByteArray ReaderHarness::program(const QStringList &lines)
{
    QByteArray out("%\r\n");
    for (const QString &l : lines)
        out += l.toLatin1() + "\r\n";
    return out;
}

QList<int> UsedTools()
{
    QList<int> out;
    for (int i = 1; i <= gintUsedToolCount; ++i)
        out << gintUsedTools(i);
    return out;
}
