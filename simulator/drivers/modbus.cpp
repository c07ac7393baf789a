// The driver "Modbus": the blocks of simulator/drivers/modbusblocks.h. docs/drivers/modbus.md describes it.

#include "simulator/drivers/addressrule.h"
#include "simulator/drivers/modbusblocks.h"

#include <cstddef>

namespace panelkit::simulator {

namespace {

constexpr AddressRule ruleOf(const ModbusBlock &block)
{
    const int bitsPerUnit = block.isInWord ? 16 : 1;
    return {block.name, block.isBit, 10, 1, block.indexCount / bitsPerUnit, 1, bitsPerUnit};
}

constexpr auto rules = [] {
    std::array<AddressRule, modbusBlocks.size()> table = {};
    for (std::size_t i = 0; i < modbusBlocks.size(); ++i)
        table[i] = ruleOf(modbusBlocks[i]);
    return table;
}();

} // namespace

const AddressRule *findRule(const QString &block)
{
    for (const AddressRule &rule : rules)
        if (block == QLatin1String(rule.name))
            return &rule;
    return nullptr;
}

} // namespace panelkit::simulator
