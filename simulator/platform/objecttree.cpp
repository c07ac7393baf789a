#include "simulator/platform/objecttree.h"

#include <QByteArray>

#include <memory>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

struct property
{
    QByteArray name;
    std::variant<int, QString> value;
};

struct object
{
    QByteArray name;
    object *next = nullptr;
    std::vector<std::unique_ptr<property>> properties;
    std::unordered_map<std::string_view, property *>
        propertiesByName; // by their own names: none is kept twice
    std::vector<std::unique_ptr<object>> children;
};

namespace panelkit::simulator {

namespace {

property *find(const object *node, const char *name)
{
    if (node == nullptr || name == nullptr)
        return nullptr;
    const auto found = node->propertiesByName.find(name);
    return found == node->propertiesByName.end() ? nullptr : found->second;
}

property *ensure(object *node, const QString &name)
{
    const QByteArray key = name.toUtf8();
    if (property *existing = find(node, key.constData()))
        return existing;
    node->properties.push_back(std::make_unique<property>());
    property *added = node->properties.back().get();
    added->name = key;
    node->propertiesByName.emplace(added->name.constData(), added);
    return added;
}

} // namespace

ObjectTree::ObjectTree(const QString &rootName) : m_root(new object)
{
    m_root->name = rootName.toUtf8();
}

ObjectTree::~ObjectTree()
{
    delete m_root;
}

object *ObjectTree::appendChild(object *parent, const QString &name)
{
    auto child = std::make_unique<object>();
    child->name = name.toUtf8();
    if (!parent->children.empty())
        parent->children.back()->next = child.get();
    parent->children.push_back(std::move(child));
    return parent->children.back().get();
}

property *ObjectTree::setNumber(object *node, const QString &name, int value)
{
    property *target = ensure(node, name);
    target->value = value;
    return target;
}

property *ObjectTree::setText(object *node, const QString &name, const QString &value)
{
    property *target = ensure(node, name);
    target->value = value;
    return target;
}

QString ObjectTree::name(const object *node)
{
    return QString::fromUtf8(node->name);
}

QStringList ObjectTree::propertyNames(const object *node)
{
    QStringList names;
    for (const auto &candidate : node->properties)
        names.append(QString::fromUtf8(candidate->name));
    return names;
}

} // namespace panelkit::simulator

using panelkit::simulator::find;

object *object_get_child(object *node, const char *name)
{
    if (node == nullptr || name == nullptr)
        return nullptr;
    for (const auto &child : node->children)
        if (child->name == name)
            return child.get();
    return nullptr;
}

object *object_first_child(object *node)
{
    return node == nullptr || node->children.empty() ? nullptr : node->children.front().get();
}

object *object_next(object *node)
{
    return node == nullptr ? nullptr : node->next;
}

property *object_get_property(object *node, const char *name)
{
    return find(node, name);
}

int object_get_property_value_type_int32(object *node, const char *name, int defaultValue)
{
    const property *source = find(node, name);
    if (source == nullptr)
        return defaultValue;
    if (const int *number = std::get_if<int>(&source->value))
        return *number;
    bool isNumber = false;
    const int number = std::get<QString>(source->value).toInt(&isNumber, 10);
    return isNumber ? number : defaultValue;
}

QString object_get_property_value_type_string(object *node, const char *name, const QString &defaultValue)
{
    const property *source = find(node, name);
    if (source == nullptr)
        return defaultValue;
    if (const int *number = std::get_if<int>(&source->value))
        return QString::number(*number);
    return std::get<QString>(source->value);
}

void property_set_value_number(property *target, int value)
{
    if (target != nullptr)
        target->value = value;
}

void property_set_value_ustring(property *target, const char *utf8)
{
    if (target != nullptr)
        target->value = QString::fromUtf8(utf8);
}
