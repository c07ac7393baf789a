#include "register/registervaluechange.h"

#include "platform/device_struct.h"
#include "platform/hmi_event.h"
#include "platform/sys_base.h"
#include "register/communication.h"
#include "register/interfacecomm.h"

#include <QByteArray>

#include <cstddef>
#include <cstring>

static_assert(sizeof(RegisterValueChange) == 52, "the event library reads 52 bytes");
static_assert(offsetof(RegisterValueChange, linkId) == 0, "field order of the event library");
static_assert(offsetof(RegisterValueChange, station) == 4, "field order of the event library");
static_assert(offsetof(RegisterValueChange, index) == 8, "field order of the event library");
static_assert(offsetof(RegisterValueChange, reserved) == 12, "field order of the event library");
static_assert(offsetof(RegisterValueChange, block) == 16, "field order of the event library");
static_assert(offsetof(RegisterValueChange, flag) == 48, "field order of the event library");

// The offset of a derived field is only conditionally supported; every compiler of a panel supports it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(RegisterValueChangeSize) == 56, "the length follows the padded record");
static_assert(offsetof(RegisterValueChangeSize, length) == 52, "the length follows the padded record");
#pragma GCC diagnostic pop

namespace {

// As strncpy does: a shorter name is padded with NULs, one of 32 bytes or more has none behind it.
void copyBlock(char (&block)[32], const char *name)
{
    std::memset(block, 0, sizeof(block));
    std::memcpy(block, name, qstrnlen(name, sizeof(block)));
}

} // namespace

bool ObjectAddress2RegisterValueChange(object *node, RegisterValueChange &out)
{
    if (node == nullptr)
        return false;
    InterfaceComm *comm = panelkit::communication();
    if (comm == nullptr)
        return false;

    const QString linkName = object_get_property_value_type_string(node, "Link", QString());
    const QString block = object_get_property_value_type_string(node, "Block", QString());
    const LinkValue link = comm->getLinkValueByName(linkName);

    out.linkId = link.id;
    out.station = object_get_property_value_type_int32(node, "station", 0);
    if (link.addmore == 0)
        out.station = link.station;
    copyBlock(out.block, block.toLatin1().constData());
    out.index = object_get_property_value_type_int32(node, "index", 0);
    return true;
}

bool ObjectAddress2RegisterValueChangeSize(object *node, RegisterValueChangeSize &out)
{
    if (!ObjectAddress2RegisterValueChange(node, out))
        return false;
    out.length = object_get_property_value_type_int32(node, "length", 0);
    return true;
}

int SendLWFRegMessage(int index)
{
    RegisterValueChange change = {};
    change.linkId = 0;
    change.station = -1;
    change.index = index;
    copyBlock(change.block, "LWF");
    return hmiEVent_addressChang_Msg(&change);
}
