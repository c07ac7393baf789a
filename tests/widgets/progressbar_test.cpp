#include "macro/events.h"
#include "tests/widgets/widgetfixture.h"
#include "widgets/progressbar.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QImage>
#include <QLabel>
#include <QMetaMethod>
#include <QProgressBar>
#include <QPushButton>

using namespace panelkit::testing;
using namespace panelkit::simulator;

namespace {

template <typename Fixture>
class ProgressOn : public Fixture
{
protected:
    ProgressBar dialog;
    QLabel *const label = dialog.findChild<QLabel *>();
    QProgressBar *const bar = dialog.findChild<QProgressBar *>();
    QPushButton *const hideButton = dialog.findChild<QPushButton *>();
};

using ProgressBarForm = ProgressOn<WidgetFixture>;
using ProgressBarUpdate = ProgressOn<WidgetFixture>;
using ProgressBarOnScreen = ProgressOn<EveryScreen>;

// The oldest posted event, if it is a message box for the runtime.
std::unique_ptr<UMessageBoxEvent> takeMessage()
{
    auto entry = takeEventLibraryEntry();
    auto *const posted = entry ? std::get_if<PostedEvent>(&*entry) : nullptr;
    if (posted == nullptr || posted->hadReceiver)
        return nullptr;
    return std::unique_ptr<UMessageBoxEvent>(dynamic_cast<UMessageBoxEvent *>(posted->event.release()));
}

} // namespace

TEST_F(ProgressBarForm, LooksAsThePanelsDialogsDo)
{
    EXPECT_EQ(dialog.objectName(), QStringLiteral("ProgressBar"));
    EXPECT_EQ(dialog.styleSheet(),
              QStringLiteral(
                  "ProgressBar{border-style: ridge; border-width: 4px; border-color: rgb(64, 64, 64);}"));
    EXPECT_EQ(dialog.windowFlags(), Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    for (const QWidget *part : QList<QWidget *>{&dialog, label, bar, hideButton}) {
        EXPECT_EQ(part->font().family(), QStringLiteral("SimSun"));
        EXPECT_EQ(part->font().pixelSize(), 16);
    }
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:"));
    EXPECT_EQ(label->alignment(), Qt::AlignLeft);
    EXPECT_EQ(bar->alignment(), Qt::AlignCenter);
    EXPECT_FALSE(bar->isTextVisible());
    EXPECT_EQ(hideButton->text(), QStringLiteral("hide"));
    EXPECT_EQ(hideButton->maximumWidth(), 120);
}

TEST_F(ProgressBarForm, StacksLabelBarAndButton)
{
    auto *const layout = qobject_cast<QVBoxLayout *>(dialog.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 7);
    EXPECT_EQ(layout->stretch(0), 1);
    EXPECT_EQ(layout->itemAt(1)->widget(), label);
    EXPECT_EQ(layout->itemAt(2)->sizeHint().height(), 15);
    EXPECT_EQ(layout->itemAt(3)->widget(), bar);
    EXPECT_EQ(layout->itemAt(4)->sizeHint().height(), 15);
    QLayout *const row = layout->itemAt(5)->layout();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->alignment(), Qt::AlignCenter);
    EXPECT_EQ(row->itemAt(0)->widget(), hideButton);
    EXPECT_EQ(layout->stretch(6), 1);
}

TEST_F(ProgressBarForm, HasOneSlotAndNoSignals)
{
    const QMetaObject &type = ProgressBar::staticMetaObject;
    ASSERT_EQ(type.methodCount(), type.methodOffset() + 1);
    EXPECT_EQ(type.method(type.methodOffset()).methodSignature(), "OnCancel()");
    EXPECT_EQ(type.method(type.methodOffset()).methodType(), QMetaMethod::Slot);
}

TEST_F(ProgressBarForm, NamesItsControlsForAScreenReader)
{
    for (QWidget *control : QList<QWidget *>{bar, hideButton})
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty());
}

TEST_F(ProgressBarForm, RoundsItsPositionDown)
{
    useScreen({319, 201});
    EXPECT_EQ(ProgressBar().pos(), QPoint(-51, -25)); // -50.5 and -24.5
    useScreen({318, 200});
    EXPECT_EQ(ProgressBar().pos(), QPoint(-51, -25));
}

TEST_F(ProgressBarForm, IsNarrowOnlyOnTheScreenThatIs272By480)
{
    const struct
    {
        Screen screen;
        int width;
    } rows[] = {
        {{272, 480}, 260}, {{272, 400}, 420}, {{480, 800}, 420}, {{271, 480}, 420}, {{480, 272}, 420}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.screen.width << " x " << row.screen.height);
        useScreen(row.screen);
        EXPECT_EQ(ProgressBar().size(), QSize(row.width, 250));
    }
}

