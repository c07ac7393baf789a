// The PLC of a soak: the bottling line, registers that prove what is read, and faults one after the other.
#pragma once

#include "simulator/plc/bottlingline.h"
#include "simulator/plc/descriptor.h"
#include "simulator/plc/plcserver.h"

#include <QString>
#include <QVector>

#include <map>
#include <optional>
#include <vector>

namespace panelkit::simulator {

class Chance;

// In each unit the input registers from `firstWitness` on hold what only this unit, this register and this
// moment can hold. All of them change together, from one generation to the next, and nobody else writes them.
class SoakPlc
{
public:
    static constexpr int firstWitness = 500; // counted from 0
    static constexpr int witnessCount = 100;
    static constexpr int firstCounter = 600; // holding registers that are the macros' own, from here on

    // Serves these units on a free loopback port; throws std::system_error where that cannot be.
    explicit SoakPlc(const std::vector<int> &units);

    quint16 port() const { return m_server.port(); }
    quint16 deadPort() const { return m_deadPort; } // nobody ever answers there
    const std::vector<int> &units() const { return m_units; }

    // Goes on to the next generation of witnesses; or another fault, or none, from now on.
    void act(Chance &chance);

    void switchOn(const PlcFaultSetting &fault);
    void recover(); // from every fault

    // Whether all clients have gone; waits for them.
    bool isLeftAlone() const;

    quint16 generation() const { return m_generation; }

    // The generation of the words that were read from `index` on, or nothing when they are not of one.
    static std::optional<quint16> generationOf(int unit, int index, const QVector<quint16> &words);

    quint32 doubleWord(int unit, int index); // of the holding registers, low word first

    // How often each fault has been switched on, by its name.
    const std::map<QString, quint64> &faults() const { return m_faults; }
    quint64 faultyAnswers() const { return m_server.counters().faultyAnswers; }
    quint64 requests() const { return m_server.counters().requestCount(); }

private:
    void writeWitnesses();

    const std::vector<int> m_units;
    PlcMemory m_memory;
    BottlingLine m_line;
    BottlingLineClock m_clock;
    PlcServer m_server;
    Descriptor m_deadSocket; // bound, but not listening
    quint16 m_deadPort = 0;
    quint16 m_generation = 1;
    std::map<QString, quint64> m_faults;
};

} // namespace panelkit::simulator
