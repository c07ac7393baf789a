#include "widgets/fingerscroll.h"

#include <QCoreApplication>
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

void send(QWidget &widget, QEvent::Type type, Qt::MouseButton button)
{
    const bool isUp = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, QPoint(5, 5), widget.mapToGlobal(QPoint(5, 5)), button,
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
