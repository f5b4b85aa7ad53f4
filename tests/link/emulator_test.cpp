// The controller emulator on its own: timing, the two places, reset and door; Com names.
// (Its spindle and door records are seen through the link in the link's tests.)
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
    const int timer = 65536 - 1097;   // 700 mm/min
    // The frame's ten bytes arrive, its three records run, then the reply's byte goes out.
    const int64_t replied =
        c.now() + 11 * ControllerEmulator::kByteNs + 3 * (1097 * 1'000'000'000LL / ControllerEmulator::kTimerHz);
    c.receive(Frame({{4 | 32, timer}, {8, timer}, {16 | 128, timer}}), c.now());
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

#include "platform/serial_port.h"

// BRANTOK_COMn names the device of Com n (else /dev/ttyS(n-1)), or the built-in emulator;
// only BRANTOK_ASSUME_DSR=1 lets a line without modem lines count as DSR present.
TEST(SerialDevice, ComNamesMapToDevicesOrTheEmulator)
{
    qunsetenv("BRANTOK_COM2");
    qputenv("BRANTOK_COM1", " /dev/pts/7 ");
    qputenv("BRANTOK_COM3", "emulator");
    qputenv("BRANTOK_ASSUME_DSR", "yes");
    EXPECT_EQ(ResolveSerialDevice(2).path, QStringLiteral("/dev/ttyS1"));
    EXPECT_EQ(ResolveSerialDevice(1).path, QStringLiteral("/dev/pts/7"));
    EXPECT_FALSE(ResolveSerialDevice(1).assumeDsr);
    EXPECT_TRUE(ResolveSerialDevice(3).emulator);
    EXPECT_TRUE(ResolveSerialDevice(3).path.isEmpty());
    EXPECT_FALSE(ResolveSerialDevice(2).emulator);
    qputenv("BRANTOK_ASSUME_DSR", "1");
    EXPECT_TRUE(ResolveSerialDevice(2).assumeDsr);
    for (const char *v : {"BRANTOK_COM1", "BRANTOK_COM3", "BRANTOK_ASSUME_DSR"})
        qunsetenv(v);
}
