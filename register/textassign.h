// A caller's string gets a new text at the price of as few heap allocations as possible.
#pragma once

#include <QString>

#include <string_view>

namespace panelkit {

using TextSize = decltype(QString().size()); // int, or the wider type of newer toolkits

// Makes `out` the Latin-1 text `text`. An `out` that already reads so is not touched, be it shared or not;
// one that is unshared and large enough is overwritten in place; any other gets one new buffer with room for
// `room` characters or more.
void assignText(QString &out, std::string_view text, TextSize room = 0);

// The same with `head` followed by `tail`, which must be another object than `out`.
void assignText(QString &out, std::string_view head, const QString &tail);

} // namespace panelkit
