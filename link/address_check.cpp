#include "link/address_check.h"

#include "link/addresssyntax.h"
#include "link/driverfile.h"
#include "link/driverlibrary.h"
#include "link/utf8text.h"
#include "platform/device_struct.h"
#include "platform/qtcompat.h"
#include "register/registervaluechange.h"

#include <QLibrary>

using panelkit::TextPart;

namespace {

const char *const internalStorage = "Internal storage area";

AddressVerdict refused(AddressVerdict verdict, int code, AddressVerdict::Reason reason,
                       AddressVerdict::Text text = AddressVerdict::NoText, TextPart place = {0, 0})
{
    verdict.code = code;
    verdict.reason = reason;
    verdict.text = text;
    verdict.offset = place.offset;
    verdict.length = place.length;
    return verdict;
}

void writeText(object *target, const char *name, const char *utf8)
{
    if (property *field = object_get_property(target, name))
        property_set_value_ustring(field, utf8);
}

void writeNumber(object *target, const char *name, int value)
{
    if (property *field = object_get_property(target, name))
        property_set_value_number(field, value);
}

struct Address
{
    const QString &block;
    const QString &number;
    int index;
    int station;
    int length;
};

void writeAddress(object *target, const char *linkName, const Address &address)
{
    writeText(target, "Link", linkName);
    writeText(target, "Block", panelkit::Utf8Text(address.block).constData());
    writeText(target, "No", panelkit::Utf8Text(address.number).constData());
    writeNumber(target, "index", address.index);
    writeNumber(target, "station", address.station);
    writeNumber(target, "length", address.length);
}

// The internal block `block`, already found among the panel's own or passed in by name. `place` is where it
// stands in the author's text.
AddressVerdict checkInternal(AddressVerdict verdict, object *target, const QString &block, TextPart place,
                             const QString &number, int addrType, int length)
{
    const bool isWordBlock = block == QLatin1String("LW");
    const bool fitsAccess =
        addrType == -1 ? block == QLatin1String("LB") : isWordBlock || block == QLatin1String("RWI");
    if (!fitsAccess)
        return refused(verdict, 1, AddressVerdict::BlockNotForAccess, AddressVerdict::BlockText, place);

    int index = 0;
    if (!panelkit::readInteger(number, panelkit::whole(number), index))
        return refused(verdict, 4, AddressVerdict::NumberUnreadable, AddressVerdict::NumberText,
                       panelkit::whole(number));

    // "LW" alone lets index and length reach one further, but never an index beyond the last word.
    const qint64 reach = isWordBlock ? 65537 : 65536;
    verdict.lowest = 0;
    verdict.highest = reach - length;
    if (isWordBlock && verdict.highest > 65535)
        verdict.highest = 65535;
    if (index < verdict.lowest || index > verdict.highest)
        return refused(verdict, 2, AddressVerdict::IndexOutOfRange, AddressVerdict::NumberText,
                       panelkit::whole(number));

    if (target != nullptr)
        writeAddress(target, internalStorage, {block, number, index, -1, length});
    return verdict;
}

// The block is the part `name` of the author's text.
AddressVerdict checkExternal(AddressVerdict verdict, const linkInfo_t &link, object *target,
                             const QString &blockText, TextPart name, const QString &number, int addrType,
                             int length, int driverArg, int station)
{
    if (target == nullptr)
        return refused(verdict, 3, AddressVerdict::NoTarget);
    if (link.checkAddr == nullptr)
        return refused(verdict, 3, AddressVerdict::NoDriver);

    const QString block = blockText.mid(name.offset, name.length);
    QString driverBlock = block;
    QString driverNumber = number;
    int index = 0;
    const int code = link.checkAddr(driverBlock, driverNumber, index, addrType, length, driverArg);
    if (code != 0)
        return refused(verdict, code, AddressVerdict::RefusedByDriver, AddressVerdict::NumberText,
                       panelkit::whole(number));

    writeAddress(target, panelkit::Utf8Text(link.linkName).constData(),
                 {block, number, index, station, length});
    return verdict;
}

linkInfo_t readLink(object *node)
{
    linkInfo_t link;
    link.node = node;
    link.linkID = object_get_property_value_type_int32(node, "linkID", 0);
    link.addressMode = object_get_property_value_type_int32(node, "AddressMode", 0);
    link.blockNames = object_get_property_value_type_string(node, "blockNames", QString());
    link.plcID = object_get_property_value_type_string(node, "PLCID", QString()).toInt(nullptr, 10);
    link.linkName = object_get_property_value_type_string(node, "linkName", QString());

    link.library = panelkit::makeLibrary(tools_driverFilePath(
        object_get_property_value_type_string(node, "driverLib", QString()), link.linkID));
    return link;
}

// What closeDriver takes, null when the driver does not load.
void *loadDriver(linkInfo_t &link)
{
    const QString path = link.library->fileName();
    if (tools_driverFileState(path) != DriverFileState::Complete)
        return nullptr;
    void *driver = panelkit::openDriver(path);
    if (driver == nullptr)
        return nullptr;
    panelkit::loadIfCounted(*link.library);
    link.checkAddr =
        reinterpret_cast<CheckAddrFunction>(panelkit::driverEntryPoint(driver, "intf_checkAddr"));
    return driver;
}

} // namespace

