// The JSON files that list a project's links, as far as they say which driver serves which link.
#pragma once

#include <QMap>
#include <QString>

class QByteArray;

namespace panelkit {

// The keys under which one kind of file keeps its links: an object with a list, of objects with a name and a
// driver.
struct LinkListFormat
{
    const char *path; // on the panel
    const char *list;
    const char *name;
    const char *driver;
};

extern const LinkListFormat projectLinkList;
extern const LinkListFormat iotLinkList;

// Enters the lower-case driver name of every element of the list into `drivers`, under the link's name; a
// later element replaces an earlier one of the same name. What is missing or of another type counts as empty;
// a text that is no JSON enters nothing.
void readLinkList(const QByteArray &json, const LinkListFormat &format, QMap<QString, QString> &drivers);

// The same from the format's file, below the system root; a missing file enters nothing.
void readLinkListFile(const LinkListFormat &format, QMap<QString, QString> &drivers);

} // namespace panelkit
