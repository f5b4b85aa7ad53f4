// What the benchmarks that run against the emulator program share: starting it on a
// pseudo-terminal, bringing the link up on it through the real QSerialPort, and reading its
// counters ("status" on its standard input answers "pos N dry N late_max_us N ...").
#pragma once

#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/frm_skull.h"
#include "link/link_screen.h"
#include "platform/qt_serial_port.h"

#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

inline long long StatusValue(QProcess &p, const char *key)
{
    p.write("status\n");
    p.waitForBytesWritten(1000);
    QByteArray line;
    while (!line.endsWith('\n') && p.waitForReadyRead(2000))
        line += p.readLine();
    const QList<QByteArray> words = line.trimmed().split(' ');
    for (int i = 0; i + 1 < words.size(); ++i)
        if (words[i] == key)
            return words[i + 1].toLongLong();
    return -1;
}

// Starts the emulator program on a pseudo-terminal and points COM1 and the store (in `dir`)
// at it. False, with the benchmark skipped, when the program did not start.
inline bool StartEmulator(QProcess &emu, const QTemporaryDir &dir, benchmark::State &state)
{
    emu.setProgram(QStringLiteral(BRANTOK_BINARY_DIR "/brantok-emulator"));
    emu.start();
    if (!emu.waitForStarted(5000) || !emu.waitForReadyRead(5000)) {
        state.SkipWithError("brantok-emulator did not start");
        return false;
    }
    const QByteArray path = emu.readLine().trimmed();
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/Brantok.conf")).toLocal8Bit());
    qputenv("BRANTOK_COM1", path);
    qputenv("BRANTOK_ASSUME_DSR", "1");
    return true;
}

// Brings the link up online on COM1 through the real serial port code. An alarm goes
// offline. False, with the benchmark skipped, when the link did not come up.
inline bool LinkUp(benchmark::State &state)
{
    InstallSerialDevices();
    linkHooks().showSkull = [] { frmSkull.chkOffline = true; frmSkull_cmdOk_Click(); };
    RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
    gblnOnline = true;
    SetupComms();
    if (!gblnOnline || !comSerial()) {
        state.SkipWithError("the link did not come up");
        return false;
    }
    return true;
}

} // namespace
