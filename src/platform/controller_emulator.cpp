#include "platform/controller_emulator.h"

#include <algorithm>

namespace {

constexpr uint8_t kSpindleMask = 3;   // command bits 0 and 1 both set: a spindle record
constexpr uint8_t kSpindleOnBit = 16;

// Step records in `records` from record index `from` on.
int64_t stepRecordsIn(const QByteArray &records, int from)
{
    int64_t n = 0;
    for (int i = from * 3; i + 2 < records.size(); i += 3) {
        auto cmd = static_cast<uint8_t>(records[i]);
        if ((cmd & kSpindleMask) == 0 && (cmd & 0x1C) != 0)
            ++n;
    }
    return n;
}

} // namespace

ControllerEmulator::ControllerEmulator() = default;

void ControllerEmulator::receive(const QByteArray &bytes, int64_t atNs)
{
    advanceTo(atNs);
    for (char b : bytes) {
        int64_t t = std::max(m_now, m_wireInFree) + kByteNs;
        m_wireInFree = t;
        m_wireIn.emplace_back(t, b);
    }
}

void ControllerEmulator::setRts(bool high, int64_t atNs)
{
    advanceTo(atNs);
    if (!high && m_rts) {
        // Held in reset: everything in hand is forgotten, the spindle stops, nothing answers.
        m_rts = false;
        if (m_running)
            m_droppedSteps += stepRecordsIn(m_running->records, m_running->next);
        if (m_waiting)
            m_droppedSteps += stepRecordsIn(m_waiting->records, 0);
        m_running.reset();
        m_waiting.reset();
        m_idleSince.reset();
        m_assembling.clear();
        m_wireIn.clear();
        m_spindleOn = false;
        m_bootAt.reset();
    } else if (high && !m_rts) {
        m_rts = true;
        m_bootAt = m_now + kBootNs;
        ++m_resets;
        m_stepRecords = 0;
    }
}

void ControllerEmulator::enableWithoutAnswer()
{
    m_rts = true;
    m_bootAt.reset();
}

std::optional<int64_t> ControllerEmulator::nextEventNs() const
{
    std::optional<int64_t> t;
    auto consider = [&t](int64_t v) {
        if (!t || v < *t)
            t = v;
    };
    if (!m_wireIn.empty())
        consider(m_wireIn.front().first);
    if (m_running && m_rts && !m_bootAt)
        consider(m_recordEnd);
    if (m_bootAt)
        consider(*m_bootAt);
    if (!m_wireOut.empty())
        consider(m_wireOut.front().first);
    return t;
}

void ControllerEmulator::advanceTo(int64_t nowNs)
{
    for (;;) {
        // The earliest event due by `nowNs`. On a tie a byte comes first (a frame that
        // arrives just in time is no dry run), then the boot, then the end of a record.
        enum { None, Byte, Boot, Record } kind = None;
        int64_t t = 0;
        auto consider = [&](bool due, int64_t at, decltype(kind) k) {
            if (due && at <= nowNs && (kind == None || at < t)) {
                kind = k;
                t = at;
            }
        };
        consider(!m_wireIn.empty(), m_wireIn.empty() ? 0 : m_wireIn.front().first, Byte);
        consider(m_bootAt.has_value(), m_bootAt.value_or(0), Boot);
        consider(m_running && m_rts && !m_bootAt, m_recordEnd, Record);
        if (kind == None)
            break;
        m_now = std::max(m_now, t);
        switch (kind) {
        case Byte: {
            char b = m_wireIn.front().second;
            m_wireIn.pop_front();
            acceptByte(b, m_now);
            break;
        }
        case Boot:
            m_bootAt.reset();
            if (!m_silentAfterReset)
                send(m_doorOpen ? 'F' : 'G', m_now);
            break;
        case Record:
            if (m_running->next * 3 < m_running->records.size())
                startRecord(m_now);
            else
                finishFrame(m_now);
            break;
        case None:
            break;
        }
    }
    m_now = std::max(m_now, nowNs);
    while (!m_wireOut.empty() && m_wireOut.front().first <= m_now) {
        m_delivered.append(m_wireOut.front().second);
        m_wireOut.pop_front();
    }
}

QByteArray ControllerEmulator::takeOutput()
{
    QByteArray out;
    out.swap(m_delivered);
    return out;
}