address_check::address_check(object *root)
{
    localBlocks << QLatin1String("LB") << QLatin1String("LW") << QLatin1String("RWI");
    linkNames << QLatin1String(internalStorage);
    object *folder = root == nullptr ? nullptr : object_get_child(root, "link");
    if (folder != nullptr) {
        for (object *node = object_first_child(folder); node != nullptr; node = object_next(node)) {
            linkInfo_t link = readLink(node);
            linkNames << link.linkName;
            heldDrivers.insert(link.linkID, loadDriver(link));
            linkMap.insert(link.linkID, link);
        }
    }
    for (const QString &name : static_cast<const QStringList &>(linkNames))
        knownNames.insert(name);
}

address_check::~address_check()
{
    for (QMap<qint32, linkInfo_t>::iterator link = linkMap.begin(); link != linkMap.end(); ++link) {
        if (link->library != nullptr)
            panelkit::unloadIfCounted(*link->library);
        delete link->library;
        link->library = nullptr;
        panelkit::closeDriver(heldDrivers.value(link.key()));
        link->checkAddr = nullptr;
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
int address_check::checkAddress(const QString &linkName, QString block, const QString &number, object *target,
                                int addrType, int length, int driverArg)
{
    return checkRetPrompt(explainAddress(linkName, block, number, target, addrType, length, driverArg).code);
}

AddressVerdict address_check::explainAddress(const QString &linkName, const QString &block,
                                             const QString &number, object *target, int addrType, int length,
                                             int driverArg) const
{
    AddressVerdict verdict;
    if (!knownNames.contains(linkName))
        return refused(verdict, 10, AddressVerdict::UnknownLinkName, AddressVerdict::LinkNameText,
                       panelkit::whole(linkName));

    const panelkit::BlockText parts = panelkit::splitBlockText(block);
    verdict.blockOffset = parts.name.offset;
    if (parts.hasLinkPrefix && !panelkit::readInteger(block, parts.linkPrefix, verdict.linkNumber))
        return refused(verdict, 10, AddressVerdict::LinkNumberUnreadable, AddressVerdict::BlockText,
                       parts.linkPrefix);

    for (const QString &internal : localBlocks)
        if (panelkit::isWord(block, parts.name, internal))
            return checkInternal(verdict, target, internal, parts.name, number, addrType, length);

    const QMap<qint32, linkInfo_t>::const_iterator found = linkMap.constFind(verdict.linkNumber);
    if (found == linkMap.constEnd())
        return refused(verdict, 10, AddressVerdict::NoSuchLink, AddressVerdict::BlockText, parts.linkPrefix);
    verdict.link = &*found;

    // The station prefix went with the rest of the prefixes, so what a link with stations in its addresses
    // reads as the station is the block itself.
    int station = found->plcID;
    if (found->addressMode == 1) {
        verdict.lowest = 0;
        verdict.highest = 255;
        if (!panelkit::readInteger(block, parts.name, station) || station < 0 || station > 255)
            return refused(verdict, 13, AddressVerdict::StationUnreadable, AddressVerdict::BlockText,
                           parts.name);
    }
    if (!panelkit::isListed(block, parts.name, found->blockNames))
        return refused(verdict, 3, AddressVerdict::UnknownBlock, AddressVerdict::BlockText, parts.name);
    return checkExternal(verdict, *found, target, block, parts.name, number, addrType, length, driverArg,
                         station);
}

int address_check::loaclCheckAddress(object *target, const QString &block, const QString &number,
                                     int addrType, int length)
{
    return checkInternal(AddressVerdict(), target, block, panelkit::whole(block), number, addrType, length)
        .code;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
int address_check::externalCheckAddress(const linkInfo_t &link, object *target, QString block, QString number,
                                        int addrType, int length, int driverArg, int station)
{
    return checkExternal(AddressVerdict(), link, target, block, panelkit::whole(block), number, addrType,
                         length, driverArg, station)
        .code;
}

int address_check::checkRetPrompt(int code)
{
    switch (code) {
    case 1:
    case 2:
    case 3:
    case 4:
    case 10:
    case 11:
    case 12:
    case 14:
    case 16:
        return -1;
    default:
        return 0;
    }
}

bool address_check::rebuildStatioin(RegisterValueChange &address)
{
    if (address.linkId == 0) {
        address.station = 0;
        return true;
    }
    const QMap<qint32, linkInfo_t>::const_iterator link = linkMap.constFind(address.linkId);
    if (link == linkMap.constEnd())
        return false;
    if (link->addressMode == 0)
        address.station = link->plcID;
    return true;
}
