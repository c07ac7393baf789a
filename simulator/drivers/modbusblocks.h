// The register blocks of a Modbus link, the one table of them: the sample driver checks addresses by it and
// the communication interface polls by it.
#pragma once

#include <QLatin1String>
#include <QString>

#include <array>

namespace panelkit::simulator {

enum class ModbusTable
{
    Coils,
    DiscreteInputs,
    InputRegisters,
    HoldingRegisters
};

struct ModbusBlock
{
    const char *name;
    ModbusTable table;
    bool isBit;     // one index is one bit, and an address takes bit access; else one index is one word
    bool isInWord;  // a bit of a word register: the index is word * 16 + bit, written "word.bit"
    int indexCount; // indexes run from 0 to indexCount - 1
    bool isWritable;
};

// Authors count registers and coils from 1, the protocol and the index from 0: "4x" number "1" is index 0.
// The bits of a word are counted from 0, the lowest first: "4x_bit" number "1.3" is index 3.
constexpr std::array<ModbusBlock, 6> modbusBlocks = {{
    {"0x", ModbusTable::Coils, true, false, 65536, true},
    {"1x", ModbusTable::DiscreteInputs, true, false, 65536, false},
    {"3x", ModbusTable::InputRegisters, false, false, 65536, false},
    {"4x", ModbusTable::HoldingRegisters, false, false, 65536, true},
    {"3x_bit", ModbusTable::InputRegisters, true, true, 65536 * 16, false},
    {"4x_bit", ModbusTable::HoldingRegisters, true, true, 65536 * 16, true},
}};

// The block of that name (compared exactly), or null.
inline const ModbusBlock *findModbusBlock(const QString &name)
{
    for (const ModbusBlock &block : modbusBlocks)
        if (name == QLatin1String(block.name))
            return &block;
    return nullptr;
}

} // namespace panelkit::simulator
