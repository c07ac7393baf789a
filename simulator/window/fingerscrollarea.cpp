#include "simulator/window/fingerscrollarea.h"

#include "simulator/window/fingerscrolling.h"

namespace panelkit::simulator {

FingerScrollArea::FingerScrollArea(QWidget *content, QWidget *parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(content);
    setWidgetResizable(true);
    // What the page stands on shows through.
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    scrollByFingerWithin(this);
}

} // namespace panelkit::simulator
