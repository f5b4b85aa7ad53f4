// Our own model of the step-motor controller, for tests and for rehearsing online without
// the machine. It knows nothing of the PC program: it takes bytes off the wire, runs frames
// and answers with single characters, exactly as the PC expects the real controller to.
//
// What goes over the wire, PC to controller (57600 baud, 8N1, so one byte takes 173.6 us):
//
//     frame:   +--------+----------+----------+-- ... --+
//              | length | record 1 | record 2 |  <=16   |   length = 3 x records + 1, 4..49
//              +--------+----------+----------+-- ... --+
//     record:  +---------+-----------+------------+
//              | command | timer low | timer high |
//              +---------+-----------+------------+
//     command: bit 0,1  0 = step record, 3 = spindle record (bit 4 then: 1 on, 0 off)
//              bit 2,3,4  step X, Y, Z
//              bit 5,6,7  X, Y, Z in the positive direction
//
// Each record lasts (65536 - timer) ticks of the controller's 921 600 Hz clock; the step of
// a step record happens at its start. A spindle record and a record with command 0 (a pure
// delay) take their time too.
//
// The controller holds two frames: one running and one waiting. When the running frame has
// run out, the waiting one starts at once and the controller answers "A": a place is free.
// So a PC that keeps exactly two frames out never lets it run dry. A third frame while both
// places are full is lost (counted in `overflows`) and gets no answer.
//
// Characters back: "A" frame done; "D" frame done but the door interrupted it; "F"/"G" the
// answer to a reset, door open/closed; "O"/"S" door opened/shut; "P" spindle stopped by itself.
//
// The door opening while a frame runs stops all motion at once: "O", then "D" for the running
// frame and "D" for the waiting one (their remaining steps are dropped and counted in
// `droppedSteps`). The spindle stops with the door ("O" tells the PC; no "P"). A spindle
// start with the door open is refused. Frames arriving while the door is open run.
//
// RTS low holds the controller in reset: frames, waiting bytes and the spindle are dropped
// and nothing is answered. RTS going high again boots it; after `kBootNs` it answers "F" or
// "G" by the door.
//
// Time is given by the caller in nanoseconds on one monotonic axis: `advanceTo` runs all that
// is due up to then, in order. Pure C++ and Qt Core: no clock, timer or port of its own.
#pragma once

#include <QByteArray>

#include <cstdint>
#include <deque>
#include <optional>

class ControllerEmulator {
public:
    static constexpr int64_t kTimerHz = 921600;          // the controller's record timer
    static constexpr int64_t kByteNs = 173611;           // one byte at 57600 baud, 10 bits
    static constexpr int64_t kBootNs = 20'000'000;       // from RTS high to the reset answer

    ControllerEmulator();

    // --- The wire, from the PC. Bytes written at `atNs` arrive one by one at the baud rate.
    void receive(const QByteArray &bytes, int64_t atNs);
    void setRts(bool high, int64_t atNs);
    bool rts() const { return m_rts; }
    // Running, with RTS taken as high, and no reset answer (a line without modem lines).
    void enableWithoutAnswer();
    bool dsr() const { return m_dsr; }

    // Runs everything due up to `nowNs`. Time never goes back.
    void advanceTo(int64_t nowNs);
    int64_t now() const { return m_now; }
    // Characters that have reached the PC by `now()`, oldest first, and removes them.
    QByteArray takeOutput();
    // Time at which the next thing happens (a byte, a record, a reply), if anything is pending.
    std::optional<int64_t> nextEventNs() const;

    // --- The world around the controller (each takes effect at `now()`).
    void openDoor();
    void closeDoor();
    void stopSpindleByItself();   // the spindle drive trips: "P" if it was running
    void setDsr(bool present);    // cable or power of the controller

