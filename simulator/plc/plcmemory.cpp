#include "simulator/plc/plcmemory.h"

#include <cstring>

namespace panelkit::simulator {

PlcTables::PlcTables(int countPerTable)
    : m_coils(static_cast<std::size_t>(countPerTable)),
      m_discreteInputs(m_coils.size()),
      m_inputRegisters(m_coils.size()),
      m_holdingRegisters(m_coils.size())
{
}

std::uint16_t PlcTables::value(ModbusTable table, int index) const
{
    if (index < 0 || index >= size())
        return 0;
    const auto at = static_cast<std::size_t>(index);
    switch (table) {
    case ModbusTable::Coils:
        return m_coils[at];
    case ModbusTable::DiscreteInputs:
        return m_discreteInputs[at];
    case ModbusTable::InputRegisters:
        return m_inputRegisters[at];
    case ModbusTable::HoldingRegisters:
        return m_holdingRegisters[at];
    }
    return 0;
}

void PlcTables::setValue(ModbusTable table, int index, int value)
{
    if (index < 0 || index >= size())
        return;
    const auto at = static_cast<std::size_t>(index);
    switch (table) {
    case ModbusTable::Coils:
        m_coils[at] = value != 0;
        break;
    case ModbusTable::DiscreteInputs:
        m_discreteInputs[at] = value != 0;
        break;
    case ModbusTable::InputRegisters:
        m_inputRegisters[at] = static_cast<std::uint16_t>(value);
        break;
    case ModbusTable::HoldingRegisters:
        m_holdingRegisters[at] = static_cast<std::uint16_t>(value);
        break;
    }
}

std::uint32_t PlcTables::doubleWord(ModbusTable table, int index) const
{
    return value(table, index) | static_cast<std::uint32_t>(value(table, index + 1)) << 16;
}

void PlcTables::setDoubleWord(ModbusTable table, int index, std::uint32_t value)
{
    setValue(table, index, static_cast<int>(value & 0xffff));
    setValue(table, index + 1, static_cast<int>(value >> 16));
}

float PlcTables::single(ModbusTable table, int index) const
{
    const std::uint32_t bits = doubleWord(table, index);
    float value = 0;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

void PlcTables::setSingle(ModbusTable table, int index, float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    setDoubleWord(table, index, bits);
}

PlcMemory::PlcMemory(const std::vector<int> &units, int countPerTable)
{
    for (const int unit : units)
        m_units.try_emplace(unit, countPerTable);
}

bool PlcMemory::with(int unit, const std::function<void(PlcTables &)> &work)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_units.find(unit);
    if (found == m_units.end())
        return false;
    work(found->second);
    return true;
}

void PlcMemory::withAll(const std::function<void(std::map<int, PlcTables> &)> &work)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    work(m_units);
}

std::uint16_t PlcMemory::value(int unit, ModbusTable table, int index)
{
    std::uint16_t result = 0;
    with(unit, [&](PlcTables &tables) { result = tables.value(table, index); });
    return result;
}

void PlcMemory::setValue(int unit, ModbusTable table, int index, int value)
{
    with(unit, [&](PlcTables &tables) { tables.setValue(table, index, value); });
}

} // namespace panelkit::simulator
