// A world for the set-up wizard: the stream's world (emulator on the fake clock, frmMill's
// buttons pressed by a watcher, boxes recorded) with the real screens a run goes back to,
// a fake key state for the tasks on the manual screen and a scripted file dialog.
#pragma once

#include "guide/stream_world.h"

#include "core/frm_main.h"
#include "platform/keystate.h"

#include <functional>

struct WizardWorld : StreamWorld {
    FakeKeyState keys;
    ScopedKeyState scoped{&keys};
    FrmMain *f = nullptr;
    QString chosenFile;          // what the file dialog answers ("" for Cancel)
    QStringList dialogTitles;    // the titles it was opened with

    WizardWorld();
    ~WizardWorld();

    // From the main menu into Mill a part, the file dialog to answer with `program` written
    // to part.brx (Cancel when empty).
    void toMill(const QByteArray &program = {});
    // Clicks navigation button i (0 Get Offsets .. 4 Start).
    void nav(int i);
    // Runs the task now on the manual screen: holds `keys` down for `ms` of fake time at
    // 90 mm/min, then, once the machine stands, clicks Done (or presses Esc when `esc`).
    // `each(n)`, when given, runs on the task's pump n and decides when it may end.
    void task(std::initializer_list<int> held = {}, int ms = 0, bool esc = false,
              const std::function<bool(int n)> &each = {});
    // The run started by Start: tmrStartMilling's tick, as the timer would give it.
    void runStarted();
    QString title() const;   // the step's title as shown
    QString page() const;    // the step's page as plain text
};
