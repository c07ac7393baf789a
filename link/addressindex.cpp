#include "link/addressindex.h"

#include "link/addresssyntax.h"
#include "link/driverinterface.h"
#include "link/driverlibrary.h"
#include "link/driversearch.h"
#include "link/linklist.h"
#include "runtime/devicemodel.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

// Fills in the driver's name and the list that it comes from.
void findDriverName(const QString &linkName, bool useProjectLinks, AddressIndexOrigin &origin)
{
    static QMap<QString, QString> linkNameToDriverNameMap;
    static AddressIndexOrigin::List source = AddressIndexOrigin::NoList;
    if (linkNameToDriverNameMap.isEmpty()) {
        const bool isProject = useProjectLinks && !panelkit::isBoxDevice();
        panelkit::readLinkListFile(isProject ? panelkit::projectLinkList : panelkit::iotLinkList,
                                   linkNameToDriverNameMap);
        if (!linkNameToDriverNameMap.isEmpty())
            source = isProject ? AddressIndexOrigin::ProjectList : AddressIndexOrigin::IotList;
    }
    origin.list = source;
    origin.driver = linkNameToDriverNameMap.value(linkName);
}

void askDriver(void *driver, const QString &regName, const QString &addrText, AddressIndexOrigin &origin)
{
    const CheckAddrValidityFunction checkValidity = reinterpret_cast<CheckAddrValidityFunction>(
        panelkit::driverEntryPoint(driver, "intf_checkAddrValidity"));
    const GetRegDiscriptionFunction describe = reinterpret_cast<GetRegDiscriptionFunction>(
        panelkit::driverEntryPoint(driver, "intf_getRegDiscription"));
    if (checkValidity == nullptr || describe == nullptr) {
        origin.source = AddressIndexOrigin::DriverIncomplete;
        return;
    }
    QString describedName = regName;
    QStringList description;
    describe(describedName, description);
    origin.source = AddressIndexOrigin::Driver;
    origin.width = description.size() == 5 ? description.at(3).toInt(nullptr, 10) : 1;
    origin.mode = origin.width > 1 ? 2 : 1;

    QString name = regName;
    QString text = addrText;
    checkValidity(name, text, origin.index, origin.mode, origin.width);
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

AddressIndexOrigin tools_explainAddrIndex(const QString &linkName, const QString &regName,
                                          const QString &addrText, bool useProjectLinks)
{
    AddressIndexOrigin origin;
    findDriverName(linkName, useProjectLinks, origin);
    if (!origin.driver.isEmpty())
        origin.file = panelkit::findDriverFile(origin.driver);
    if (origin.file.isEmpty()) {
        origin.source = origin.driver.isEmpty() ? AddressIndexOrigin::TextWithoutDriver
                                                : AddressIndexOrigin::TextWithoutFile;
        origin.index = readPlainIndex(addrText);
        return origin;
    }
    origin.source = AddressIndexOrigin::DriverNotLoadable;
    origin.fileState = tools_driverFileState(origin.file);
    if (origin.fileState != DriverFileState::Complete)
        return origin;
    if (void *driver = panelkit::openDriver(origin.file)) {
        askDriver(driver, regName, addrText, origin);
        panelkit::closeDriver(driver);
    }
    return origin;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
int tools_getAddrIndexFromDriverName(QString linkName, QString regName, QString addrText,
                                     bool useProjectLinks)
{
    return tools_explainAddrIndex(linkName, regName, addrText, useProjectLinks).index;
}
