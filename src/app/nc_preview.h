// `brantok-nc preview FILE -o OUT.png [--size WxH]`: the toolpath as the machine will run it,
// for operators who want to see a program before they set up, and for the README's pictures.
#pragma once

#include <QStringList>

// FILE is an NC program (compiled first, exactly as `compile` does) or an analysed file
// (".ncx"). Prints the machining time, the extent and the moves, and writes the picture
// (default 1200 x 800 pixels). Exit codes as for `compile`. Needs a QGuiApplication.
int NcPreview(const QStringList &args);
