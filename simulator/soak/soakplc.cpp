#include "simulator/soak/soakplc.h"

#include "simulator/soak/chance.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <system_error>

namespace panelkit::simulator {

namespace {

// Odd, so that it has an inverse among the 16-bit numbers.
constexpr quint16 generationFactor = 40503;
constexpr quint16 inverseFactor = 30599;
static_assert(static_cast<quint16>(quint32(generationFactor) * inverseFactor) == 1);

quint16 witness(int unit, int index, quint16 generation)
{
    return static_cast<quint16>(quint32(generation) * generationFactor + static_cast<quint32>(unit) * 9973u +
                                static_cast<quint32>(index) * 101u);
}

Descriptor deadSocket(quint16 &port)
{
    sockaddr_in where = {};
    where.sin_family = AF_INET;
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(where);
    auto *const address = reinterpret_cast<sockaddr *>(&where);
    Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen() || ::bind(socket.number(), address, length) != 0 ||
        ::getsockname(socket.number(), address, &length) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot take a loopback port");
    port = ntohs(where.sin_port);
    return socket;
}

PlcFaultSetting drawnFault(Chance &chance, const std::vector<int> &units)
{
    PlcFaultSetting fault;
    fault.fault = static_cast<PlcFault>(chance.between(0, static_cast<int>(plcFaultNames.size()) - 1));
    fault.unit = chance.oneIn(2) ? PlcFaultSetting::allUnits : chance.of(units);
    fault.answers = chance.oneIn(2) ? chance.between(1, 10) : 0;
    fault.delay = std::chrono::milliseconds(chance.between(10, 600));
    fault.exceptionCode = chance.between(1, 11);
    return fault;
}

} // namespace

SoakPlc::SoakPlc(const std::vector<int> &units)
    : m_units(units),
      m_memory(units, BottlingLine::registersPerTable),
      m_line(m_memory),
      m_clock(m_line),
      m_server(m_memory),
      m_deadSocket(deadSocket(m_deadPort))
{
    writeWitnesses();
}

void SoakPlc::act(Chance &chance)
{
    switch (chance.between(1, 4)) {
    case 1:
        switchOn(drawnFault(chance, m_units));
        break;
    case 2:
        recover();
        break;
    default:
        ++m_generation;
        writeWitnesses();
    }
}

void SoakPlc::recover()
{
    m_server.clearFault();
    for (const int unit : m_units)
        m_server.clearFault(unit);
}

void SoakPlc::switchOn(const PlcFaultSetting &fault)
{
    m_server.setFault(fault);
    const std::string_view name = plcFaultName(fault.fault);
    ++m_faults[QString::fromLatin1(name.data(), static_cast<int>(name.size()))];
}

void SoakPlc::writeWitnesses()
{
    m_memory.withAll([this](std::map<int, PlcTables> &units) {
        for (auto &[unit, tables] : units)
            for (int index = firstWitness; index < firstWitness + witnessCount; ++index)
                tables.setValue(ModbusTable::InputRegisters, index, witness(unit, index, m_generation));
    });
}

bool SoakPlc::isLeftAlone() const
{
    return m_server.waitUntil([](const PlcCounters &counters) { return counters.openConnections == 0; },
                              std::chrono::seconds(30));
}

std::optional<quint16> SoakPlc::generationOf(int unit, int index, const QVector<quint16> &words)
{
    std::optional<quint16> generation;
    for (const quint16 word : words) {
        const auto scaled = static_cast<quint16>(word - witness(unit, index++, 0));
        const auto found = static_cast<quint16>(quint32(scaled) * inverseFactor);
        if (generation && *generation != found)
            return std::nullopt;
        generation = found;
    }
    return generation;
}

quint32 SoakPlc::doubleWord(int unit, int index)
{
    quint32 value = 0;
    m_memory.with(
        unit, [&](PlcTables &tables) { value = tables.doubleWord(ModbusTable::HoldingRegisters, index); });
    return value;
}

} // namespace panelkit::simulator
