// Whether an address that a project author types is one: on the panel's internal storage or on a PLC link.
#pragma once

#include "link/linkinfo.h"
#include "platform/export.h"
#include "register/registervaluechange.h"

#include <QMap>
#include <QSet>
#include <QStringList>

// What a check found, and where. Offsets and lengths count characters of the text as it was passed in.
struct AddressVerdict
{
    enum Reason : int
    {
        Valid,
        UnknownLinkName,      // code 10
        LinkNumberUnreadable, // code 10: what stands before "/" is no number
        NoSuchLink,           // code 10: no link has the number before "/", or 1 where there is none
        BlockNotForAccess,    // code 1: an internal block that takes the other of bit and word access
        NumberUnreadable,     // code 4
        IndexOutOfRange,      // code 2: not within lowest and highest
        StationUnreadable,    // code 13, which passes: the link wants a station, lowest to highest, as block
        UnknownBlock,         // code 3: not among the link's blockNames
        NoTarget,             // code 3: an address on a PLC link needs an object to be written to
        NoDriver,             // code 3: the link's driver does not load or cannot check
        RefusedByDriver       // the driver's code; which of its texts it did not like, it does not say
    };
    enum Text : int
    {
        NoText,
        LinkNameText,
        BlockText,
        NumberText
    };

    int code = 0; // checkRetPrompt says whether it passes
    Reason reason = Valid;

    Text text = NoText; // which text caused it, and the place in it
    int offset = 0;
    int length = 0;

    int blockOffset = 0;              // where the block's name begins in its text, behind the prefixes
    int linkNumber = 1;               // the link that the block text asks for
    const linkInfo_t *link = nullptr; // that link, once it was found; the checker's
    qint64 lowest = 0;                // the limits, for IndexOutOfRange and StationUnreadable; none
    qint64 highest = -1;              // fits when highest is the lower
};

// Reads the links of a project tree once, loads the driver of each and keeps it loaded until the checker
// goes. The link set is fixed from then on; the tree must live as long as the checker. For one thread at a
// time.
//
// Every check takes `addrType` -1 for bit access and anything else for word access, the number of registers
// wanted as `length`, and `driverArg`, which only a driver looks at. A valid address is written into
// `target`, as far as it has the properties: "Link", "Block" and "No" as texts, "index", "station" and
// "length" as numbers. A refused one writes nothing.
class PANELKIT_EXPORT address_check
{
public:
    // `root` is the node whose child "link" holds the link nodes. A tree without links leaves the internal
    // storage. A later node with the same "linkID" replaces an earlier one, whose driver then stays loaded
    // for the rest of the process.
    explicit address_check(object *root);

    // Unloads and deletes every driver.
    ~address_check();

    // 0 when the address is valid and -1 when not. `linkName` must be a known link's or "Internal storage
    // area"; it selects nothing. `block` names the register block, after a link number and "/" (without one
    // it is link 1) and a station and "#", where they are given: "2/5#DM". "LB", "LW" and "RWI" are the
    // panel's own on every link. Code 13 and the driver's codes 5 to 9, 13, 15 and above 16 pass, although
    // nothing is written then.
    int checkAddress(const QString &linkName, QString block, const QString &number, object *target,
                     int addrType, int length, int driverArg);

    // The same check, with the code before checkRetPrompt and what caused it.
    AddressVerdict explainAddress(const QString &linkName, const QString &block, const QString &number,
                                  object *target, int addrType, int length, int driverArg) const;

    // Checks an address of the internal storage: "LB" takes bits, "LW" and "RWI" words. Indexes run from 0;
    // index and length together reach 65536 at most, for "LW" 65537. An index of "LW" ends at 65535 besides;
    // one of the others reaches 65536 with a length of 0, and beyond that with a negative length. Returns 0,
    // or 1 for the wrong access or another block, 2 for out of range, 4 when `number` is no base-10 integer.
    // `target` may be null.
    int loaclCheckAddress(object *target, const QString &block, const QString &number, int addrType,
                          int length);

    // Asks the link's driver. Returns 0, or 3 without `target` or driver, or the driver's code. `block` and
    // `number` are written as they are passed in, whatever the driver made of its copies.
    int externalCheckAddress(const linkInfo_t &link, object *target, QString block, QString number,
                             int addrType, int length, int driverArg, int station);

    // -1 for the codes 1, 2, 3, 4, 10, 11, 12, 14 and 16, else 0. Shows nothing.
    int checkRetPrompt(int code);

    // Completes the station of a record: 0 on link 0, the link's own on a link with a fixed station; left
    // alone where addresses name their station. Returns false, with the record untouched, for an unknown
    // link.
    bool rebuildStatioin(RegisterValueChange &address);

private:
    Q_DISABLE_COPY(address_check)

    // The order of the first three is the runtime's too.
    QMap<qint32, linkInfo_t> linkMap; // by link number
    QStringList localBlocks;
    QStringList linkNames;

    QSet<QString> knownNames;         // linkNames, to be found at once among many
    QMap<qint32, void *> heldDrivers; // by link number
};
