// What a macro reaches beyond its own text: the registers behind the panel's links.
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace panelkit::simulator {

// A register as the arguments of getdata and setdata name it. `index` counts as the link's driver does.
struct MacroAddress
{
    QString link;
    QString block;
    int index = 0;
    int station = 0;
    int extra = 0;
};

// The words of one value, the low word first. A bit is one word, 0 or 1.
struct RegisterWords
{
    std::array<quint16, 2> words = {};
    int count = 0; // 1 or 2
};

class MacroRegisters
{
public:
    virtual ~MacroRegisters() = default;

    // Fills the `count` words that `words` asks for. Returns an empty text, or in one line why that cannot be
    // done.
    virtual QString read(const MacroAddress &address, RegisterWords &words) = 0;

    // The same for writing. `before` takes what stood there, where that is known.
    virtual QString write(const MacroAddress &address, const RegisterWords &words,
                          std::optional<RegisterWords> &before) = 0;
};

} // namespace panelkit::simulator
