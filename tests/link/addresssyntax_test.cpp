#include "link/addresssyntax.h"
#include "link/utf8text.h"

#include <QByteArray>
#include <QStringList>

#include <gtest/gtest.h>

#include <cstring>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

TEST(AddressSyntax, TakesBlockTextsApart)
{
    const struct
    {
        const char *block;
        bool hasLinkPrefix;
        const char *linkPrefix, *name;
    } rows[] = {
        {"DM", false, "", "DM"},
        {"2/DM", true, "2", "DM"},
        {"2/5#DM", true, "2", "DM"},
        {"5#DM", false, "", "DM"},
        {"1/2/DM", true, "1", "DM"},
        {"1/DM#", true, "1", ""},
        {"a#1/DM", true, "a#1", "DM"},
        {"/", true, "", ""},
        {"#", false, "", ""},
        {"", false, "", ""},
        {"1#2#3/4#5#6", true, "1#2#3", "6"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.block);
        const QString block = text(row.block);
        const panelkit::BlockText parts = panelkit::splitBlockText(block);
        EXPECT_EQ(parts.hasLinkPrefix, row.hasLinkPrefix);
        EXPECT_EQ(block.mid(parts.linkPrefix.offset, parts.linkPrefix.length), text(row.linkPrefix));
        EXPECT_EQ(block.mid(parts.name.offset, parts.name.length), text(row.name));
    }
}

TEST(AddressSyntax, FindsWholeWordsOfAList)
{
    const struct
    {
        const char *word, *list;
        bool found;
    } rows[] = {
        {"D", "D", true},     {"D", "M,D,X", true}, {"D", "DM,MD", false}, {"", "", true},
        {"", "D", false},     {"", "D,", true},     {"", ",D", true},      {"", "D,,M", true},
        {"D", "D ,M", false}, {"D", "", false},     {"D,M", "D,M", false}, {"X", "M,D,X", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.word) + " in " + row.list);
        EXPECT_EQ(panelkit::isListed(text(row.word), panelkit::whole(text(row.word)), text(row.list)),
                  row.found);
    }
}

TEST(AddressSyntax, ReadsIntegersAsTheToolkitDoes)
{
    const struct
    {
        const char *number;
        bool isInteger;
        int value;
    } rows[] = {
        {"0", true, 0},
        {"007", true, 7},
        {"999999999", true, 999999999},
        {"2147483647", true, 2147483647},
        {"-2147483648", true, -2147483647 - 1},
        {"2147483648", false, 0},
        {"00000000000000000012", true, 12},
        {"-5", true, -5},
        {"+5", true, 5},
        {" 5 ", true, 5},
        {"", false, 0},
        {"-", false, 0},
        {"5 6", false, 0},
        {"1,000", false, 0},
        {"1e3", false, 0},
        {"0x1f", false, 0},
        {"1/", false, 0},
        {"1:", false, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.number);
        int value = 99;
        const QString number = text("<") + text(row.number) + text(">");
        EXPECT_EQ(panelkit::readInteger(number, {1, static_cast<int>(std::strlen(row.number))}, value),
                  row.isInteger);
        EXPECT_EQ(value, row.value);
        bool isInteger = !row.isInteger;
        EXPECT_EQ(text(row.number).toInt(&isInteger, 10), row.value) << "the toolkit itself";
        EXPECT_EQ(isInteger, row.isInteger) << "the toolkit itself";
    }
}

TEST(AddressSyntax, ReadsThePartOfATextAndNothingBesideIt)
{
    const QString around = text("12345678");
    const QString part =
        QString::fromRawData(around.constData() + 4, 4); // "5678", with digits in front of it
    int value = 0;
    EXPECT_TRUE(panelkit::readInteger(part, {2, 2}, value));
    EXPECT_EQ(value, 78);
}

TEST(Utf8Text, IsWhatTheToolkitMakesOfTheText)
{
    QString lone = text("a");
    lone.append(QChar(0xD800));
    QStringList texts;
    texts << QString() << text("LW") << QString::fromUtf8("é") << QString::fromUtf8("一号车间")
          << QString::fromUtf8("😀 face") << lone << QString(QChar(0x7FF)) << QString(QChar(0x800))
          << QString(QChar(0xFFFF)) << QString(QChar(0x80)) << QString::fromUtf8("¨è")
          << QString::fromUtf8("😁");
    for (int length = 28; length < 100; ++length)
        texts << QString(length, QLatin1Char('x')) << QString(length, QChar(0x4E00));
    for (const QString &candidate : texts) {
        SCOPED_TRACE(candidate.toUtf8().toHex().constData());
        EXPECT_STREQ(panelkit::Utf8Text(candidate).constData(), candidate.toUtf8().constData());
    }
}

TEST(Utf8Text, EndsAtItsFirstNulForItsReader)
{
    QString holed = text("ab");
    holed.insert(1, QChar(0));
    EXPECT_STREQ(panelkit::Utf8Text(holed).constData(), "a");
}
