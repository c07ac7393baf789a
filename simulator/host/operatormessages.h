// What the library wants the operator to be told.
#pragma once

#include <QStringList>

namespace panelkit::simulator {

// Empties the event library and gives the texts of the message boxes that waited in it, in their order.
QStringList takeOperatorMessages();

} // namespace panelkit::simulator
