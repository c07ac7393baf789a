#include "widgets/fingerscroll.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

// Notes the mouse events that reach it.
class Viewport : public QWidget
{
public:
    QList<QEvent::Type> reached;

protected:
    bool event(QEvent *event) override
    {
        if (dynamic_cast<QMouseEvent *>(event) != nullptr)
            reached << event->type();
        return QWidget::event(event);
    }
};

void send(QWidget &widget, QEvent::Type type, Qt::MouseButton button, const QPoint &place = QPoint(5, 5))
{
    const bool isUp = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, place, widget.mapToGlobal(place), button,
                      isUp ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

TEST(FingerScroll, LeavesAloneWhatIsNoFinger)
{
    Viewport viewport;
    new panelkit::FingerScroll(&viewport);
    const QList<QEvent::Type> other = {QEvent::MouseButtonPress, QEvent::MouseMove,
                                       QEvent::MouseButtonRelease};
    for (const QEvent::Type type : other)
        send(viewport, type, Qt::RightButton);
    EXPECT_EQ(viewport.reached, other);
}

TEST(FingerScroll, TellsTheWidgetOfATouchWhenTheFingerHasLeft)
{
    Viewport viewport;
    new panelkit::FingerScroll(&viewport);
    send(viewport, QEvent::MouseButtonPress, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, QList<QEvent::Type>());
    send(viewport, QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, (QList<QEvent::Type>{QEvent::MouseButtonPress, QEvent::MouseButtonRelease}));
    viewport.reached.clear();
    send(viewport, QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, QList<QEvent::Type>{QEvent::MouseButtonRelease}) << "no finger was down";
    viewport.reached.clear();
    send(viewport, QEvent::MouseButtonPress, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, QList<QEvent::Type>()) << "the next touch may be a drag again";
}

TEST(FingerScroll, BeginsWithNoFingerDown)
{
    Viewport viewport;
    new panelkit::FingerScroll(&viewport);
    send(viewport, QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, QList<QEvent::Type>{QEvent::MouseButtonRelease});
}

TEST(FingerScroll, TakesForATapWhatMovesLessThanADrag)
{
    Viewport viewport; // nothing in it scrolls
    new panelkit::FingerScroll(&viewport);
    const int drag = QApplication::startDragDistance();
    const struct
    {
        QPoint to;
        int events; // that reach the widget
    } rows[] = {{{drag - 1, 0}, 2}, {{-(drag - 1), 0}, 2}, {{1, drag - 2}, 2},           {{drag, 0}, 0},
                {{0, drag}, 0},     {{0, -drag}, 0},       {{drag / 2 + 1, drag / 2}, 0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.to.x() << " " << row.to.y());
        viewport.reached.clear();
        send(viewport, QEvent::MouseButtonPress, Qt::LeftButton);
        send(viewport, QEvent::MouseMove, Qt::LeftButton, QPoint(5, 5) + row.to);
        send(viewport, QEvent::MouseButtonRelease, Qt::LeftButton, QPoint(5, 5) + row.to);
        EXPECT_EQ(viewport.reached.size(), row.events);
    }
}

TEST(FingerScroll, TakesADragForNoTapThatComesBack)
{
    Viewport viewport;
    new panelkit::FingerScroll(&viewport);
    send(viewport, QEvent::MouseButtonPress, Qt::LeftButton);
    send(viewport, QEvent::MouseMove, Qt::LeftButton, QPoint(5, 100));
    send(viewport, QEvent::MouseMove, Qt::LeftButton);
    send(viewport, QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(viewport.reached, QList<QEvent::Type>());
}
