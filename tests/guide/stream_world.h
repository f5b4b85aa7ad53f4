// A world for runs of the machining stream: the link's world (emulator on the fake clock),
// a program compiled through the real reader and compiler, frmMill driven through its real
// buttons by a watcher, and every message box recorded and answered by the test.
#pragma once

#include "link/link_world.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <functional>
#include <vector>

struct BoxSeen {
    QString text;
    int32_t flags = 0;
    QString title;
    int64_t writtenAtBox = 0;   // bytes the controller had been sent when the box came up
};

struct StreamWorld : LinkWorld {
    QTemporaryDir dir;
    // The in-run prompt: start tags it was opened with, and every step it showed.
    QStringList promptTags;
    std::vector<int> promptSteps;
    // What the operator does at each step shown: 0 Cancel, 1 Done. Default: Done.
    std::function<int(int step)> onPrompt;
    // The message boxes, and the answer to each; 0 (or no onBox) answers the first button.
    std::vector<BoxSeen> seen;
    std::function<int16_t(const BoxSeen &)> onBox;
    // Screens the run went back to.
    int backToWizard = 0, backToMenu = 0, showMethod = 0;
    // Most frames out at once, as the PC counted them.
    int maxOut = 0;
    // Called on every turn of the message loop after the clock has moved.
    std::function<void()> onPump;
    // The emulator's door, when watched (the emulator must then outlive the run): how often
    // it opened, and the most steps it made while open.
    bool watchDoor = false;
    int doorOpenings = 0;
    int64_t stepsWhileDoorOpen = 0;

    StreamWorld();
    ~StreamWorld();

    // Store values (rapid 500 mm/min) and tools 1 and 2 (End mill 6 mm, Ball end 3 mm), then
    // the settings read.
    void setUp(int16_t backlash = 0);
    // Writes an NC file into the world's folder and returns its path.
    QString writeFile(const QString &name, const QByteArray &text) { return WriteFile(dir.path() + u'/' + name, text); }
    // Writes and compiles an NC program; true when an analysed file was made.
    bool compile(const QByteArray &text);
    // setUp, kTwoToolProgram compiled, online, the first tool going into an empty spindle.
    void startOnline(int16_t backlash = 0);
    // StartMilling, then SendToMill as tmrStartMilling would.
    void run();
    // The operator hits Esc on the main window (posted: it arrives on the next pump).
    static void postEsc();

private:
    QTimer m_watch;
    int m_lastShown = -1;
    int64_t m_stepsAtOpen = -1;
    void watchPrompt();
};

// Unloads every form, newest first, and lets Qt delete them.
void UnloadForms();

// Programs used by the tests.
extern const QByteArray kTwoToolProgram;   // T1, S1000, cut, T2, S2000, cut
