// What differs between the toolkit's generations 4.8, 5 and 6 in widgets and events, each difference once. Apart from
// qtcompat.h so that nothing but the widgets sees Qt Widgets.
#pragma once

#include <QTimer>
#include <QWidget>

#if QT_VERSION >= 0x050000
#include <QScroller>
#endif

namespace panelkit {

// Timers of 4.8 are precise; later ones may fire 5 % early unless they are asked not to.
inline void setPrecise(QTimer &timer)
{
#if QT_VERSION >= 0x050000
    timer.setTimerType(Qt::PreciseTimer);
#else
    Q_UNUSED(timer)
#endif
}

// Lets a finger, or the mouse that a touch screen pretends to be, drag and flick `viewport`. 4.8 has no
// scroller; its scroll bars remain.
inline void scrollByFinger(QWidget *viewport)
{
#if QT_VERSION >= 0x050000
    QScroller::grabGesture(viewport, QScroller::LeftMouseButtonGesture);
#else
    Q_UNUSED(viewport)
#endif
}

} // namespace panelkit
