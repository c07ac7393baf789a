#include "simulator/host/addressexplanation.h"

#include "link/driverinterface.h"
#include "simulator/drivers/drivercode.h"
#include "simulator/project/project.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QStringList>

#include <algorithm>

namespace panelkit::simulator {

namespace {

const LinkDefinition *findLink(const Project &project, int number)
{
    const auto found = std::find_if(project.links.begin(), project.links.end(),
                                    [number](const LinkDefinition &link) { return link.number == number; });
    return found == project.links.end() ? nullptr : &*found;
}

// The first and the last number of the block, where the link's driver is one of our own; else nothing.
QStringList numberRange(const linkInfo_t &link, const QString &block)
{
    QLibrary driver(link.library->fileName()); // with Qt 6 the record's own is not loaded, and must not be
    const auto describe =
        reinterpret_cast<GetRegDiscriptionFunction>(driver.resolve("intf_getRegDiscription"));
    QString name = block;
    QStringList description;
    if (describe != nullptr)
        describe(name, description);
    driver.unload();
    return description.size() == 5 ? description.mid(1, 2) : QStringList();
}

class AddressExplanation
{
    Q_DECLARE_TR_FUNCTIONS(AddressExplanation)

public:
    AddressExplanation(const AddressVerdict &verdict, const TypedAddress &address, const Project &project)
        : m_verdict(verdict),
          m_address(address),
          m_project(project)
    {
    }

    QString sentence() const
    {
        switch (m_verdict.reason) {
        case AddressVerdict::UnknownLinkName:
            return tr("No link is called \"%1\". The project has: %2.").arg(m_address.linkName, linkNames());
        case AddressVerdict::LinkNumberUnreadable:
            return tr("\"%1\" before the \"/\" is no link number.").arg(place());
        case AddressVerdict::NoSuchLink:
            return tr("There is no link %1. The project has: %2.")
                .arg(QString::number(m_verdict.linkNumber), linkNumbers());
        case AddressVerdict::BlockNotForAccess:
            return m_address.isBit
                       ? tr("%1 holds words. Bits of the internal storage are in LB.").arg(place())
                       : tr("%1 holds bits. Words of the internal storage are in LW and RWI.").arg(place());
        case AddressVerdict::NumberUnreadable:
            return tr("\"%1\" is no whole number.").arg(m_address.number);
        case AddressVerdict::IndexOutOfRange:
            return range();
        case AddressVerdict::StationUnreadable:
            return tr("%1 is not asked: its addresses name their station, and \"%2\" is none from %3 to %4.")
                .arg(link(), place(), lowest(), highest());
        case AddressVerdict::UnknownBlock:
            return tr("%1 has no block \"%2\". It has: %3.").arg(link(), place(), blockNames());
        case AddressVerdict::NoDriver:
            return tr("%1 has no driver that could check the address; it would be %2.")
                .arg(link(), m_verdict.link->library->fileName());
        case AddressVerdict::RefusedByDriver:
            return refusal();
        case AddressVerdict::NoTarget:
            return tr("There is no item that the address could be written to.");
        case AddressVerdict::Valid:
            break;
        }
        return QString();
    }

private:
    // The part of the author's text that the verdict is about.
    QString place() const { return m_address.block.mid(m_verdict.offset, m_verdict.length); }

    QString lowest() const { return QString::number(m_verdict.lowest); }
    QString highest() const { return QString::number(m_verdict.highest); }
    QString length() const { return QString::number(m_address.length); }

    QString block() const { return m_address.block.mid(m_verdict.blockOffset); }

    QString link() const
    {
        return tr("Link %1 (\"%2\")").arg(QString::number(m_verdict.linkNumber), m_verdict.link->linkName);
    }

    QString linkNames() const
    {
        QStringList names = {QLatin1String(internalStorageName)};
        for (const LinkDefinition &link : m_project.links)
            names << link.name;
        return names.join(QLatin1String(", "));
    }

    QString linkNumbers() const
    {
        QStringList numbers;
        for (const LinkDefinition &link : m_project.links)
            numbers << QString::number(link.number);
        return numbers.isEmpty() ? tr("none") : numbers.join(QLatin1String(", "));
    }

    QString blockNames() const
    {
        QString names = m_verdict.link->blockNames;
        return names.isEmpty() ? tr("none") : names.replace(QLatin1Char(','), QLatin1String(", "));
    }

    QString range() const
    {
        if (m_verdict.highest < m_verdict.lowest)
            return tr("%1 does not have %2 registers in a row.").arg(block(), length());
        if (m_address.length == 1)
            return tr("%1 takes the numbers %2 to %3.").arg(block(), lowest(), highest());
        return tr("%1 takes the numbers %2 to %3 for %4 registers in a row.")
            .arg(block(), lowest(), highest(), length());
    }

    QString refusal() const
    {
        const LinkDefinition *definition = findLink(m_project, m_verdict.linkNumber);
        if (definition == nullptr || !isSampleDriver(definition->driverBaseName()))
            return ownCode();
        const QStringList numbers = numberRange(*m_verdict.link, block());
        const QString reason = driverReason(static_cast<DriverCode>(m_verdict.code));
        return numbers.isEmpty() ? reason
                                 : reason + QLatin1Char(' ') +
                                       tr("%1 takes %2 to %3.").arg(block(), numbers.first(), numbers.last());
    }

    QString driverReason(DriverCode code) const
    {
        switch (code) {
        case DriverCode::WrongAccess:
            return m_address.isBit ? tr("%1 holds words, not bits.").arg(block())
                                   : tr("%1 holds bits, not words.").arg(block());
        case DriverCode::OutOfRange:
            return tr("%1 has no number %2.").arg(block(), m_address.number);
        case DriverCode::UnknownBlock:
            return tr("The driver does not know the block \"%1\".").arg(block());
        case DriverCode::UnreadableNumber:
            return tr("\"%1\" is no number of %2.").arg(m_address.number, block());
        case DriverCode::Unaligned:
            return tr("Number %1 lies within another register of %2.").arg(m_address.number, block());
        case DriverCode::NotOctal:
            return tr("The numbers of %1 are octal: there is no digit 8 or 9.").arg(block());
        case DriverCode::BadBit:
            return tr("\"%1\" lacks its bit, or the bit is too high.").arg(m_address.number);
        case DriverCode::RunTooLong:
            return tr("%1 registers from %2 on reach beyond the end of %3.")
                .arg(length(), m_address.number, block());
        case DriverCode::Accepted:
            break;
        }
        return ownCode();
    }

    QString ownCode() const
    {
        return tr("%1: the driver answers with its code %2.").arg(link(), QString::number(m_verdict.code));
    }

    const AddressVerdict &m_verdict;
    const TypedAddress &m_address;
    const Project &m_project;
};

} // namespace

QString explain(const AddressVerdict &verdict, const TypedAddress &address, const Project &project)
{
    return AddressExplanation(verdict, address, project).sentence();
}

} // namespace panelkit::simulator
