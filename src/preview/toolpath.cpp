#include "preview/toolpath.h"

#include "core/vb.h"
#include "nc/ncxdump.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr uint8_t kToolRecord = 176;
constexpr uint8_t kFirstNonStepCode = 128;

int32_t HundredthsToSteps(int16_t hundredths)
{
    return static_cast<int32_t>(std::lround(hundredths * kPreviewStepsPerMm / 100.0));
}

// The two 16-bit values a first-move record carries in bytes 4..7.
std::array<int16_t, 2> FirstMoveValues(const StepRecordView &r)
{
    const auto a = static_cast<int16_t>(r.flags | ((r.timer & 0xFF) << 8));
    const auto b = static_cast<int16_t>((r.timer >> 8) | (r.code << 8));
    return {a, b};
}

// For each command (0-based), whether it moves at rapid: the G word of its text, or of the
// last command that had one (the language is modal). "G0" is rapid; G1, G2, G3 cut. A comment
// after "'" is no part of the command.
std::vector<bool> RapidCommands(const std::vector<AnalysedCommand> &commands)
{
    std::vector<bool> rapid(commands.size(), false);
    bool blnRapid = false;
    for (size_t i = 0; i < commands.size(); ++i) {
        const QByteArray &t = commands[i].text;
        for (qsizetype c = 0; c + 1 < t.size() && t[c] != '\''; ++c) {
            if (t[c] == 'G' && t[c + 1] >= '0' && t[c + 1] <= '4') {
                if (t[c + 1] != '4')   // a dwell moves nothing and leaves the motion as it was
                    blnRapid = t[c + 1] == '0';
                break;
            }
        }
        rapid[i] = blnRapid;
    }
    return rapid;
}

// --- The lead-in's time. The stream makes the lead-in at machining time with the line
// steppers: a Z move with its own symmetric ramp, then a straight X-Y move from rest to rest,
// both at the rapid speed, then the X and Y play taken up at 12 mm/min. A short lead-in spends
// most of its time on the ramps, so they are followed here step by step: the same table
// (rapid speed reached from rest in 0.4 s), the same diagonal slow-down and the same timer.

// Controller ticks of one step at these axis speeds (mm/min), as the encoder computes its timer.
double StepTicks(int axes, double speed)
{
    double m = speed;
    if (axes == 2)
        m /= 1.41421;
    else if (axes == 3)
        m /= 1.73205;
    if (m <= 0)
        m = 12.0;
    const double timer = std::max(65536.0 - std::nearbyint(768000.0 / m), 1536.0);
    return 65536.0 - timer;
}

struct Ramp {
    std::vector<double> speed;   // mm/min after k steps from rest, k = 1..n (index k - 1)
    double at(int k) const { return speed[static_cast<size_t>(std::clamp<int>(k, 1, static_cast<int>(speed.size())) - 1)]; }
};

Ramp RampFor(double rapid)
{
    Ramp r;
    const double a = rapid / 60 * 72 / 0.4;   // steps/s^2
    const int n = std::max(1, static_cast<int>(std::nearbyint(0.5 * a * 0.4 * 0.4)));
    for (int k = 1; k <= n; ++k)
        r.speed.push_back(a * std::sqrt(2.0 * k / a) * 60 / 72);
    return r;
}

// The step speeds of the Z move of `n` steps.
void ZRampSpeeds(int n, double rapid, const Ramp &ramp, std::vector<std::pair<int, double>> &out)
{
    int index = 0;
    double s = 0;
    for (int i = 1; i <= n; ++i) {
        if (i <= n / 2.0) {
            if (s < rapid)
                s = ramp.at(++index);
            else
                s = rapid;
        } else if (n - i < index) {
            s = ramp.at(index--);
        } else {
            s = rapid;
        }
        out.emplace_back(1, s);
    }
}

// The step speeds (and axes stepping) of a straight X-Y move from rest to rest.
void LineRampSpeeds(int32_t dx, int32_t dy, double rapid, const Ramp &ramp, std::vector<std::pair<int, double>> &out)
{
    const int32_t n = std::max(std::abs(dx), std::abs(dy));
    if (n == 0)
        return;
    const bool xLeads = std::abs(dx) >= std::abs(dy);
    const double minorSlope = xLeads ? static_cast<double>(dy) / n : static_cast<double>(dx) / n;
    int index = 0, b = 0;
    double c = 0;
    bool ramping = true;
    int64_t last = 0;
    for (int32_t i = 1; i <= n; ++i) {
        const auto pm = static_cast<int64_t>(std::nearbyint(minorSlope * i));
        if (ramping) {
            if (c < rapid) {
                c = ramp.at(++index);
                ++b;
            } else {
                c = rapid;
            }
            if (n - i <= b)
                ramping = false;
        } else {
            c = ramp.at(index--);
        }
        out.emplace_back(pm != last ? 2 : 1, c);
        last = pm;
    }
}

