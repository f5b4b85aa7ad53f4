// How NC files become lines and how a corrected text goes back to disk.
#include "nc/textfile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QStringList Lines(const QByteArray &bytes)
{
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/f.brx");
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(bytes);
    f.close();
    TextLineInput in;
    EXPECT_EQ(in.Open(path), TextLineInput::OpenResult::Ok);
    QStringList out;
    while (!in.AtEnd())
        out << in.LineInput();
    EXPECT_TRUE(in.LineInput().isEmpty());   // past the end: empty, no fault
    return out;
}

} // namespace

// CR, LF and CR LF as the reader sees them are in the reader's own tests; here the edges.
TEST(TextFile, LineEnds)
{
    EXPECT_EQ(Lines(""), QStringList());
    EXPECT_EQ(Lines("a"), QStringList{"a"});
    EXPECT_EQ(Lines("a\r\n\r\n"), QStringList({"a", ""}));
    EXPECT_EQ(Lines("a\n\rb"), QStringList({"a", "", "b"}));   // LF then CR: two ends

    // A CR LF split across two reads of the disk is still one line end; a CR at the end of
    // a read followed by anything else is a line end of its own.
    const QByteArray a(65535, 'a');
    EXPECT_EQ(Lines(a + "\r\nb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\rb"), QStringList({QString(65535, u'a'), "b"}));
    EXPECT_EQ(Lines(a + "\r"), QStringList({QString(65535, u'a')}));
    const QByteArray big(300000, 'x');
    EXPECT_EQ(Lines("1\r\n" + big + "\r\n2"), QStringList({"1", QString(300000, u'x'), "2"}));
}

TEST(TextFile, EveryByteIsOneCharacter)
{
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        if (b != '\r' && b != '\n')
            all.append(static_cast<char>(b));
    const QStringList lines = Lines(all);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0], QString::fromLatin1(all));

    // Through the correction window and back: the same bytes.
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/f.brx");
    QString error;
    ASSERT_TRUE(blnTextFileSave(path, lines[0], error)) << error.toStdString();
    QString text;
    ASSERT_TRUE(blnTextFileLoad(path, text));
    EXPECT_EQ(text, lines[0]);
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    EXPECT_EQ(f.readAll(), all);
}

TEST(TextFile, SaveWritesCrLfAtomically)
{
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/f.brx");
    QString error;
    const QString text = QStringLiteral("a\nb\r\nc\rd") + QChar(0x2029) + QStringLiteral("e") + QChar(0x2028) +
                         QStringLiteral("\u20ac\n");
    ASSERT_TRUE(blnTextFileSave(path, text, error));
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    EXPECT_EQ(f.readAll(), QByteArray("a\r\nb\r\nc\r\nd\r\ne\r\n?\r\n"));
    f.close();

    QString loaded;
    ASSERT_TRUE(blnTextFileLoad(path, loaded));
    EXPECT_EQ(loaded, QStringLiteral("a\nb\nc\nd\ne\n?\n"));

    // A folder that isn't there: nothing written, the reason told.
    EXPECT_FALSE(blnTextFileSave(dir.path() + QStringLiteral("/gone/f.brx"), text, error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(blnTextFileLoad(dir.path() + QStringLiteral("/gone/f.brx"), loaded));
    EXPECT_FALSE(blnTextFileLoad(dir.path(), loaded));
}
