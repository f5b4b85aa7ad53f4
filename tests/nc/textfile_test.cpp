// How NC files become lines and how a corrected text goes back to disk.
#include "nc/textfile.h"
#include "support/test_support.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QStringList Lines(const QByteArray &bytes)
{
    QTemporaryDir dir;
    TextLineInput in;
    EXPECT_EQ(in.Open(WriteFile(dir.path() + QStringLiteral("/f.brx"), bytes)), TextLineInput::OpenResult::Ok);
    QStringList out;
    while (!in.AtEnd())
        out << in.LineInput();
    EXPECT_TRUE(in.LineInput().isEmpty());   // past the end: empty, no fault
    return out;
}

} // namespace

TEST(TextFile, LineEnds)
{
    EXPECT_EQ(Lines(""), QStringList());
    EXPECT_EQ(Lines("a\r\n\r\n"), QStringList({"a", ""}));
    EXPECT_EQ(Lines("a\rb\r"), QStringList({"a", "b"}));
    EXPECT_EQ(Lines("a\nb"), QStringList({"a", "b"}));
    EXPECT_EQ(Lines("a\n\rb"), QStringList({"a", "", "b"}));   // LF then CR: two ends

    // A CR LF split across two reads of the disk is still one line end; a CR at the end of
    // a read followed by anything else is a line end of its own.
    const QByteArray a(65535, 'a');
    EXPECT_EQ(Lines(a + "\r\nb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\rb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\r"), QStringList({QString(65535, u'a')}));
}

// Every byte but the line ends is one character, through the correction window and back.
TEST(TextFile, EveryByteIsOneCharacterAndSavesAreCrLf)
{
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        if (b != '\r' && b != '\n')
            all.append(static_cast<char>(b));
    const QStringList lines = Lines(all);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0], QString::fromLatin1(all));
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/f.brx");
    QString error, text;
    ASSERT_TRUE(blnTextFileSave(path, lines[0], error)) << error.toStdString();
    EXPECT_EQ(ReadFileBytes(path), all);

    text = QStringLiteral("a\nb\r\nc\rd") + QChar(0x2029) + QStringLiteral("e") + QChar(0x2028) + QStringLiteral("\u20ac\n");
    ASSERT_TRUE(blnTextFileSave(path, text, error));
    EXPECT_EQ(ReadFileBytes(path), QByteArray("a\r\nb\r\nc\r\nd\r\ne\r\n?\r\n"));
    ASSERT_TRUE(blnTextFileLoad(path, text));
    EXPECT_EQ(text, QStringLiteral("a\nb\nc\nd\ne\n?\n"));

    // A folder that isn't there: nothing written, the reason told.
    EXPECT_FALSE(blnTextFileSave(dir.path() + QStringLiteral("/gone/f.brx"), text, error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(blnTextFileLoad(dir.path() + QStringLiteral("/gone/f.brx"), text));
    EXPECT_FALSE(blnTextFileLoad(dir.path(), text));
}
