#include "simulator/lua/linkregisters.h"

#include "simulator/comm/communication.h"
#include "simulator/comm/internalstorage.h"
#include "simulator/comm/modbusaddress.h"

#include <cstring>

namespace panelkit::simulator {

namespace {

QString failureOf(const TransferResult &result)
{
    return result ? QString() : QString::fromStdString(describe(result));
}

QLatin1String blockOf(const RegisterValueChange &reg)
{
    return QLatin1String(reg.block, static_cast<int>(qstrnlen(reg.block, sizeof(reg.block))));
}

QString readNow(Communication &communication, const RegisterValueChange &reg, RegisterWords &words)
{
    return failureOf(communication.readAddressNow(reg, words.count, words.words.data()));
}

} // namespace

std::optional<RegisterValueChange> registerOf(Communication &communication, const MacroAddress &address,
                                              QString &failure)
{
    const LinkValue link = communication.getLinkValueByName(address.link);
    if (link.id == -1) {
        failure = failureOf({TransferStatus::NoSuchLink});
        return std::nullopt;
    }
    const QByteArray block = address.block.toLatin1();
    RegisterValueChange reg = {};
    if (QString::fromLatin1(block) != address.block || block.size() > static_cast<int>(sizeof(reg.block))) {
        failure = failureOf({TransferStatus::NoSuchRegister});
        return std::nullopt;
    }
    reg.linkId = link.id;
    reg.station = link.addmore == 0 ? link.station : address.station;
    reg.index = address.index;
    std::memcpy(reg.block, block.constData(), static_cast<std::size_t>(block.size()));
    return reg;
}

QString LinkRegisters::read(const MacroAddress &address, RegisterWords &words)
{
    QString failure;
    const auto reg = registerOf(m_communication, address, failure);
    return reg ? readNow(m_communication, *reg, words) : failure;
}

QString LinkRegisters::write(const MacroAddress &address, const RegisterWords &words,
                             std::optional<RegisterWords> &before)
{
    QString failure;
    const auto reg = registerOf(m_communication, address, failure);
    if (!reg)
        return failure;
    RegisterWords old = words;
    if (readNow(m_communication, *reg, old).isEmpty())
        before = old;
    return failureOf(m_communication.writeAddressWords(*reg, words.count, words.words.data()));
}

struct CopiedRegisters::Layout
{
    int link = 0;
    ModbusSpan span;
    QString area; // what tells the tables of a station, and the blocks of the internal storage, apart
    bool isWritable = true;

    Place place(int i) const { return {link, span.range.unit, area, span.range.first + i}; }
};

std::optional<CopiedRegisters::Layout> CopiedRegisters::layoutOf(const RegisterValueChange &reg,
                                                                 int wordCount)
{
    const QLatin1String name = blockOf(reg);
    if (reg.linkId == 0) {
        if (!InternalStorage::hasBlock(name) || reg.index < 0 || reg.index > RegisterArea::size - wordCount)
            return std::nullopt;
        const bool isBit = name == QLatin1String("LB");
        const ModbusTable table = isBit ? ModbusTable::Coils : ModbusTable::HoldingRegisters;
        return Layout{0, {{reg.station, table, reg.index, wordCount}, wordCount, false, 0}, name, true};
    }
    const ModbusBlock *block = modbusBlock(name);
    if (block == nullptr)
        return std::nullopt;
    const auto span = modbusSpan(*block, reg.station, reg.index, wordCount, largestWrite(block->table));
    if (!span)
        return std::nullopt;
    return Layout{reg.linkId, *span, QString::number(static_cast<int>(block->table)), block->isWritable};
}

// Reads the registers of the links, and then what of them was written here.
QString CopiedRegisters::read(const MacroAddress &address, RegisterWords &words)
{
    QString failure;
    const auto reg = registerOf(m_communication, address, failure);
    if (!reg)
        return failure;
    failure = readNow(m_communication, *reg, words);
    const auto layout = layoutOf(*reg, words.count);
    if (!failure.isEmpty() || !layout)
        return failure;

    std::array<quint16, 2> registers = {};
    packWords(layout->span, words.words.data(), registers.data());
    for (int i = 0; i < layout->span.range.count; ++i) {
        const auto written = m_written.find(layout->place(i));
        if (written == m_written.end())
            continue;
        quint16 &value = registers[static_cast<std::size_t>(i)];
        value = static_cast<quint16>((value & ~written->second.mask) | written->second.value);
    }
    unpackWords(layout->span, registers.data(), words.words.data());
    return failure;
}

QString CopiedRegisters::write(const MacroAddress &address, const RegisterWords &words,
                               std::optional<RegisterWords> &before)
{
    RegisterWords old = words;
    QString failure = read(address, old);
    if (!failure.isEmpty())
        return failure;
    Layout layout;
    failure = find(address, words.count, layout);
    if (!failure.isEmpty())
        return failure;
    if (!layout.isWritable)
        return failureOf({TransferStatus::ReadOnly});
    before = old;
    keep(layout, words);
    return QString();
}

QString CopiedRegisters::preset(const MacroAddress &address, const RegisterWords &words)
{
    Layout layout;
    QString failure = find(address, words.count, layout);
    if (failure.isEmpty())
        keep(layout, words);
    return failure;
}

QString CopiedRegisters::find(const MacroAddress &address, int wordCount, Layout &layout)
{
    QString failure;
    const auto reg = registerOf(m_communication, address, failure);
    if (!reg)
        return failure;
    const auto found = layoutOf(*reg, wordCount);
    if (!found)
        return failureOf({TransferStatus::NoSuchRegister});
    layout = *found;
    return QString();
}

void CopiedRegisters::keep(const Layout &layout, const RegisterWords &words)
{
    const std::array<quint16, 2> all = {0xFFFF, 0xFFFF};
    std::array<quint16, 2> masks = all;
    if (layout.span.isInWord) {
        masks = {};
        packWords(layout.span, all.data(), masks.data());
    }
    std::array<quint16, 2> values = {};
    packWords(layout.span, words.words.data(), values.data());
    for (std::size_t i = 0; i < static_cast<std::size_t>(layout.span.range.count); ++i) {
        Written &written = m_written[layout.place(static_cast<int>(i))];
        written.value = static_cast<quint16>((written.value & ~masks[i]) | values[i]);
        written.mask |= masks[i];
    }
}

} // namespace panelkit::simulator
