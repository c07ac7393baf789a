// Scrolling by finger.
#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

namespace panelkit {

// Lets a finger, or the mouse that a touch screen pretends to be, drag and flick the contents of `viewport`,
// whose scroller lives as long. The widget is told of a touch only when the finger has left it where it came
// down; so a drag selects nothing, in whatever direction and however short the contents are, and a touch that
// stops a flick does not either. (The toolkit's own gesture for this loses its recognizer with every widget
// that had one.)
class FingerScroll : public QObject
{
public:
    explicit FingerScroll(QWidget *viewport);
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tap();

    QWidget *m_viewport;
    QPoint m_position; // where the finger came down
    bool m_isDown;
    bool m_isTap; // the finger that is down has neither moved anything nor gone further than it trembles
    bool m_tapping;
};

} // namespace panelkit
