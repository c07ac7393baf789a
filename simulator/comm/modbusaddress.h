// From a register block and an index to what is asked of a PLC, and back from its registers to words.
#pragma once

#include "simulator/drivers/modbusblocks.h"

#include <QLatin1String>
#include <QString>

#include <cstdint>
#include <optional>

namespace panelkit::simulator {

// A run of neighbouring registers, or bits, of one table of one station.
struct RegisterRange
{
    int unit = 0;
    ModbusTable table = ModbusTable::HoldingRegisters;
    int first = 0;
    int count = 0;

    int end() const { return first + count; }
};

bool operator==(const RegisterRange &a, const RegisterRange &b);
bool overlap(const RegisterRange &a, const RegisterRange &b);

constexpr bool isBitTable(ModbusTable table)
{
    return table == ModbusTable::Coils || table == ModbusTable::DiscreteInputs;
}

// As many as one request can read or write.
constexpr int largestRead(ModbusTable table)
{
    return isBitTable(table) ? 2000 : 125;
}
constexpr int largestWrite(ModbusTable table)
{
    return isBitTable(table) ? 1968 : 123;
}

// Where the `wordCount` words of an address come from. A register is one word; a bit, of a bit table or of a
// register, is one word too, 0 or 1.
struct ModbusSpan
{
    RegisterRange range;
    int wordCount = 0;
    bool isInWord = false; // the words are the bits of the range's registers
    int firstBit = 0;      // then: of the first register
};

const ModbusBlock *modbusBlock(QLatin1String name); // or null

// Nothing when the words lie outside of the block, the unit is not 0 to 255, or the range does not fit into
// one request of `limit` registers or bits.
std::optional<ModbusSpan> modbusSpan(const ModbusBlock &block, int unit, int index, int wordCount, int limit);

// Copies the words of `span` out of the registers of its range; `words` need not be aligned.
void unpackWords(const ModbusSpan &span, const std::uint16_t *registers, void *words);

// Puts words into the registers of the span's range. Bits beside those of the span stay as they are.
void packWords(const ModbusSpan &span, const std::uint16_t *words, std::uint16_t *registers);

// The index of what an author types: "1" is index 0, and "1.3" in a block of bits of words is index 3.
// Numbers are base 10. -1 when the text is none, or lies outside of the block.
int modbusIndex(const ModbusBlock &block, const QString &number);

} // namespace panelkit::simulator
