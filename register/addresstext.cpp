#include "register/addresstext.h"

#include "register/interfacecomm.h"
#include "register/registervaluechange.h"
#include "register/textassign.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>

namespace {

std::string_view blockName(const RegisterValueChange &reg)
{
    const void *end = std::memchr(reg.block, '\0', sizeof(reg.block));
    const auto size = end == nullptr ? sizeof(reg.block)
                                     : static_cast<std::size_t>(static_cast<const char *>(end) - reg.block);
    return {reg.block, size};
}

bool isInternal(std::string_view block)
{
    return block.substr(0, 2) == "LB" || block.substr(0, 2) == "LW" || block.substr(0, 3) == "RWI";
}

// The Latin-1 part of an address: at most two numbers with their separators, and a block name.
class AddressHead
{
public:
    void append(qint32 number) { m_end = std::to_chars(m_end, std::end(m_characters), number).ptr; }
    void append(char separator) { *m_end++ = separator; }
    void append(std::string_view block)
    {
        std::memcpy(m_end, block.data(), block.size());
        m_end += block.size();
    }
    std::string_view text() const { return {m_characters, static_cast<std::size_t>(m_end - m_characters)}; }

private:
    char m_characters[2 * sizeof("-2147483648") + sizeof(RegisterValueChange::block)];
    char *m_end = m_characters;
};

} // namespace

bool conversionAddr2UIText(const RegisterValueChange &reg, const QString &indexText, InterfaceComm *comm,
                           QString &out)
{
    if (&indexText == &out) {
        const QString index = indexText;
        return conversionAddr2UIText(reg, index, comm, out);
    }
    const std::string_view block = blockName(reg);
    AddressHead head;
    if (isInternal(block)) {
        head.append(block);
        head.append(reg.index);
        panelkit::assignText(out, head.text(), QString(), 0);
        return true;
    }
    if (comm == nullptr) {
        panelkit::assignText(out, {}, QString(), 0);
        return false;
    }
    const LinkValue link = comm->getLinkValue(static_cast<quint16>(reg.linkId));
    if (link.id == -1) {
        panelkit::assignText(out, {}, QString(), 0);
        return true;
    }
    if (reg.linkId > 1) { // the first link is shown without its number
        head.append(reg.linkId);
        head.append('/');
    }
    if (link.addmore == 1) {
        head.append(reg.station);
        head.append('#');
    }
    head.append(block);
    panelkit::assignText(out, head.text(), indexText, 0);
    return true;
}