void ControllerEmulator::acceptByte(char byte, int64_t at)
{
    if (!m_rts || m_bootAt)
        return;   // held in reset or still booting: the byte is lost
    if (m_assembling.isEmpty()) {
        auto len = static_cast<uint8_t>(byte);
        if (len < 4 || len > 49 || (len - 1) % 3 != 0) {
            ++m_badLength;   // not a frame start: drop it and look at the next byte
            return;
        }
    }
    m_assembling.append(byte);
    if (m_assembling.size() == static_cast<uint8_t>(m_assembling[0])) {
        Frame f;
        f.records = m_assembling.mid(1);
        m_assembling.clear();
        acceptFrame(std::move(f), at);
    }
}

void ControllerEmulator::acceptFrame(Frame f, int64_t at)
{
    ++m_framesReceived;
    if (!m_running) {
        m_running = std::move(f);
        if (m_idleSince) {
            m_idleNs += at - *m_idleSince;
            m_idleSince.reset();
        }
        startRecord(at);
    } else if (!m_waiting) {
        m_waiting = std::move(f);
    } else {
        ++m_overflows;   // no place for it: lost, and never answered
    }
    noteHeld();
}

void ControllerEmulator::noteHeld() { m_maxHeld = std::max(m_maxHeld, framesHeld()); }

void ControllerEmulator::startRecord(int64_t at)
{
    const char *r = m_running->records.constData() + m_running->next * 3;
    auto cmd = static_cast<uint8_t>(r[0]);
    int64_t timer = static_cast<uint8_t>(r[1]) | (static_cast<uint8_t>(r[2]) << 8);
    int64_t ticks = 65536 - timer;
    ++m_running->next;
    m_recordEnd = at + ticks * 1'000'000'000 / kTimerHz;

    if ((cmd & kSpindleMask) != kSpindleMask)
        m_motionNs += m_recordEnd - at;
    if ((cmd & kSpindleMask) == kSpindleMask) {
        ++m_spindleRecords;
        if (cmd & kSpindleOnBit) {
            if (m_doorOpen)
                ++m_spindleRefused;
            else
                m_spindleOn = true;
        } else {
            m_spindleOn = false;
        }
    } else if ((cmd & kSpindleMask) == 0 && (cmd & 0x1C) != 0) {
        for (int axis = 0; axis < 3; ++axis) {
            if (cmd & (4 << axis))
                m_pos[axis] += (cmd & (32 << axis)) ? 1 : -1;
        }
        ++m_stepRecords;
        if (m_stepRecords == m_openDoorAtStep)
            openDoor();
        if (m_stepRecords == m_closeDoorAtStep)
            closeDoor();
    }
    // Command 0 (or 1, 2): a delay, nothing moves.
}

void ControllerEmulator::finishFrame(int64_t at)
{
    ++m_framesRun;
    m_running.reset();
    reply('A', at);   // its place is free: the PC may send the next frame
    if (m_waiting) {
        m_running = std::move(m_waiting);
        m_waiting.reset();
        startRecord(at);
    } else {
        ++m_dryRuns;
        m_idleSince = at;
    }
}

void ControllerEmulator::interruptMotion(int64_t at)
{
    if (!m_running)
        return;
    m_droppedSteps += stepRecordsIn(m_running->records, m_running->next);
    m_running.reset();
    reply('D', at);
    if (m_waiting) {
        m_droppedSteps += stepRecordsIn(m_waiting->records, 0);
        m_waiting.reset();
        reply('D', at);
    }
    m_idleSince.reset();
}

void ControllerEmulator::reply(char c, int64_t at)
{
    if (m_loseReplies > 0) {
        --m_loseReplies;
        return;
    }
    int64_t t = at + m_delayNextReplyNs;
    m_delayNextReplyNs = 0;
    send(c, t);
}

void ControllerEmulator::send(char c, int64_t at)
{
    // One wire: a late character holds back those after it.
    int64_t t = std::max(at, m_wireOutFree) + kByteNs;
    m_wireOutFree = t;
    m_wireOut.emplace_back(t, c);
}

void ControllerEmulator::openDoor()
{
    if (m_doorOpen)
        return;
    m_doorOpen = true;
    bool talking = m_rts && !m_bootAt;
    if (talking)
        send('O', m_now);
    m_spindleOn = false;
    if (talking)
        interruptMotion(m_now);
}

void ControllerEmulator::closeDoor()
{
    if (!m_doorOpen)
        return;
    m_doorOpen = false;
    if (m_rts && !m_bootAt)
        send('S', m_now);
}

void ControllerEmulator::stopSpindleByItself()
{
    if (!m_spindleOn)
        return;
    m_spindleOn = false;
    if (m_rts && !m_bootAt)
        send('P', m_now);
}

void ControllerEmulator::setDsr(bool present) { m_dsr = present; }
