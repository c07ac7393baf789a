#include "simulator/window/addresspage.h"

#include "tests/simulator/window/pagefixture.h"

#include <QAbstractItemView>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

class AddressPageTest : public PageOnEveryScreen
{
protected:
    void SetUp() override
    {
        PageOnEveryScreen::SetUp();
        open<AddressPage>();
    }

    void expectVerdict(const char *verdict, const char *part) const
    {
        EXPECT_EQ(textOf("verdict"), QLatin1String(verdict));
        EXPECT_EQ(partOf("verdict"), QLatin1String(part));
    }

    // Opens the list and taps a row of it, as a finger does.
    void chooseLink(int row)
    {
        touch("link");
        auto *const combo = child<QComboBox>("link");
        WAIT_FOR(combo->view()->isVisible());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(combo->view()->window()));
        const QRect place = combo->view()->visualRect(combo->model()->index(row, 0));
        EXPECT_GE(place.height(), panelkit::fingerHeight);
        // A list that has just opened takes no release of a finger for a choice.
        QTest::qWait(QApplication::doubleClickInterval() + 50);
        tap(combo->view()->viewport(), place.center());
        WAIT_FOR(combo->currentIndex() == row);
    }
};

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(AddressPageTest);

TEST_P(AddressPageTest, SaysWithEachCharacterWhatBecomesOfTheAddress)
{
    expectVerdict("Type a block and a number.", "hint");
    type("block", QStringLiteral("4x"));
    touch("number");
    press(QStringLiteral("7"));
    expectVerdict("Valid", "notice");
    EXPECT_EQ(textOf("shown"), QStringLiteral("4x7"));
    EXPECT_EQ(textOf("index"), QStringLiteral("6"));
    EXPECT_EQ(textOf("resolvedLink"), QStringLiteral("Line PLC"));
    EXPECT_EQ(textOf("station"), QStringLiteral("1"));
    press(QStringLiteral("0000"));
    expectVerdict("Refused", "refusal");
    EXPECT_EQ(textOf("reason"), QStringLiteral("4x has no number 70000. 4x takes 1 to 65536."));
    EXPECT_FALSE(child("index")->isVisible());
    QTest::keyClick(screen.windowHandle(), Qt::Key_Backspace);
    expectVerdict("Valid", "notice");
    EXPECT_EQ(textOf("shown"), QStringLiteral("4x7000"));
    press(QStringLiteral("x"));
    expectVerdict("Refused", "refusal");
    EXPECT_EQ(textOf("reason"), QStringLiteral("\"7000x\" is no number of 4x. 4x takes 1 to 65536."));
}

TEST_P(AddressPageTest, TakesBitAndWordByATap)
{
    type("block", QStringLiteral("LB"));
    type("number", QStringLiteral("10"));
    expectVerdict("Refused", "refusal");
    EXPECT_EQ(textOf("reason"),
              QStringLiteral("LB holds bits. Words of the internal storage are in LW and RWI."));
    touch("bit");
    expectVerdict("Valid", "notice");
    EXPECT_EQ(textOf("shown"), QStringLiteral("LB10"));
    EXPECT_EQ(textOf("resolvedLink"), QStringLiteral("Internal storage area"));
    EXPECT_EQ(textOf("station"), QStringLiteral("none"));
    touch("word");
    expectVerdict("Refused", "refusal");
}

TEST_P(AddressPageTest, HandsTheKeypadWhatItSaysBehindTheKeys)
{
    const auto note = [this](const char *field) {
        return child(field)->property("keypadNote").toString();
    };
    type("block", QStringLiteral("4x"));
    EXPECT_EQ(note("block"), QStringLiteral("Type a block and a number."));
    type("number", QStringLiteral("70000"));
    EXPECT_EQ(note("number"), textOf("reason"));
    EXPECT_EQ(note("length"), textOf("reason"));
    type("number", QStringLiteral("7"));
    EXPECT_EQ(note("number"), QStringLiteral("Valid"));
}

