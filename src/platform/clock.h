// The program's clock for waits and time-outs: monotonic, never steps back, no midnight.
//
// The link's waits (2 s for a reset answer, 10 s for a reply) read `appClock()`. The program
// uses the real one; tests put in a FakeClock that moves only when told, usually by one
// millisecond on every turn of the message loop (see SetPumpHook in core/hooks.h), so a
// 10-second time-out costs 10 000 loop turns and no wall time.
#pragma once

#include <QElapsedTimer>

#include <cstdint>
#include <functional>
#include <vector>

class Clock {
public:
    virtual ~Clock() = default;
    // Nanoseconds since an arbitrary start, monotonic.
    virtual int64_t nsecs() const = 0;
    int64_t msecs() const { return nsecs() / 1000000; }
    double seconds() const { return static_cast<double>(nsecs()) / 1e9; }
};

class RealClock : public Clock {
public:
    RealClock() { m_timer.start(); }
    int64_t nsecs() const override { return m_timer.nsecsElapsed(); }

private:
    QElapsedTimer m_timer;
};

// A clock that a test moves. Listeners hear every move (the in-process controller
// emulator runs up to the new time there).
class FakeClock : public Clock {
public:
    int64_t nsecs() const override { return m_now; }
    void advanceNs(int64_t ns);
    void advanceMs(int64_t ms) { advanceNs(ms * 1000000); }
    // Called after each move with the new time. Returns an id for removeListener.
    int addListener(std::function<void(int64_t nowNs)> fn);
    void removeListener(int id);

private:
    int64_t m_now = 0;
    int m_nextId = 1;
    std::vector<std::pair<int, std::function<void(int64_t)>>> m_listeners;
};

// The clock in force: the real one unless a test has set another.
Clock &appClock();
// nullptr puts the real clock back. The caller keeps ownership.
void SetClock(Clock *c);
