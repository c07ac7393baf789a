#include "network/panelip.h"
#include "tests/support/allocationcounter.h"

#include <QRegExp>
#include <QString>

#include <gtest/gtest.h>

#include <random>

namespace {

using Random = std::mt19937;

int below(Random &random, int bound)
{
    return static_cast<int>(random() % static_cast<unsigned int>(bound));
}

// Four numbers near the borders of what is allowed, with leading zeros.
QString plausibleAddress(Random &random)
{
    QString text;
    for (int part = 0; part < 4; ++part) {
        if (part > 0)
            text += QLatin1Char('.');
        const int digits = 1 + below(random, 3);
        const int bound = below(random, 4) == 0 ? 1000 : 256;
        text += QStringLiteral("%1").arg(below(random, bound), digits, 10, QLatin1Char('0'));
    }
    return text;
}

QChar anyCharacter(Random &random)
{
    // Digits, dots, blanks, letters; digits and stops of other scripts, and halves of a mathematical one.
    static const char16_t characters[] = {
        u'0',   u'1',   u'2',   u'3',   u'4',   u'5',   u'6',   u'7',   u'8',   u'9',   u'0',   u'1',
        u'2',   u'5',   u'.',   u'.',   u'.',   u'\0',  u'\n',  u'\r',  u'\t',  u' ',   u'-',   u'+',
        u'/',   u':',   u',',   u'a',   u'e',   u'x',   u'_',   0x0660, 0x0663, 0x06f5, 0x0967, 0xff11,
        0xff0e, 0x3002, 0x00b2, 0x2460, 0x00a0, 0x200b, 0xfeff, 0xd835, 0xdfce};
    return QChar(characters[below(random, static_cast<int>(std::size(characters)))]);
}

QString disturbed(QString text, Random &random)
{
    for (int changes = 1 + below(random, 2); changes > 0; --changes) {
        const int position = below(random, static_cast<int>(text.size()) + 1);
        switch (below(random, 3)) {
        case 0:
            text.insert(position, anyCharacter(random));
            break;
        case 1:
            text.remove(position, 1);
            break;
        default:
            text.replace(position, 1, anyCharacter(random));
        }
    }
    return text;
}

QString anyText(Random &random)
{
    QString text;
    for (int length = below(random, 18); length > 0; --length)
        text += anyCharacter(random);
    return text;
}

} // namespace

TEST(CheckIpAddr, AcceptsAddresses)
{
    for (const char *text : {"192.168.1.1", "0.0.0.0", "255.255.255.255", "010.001.0.09", "000.000.000.000",
                             "1.2.3.4", "199.249.250.099", "255.0.255.0"})
        EXPECT_TRUE(checkIPAddr(QLatin1String(text))) << text;
}

TEST(CheckIpAddr, RejectsWhatIsNoAddress)
{
    for (const char *text :
         {"256.1.1.1",   "1.256.1.1", "1.1.260.1",  "1.1.1.300",  "1.2.3",      "1.2.3.4.5", "1.2.3.4 ",
          " 1.2.3.4",    "",          " ",          ".",          "...",        "1..2.3",    ".1.2.3",
          "1.2.3.",      "1.2.3.4.",  "0001.2.3.4", "1.2.3.0004", "1.2.3.-4",   "+1.2.3.4",  "1.2.3.4\n",
          "1.2.3.4\r\n", "1,2,3,4",   "a.b.c.d",    "1.2.3.0x4",  "1.2.3.4/24", "999.1.1.1"})
        EXPECT_FALSE(checkIPAddr(QLatin1String(text))) << text;
}

TEST(CheckIpAddr, RejectsDigitsOfOtherScriptsAndTextsThatGoOnBehindANul)
{
    EXPECT_FALSE(checkIPAddr(QString::fromUtf8("1.2.3.\xd9\xa4")));     // Arabic four
    EXPECT_FALSE(checkIPAddr(QString::fromUtf8("\xef\xbc\x91.2.3.4"))); // fullwidth one
    EXPECT_FALSE(checkIPAddr(QString::fromUtf8("1\xef\xbc\x8e"
                                               "2.3.4"))); // fullwidth full stop
    EXPECT_FALSE(checkIPAddr(QStringLiteral("1.2.3.4") + QChar(0)));
    EXPECT_FALSE(checkIPAddr(QStringLiteral("1.2.3.4") + QChar(0) + QStringLiteral("5")));
    EXPECT_FALSE(checkIPAddr(QString()));
}

TEST(CheckIpAddr, AgreesWithTheExpressionOnEveryNumber)
{
    const QRegExp expression(QStringLiteral("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                                            "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    for (int digits = 1; digits <= 4; ++digits) {
        for (int number = 0; number < 10000; ++number) {
            const QString part = QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
            const QString texts[] = {part + QStringLiteral(".0.0.0"), QStringLiteral("0.0.0.") + part};
            for (const QString &text : texts)
                ASSERT_EQ(checkIPAddr(text), expression.exactMatch(text)) << qPrintable(text);
        }
    }
}

TEST(CheckIpAddr, AgreesWithTheExpressionOnAMillionGeneratedTexts)
{
    const QRegExp expression(QStringLiteral("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                                            "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    Random random(20240229);
    int accepted = 0;
    int rejected = 0;
    for (int i = 0; i < 1200000; ++i) {
        QString text;
        switch (i % 4) {
        case 0:
            text = plausibleAddress(random);
            break;
        case 1:
        case 2:
            text = disturbed(plausibleAddress(random), random);
            break;
        default:
            text = anyText(random);
        }
        const bool expected = expression.exactMatch(text);
        ASSERT_EQ(checkIPAddr(text), expected) << "text " << i << ": " << qPrintable(text);
        ++(expected ? accepted : rejected);
    }
    EXPECT_GT(accepted, 200000);
    EXPECT_GT(rejected, 200000);
}

TEST(CheckIpAddr, DoesNotAllocate)
{
    const QString good = QStringLiteral("192.168.100.254");
    const QString bad = QStringLiteral("192.168.100.256");
    const panelkit::testing::AllocationCounter counter;
    const bool acceptsGood = checkIPAddr(good);
    const bool acceptsBad = checkIPAddr(bad);
    const long allocations = counter.count();
    EXPECT_TRUE(acceptsGood);
    EXPECT_FALSE(acceptsBad);
    EXPECT_EQ(allocations, 0);
}
