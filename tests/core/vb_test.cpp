#include "core/vb.h"

#include <gtest/gtest.h>

using namespace vb;

namespace {
int32_t faultNumber(const std::function<void()> &f)
{
    try {
        f();
    } catch (const Fault &e) {
        return e.number();
    }
    return 0;
}
} // namespace

TEST(Vb, RoundingIsHalfToEven)
{
    const std::pair<double, int16_t> cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-1.5, -2}, {-2.5, -2}, {2.5001, 3}};
    for (const auto &[in, out] : cases)
        EXPECT_EQ(CInt(in), out) << in;
    EXPECT_EQ(CLng(72.0 * 0.5 + 0.5), 36);
}

TEST(Vb, SixteenBitOverflowIsFaultSix)
{
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(CInt(-32768.0), -32768);
    EXPECT_EQ(faultNumber([] { CInt(32767.5); }), kOverflow);   // rounds to 32768
    EXPECT_EQ(faultNumber([] { Int16(40000); }), kOverflow);
    EXPECT_EQ(faultNumber([] { CLng(3e9); }), kOverflow);
    EXPECT_EQ(faultNumber([] { CInt(std::nan("")); }), kOverflow);
    try {
        CInt(1e6);
    } catch (const Fault &e) {
        EXPECT_EQ(e.description(), QStringLiteral("Overflow"));
    }
}

TEST(Vb, TableSubscriptOutsideIsFaultNine)
{
    Table<int> t;
    EXPECT_EQ(faultNumber([&] { t(1); }), kSubscript);   // undimensioned
    t.Redim(3);
    t(3) = 7;
    EXPECT_EQ(t(1), 0);   // new elements are zero
    EXPECT_EQ(faultNumber([&] { t(0); }), kSubscript);
    EXPECT_EQ(faultNumber([&] { t(4); }), kSubscript);
    t.Redim(5);           // keeps what is there
    EXPECT_EQ(t(3), 7);
    t.Erase();
    EXPECT_EQ(t.size(), 0);
}

TEST(Vb, ValIsTheLeadingNumberParse)
{
    struct Case { const char *text; double value; };
    const Case cases[] = {
        {"1.2.3", 1.2}, {"-", 0.0}, {"abc", 0.0}, {"1-2", 1.0}, {"  42", 42.0}, {"-3.75mm", -3.75},
        {"-.5", -0.5}, {"1 2 3", 123.0}, {"12|End mill", 12.0}, {"1e", 1.0}, {"1E-2x", 0.01},
        {"+7", 7.0}, {"&HFFFF", -1.0}, {"\t9", 9.0},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(Val(QString::fromLatin1(c.text)), c.value) << c.text;
}

TEST(Vb, FormatsAsShown)
{
    EXPECT_EQ(Format000(1.23456f), QStringLiteral("1.235"));
    EXPECT_EQ(Format000(-2000.0f), QStringLiteral("-2000.000"));
    EXPECT_EQ(Format000(-0.0625), QStringLiteral("-0.063"));   // an exact half goes away from zero
    EXPECT_EQ(Format000(999.9999), QStringLiteral("1000.000"));
    EXPECT_EQ(Format000(-0.0001), QStringLiteral("0.000"));   // no minus sign on zero
    EXPECT_EQ(Format00(1), QStringLiteral("01"));
    EXPECT_EQ(Format000i(7), QStringLiteral("007"));
    EXPECT_EQ(FormatGeneral(0.1f), QStringLiteral("0.1"));
    EXPECT_EQ(FormatGeneral(1e20), QStringLiteral("1E+20"));
}

TEST(Vb, StringFunctionsKeepTheirRules)
{
    EXPECT_EQ(Trim(QStringLiteral("  a b  ")), QStringLiteral("a b"));
    EXPECT_EQ(Trim(QStringLiteral("\ta\t")), QStringLiteral("\ta\t"));   // tabs stay
    EXPECT_EQ(Left(QStringLiteral("abc"), 5), QStringLiteral("abc"));
    EXPECT_EQ(faultNumber([] { Left(QStringLiteral("abc"), -1); }), kInvalidCall);
    EXPECT_EQ(Mid(QStringLiteral("abcdef"), 3, 2), QStringLiteral("cd"));
    EXPECT_EQ(Mid(QStringLiteral("abc"), 9), QString());
    EXPECT_EQ(faultNumber([] { Mid(QStringLiteral("abc"), 0); }), kInvalidCall);
    EXPECT_EQ(InStr(QStringLiteral("a|b|c"), QStringLiteral("|")), 2);
    EXPECT_EQ(InStr(3, QStringLiteral("a|b|c"), QStringLiteral("|")), 4);
    EXPECT_EQ(Sgn(-0.1), -1);
    EXPECT_EQ(Sgn(0.0), 0);
}
