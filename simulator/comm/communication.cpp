#include "simulator/comm/communication.h"

#include "simulator/comm/internalstorage.h"
#include "simulator/comm/linkworker.h"
#include "simulator/comm/systemregisters.h"

#include <netdb.h>
#include <sys/socket.h>

#include <array>
#include <map>
#include <mutex>
#include <shared_mutex>

namespace panelkit::simulator {

namespace {

constexpr int internalLink = 0;

LinkRecord internalStorageRecord()
{
    LinkRecord record;
    record.name = QStringLiteral("Internal storage area");
    record.value.id = internalLink;
    record.value.station = -1;
    return record;
}

LinkValue unknownLink()
{
    LinkValue link;
    link.id = -1;
    return link;
}

QLatin1String blockName(const RegisterValueChange &reg)
{
    return QLatin1String(reg.block, static_cast<int>(qstrnlen(reg.block, sizeof(reg.block))));
}

// An IP address of a host, in digits; IPv4 where it has one. Empty when the host is not known.
std::string addressOf(const QString &host)
{
    for (const int family : {AF_INET, AF_UNSPEC}) {
        addrinfo wanted = {};
        wanted.ai_family = family;
        wanted.ai_socktype = SOCK_STREAM;
        addrinfo *found = nullptr;
        if (::getaddrinfo(host.toUtf8().constData(), nullptr, &wanted, &found) != 0)
            continue;
        std::array<char, NI_MAXHOST> text = {};
        ::getnameinfo(found->ai_addr, found->ai_addrlen, text.data(), text.size(), nullptr, 0,
                      NI_NUMERICHOST);
        ::freeaddrinfo(found);
        return text.data();
    }
    return {};
}

} // namespace

PlcPlace placeInDefinition(const LinkValue &link)
{
    const LinkParameters parameters = linkParameters(link);
    return {QString::fromStdString(parameters.host), parameters.port};
}

class Communication::Private
{
public:
    struct Link
    {
        QString name;
        LinkValue project; // as the constructor was given it
        LinkValue value;
        std::shared_ptr<LinkWorker> worker; // none: without connection
    };

    // Where a PLC address is read or written.
    struct Target
    {
        TransferStatus status = TransferStatus::Done;
        std::shared_ptr<LinkWorker> worker;
        ModbusSpan span;
    };
    enum class Access
    {
        Read,
        Write
    };

    explicit Private(const CommunicationOptions &theOptions)
        : options(theOptions),
          plcAddress(options.plcHost.isEmpty() ? std::string() : addressOf(options.plcHost))
    {
    }

    LinkParameters parametersOf(const Link &link) const;
    void connect(Link &link) const;
    Target find(const RegisterValueChange &reg, int count, Access access) const;
    std::shared_ptr<LinkWorker> worker(int number) const;

    const CommunicationOptions options;
    const std::string plcAddress;

    InternalStorage storage;
    SystemRegisters systemRegisters;

