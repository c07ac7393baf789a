// The registers of a PLC's units.
#pragma once

#include "simulator/drivers/modbusblocks.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

// NOLINTNEXTLINE(bugprone-reserved-identifier): the library's own name
typedef struct _modbus_mapping_t modbus_mapping_t;

namespace panelkit::simulator {

// The four tables of one unit. Registers are words; coils and discrete inputs are 0 or 1.
class PlcTables
{
public:
    explicit PlcTables(int countPerTable);
    ~PlcTables();
    PlcTables(const PlcTables &) = delete;
    PlcTables &operator=(const PlcTables &) = delete;

    // An index outside of the table reads as 0, and writing there does nothing.
    std::uint16_t value(ModbusTable table, int index) const;
    void setValue(ModbusTable table, int index, int value); // the low 16 bits; for a bit, whether it is not 0

    // Values of two words, low word first.
    std::uint32_t doubleWord(ModbusTable table, int index) const;
    void setDoubleWord(ModbusTable table, int index, std::uint32_t value);
    float single(ModbusTable table, int index) const;
    void setSingle(ModbusTable table, int index, float value);

    modbus_mapping_t *mapping() { return m_mapping; }

private:
    modbus_mapping_t *m_mapping;
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
