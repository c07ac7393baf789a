// An address that an operator entered, in UTF-8: checked beside the expression that says what is one, and
// taken apart.

#include "network/panelip.h"

#include "fuzz/support/demand.h"
#include "register/interfacecomm.h"
#include "runtime/systemroot.h"

#include <QRegExp>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

class NotedWrites final : public InterfaceComm
{
public:
    std::vector<int> addresses;
    std::vector<quint16> values;

    LinkValue getLinkValue(quint16) override { return {}; }
    LinkValue getLinkValueByName(const QString &) override { return {}; }
    int resolveAddressIndex(int, const QString &, const QString &, int, int) override { return 0; }
    int readAddressWords(const RegisterValueChange *, int, void *) override { return 0; }
    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        demand(area == 0 && count == 1, "one word register a part");
        addresses.push_back(address);
        values.push_back(*static_cast<const quint16 *>(buffer));
        return 0;
    }
    int readRegisters(int, int, int, void *) override { return 0; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QRegExp expression(QStringLiteral("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                                                   "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const bool isAddress = checkIPAddr(text);
    demand(isAddress == expression.exactMatch(text), "it is an address where the expression says so");

    NotedWrites comm;
    setIPInfo(&comm, 64052, text);
    const QStringList parts = text.split(QLatin1Char('.'));
    demand(comm.addresses ==
               (parts.size() == 4 ? std::vector<int>{64052, 64053, 64054, 64055} : std::vector<int>()),
           "four parts go to four registers");
    for (std::size_t i = 0; i < comm.values.size(); ++i)
        demand(comm.values[i] == static_cast<quint16>(parts[static_cast<int>(i)].toUInt()),
               "a part is its number");
    for (const quint16 value : comm.values)
        demand(!isAddress || value <= 255, "the parts of an address are bytes");
    return 0;
}
