#include "link/addressindex.h"

#include "link/addresssyntax.h"
#include "link/driverfile.h"
#include "link/driverinterface.h"
#include "link/driversearch.h"
#include "link/linklist.h"
#include "runtime/devicemodel.h"

#include <QLibrary>
#include <QMap>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

// Empty when the link is not known.
QString driverOfLink(const QString &linkName, bool useProjectLinks)
{
    static QMap<QString, QString> linkNameToDriverNameMap;
    if (linkNameToDriverNameMap.isEmpty())
        panelkit::readLinkListFile(useProjectLinks && !panelkit::isBoxDevice() ? panelkit::projectLinkList
                                                                               : panelkit::iotLinkList,
                                   linkNameToDriverNameMap);
    return linkNameToDriverNameMap.value(linkName);
}

int askDriver(QLibrary &driver, const QString &regName, const QString &addrText)
{
    const CheckAddrValidityFunction checkValidity =
        reinterpret_cast<CheckAddrValidityFunction>(driver.resolve("intf_checkAddrValidity"));
    const GetRegDiscriptionFunction describe =
        reinterpret_cast<GetRegDiscriptionFunction>(driver.resolve("intf_getRegDiscription"));
    if (checkValidity == nullptr || describe == nullptr)
        return -1;

    QString describedName = regName;
    QStringList description;
    describe(describedName, description);
    const int width = description.size() == 5 ? description.at(3).toInt(nullptr, 10) : 1;

    QString name = regName;
    QString text = addrText;
    int index = -1;
    checkValidity(name, text, index, width > 1 ? 2 : 1, width);
    return index;
}

// A number, or word and bit with a "." between; further parts are ignored.
int readPlainIndex(const QString &text)
{
    const int point = static_cast<int>(text.indexOf(QLatin1Char('.')));
    if (point < 0)
        return text.toInt(nullptr, 10);
    const int nextPoint = static_cast<int>(text.indexOf(QLatin1Char('.'), point + 1));
    const int bitEnd = nextPoint < 0 ? static_cast<int>(text.size()) : nextPoint;
    int word = 0;
    int bit = 0;
    panelkit::readInteger(text, {0, point}, word);
    panelkit::readInteger(text, {point + 1, bitEnd - point - 1}, bit);
    const qint64 index = qint64(word) * 16 + bit;
    return static_cast<int>(std::min<qint64>(std::max<qint64>(index, std::numeric_limits<int>::min()),
                                             std::numeric_limits<int>::max()));
}

} // namespace

int tools_getAddrIndexFromDriverName(QString linkName, QString regName, QString addrText,
                                     bool useProjectLinks)
{
    const QString driverName = driverOfLink(linkName, useProjectLinks);
    const QString path = driverName.isEmpty() ? QString() : panelkit::findDriverFile(driverName);
    if (path.isEmpty())
        return readPlainIndex(addrText);
    if (tools_driverFileState(path) != DriverFileState::Complete)
        return -1;
    QLibrary driver(path);
    const int index = driver.load() ? askDriver(driver, regName, addrText) : -1;
    driver.unload();
    return index;
}
