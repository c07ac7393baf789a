// The links of a project in the forms in which the rest of the panel takes them. Together with the link nodes
// of ProjectTree these are all made from the project, so that they cannot disagree.
#pragma once

#include "simulator/project/linkrecord.h"

#include <QByteArray>

#include <vector>

namespace panelkit::simulator {

struct Project;

// What the communication interface is given: the internal storage (link 0), then the project's links in their
// order.
std::vector<LinkRecord> linkRecords(const Project &project);

// The text of links.json: an object whose "links" is a list of objects with "linkName" and "linkDriver", the
// driver's name without its folder. The internal storage has no driver and is not in it.
QByteArray linksJson(const Project &project);

// The same as the IoT runtime keeps it in LinkConfiguration.json: "data", of objects with "link_name" and
// "link_driver".
QByteArray iotLinksJson(const Project &project);

} // namespace panelkit::simulator
