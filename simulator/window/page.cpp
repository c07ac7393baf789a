#include "simulator/window/page.h"

#include <QEvent>

namespace panelkit::simulator {

Page::Page(QWidget *parent) : QWidget(parent) {}

void Page::refresh() {}

void Page::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

} // namespace panelkit::simulator
