// The reader over many small programs: every message it can give, word for word, and the
// table it leaves for the quirks it keeps.
#include "nc_test_support.h"

#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"

#include <QRegularExpression>

namespace {

const QString kCrLf = QStringLiteral("\r\n");

struct Case {
    QString name;
    QByteArray bytes;                      // the file
    bool woodworker = false;
    QString error{}, marked{};             // a fault: the text of txtError and the line marked red
    const char *trapProcedure = nullptr;   // a trap: the procedure and fault number of the report
    int trapNumber = 0;
    std::function<void()> check{};         // a clean read: what the table must hold
};

// Tool 1 and its speed: what every program needs before it may cut.
QStringList TS(const QStringList &rest) { return QStringList{"N10 T1", "N20 S1000"} + rest; }

// Checks the command table against a spec such as "#3 3V500 3X2.5" (see the clean cases).
void ExpectFields(const QString &spec)
{
    for (const QString &t : spec.split(u' ', Qt::SkipEmptyParts)) {
        SCOPED_TRACE(t.toStdString());
        if (t.startsWith(u'#')) {
            EXPECT_EQ(glngCommandCount, t.mid(1).toInt());
            continue;
        }
        const qsizetype at = t.indexOf(QRegularExpression(QStringLiteral("[A-Z]")));
        const CommandRecord &c = gtypCommands(t.left(at).toInt());
        const float fields[] = {static_cast<float>(c.intType), c.sngValue, c.sngX, c.sngY, c.sngZ, c.sngI, c.sngR,
                                static_cast<float>(c.lngLine)};
        const qsizetype field = QStringLiteral("TVXYZIRL").indexOf(t[at]);
        ASSERT_GE(field, 0) << "unknown field";
        EXPECT_EQ(fields[field], t.mid(at + 1).toFloat());
    }
}

const QString kCannot = QStringLiteral("This file cannot be processed as it does not contain\r\n");
const QString kNoPercent = QStringLiteral("The selected file does not have a % sign to indicate the start of the NC code.");
const QString kInvalidG = QStringLiteral("has an invalid G-code.\r\nBrantok accepts G0(rapid), G1(cut), "
                                         "G2(arc ccw) G3(arc cw) and G4(dwell).\r\n");
const QString kNoS = QStringLiteral("has a G-code but there is no rotational speed (S)\r\nfollowing the first tool definition.");
const QString kLetterM = QStringLiteral("has a command letter (M) that is not\r\nrecognised by Brantok.");

std::vector<Case> Cases()
{
    std::vector<Case> v;
    const auto P = [](const QStringList &lines) { return ReaderHarness::program(lines); };  // "%" first
    const auto Raw = [](const QStringList &lines) { return lines.join(QStringLiteral("\r\n")).toLatin1(); };
    // Faults name the line (physical, "%" is line 1) and mark it; whole-file faults mark nothing.
    const auto Fault = [&](const QString &name, const QStringList &lines, int line, const QString &message,
                           bool woodworker = false) {
        const QString marked = lines.at(line - 2);
        v.push_back({name, P(lines), woodworker,
                     QStringLiteral("Line %1:").arg(line) + kCrLf + marked + kCrLf + message + kCrLf, marked});
    };
    const auto WholeFile = [&](const QString &name, const QByteArray &bytes, const QString &message) {
        v.push_back({name, bytes, false, message + kCrLf});
    };
    const auto Trap = [&](const QString &name, const QStringList &lines, const char *procedure, int number) {
        v.push_back({name, P(lines), false, {}, {}, procedure, number});
    };

    // --- The whole-file checks, in their order.
    WholeFile("no %", Raw({"N10 T1", "N20 S1000", "N30 G1 X1 F100"}), kNoPercent);
    WholeFile("% but no N line", P({"* header only", "G1 X1"}), kNoPercent);
    WholeFile("% after the 1st line, but \"%\" must stand alone", Raw({"% start", "N10 T1"}), kNoPercent);
    WholeFile("only G0", P(TS({"N30 G0 X1 Y1 Z1"})), kCannot + "any G-codes that are cutting operations.\r\n");
    WholeFile("no tool", P({"N10 G1 X1 F100"}), kCannot + "any Tool definitions.\r\n");
    WholeFile("no S after the first T", P({"N10 G1 X1 F100", "N20 T1"}), kCannot + "a Rotational Speed definition.\r\n");
    WholeFile("cutting is checked before tools", P({"N10 G0 X1"}), kCannot + "any G-codes that are cutting operations.\r\n");

    // --- Clean reads and what they leave: "<command><field><value>", T type (G0 1, G1 2, G3 3,
    // G2 4, S 7, T 8, G4 14), V value, X Y Z I J R, L line; "#n" the command count.
    const auto C = [&](const QString &name, const QByteArray &bytes, const QString &fields,
                       std::function<void()> more = {}, bool woodworker = false) {
        v.push_back({name, bytes, woodworker, {}, {}, nullptr, 0, [fields, more] {
                         ExpectFields(fields);
                         if (more)
                             more();
                     }});
    };
    C("G4 alone counts as cutting; P lands in X", P(TS({"N30 G4 P2.5"})), "#3 1T8 1V1 2T7 2V1000 3T14 3V500 3L4 3X2.5",
      [] { EXPECT_EQ(UsedTools(), QList<int>({1})); });
    C("F0.5 after F200 is 100, and stays", P(TS({"N30 G1 X1 F200", "N40 G1 X10 F0.5", "N50 G1 X20"})), "3V200 4V100 5V100");
    C("F below 1 multiplies the speed in force, G0's rapid too", P(TS({"N30 G0 X1 F0.5", "N40 G1 X2"})), "3V250");
    C("G1 before any F has feed 0; F0 is accepted", P(TS({"N30 G1 X1", "N40 G1 X2 F0"})), "3V0 4V0");
    // Coordinates not yet programmed are 300; G2 is type 4.
    C("modal record: coordinates and type carry, I J R don't",
      P(TS({"N30 G1 X1 Y2 F100", "N40 Z-1", "N50 G2 X5 I2 J0", "N60 X7 R3"})),
      "2X300 3X1 3Y2 3Z300 4T2 4Z-1 4X1 5T4 5I2 6T4 6I0 6R3 6V100");
    C("P stays as the modal X", P(TS({"N30 G1 X1 F100", "N40 G4 P2", "N50 G1 Y5"})), "4X2 5X2 5Y5");
    C("comment cut, strText keeps it", P(TS({"N40 G1 X1 ' go X9 M3 g", "N41 G1 Y1'"})), "3X1 4Y1",
      [] { EXPECT_EQ(gtypCommands(3).strText, QStringLiteral("N40 G1 X1 ' go X9 M3 g")); });
    // Nothing is copied into an N line alone, although the working type is 2.
    C("N50 alone: zero-filled entries", P({"N50", "N10 T1", "N20 S1000", "N30 G1 X1 F100", "N60"}), "#5 1T0 1L0 5T0 5X0",
      [] { EXPECT_EQ(gtypCommands(1).strText, QString()); });
    C("lines without N and header lines anywhere", P(TS({"G1 X5", "* late header", "", "N30 G1 X1 F10"})), "#3 3L7",
      [] { EXPECT_EQ(gstrHeader, QStringLiteral(" late header\r\n")); });
    C("trailing control characters and blanks go from strText", P(TS({"N30 G1 X1 F10\t \x01"})), "",
      [] { EXPECT_EQ(gtypCommands(3).strText, QStringLiteral("N30 G1 X1 F10")); });
    C("N number: any, or none", P(TS({"N G1 X1 F1", "N5 G1 X2"})), "#4");
    C("tools listed once, in order of first use", P({"N1 T2", "N2 S100", "N3 G1 X1", "N4 T1", "N5 G1 X2", "N6 T2", "N7 T7"}),
      "", [] { EXPECT_EQ(UsedTools(), QList<int>({2, 1, 7})); });
    C("T: the whole part names the tool, the value stays", P(TS({"N30 G1 X1 F1", "N40 T2.7"})), "4V2.7",
      [] { EXPECT_EQ(UsedTools(), QList<int>({1, 2})); });
    C("F after T overwrites the tool number (modal value)", P(TS({"N30 G1 X1 F1", "N40 T2 F300"})), "4V300");
    C("S limits: 50 and 2000", P({"N10 T1", "N20 S50", "N30 T2", "N40 S2000", "N50 G1 X1"}), "");
    C("S 2001 and 8000 (WoodWorker)", P({"N10 T1", "N20 S2001", "N30 T2", "N40 S8000", "N50 G1 X1"}), "", {}, true);
    C("pre-% lines count", Raw(QStringList{"junk", "%"} + TS({"N30 G1 X1"})), "3L5");
    C("centre-form full circle", P(TS({"N30 G0 X10 Y10 Z1", "N40 G2 X10 Y10 I5 J0"})), "");

    // --- Word faults.
    const auto F = [&](const QString &name, const QString &line, const QString &message) {
        Fault(name, TS({line}), 4, message);
    };
    F("lower-case g", "N30 g1", "has an unrecognised character (g).");
    F("unrecognised is checked before the words", "N30 M3 A", "has an unrecognised character (A).");
    F("M word", "N30 M3", kLetterM);
    F("second N", "N30 G1 N40", "has a command letter (N) that is not\r\nrecognised by Brantok.");
    F("G5", "N30 G5", kInvalidG);
    F("G blank 1", "N30 G 1", kInvalidG);
    F("G01", "N30 G01 X1", "has a numeric value without a parameter letter");
    F("number without letter", "N30 G1 -5", "has a numeric value without a parameter letter");
    F("F without value", "N30 G1 F", "has an F (Feed rate) code but no value.");
    F("F over rapid", "N30 G1 F500.1", "has an invalid F (Feed rate) value.");
    F("I without value", "N30 G2 I", "has an I code but no value.");
    F("R then I", "N30 G2 X1 R5 I1", "has an R value in addition to an I value.");
    F("R without value", "N30 G2 R", "has an R (arc radius) code but no value.");
    F("R zero", "N30 G2 R0", "has an invalid R (arc radius) value.");
    F("I then R", "N30 G2 I1 R5", "has an I or J value in addition to an R value.");
    F("S without value", "N30 S", "has an S (rotational speed) code but no value.");
    F("S 49", "N30 T2 S49", "has an invalid S (rotational speed) value.");
    Fault("S 8001 (WoodWorker)", {"N10 T1", "N20 S8001"}, 3, "has an invalid S (rotational speed) value.", true);
    Fault("T and S on one line", {"N10 G0 X0", "N20 T1 S1000"}, 3,
          "has an S (rotational speed) value\r\nwithout a preceeding Tool definition.");
    F("S not after a T line", "N30 S1000", "has an S (rotational speed) value\r\nwithout a preceeding Tool definition.");
    F("T without value", "N30 T", "has a T (Tool number) code but no value.");
    F("T not in the table", "N30 T9", "Tool number 9 is not listed in the Tool Data Table.");
    F("T negative", "N30 T-1.5", "Tool number -2 is not listed in the Tool Data Table.");
    F("P without value", "N30 G4 P", "has a P code but no value.");
    F("P with G1", "N30 G1 P1", "the P code is not used by this command.");
    F("X without value", "N30 G1 X", "has an X code but no value.");
    F("a tab is not trimmed before a value", "N30 G1 Y\t6", "has a Y code but no value.");
    F("X after S", "N30 X5", "the X code is not used by this command.");
    F("Z on a T line", "N30 T2 Z1", "the Z code is not used by this command.");
    Fault("G right after the first T", {"N10 T1", "N20 G0 X1"}, 3, kNoS);
    Fault("the same first tool again needs its S again", {"N10 T1", "N20 S1000", "N30 G1 X1", "N40 T1", "N50 G1 X2"}, 6, kNoS);
    v.push_back({"a faulty line after pre-% lines", Raw({"x", "y", "%", "N10 M3"}), false,
                 "Line 4:\r\nN10 M3\r\n" + kLetterM + kCrLf, "N10 M3"});
    Fault("the first fault ends the read", TS({"N30 M3", "N40 G7"}), 4, kLetterM);

    // --- The arc check.
    Fault("R arc ending where it starts", TS({"N30 G0 X10 Y10 Z1", "N40 G2 X10 Y10 R5"}), 5, "does not define a valid arc");
    Fault("R arc after a line to the same point", TS({"N30 G1 X1 F9", "N35 G1 X10", "N40 G3 R5"}), 6,
          "does not define a valid arc");

    // --- Faults the trap takes.
    Trap("S on the very first N line", {"N10 S1000"}, "strHeaderFromCommands", 9);
    Trap("R arc as the very first entry", {"N10 G2 X10 Y10 R5", "N20 T1", "N30 S1000"}, "strHeaderFromCommands", 9);
    Trap("a value beyond the float range", TS({"N30 G1 X1" + QString(40, u'0')}), "sngGetVal", 6);
    return v;
}

} // namespace

