// The compiler's commands of brantok-nc. Exit codes as for `check`: 0 done, 1 the program or
// file was refused (the reason was printed), 2 the error trap ended the work, 64 usage.
#pragma once

#include <QStringList>

#include <cstdint>

// `brantok-nc compile FILE`: what the program does before machining, with the store's
// settings and tools: the analysed-file check, the read, and the compilation when the
// analysed file can't be reused. Prints why the file was compiled (or that the analysed file
// is up to date) and the analysed file's path.
// Prints the machining time of the analysed file.
int NcCompile(const QStringList &args);
// The work of `compile`, shared with `preview`: an exit code as above; when it is 0,
// gstrAnalysedFile is the analysed file of `strFile`. Loads the settings and the tool table.
int CompileToAnalysed(const QString &strFile);
// The type of a tool of the table by number ("" when the table doesn't hold it).
QString strToolType(int16_t intNumber);
// `brantok-nc dump FILE.ncx`: the analysed file, readably (see nc/ncxdump.h).
int NcDump(const QStringList &args);
