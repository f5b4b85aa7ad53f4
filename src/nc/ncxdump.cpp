#include "nc/ncxdump.h"

#include "nc/stepcode.h"

#include <QTextStream>

namespace {

// A reader over the file's bytes that reads zeros past the end and notes that it did.
class ByteReader {
public:
    explicit ByteReader(const QByteArray &b, qsizetype end) : m_b(b), m_end(end) {}
    uint8_t byte()
    {
        if (m_pos >= m_end) {
            m_short = true;
            ++m_pos;
            return 0;
        }
        return static_cast<uint8_t>(m_b[m_pos++]);
    }
    int16_t i16()
    {
        const uint16_t lo = byte(), hi = byte();
        return static_cast<int16_t>(lo | (hi << 8));
    }
    int32_t i32()
    {
        uint32_t u = 0;
        for (int i = 0; i < 4; ++i)
            u |= static_cast<uint32_t>(byte()) << (8 * i);
        return static_cast<int32_t>(u);
    }
    QByteArray bytes(qsizetype n)
    {
        QByteArray out;
        for (qsizetype i = 0; i < n; ++i)
            out.append(static_cast<char>(byte()));
        return out;
    }
    qsizetype pos() const { return m_pos; }
    bool ranShort() const { return m_short; }

private:
    const QByteArray &m_b;
    qsizetype m_end;
    qsizetype m_pos = 0;
    bool m_short = false;
};

StepRecordView recordAt(const char *p)
{
    StepRecordView r;
    uint32_t u = 0;
    for (int i = 0; i < 4; ++i)
        u |= static_cast<uint32_t>(static_cast<uint8_t>(p[i])) << (8 * i);
    r.command = static_cast<int32_t>(u);
    r.flags = static_cast<uint8_t>(p[4]);
    r.timer = static_cast<uint16_t>(static_cast<uint8_t>(p[5]) | (static_cast<uint8_t>(p[6]) << 8));
    r.code = static_cast<uint8_t>(p[7]);
    return r;
}

QString hundredths(int v) { return QString::number(v / 100.0, 'f', 2); }

char dirChar(int d) { return d > 0 ? '+' : (d < 0 ? '-' : '.'); }

} // namespace

std::vector<StepRecordView> ParseStepRecords(const QByteArray &bytes)
{
    std::vector<StepRecordView> out;
    out.reserve(static_cast<size_t>(bytes.size() / 8));
    for (qsizetype at = 0; at + 8 <= bytes.size(); at += 8)
        out.push_back(recordAt(bytes.constData() + at));
    return out;
}

AnalysedFileView ParseAnalysedFile(const QByteArray &bytes)
{
    AnalysedFileView v;
    v.length = bytes.size();
    qsizetype end = bytes.size();
    if (bytes.size() >= 4) {
        ByteReader t(bytes, bytes.size());
        t.bytes(bytes.size() - 4);
        v.trailer = t.i32();
        v.trailerValid = v.trailer == bytes.size();
    }
    if (v.trailerValid)
        end -= 4;
    else
        v.problems << QStringLiteral("no valid trailer: the file is incomplete or damaged");

    ByteReader r(bytes, end);
    v.digest = r.bytes(16);
    v.rapid = r.i32();
    for (int16_t &b : v.backlash)
        b = r.i16();
    const int16_t toolCount = r.i16();
    for (int i = 0; i < toolCount && !r.ranShort(); ++i) {
        AnalysedTool t;
        t.number = r.i16();
        t.diameter = r.i16();
        t.offset = r.i16();
        v.tools.push_back(t);
    }
    const int32_t commandCount = r.i32();
    for (int32_t i = 0; i < commandCount && !r.ranShort(); ++i) {
        AnalysedCommand c;
        const int16_t len = r.i16();
        c.text = r.bytes(len < 0 ? 0 : len);
        c.value = r.i32();
        v.commands.push_back(c);
    }
    if (r.ranShort()) {
        v.problems << QStringLiteral("the header or the command table runs past the end");
        return v;
    }
    const qsizetype steps = end - r.pos();
    v.records = ParseStepRecords(bytes.mid(r.pos(), steps));
    if (steps % 8 != 0)
        v.problems << QStringLiteral("%1 bytes after the last whole record").arg(steps % 8);
    return v;
}

