#include "simulator/project/projecttree.h"

#include "simulator/project/project.h"

namespace panelkit::simulator {

namespace {

void setNumber(object *node, const char *name, int value)
{
    ObjectTree::setNumber(node, QLatin1String(name), value);
}

void setText(object *node, const char *name, const QString &value)
{
    ObjectTree::setText(node, QLatin1String(name), value);
}

// A list as the object library keeps it: "number", and the entries under numbered names.
void setList(object *node, const char *entryName, const QStringList &entries)
{
    setNumber(node, "number", static_cast<int>(entries.size()));
    for (int i = 0; i < entries.size(); ++i)
        ObjectTree::setText(node, QLatin1String(entryName) + QString::number(i), entries.at(i));
}

void addLink(object *folder, const LinkDefinition &link)
{
    object *node = ObjectTree::appendChild(folder, link.name);
    setNumber(node, "linkID", link.number);
    setNumber(node, "AddressMode", link.manyStations ? 1 : 0);
    setText(node, "blockNames", link.blocks.join(QLatin1Char(',')));
    setText(node, "PLCID", QString::number(link.station));
    setText(node, "linkName", link.name);
    setText(node, "driverLib", link.driver);
}

// "name,link,station,block,index,extra,type,": the eighth field must be there and is the author's.
QString declaration(const VariableDefinition &variable)
{
    const AddressDefinition &address = variable.address;
    const QStringList fields = {variable.name,
                                address.link,
                                QString::number(address.station),
                                address.block,
                                QString::number(address.index),
                                QString::number(variable.extra),
                                QString::number(variable.dataType),
                                QString()};
    return fields.join(QLatin1Char(','));
}

// "link,station,block,index,extra,name"
QString declaration(const TextVariableDefinition &variable)
{
    const AddressDefinition &address = variable.address;
    const QStringList fields = {address.link,
                                QString::number(address.station),
                                address.block,
                                QString::number(address.index),
                                QString::number(variable.extra),
                                variable.name};
    return fields.join(QLatin1Char(','));
}

template <typename Variable>
QStringList declarations(const std::vector<Variable> &variables)
{
    QStringList texts;
    for (const Variable &variable : variables)
        texts << declaration(variable);
    return texts;
}

object *addItem(object *folder, const ItemDefinition &item)
{
    object *node = ObjectTree::appendChild(folder, item.name);
    setText(node, "Link", item.address.link);
    setText(node, "Block", item.address.block);
    setText(node, "No", item.number);
    setNumber(node, "index", item.address.index);
    setNumber(node, "station", item.address.station);
    setNumber(node, "length", item.length);
    setNumber(node, "macroMode", item.macro.mode);
    setText(node, "pressmacro", item.macro.press);
    setText(node, "releasemacro", item.macro.release);
    setList(ObjectTree::appendChild(node, QStringLiteral("macroTextVarList")), "Textvar",
            declarations(item.macro.textVariables));
    return node;
}

} // namespace

ProjectTree::ProjectTree(const Project &project) : m_tree(project.name)
{
    object *links = ObjectTree::appendChild(root(), QStringLiteral("link"));
    for (const LinkDefinition &link : project.links)
        addLink(links, link);

    setList(ObjectTree::appendChild(root(), QStringLiteral("macroVarList")), "var",
            declarations(project.variables));

    object *items = ObjectTree::appendChild(root(), QStringLiteral("item"));
    for (const ItemDefinition &item : project.items)
        m_items.push_back(addItem(items, item));
}

} // namespace panelkit::simulator