TEST_F(ProgressBarForm, IsAPartOfItsParent)
{
    QWidget parent;
    const ProgressBar part(&parent);
    EXPECT_FALSE(part.isWindow());
    EXPECT_EQ(part.windowFlags(), Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
}

TEST_F(ProgressBarForm, DoesWithoutAnApplicationRecord)
{
    takeRecordAway();
    EXPECT_EQ(ProgressBar().size(), QSize(420, 250));
}

TEST_F(ProgressBarUpdate, ShowsTheProgressOnceActivated)
{
    dialog.UpdateProgress(3, 10, true, QStringLiteral("alarms"), false);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(bar->maximum(), 10);
    EXPECT_EQ(bar->value(), 3);
    EXPECT_TRUE(bar->isTextVisible());
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:alarms"));
    dialog.UpdateProgress(4, 10, false, QString(), false);
    EXPECT_EQ(bar->value(), 4);
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:alarms")) << "an empty text leaves it";
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(ProgressBarUpdate, OnlySetsTheBarBeforeItIsActivated)
{
    dialog.UpdateProgress(3, 10, false, QStringLiteral("alarms"), false);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(bar->value(), 3);
    EXPECT_TRUE(bar->isTextVisible());
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:"));
    dialog.UpdateProgress(10, 10, false, QString(), false);
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(ProgressBarUpdate, AnnouncesTheEndWithEachCallAtTheMaximum)
{
    dialog.UpdateProgress(3, 10, true, QStringLiteral("alarms"), false);
    for (int call = 1; call <= 2; ++call) {
        SCOPED_TRACE(call);
        dialog.UpdateProgress(10, 10, false, QStringLiteral("alarms"), false);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(label->text(), QStringLiteral("Data processing:"));
        ASSERT_EQ(eventLibraryEntryCount(), 1);
        const auto message = takeMessage();
        ASSERT_TRUE(message);
        EXPECT_EQ(message->text, QStringLiteral("processing success!"));
        EXPECT_EQ(message->param1, 2);
        EXPECT_EQ(message->param2, 0);
    }
}

TEST_F(ProgressBarUpdate, StaysActiveAfterTheEnd)
{
    dialog.UpdateProgress(10, 10, true, QString(), false);
    dialog.UpdateProgress(1, 10, false, QString(), false);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(ProgressBarUpdate, EndsBeyondTheMaximumToo)
{
    for (const int value : {11, 10}) {
        dialog.UpdateProgress(value, 10, true, QString(), false);
        EXPECT_TRUE(takeMessage());
    }
    dialog.UpdateProgress(0, 0, true, QString(), false);
    EXPECT_TRUE(takeMessage());
    dialog.UpdateProgress(-5, -6, true, QString(), false);
    EXPECT_TRUE(takeMessage());
}

TEST_F(ProgressBarUpdate, OnlyHidesWhenItIsToldToClose)
{
    dialog.UpdateProgress(3, 10, true, QStringLiteral("alarms"), false);
    dialog.UpdateProgress(20, 20, true, QStringLiteral("other"), true);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(bar->value(), 3);
    EXPECT_EQ(bar->maximum(), 10);
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:alarms"));
    EXPECT_EQ(eventLibraryEntryCount(), 0);
    dialog.UpdateProgress(4, 10, false, QString(), false);
    EXPECT_TRUE(dialog.isVisible()) << "it is still active";
}

TEST_F(ProgressBarUpdate, IsNotActivatedByACallThatCloses)
{
    dialog.UpdateProgress(3, 10, true, QString(), true);
    dialog.UpdateProgress(4, 10, false, QString(), false);
    EXPECT_FALSE(dialog.isVisible());
}

INSTANTIATE_ON_EVERY_SCREEN(ProgressBarOnScreen);

TEST_P(ProgressBarOnScreen, StandsInTheMiddle)
{
    const QRect expected = GetParam().width == 272   ? QRect(6, 115, 260, 250)
                           : GetParam().width == 480 ? QRect(30, 11, 420, 250)
                                                     : QRect(190, 115, 420, 250);
    EXPECT_EQ(dialog.geometry(), expected);
    dialog.UpdateProgress(1, 2, true,
                          QStringLiteral("a text that is longer than one line of the dialog can be"), false);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    EXPECT_EQ(dialog.size(), expected.size());
    EXPECT_TRUE(dialog.rect().contains(label->geometry()));
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "all of the text is seen";
}

TEST_P(ProgressBarOnScreen, StaysAwayOnceAFingerHasHiddenIt)
{
    dialog.UpdateProgress(1, 10, true, QStringLiteral("alarms"), false);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    EXPECT_GE(hideButton->height(), 44);
    tap(hideButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(label->text(), QStringLiteral("Data processing:"));
    for (int value = 2; value <= 10; ++value) {
        dialog.UpdateProgress(value, 10, false, QStringLiteral("alarms"), false);
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(bar->value(), value);
    }
    EXPECT_EQ(eventLibraryEntryCount(), 0);
    dialog.UpdateProgress(5, 10, true, QString(), false);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_P(ProgressBarOnScreen, ShowsTheEndOfALongFileName)
{
    const QString name = QString(45, QLatin1Char('m'));
    dialog.UpdateProgress(1, 10, true, name + QStringLiteral("1.csv"), false);
    show(dialog);
    const QImage one = label->grab().toImage();
    dialog.UpdateProgress(1, 10, true, name + QStringLiteral("2.csv"), false);
    EXPECT_NE(label->grab().toImage(), one);
}
