// Files opened by number, the way the program's file procedures hold them: a 16-bit
// number from `FreeFile`, opened once, used by number, closed where it was opened.
// The step writer, the analysed-file check and the machining stream share files this way
// (`gintAnalysedFile`, `gintWorkFile`), so a file opened by one procedure can be written or
// read by another that only knows the number.
//
// Faults follow the original's numbers: a number that is not open is 52, a missing file 53,
// a missing folder 76, no permission 70, any other failure to open 75, a failed write 61.
// Reading past the end of a binary file is not a fault: the missing bytes read as zero.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

class QFile;

enum class FileMode {
    Binary,  // read and write, created if missing, position at the start
    Output,  // write only, emptied on open
    Input,   // read only, must exist
    Append,  // write only, created if missing, position at the end
};

// The lowest file number from 1 that is not open.
int16_t FreeFile();
// Opens `strPath` as number `intFile`. A number already open is fault 55.
void FileOpen(int16_t intFile, const QString &strPath, FileMode mode);
// Closes the number; a number that is not open is passed over.
void FileClose(int16_t intFile);
// Closes every open number (tests, and the end of a process that wants its data written).
void FileCloseAll();
bool FileIsOpen(int16_t intFile);
// The open file behind the number; fault 52 when it is not open.
QFile &FileOf(int16_t intFile);
// Writes at the current position. A short write is fault 61 ("Disk full").
void FilePut(int16_t intFile, const char *data, qint64 size);
inline void FilePut(int16_t intFile, const QByteArray &data) { FilePut(intFile, data.constData(), data.size()); }
// Reads `size` bytes from the current position; bytes past the end read as zero.
QByteArray FileGet(int16_t intFile, qint64 size);
// The length of the open file in bytes (LOF), and the 0-based position (Seek) to move to.
qint64 FileLength(int16_t intFile);
void FileSeek(int16_t intFile, qint64 position);