    mutable std::shared_mutex mutex; // of the links
    std::map<int, Link> links;
};

LinkParameters Communication::Private::parametersOf(const Link &link) const
{
    LinkParameters parameters = linkParameters(link.value);
    const LinkParameters inProject = linkParameters(link.project);
    const bool wasMoved = parameters.host != inProject.host || parameters.port != inProject.port;
    if (!options.plcHost.isEmpty() && !wasMoved) {
        parameters.host = plcAddress;
        parameters.port = options.plcPort;
    }
    return parameters;
}

// Has the link a worker or none, as its definition wants it.
void Communication::Private::connect(Link &link) const
{
    if (!isModbusTcp(link.value))
        link.worker.reset();
    else if (link.worker)
        link.worker->setParameters(parametersOf(link));
    else
        link.worker = std::make_shared<LinkWorker>(
            parametersOf(link), LinkTiming{{options.firstPause, options.longestPause}, options.forgetAfter});
}

Communication::Private::Target Communication::Private::find(const RegisterValueChange &reg, int count,
                                                            Access access) const
{
    Target target;
    int unit = reg.station;
    {
        const std::shared_lock<std::shared_mutex> lock(mutex);
        const auto link = links.find(reg.linkId);
        if (link == links.end())
            return {TransferStatus::NoSuchLink, nullptr, {}};
        target.worker = link->second.worker;
        if (link->second.value.addmore == 0)
            unit = link->second.value.station; // addresses made before the link was changed name the old one
    }
    if (!target.worker)
        return {TransferStatus::WithoutConnection, nullptr, {}};
    const ModbusBlock *block = modbusBlock(blockName(reg));
    if (block == nullptr)
        return {TransferStatus::NoSuchRegister, nullptr, {}};
    if (access == Access::Write && !block->isWritable)
        return {TransferStatus::ReadOnly, nullptr, {}};
    const int limit = access == Access::Write ? largestWrite(block->table) : largestRead(block->table);
    const std::optional<ModbusSpan> span = modbusSpan(*block, unit, reg.index, count, limit);
    if (!span)
        return {TransferStatus::NoSuchRegister, nullptr, {}};
    target.span = *span;
    return target;
}

std::shared_ptr<LinkWorker> Communication::Private::worker(int number) const
{
    const std::shared_lock<std::shared_mutex> lock(mutex);
    const auto link = links.find(number);
    return link == links.end() ? nullptr : link->second.worker;
}

Communication::Communication(const std::vector<LinkRecord> &links, const CommunicationOptions &options)
    : d(std::make_unique<Private>(options))
{
    const LinkRecord internal = internalStorageRecord();
    d->links.insert({internalLink, {internal.name, internal.value, internal.value, nullptr}});
    for (const LinkRecord &record : links) {
        if (record.value.id < 1 || record.value.id > 65535)
            continue;
        const auto [link, isNew] =
            d->links.insert({record.value.id, {record.name, record.value, record.value, nullptr}});
        if (isNew)
            d->connect(link->second);
    }
}

Communication::~Communication() = default;

LinkValue Communication::getLinkValue(quint16 linkNumber)
{
    const std::shared_lock<std::shared_mutex> lock(d->mutex);
    const auto link = d->links.find(linkNumber);
    return link == d->links.end() ? unknownLink() : link->second.value;
}

LinkValue Communication::getLinkValueByName(const QString &linkName)
{
    const std::shared_lock<std::shared_mutex> lock(d->mutex);
    for (const auto &[number, link] : d->links)
        if (link.name == linkName)
            return link.value;
    return unknownLink();
}

int Communication::resolveAddressIndex(int linkId, const QString &name, const QString &indexText, int, int)
{
    const QByteArray latin1 = name.toLatin1();
    const QLatin1String block(latin1.constData(), static_cast<int>(latin1.size()));
    int indexCount = 0;
    if (linkId == internalLink)
        indexCount = InternalStorage::hasBlock(block) ? RegisterArea::size : 0;
    else if (const ModbusBlock *modbus = d->worker(linkId) ? modbusBlock(block) : nullptr)
        indexCount = modbus->indexCount;
    bool isNumber = false;
    const int index = indexText.toInt(&isNumber, 10);
    return isNumber && index >= 0 && index < indexCount ? index : -1;
}

int Communication::readAddressWords(const RegisterValueChange *reg, int count, void *buffer)
{
    if (reg == nullptr || buffer == nullptr)
        return -1;
    if (reg->linkId == internalLink)
        return d->storage.read(blockName(*reg), reg->index, count, buffer) ? 0 : -1;
    const Private::Target target = d->find(*reg, count, Private::Access::Read);
    return target.worker && target.worker->readLatest(target.span, buffer) ? 0 : -1;
}

int Communication::writeRegisters(int area, int address, int count, const void *buffer)
{
    return buffer != nullptr && d->systemRegisters.write(area, address, count, buffer) ? 0 : -1;
}

int Communication::readRegisters(int area, int address, int count, void *buffer)
{
    return buffer != nullptr && d->systemRegisters.read(area, address, count, buffer) ? 0 : -1;
}

bool Communication::watchAddress(const RegisterValueChange &reg, int count)
{
    const Private::Target target = d->find(reg, count, Private::Access::Read);
    return !target.worker || target.worker->watch(target.span);
}

TransferResult Communication::writeAddressWords(const RegisterValueChange &reg, int count, const void *words)
{
    if (words == nullptr)
        return {TransferStatus::NoSuchRegister};
    if (reg.linkId == internalLink) {
        const bool isDone = d->storage.write(blockName(reg), reg.index, count, words);
        return {isDone ? TransferStatus::Done : TransferStatus::NoSuchRegister};
    }
    const Private::Target target = d->find(reg, count, Private::Access::Write);
    return target.worker ? target.worker->write(target.span, words) : TransferResult{target.status};
}

TransferResult Communication::readAddressNow(const RegisterValueChange &reg, int count, void *words)
{
    if (words == nullptr)
        return {TransferStatus::NoSuchRegister};
    if (reg.linkId == internalLink) {
        const bool isDone = d->storage.read(blockName(reg), reg.index, count, words);
        return {isDone ? TransferStatus::Done : TransferStatus::NoSuchRegister};
    }
    const Private::Target target = d->find(reg, count, Private::Access::Read);
    return target.worker ? target.worker->readNow(target.span, words) : TransferResult{target.status};
}

bool Communication::updateLink(const LinkValue &link)
{
    const std::unique_lock<std::shared_mutex> lock(d->mutex);
    const auto found = d->links.find(link.id);
    if (link.id == internalLink || found == d->links.end())
        return false;
    found->second.value = link;
    d->connect(found->second);
    return true;
}

std::vector<int> Communication::linkNumbers() const
{
    const std::shared_lock<std::shared_mutex> lock(d->mutex);
    std::vector<int> numbers;
    for (const auto &[number, link] : d->links)
        numbers.push_back(number);
    return numbers;
}

QString Communication::linkName(int number) const
{
    const std::shared_lock<std::shared_mutex> lock(d->mutex);
    const auto link = d->links.find(number);
    return link == d->links.end() ? QString() : link->second.name;
}

LinkState Communication::linkState(int number) const
{
    LinkState state;
    std::shared_ptr<LinkWorker> worker;
    {
        const std::shared_lock<std::shared_mutex> lock(d->mutex);
        const auto link = d->links.find(number);
        if (link == d->links.end())
            return state;
        worker = link->second.worker;
    }
    state.condition = number == internalLink ? LinkCondition::Internal : LinkCondition::WithoutConnection;
    return worker ? worker->state() : state;
}

std::optional<PlcPlace> Communication::plcPlace(int number) const
{
    const std::shared_lock<std::shared_mutex> lock(d->mutex);
    const auto link = d->links.find(number);
    if (link == d->links.end() || !link->second.worker)
        return std::nullopt;
    const LinkParameters parameters = d->parametersOf(link->second);
    return PlcPlace{parameters.host.empty() ? d->options.plcHost : QString::fromStdString(parameters.host),
                    parameters.port};
}

bool Communication::waitForLink(int number, const std::function<bool(const LinkState &)> &condition,
                                std::chrono::milliseconds timeout) const
{
    const std::shared_ptr<LinkWorker> worker = d->worker(number);
    return worker ? worker->waitFor(condition, timeout) : condition(linkState(number));
}

} // namespace panelkit::simulator
