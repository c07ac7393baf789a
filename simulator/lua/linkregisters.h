// The registers that macros reach through the panel's communication interface.
#pragma once

#include "register/registervaluechange.h"
#include "simulator/lua/macroregisters.h"

#include <map>
#include <tuple>

namespace panelkit::simulator {

class Communication;

// The address as the communication interface takes it: on a link of one station its own station counts,
// whatever the macro says. Nothing, with the reason in `failure`, for a link that there is not.
std::optional<RegisterValueChange> registerOf(Communication &communication, const MacroAddress &address,
                                              QString &failure);

// Reads and writes the registers themselves, each at once and in order. A write first reads what stands
// there.
class LinkRegisters final : public MacroRegisters
{
public:
    explicit LinkRegisters(Communication &communication) : m_communication(communication) {}

    QString read(const MacroAddress &address, RegisterWords &words) override;
    QString write(const MacroAddress &address, const RegisterWords &words,
                  std::optional<RegisterWords> &before) override;

private:
    Communication &m_communication;
};

// Keeps to itself what is written, and reads it back from there; all else is read from the registers
// themselves. What could not be written to them cannot be written here.
class CopiedRegisters final : public MacroRegisters
{
public:
    explicit CopiedRegisters(Communication &communication) : m_communication(communication) {}

    QString read(const MacroAddress &address, RegisterWords &words) override;
    QString write(const MacroAddress &address, const RegisterWords &words,
                  std::optional<RegisterWords> &before) override;

    // Gives a register of the copy a value, also one that cannot be written. Returns as write does.
    QString preset(const MacroAddress &address, const RegisterWords &words);

private:
    // One register of a PLC (link, unit, table), or of a block of the internal storage (link 0, -1, block).
    using Place = std::tuple<int, int, QString, int>;

    struct Written
    {
        quint16 value = 0;
        quint16 mask = 0; // the bits that were written
    };

    // How the words of an address lie in registers.
    struct Layout;
    static std::optional<Layout> layoutOf(const RegisterValueChange &reg, int wordCount);

    QString find(const MacroAddress &address, int wordCount, Layout &layout);
    void keep(const Layout &layout, const RegisterWords &words);

    Communication &m_communication;
    std::map<Place, Written> m_written;
};

} // namespace panelkit::simulator
