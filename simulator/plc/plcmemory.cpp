#include "simulator/plc/plcmemory.h"

#include <modbus.h>

#include <cstring>
#include <new>

namespace panelkit::simulator {

PlcTables::PlcTables(int countPerTable)
    : m_mapping(modbus_mapping_new(countPerTable, countPerTable, countPerTable, countPerTable))
{
    if (m_mapping == nullptr)
        throw std::bad_alloc();
}

PlcTables::~PlcTables()
{
    modbus_mapping_free(m_mapping);
}

std::uint16_t PlcTables::value(ModbusTable table, int index) const
{
    if (index < 0 || index >= m_mapping->nb_registers)
        return 0;
    switch (table) {
    case ModbusTable::Coils:
        return m_mapping->tab_bits[index];
    case ModbusTable::DiscreteInputs:
        return m_mapping->tab_input_bits[index];
    case ModbusTable::InputRegisters:
        return m_mapping->tab_input_registers[index];
    case ModbusTable::HoldingRegisters:
        return m_mapping->tab_registers[index];
    }
    return 0;
}

void PlcTables::setValue(ModbusTable table, int index, int value)
{
    if (index < 0 || index >= m_mapping->nb_registers)
        return;
    switch (table) {
    case ModbusTable::Coils:
        m_mapping->tab_bits[index] = value != 0;
        break;
    case ModbusTable::DiscreteInputs:
        m_mapping->tab_input_bits[index] = value != 0;
        break;
    case ModbusTable::InputRegisters:
        m_mapping->tab_input_registers[index] = static_cast<std::uint16_t>(value);
        break;
    case ModbusTable::HoldingRegisters:
        m_mapping->tab_registers[index] = static_cast<std::uint16_t>(value);
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
