#include "simulator/plc/bottlingline.h"

#include <algorithm>
#include <string_view>

namespace panelkit::simulator {

namespace {

constexpr ModbusTable coils = ModbusTable::Coils;
constexpr ModbusTable discreteInputs = ModbusTable::DiscreteInputs;
constexpr ModbusTable inputs = ModbusTable::InputRegisters;
constexpr ModbusTable holdings = ModbusTable::HoldingRegisters;

// Indexes in the tables of a unit, counted from 0.
namespace filler {
constexpr int unit = 1;
constexpr int state = 0, level = 1, temperature = 2, bottles = 4, speed = 6, pressure = 7, balance = 8,
              clock = 10, litres = 11, alarms = 13;
constexpr int speedSetPoint = 0, fillVolume = 1, temperatureLimit = 2, ordered = 4, probeCorrection = 6,
              recipe = 7, batch = 10, lamps = 18;
constexpr int run = 0, acknowledge = 1, reset = 2;
constexpr int bottleUnderValve = 0, doorsClosed = 1, alarmWaits = 2;
} // namespace filler
namespace packer {
constexpr int unit = 2;
constexpr int cases = 0, openCase = 2, rejected = 3;
constexpr int bottlesPerCase = 0;
constexpr int ready = 0;
} // namespace packer
namespace palletiser {
constexpr int unit = 3;
constexpr int pallets = 0, openPallet = 1, weight = 2;
constexpr int casesPerPallet = 0;
} // namespace palletiser

constexpr int alarmTemperature = 1 << 0, alarmLevel = 1 << 1, alarmStopped = 1 << 2;

// Decimal digits, one in each four bits.
std::uint32_t bcd(std::uint32_t value)
{
    std::uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 4, value /= 10)
        result |= value % 10 << shift;
    return result;
}

// Two characters a register, the first one in the low byte.
void setText(PlcTables &tables, int index, std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int low = static_cast<unsigned char>(text[i]);
        const int high = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
        tables.setValue(holdings, index + static_cast<int>(i / 2), low | high << 8);
    }
}

} // namespace

BottlingLine::BottlingLine(PlcMemory &memory) : m_memory(memory)
{
    m_memory.withAll([this](std::map<int, PlcTables> &units) { start(units); });
}

void BottlingLine::advance(std::chrono::milliseconds duration)
{
    m_rest += duration;
    for (; m_rest >= tick; m_rest -= tick)
        m_memory.withAll([this](std::map<int, PlcTables> &units) { step(units); });
}

void BottlingLine::start(std::map<int, PlcTables> &units)
{
    PlcTables &tables = units.at(filler::unit);
    tables.setValue(holdings, filler::speedSetPoint, 120);
    tables.setValue(holdings, filler::fillVolume, 500);
    tables.setSingle(holdings, filler::temperatureLimit, 6.0F);
    tables.setDoubleWord(holdings, filler::ordered, 96000);
    tables.setValue(holdings, filler::probeCorrection, -12);
    tables.setValue(holdings, filler::recipe, 0x0417);
    setText(tables, filler::batch, "LOT-0417-A");
    tables.setValue(holdings, filler::lamps, 0x00F5);
    tables.setValue(coils, filler::run, 1);
    tables.setValue(discreteInputs, filler::doorsClosed, 1);
    units.at(packer::unit).setValue(holdings, packer::bottlesPerCase, 6);
    units.at(packer::unit).setValue(coils, packer::ready, 1);
    units.at(palletiser::unit).setValue(holdings, palletiser::casesPerPallet, 48);
    publish(units);
}

void BottlingLine::step(std::map<int, PlcTables> &units)
{
    PlcTables &tables = units.at(filler::unit);
    countTime();
    obeyCoils(tables);
    fill(units);
    m_filler.alarms |= alarmCauses(tables);
    m_filler.blinks = !m_filler.blinks;
    publish(units);
}

void BottlingLine::countTime()
{
    if (++m_filler.ticksOfSecond < 10)
        return;
    m_filler.ticksOfSecond = 0;
    m_filler.secondsOfDay = (m_filler.secondsOfDay + 1) % (24 * 3600);
}

void BottlingLine::obeyCoils(PlcTables &tables)
{
    if (tables.value(coils, filler::reset) != 0) {
        m_filler.bottles = 0;
        m_filler.balance = 0;
        m_filler.litres = 0;
        tables.setValue(coils, filler::reset, 0);
    }
    if (tables.value(coils, filler::acknowledge) != 0) {
        m_filler.alarms &= alarmCauses(tables);
        tables.setValue(coils, filler::acknowledge, 0);
    }
}