    // --- Faults on demand.
    void loseReplies(int count) { m_loseReplies = count; }          // the next `count` "A"/"D" never come
    void delayNextReply(int64_t ns) { m_delayNextReplyNs = ns; }    // the next "A"/"D" comes late
    void setSilentAfterReset(bool silent) { m_silentAfterReset = silent; }
    // The door opens (closes) just after the n-th step record since the last reset has run.
    void openDoorAtStep(int64_t n) { m_openDoorAtStep = n; }
    void closeDoorAtStep(int64_t n) { m_closeDoorAtStep = n; }

    // --- What it did.
    bool doorOpen() const { return m_doorOpen; }
    bool spindleOn() const { return m_spindleOn; }
    int64_t posX() const { return m_pos[0]; }          // steps executed, signed, since construction
    int64_t posY() const { return m_pos[1]; }
    int64_t posZ() const { return m_pos[2]; }
    int64_t stepRecords() const { return m_stepRecords; }   // step records run since the last reset
    int64_t framesRun() const { return m_framesRun; }
    int64_t framesReceived() const { return m_framesReceived; }
    int framesHeld() const { return (m_running ? 1 : 0) + (m_waiting ? 1 : 0); }
    int maxFramesHeld() const { return m_maxHeld; }
    int64_t overflows() const { return m_overflows; }        // frames lost because both places were full
    int64_t badLengthBytes() const { return m_badLength; }   // bytes dropped as an impossible length
    int64_t droppedSteps() const { return m_droppedSteps; }  // step records dropped by the door or a reset
    int64_t spindleRefused() const { return m_spindleRefused; }
    int64_t spindleRecords() const { return m_spindleRecords; }
    // Time of the step and delay records started since construction (ns): the machine's own
    // running time, without idle waits and without the spindle records.
    int64_t motionNs() const { return m_motionNs; }
    int64_t resets() const { return m_resets; }
    // Times a frame ran out with no frame waiting, and the time spent idle after that
    // until the next frame started (ns).
    int64_t dryRuns() const { return m_dryRuns; }
    int64_t idleNs() const { return m_idleNs; }

private:
    struct Frame {
        QByteArray records;   // 3 bytes each
        int next = 0;         // index of the record to start next
        bool interrupted = false;
    };

    void acceptByte(char byte, int64_t at);
    void acceptFrame(Frame f, int64_t at);
    void startFrame(int64_t at);
    void startRecord(int64_t at);
    void finishFrame(int64_t at);
    void reply(char c, int64_t at);
    void send(char c, int64_t at);
    void interruptMotion(int64_t at);
    void noteHeld();

    int64_t m_now = 0;
    bool m_rts = false;
    bool m_dsr = true;
    bool m_doorOpen = false;
    bool m_spindleOn = false;
    std::optional<int64_t> m_bootAt;

    // Bytes on the wire towards the controller, each with its arrival time.
    std::deque<std::pair<int64_t, char>> m_wireIn;
    int64_t m_wireInFree = 0;   // when the wire can start the next byte
    QByteArray m_assembling;    // frame being received
    // Characters towards the PC, each with its arrival time.
    std::deque<std::pair<int64_t, char>> m_wireOut;
    int64_t m_wireOutFree = 0;
    QByteArray m_delivered;

    std::optional<Frame> m_running;
    std::optional<Frame> m_waiting;
    int64_t m_recordEnd = 0;     // end of the record now running
    std::optional<int64_t> m_idleSince;

    int m_loseReplies = 0;
    int64_t m_delayNextReplyNs = 0;
    bool m_silentAfterReset = false;
    int64_t m_openDoorAtStep = -1;
    int64_t m_closeDoorAtStep = -1;

    int64_t m_pos[3] = {0, 0, 0};
    int64_t m_stepRecords = 0;
    int64_t m_framesRun = 0;
    int64_t m_framesReceived = 0;
    int m_maxHeld = 0;
    int64_t m_overflows = 0;
    int64_t m_badLength = 0;
    int64_t m_droppedSteps = 0;
    int64_t m_spindleRefused = 0;
    int64_t m_spindleRecords = 0;
    int64_t m_motionNs = 0;
    int64_t m_resets = 0;
    int64_t m_dryRuns = 0;
    int64_t m_idleNs = 0;
};