double LeadInTicks(const std::array<int32_t, 3> &from, const std::array<int32_t, 3> &to, double rapid,
                   const int16_t backlash[3])
{
    const Ramp ramp = RampFor(rapid);
    std::vector<std::pair<int, double>> steps;
    ZRampSpeeds(std::abs(to[2] - from[2]), rapid, ramp, steps);
    if (to[2] > from[2])
        for (int k = 0; k < backlash[2]; ++k)
            steps.emplace_back(1, rapid);   // the Z play taken up downward after a rise
    LineRampSpeeds(to[0] - from[0], to[1] - from[1], rapid, ramp, steps);
    // The play of an axis that last moved positive, at 12 mm/min, both axes together.
    const int px = to[0] > from[0] ? backlash[0] : 0, py = to[1] > from[1] ? backlash[1] : 0;
    for (int k = 0; k < std::max(px, py); ++k)
        steps.emplace_back((k < px) + (k < py), 12.0);
    if (steps.empty())
        return 0.0;
    // Each record carries the timer of the step before it; the first, that of no step (1536).
    double ticks = 65536.0 - 1536.0;
    for (size_t i = 0; i + 1 < steps.size(); ++i)
        ticks += StepTicks(steps[i].first, steps[i].second);
    return ticks;
}

bool Outside(int32_t x, int32_t y)
{
    static const auto kMaxX = static_cast<int32_t>(std::lround(kEnvelopeX * kPreviewStepsPerMm));
    static const auto kMaxY = static_cast<int32_t>(std::lround(kEnvelopeY * kPreviewStepsPerMm));
    return x < 0 || y < 0 || x > kMaxX || y > kMaxY;
}

} // namespace

void StepBox::add(int32_t x, int32_t y, int32_t z)
{
    if (empty) {
        min = max = {x, y, z};
        empty = false;
        return;
    }
    const int32_t p[3] = {x, y, z};
    for (int a = 0; a < 3; ++a) {
        min[a] = std::min(min[a], p[a]);
        max[a] = std::max(max[a], p[a]);
    }
}

Toolpath LoadToolpath(const QByteArray &bytes, const std::function<QString(int16_t)> &typeOf,
                      std::array<double, 3> leadFromMm)
{
    Toolpath path;
    const AnalysedFileView v = ParseAnalysedFile(bytes);
    if (!v.problems.isEmpty()) {
        path.error = QStringLiteral("not a complete analysed file (%1)").arg(v.problems.join(QStringLiteral("; ")));
        return path;
    }
    path.rapidSpeed = static_cast<float>(v.rapid / 100.0);
    for (const AnalysedTool &t : v.tools)
        path.tools.push_back({t.number, static_cast<float>(t.diameter / 100.0), typeOf ? typeOf(t.number) : QString()});
    for (const AnalysedCommand &c : v.commands)
        path.commandTexts.push_back(c.text);
    for (int a = 0; a < 3; ++a)
        path.leadFrom[static_cast<size_t>(a)] = static_cast<int32_t>(std::lround(leadFromMm[static_cast<size_t>(a)] * kPreviewStepsPerMm));

    const std::vector<bool> rapidOf = RapidCommands(v.commands);
    const auto commandValue = [&v](int32_t cmd) -> double {
        if (cmd < 1 || static_cast<size_t>(cmd) > v.commands.size())
            return 0.0;
        return v.commands[static_cast<size_t>(cmd) - 1].value / 1000.0;
    };

    std::array<int32_t, 3> pos = path.leadFrom;
    int16_t tool = -1;
    int toolRecords = 0;
    bool moveOpen = false;
    double ticks = 0.0;
    path.steps.reserve(v.records.size());
    for (size_t i = 0; i < v.records.size(); ++i) {
        const StepRecordView &r = v.records[i];
        // The stream ends at the first record of command 0: nothing after it reaches the machine.
        if (r.command == 0)
            break;
        if (r.command < 0) {
            // The first move: Z target, then (same negative number) X and Y targets.
            const auto z = FirstMoveValues(r);
            std::array<int16_t, 2> xy{0, 0};
            if (i + 1 < v.records.size() && v.records[i + 1].command == r.command)
                xy = FirstMoveValues(v.records[++i]);
            path.start = {HundredthsToSteps(xy[0]), HundredthsToSteps(xy[1]), HundredthsToSteps(z[0])};
            path.hasFirstMove = true;
            path.firstMoveCommand = -r.command;
            pos = path.start;
            path.extent.add(pos[0], pos[1], pos[2]);
            ++path.rapidMoves;
            if (Outside(pos[0], pos[1]))
                ++path.outsideMoves;
            moveOpen = false;
            continue;
        }
        if (r.code >= kFirstNonStepCode) {
            // Never sent: a tool or speed record ends the frame and the move.
            if (r.code == kToolRecord) {
                const auto number = static_cast<int16_t>(std::lround(commandValue(r.command)));
                if (++toolRecords > 1)
                    ++path.toolChanges;
                tool = -1;
                for (size_t t = 0; t < path.tools.size(); ++t)
                    if (path.tools[t].number == number)
                        tool = static_cast<int16_t>(t);
            }
            moveOpen = false;
            continue;
        }
        // Sent to the controller: it runs (65536 - timer) ticks, a step or not.
        ticks += 65536.0 - r.timer;
        if (!moveOpen || path.moves.back().command != r.command) {
            PreviewMove m;
            m.firstStep = static_cast<uint32_t>(path.steps.size());
            m.command = r.command;
            m.tool = tool;
            m.rapid = static_cast<size_t>(r.command) <= rapidOf.size() && rapidOf[static_cast<size_t>(r.command) - 1];
            path.moves.push_back(m);
            moveOpen = true;
        }
        PreviewMove &m = path.moves.back();
        pos[0] += r.dx();
        pos[1] += r.dy();
        pos[2] += r.dz();
        path.extent.add(pos[0], pos[1], pos[2]);
        if (!m.outside && Outside(pos[0], pos[1]))
            m.outside = true;
        path.steps.push_back(static_cast<uint8_t>(r.flags & 0xFC));
        ++m.stepCount;
    }
    path.stepSeconds = ticks / kControllerHz;
    for (const PreviewMove &m : path.moves) {
        if (m.stepCount == 0)
            continue;
        ++(m.rapid ? path.rapidMoves : path.cutMoves);
        if (m.outside)
            ++path.outsideMoves;
    }
    if (path.hasFirstMove && path.rapidSpeed > 0)
        path.leadInSeconds = LeadInTicks(path.leadFrom, path.start, path.rapidSpeed, v.backlash) / kControllerHz;
    return path;
}

