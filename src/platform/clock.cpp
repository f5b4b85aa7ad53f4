#include "platform/clock.h"

void FakeClock::advanceNs(int64_t ns)
{
    if (ns <= 0)
        return;
    m_now += ns;
    // A listener may remove itself while it runs: walk a copy.
    auto listeners = m_listeners;
    for (auto &l : listeners)
        l.second(m_now);
}

int FakeClock::addListener(std::function<void(int64_t)> fn)
{
    m_listeners.emplace_back(m_nextId, std::move(fn));
    return m_nextId++;
}

void FakeClock::removeListener(int id)
{
    std::erase_if(m_listeners, [id](const auto &l) { return l.first == id; });
}

namespace {
Clock *g_clock = nullptr;
}

Clock &appClock()
{
    static RealClock real;
    return g_clock ? *g_clock : real;
}

void SetClock(Clock *c) { g_clock = c; }
