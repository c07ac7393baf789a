// What checking an address costs.

#include "bench/support/comparison.h"
#include "network/panelip.h"

#include <QRegExp>
#include <QStringList>

using namespace panelkit::bench;

namespace {

// The address as an expression, as one writes it down where it is needed.
bool plainCheck(const QString &address)
{
    QRegExp expression(QLatin1String("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                                     "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    return expression.exactMatch(address);
}

// The same with the expression kept from call to call.
bool carefulCheck(const QString &address)
{
    static const QRegExp expression(QLatin1String("\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}"
                                                  "(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\b"));
    return expression.exactMatch(address);
}

using CheckFunction = bool (*)(const QString &);

class CheckAddresses
{
public:
    CheckAddresses(CheckFunction function, QStringList addresses)
        : m_function(function),
          m_addresses(std::move(addresses))
    {
    }

    void operator()(bool &accepted)
    {
        accepted = m_function(m_addresses.at(m_position));
        m_position = (m_position + 1) % static_cast<int>(m_addresses.size());
    }

private:
    CheckFunction m_function;
    QStringList m_addresses;
    int m_position = 0;
};

void compareCheck(const char *name, const QStringList &addresses)
{
    compare<bool>({name, 50, 0}, CheckAddresses(plainCheck, addresses),
                  CheckAddresses(carefulCheck, addresses), CheckAddresses(checkIPAddr, addresses));
}

} // namespace

int main(int argc, char **argv)
{
    compareCheck("checkIPAddr, addresses", {QStringLiteral("192.168.1.1"), QStringLiteral("255.255.255.0"),
                                            QStringLiteral("10.0.0.254"), QStringLiteral("172.16.31.9"),
                                            QStringLiteral("8.8.4.4"), QStringLiteral("010.001.0.09")});
    compareCheck("checkIPAddr, wrong ones", {QStringLiteral("192.168.1.300"), QStringLiteral("255.255.255"),
                                             QStringLiteral("10.0.0.254 "), QStringLiteral("1.2.3.4.5"),
                                             QStringLiteral("256.1.1.1"), QStringLiteral("gateway")});
    return run(argc, argv);
}
