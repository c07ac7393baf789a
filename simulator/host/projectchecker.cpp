#include "simulator/host/projectchecker.h"

#include "register/addresstext.h"
#include "register/registervaluechange.h"
#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "simulator/platform/objecttree.h"

#include <QCoreApplication>

#include <algorithm>

namespace panelkit::simulator {

namespace {

class ProjectFinding
{
    Q_DECLARE_TR_FUNCTIONS(ProjectFinding)

public:
    static QString wrongIndex(int inProject, int ofDriver)
    {
        return tr("The project gives the index %1, the address has %2.").arg(inProject).arg(ofDriver);
    }
};

const char *fieldOf(AddressVerdict::Text text)
{
    switch (text) {
    case AddressVerdict::BlockText:
        return "Block";
    case AddressVerdict::NumberText:
        return "No";
    case AddressVerdict::LinkNameText:
    case AddressVerdict::NoText:
        break;
    }
    return "Link";
}

} // namespace

ProjectChecker::ProjectChecker(const Session &session) : m_session(session), m_checker(session.projectRoot())
{
}

CheckedAddress ProjectChecker::check(const TypedAddress &address)
{
    const ObjectTree scratch;
    object *item = scratch.root();
    const char *const names[] = {"Link", "Block", "No", "index", "station", "length"};
    for (const char *name : names)
        ObjectTree::setText(item, QLatin1String(name), QString());

    CheckedAddress checked;
    checked.verdict = m_checker.explainAddress(address.linkName, address.block, address.number, item,
                                               address.isBit ? -1 : 0, address.length, 0);
    checked.passes = m_checker.checkRetPrompt(checked.verdict.code) == 0;
    checked.explanation = explain(checked.verdict, address, m_session.project());
    if (checked.verdict.code != 0)
        return checked;
    for (const char *name : names)
        checked.written << qMakePair(QString(QLatin1String(name)),
                                     object_get_property_value_type_string(item, name, QString()));
    checked.index = object_get_property_value_type_int32(item, "index", 0);
    RegisterValueChange record = {};
    if (ObjectAddress2RegisterValueChange(item, record)) {
        checked.station = record.station;
        conversionAddr2UIText(record, address.number, &m_session.communication(), checked.shown);
    }
    return checked;
}

TypedAddress ProjectChecker::typedAddress(std::size_t item) const
{
    const Project &project = m_session.project();
    const ItemDefinition &definition = project.items.at(item);
    TypedAddress address;
    address.linkName = definition.address.link;
    address.number = definition.number;
    address.isBit = definition.type == NUM_BIT;
    address.length = definition.length;
    const auto link =
        std::find_if(project.links.begin(), project.links.end(),
                     [&](const LinkDefinition &candidate) { return candidate.name == address.linkName; });
    if (link != project.links.end()) {
        if (link->number != 1)
            address.block += QString::number(link->number) + QLatin1Char('/');
        if (link->manyStations)
            address.block += QString::number(definition.address.station) + QLatin1Char('#');
    }
    address.block += definition.address.block;
    return address;
}

std::vector<ItemFinding> ProjectChecker::checkItems()
{
    std::vector<ItemFinding> findings;
    const std::vector<ItemDefinition> &items = m_session.project().items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const CheckedAddress checked = check(typedAddress(i));
        if (checked.verdict.reason != AddressVerdict::Valid)
            findings.push_back({i, fieldOf(checked.verdict.text), checked.verdict.code, checked.passes,
                                checked.explanation});
        else if (checked.index != items[i].address.index)
            findings.push_back(
                {i, "index", 0, false, ProjectFinding::wrongIndex(items[i].address.index, checked.index)});
    }
    return findings;
}

} // namespace panelkit::simulator
