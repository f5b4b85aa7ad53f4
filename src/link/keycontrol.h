// Manual control: jogging the three axes from the PC keyboard.
//
// KeyControl is a loop that runs while the manual screen is up (started by frmSplash's
// tmrKeyControl, ended by Done, Esc or the toolbar's Back through gblnKeyLoop). Every round
// it asks the key state which keys are down *now* (no key events: a held key must move
// without the keyboard's repeat delay, and several keys count at once), composes up to 16
// steps and sends them as one frame. It never has more than two frames out.
//
// Keys (virtual-key codes):
//
//   direction  Right 39 X+ (lamp 1)   Left 37 X- (lamp 2)    Right wins over Left,
//              Up 38    Y+ (lamp 3)   Down 40 Y- (lamp 4)    Up over Down,
//              PgUp 33  Z+ (lamp 5)   PgDn 34 Z- (lamp 6)    Page Up over Page Down
//   speed      Numpad 1..9 = 10..90 mm/min, 2..10 steps a round; the first held counts
//   rapid      Numpad 0 (and the keypad's dot when gblnRapidUseDot): gsngRapidSpeed,
//              one axis only (the first held of X, Y, Z), ramped:
//
//      ramp speed  0 ...... 40 ...... 80 ...... 150 ...... rapid
//      steps/round    2         6        10        16
//      each step adds rapid/64 mm/min going up; RampDown takes it off again, 16 at a time.
//
// An arrow without a speed key is a single step (1/72 mm) however long it is held.
//
// Qt Core only: the screen is reached through the plain state gKeyboard and keyboardHooks(),
// which the main window installs; tests watch them directly.
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>

// --- Module state (owner: the manual control).
extern int16_t gintKeyDirX, gintKeyDirY, gintKeyDirZ;     // direction this round: +1, -1, 0
extern int16_t gintRampDirX, gintRampDirY, gintRampDirZ;  // direction of the rapid in progress
extern float gsngRampSpeed;                               // present rapid speed, mm/min; 0 at rest
extern int32_t glngDisplayX, glngDisplayY, glngDisplayZ;  // shown position, steps, play excluded
extern float gsngShownX, gsngShownY, gsngShownZ;          // last position written on screen, mm

// What the manual screen shows, as the loop sets it.
struct KeyboardScreen {
    std::array<bool, 6> imgArrows{};        // lamps 1..6 (index 0..5 = mask bits 0..5)
    std::array<bool, 6> lblSpeedVisible{};  // the speed label beside each lamp
    QString lblSpeed;                       // the speed as a plain number, mm/min
    std::array<QString, 3> lblPos{QStringLiteral("0.00"), QStringLiteral("0.00"), QStringLiteral("0.00")};
};
extern KeyboardScreen gKeyboard;

struct KeyboardHooks {
    std::function<void()> lampsChanged;      // imgArrows / lblSpeed changed (only on a change)
    std::function<void()> positionsChanged;  // lblPos written: show them and repaint frmMain
    std::function<void()> focusPosition;     // picPosition takes the focus
    std::function<void()> loopEnded;         // after the loop: back to the wizard, or the free path
};
KeyboardHooks &keyboardHooks();

// The loop. Returns once gblnKeyLoop has been cleared and the line is quiet.
void KeyControl();
// Takes a rapid down to rest in steps of rapid/64, 16 to a frame.
void RampDown();
// Sends a string of 4-byte composed steps (control byte dropped) as one frame.
void SendKeyBuff(const QByteArray &strSteps);
// One step's deltas into the machine position and the shown position.
void PositionUpdate(int16_t intX, int16_t intY, int16_t intZ);
// The play model of the shown position: after a reversal the steps that take up the play
// (backlash) don't move the cutter and don't count on the display.
int32_t lngKeyboardPos(int32_t lngPos, int16_t intBacklash, int16_t &intPlay, int16_t &intLastDir, int16_t intDir,
                       int16_t intSteps);
// The shown position of one axis (0 X, 1 Y, 2 Z), in steps; its label in mm "0.00".
void DistanceSet(int16_t intAxis, int32_t lngSteps);
// cmdReset(index): 0, 1, 2 zero that axis's shown position, 3 all three.
void DistanceReset(int16_t intAxis);

// Steps of a round and the speed for Numpad 1..9 (index 0 = Numpad 1).
constexpr std::array<int16_t, 9> kSpeedKeySteps{2, 3, 4, 5, 6, 7, 8, 9, 10};
// A label in the format "0.00" for a position in steps.
QString strDistanceLabel(int32_t lngSteps);

// Back to the state before any manual control (tests).
void ResetKeyControl();
