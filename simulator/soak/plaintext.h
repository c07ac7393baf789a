// The text of a value by the rules of the panel's displays, one after the other: what a screen has to show.
#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace panelkit::simulator {

struct ItemDefinition;

// What the screen has to show for an item whose words are these. Nothing for a text beyond ASCII, which
// depends on the locale.
std::optional<QString> plainText(const ItemDefinition &item, const QVector<quint16> &words);

} // namespace panelkit::simulator
