#include "simulator/soak/checkroad.h"

#include "runtime/systemroot.h"
#include "simulator/host/session.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/soakproject.h"

namespace panelkit::simulator {

namespace {

const int registerCount = 65536;

bool refuses(int code)
{
    for (const int refusing : {1, 2, 3, 4, 10, 11, 12, 14, 16})
        if (code == refusing)
            return true;
    return false;
}

// Numbers at and around every limit, texts that are almost numbers.
QString randomNumber(Chance &chance)
{
    static const char *const texts[] = {"0",    "1",     "2",   "65535", "65536", "65537", "-1",
                                        "",     " 7",    "1.3", "12a",   "0x10",  "1e3",   "99999999999",
                                        "１２", "65534", "+5",  "00009"};
    return chance.oneIn(3) ? QString::number(chance.between(-2, 70000)) : QString::fromUtf8(chance.of(texts));
}

// Whether an address of the internal storage is one.
int internalCode(const TypedAddress &address)
{
    const bool isBitBlock = address.block == QLatin1String("LB");
    if (address.isBit != isBitBlock)
        return 1;
    bool isNumber = false;
    const int index = address.number.toInt(&isNumber, 10);
    if (!isNumber)
        return 4;
    const int last = address.block == QLatin1String("LW") ? registerCount : registerCount - 1;
    const bool fits = index >= 0 && index < registerCount && qint64(index) + address.length - 1 <= last;
    return fits ? 0 : 2;
}

// What a link's driver has to answer for block "4x".
int driverCode(SoakDriver driver, const TypedAddress &address)
{
    if (driver == SoakDriver::Coded)
        return address.number.toInt();
    if (driver != SoakDriver::Whole)
        return 3;
    if (address.isBit)
        return 1;
    const int number = address.number.toInt();
    if (number < 1 || number > registerCount)
        return 2;
    return number - 1 + qint64(qMax(address.length, 1)) > registerCount ? 16 : 0;
}

} // namespace

CheckRoad::CheckRoad(const SoakProject &project, SoakDrivers &drivers)
    : Road(QStringLiteral("check")),
      m_project(project),
      m_drivers(drivers)
{
}

void CheckRoad::beginShift(Session &session)
{
    m_session = &session;
    m_checker = std::make_unique<ProjectChecker>(session);
}

void CheckRoad::endShift()
{
    m_checker.reset();
    m_session = nullptr;
}

void CheckRoad::act(Chance &chance)
{
    switch (chance.between(1, 12)) {
    case 1:
        return replaceDriver(chance);
    case 2:
    case 3:
    case 4:
        return checkItem(chance);
    case 5:
    case 6:
        return checkInternal(chance);
    case 7:
    case 8:
    case 9:
        return checkRefusingLink(chance);
    default:
        return checkAnything(chance);
    }
}

void CheckRoad::check(const TypedAddress &address, std::optional<int> code)
{
    ask();
    const CheckedAddress checked = m_checker->check(address);
    const int found = checked.verdict.code;
    settle(found == 0);
    const QString typed = QStringLiteral("%1, %2, %3, %4, length %5")
                              .arg(address.linkName, address.block, address.number,
                                   address.isBit ? QStringLiteral("bit") : QStringLiteral("word"))
                              .arg(address.length);
    if (code && found != *code)
        lose(QStringLiteral("(%1) got the code %2 and not %3").arg(typed).arg(found).arg(*code));
    if (checked.passes == refuses(found))
        lose(QStringLiteral("(%1) got the code %2 and yet another verdict").arg(typed).arg(found));
    if (checked.written.isEmpty() != (found != 0))
        lose(QStringLiteral("(%1) got the code %2 and yet %3 written")
                 .arg(typed)
                 .arg(found)
                 .arg(found == 0 ? QLatin1String("nothing was") : QLatin1String("something was")));
}

// Another file for the driver of a link, and a checker that loads it.
void CheckRoad::replaceDriver(Chance &chance)
{
    const int link = chance.of(m_drivers.links());
    const auto driver = static_cast<SoakDriver>(chance.between(0, soakDriverCount - 1));
    if (!m_drivers.place(tools_systemRoot(), link, driver))
        lose(QStringLiteral("the driver of link %1 could not be replaced").arg(link));
    m_checker.reset(); // what it has loaded is what a second checker would get
    m_checker = std::make_unique<ProjectChecker>(*m_session);
}

// An item's verdict never changes.
void CheckRoad::checkItem(Chance &chance)
{
    const auto count = static_cast<int>(m_project.project.items.size());
    if (count == 0)
        return;
    const auto item = static_cast<std::size_t>(chance.between(0, count - 1));
    const TypedAddress address = m_checker->typedAddress(item);
    if (m_codes.count(item) == 0)
        m_codes[item] = m_checker->check(address).verdict.code;
    check(address, m_codes[item]);
}

void CheckRoad::checkInternal(Chance &chance)
{
    static const char *const blocks[] = {"LB", "LW", "RWI"};
    TypedAddress address;
    address.linkName = QLatin1String(internalStorageName);
    address.block = QLatin1String(chance.of(blocks));
    address.number = randomNumber(chance);
    address.isBit = chance.oneIn(2);
    address.length = chance.oneIn(2) ? 1 : chance.between(1, 70000);
    check(address, internalCode(address));
}

void CheckRoad::checkRefusingLink(Chance &chance)
{
    const int link = chance.of(m_drivers.links());
    TypedAddress address;
    address.linkName = QStringLiteral("Soak link %1").arg(link);
    address.block = QStringLiteral("%1/4x").arg(link);
    address.number = QString::number(chance.oneIn(2) ? chance.between(0, 20) : chance.between(65000, 66000));
    address.isBit = chance.oneIn(4);
    address.length = chance.oneIn(2) ? 1 : chance.between(0, 700);
    check(address, driverCode(m_drivers.driverOf(link), address));
}

// Texts as nobody would type them: there is a verdict all the same.
void CheckRoad::checkAnything(Chance &chance)
{
    static const char *const pieces[] = {"/",  "#",   ",",  "4x", "LW", "2", "-1", "99999999999", " ",
                                         "水", "3x_", "%s", "LB", "0x", ".", "",   "\n",          "RWI"};
    const auto text = [&] {
        QString made;
        for (int i = chance.between(0, 6); i > 0; --i)
            made += QString::fromUtf8(chance.of(pieces));
        return made;
    };
    TypedAddress address;
    const std::vector<LinkDefinition> &links = m_project.project.links;
    address.linkName = chance.oneIn(8) || links.empty() ? text() : chance.of(links).name;
    address.block = text();
    address.number = chance.oneIn(2) ? text() : randomNumber(chance);
    address.isBit = chance.oneIn(2);
    address.length = chance.oneIn(2) ? 1 : static_cast<int>(chance.bits());
    check(address, std::nullopt);
}

} // namespace panelkit::simulator
