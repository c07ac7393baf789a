// Pages that are longer than the screen.
#pragma once

class QScrollArea;

namespace panelkit::simulator {

// Lets a finger drag and flick the contents of `area`. For contents that take no touch themselves: what one
// of them takes moves nothing.
void scrollByFingerWithin(QScrollArea *area);

} // namespace panelkit::simulator
