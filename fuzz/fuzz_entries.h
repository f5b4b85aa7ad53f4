// The entry points of the fuzz targets. Each takes one input of any bytes and returns 0; a
// fault in the code under test shows as a crash, a sanitizer report or an abort() from the
// entry's own checks. libFuzzer calls them through LLVMFuzzerTestOneInput (fuzz_target.cpp,
// built with clang by `make fuzz`); the regression runner (fuzz_regress.cpp, built with the
// normal compiler for `make test`) feeds them the inputs kept under fuzz/corpus/.
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

// Once per process: an application object for the event pumps, a scratch folder, and hooks
// that answer every box, cancel every correction and turn the error trap's end into an
// exception (a trapped fault is a correct answer to bad input, not a finding).
void FuzzSetUp();

// An NC program's text, looked at by the file chooser and read by the reader as the
// program reads a file.
int FuzzNcReader(const uint8_t *data, size_t size);
// An analysed file's bytes, put through the cache check and the dump. Whatever the check
// accepts must parse cleanly. First byte: bit 0 set puts the right digest, rapid speed and
// backlash in front of the rest, bit 1 set appends the right trailer, so that the fuzzer
// reaches the checks behind them.
int FuzzAnalysedFile(const uint8_t *data, size_t size);
// Bytes on the line to the controller emulator, mixed with time, door, reset and fault
// events (see the operation table in fuzz_entries.cpp). The controller never holds more
// than two frames and answers only with its own characters.
int FuzzControllerFrames(const uint8_t *data, size_t size);

// A good analysed file of the fixed program under the fixed settings, in the form
// FuzzAnalysedFile takes it (first byte 3, the header and trailer left to the entry): the
// seed of that target's corpus.
QByteArray FuzzAnalysedSeed();
