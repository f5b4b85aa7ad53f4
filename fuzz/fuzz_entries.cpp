// The fuzz targets' entry points: see fuzz_entries.h. Every entry starts from the same state
// (settings, tool table, reader and compiler state), so that an input behaves the same
// whether libFuzzer runs it after a million others or the regression runner runs it alone.
#include "fuzz/fuzz_entries.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/linestep.h"
#include "nc/ncxdump.h"
#include "nc/reader.h"
#include "nc/stepcode.h"
#include "platform/controller_emulator.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

// The program whose analysed file the analysed-file target checks: a tool, a speed, the
// first move, a plunge, a line and an arc, so that every kind of record is in the seed.
const QByteArray kProgram = "%\r\n"
                            "* Billet length 50\r\n"
                            "N10 T1\r\n"
                            "N20 S1000\r\n"
                            "N30 G0 X1 Y1 Z1\r\n"
                            "N40 G1 Z-0.5 F100\r\n"
                            "N50 G1 X3 Y2 F200\r\n"
                            "N60 G2 X5 Y2 I1 J0\r\n"
                            "N70 G0 Z2\r\n";

std::unique_ptr<QTemporaryDir> g_dir;
QString g_ncPath;      // the NC file of the reader target (rewritten each input)
QString g_partPath;    // the fixed program of the analysed-file target
QString g_ncxPath;     // its analysed file (rewritten each input)
QByteArray g_header;   // digest, rapid speed and backlash of a good analysed file

[[noreturn]] void Finding(const char *what)
{
    std::fprintf(stderr, "fuzz finding: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

void WriteBytes(const QString &path, const char *data, qsizetype size)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(data, size) != size)
        Finding("cannot write the scratch file");
}

// Settings, tools and every piece of reader and compiler state as a fresh start has them:
// rapid 500 mm/min, no backlash, analysed files kept; tool 1 (3 mm) and tool 2 (6 mm, offset
// 1.25 mm).
void FreshState()
{
    FileCloseAll();
    ResetSharedState();
    ResetReader();
    ResetStepState();
    ResetLineState();
    gtypCommands.Erase();
    glngCommandCount = 0;
    gintUsedTools.Erase();
    gintUsedToolCount = 0;
    gstrAnalysedFile.clear();
    gstrDigest.clear();
    gsngRapidSpeed = 500.0f;
    gblnKeepFiles = true;
    gblnAnalysedToTemp = false;
    gblnWoodworker = false;
    gblnCancel = false;
    CreateAccelProfile(0.4f);
    gtypTools.Erase();
    gintToolCount = 0;
    const struct { int16_t number; float diameter, offset; } tools[] = {{1, 3.0f, 0.0f}, {2, 6.0f, 1.25f}};
    for (const auto &t : tools) {
        ToolData d;
        d.intNumber = t.number;
        d.strType = QStringLiteral("End mill");
        d.sngDiameter = t.diameter;
        d.sngOffset = t.offset;
        gtypTools.Append(d);
        ++gintToolCount;
    }
}

void InstallHooks()
{
    ResetUiHooks();
    uiHooks().messageBox = [](const QString &, int32_t, const QString &) -> int16_t { return 1; };
    uiHooks().correctFile = [](const QString &, const QString &, const QString &) { return QStringLiteral("Cancel"); };
    uiHooks().pageTurnStart = [](const QString &) {};
    uiHooks().pageTurnStop = [] {};
    uiHooks().progress = [](int16_t) {};
    uiHooks().endProcess = [](int) { throw TrapEnded(); };
}

} // namespace

void FuzzSetUp()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    static int argc = 1;
    static char name[] = "brantok-fuzz";
    static char *argv[] = {name, nullptr};
    new QCoreApplication(argc, argv);   // lives to the end of the process
    // Scratch files in memory where the system offers it: the targets write one per input.
    const QString base = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    g_dir = std::make_unique<QTemporaryDir>(base + QStringLiteral("/brantok-fuzz-XXXXXX"));
    if (!g_dir->isValid())
        Finding("no scratch folder");
    g_ncPath = g_dir->filePath(QStringLiteral("input.brx"));
    g_partPath = g_dir->filePath(QStringLiteral("part.brx"));
    g_ncxPath = g_dir->filePath(QStringLiteral("part.ncx"));
    WriteBytes(g_partPath, kProgram.constData(), kProgram.size());
    InstallHooks();
    FreshState();
    const QByteArray md5 = strDigestFile(g_partPath);
    g_header = md5 + strLongToLongString(50000) + QByteArray(6, '\0');
    // The scratch folder goes with the process, however libFuzzer ends it.
    std::atexit([] { g_dir.reset(); });
}

