// The reader's number parse, the file chooser's quick look, the billet size, and the
// read around the correction window (busy display, cancel, analysed file). Correct and read
// again is driven through the real window in the files tests.
#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/reader_harness.h"

#include <QProcess>
#include <QTimer>

#include <clocale>

TEST(Reader, GetValTakesTheLeadingNumber)
{
    struct Case { const char *in; float value; const char *rest; };
    const Case cases[] = {
        {"  12.5X3", 12.5f, "X3"},
        {"1.2.3 Y", 1.2f, " Y"},     // the rest is trimmed by the next call, not this one
        {"-", 0.0f, ""},
        {"-.5", -0.5f, ""},
        {"X1", 65536.0f, "X1"},
        {"   ", 65536.0f, ""},
        {"\t5", 65536.0f, "\t5"},    // blanks only are trimmed
        {"007 ", 7.0f, ""},
        {"+5", 65536.0f, "+5"},      // "+" is no part of a value
    };
    for (const Case &c : cases) {
        QString line = QString::fromLatin1(c.in);
        EXPECT_EQ(sngGetVal(line), c.value) << c.in;
        EXPECT_EQ(line, QString::fromLatin1(c.rest)) << c.in;
    }
    QString huge = QStringLiteral("1") + QString(39, u'0');
    EXPECT_EQ(TrapReport([&] { sngGetVal(huge); }), ExpectedTrap("modReader", "sngGetVal", 6, QStringLiteral("Overflow")));
}

TEST(Reader, HeaderForTheFileChooser)
{
    ReaderHarness h;
    struct Case { const char *name; QByteArray bytes; const char *header; };
    const Case cases[] = {
        {"header", "%\r\n* a\r\n*b\r\nN10 T1\r\n* not this\r\n", " a\r\nb\r\n"},
        {"blank lines passed over, lines trimmed", "%\r\n\r\n   *  x  \r\n\r\n* y", "  x\r\n y\r\n"},
        {"% as first character suffices", "%abc\r\n* h\r\n", " h\r\n"},
        {"% on line 10", "a\nb\nc\nd\ne\nf\ng\nh\ni\n%\n* h\n", " h\r\n"},
        {"% on line 11", "a\nb\nc\nd\ne\nf\ng\nh\ni\nj\n%\n* h\n", ""},
        {"% with nothing behind, no line end", "%", ""},
        {"empty file", "", ""},
        {"an empty line before %", "\r\n%\r\n* h\r\n", "*** NOT A Brantok FILE ***"},
        {"a brace first", "{x}\r\n%\r\n", "*** NOT A Brantok FILE ***"},
        {"a byte above 127 first", "\xe9t\xe9\r\n%\r\n", "*** NOT A Brantok FILE ***"},
        {"z is still text", "zebra\r\n%\r\n* h", " h\r\n"},
        {"LF and CR line ends", "%\r* a\n* b\r", " a\r\n b\r\n"},
    };
    int n = 0;
    for (const Case &c : cases) {
        const QString file = h.write(QStringLiteral("h%1.brx").arg(++n), c.bytes);
        EXPECT_EQ(strHeader(file), QString::fromLatin1(c.header)) << c.name;
    }
    EXPECT_EQ(strHeader(h.write("x", "") + QStringLiteral(".missing")), QString());
}

TEST(Reader, BilletSizeFromTheHeader)
{
    struct Case { const char *header; float length, width, depth; };
    const Case cases[] = {
        {"Billet length 125\r\nBillet width 93\r\nbillet DEPTH 20\r\n", 125, 93, 20},
        {"Billet length -5\r\n", 5, 0, 0},                    // the sign is lost
        {"Billet size\r\nLength 50\r\n", 0, 0, 0},             // no digit; no BILLET
        {"Billet length 1 25 mm\r\n", 125, 0, 0},             // Val passes over blanks
        {"Billet length 10\r\nBillet length 12.5\r\n", 12.5f, 0, 0},
        {"Billet 30 width and depth\r\n", 0, 30, 0},          // LENGTH, then WIDTH, then DEPTH
        {" Billet depth 3.2", 0, 0, 3.2f},
    };
    for (const Case &c : cases) {
        ResetSharedState();
        gstrHeader = QString::fromLatin1(c.header);
        GetBilletSize();
        EXPECT_EQ(gsngBilletLength, c.length) << c.header;
        EXPECT_EQ(gsngBilletWidth, c.width) << c.header;
        EXPECT_EQ(gsngBilletDepth, c.depth) << c.header;
    }
}

