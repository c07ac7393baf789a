// A part of a page that may be higher than its place.
#pragma once

#include <QScrollArea>

namespace panelkit::simulator {

// As wide as its place, and scrolled by finger where it is higher.
class FingerScrollArea : public QScrollArea
{
public:
    // Takes over `content`.
    FingerScrollArea(QWidget *content, QWidget *parent);
};

} // namespace panelkit::simulator
