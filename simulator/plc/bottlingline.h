// A small bottling line: what the registers of a PLC are about. Its register map and its rules are drawn in
// docs/formats/bottling-line.md.
#pragma once

#include "simulator/plc/plcmemory.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace panelkit::simulator {

// Moves the registers of the units 1 (filler), 2 (packer) and 3 (palletiser) of a memory. Nothing moves by
// itself, and the same ticks always give the same values.
class BottlingLine
{
public:
    static constexpr std::chrono::milliseconds tick{100};

    // A memory as the line wants it: its three units, 1000 registers in each table.
    static constexpr int registersPerTable = 1000;
    static std::vector<int> units() { return {1, 2, 3}; }

    // Writes the start values. `memory` must outlive the line and have its units.
    explicit BottlingLine(PlcMemory &memory);

    // Lets `duration` of the line's time pass, in whole ticks; what is less than a tick is kept for the next
    // call. Clients never see half a tick.
    void advance(std::chrono::milliseconds duration);

private:
    struct Filler
    {
        int speed = 120; // bottles a minute
        int level = 875; // tenths of a per cent
        bool refills = false;
        int temperature = 400; // hundredths of a degree
        bool cools = false;
        int alarms = 0;
        int partOfBottle = 0; // sixhundredths
        std::uint32_t bottles = 81350;
        std::int32_t balance = -1500;  // ml
        std::uint32_t litres = 406750; // tenths
        int restOfLitres = 0;          // ml, less than a tenth of a litre
        bool bottleUnderValve = false;
        int secondsOfDay = 6 * 3600;
        int ticksOfSecond = 0;
        bool blinks = false;
    };
    struct Packer
    {
        std::uint32_t cases = 13558;
        int openCase = 2; // bottles
        int rejected = 7;
        int sinceReject = 0; // bottles
    };
    struct Palletiser
    {
        int pallets = 282;
        int openPallet = 22; // cases
    };

    void start(std::map<int, PlcTables> &units);
    void step(std::map<int, PlcTables> &units);
    void countTime();
    void obeyCoils(PlcTables &filler);
    void fill(std::map<int, PlcTables> &units);
    void moveBottle(std::map<int, PlcTables> &units);
    int alarmCauses(const PlcTables &filler) const;
    void publish(std::map<int, PlcTables> &units);

    PlcMemory &m_memory;
    std::chrono::milliseconds m_rest{0};
    Filler m_filler;
    Packer m_packer;
    Palletiser m_palletiser;
};

// Lets a line follow the real time, from construction to destruction, in a thread of its own. Nobody else may
// advance it meanwhile.
class BottlingLineClock
{
public:
    explicit BottlingLineClock(BottlingLine &line);
    ~BottlingLineClock();
    BottlingLineClock(const BottlingLineClock &) = delete;
    BottlingLineClock &operator=(const BottlingLineClock &) = delete;

private:
    void run();

    BottlingLine &m_line;
    std::mutex m_mutex;
    std::condition_variable m_stop;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace panelkit::simulator
