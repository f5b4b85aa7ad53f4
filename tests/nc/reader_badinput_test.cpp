// Files that are not what the reader expects: each ends in the reader's message or the
// trap's report, never a crash, and the next good file still reads.
#include "core/msgbox.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/reader_harness.h"
#include "support/test_support.h"

#include <gtest/gtest.h>


namespace {

const QByteArray kGood = ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G1 X1 Y2 F100", "N40 G2 X3 Y2 I1 J0"});

// The program is still usable: a good file reads cleanly after whatever went before.
void ExpectUsable(ReaderHarness &h)
{
    h.install();
    h.corrections.clear();
    gblnCancel = false;
    ReadCommands(h.write("good.brx", kGood));
    EXPECT_EQ(gintReadResult, 0);
    EXPECT_EQ(glngCommandCount, 4);
    EXPECT_TRUE(h.corrections.empty());
}

const QString kNoPercent =
    QStringLiteral("The selected file does not have a % sign to indicate the start of the NC code.\r\n");

// Reads the bytes as a file; the one correction text shown, or "<n windows>" when not one.
QString FaultOf(ReaderHarness &h, const QByteArray &bytes, const QString &name = QStringLiteral("bad.brx"))
{
    h.corrections.clear();
    ReadCommands(h.write(name, bytes));
    return h.corrections.size() == 1 ? h.corrections[0].errorText
                                     : QStringLiteral("<%1 windows>").arg(h.corrections.size());
}

} // namespace

TEST(ReaderBadInput, MissingFileOrFolderIsToldNotTrapped)
{
    ReaderHarness h;
    {
        ScriptedBoxes boxes;
        const QString missing = h.write("x.brx", "") + QStringLiteral(".gone");
        ReadCommands(missing);
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.last().text, QStringLiteral("Cannot find file ") + missing);
        EXPECT_EQ(boxes.last().title, QStringLiteral("File not found"));
        EXPECT_EQ(gintReadResult, 1);   // back to the menu, as after a cancel
        EXPECT_EQ(h.busy.last(), QStringLiteral("stop"));

        boxes.clear();
        const QString folder = QFileInfo(missing).absolutePath();
        ReadCommands(folder);
        ASSERT_EQ(boxes.shown().size(), 1u);
        EXPECT_EQ(boxes.last().text, QStringLiteral("Cannot read file ") + folder + "\r\nPath/File access error");
        EXPECT_EQ(boxes.last().title, QStringLiteral("File not readable"));

        boxes.clear();
        ReadCommands(QString());
        EXPECT_EQ(boxes.shown().size(), 1u);
    }
    ExpectUsable(h);
}

TEST(ReaderBadInput, BinaryFiles)
{
    // Random bytes are the fuzz target's; here a file without "%" and a NUL in a command line.
    ReaderHarness h;
    EXPECT_EQ(FaultOf(h, QByteArray("\x89PNG\r\n\x1a\n\0\0", 10), "image.png"), kNoPercent);
    // A NUL inside a command line.
    const QString nul(QChar(0));
    EXPECT_EQ(FaultOf(h, QByteArray("%\r\nN10 T1\0X\r\n", 13)),
              "Line 2:\r\nN10 T1" + nul + "X\r\nhas an unrecognised character (" + nul + ").\r\n");
    ExpectUsable(h);
}

TEST(ReaderBadInput, LinesOfAHundredThousandCharacters)
{
    ReaderHarness h;
    const QString words = QStringLiteral(" X1").repeated(33333);
    ReadCommands(h.write("long.brx", ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G1" + words,
                                                             "* " + QString(100000, u'h'), QString(100000, u'G')})));
    EXPECT_EQ(gintReadResult, 0);
    EXPECT_TRUE(h.corrections.empty());
    ASSERT_EQ(glngCommandCount, 3);
    EXPECT_EQ(gtypCommands(3).strText.size(), 6 + words.size());
    EXPECT_EQ(gstrHeader.size(), 100001 + 2);

    // A number of 100 000 digits is beyond any value: the trap, as the parse overflows.
    {
        TrapRecorder trap;
        EXPECT_THROW(ReadCommands(h.write("longnum.brx", ReaderHarness::program({"N10 G1 X" + QString(100000, u'9')}))),
                     TrapEnded);
        EXPECT_EQ(trap.report(), ExpectedTrap("modReader", "sngGetVal", 6, QStringLiteral("Overflow")));
    }
    ExpectUsable(h);
}

TEST(ReaderBadInput, EveryLineEndReadsTheSame)
{
    ReaderHarness h;
    const QByteArray lf = "junk\n%\n* Billet width 20\nN10 T1\nN20 S1000\nN30 G1 X1 F100\n\nN40 G1 Y1 M3\n";
    struct Case { const char *name; QByteArray bytes; };
    QByteArray cr = lf, crlf = lf, mixed = lf, noEnd = lf;
    cr.replace('\n', '\r');
    crlf.replace("\n", "\r\n");
    mixed = "junk\r%\r\n* Billet width 20\nN10 T1\r\nN20 S1000\rN30 G1 X1 F100\n\r\nN40 G1 Y1 M3";
    noEnd.chop(1);
    for (const Case &c : {Case{"LF", lf}, Case{"CR", cr}, Case{"CR LF", crlf}, Case{"mixed", mixed},
                          Case{"no end on the last line", noEnd}}) {
        EXPECT_EQ(FaultOf(h, c.bytes),
                  QStringLiteral("Line 8:\r\nN40 G1 Y1 M3\r\nhas a command letter (M) that is not\r\nrecognised by Brantok.\r\n"))
            << c.name;
        EXPECT_EQ(gtypCommands(3).lngLine, 6) << c.name;
        EXPECT_EQ(gsngBilletWidth, 20.0f) << c.name;
    }
    // CR CR LF: a CR alone, then a CR LF: one empty line between.
    EXPECT_TRUE(FaultOf(h, "%\r\r\nN10 M3\r\n").startsWith(QStringLiteral("Line 3:")));
}

TEST(ReaderBadInput, BytesAbove127AreLatin1)
{
    ReaderHarness h;
    ReadCommands(h.write("ansi.brx", "%\r\n* Fr\xe4ser \xd8 6 mm\r\nN10 T1\r\nN20 S1000\r\nN30 G1 X1 ' \xb5m\r\n"));
    EXPECT_EQ(gstrHeader, QStringLiteral(u" Fr\u00e4ser \u00d8 6 mm\r\n"));
    EXPECT_EQ(gtypCommands(3).strText, QStringLiteral(u"N30 G1 X1 ' \u00b5m"));

    EXPECT_EQ(FaultOf(h, "%\r\nN10 T1\r\nN20 S1000\r\nN30 G1 X1\xa0Y2\r\n"),
              QStringLiteral(u"Line 4:\r\nN30 G1 X1\u00a0Y2\r\nhas an unrecognised character (\u00a0).\r\n"));
    ExpectUsable(h);
}