void BottlingLine::fill(std::map<int, PlcTables> &units)
{
    PlcTables &tables = units.at(filler::unit);
    const bool runs = tables.value(coils, filler::run) != 0;
    const int target = runs ? std::min<int>(tables.value(holdings, filler::speedSetPoint), 240) : 0;
    m_filler.speed += (target > m_filler.speed) - (target < m_filler.speed);

    if (m_filler.speed != 0)
        --m_filler.level;
    if (m_filler.refills) {
        m_filler.level += 5;
        m_filler.balance += 2500;
        m_filler.refills = m_filler.level < 950;
    } else {
        m_filler.refills = m_filler.level <= 200;
    }

    m_filler.temperature += m_filler.cools ? -1 : 1;
    if (m_filler.temperature == 640 || m_filler.temperature == 400)
        m_filler.cools = !m_filler.cools;

    for (m_filler.partOfBottle += m_filler.speed; m_filler.partOfBottle >= 600; m_filler.partOfBottle -= 600)
        moveBottle(units);
    if (m_filler.balance > 1'000'000 || m_filler.balance < -1'000'000)
        m_filler.balance = 0;
}

// One bottle through the whole line.
void BottlingLine::moveBottle(std::map<int, PlcTables> &units)
{
    const int volume = std::min<int>(units.at(filler::unit).value(holdings, filler::fillVolume), 5000);
    ++m_filler.bottles;
    m_filler.bottleUnderValve = !m_filler.bottleUnderValve;
    m_filler.balance -= volume;
    m_filler.restOfLitres += volume;
    m_filler.litres =
        (m_filler.litres + static_cast<std::uint32_t>(m_filler.restOfLitres / 100)) % 100'000'000;
    m_filler.restOfLitres %= 100;

    if (++m_packer.sinceReject == 97) {
        m_packer.sinceReject = 0;
        ++m_packer.rejected;
    }
    const int perCase = std::max<int>(units.at(packer::unit).value(holdings, packer::bottlesPerCase), 1);
    if (++m_packer.openCase < perCase)
        return;
    m_packer.openCase = 0;
    ++m_packer.cases;
    const int perPallet =
        std::max<int>(units.at(palletiser::unit).value(holdings, palletiser::casesPerPallet), 1);
    if (++m_palletiser.openPallet < perPallet)
        return;
    m_palletiser.openPallet = 0;
    ++m_palletiser.pallets;
}

int BottlingLine::alarmCauses(const PlcTables &tables) const
{
    const float limit = tables.single(holdings, filler::temperatureLimit);
    int causes = 0;
    if (static_cast<float>(m_filler.temperature) / 100 > limit)
        causes |= alarmTemperature;
    if (m_filler.level < 250)
        causes |= alarmLevel;
    if (tables.value(coils, filler::run) == 0)
        causes |= alarmStopped;
    return causes;
}

void BottlingLine::publish(std::map<int, PlcTables> &units)
{
    PlcTables &f = units.at(filler::unit);
    const int runs = f.value(coils, filler::run);
    const int alarmWaits = m_filler.alarms != 0;
    f.setValue(inputs, filler::state,
               runs | (m_filler.speed != 0) << 1 | m_filler.refills << 2 | alarmWaits << 3 |
                   m_filler.blinks << 15);
    f.setValue(inputs, filler::level, m_filler.level);
    f.setSingle(inputs, filler::temperature, static_cast<float>(m_filler.temperature) / 100);
    f.setDoubleWord(inputs, filler::bottles, m_filler.bottles);
    f.setValue(inputs, filler::speed, m_filler.speed);
    f.setValue(inputs, filler::pressure, m_filler.refills ? 85 : -35);
    f.setDoubleWord(inputs, filler::balance, static_cast<std::uint32_t>(m_filler.balance));
    const int minutes = m_filler.secondsOfDay / 60;
    f.setValue(inputs, filler::clock,
               static_cast<int>(bcd(static_cast<std::uint32_t>(minutes / 60 * 100 + minutes % 60))));
    f.setDoubleWord(inputs, filler::litres, bcd(m_filler.litres));
    f.setValue(inputs, filler::alarms, m_filler.alarms);
    f.setValue(discreteInputs, filler::bottleUnderValve, m_filler.bottleUnderValve);
    f.setValue(discreteInputs, filler::alarmWaits, alarmWaits);

    PlcTables &p = units.at(packer::unit);
    p.setDoubleWord(inputs, packer::cases, m_packer.cases);
    p.setValue(inputs, packer::openCase, m_packer.openCase);
    p.setValue(inputs, packer::rejected, m_packer.rejected);

    PlcTables &q = units.at(palletiser::unit);
    q.setValue(inputs, palletiser::pallets, m_palletiser.pallets);
    q.setValue(inputs, palletiser::openPallet, m_palletiser.openPallet);
    q.setSingle(inputs, palletiser::weight, static_cast<float>(m_palletiser.openPallet) * 3.2F);
}

BottlingLineClock::BottlingLineClock(BottlingLine &line) : m_line(line), m_thread([this] { run(); }) {}

BottlingLineClock::~BottlingLineClock()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
    }
    m_stop.notify_one();
    m_thread.join();
}

void BottlingLineClock::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    auto next = std::chrono::steady_clock::now();
    while (!m_stop.wait_until(lock, next += BottlingLine::tick, [this] { return m_isStopping; }))
        m_line.advance(BottlingLine::tick);
}

} // namespace panelkit::simulator
