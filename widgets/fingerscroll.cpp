#include "widgets/fingerscroll.h"

#include "platform/qtcompatwidgets.h"

#include <QApplication>

namespace panelkit {

FingerScroll::FingerScroll(QWidget *viewport)
    : QObject(viewport),
      m_viewport(viewport),
      m_isDown(false),
      m_isTap(false),
      m_tapping(false)
{
    viewport->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_viewport || m_tapping)
        return false;
    FingerInput input = FingerDown;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_isDown = static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
        break;
    case QEvent::MouseMove:
        input = FingerMoved;
        break;
    case QEvent::MouseButtonRelease:
        input = FingerUp;
        break;
    default:
        return false;
    }
    if (!m_isDown)
        return false;

    const QMouseEvent *const touch = static_cast<QMouseEvent *>(event);
    if (input == FingerDown) {
        m_position = positionOf(touch);
        m_isTap = true;
    }
    // A drag is none of a list that is too short to move, and nevertheless no tap.
    if ((positionOf(touch) - m_position).manhattanLength() >= QApplication::startDragDistance())
        m_isTap = false;
    if (scrollByFinger(m_viewport, input, touch))
        m_isTap = false;
    if (input == FingerUp) {
        m_isDown = false;
        if (m_isTap)
            tap();
    }
    return true;
}

void FingerScroll::tap()
{
    const QPoint onScreen = m_viewport->mapToGlobal(m_position);
    QMouseEvent press(QEvent::MouseButtonPress, m_position, onScreen, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, m_position, onScreen, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    m_tapping = true;
    QApplication::sendEvent(m_viewport, &press);
    QApplication::sendEvent(m_viewport, &release);
    m_tapping = false;
}

} // namespace panelkit
