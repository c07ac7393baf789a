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

bool isInternal(const RegisterValueChange &reg)
{
    return std::strncmp(reg.block, "LB", 2) == 0 || std::strncmp(reg.block, "LW", 2) == 0 ||
           std::strncmp(reg.block, "RWI", 3) == 0;
}

// The Latin-1 part of an address: a block name, and at most two numbers with a separator each.
class AddressHead
{
public:
    void appendNumber(qint32 number) { m_end = std::to_chars(m_end, std::end(m_characters), number).ptr; }
    void appendSeparator(char separator) { *m_end++ = separator; }
    void appendBlock(const RegisterValueChange &reg)
    {
        for (const char character : reg.block) {
            if (character == '\0')
                break;
            *m_end++ = character;
        }
    }
    std::string_view text() const { return {m_characters, static_cast<std::size_t>(m_end - m_characters)}; }

private:
    char m_characters[sizeof(RegisterValueChange::block) + 2 * sizeof("-2147483648")];
    char *m_end = m_characters;
};

} // namespace

bool conversionAddr2UIText(const RegisterValueChange &reg, const QString &indexText, InterfaceComm *comm,
                           QString &out)
{
    if (&indexText == &out)
        return conversionAddr2UIText(reg, QString(indexText), comm, out);
    AddressHead head;
    if (isInternal(reg)) {
        head.appendBlock(reg);
        head.appendNumber(reg.index);
        panelkit::assignText(out, head.text());
        return true;
    }
    if (comm == nullptr) {
        panelkit::assignText(out, {});
        return false;
    }
    const LinkValue link = comm->getLinkValue(static_cast<quint16>(reg.linkId));
    if (link.id == -1) {
        panelkit::assignText(out, {});
        return true;
    }
    if (reg.linkId > 1) { // the first link is shown without its number
        head.appendNumber(reg.linkId);
        head.appendSeparator('/');
    }
    if (link.addmore == 1) {
        head.appendNumber(reg.station);
        head.appendSeparator('#');
    }
    head.appendBlock(reg);
    panelkit::assignText(out, head.text(), indexText);
    return true;
}
