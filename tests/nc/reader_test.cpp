// The reader's number parse, the file chooser's quick look, the billet size, the read around
// the correction window (correct and read again is in the files tests), files that are not what
// the reader expects (a message, never a crash, and the next file still reads), text files'
// lines and saves, and brantok-nc check run as the operator runs it, with its own store.
#include "nc_test_support.h"

#include "core/msgbox.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/textfile.h"

#include <QDir>
#include <QProcess>
#include <QTimer>

#include <clocale>

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

// The lines of a file as TextLineInput gives them.
QStringList Lines(const QByteArray &bytes)
{
    QTemporaryDir dir;
    TextLineInput in;
    EXPECT_EQ(in.Open(WriteFile(dir.path() + QStringLiteral("/f.brx"), bytes)), TextLineInput::OpenResult::Ok);
    QStringList out;
    while (!in.AtEnd())
        out << in.LineInput();
    EXPECT_TRUE(in.LineInput().isEmpty());   // past the end: empty, no fault
    return out;
}

} // namespace

TEST(Reader, GetValTakesTheLeadingNumber)
{
    struct Case { const char *in; float value; const char *rest; };
    const Case cases[] = {
        {"  12.5X3", 12.5f, "X3"}, {"-", 0.0f, ""}, {"-.5", -0.5f, ""}, {"007 ", 7.0f, ""},
        {"1.2.3 Y", 1.2f, " Y"},     // the rest is trimmed by the next call, not this one
        {"X1", 65536.0f, "X1"}, {"   ", 65536.0f, ""},
        {"\t5", 65536.0f, "\t5"},    // blanks only are trimmed
        {"+5", 65536.0f, "+5"},      // "+" is no part of a value
    };
    for (const Case &c : cases) {
        QString line = QString::fromLatin1(c.in);
        EXPECT_EQ(sngGetVal(line), c.value) << c.in;
        EXPECT_EQ(line, QString::fromLatin1(c.rest)) << c.in;
    }
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
        {"z is still text", "zebra\r\n%\r\n* h", " h\r\n"},
        {"LF and CR line ends", "%\r* a\n* b\r", " a\r\n b\r\n"},
    };
    int n = 0;
    for (const Case &c : cases)
        EXPECT_EQ(strHeader(h.write(QStringLiteral("h%1.brx").arg(++n), c.bytes)), QString::fromLatin1(c.header)) << c.name;
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
        EXPECT_EQ(std::make_tuple(gsngBilletLength, gsngBilletWidth, gsngBilletDepth),
                  std::make_tuple(c.length, c.width, c.depth)) << c.header;
    }
}

TEST(Reader, CleanReadLeavesHeaderAndBusyDisplay)
{
    ReaderHarness h;
    ReadCommands(h.write("ok.brx", "junk\r\n%\r\n* Bracket\r\n* Billet length 50\r\nN10 T3\r\nN20 S1500\r\n"
                                   "N30 G1 X1 Y1 Z-1 F90\r\n"));
    EXPECT_EQ(gintReadResult, 0);
    EXPECT_EQ(glngCommandCount, 3);
    EXPECT_EQ(gstrHeader, QStringLiteral(" Bracket\r\n Billet length 50\r\n"));
    // The file checks, then the read; the wizard's next step stops the display.
    EXPECT_EQ(h.busy, QStringList({"start Performing file checks", "start Reading CNC file"}));
    // A fault stops the busy display before the window shows.
    h.busy.clear();
    ReadCommands(h.write("bad.brx", "%\r\nN10 M3\r\n"));
    EXPECT_EQ(h.busy, QStringList({"start Performing file checks", "start Reading CNC file", "stop"}));
}

TEST(Reader, CancelStopsTheRead)
{
    ReaderHarness h;
    // Cancelled before the read: nothing is parsed.
    gblnCancel = true;
    ReadCommands(h.write("ok.brx", ReaderHarness::program({"N10 T1", "N20 S1000", "N30 G1 X1"})));
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
        found = setlocale(LC_NUMERIC, "de_DE.UTF-8");   // loaded now: LOCPATH can go back
        qputenv("LOCPATH", oldLocPath);
    }
    if (!found)
        GTEST_SKIP() << "no German locale to test with";
    ReaderHarness h;
    ReadCommands(h.write("dec.brx", "%\r\n* Billet length 12.5\r\nN10 T1\r\nN20 S1000\r\nN30 G2 X1.5 Y1 R0.5 F99.5\r\n"));
    setlocale(LC_NUMERIC, "C");
    EXPECT_TRUE(h.corrections.empty());
    EXPECT_EQ(gtypCommands(3).sngX, 1.5f);
    EXPECT_EQ(gsngBilletLength, 12.5f);
}

