#include "nc/reader_harness.h"

#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc_test_support.h"

#include <QFile>

ReaderHarness::ReaderHarness()
{
    ResetSharedState();
    ResetReader();
    gsngRapidSpeed = 500.0f;
    gblnWoodworker = false;
    SetTools({{1, 3.0f, 0.0f}, {2, 3.0f, 0.0f}, {3, 3.0f, 0.0f}, {7, 3.0f, 0.0f}});
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
