// A panel's file tree with drivers in it that tell what is done to them.
#pragma once

#include "simulator/platform/objecttree.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class QLibrary;

namespace panelkit::testing {

class DriverPanel : public ::testing::Test
{
protected:
    DriverPanel();
    ~DriverPanel() override;

    // Writes a file below the system root, given its path on the panel; missing folders are made.
    void writeFile(const QString &path, const QByteArray &content);

    // Puts a copy of a driver built for the tests into the driver folder: "testdriver", or one without an
    // entry point: "nocheck", "nodescription", "novalidity"; "needsabsent" is whole, and does not load.
    void install(const QString &fileName, const char *variant = "testdriver");

    // The index of register D31, asked of the driver through a host's own library; -1 when it gives none.
    static int indexOfD31(QLibrary &host);

    static QByteArray driverBytes(const char *variant = "testdriver");

    // What the drivers wrote down since the last call.
    QStringList driverLog();

    QTemporaryDir root;

private:
    qint64 m_logRead = 0;
};

// A project tree whose links are made by hand, and an item for the checker to write to.
class Project
{
public:
    // Adds a link with a fixed station; an empty `driverLib` leaves that property out.
    object *addLink(int linkID, const QString &name, const QString &driverLib,
                    const QString &blockNames = QStringLiteral("D,CODE,REWRITE,KEEP,SILENT"));

    // What stands in the item's address, as "Link|Block|No|index|station|length"; all of it "-" and 0 at
    // start.
    QString written() const;

    object *root() const { return m_tree.root(); }
    object *item() const { return m_item; }
    simulator::ObjectTree &tree() { return m_tree; }

    Project();

private:
    simulator::ObjectTree m_tree;
    object *m_links = nullptr;
    object *m_item = nullptr;
};

} // namespace panelkit::testing
