#include "macro/events.h"
#include "platform/hmi_event.h"
#include "simulator/window/panelruntime.h"
#include "simulator/window/runtimenotices.h"
#include "tests/simulator/window/cutofftexts.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include "widgets/hmimessagebox.h"
#include "widgets/mymessagebox.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

class RuntimeNoticesScreen : public PanelWindowOnEveryScreen
{
protected:
    static void post(const char *text, int seconds, int needsAnswer)
    {
        UHmiEvent::hmiEventPost(new UMessageBoxEvent(QLatin1String(text), seconds, needsAnswer), nullptr);
    }

    QDialog *box() const { return window->notices().box(); }

    HMIMessageBox *question() const { return dynamic_cast<HMIMessageBox *>(box()); }

    QString boxText() const
    {
        const HMIMessageBox *shown = question();
        return shown != nullptr ? shown->text() : QString();
    }

    QSize boxSize() const
    {
        const QDialog *shown = box();
        return shown != nullptr ? shown->size() : QSize();
    }

    bool isShown() const
    {
        const QDialog *shown = box();
        return shown != nullptr && shown->isVisible();
    }

    QString shownText() const
    {
        const QDialog *shown = box();
        const QLabel *label = shown != nullptr ? shown->findChild<QLabel *>(textLabelName()) : nullptr;
        return label != nullptr ? label->text() : QString();
    }

    QString cutOff() const
    {
        const QDialog *shown = box();
        return shown != nullptr ? panelkit::testing::cutOffTexts(*shown).join(QLatin1Char('\n')) : QString();
    }

    // The toolkit's box names its label, the library's own has but one.
    QString textLabelName() const
    {
        return question() != nullptr ? QStringLiteral("qt_msgbox_label") : QString();
    }

    void closeUnanswered()
    {
        HMIMessageBox *shown = question();
        ASSERT_NE(shown, nullptr);
        EXPECT_TRUE(shown->close());
    }

    void answer()
    {
        HMIMessageBox *shown = question();
        ASSERT_NE(shown, nullptr);
        QAbstractButton *ok = shown->button(QMessageBox::Ok);
        ASSERT_NE(ok, nullptr);
        EXPECT_GE(ok->height(), 44);
        tap(ok);
    }
};

} // namespace

TEST_P(RuntimeNoticesScreen, APostedMessageIsShownInTheLibrarysBoxUntilItIsAnswered)
{
    post("The tank is empty", 30, 2);
    WAIT_FOR(isShown());
    EXPECT_EQ(boxText(), QStringLiteral("The tank is empty"));
    EXPECT_LE(boxSize().width(), GetParam().width);
    EXPECT_LE(boxSize().height(), GetParam().height);
    answer();
    WAIT_FOR(box() == nullptr);
}

TEST_P(RuntimeNoticesScreen, AMessageThatNeedsNoAnswerGoesByItself)
{
    post("Saved", 1, 0);
    WAIT_FOR(isShown());
    EXPECT_NE(dynamic_cast<MyMessagebox *>(box()), nullptr);
    WAIT_FOR(box() == nullptr);
}

TEST_P(RuntimeNoticesScreen, MessagesComeOneAfterTheOther)
{
    post("one", 30, 2);
    post("two", 30, 2);
    WAIT_FOR(boxText() == QLatin1String("one"));
    WAIT_FOR(window->notices().waiting() == 1);
    answer();
    WAIT_FOR(boxText() == QLatin1String("two"));
    EXPECT_EQ(window->notices().waiting(), 0);
}

TEST_P(RuntimeNoticesScreen, ABoxThatIsClosedUnansweredIsAnnounced)
{
    QSignalSpy notices(&window->runtime(), &PanelRuntime::systemNotice);
    post("one", 30, 2);
    post("two", 30, 2);
    WAIT_FOR(boxText() == QLatin1String("one"));
    closeUnanswered();
    WAIT_FOR(notices.count() == 1);
    EXPECT_EQ(notices.first().first().toInt(), 111);
    WAIT_FOR(boxText() == QLatin1String("two"));
}

TEST_P(RuntimeNoticesScreen, ALongMessageIsBrokenIntoLinesOfTheScreensWidth)
{
    const char *const text =
        "The IP address setting is incorrect. Please re-enter it. This one is longer than any line.";
    for (const int needsAnswer : {2, 0}) {
        post(text, 1, needsAnswer);
        WAIT_FOR(isShown());
        EXPECT_LE(boxSize().width(), GetParam().width);
        EXPECT_EQ(shownText().replace(QLatin1Char('\n'), QLatin1Char(' ')), QLatin1String(text));
        EXPECT_GT(shownText().count(QLatin1Char('\n')), 0);
        EXPECT_EQ(cutOff().toStdString(), "");
        if (needsAnswer != 0)
            answer();
        WAIT_FOR(box() == nullptr);
    }
}

INSTANTIATE_ON_EVERY_SCREEN(RuntimeNoticesScreen);
