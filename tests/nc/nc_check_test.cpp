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
    auto nc = [&](const char *name, const QByteArray &bytes) { return WriteFile(dir.path() + u'/' + name, bytes); };
    auto check = [&](const QString &file) { return RunBrantokNc({QStringLiteral("check"), file}, store); };

    // Clean: the store's tools, its WoodWorker speed limit and rapid speed apply.
    const QString good = nc("good.brx", "%\r\n* Billet length 80\r\n* Billet width 60.5\r\nN10 T9\r\nN20 S6000\r\n"
                                        "N30 G1 X1 F400\r\nN40 T4\r\nN50 G2 X1 Y0 I1 J0\r\nN60 T9\r\n");
    NcToolRun r = check(good);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    EXPECT_EQ(r.out, good + QStringLiteral(": read cleanly\nCommands: 6\nTools used: 9 4\n"
                                           "Billet: length 80.000 mm, width 60.500 mm, depth 0.000 mm\n"));

    // A fault in the program: the correction window's text, line breaks as the terminal's.
    r = check(nc("bad.brx", "%\r\nN10 T9\r\nN20 S6000\r\nN30 G1 X1 F401\r\n"));
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, QStringLiteral("Line 4:\nN30 G1 X1 F401\nhas an invalid F (Feed rate) value.\n"));
    r = check(dir.path() + QStringLiteral("/missing.brx"));
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, QStringLiteral("Cannot find file ") + dir.path() + QStringLiteral("/missing.brx\n"));

    // The trap: its report.
    r = check(nc("trap.brx", "%\r\nN10 S1000\r\n"));
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.out, QStringLiteral("An error has occurred in Brantok\n\nError:\t9 : Subscript out of range\n"
                                    "Location:\tmodReader / strHeaderFromCommands\n"));

    // Usage.
    for (const QStringList &args : {QStringList{}, QStringList{"check", "a", "b"}, QStringList{"verify", good}}) {
        r = RunBrantokNc(args, store);
        EXPECT_EQ(r.exitCode, 64) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.startsWith(QStringLiteral("usage: brantok-nc"))) << r.err.toStdString();
    }

    // Never a write to the store: same bytes, no other file beside it.
    EXPECT_EQ(ReadFileBytes(store), ini);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("Brantok")).size(), 1);
}

TEST(NcCheck, HelpAndAToolTableFromAFile)
{
    QTemporaryDir dir;
    const QString store = dir.path() + QStringLiteral("/Brantok.conf");   // empty: no tools
    const NcToolRun help = RunBrantokNc({QStringLiteral("--help")}, store);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.startsWith(QStringLiteral("usage: brantok-nc"))) << help.out.toStdString();
    // The shipped samples read cleanly with the shipped tool table, as README shows.
    const QString samples = QStringLiteral(BRANTOK_SOURCE_DIR "/samples/");
    const QString tools = samples + QStringLiteral("Tools.txt");
    for (const char *sample : {"Circle.brx", "Pocket.brx"}) {
        const QString file = samples + QLatin1String(sample);
        EXPECT_EQ(RunBrantokNc({QStringLiteral("check"), file}, store).exitCode, 1) << sample;
        const NcToolRun r = RunBrantokNc({QStringLiteral("check"), QStringLiteral("--tools"), tools, file}, store);
        EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    }
    // A line that isn't a record is told, not trapped; a missing value is a wrong command line.
    const QString bad = WriteFile(dir.path() + QStringLiteral("/bad.txt"), "1|End mill|3.000|0.000\n\nEnd mill 6\n");
    NcToolRun r = RunBrantokNc({QStringLiteral("check"), QStringLiteral("--tools"), bad, samples + "Circle.brx"}, store);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, bad + QStringLiteral(" line 3: a tool is number|type|diameter|offset, not: End mill 6\n"));
    r = RunBrantokNc({QStringLiteral("compile"), QStringLiteral("--tools")}, store);
    EXPECT_EQ(r.exitCode, 64);
}
