// The panel's screen as the widgets see it.
#pragma once

#include <QPoint>
#include <QSize>

namespace panelkit {

// The screen's size in pixels from the application record, or `fallback` while there is no record.
QSize panelScreenSize(const QSize &fallback);

// Where a box of `size` begins that stands in the middle of `screen`; halves are rounded down, so that a box
// larger than the screen begins left of it or above.
QPoint centredPosition(const QSize &size, const QSize &screen);

} // namespace panelkit
