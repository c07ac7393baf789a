#include "export/encodedwriter.h"

#include "tests/export/plainexport.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/randomtext.h"

#include <QBuffer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::testing;
using panelkit::EncodedWriter;

namespace {

QByteArray ours(const char *codecName, const QStringList &texts)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EncodedWriter writer(QTextCodec::codecForName(codecName), &buffer);
    for (const QString &text : texts) {
        writer.write(text);
        writer.write('\n');
    }
    writer.flush();
    return buffer.data();
}

QByteArray plain(const char *codecName, const QStringList &texts)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plain"));
    {
        PlainTextFile file(path, QIODevice::Truncate, codecName);
        for (const QString &text : texts)
            file << text << "\n";
    }
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// Takes so many bytes and refuses what goes beyond, as a device that is full; then it has room again.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    QByteArray taken;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        const qint64 fitting = qMin(size, m_room);
        taken.append(data, static_cast<int>(fitting));
        m_room = fitting < size ? size : m_room - fitting;
        return fitting;
    }

private:
    qint64 m_room;
};

} // namespace

TEST(EncodedWriter, WritesEveryCharacterAsATextStreamDoes)
{
    QStringList texts;
    for (int unit = 0; unit <= 0xffff; ++unit)
        if (!QChar(static_cast<char16_t>(unit)).isSurrogate() && unit != '\n')
            texts << QString(QChar(static_cast<char16_t>(unit)));
    // In the table the second time.
    for (const char *codecName : {"GBK", "GB2312", "UTF-8", "ISO-8859-1", "Big5"}) {
        SCOPED_TRACE(codecName);
        EXPECT_TRUE(ours(codecName, texts + texts) == plain(codecName, texts + texts));
    }
}

TEST(EncodedWriter, WritesSurrogatesAndInvisibleCharactersAsATextStreamDoes)
{
    const QStringList texts = {
        QStringLiteral("pair \U0001F600 pair \U0001F600\U0001F601"),
        QString(QChar(0xd83d)), // a first half alone
        QString(QChar(0xde00)), // a second half alone
        QString(QChar(0xd83d)) + QLatin1Char('x') + QChar(0xde00),
        QString(QChar(0xde00)) + QChar(0xd83d) + QChar(0xd83d) + QChar(0xde00),
        QStringLiteral("soft\u00adhyphen, zero\u200bwidth, joiner\u200d, mark\ufeff, selector\ufe0f"),
        QStringLiteral("tag \U000E0041, euro \u20ac, missing \u0e01\u05d0, private \ue000\uf8f5"),
        QString(QChar(0)) + QLatin1Char('a') + QChar(0),
    };
    for (const char *codecName : {"GBK", "UTF-8"}) {
        SCOPED_TRACE(codecName);
        EXPECT_EQ(ours(codecName, texts), plain(codecName, texts));
    }
}

TEST(EncodedWriter, TellsAsciiFromItsNeighbours)
{
    const QStringList texts = {QString(8, QChar(0x80)), QString(8, QChar(0x7f)), QString(8, QChar(0)),
                               QStringLiteral("abc\u0080abcd"), QStringLiteral("abc\u0081abcd")};
    for (const char *codecName : {"GBK", "UTF-8", "ISO-8859-1"}) {
        SCOPED_TRACE(codecName);
        EXPECT_EQ(ours(codecName, texts), plain(codecName, texts));
    }
}

TEST(EncodedWriter, KeepsNothingBackFromAFlushOrWhenItGoes)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        EncodedWriter writer(QTextCodec::codecForName("GBK"), &buffer);
        writer.write('a');
        EXPECT_EQ(buffer.data(), QByteArray());
        writer.flush();
        EXPECT_EQ(buffer.data(), QByteArray("a"));
        writer.write(QStringLiteral("bc"));
    }
    EXPECT_EQ(buffer.data(), QByteArray("abc"));
}

TEST(EncodedWriter, WritesRandomTextsAsATextStreamDoes)
{
    RandomText random(6);
    QStringList texts;
    for (int i = 0; i < 20000; ++i)
        texts << random.ofAnything(random.number(0, 30));
    texts << random.ofAnything(200000);
    EXPECT_TRUE(ours("GBK", texts) == plain("GBK", texts));
}

TEST(EncodedWriter, WritesTextsThatEndAnywhereInItsBuffer)
{
    QStringList texts;
    for (int length = 40950; length < 40970; ++length)
        texts << QString(length, QChar(0x6e29)) << QString(2 * length, QLatin1Char('x'))
              << QString(length, QChar(0x6e29)) + QStringLiteral("\U0001F600");
    EXPECT_TRUE(ours("GBK", texts) == plain("GBK", texts));
}

TEST(EncodedWriter, EndsWithAWriteThatTheDeviceRefuses)
{
    FullDevice device(100000);
    {
        EncodedWriter writer(QTextCodec::codecForName("GBK"), &device);
        for (int i = 0; i < 50000; ++i)
            writer.write(QString::number(i).rightJustified(6, QLatin1Char('0')));
    }
    ASSERT_EQ(device.taken.size(), 100000);
    EXPECT_TRUE(device.taken.endsWith("0166650166")); // no gap, nothing behind
}

TEST(EncodedWriter, AllocatesNothingForWhatItHasWrittenBefore)
{
    QBuffer buffer;
    buffer.buffer().reserve(1 << 20);
    buffer.open(QIODevice::WriteOnly);
    EncodedWriter writer(QTextCodec::codecForName("GBK"), &buffer);
    const QString text = QString::fromUtf8("温度 23.5 °C，正常");
    writer.write(text);
    const AllocationCounter counter;
    for (int i = 0; i < 1000; ++i)
        writer.write(text);
    EXPECT_EQ(counter.count(), 0);
}
