#include "tests/link/driverpanel.h"

#include "link/linkinfo.h"
#include "runtime/systemroot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

namespace panelkit::testing {

using simulator::ObjectTree;

DriverPanel::DriverPanel()
{
    tools_setSystemRoot(root.path());
    QDir(root.path()).mkpath(QStringLiteral("usr/tesk42/project/driver"));
    qputenv("PANELKIT_TEST_DRIVER_LOG", root.filePath(QStringLiteral("driver.log")).toUtf8());
}

DriverPanel::~DriverPanel()
{
    qunsetenv("PANELKIT_TEST_DRIVER_LOG");
    tools_setSystemRoot(QString());
}

void DriverPanel::writeFile(const QString &path, const QByteArray &content)
{
    const QString target = root.path() + path;
    ASSERT_TRUE(QDir().mkpath(QFileInfo(target).path()));
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(content), content.size());
}

void DriverPanel::install(const QString &fileName, const char *variant)
{
    writeFile(QStringLiteral("/usr/tesk42/project/driver/") + fileName, driverBytes(variant));
}

QByteArray DriverPanel::driverBytes(const char *variant)
{
    QFile file(QStringLiteral(PANELKIT_TEST_DRIVERS "/%1.so").arg(QLatin1String(variant)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    return file.readAll();
}

QStringList DriverPanel::driverLog()
{
    QFile file(root.filePath(QStringLiteral("driver.log")));
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_logRead))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    m_logRead = file.size();
    lines.removeLast();
    return lines;
}

int DriverPanel::indexOfD31(QLibrary &host)
{
    const auto checkAddr = reinterpret_cast<CheckAddrFunction>(host.resolve("intf_checkAddr"));
    QString block = QStringLiteral("D");
    QString number = QStringLiteral("31");
    int index = 0;
    return checkAddr != nullptr && checkAddr(block, number, index, 0, 1, 0) == 0 ? index : -1;
}

Project::Project()
{
    m_links = ObjectTree::appendChild(m_tree.root(), QStringLiteral("link"));
    m_item = ObjectTree::appendChild(m_tree.root(), QStringLiteral("item"));
    for (const char *name : {"Link", "Block", "No"})
        ObjectTree::setText(m_item, QLatin1String(name), QStringLiteral("-"));
    for (const char *name : {"index", "station", "length"})
        ObjectTree::setNumber(m_item, QLatin1String(name), 0);
}

object *Project::addLink(int linkID, const QString &name, const QString &driverLib, const QString &blockNames)
{
    object *link = ObjectTree::appendChild(m_links, QStringLiteral("link"));
    ObjectTree::setNumber(link, QStringLiteral("linkID"), linkID);
    ObjectTree::setNumber(link, QStringLiteral("AddressMode"), 0);
    ObjectTree::setText(link, QStringLiteral("blockNames"), blockNames);
    ObjectTree::setText(link, QStringLiteral("PLCID"), QStringLiteral("9"));
    ObjectTree::setText(link, QStringLiteral("linkName"), name);
    if (!driverLib.isEmpty())
        ObjectTree::setText(link, QStringLiteral("driverLib"), driverLib);
    return link;
}

QString Project::written() const
{
    QStringList values;
    for (const char *name : {"Link", "Block", "No", "index", "station", "length"})
        values << object_get_property_value_type_string(m_item, name, QStringLiteral("none"));
    return values.join(QLatin1Char('|'));
}

} // namespace panelkit::testing