TEST(Reader, CleanReadLeavesHeaderBilletAndBusyDisplay)
{
    ReaderHarness h;
    const QString file = h.write("ok.brx", "junk\r\n%\r\n* Bracket\r\n* Billet length 50\r\n* Billet width 40\r\n"
                                           "* Billet depth 6\r\nN10 T3\r\nN20 S1500\r\nN30 G1 X1 Y1 Z-1 F90\r\n");
    ReadCommands(file);
    EXPECT_EQ(gintReadResult, 0);
    EXPECT_EQ(gstrNCFile, file);
    EXPECT_EQ(gstrHeader, QStringLiteral(" Bracket\r\n Billet length 50\r\n Billet width 40\r\n Billet depth 6\r\n"));
    EXPECT_EQ(gsngBilletLength, 50.0f);
    EXPECT_EQ(gstrAnalysedReason, QStringLiteral("the setting 'Retain calculated Mill steps' is turned off"));
    // The file checks, then the read; the wizard's next step stops the display.
    EXPECT_EQ(h.busy, QStringList({"start Performing file checks", "start Reading CNC file"}));
    EXPECT_EQ(glngCommandCount, 3);

    // A second read starts from empty tables.
    ReadCommands(file);
    EXPECT_EQ(glngCommandCount, 3);
    EXPECT_EQ(gintUsedToolCount, 1);

    // A fault stops the busy display before the window shows.
    h.busy.clear();
    ReadCommands(h.write("bad.brx", "%\r\nN10 M3\r\n"));
    EXPECT_EQ(h.busy, QStringList({"start Performing file checks", "start Reading CNC file", "stop"}));
}

TEST(Reader, CancelStopsTheRead)
{
    ReaderHarness h;
    const QString file = h.write("ok.brx", ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G1 X1"}));
    // Cancelled before the read: nothing is parsed.
    gblnCancel = true;
    ReadCommands(file);
    EXPECT_EQ(gintReadResult, 1);
    EXPECT_EQ(glngCommandCount, 0);

    // Cancelled by the operator while the read pumps events after the first command line:
    // the read ends there and no whole-file check runs.
    gblnCancel = false;
    QTimer::singleShot(0, [] { gblnCancel = true; });
    ReadCommands(h.write("nocut.brx", ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G0 X1"})));
    EXPECT_TRUE(gblnCancel);
    EXPECT_EQ(glngCommandCount, 1);
    EXPECT_TRUE(h.corrections.empty());
}

TEST(Reader, DecimalPointWhateverTheDesktopLanguage)
{
    // A desktop in German writes "1,5": the C library then reads "0.5" as 0. Make such a
    // locale if the system has none, and read under it.
    QTemporaryDir locales;
    const QByteArray oldLocPath = qgetenv("LOCPATH");
    const char *found = nullptr;
    for (const char *name : {"de_DE.UTF-8", "de_DE.utf8"})
        if (!found && setlocale(LC_NUMERIC, name))
            found = name;
    if (!found && QProcess::execute(QStringLiteral("localedef"), {"-i", "de_DE", "-f", "UTF-8",
                                                                   locales.path() + "/de_DE.UTF-8"}) == 0) {
        qputenv("LOCPATH", locales.path().toLocal8Bit());
        found = setlocale(LC_NUMERIC, "de_DE.UTF-8");
    }
    if (!found) {
        qputenv("LOCPATH", oldLocPath);
        GTEST_SKIP() << "no German locale to test with";
    }
    ReaderHarness h;
    ReadCommands(h.write("dec.brx", "%\r\n* Billet length 12.5\r\nN10 T1\r\nN20 S1000\r\nN30 G2 X1.5 Y1 R0.5 F99.5\r\n"));
    setlocale(LC_NUMERIC, "C");
    qputenv("LOCPATH", oldLocPath);
    EXPECT_TRUE(h.corrections.empty());
    EXPECT_EQ(gtypCommands(3).sngX, 1.5f);
    EXPECT_EQ(gsngBilletLength, 12.5f);
}
