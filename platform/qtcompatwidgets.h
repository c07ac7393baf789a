// What differs between the toolkit's generations 4.8, 5 and 6 for widgets, each difference once; apart from
// qtcompat.h, so that nothing but the widgets sees Qt Widgets.
#pragma once

#include <QMouseEvent>
#include <QStyleOption>
#include <QWidget>

#if QT_VERSION >= 0x050000
#include <QScroller>
#endif

namespace panelkit {

// All that an item view tells of an item: in 4.8 the plain option is only the first part of it.
#if QT_VERSION >= 0x050000
typedef QStyleOptionViewItem ItemViewOption;
#else
typedef QStyleOptionViewItemV4 ItemViewOption;
#endif

// Where a mouse event happened, in its receiver; 6 has renamed it.
inline QPoint positionOf(const QMouseEvent *event)
{
#if QT_VERSION >= 0x060000
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

enum FingerInput
{
    FingerDown,
    FingerMoved,
    FingerUp
};

// Tells the toolkit's scroller what a finger does on `viewport`, and whether the viewport moves with it. 4.8
// has no scroller; its scroll bars remain.
inline bool scrollByFinger(QWidget *viewport, FingerInput input, const QMouseEvent *event)
{
#if QT_VERSION >= 0x050000
    const QScroller::Input inputs[] = {QScroller::InputPress, QScroller::InputMove, QScroller::InputRelease};
    QScroller *const scroller = QScroller::scroller(viewport);
    const bool wasMoving = scroller->state() == QScroller::Scrolling;
    scroller->handleInput(inputs[input], positionOf(event), static_cast<qint64>(event->timestamp()));
    return wasMoving || scroller->state() == QScroller::Dragging;
#else
    Q_UNUSED(viewport)
    Q_UNUSED(input)
    Q_UNUSED(event)
    return false;
#endif
}

// Ends a flick of `viewport` that is under way.
inline void stopScrolling(QWidget *viewport)
{
#if QT_VERSION >= 0x050000
    if (QScroller::hasScroller(viewport))
        QScroller::scroller(viewport)->stop();
#else
    Q_UNUSED(viewport)
#endif
}

} // namespace panelkit
