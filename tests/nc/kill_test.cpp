// Nothing lost on a kill: a child process writes the settings store, an NC file through the
// correction window's save and an analysed file over and over, and is killed with SIGKILL at a
// random moment. The store and the NC file are then old or new, never a mixture; an analysed
// file is whole or refused by the check. The kill counts go to the output (and README).
#include "nc_test_support.h"

#include "core/state.h"
#include "core/store.h"
#include "nc/analysed.h"
#include "nc/evaluate.h"
#include "nc/reader.h"
#include "nc/textfile.h"

#include <QElapsedTimer>
#include <QFile>

#include <csignal>
#include <iostream>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kKillsEach = 80;

// Runs `write(n)` for n = 0, 1, 2, ... in a forked child and kills it after a random delay of up
// to three calls (at most 40 ms), before, inside or between writes; `check` looks at what is left.
void KillWhileWriting(std::mt19937 &rng, const std::function<void(int)> &write, const std::function<void()> &check)
{
    QElapsedTimer t;
    t.start();
    for (int n = 0; n < 4; ++n)
        write(n);
    std::uniform_int_distribution<int64_t> delay(0, std::min<int64_t>(3 * t.nsecsElapsed() / 4000, 40000));
    for (int k = 0; k < kKillsEach; ++k) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0) << "no child process";
        if (pid == 0) {
            try {
                for (int n = 0;; ++n)
                    write(n);
            } catch (...) {
            }
            _exit(3);
        }
        usleep(static_cast<useconds_t>(delay(rng)));
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        check();
    }
}

class KillTest : public CompilerTest {
protected:
    QTemporaryDir m_dir;
    std::mt19937 m_rng{20261124};
};

} // namespace

// The settings store (40 values, one of them rewritten) and a corrected NC file of 8000
// lines, each written alternately with two contents: after every kill, one or the other.
TEST_F(KillTest, TheSettingsStoreAndACorrectedNcFileAreOldOrNew)
{
    TempStore store;
    for (int i = 0; i < 40; ++i)
        RegistryValuePut(QStringLiteral("Tool%1").arg(i), QStringLiteral("End mill, 6 mm, offset %1").arg(i));
    const QString nc = m_dir.filePath(QStringLiteral("part.brx"));
    QString texts[2] = {QStringLiteral("%\r\n* Billet length 50\r\n"), QStringLiteral("%\r\n* Billet length 50\r\n")};
    for (int line = 1; line <= 8000; ++line)
        for (int n = 0; n < 2; ++n)
            texts[n] += QStringLiteral("N%1 G1 X%2 Y1 F100\r\n").arg(line * 10).arg(n + line % 7);
    const std::pair<QString, std::function<void(int)>> writers[] = {
        {store.path(), [](int n) { RegistryValuePut(QStringLiteral("Comment"), QString(70, n % 2 ? u'b' : u'a')); }},
        {nc, [&](int n) {
             QString error;
             if (!blnTextFileSave(nc, texts[n % 2], error))
                 throw std::runtime_error("save failed");
         }},
    };
    for (const auto &[path, write] : writers) {
        QByteArray whole[2];
        for (int n = 0; n < 2; ++n) {
            write(n);
            whole[n] = ReadFileBytes(path);
        }
        int seen[2] = {0, 0};
        KillWhileWriting(m_rng, write, [&] {
            const QByteArray now = ReadFileBytes(path);
            ASSERT_TRUE(now == whole[0] || now == whole[1]) << "a mixture of " << now.size() << " bytes";
            ++seen[now == whole[1]];
        });
        std::cout << path.toStdString() << ": " << kKillsEach << " kills, left old " << seen[0] << ", new "
                  << seen[1] << "\n";
    }
    // Read back through the store itself after the last kill.
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool39"), QString()), QStringLiteral("End mill, 6 mm, offset 39"));
}

TEST_F(KillTest, AHalfWrittenAnalysedFileIsNeverTrusted)
{
    const QString nc = m_dir.filePath(QStringLiteral("part.brx")), ncx = m_dir.filePath(QStringLiteral("part.ncx"));
    QByteArray program = "%\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X1 Y1 Z1\r\nN40 G1 Z-0.5 F100\r\n";
    for (int i = 0; i < 40; ++i)
        program += QByteArray("N") + QByteArray::number(50 + i) + (i % 2 ? " G2 X1 Y1 I4 J0\r\n" : " G1 X9 Y9\r\n");
    WriteFile(nc, program);
    CompileProgram(nc);
    const QByteArray whole = ReadFileBytes(ncx);
    ASSERT_GT(whole.size(), 10000);
    int trusted = 0, refused = 0, none = 0;
    // The child compiles the table it was given again and again, as a new compilation does.
    KillWhileWriting(m_rng, [&nc](int) {
        gfnCompFileReason = &strNoCompFileReason;
        ReadCommands(nc);
        EvaluateCommands();
    }, [&] {
        const bool existed = QFile::exists(ncx);
        ReadProgram(nc);
        if (gblnAnalysedValid) {
            ++trusted;
            ASSERT_EQ(ReadFileBytes(ncx), whole) << "a half-written file was trusted";
        } else {
            ++(existed ? refused : none);
            ASSERT_FALSE(QFile::exists(ncx));   // a refused file is deleted
        }
    });
    std::cout << "analysed file: " << kKillsEach << " kills, whole and trusted " << trusted << ", refused "
              << refused << ", none left " << none << "\n";
}
