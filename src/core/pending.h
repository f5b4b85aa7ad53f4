// Procedures that other parts of the program provide and that the start, the stop and the
// main window call already. Until each part is built, the stand-in here does what is safe:
// nothing, or the plain first step. Each names the part that replaces it; when that part
// arrives, its stand-in is deleted from pending.cpp and its header included instead.
#pragma once

#include <QString>

#include <cstdint>

