// The registers of a PLC's units.
#pragma once

#include "simulator/drivers/modbusblocks.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace panelkit::simulator {

// The four tables of one unit. Registers are words; coils and discrete inputs are 0 or 1.
class PlcTables
{
public:
    explicit PlcTables(int countPerTable);

    int size() const { return static_cast<int>(m_coils.size()); } // of each table

    // An index outside of the table reads as 0, and writing there does nothing.
    std::uint16_t value(ModbusTable table, int index) const;
    void setValue(ModbusTable table, int index, int value); // the low 16 bits; for a bit, whether it is not 0

    // Values of two words, low word first.
    std::uint32_t doubleWord(ModbusTable table, int index) const;
    void setDoubleWord(ModbusTable table, int index, std::uint32_t value);
    float single(ModbusTable table, int index) const;
    void setSingle(ModbusTable table, int index, float value);

    // The tables themselves, for who answers requests.
    std::uint8_t *coils() { return m_coils.data(); }
    std::uint8_t *discreteInputs() { return m_discreteInputs.data(); }
    std::uint16_t *inputRegisters() { return m_inputRegisters.data(); }
    std::uint16_t *holdingRegisters() { return m_holdingRegisters.data(); }

private:
    std::vector<std::uint8_t> m_coils;
    std::vector<std::uint8_t> m_discreteInputs;
    std::vector<std::uint16_t> m_inputRegisters;
    std::vector<std::uint16_t> m_holdingRegisters;
};

// Several units with tables of one size; safe to use from any thread.
class PlcMemory
{
public:
    PlcMemory(const std::vector<int> &units, int countPerTable);

    // Calls `work` with the tables of `unit`, which nobody else reads or writes meanwhile. Returns whether
    // there is such a unit.
    bool with(int unit, const std::function<void(PlcTables &)> &work);

    // One step that nobody sees half done, over all units: `work` is given their tables in ascending order.
    void withAll(const std::function<void(std::map<int, PlcTables> &)> &work);

    // Single registers, for tests: an unknown unit reads as 0.
    std::uint16_t value(int unit, ModbusTable table, int index);
    void setValue(int unit, ModbusTable table, int index, int value);

private:
    std::mutex m_mutex;
    std::map<int, PlcTables> m_units;
};

} // namespace panelkit::simulator
