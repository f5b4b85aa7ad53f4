// The fuzz targets' kept inputs as a test: feeds every file of the given folders to the
// entry of the named target, with the normal compiler and no fuzzing engine. A finding
// aborts the process, so ctest reports the input that did it (printed before each run).
//
//     fuzz_regress nc_reader|analysed|frames DIR...
//     fuzz_regress --seed-analysed FILE      writes the analysed-file target's seed
#include "fuzz/fuzz_entries.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstring>

namespace {

using Entry = int (*)(const uint8_t *, size_t);

const struct {
    const char *name;
    Entry entry;
} kTargets[] = {
    {"nc_reader", FuzzNcReader},
    {"analysed", FuzzAnalysedFile},
    {"frames", FuzzControllerFrames},
};

} // namespace

int main(int argc, char **argv)
{
    FuzzSetUp();
    if (argc == 3 && std::strcmp(argv[1], "--seed-analysed") == 0) {
        QFile f(QString::fromLocal8Bit(argv[2]));
        return f.open(QIODevice::WriteOnly) && f.write(FuzzAnalysedSeed()) > 0 ? 0 : 1;
    }
    Entry entry = nullptr;
    for (const auto &t : kTargets)
        if (argc >= 3 && std::strcmp(argv[1], t.name) == 0)
            entry = t.entry;
    if (!entry) {
        std::fputs("usage: fuzz_regress nc_reader|analysed|frames DIR...\n", stderr);
        return 64;
    }
    int inputs = 0;
    for (int a = 2; a < argc; ++a) {
        const QFileInfoList files = QDir(QString::fromLocal8Bit(argv[a])).entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo &fi : files) {
            QFile f(fi.filePath());
            if (!f.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(fi.filePath()));
                return 1;
            }
            const QByteArray bytes = f.readAll();
            std::printf("%s\n", qPrintable(fi.fileName()));
            std::fflush(stdout);
            entry(reinterpret_cast<const uint8_t *>(bytes.constData()), static_cast<size_t>(bytes.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs, no finding\n", inputs);
    return inputs > 0 ? 0 : 1;
}
