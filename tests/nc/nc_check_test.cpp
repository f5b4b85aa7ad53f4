// brantok-nc check, run as the operator runs it: a separate process with its own store.
#include "support/test_support.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(NcCheck, ExitCodesAndOutput)
{
    QTemporaryDir dir;
    const QByteArray ini = "[General]\nRapidSpeed=400\nWoodworker=Yes\nToolCount=2\n"
                           "Tool01=4|End mill|3.000|0.000\nTool02=9|Drill|1.000|-2000.000\n";
    const QString store = WriteFile(dir.path() + QStringLiteral("/Brantok.conf"), ini);
    auto check = [&](const char *name, const QByteArray &bytes) {
        return RunBrantokNc({QStringLiteral("check"), WriteFile(dir.path() + u'/' + name, bytes)}, store);
    };
    // Clean: the store's tools, its WoodWorker speed limit and rapid speed apply.
    NcToolRun r = check("good.brx", "%\r\n* Billet length 80\r\n* Billet width 60.5\r\nN10 T9\r\nN20 S6000\r\n"
                                    "N30 G1 X1 F400\r\nN40 T4\r\nN50 G2 X1 Y0 I1 J0\r\nN60 T9\r\n");
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    EXPECT_EQ(r.out, dir.path() + QStringLiteral("/good.brx: read cleanly\nCommands: 6\nTools used: 9 4\n"
                                                 "Billet: length 80.000 mm, width 60.500 mm, depth 0.000 mm\n"));
    // A fault in the program: the correction window's text, line breaks as the terminal's.
    r = check("bad.brx", "%\r\nN10 T9\r\nN20 S6000\r\nN30 G1 X1 F401\r\n");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, QStringLiteral("Line 4:\nN30 G1 X1 F401\nhas an invalid F (Feed rate) value.\n"));
    r = RunBrantokNc({QStringLiteral("check"), dir.path() + QStringLiteral("/missing.brx")}, store);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, QStringLiteral("Cannot find file ") + dir.path() + QStringLiteral("/missing.brx\n"));
    // The trap: its report.
    r = check("trap.brx", "%\r\nN10 S1000\r\n");
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.out, QStringLiteral("An error has occurred in Brantok\n\nError:\t9 : Subscript out of range\n"
                                    "Location:\tmodReader / strHeaderFromCommands\n"));
    // Usage, and --help on the standard output.
    const QStringList usages[] = {{}, {"check", "a", "b"}, {"verify", "good.brx"}, {"compile", "--tools"}, {"--help"}};
    for (const QStringList &args : usages) {
        r = RunBrantokNc(args, store);
        const bool help = args == QStringList{"--help"};
        EXPECT_EQ(r.exitCode, help ? 0 : 64) << args.join(' ').toStdString();
        EXPECT_TRUE((help ? r.out : r.err).startsWith(QStringLiteral("usage: brantok-nc"))) << args.join(' ').toStdString();
    }
    // Never a write to the store: same bytes, no other file beside it.
    EXPECT_EQ(ReadFileBytes(store), ini);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("Brantok")).size(), 1);
}

TEST(NcCheck, AToolTableFromAFile)
{
    QTemporaryDir dir;
    const QString store = dir.path() + QStringLiteral("/Brantok.conf");   // empty: no tools
    // The shipped samples read cleanly with the shipped tool table, as README shows.
    const QString samples = QStringLiteral(BRANTOK_SOURCE_DIR "/samples/");
    for (const char *sample : {"Circle.brx", "Pocket.brx"}) {
        const QString file = samples + QLatin1String(sample);
        EXPECT_EQ(RunBrantokNc({QStringLiteral("check"), file}, store).exitCode, 1) << sample;
        const NcToolRun r = RunBrantokNc({QStringLiteral("check"), QStringLiteral("--tools"), samples + "Tools.txt", file}, store);
        EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    }
    // A line that isn't a record is told, not trapped.
    const QString bad = WriteFile(dir.path() + QStringLiteral("/bad.txt"), "1|End mill|3.000|0.000\n\nEnd mill 6\n");
    const NcToolRun r = RunBrantokNc({QStringLiteral("check"), QStringLiteral("--tools"), bad, samples + "Circle.brx"}, store);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, bad + QStringLiteral(" line 3: a tool is number|type|diameter|offset, not: End mill 6\n"));
}
