#include "register/textassign.h"

#include "tests/support/allocationcounter.h"

#include <gtest/gtest.h>

using panelkit::assignText;
using panelkit::testing::AllocationCounter;

TEST(TextAssign, WritesTheTextWhateverStoodThere)
{
    for (const char *before : {"", "1", "12", "123", "124", "12345678901234567890"}) {
        SCOPED_TRACE(before);
        QString out = QString::fromLatin1(before);
        assignText(out, "123");
        EXPECT_EQ(out, QStringLiteral("123"));
        EXPECT_EQ(*(out.constData() + 3), QChar(0));
        assignText(out, "A", QStringLiteral("123"));
        EXPECT_EQ(out, QStringLiteral("A123"));
        assignText(out, "");
        EXPECT_TRUE(out.isEmpty());
    }
}

TEST(TextAssign, ReadsLatin1)
{
    QString out;
    assignText(out, "\xB0\x43");
    EXPECT_EQ(out, QString::fromUtf8("\xC2\xB0\x43"));
    const QString copy = out;
    assignText(out, "\xB0\x43");
    EXPECT_EQ(out.constData(), copy.constData()) << "recognised as the same";
}

TEST(TextAssign, LeavesAnEqualTextAloneEvenWhenItIsShared)
{
    QString out = QStringLiteral("12") + QStringLiteral("34");
    const QString copy = out;
    const AllocationCounter counter;
    assignText(out, "1234");
    assignText(out, "12", QStringLiteral("34"));
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(out.constData(), copy.constData()) << "still one text";
}

TEST(TextAssign, NeverWritesIntoACopyOfTheString)
{
    QString out = QString::fromLatin1("1234");
    const QString copy = out;
    assignText(out, "12");
    EXPECT_EQ(copy, QStringLiteral("1234"));
    EXPECT_EQ(out, QStringLiteral("12"));
}

TEST(TextAssign, NeverWritesIntoForeignCharacters)
{
    const QChar characters[] = {QLatin1Char('1'), QLatin1Char('2'), QLatin1Char('3')};
    for (const char *text : {"", "9", "789", "7890"}) {
        SCOPED_TRACE(text);
        QString out = QString::fromRawData(characters, 3);
        assignText(out, text);
        EXPECT_EQ(out, QString::fromLatin1(text));
        EXPECT_EQ(characters[0], QLatin1Char('1'));
    }
}

TEST(TextAssign, OverwritesInPlaceWhereThereIsRoom)
{
    QString out;
    out.reserve(10);
    const QChar *place = out.constData();
    const AllocationCounter counter;
    for (const char *text : {"1", "1234567890", "", "12"})
        assignText(out, text);
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(out.constData(), place);
}

TEST(TextAssign, AllocatesOnceWithTheRoomThatIsAskedFor)
{
    QString out;
    {
        const AllocationCounter counter;
        assignText(out, "1", 30);
        EXPECT_EQ(counter.count(), 1);
    }
    const AllocationCounter counter;
    assignText(out, "123456789012345678901234567890");
    EXPECT_EQ(counter.count(), 0);
}

TEST(TextAssign, TakesASharedStringApartWithOneAllocation)
{
    QString out = QString::fromLatin1("1234");
    const QString copy = out;
    const AllocationCounter counter;
    assignText(out, "12", 3);
    EXPECT_EQ(counter.count(), 1);
}

TEST(TextAssign, EmptiesASharedStringWithoutAnAllocation)
{
    QString out = QString::fromLatin1("1234");
    const QString copy = out;
    const AllocationCounter counter;
    assignText(out, "");
    EXPECT_EQ(counter.count(), 0);
    EXPECT_TRUE(out.isEmpty());
}
