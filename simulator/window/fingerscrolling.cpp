#include "simulator/window/fingerscrolling.h"

#include "platform/qtcompatwidgets.h"

#include <QScrollArea>

namespace panelkit::simulator {

namespace {

class FingerScrolling : public QObject
{
public:
    explicit FingerScrolling(QWidget *viewport) : QObject(viewport), m_viewport(viewport)
    {
        QScrollerProperties properties = QScroller::scroller(viewport)->scrollerProperties();
        properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy,
                                   QScrollerProperties::OvershootAlwaysOff);
        QScroller::scroller(viewport)->setScrollerProperties(properties);
        viewport->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched != m_viewport)
            return false;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            scrollByFinger(m_viewport, FingerDown, static_cast<QMouseEvent *>(event));
            return true;
        case QEvent::MouseMove:
            scrollByFinger(m_viewport, FingerMoved, static_cast<QMouseEvent *>(event));
            return true;
        case QEvent::MouseButtonRelease:
            scrollByFinger(m_viewport, FingerUp, static_cast<QMouseEvent *>(event));
            return true;
        default:
            return false;
        }
    }

private:
    QWidget *m_viewport;
};

} // namespace

void scrollByFingerWithin(QScrollArea *area)
{
    new FingerScrolling(area->viewport());
}

} // namespace panelkit::simulator
