// Files that are not what the reader expects: each ends in the reader's message or the
// trap's report, never a crash, and the next good file still reads.
#include "core/msgbox.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/reader_harness.h"

namespace {

// The program is still usable: a good file reads cleanly after whatever went before.
void ExpectUsable(ReaderHarness &h)
{
    h.install();
    h.corrections.clear();
    gblnCancel = false;
    ReadCommands(h.write("good.brx", ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G1 X1 Y2 F100",
                                                             "N40 G2 X3 Y2 I1 J0"})));
    EXPECT_EQ(gintReadResult, 0);
    EXPECT_EQ(glngCommandCount, 4);
    EXPECT_TRUE(h.corrections.empty());
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

// Every line end, a binary file, a NUL and bytes above 127 (Latin-1): the one correction
// text shown. Random bytes are the fuzz target's.
TEST(ReaderBadInput, FaultTextWhateverTheBytes)
{
    ReaderHarness h;
    const QByteArray lf = "junk\n%\n* Billet width 20\nN10 T1\nN20 S1000\nN30 G1 X1 F100\n\nN40 G1 Y1 M3\n";
    QByteArray cr = lf, crlf = lf, noEnd = lf;
    cr.replace('\n', '\r');
    crlf.replace("\n", "\r\n");
    noEnd.chop(1);
    const QString m3 = QStringLiteral("N40 G1 Y1 M3\r\nhas a command letter (M) that is not\r\nrecognised by Brantok.\r\n");
    const QString nul(QChar(0));
    struct Case {
        const char *name;
        QByteArray bytes;
        QString fault;
    };
    const Case cases[] = {
        {"LF", lf, "Line 8:\r\n" + m3},
        {"CR", cr, "Line 8:\r\n" + m3},
        {"CR LF", crlf, "Line 8:\r\n" + m3},
        {"mixed", "junk\r%\r\n* Billet width 20\nN10 T1\r\nN20 S1000\rN30 G1 X1 F100\n\r\nN40 G1 Y1 M3", "Line 8:\r\n" + m3},
        {"no end on the last line", noEnd, "Line 8:\r\n" + m3},
        {"CR CR LF: a CR alone, then a CR LF", "%\r\r\nN40 G1 Y1 M3\r\n", "Line 3:\r\n" + m3},
        {"an image", QByteArray("\x89PNG\r\n\x1a\n\0\0", 10),
         "The selected file does not have a % sign to indicate the start of the NC code.\r\n"},
        {"a NUL in a command line", QByteArray("%\r\nN10 T1\0X\r\n", 13),
         "Line 2:\r\nN10 T1" + nul + "X\r\nhas an unrecognised character (" + nul + ").\r\n"},
        {"Latin-1", "%\r\nN10 T1\r\nN20 S1000\r\nN30 G1 X1\xa0Y2\r\n",
         QStringLiteral(u"Line 4:\r\nN30 G1 X1\u00a0Y2\r\nhas an unrecognised character (\u00a0).\r\n")},
    };
    int n = 0;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        h.corrections.clear();
        ReadCommands(h.write(QStringLiteral("bad%1.brx").arg(++n), c.bytes));
        ASSERT_EQ(h.corrections.size(), 1u);
        EXPECT_EQ(h.corrections[0].errorText, c.fault);
        if (c.bytes.contains("Billet")) {   // the lines before the fault, whatever their ends
            EXPECT_EQ(gtypCommands(3).lngLine, 6);
            EXPECT_EQ(gsngBilletWidth, 20.0f);
        }
    }
    ExpectUsable(h);
}

TEST(ReaderBadInput, LongLinesAndBytesAbove127ReadCleanly)
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

    ReadCommands(h.write("ansi.brx", "%\r\n* Fr\xe4ser \xd8 6 mm\r\nN10 T1\r\nN20 S1000\r\nN30 G1 X1 ' \xb5m\r\n"));
    EXPECT_EQ(gstrHeader, QStringLiteral(u" Fr\u00e4ser \u00d8 6 mm\r\n"));
    EXPECT_EQ(gtypCommands(3).strText, QStringLiteral(u"N30 G1 X1 ' \u00b5m"));

    // A number of 100 000 digits is beyond any value: the trap, as the parse overflows.
    const QString longNum = h.write("longnum.brx", ReaderHarness::program({"N10 G1 X" + QString(100000, u'9')}));
    EXPECT_EQ(TrapReport([&] { ReadCommands(longNum); }),
              ExpectedTrap("modReader", "sngGetVal", 6, QStringLiteral("Overflow")));
    ExpectUsable(h);
}
