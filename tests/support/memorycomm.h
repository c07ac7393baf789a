// A communication interface that answers from memory without a note of it or a heap allocation of its own,
// for counting what the library allocates and for measuring it.
#pragma once

#include "register/interfacecomm.h"
#include "register/registervaluechange.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace panelkit::testing {

class MemoryComm final : public InterfaceComm
{
public:
    std::vector<quint16> words; // every register: `index` is the place of its first word
    LinkValue link;             // every link

    LinkValue getLinkValue(quint16) override { return link; }
    LinkValue getLinkValueByName(const QString &) override { return link; }
    int resolveAddressIndex(int, const QString &, const QString &, int, int) override { return 0; }
    int readAddressWords(const RegisterValueChange *reg, int count, void *buffer) override
    {
        const auto first = static_cast<std::size_t>(reg->index);
        if (first < words.size())
            std::memcpy(buffer, &words[first],
                        std::min(static_cast<std::size_t>(count), words.size() - first) * sizeof(quint16));
        return 0;
    }
    int writeRegisters(int, int, int, const void *) override { return 0; }
    int readRegisters(int, int, int, void *) override { return 0; }
};

} // namespace panelkit::testing
