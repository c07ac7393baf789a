#include "simulator/comm/modbusaddress.h"

#include <cstring>

namespace panelkit::simulator {

namespace {

constexpr int bitsPerWord = 16;

// A base-10 number from `smallest` to `largest` without a sign, or nothing.
std::optional<int> numberIn(const QString &text, int smallest, int largest)
{
    const QString digits = text.trimmed();
    bool ok = false;
    const int number = digits.toInt(&ok, 10);
    if (!ok || !digits.at(0).isDigit() || number < smallest || number > largest)
        return std::nullopt;
    return number;
}

} // namespace

bool operator==(const RegisterRange &a, const RegisterRange &b)
{
    return a.unit == b.unit && a.table == b.table && a.first == b.first && a.count == b.count;
}

bool overlap(const RegisterRange &a, const RegisterRange &b)
{
    return a.unit == b.unit && a.table == b.table && a.first < b.end() && b.first < a.end();
}

const ModbusBlock *modbusBlock(QLatin1String name)
{
    for (const ModbusBlock &block : modbusBlocks)
        if (name == QLatin1String(block.name))
            return &block;
    return nullptr;
}

std::optional<ModbusSpan> modbusSpan(const ModbusBlock &block, int unit, int index, int wordCount, int limit)
{
    if (unit < 0 || unit > 255 || index < 0 || index >= block.indexCount || wordCount < 1 ||
        wordCount > block.indexCount - index)
        return std::nullopt;
    ModbusSpan span = {{unit, block.table, index, wordCount}, wordCount, block.isInWord, 0};
    if (block.isInWord) {
        span.firstBit = index % bitsPerWord;
        span.range.first = index / bitsPerWord;
        span.range.count = (index + wordCount - 1) / bitsPerWord - span.range.first + 1;
    }
    if (span.range.count > limit)
        return std::nullopt;
    return span;
}

void unpackWords(const ModbusSpan &span, const std::uint16_t *registers, void *words)
{
    if (!span.isInWord) {
        std::memcpy(words, registers, static_cast<std::size_t>(span.wordCount) * sizeof(*registers));
        return;
    }
    for (int i = 0; i < span.wordCount; ++i) {
        const int bit = span.firstBit + i;
        const std::uint16_t word = registers[bit / bitsPerWord] >> bit % bitsPerWord & 1;
        std::memcpy(static_cast<char *>(words) + static_cast<std::size_t>(i) * sizeof(word), &word,
                    sizeof(word));
    }
}

void packWords(const ModbusSpan &span, const std::uint16_t *words, std::uint16_t *registers)
{
    for (int i = 0; i < span.wordCount; ++i) {
        if (!span.isInWord) {
            registers[i] = isBitTable(span.range.table) ? words[i] != 0 : words[i];
            continue;
        }
        const int bit = span.firstBit + i;
        const int mask = 1 << bit % bitsPerWord;
        std::uint16_t &target = registers[bit / bitsPerWord];
        target = static_cast<std::uint16_t>(words[i] != 0 ? target | mask : target & ~mask);
    }
}

int modbusIndex(const ModbusBlock &block, const QString &number)
{
    if (!block.isInWord)
        return numberIn(number, 1, block.indexCount).value_or(0) - 1;
    const auto point = number.indexOf(QLatin1Char('.'));
    if (point < 0)
        return -1;
    const std::optional<int> word = numberIn(number.left(point), 1, block.indexCount / bitsPerWord);
    const std::optional<int> bit = numberIn(number.mid(point + 1), 0, bitsPerWord - 1);
    return word && bit ? (*word - 1) * bitsPerWord + *bit : -1;
}

} // namespace panelkit::simulator