TEST_P(AddressPageTest, MarksTheFieldThatIsAtFault)
{
    type("block", QStringLiteral("LW"));
    type("number", QStringLiteral("10"));
    EXPECT_EQ(partOf("block"), QStringLiteral("notice"));
    EXPECT_EQ(partOf("number"), QStringLiteral("notice"));
    type("number", QStringLiteral("65536"));
    EXPECT_EQ(partOf("block"), QStringLiteral("hint"));
    EXPECT_EQ(partOf("number"), QStringLiteral("refusal"));
    type("block", QStringLiteral("XY"));
    EXPECT_EQ(partOf("block"), QStringLiteral("refusal"));
    EXPECT_EQ(partOf("number"), QStringLiteral("hint"));
    type("length", QStringLiteral("x"));
    EXPECT_EQ(partOf("block"), QStringLiteral("hint"));
    EXPECT_EQ(partOf("length"), QStringLiteral("refusal"));
}

TEST_P(AddressPageTest, TakesTheLengthIntoAccount)
{
    type("block", QStringLiteral("LW"));
    type("number", QStringLiteral("65535"));
    expectVerdict("Valid", "notice");
    type("length", QStringLiteral("9"));
    expectVerdict("Refused", "refusal");
    EXPECT_EQ(textOf("reason"), QStringLiteral("LW takes the numbers 0 to 65528 for 9 registers in a row."));
    type("length", QStringLiteral("0"));
    expectVerdict("Refused", "refusal");
    EXPECT_EQ(textOf("reason"), QStringLiteral("The length is a whole number from 1 on."));
}

TEST_P(AddressPageTest, StartsFromABlockOfTheLinkThatIsChosen)
{
    chooseLink(1);
    EXPECT_EQ(child<QLineEdit>("block")->text(), QStringLiteral("2/2#4x"));
    type("number", QStringLiteral("1"));
    expectVerdict("Passes unchecked", "hint");
    chooseLink(2);
    EXPECT_EQ(child<QLineEdit>("block")->text(), QStringLiteral("3/MB"));
    expectVerdict("Valid", "notice");
    EXPECT_EQ(textOf("shown"), QStringLiteral("3/MB1"));
    EXPECT_EQ(textOf("station"), QStringLiteral("4"));
    chooseLink(3);
    EXPECT_EQ(child<QLineEdit>("block")->text(), QStringLiteral("LW"));
    expectVerdict("Valid", "notice");
}

TEST_P(AddressPageTest, SaysWhatPassesWithoutACheck)
{
    type("block", QStringLiteral("2/4x"));
    type("number", QStringLiteral("1"));
    expectVerdict("Passes unchecked", "hint");
    EXPECT_TRUE(textOf("reason").startsWith(QStringLiteral("Link 2 (\"Packing PLC\") is not asked")));
    EXPECT_FALSE(child("index")->isVisible());
}

TEST_P(AddressPageTest, ShowsATextWithMarkupAsItWasTyped)
{
    type("block", QStringLiteral("<b>x"));
    type("number", QStringLiteral("1"));
    expectVerdict("Refused", "refusal");
    EXPECT_TRUE(textOf("reason").contains(QStringLiteral("\"<b>x\"")));
    EXPECT_EQ(child<QLabel>("reason")->textFormat(), Qt::PlainText);
}

TEST_P(AddressPageTest, ChangesItsLanguageWhileAnAddressStandsThere)
{
    type("number", QStringLiteral("70000"));
    expectVerdict("Refused", "refusal");
    speak("zh_CN");
    EXPECT_EQ(page->title(), QStringLiteral("地址校验"));
    EXPECT_EQ(textOf("verdict"), QStringLiteral("地址无效"));
    EXPECT_EQ(child<QLineEdit>("number")->text(), QStringLiteral("70000"));
    EXPECT_EQ(child("number")->accessibleName(), QStringLiteral("编号"));
    speak("en");
    expectVerdict("Refused", "refusal");
}

TEST_P(AddressPageTest, CutsNothingOffInEitherLanguage)
{
    for (const char *code : {"en", "zh_CN"}) {
        SCOPED_TRACE(code);
        speak(code);
        for (const char *number : {"7", "70000"}) {
            type("number", QLatin1String(number));
            expectWellLaidOut();
        }
    }
}