Toolpath LoadToolpathFile(const QString &strFile, const std::function<QString(int16_t)> &typeOf,
                          std::array<double, 3> leadFromMm)
{
    QFile f(strFile);
    if (!f.open(QIODevice::ReadOnly)) {
        Toolpath path;
        path.error = strFile + QStringLiteral(": ") + f.errorString();
        return path;
    }
    Toolpath path = LoadToolpath(f.readAll(), typeOf, leadFromMm);
    if (!path.error.isEmpty())
        path.error = strFile + QStringLiteral(": ") + path.error;
    return path;
}

void ReadBilletFromHeader(Toolpath &path, const QString &strFile)
{
    QStringList candidates{strFile};
    if (strFile.endsWith(QStringLiteral("ncx"), Qt::CaseInsensitive)) {
        const QString base = strFile.left(strFile.size() - 3);
        candidates = {base + QStringLiteral("brx"), base + QStringLiteral("cnc"), base + QStringLiteral("BRX"),
                      base + QStringLiteral("CNC")};
    }
    for (const QString &candidate : candidates) {
        QFile f(candidate);
        if (!f.open(QIODevice::ReadOnly))
            continue;
        // As the reader takes the billet from the header: a "*" line holding "BILLET" and a
        // digit; the number from that digit on; LENGTH, else WIDTH, else DEPTH; the last wins.
        while (!f.atEnd()) {
            const QString line = QString::fromLatin1(f.readLine()).trimmed();
            if (!line.startsWith(u'*'))
                continue;
            const QString upper = line.toUpper();
            if (!upper.contains(QStringLiteral("BILLET")))
                continue;
            qsizetype at = 0;
            while (at < line.size() && !line.at(at).isDigit())
                ++at;
            if (at == line.size())
                continue;
            const auto value = static_cast<float>(vb::Val(line.mid(at)));
            if (upper.contains(QStringLiteral("LENGTH")))
                path.billetLength = value;
            else if (upper.contains(QStringLiteral("WIDTH")))
                path.billetWidth = value;
            else if (upper.contains(QStringLiteral("DEPTH")))
                path.billetDepth = value;
        }
        return;
    }
}

QString strPreviewTime(double seconds)
{
    const auto s = static_cast<int64_t>(std::llround(seconds));
    return QStringLiteral("%1:%2:%3")
        .arg(s / 3600)
        .arg(s / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(s % 60, 2, 10, QLatin1Char('0'));
}

QString strPreviewTimeLine(const Toolpath &path)
{
    return QStringLiteral("Machining time: %1 (%2 s; lead-in from the origin at rapid speed included, "
                          "tool-change pauses excluded)")
        .arg(strPreviewTime(path.seconds()), QString::number(path.seconds(), 'f', 1));
}

QString strPreviewExtentLine(const Toolpath &path)
{
    if (path.extent.empty)
        return QStringLiteral("Extent: no movement");
    const auto axis = [&path](int a, char name) {
        const double lo = path.extent.min[static_cast<size_t>(a)] / kPreviewStepsPerMm;
        const double hi = path.extent.max[static_cast<size_t>(a)] / kPreviewStepsPerMm;
        return QStringLiteral("%1 %2 to %3 (%4 mm)")
            .arg(QLatin1Char(name))
            .arg(vb::Format000(lo), vb::Format000(hi), vb::Format000(hi - lo));
    };
    return QStringLiteral("Extent: ") + axis(0, 'X') + QStringLiteral(", ") + axis(1, 'Y') + QStringLiteral(", ") +
           axis(2, 'Z');
}
