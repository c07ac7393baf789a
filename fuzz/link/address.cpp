// What an author may type, checked on a project with real drivers: the input's lines are the block, the
// number, the link's name (1 when missing), then "b" for bit access, and the length.

#include "fuzz/support/demand.h"
#include "link/address_check.h"
#include "link/driverfile.h"
#include "link/driverinterface.h"
#include "register/registervaluechange.h"
#include "runtime/systemroot.h"
#include "simulator/platform/objecttree.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

using panelkit::simulator::ObjectTree;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

class Panel
{
public:
    Panel()
    {
        tools_setSystemRoot(m_root.path());
        QDir().mkpath(tools_driverFolder());
        m_links = ObjectTree::appendChild(m_tree.root(), text("link"));
        addLink(1, "Modbus", "0x,1x,3x,4x,3x_bit,4x_bit", 0);
        addLink(2, "ByteAddressed", "IX,QX,IB,QB,MX,MB,MW,MD,DX,DW,DD", 0);
        addLink(3, "Modbus", "4x,7,250,", 1);
        item = ObjectTree::appendChild(m_tree.root(), text("item"));
        for (const char *name : {"Link", "Block", "No", "index", "station", "length"})
            ObjectTree::setText(item, text(name), QString());
        checker.reset(new address_check(m_tree.root()));
    }

    ~Panel()
    {
        checker.reset();
        for (const auto &driver : drivers)
            driver->unload();
    }

    object *item = nullptr;
    std::unique_ptr<address_check> checker;
    std::vector<std::unique_ptr<QLibrary>> drivers;

private:
    void addLink(int number, const char *driver, const char *blocks, int addressMode)
    {
        object *link = ObjectTree::appendChild(m_links, text("link"));
        ObjectTree::setNumber(link, text("linkID"), number);
        ObjectTree::setNumber(link, text("AddressMode"), addressMode);
        ObjectTree::setText(link, text("blockNames"), text(blocks));
        ObjectTree::setText(link, text("linkName"), QString::number(number));
        ObjectTree::setText(link, text("driverLib"), text(driver));
        const QString path = tools_driverFilePath(text(driver), number);
        demand(QFile::copy(text(PANELKIT_DRIVERS "/lib") + text(driver) + text(".so"), path),
               "driver copied");
        drivers.emplace_back(new QLibrary(path));
        demand(drivers.back()->load(), "driver loaded");
    }

    QTemporaryDir m_root;
    ObjectTree m_tree;
    object *m_links = nullptr;
};

// The two entry points of the index lookup, which the checker does not use.
void askForIndex(QLibrary &driver, const QString &block, const QString &number)
{
    const auto describe =
        reinterpret_cast<GetRegDiscriptionFunction>(driver.resolve("intf_getRegDiscription"));
    const auto check = reinterpret_cast<CheckAddrValidityFunction>(driver.resolve("intf_checkAddrValidity"));
    QString name = block;
    QString address = number;
    QStringList description;
    describe(name, description);
    const int width = description.size() == 5 ? description.at(3).toInt() : 1;
    int index = -1;
    check(name, address, index, width > 1 ? 2 : 1, width);
    demand(index >= -1 && index < 65536 * 16, "index within the largest block");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Panel panel;
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QStringList lines = input.split(QLatin1Char('\n'));
    const QString &block = lines.at(0);
    const QString number = lines.value(1);
    const QString linkName = lines.value(2, text("1"));
    const int addrType = lines.value(3) == text("b") ? -1 : 0;
    const int length = lines.value(4, text("1")).toInt();

    address_check &checker = *panel.checker;
    const AddressVerdict verdict =
        checker.explainAddress(linkName, block, number, panel.item, addrType, length, 0);
    const QString texts[] = {QString(), linkName, block, number};
    demand(verdict.offset >= 0 && verdict.length >= 0 &&
               verdict.offset + verdict.length <= texts[verdict.text].size(),
           "place within its text");
    demand((verdict.code == 0) == (verdict.reason == AddressVerdict::Valid), "code and reason agree");
    demand(checker.checkAddress(linkName, block, number, panel.item, addrType, length, 0) ==
               checker.checkRetPrompt(verdict.code),
           "one check, one verdict");
    if (verdict.code == 0)
        demand(object_get_property_value_type_string(panel.item, "No", QString()) ==
                   QString::fromUtf8(number.toUtf8().constData()),
               "the number is written as it was typed");
    for (const auto &driver : panel.drivers)
        askForIndex(*driver, block.section(QLatin1Char('#'), -1), number);
    return 0;
}