// Back to the menu as after a cancel, the busy display stopped.
TEST(ReaderBadInput, MissingFileOrFolderIsToldNotTrapped)
{
    ReaderHarness h;
    const QString missing = h.write("x.brx", "") + QStringLiteral(".gone"), folder = QFileInfo(missing).absolutePath();
    struct Case { QString path, text, title; };
    const Case cases[] = {{missing, "Cannot find file " + missing, "File not found"},
                          {folder, "Cannot read file " + folder + "\r\nPath/File access error", "File not readable"},
                          {QString(), "Cannot find file ", "File not found"}};
    ScriptedBoxes boxes;
    for (const Case &c : cases) {
        boxes.clear();
        h.busy.clear();
        ReadCommands(c.path);
        ASSERT_EQ(boxes.shown().size(), 1u) << c.text.toStdString();
        EXPECT_EQ(boxes.last().text, c.text);
        EXPECT_EQ(boxes.last().title, c.title);
        EXPECT_EQ(gintReadResult, 1);
        EXPECT_EQ(h.busy.last(), QStringLiteral("stop"));
    }
    ExpectUsable(h);
}

// Mixed line ends (each alone is the text file's), a binary file, a NUL and bytes above 127
// (Latin-1): the one correction text shown. Random bytes are the fuzz target's.
TEST(ReaderBadInput, FaultTextWhateverTheBytes)
{
    ReaderHarness h;
    const QString m3 = QStringLiteral("N40 G1 Y1 M3\r\nhas a command letter (M) that is not\r\nrecognised by Brantok.\r\n");
    const QString nul(QChar(0));
    struct Case { const char *name; QByteArray bytes; QString fault; };
    const Case cases[] = {
        {"LF, CR, CR LF, none at the end", "junk\r%\r\n* Billet width 20\nN10 T1\r\nN20 S1000\rN30 G1 X1 F100\n\r\nN40 G1 Y1 M3",
         "Line 8:\r\n" + m3},
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
}

TEST(TextFile, LineEnds)
{
    EXPECT_EQ(Lines(""), QStringList());
    EXPECT_EQ(Lines("a\r\n\r\n"), QStringList({"a", ""}));
    EXPECT_EQ(Lines("a\rb\r"), QStringList({"a", "b"}));
    EXPECT_EQ(Lines("a\nb"), QStringList({"a", "b"}));
    EXPECT_EQ(Lines("a\n\rb"), QStringList({"a", "", "b"}));   // LF then CR: two ends

    // A CR LF split across two reads of the disk is still one line end; a CR at the end of
    // a read followed by anything else is a line end of its own.
    const QByteArray a(65535, 'a');
    EXPECT_EQ(Lines(a + "\r\nb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\rb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\r"), QStringList({QString(65535, u'a')}));
}

// Every byte but the line ends is one character (Latin-1), through the correction window and back.
TEST(TextFile, EveryByteIsOneCharacterAndSavesAreCrLf)
{
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        if (b != '\r' && b != '\n')
            all.append(static_cast<char>(b));
    const QStringList lines = Lines(all);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0], QString::fromLatin1(all));
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/f.brx");
    QString error, text;
    ASSERT_TRUE(blnTextFileSave(path, lines[0], error)) << error.toStdString();
    EXPECT_EQ(ReadFileBytes(path), all);

    text = QStringLiteral("a\nb\r\nc\rd") + QChar(0x2029) + QStringLiteral("e") + QChar(0x2028) + QStringLiteral("\u20ac\n");
    ASSERT_TRUE(blnTextFileSave(path, text, error));
    EXPECT_EQ(ReadFileBytes(path), QByteArray("a\r\nb\r\nc\r\nd\r\ne\r\n?\r\n"));
    ASSERT_TRUE(blnTextFileLoad(path, text));
    EXPECT_EQ(text, QStringLiteral("a\nb\nc\nd\ne\n?\n"));

    // A folder that isn't there: nothing written, the reason told.
    EXPECT_FALSE(blnTextFileSave(dir.path() + QStringLiteral("/gone/f.brx"), text, error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(blnTextFileLoad(dir.path() + QStringLiteral("/gone/f.brx"), text));
    EXPECT_FALSE(blnTextFileLoad(dir.path(), text));
}

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
