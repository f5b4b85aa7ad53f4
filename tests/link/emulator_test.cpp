// The controller emulator on its own: timing, the two places, reset, door, spindle, faults.
#include "platform/controller_emulator.h"

#include <gtest/gtest.h>

namespace {

constexpr int64_t kMs = 1'000'000;

QByteArray Frame(std::initializer_list<std::tuple<int, int>> records)   // (command, timer)
{
    QByteArray f;
    f.append(char(records.size() * 3 + 1));
    for (auto [cmd, timer] : records) {
        f.append(char(cmd));
        f.append(char(timer & 0xFF));
        f.append(char(timer >> 8));
    }
    return f;
}

ControllerEmulator Running()
{
    ControllerEmulator c;
    c.setRts(true, 0);
    c.advanceTo(ControllerEmulator::kBootNs + ControllerEmulator::kByteNs);
    EXPECT_EQ(c.takeOutput(), QByteArray("G"));
    return c;
}

} // namespace

TEST(Emulator, RecordsRunAtTheTimerRateAndTheReplyFollows)
{
    ControllerEmulator c = Running();
    const int64_t t0 = c.now();
    const int timer = 65536 - 1097;   // 700 mm/min
    c.receive(Frame({{4 | 32, timer}, {8, timer}, {16 | 128, timer}}), t0);
    const int64_t arrived = t0 + 10 * ControllerEmulator::kByteNs;
    const int64_t ran = arrived + 3 * (1097 * 1'000'000'000LL / ControllerEmulator::kTimerHz);
    const int64_t replied = ran + ControllerEmulator::kByteNs;
    c.advanceTo(replied - 1);
    EXPECT_EQ(c.takeOutput(), QByteArray());
    EXPECT_EQ(c.posX(), 1);
    EXPECT_EQ(c.posY(), -1);
    EXPECT_EQ(c.posZ(), 1);
    c.advanceTo(replied);
    EXPECT_EQ(c.takeOutput(), QByteArray("A"));
    EXPECT_EQ(c.dryRuns(), 1);
}

TEST(Emulator, HoldsOneFrameRunningAndOneWaiting)
{
    ControllerEmulator c = Running();
    const QByteArray f = Frame({{4 | 32, 0}, {4 | 32, 0}});   // 2 x 71 ms
    c.receive(f + f + f, c.now());
    c.advanceTo(c.now() + 10 * kMs);
    EXPECT_EQ(c.framesHeld(), 2);
    EXPECT_EQ(c.overflows(), 1);   // the third had no place: lost, never answered
    c.advanceTo(c.now() + 1000 * kMs);
    EXPECT_EQ(c.takeOutput(), QByteArray("AA"));
    EXPECT_EQ(c.posX(), 4);
}

TEST(Emulator, ResetIsAnsweredByTheDoorAndDropsWhatItHeld)
{
    ControllerEmulator c = Running();
    c.receive(Frame({{4, 0}, {4, 0}}), c.now());
    c.advanceTo(c.now() + 5 * kMs);
    c.setRts(false, c.now());
    c.receive(Frame({{4, 0}}), c.now());   // ignored while held in reset
    c.openDoor();                           // no "O" while held
    c.advanceTo(c.now() + 500 * kMs);
    EXPECT_EQ(c.takeOutput(), QByteArray());
    EXPECT_EQ(c.droppedSteps(), 1);
    c.setRts(true, c.now());
    c.advanceTo(c.now() + ControllerEmulator::kBootNs + kMs);
    EXPECT_EQ(c.takeOutput(), QByteArray("F"));
    EXPECT_EQ(c.resets(), 2);
}

// The spindle's own records are seen through the link in the spindle's tests.
TEST(Emulator, WithTheDoorOpenASpindleStartIsRefusedAndADelayMovesNothing)
{
    ControllerEmulator c = Running();
    c.openDoor();
    c.receive(Frame({{19, 0}}), c.now());
    c.receive(Frame({{0, 60000}}), c.now());     // a pure delay
    c.advanceTo(c.now() + 200 * kMs);
    EXPECT_EQ(c.spindleRefused(), 1);
    EXPECT_FALSE(c.spindleOn());
    EXPECT_EQ(c.posX(), 0);
    EXPECT_EQ(c.takeOutput(), QByteArray("OAA"));
}

#include "platform/serial_port.h"

TEST(SerialDevice, ComNamesMapToDevicesOrTheEmulator)
{
    struct Case {
        int16_t port;
        const char *env;        // BRANTOK_COMn, or null
        const char *assumeDsr;  // BRANTOK_ASSUME_DSR, or null
        const char *path;
        bool emulator;
        bool dsr;
    } cases[] = {
        {2, nullptr, "1", "/dev/ttyS1", false, true},
        {3, "emulator", nullptr, "", true, false},
        {1, " /dev/pts/7 ", "yes", "/dev/pts/7", false, false},   // only "1" switches it on
    };
    for (const Case &c : cases) {
        const QByteArray var = "BRANTOK_COM" + QByteArray::number(c.port);
        if (c.env)
            qputenv(var.constData(), c.env);
        else
            qunsetenv(var.constData());
        if (c.assumeDsr)
            qputenv("BRANTOK_ASSUME_DSR", c.assumeDsr);
        else
            qunsetenv("BRANTOK_ASSUME_DSR");
        SerialDevice d = ResolveSerialDevice(c.port);
        EXPECT_EQ(d.path, QString::fromLatin1(c.path)) << c.port;
        EXPECT_EQ(d.emulator, c.emulator) << c.port;
        EXPECT_EQ(d.assumeDsr, c.dsr) << c.port;
        qunsetenv(var.constData());
    }
    qunsetenv("BRANTOK_ASSUME_DSR");
}
