// The driver "ByteAddressed": a family of PLCs whose memory is counted in bytes.
// docs/drivers/byte-addressed.md describes it.

#include "simulator/drivers/addressrule.h"

namespace panelkit::simulator {

namespace {

// Terminals are numbered in octal, eight to a byte; the memory's words and double words lie on the bytes with
// their number; the data area is counted in words.
constexpr AddressRule rules[] = {
    {"IX", true, 8, 0, 1024, 1, 1},   // inputs
    {"QX", true, 8, 0, 1024, 1, 1},   // outputs
    {"IB", false, 8, 0, 128, 1, 1},   // input bytes
    {"QB", false, 8, 0, 128, 1, 1},   // output bytes
    {"MX", true, 10, 0, 4096, 1, 8},  // bits of memory bytes
    {"MB", false, 10, 0, 4096, 1, 1}, // memory bytes
    {"MW", false, 10, 0, 4096, 2, 1}, // memory words
    {"MD", false, 10, 0, 4096, 4, 1}, // memory double words
    {"DX", true, 10, 0, 8192, 1, 16}, // bits of data words
    {"DW", false, 10, 0, 8192, 1, 1}, // data words
    {"DD", false, 10, 0, 8192, 2, 1}, // data double words
};

} // namespace

const AddressRule *findRule(const QString &block)
{
    for (const AddressRule &rule : rules)
        if (block == QLatin1String(rule.name))
            return &rule;
    return nullptr;
}

} // namespace panelkit::simulator