TEST(Reader, EveryMessageAndQuirk)
{
    ReaderHarness h;
    int n = 0;
    for (const Case &c : Cases()) {
        SCOPED_TRACE(c.name.toStdString());
        h.corrections.clear();
        gblnWoodworker = c.woodworker;
        const QString file = h.write(QStringLiteral("case%1.brx").arg(++n), c.bytes);
        if (c.trapProcedure) {
            EXPECT_EQ(TrapReport([&] { ReadCommands(file); }),
                      ExpectedTrap("modReader", c.trapProcedure, c.trapNumber, vb::faultDescription(c.trapNumber)));
            EXPECT_TRUE(h.corrections.empty());
            h.install();
            continue;
        }
        ReadCommands(file);
        if (c.error.isEmpty()) {
            EXPECT_EQ(gintReadResult, 0);
            if (!h.corrections.empty())
                ADD_FAILURE() << h.corrections[0].errorText.toStdString();
            if (c.check)
                c.check();
        } else {
            ASSERT_EQ(h.corrections.size(), 1u);
            EXPECT_EQ(h.corrections[0].errorText, c.error);
            EXPECT_EQ(h.corrections[0].faultyLine, c.marked);
            EXPECT_EQ(h.corrections[0].file, file);
            EXPECT_EQ(gintReadResult, 1);   // the window was cancelled
        }
    }
}
