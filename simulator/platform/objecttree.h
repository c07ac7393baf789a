// The host's side of the object library's stand-in: building a project tree and looking at it.
#pragma once

#include "platform/device_struct.h"
#include "platform/export.h"

#include <QString>
#include <QStringList>

namespace panelkit::simulator {

// A tree of nodes with typed properties. The tree owns its nodes; every object and property pointer is valid
// as long as it lives. Names are UTF-8 without NULs; several children of one node may share a name
// (object_get_child gives the first), a property's name is unique in its node. The object_* and property_*
// functions take null for a node, a name or a property as one that is not there; the functions here do not.
//
// A property holds a number or a text, whichever was written last. Asked for the other kind, a number gives
// its decimal text, and a text gives its value when QString::toInt reads it with base 10, else the caller's
// default.
class PANELKIT_EXPORT ObjectTree
{
public:
    explicit ObjectTree(const QString &rootName = QString());
    ~ObjectTree();
    ObjectTree(const ObjectTree &) = delete;
    ObjectTree &operator=(const ObjectTree &) = delete;

    object *root() const { return m_root; }

    // Adds a node behind the last child of `parent`.
    static object *appendChild(object *parent, const QString &name);

    // Give `node` the property, or the existing property the new value.
    static property *setNumber(object *node, const QString &name, int value);
    static property *setText(object *node, const QString &name, const QString &value);

    static QString name(const object *node);
    static QStringList propertyNames(const object *node); // in the order in which they were given

private:
    object *m_root;
};

} // namespace panelkit::simulator
