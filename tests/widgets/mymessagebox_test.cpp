#include "tests/widgets/widgetfixture.h"
#include "widgets/mymessagebox.h"

#include <QBoxLayout>
#include <QElapsedTimer>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>

#include <limits>

using namespace panelkit::testing;

namespace {

template <typename Fixture>
class NoticeOn : public Fixture
{
protected:
    // Far beyond every time that is set here: a machine under load must not fail a test.
    static const int patience = 60000;

    // Makes the label as wide as if the text were, whatever the font.
    void pretendTextIsWide(int pixels) { label->setFixedWidth(pixels); }

    QString broken(const QString &text, int pixels)
    {
        pretendTextIsWide(pixels);
        box.setText(text, 1);
        return label->text();
    }

    bool waitUntilHidden()
    {
        return QTest::qWaitFor([this] { return !box.isVisible(); }, patience);
    }

    // Whether the box, just shown, hides before a timer that was started behind it: on a busy machine both
    // are late, in this order.
    bool hidesBefore(int milliseconds)
    {
        bool isLate = false;
        QTimer later;
        later.setTimerType(Qt::PreciseTimer);
        later.setSingleShot(true);
        QObject::connect(&later, &QTimer::timeout, [&] { isLate = box.isVisible(); });
        later.start(milliseconds);
        return waitUntilHidden() && !isLate;
    }

