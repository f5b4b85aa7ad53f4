// brantok-emulator: the controller emulator on a pseudo-terminal, so that the program (or a
// test) can talk to it through a real serial port:
//
//     $ build/brantok-emulator
//     /dev/pts/7
//     $ BRANTOK_COM1=/dev/pts/7 BRANTOK_ASSUME_DSR=1 build/brantok
//
// It prints the path of the terminal's far end on the first line of its output and then
// runs until its input ends or says "quit". A pseudo-terminal has no modem lines: the
// controller runs as if RTS were high, DSR is what the PC assumes, and a flush of the line
// by the PC (what the program does for a reset on such a line) is taken as the reset.
//
// Commands on standard input, one a line (for tests, the benchmark and rehearsals):
//     status            one line: pos X Y Z, frames, held, overflows, dry, idle ms, ...
//     door open|close   the machine's door
//     spindle trip      the spindle stops by itself ("P")
//     lose N            the next N replies never come
//     delay MS          the next reply comes MS milliseconds late
//     silent on|off     no answer to a reset
//     door-at-step N    the door opens just after the N-th step record
//     quit
#include "platform/controller_emulator.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

int64_t monoNs()
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

void writeAll(int fd, const char *data, size_t n)
{
    while (n > 0) {
        ssize_t w = ::write(fd, data, n);
        if (w < 0) {
            if (errno == EINTR || errno == EAGAIN)
                continue;
            return;
        }
        data += w;
        n -= static_cast<size_t>(w);
    }
}

// The worst time the emulator woke after one of its events was due (ns): a measure of how
// much the machine's scheduler, not the PC program, delayed the emulated controller.
int64_t g_maxLateNs = 0;

void printStatus(const ControllerEmulator &c)
{
    std::printf("pos %lld %lld %lld frames %lld received %lld held %d maxheld %d overflows %lld "
                "dry %lld idle_ms %.3f late_max_us %lld dropped %lld badlen %lld resets %lld spindle %d door %d refused %lld\n",
                static_cast<long long>(c.posX()), static_cast<long long>(c.posY()),
                static_cast<long long>(c.posZ()), static_cast<long long>(c.framesRun()),
                static_cast<long long>(c.framesReceived()), c.framesHeld(), c.maxFramesHeld(),
                static_cast<long long>(c.overflows()), static_cast<long long>(c.dryRuns()),
                static_cast<double>(c.idleNs()) / 1e6, static_cast<long long>(g_maxLateNs / 1000),
                static_cast<long long>(c.droppedSteps()),
                static_cast<long long>(c.badLengthBytes()), static_cast<long long>(c.resets()),
                c.spindleOn() ? 1 : 0, c.doorOpen() ? 1 : 0, static_cast<long long>(c.spindleRefused()));
    std::fflush(stdout);
}

// Runs one command line; false for "quit".
bool command(ControllerEmulator &c, const std::string &line)
{
    char word[32] = {};
    char arg[32] = {};
    long long n = 0;
    if (std::sscanf(line.c_str(), "%31s %31s", word, arg) < 1)
        return true;
    std::string w(word), a(arg);
    if (w == "quit")
        return false;
    if (w == "status")
        printStatus(c);
    else if (w == "door" && a == "open")
        c.openDoor();
    else if (w == "door" && a == "close")
        c.closeDoor();
    else if (w == "spindle" && a == "trip")
        c.stopSpindleByItself();
    else if (w == "lose" && std::sscanf(arg, "%lld", &n) == 1)
        c.loseReplies(static_cast<int>(n));
    else if (w == "delay" && std::sscanf(arg, "%lld", &n) == 1)
        c.delayNextReply(n * 1'000'000);
    else if (w == "silent")
        c.setSilentAfterReset(a == "on");
    else if (w == "door-at-step" && std::sscanf(arg, "%lld", &n) == 1)
        c.openDoorAtStep(n);
    else {
        std::printf("? %s\n", line.c_str());
        std::fflush(stdout);
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    bool doorOpen = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--door-open") == 0)
            doorOpen = true;
    }

    int master = -1;
    int slave = -1;
    char name[256] = {};
    if (openpty(&master, &slave, name, nullptr, nullptr) != 0) {
        std::perror("openpty");
        return 1;
    }
    // Raw bytes both ways: no echo, no line editing, no translation of CR or LF.
    termios tio{};
    tcgetattr(slave, &tio);
    cfmakeraw(&tio);
    tcsetattr(slave, TCSANOW, &tio);
    // Packet mode: every read on the master starts with a status byte, which tells of a
    // flush by the far end.
    int on = 1;
    if (ioctl(master, TIOCPKT, &on) != 0) {
        std::perror("TIOCPKT");
        return 1;
    }
    fcntl(master, F_SETFL, fcntl(master, F_GETFL) | O_NONBLOCK);
    // Our own hold on the far end stays open, so that the master never sees a hang-up
    // between two openings by the PC.

    ControllerEmulator c;
    if (doorOpen)
        c.openDoor();
    c.advanceTo(monoNs());
    c.enableWithoutAnswer();

    std::printf("%s\n", name);
    std::fflush(stdout);

    std::string pendingLine;
    bool stdinOpen = true;
    for (;;) {
        int64_t now = monoNs();
        c.advanceTo(now);
        QByteArray out = c.takeOutput();
        if (!out.isEmpty())
            writeAll(master, out.constData(), static_cast<size_t>(out.size()));

        // Sleep until the next event of the controller, or input.
        timespec timeout{0, 50'000'000};
        const std::optional<int64_t> next = c.nextEventNs();
        if (next) {
            int64_t wait = std::max<int64_t>(0, *next - monoNs());
            wait = std::min<int64_t>(wait, 50'000'000);
            timeout = {static_cast<time_t>(wait / 1'000'000'000), static_cast<long>(wait % 1'000'000'000)};
        }
        pollfd fds[2] = {{master, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        int nfds = stdinOpen ? 2 : 1;
        int r = ppoll(fds, static_cast<nfds_t>(nfds), &timeout, nullptr);
        if (r < 0 && errno != EINTR)
            break;
        if (next)
            g_maxLateNs = std::max(g_maxLateNs, monoNs() - *next);
        if (r <= 0)
            continue;
        if (fds[0].revents & POLLIN) {
            char buf[1024];
            ssize_t n = ::read(master, buf, sizeof buf);
            if (n > 0) {
                int64_t at = monoNs();
                if (buf[0] == TIOCPKT_DATA) {
                    c.receive(QByteArray(buf + 1, static_cast<qsizetype>(n - 1)), at);
                } else if (buf[0] & (TIOCPKT_FLUSHREAD | TIOCPKT_FLUSHWRITE)) {
                    c.setRts(false, at);   // the PC flushed the line: its reset
                    c.setRts(true, at);
                }
            }
        }
        if (stdinOpen && (fds[1].revents & (POLLIN | POLLHUP))) {
            char buf[256];
            ssize_t n = ::read(STDIN_FILENO, buf, sizeof buf);
            if (n <= 0) {
                stdinOpen = false;
                break;   // whoever started us has gone
            }
            pendingLine.append(buf, static_cast<size_t>(n));
            size_t nl;
            while ((nl = pendingLine.find('\n')) != std::string::npos) {
                std::string line = pendingLine.substr(0, nl);
                pendingLine.erase(0, nl + 1);
                c.advanceTo(monoNs());
                if (!command(c, line)) {
                    close(master);
                    close(slave);
                    return 0;
                }
            }
        }
    }
    close(master);
    close(slave);
    return 0;
}
