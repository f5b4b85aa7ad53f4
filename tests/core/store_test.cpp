#include "core/state.h"
#include "core/store.h"
#include "support/test_support.h"

#include <QFile>

#include <gtest/gtest.h>

TEST(Store, ValuesRoundTripWithExactNames)
{
    TempStore store;
    RegistryValuePut(QStringLiteral("CNC File Path"), QStringLiteral("/home/op/parts"));
    RegistryValuePut(QStringLiteral("Tool01"), QStringLiteral("12|End mill|6.000|-2000.000"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool01"), QString()), QStringLiteral("12|End mill|6.000|-2000.000"));
    // Names keep their case: another case is another value.
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("tool01"), QStringLiteral("none")), QStringLiteral("none"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Missing"), QStringLiteral("dflt")), QStringLiteral("dflt"));
}

TEST(Store, ReadLimitIsSeventyNineCharacters)
{
    TempStore store;
    QString s79(79, u'a'), s80(80, u'b');
    RegistryValuePut(QStringLiteral("CNC File Path"), s79);
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("CNC File Path"), QStringLiteral("d")), s79);
    RegistryValuePut(QStringLiteral("CNC File Path"), s80);   // written, but not found again
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("CNC File Path"), QStringLiteral("d")), QStringLiteral("d"));
}

TEST(Store, DefaultsEmptyTextIsNotTheDefaultAndOnlyYesIsTrue)
{
    TempStore store;
    ReadStartSettings();   // a fresh installation: reading writes nothing
    EXPECT_FALSE(QFile::exists(store.path()));
    EXPECT_TRUE(gblnKeepFiles);
    RegistryValuePut(QStringLiteral("Set"), QString());
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Set"), QStringLiteral("No")), QString());
    RegistryValuePut(QStringLiteral("Online"), QStringLiteral("yes"));
    RegistryValuePut(QStringLiteral("ShowTime"), QStringLiteral("Yes "));
    RegistryValuePut(QStringLiteral("BacklashX"), QStringLiteral("2.5"));
    RegistryValuePut(QStringLiteral("BacklashY"), QStringLiteral("abc"));
    RegistryValuePut(QStringLiteral("RapidSpeed"), QStringLiteral("612.5"));
    ReadStartSettings();
    EXPECT_FALSE(gblnOnline);       // "yes" is not "Yes"
    EXPECT_FALSE(gblnShowTime);     // nor is "Yes "
    EXPECT_TRUE(gblnRapidUseDot);   // absent: the default "Yes"
    EXPECT_EQ(gintBacklashX, 2);    // half to even
    EXPECT_EQ(gintBacklashY, 0);
    EXPECT_FLOAT_EQ(gsngRapidSpeed, 612.5f);
}

TEST(Store, UnwritableStoreLosesTheValueSilently)
{
    TempStore store;
    QFile blocker(store.dir() + QStringLiteral("/file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.write("not a folder");
    blocker.close();
    // The store's folder is a file: nothing can be written there, even as root.
    QString unwritable = store.dir() + QStringLiteral("/file/Brantok.conf");
    qputenv("BRANTOK_STORE", unwritable.toLocal8Bit());
    RegistryValuePut(QStringLiteral("Online"), QStringLiteral("Yes"));   // no fault, no message
    EXPECT_FALSE(QFile::exists(unwritable));
    QFile check(store.dir() + QStringLiteral("/file"));
    ASSERT_TRUE(check.open(QIODevice::ReadOnly));
    EXPECT_EQ(check.readAll(), QByteArray("not a folder"));
}
