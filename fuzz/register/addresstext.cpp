// An address as text, beside the plain way, and an item's address. The input: link, station and index (four
// bytes each), the block (32 bytes), the link's id and whether it has several stations (a byte each), then
// the text of the index.

#include "register/addresstext.h"

#include "fuzz/support/bytes.h"
#include "fuzz/support/demand.h"
#include "simulator/platform/objecttree.h"
#include "simulator/platform/systembase.h"
#include "tests/register/plainnumformat.h"
#include "tests/support/memorycomm.h"

using panelkit::simulator::ObjectTree;

namespace {

// An item's node gives the address back.
void compareItem(const RegisterValueChange &reg, const LinkValue &link, const QString &indexText)
{
    ObjectTree tree;
    object *const item = ObjectTree::appendChild(tree.root(), QStringLiteral("item"));
    const QString block = QString::fromLatin1(reg.block, static_cast<int>(sizeof(reg.block)));
    ObjectTree::setText(item, QStringLiteral("Link"), indexText);
    ObjectTree::setText(item, QStringLiteral("Block"), block);
    ObjectTree::setNumber(item, QStringLiteral("index"), reg.index);
    ObjectTree::setNumber(item, QStringLiteral("station"), reg.station);
    ObjectTree::setText(item, QStringLiteral("length"), indexText);

    RegisterValueChangeSize read = {};
    demand(ObjectAddress2RegisterValueChangeSize(item, read), "the item has an address");
    demand(read.linkId == link.id && read.index == reg.index, "link and index are the item's");
    demand(read.station == (link.addmore != 0 ? reg.station : link.station), "the station is the right one");
    char expected[sizeof(read.block)] = {};
    std::strncpy(expected, reg.block, sizeof(expected));
    demand(std::memcmp(read.block, expected, sizeof(expected)) == 0, "the block ends at its first NUL");
    bool isNumber = false;
    const int length = indexText.toInt(&isNumber, 10);
    demand(read.length == (isNumber ? length : 0), "the length is a number or 0");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static panelkit::testing::MemoryComm comm;
    static sys_base_app_pro record = {};
    record.comm = &comm;
    panelkit::simulator::setApplicationRecord(&record);

    Bytes input(data, size);
    RegisterValueChange reg = {};
    reg.linkId = input.number<qint32>();
    reg.station = input.number<qint32>();
    reg.index = input.number<qint32>();
    input.fill(reg.block, sizeof(reg.block));
    comm.link.id = input.number<qint8>();
    comm.link.addmore = input.number<qint8>();
    comm.link.station = 77;
    const QString indexText = QString::fromUtf8(input.rest());

    for (InterfaceComm *asked :
         {static_cast<InterfaceComm *>(&comm), static_cast<InterfaceComm *>(nullptr)}) {
        QString ours = QStringLiteral("before");
        QString plain;
        const bool isPlain = panelkit::testing::plainAddr2UIText(reg, indexText, asked, plain);
        demand(conversionAddr2UIText(reg, indexText, asked, ours) == isPlain, "it is an address or not");
        demand(ours == plain, "the address's text is the plain one");
    }
    compareItem(reg, comm.link, indexText);
    return 0;
}