    MyMessagebox box{QStringLiteral("Saved.")};
    QLabel *const label = box.findChild<QLabel *>();
    QPushButton *const ok = box.findChild<QPushButton *>();
};

// Counts how often timers fire as long as it lives.
class TimerWatch : public QObject
{
public:
    TimerWatch() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::Timer && qobject_cast<QTimer *>(watched) != nullptr ? 1 : 0;
        return false;
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

using MyMessageboxForm = NoticeOn<WidgetFixture>;
using MyMessageboxText = NoticeOn<WidgetFixture>;
using MyMessageboxTime = NoticeOn<WidgetFixture>;
using MyMessageboxOnScreen = NoticeOn<EveryScreen>;

} // namespace

TEST_F(MyMessageboxForm, LooksAsThePanelsDialogsDo)
{
    EXPECT_EQ(box.parent(), nullptr);
    EXPECT_EQ(box.styleSheet(), QStringLiteral("font-size:16px;font-family: 'SimSun';"));
    EXPECT_EQ(box.windowFlags(), Qt::Window | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    for (const QWidget *part : QList<QWidget *>{&box, label, ok}) {
        EXPECT_EQ(part->font().family(), QStringLiteral("SimSun"));
        EXPECT_EQ(part->font().pixelSize(), 16);
    }
    EXPECT_EQ(label->text(), QStringLiteral("Saved."));
    EXPECT_EQ(label->alignment(), Qt::AlignLeft);
    EXPECT_EQ(ok->text(), QStringLiteral("ok"));
}

TEST_F(MyMessageboxForm, KeepsItsFontWithoutItsStyleSheet)
{
    box.setStyleSheet(QString());
    EXPECT_EQ(box.font().family(), QStringLiteral("SimSun"));
    EXPECT_EQ(box.font().pixelSize(), 16);
}

TEST_F(MyMessageboxForm, StacksLabelAndButton)
{
    QFont font;
    font.setFamily(QStringLiteral("SimSun"));
    font.setPixelSize(16);
    auto *const layout = qobject_cast<QVBoxLayout *>(box.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 5);
    EXPECT_EQ(layout->stretch(0), 1);
    EXPECT_EQ(layout->itemAt(1)->widget(), label);
    EXPECT_EQ(layout->itemAt(2)->sizeHint().height(),
              QFontMetrics(font).boundingRect(QStringLiteral("Saved.")).height());
    QLayout *const row = layout->itemAt(3)->layout();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->alignment(), Qt::AlignCenter);
    EXPECT_EQ(row->itemAt(0)->widget(), ok);
    EXPECT_EQ(layout->stretch(4), 1);
}

TEST_F(MyMessageboxForm, FitsItsTextFromTheStart)
{
    EXPECT_LT(box.width(), QWidget().width() / 2) << "what the toolkit gives a window at first";
    EXPECT_EQ(label->size(), label->sizeHint());
}

TEST_F(MyMessageboxForm, IsShownInTheMiddleOfTheScreen)
{
    box.setText(QStringLiteral("Saved."), 60);
    show(box);
    const QPoint away = box.geometry().center() - box.screen()->availableGeometry().center();
    EXPECT_LT(away.manhattanLength(), 100);
}

TEST_F(MyMessageboxForm, HasOneSlot)
{
    const QMetaObject &type = MyMessagebox::staticMetaObject;
    ASSERT_EQ(type.methodCount(), type.methodOffset() + 1);
    EXPECT_EQ(type.method(type.methodOffset()).methodSignature(), "OnCancel()");
}

TEST_F(MyMessageboxText, BreaksWhatIs700PixelsWideIntoThreeLines)
{
    EXPECT_EQ(broken(QStringLiteral("abcdefghij"), 700), QStringLiteral("abc\nde\nfghij"));
}

TEST_F(MyMessageboxText, BreaksByTheWidthInWholePixels)
{
    const struct
    {
        int width;
        const char *shown;
    } rows[] = {{299, "abcdefghijkl"},       {300, "abcdefghijkl"},         {301, "abcdef\nghijkl"},
                {601, "abcdef\nghijkl"},     {602, "abcd\nefg\nhijkl"},     {902, "abcd\nefg\nhijkl"},
                {903, "abc\nde\nfg\nhijkl"}, {1204, "ab\nc\nd\ne\nfghijkl"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.width);
        EXPECT_EQ(broken(QStringLiteral("abcdefghijkl"), row.width), QLatin1String(row.shown));
    }
}

TEST_F(MyMessageboxText, BreaksATextWithFewerCharactersThanLines)
{
    EXPECT_EQ(broken(QStringLiteral("ab"), 950), QStringLiteral("\n\n\nab"));
}

TEST_F(MyMessageboxText, FitsTheDialogToTheText)
{
    box.setText(QStringLiteral("Saved."), 1);
    const int narrow = box.width();
    box.setText(QStringLiteral("The recipe has been saved."), 1);
    EXPECT_GT(box.width(), narrow);
    EXPECT_EQ(label->size(), label->sizeHint());
    box.setText(QStringLiteral("Saved."), 1);
    EXPECT_EQ(box.width(), narrow);
    EXPECT_EQ(label->text(), QStringLiteral("Saved.")) << "in one line";
    EXPECT_EQ(label->size(), label->sizeHint());
    box.setText(QString(100, QLatin1Char('m')), 1);
    EXPECT_TRUE(label->text().contains(QLatin1Char('\n')));
    EXPECT_EQ(label->size(), label->sizeHint());
}

TEST_F(MyMessageboxTime, IsOverAtOnceWithoutSetText)
{
    box.show();
    EXPECT_TRUE(hidesBefore(200));
}

TEST_F(MyMessageboxTime, IsOverAtOnceWithZeroOrNegativeSeconds)
{
    for (const int seconds : {0, -1, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(seconds);
        box.setText(QStringLiteral("Saved."), seconds);
        box.show();
        EXPECT_TRUE(hidesBefore(200));
    }
}

TEST_F(MyMessageboxTime, IsOverAfterItsSecondsAndNotBefore)
{
    for (const int seconds : {1, 5}) {
        SCOPED_TRACE(seconds);
        box.setText(QStringLiteral("Saved."), seconds);
        QElapsedTimer shown;
        shown.start();
        box.show();
        ASSERT_TRUE(hidesBefore(seconds * 1000 + 500));
        EXPECT_GE(shown.elapsed(), seconds * 1000);
    }
}

TEST_F(MyMessageboxTime, BeginsAnewWithEachShow)
{
    box.setText(QStringLiteral("Saved."), 1);
    box.show();
    QTest::qWait(600);
    box.hide();
    QElapsedTimer shownAgain;
    shownAgain.start();
    box.show();
    ASSERT_TRUE(waitUntilHidden());
    EXPECT_GE(shownAgain.elapsed(), 1000);
    shownAgain.start();
    box.show();
    ASSERT_TRUE(waitUntilHidden()) << "a box that closed itself can be shown again";
    EXPECT_GE(shownAgain.elapsed(), 1000);
}

TEST_F(MyMessageboxTime, BeginsAnewWithANewText)
{
    box.setText(QStringLiteral("Saved."), 1);
    box.show();
    QTest::qWait(600);
    ASSERT_TRUE(box.isVisible());
    QElapsedTimer shown;
    shown.start();
    box.setText(QStringLiteral("Saved again."), 1);
    ASSERT_TRUE(waitUntilHidden());
    EXPECT_GE(shown.elapsed(), 1000);
}

TEST_F(MyMessageboxTime, MayBeLongerThanATimerCounts)
{
    box.setText(QStringLiteral("Saved."), std::numeric_limits<int>::max());
    box.show();
    QTest::qWait(100);
    EXPECT_TRUE(box.isVisible());
}

TEST_F(MyMessageboxTime, StopsWhenTheButtonHidesTheBox)
{
    box.show(); // with a time of 0, which is over as soon as events are handled
    ok->click();
    ASSERT_FALSE(box.isVisible());
    TimerWatch watch;
    QTest::qWait(100);
    EXPECT_EQ(watch.count(), 0);
}

TEST_F(MyMessageboxTime, LeavesNoResultBehind)
{
    QSignalSpy finished(&box, &QDialog::finished);
    box.show();
    ASSERT_TRUE(waitUntilHidden());
    EXPECT_EQ(finished.count(), 0);
    EXPECT_EQ(box.result(), 0);
}

INSTANTIATE_ON_EVERY_SCREEN(MyMessageboxOnScreen);

TEST_P(MyMessageboxOnScreen, HidesByATapOnOk)
{
    box.setText(QStringLiteral("Saved."), 60);
    show(box);
    EXPECT_GE(ok->height(), 44);
    tap(ok);
    EXPECT_FALSE(box.isVisible());
}
