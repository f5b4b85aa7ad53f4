#include "core/filenum.h"

#include "core/vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <map>
#include <memory>

namespace {

std::map<int16_t, std::unique_ptr<QFile>> &openFiles()
{
    static std::map<int16_t, std::unique_ptr<QFile>> files;
    return files;
}

// Why an open failed, in the original's fault numbers.
[[noreturn]] void openFault(const QString &strPath, FileMode mode, const QFile &file)
{
    QFileInfo fi(strPath);
    if (!fi.absoluteDir().exists())
        vb::Err(vb::kPathNotFound);
    if (mode == FileMode::Input && !fi.exists())
        vb::Err(vb::kFileNotFound);
    if (file.error() == QFileDevice::PermissionsError)
        vb::Err(vb::kPermissionDenied);
    vb::Err(vb::kPathFileAccess);
}

} // namespace

int16_t FreeFile()
{
    auto &files = openFiles();
    for (int16_t n = 1; n < 512; ++n)
        if (files.find(n) == files.end())
            return n;
    vb::Err(67); // "Too many files"
}

void FileOpen(int16_t intFile, const QString &strPath, FileMode mode)
{
    auto &files = openFiles();
    if (intFile < 1)
        vb::Err(vb::kBadFileNumber);
    if (files.find(intFile) != files.end())
        vb::Err(55); // "File already open"
    auto file = std::make_unique<QFile>(strPath);
    QIODevice::OpenMode how;
    switch (mode) {
    case FileMode::Binary: how = QIODevice::ReadWrite; break;
    case FileMode::Output: how = QIODevice::WriteOnly | QIODevice::Truncate; break;
    case FileMode::Input: how = QIODevice::ReadOnly; break;
    case FileMode::Append: how = QIODevice::WriteOnly | QIODevice::Append; break;
    }
    if (!file->open(how))
        openFault(strPath, mode, *file);
    files.emplace(intFile, std::move(file));
}

void FileClose(int16_t intFile)
{
    auto &files = openFiles();
    auto it = files.find(intFile);
    if (it == files.end())
        return;
    it->second->close();
    files.erase(it);
}

void FileCloseAll()
{
    auto &files = openFiles();
    for (auto &f : files)
        f.second->close();
    files.clear();
}

bool FileIsOpen(int16_t intFile) { return openFiles().count(intFile) != 0; }

QFile &FileOf(int16_t intFile)
{
    auto &files = openFiles();
    auto it = files.find(intFile);
    if (it == files.end())
        vb::Err(vb::kBadFileNumber);
    return *it->second;
}

void FilePut(int16_t intFile, const char *data, qint64 size)
{
    QFile &f = FileOf(intFile);
    if (size > 0 && f.write(data, size) != size)
        vb::Err(61); // "Disk full"
}

QByteArray FileGet(int16_t intFile, qint64 size)
{
    QFile &f = FileOf(intFile);
    QByteArray data = f.read(size);
    if (data.size() < size)
        data.append(QByteArray(static_cast<qsizetype>(size - data.size()), '\0'));
    return data;
}

qint64 FileLength(int16_t intFile)
{
    QFile &f = FileOf(intFile);
    f.flush();
    return f.size();
}

void FileSeek(int16_t intFile, qint64 position)
{
    if (!FileOf(intFile).seek(position))
        vb::Err(63); // "Bad record number"
}
