// A project as the panel's object library holds it.
#pragma once

#include "simulator/platform/objecttree.h"

#include <vector>

namespace panelkit::simulator {

struct Project;

// The tree of a project. The root's children:
//   "link"          one child a link: "linkID", "AddressMode" (1 for many stations), "blockNames" (separated
//                   by ","), "PLCID" (a text), "linkName", "driverLib"
//   "macroVarList"  "number", "var0", "var1" ...: the declarations of the script variables
//   "item"          one child an item, named like it: "Link", "Block", "No", "index", "station", "length",
//                   "macroMode", "pressmacro", "releasemacro", and a child "macroTextVarList" with "number",
//                   "Textvar0", "Textvar1" ...
// Children stand in the project's order. The tree is a copy: later changes of the project do not reach it.
class ProjectTree
{
public:
    explicit ProjectTree(const Project &project);

    object *root() const { return m_tree.root(); }

    // The node of `project.items[index]`, valid as long as the tree lives.
    object *item(std::size_t index) const { return m_items.at(index); }

private:
    ObjectTree m_tree;
    std::vector<object *> m_items;
};

} // namespace panelkit::simulator
