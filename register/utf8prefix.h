// A quick look at bytes that should be UTF-8.
#pragma once

#include <cstddef>

namespace panelkit {

// How many of the `length` bytes, from the first on, are whole characters of UTF-8 beyond all doubt. What
// follows is for the toolkit's codec to judge: an unfinished character at the end, bytes that are no UTF-8,
// or one of the code points reserved as noncharacters, about which the codecs of its generations differ.
std::size_t certainUtf8Prefix(const char *bytes, std::size_t length);

} // namespace panelkit