int FuzzNcReader(const uint8_t *data, size_t size)
{
    FuzzSetUp();
    FreshState();
    WriteBytes(g_ncPath, reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    gfnCompFileReason = strNoCompFileReason;
    try {
        strHeader(g_ncPath);   // the file chooser's quick look at the same bytes
        ReadCommands(g_ncPath);
    } catch (const TrapEnded &) {
        // The error trap's report: the program's answer to some faults, not a finding.
    }
    // A program that was read has a table the rest of the pipeline can index.
    if (gintReadResult == 0 && glngCommandCount > 0 && gtypCommands.upper() < glngCommandCount)
        Finding("the command count runs past the table");
    return 0;
}

int FuzzAnalysedFile(const uint8_t *data, size_t size)
{
    FuzzSetUp();
    FreshState();
    QByteArray file;
    if (size > 0) {
        const uint8_t mode = data[0];
        if (mode & 1)
            file = g_header;
        file.append(reinterpret_cast<const char *>(data + 1), static_cast<qsizetype>(size - 1));
        if (mode & 2)
            file += strLongToLongString(static_cast<int32_t>(file.size() + 4));
    }
    WriteBytes(g_ncxPath, file.constData(), file.size());
    gstrNCFile = g_partPath;
    QString reason;
    try {
        reason = strCompFileReason();
    } catch (const TrapEnded &) {
        Finding("the analysed-file check ended in the error trap");
    }
    // What the check trusts goes straight to the machine: it must be whole.
    if (gblnAnalysedValid && !ParseAnalysedFile(file).problems.isEmpty())
        Finding("the check accepted a file that does not parse cleanly");
    if (!gblnAnalysedValid && reason.isEmpty())
        Finding("a file refused without a reason");
    if (strDumpAnalysedFile(file, QStringLiteral("part.ncx")).isEmpty())
        Finding("an empty dump");
    return 0;
}

// Operations, one byte each, some followed by their bytes:
//   0xxxxxxx   the next (x & 63) + 1 bytes go on the line at the current time
//   100ttttt   time moves on t x 7 ms
//   1010000d   the door opens (d = 1) or closes
//   1100000r   RTS low (r = 0) or high
//   111ooooo   faults: the spindle trips, lose o & 3 replies, delay the next by o ms, DSR
int FuzzControllerFrames(const uint8_t *data, size_t size)
{
    ControllerEmulator c;
    c.enableWithoutAnswer();
    int64_t now = 0;
    int64_t lastNow = 0;
    const auto check = [&c, &lastNow] {
        if (c.framesHeld() > 2)
            Finding("the controller holds more than two frames");
        if (c.now() < lastNow)
            Finding("the controller's time went back");
        lastNow = c.now();
        for (char ch : c.takeOutput())
            if (!QByteArray("ADFGOSP").contains(ch))
                Finding("the controller sent a character of no meaning");
    };
    size_t i = 0;
    while (i < size) {
        const uint8_t op = data[i++];
        if (op < 0x80) {
            const size_t n = std::min<size_t>((op & 63u) + 1, size - i);
            c.receive(QByteArray(reinterpret_cast<const char *>(data + i), static_cast<qsizetype>(n)), now);
            i += n;
        } else if ((op & 0xE0) == 0x80) {
            now += static_cast<int64_t>(op & 31u) * 7'000'000;
            c.advanceTo(now);
        } else if ((op & 0xE0) == 0xA0) {
            (op & 1) ? c.openDoor() : c.closeDoor();
        } else if ((op & 0xE0) == 0xC0) {
            c.setRts(op & 1, now);
        } else {
            switch (op & 3u) {
            case 0: c.stopSpindleByItself(); break;
            case 1: c.loseReplies((op >> 2) & 3); break;
            case 2: c.delayNextReply(static_cast<int64_t>((op >> 2) & 7) * 1'000'000); break;
            default: c.setDsr((op >> 2) & 1); break;
            }
        }
        check();
    }
    // Everything that was taken runs out within a minute of the last byte.
    now += 60'000'000'000;
    c.advanceTo(now);
    check();
    if (c.nextEventNs() && *c.nextEventNs() < c.now())
        Finding("an event is due in the past");
    return 0;
}

QByteArray FuzzAnalysedSeed()
{
    FuzzSetUp();
    FreshState();
    QFile::remove(g_ncxPath);
    gfnCompFileReason = &strCompFileReason;
    ReadCommands(g_partPath);
    EvaluateCommands();
    QFile f(g_ncxPath);
    if (!f.open(QIODevice::ReadOnly))
        Finding("the seed program did not compile");
    QByteArray bytes = f.readAll();
    // In the entry's form: mode 3, without the header and trailer the entry puts back.
    return QByteArray(1, '\3') + bytes.mid(g_header.size(), bytes.size() - g_header.size() - 4);
}
