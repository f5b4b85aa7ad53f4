// The original language's generator and the password scramble built on it.
#include "core/store.h"
#include "core/vb_rnd.h"
#include "options/password.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

TEST(Rnd, TheStartSequenceNegativeReseedAndZeroRepeat)
{
    vb::ResetRnd();
    // The sequence every program of the language draws when it never seeds.
    EXPECT_NEAR(vb::Rnd(), 0.7055475f, 1e-7);
    vb::Rnd();
    const float last = vb::Rnd();
    EXPECT_NEAR(last, 0.5795186f, 1e-7);
    EXPECT_EQ(vb::Rnd(0.0f), last);
    // A negative argument restarts from its bits, wherever the sequence stood.
    EXPECT_NEAR(vb::Rnd(-1.0f), 0.224007f, 1e-6);
    vb::Rnd();
    EXPECT_EQ(vb::Rnd(-1.0f) * 16777216.0f, 3758214.0f);
    // Seeding splices 16 bits of the number into the middle of the seed; the low byte stays.
    const uint32_t low = vb::RndSeed() & 0xFF;
    vb::Randomize(1.0);
    EXPECT_EQ(vb::RndSeed(), 0x3FF000u | low);
}

TEST(Password, ScrambleIsRepeatableCaseSensitiveAndInRange)
{
    // Pinned: every stored password depends on exactly these codes.
    EXPECT_EQ(strEncrypt(QStringLiteral("abc")), QString::fromLatin1("\x70\x27\x2F"));   // 112 39 47
    EXPECT_EQ(strEncrypt(QStringLiteral("ABC")), QString::fromLatin1("\x46\x64\x7D"));   // 70 100 125
    // Each character's draw depends on those before it.
    EXPECT_NE(strEncrypt(QStringLiteral("ab")).at(1), strEncrypt(QStringLiteral("bb")).at(1));
    vb::Rnd();   // where the generator stood before doesn't matter
    QString all;
    for (int c = 1; c <= 255; ++c)
        all += QChar(c);
    const QString s = strEncrypt(all);
    ASSERT_EQ(s.size(), all.size());
    for (QChar c : s) {
        EXPECT_GE(c.unicode(), 32);
        EXPECT_LE(c.unicode(), 159);
    }
    // A character outside the ANSI set reads as "?", as it did there.
    EXPECT_EQ(strEncrypt(QStringLiteral("\u0109x")), strEncrypt(QStringLiteral("?x")));
}

TEST(Password, EveryScrambledCodeSurvivesTheStore)
{
    TempStore store;
    QString codes;
    for (int c = 32; c <= 159; ++c)
        codes += QChar(c);
    for (int i = 0; i < codes.size(); i += 6) {
        const QString part = codes.mid(i, 6);
        RegistryValuePut(QStringLiteral("Password"), part);
        EXPECT_EQ(strRegistryValueGet(QStringLiteral("Password"), QStringLiteral("None")), part) << i;
    }
}