QString strDumpAnalysedFile(const QByteArray &bytes, const QString &name)
{
    const AnalysedFileView v = ParseAnalysedFile(bytes);
    QString out;
    QTextStream s(&out);
    s << "analysed file: " << name << "\n";
    s << "length: " << v.length << " bytes\n";
    s << "digest: " << v.digest.toHex() << "\n";
    s << "rapid speed: " << hundredths(v.rapid) << " mm/min\n";
    s << "backlash: X " << v.backlash[0] << "  Y " << v.backlash[1] << "  Z " << v.backlash[2] << " steps\n";
    s << "tools: " << v.tools.size() << "\n";
    for (const AnalysedTool &t : v.tools)
        s << "  T" << t.number << "  diameter " << hundredths(t.diameter) << " mm  offset " << hundredths(t.offset)
          << " mm\n";
    s << "commands: " << v.commands.size() << "\n";
    for (size_t i = 0; i < v.commands.size(); ++i)
        s << QStringLiteral("  %1  value %2  ").arg(i + 1, 5).arg(v.commands[i].value / 1000.0, 10, 'f', 3)
          << QString::fromLatin1(v.commands[i].text) << "\n";

    // One line per record: command, X Y Z directions, timer, code, and what it is.
    s << "records: " << v.records.size() << "\n";
    s << "      cmd XYZ  timer code\n";
    int64_t net[3] = {0, 0, 0};
    int64_t steps = 0;
    for (size_t i = 0; i < v.records.size(); ++i) {
        const StepRecordView &r = v.records[i];
        if (r.command < 0) {
            // First-move records: the second holds X and Y, the first Z.
            const bool second = i > 0 && v.records[i - 1].command == r.command;
            const int16_t a = static_cast<int16_t>(r.flags | (r.timer & 0xFF) << 8);
            const int16_t b = static_cast<int16_t>((r.timer >> 8) | (r.code << 8));
            s << QStringLiteral("%1 first move ").arg(r.command, 9);
            if (second)
                s << "X " << hundredths(a) << " Y " << hundredths(b) << "\n";
            else
                s << "Z " << hundredths(a) << (b != 0 ? QStringLiteral(" (second field %1)").arg(b) : QString())
                  << "\n";
            continue;
        }
        s << QStringLiteral("%1 ").arg(r.command, 9) << dirChar(r.dx()) << dirChar(r.dy()) << dirChar(r.dz())
          << QStringLiteral(" %1 %2").arg(r.timer, 6).arg(r.code, 4);
        const auto value = [&](int32_t cmd) -> QString {
            if (cmd >= 1 && static_cast<size_t>(cmd) <= v.commands.size())
                return QString::number(v.commands[static_cast<size_t>(cmd) - 1].value / 1000.0);
            return QStringLiteral("?");
        };
        if (r.isNonStep()) {
            if (r.code == kCodeSpeed)
                s << "  speed " << value(r.command);
            else if (r.code == kCodeTool)
                s << "  tool " << value(r.command);
            else if (r.code >= 128)
                s << "  stop";
            else if (i + 1 == v.records.size())
                s << "  end";
            else if (r.command == 0)
                s << "  marker";
            else
                s << "  stop";
        } else {
            if (r.code & 1)
                s << "  rapid";
            const int cx = (r.code >> 1) % 4 - 1, cy = (r.code >> 3) % 4 - 1, cz = (r.code >> 5) % 4 - 1;
            if (r.code >= 128 || cx != r.dx() || cy != r.dy() || cz != r.dz())
                s << "  (code disagrees with flags)";
            net[0] += r.dx();
            net[1] += r.dy();
            net[2] += r.dz();
            ++steps;
        }
        s << "\n";
    }
    s << "steps: " << steps << ", net X " << net[0] << " Y " << net[1] << " Z " << net[2] << "\n";
    s << "trailer: " << v.trailer << (v.trailerValid ? " (= length)" : " (does not match the length)") << "\n";
    for (const QString &p : v.problems)
        s << "problem: " << p << "\n";
    return out;
}
