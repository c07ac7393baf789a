#include "simulator/host/registertext.h"

#include "simulator/comm/modbusaddress.h"
#include "simulator/project/valuetypes.h"

#include <QStringList>

namespace panelkit::simulator {

namespace {

const QStringList internalBlocks = {QStringLiteral("LB"), QStringLiteral("LW"), QStringLiteral("RWI")};

constexpr int largestIndex = 65535; // of an internal block

const VariableDefinition *variableNamed(const Project &project, const QString &name)
{
    for (const VariableDefinition &variable : project.variables)
        if (variable.name == name)
            return &variable;
    return nullptr;
}

const LinkDefinition *linkNumbered(const Project &project, int number)
{
    for (const LinkDefinition &link : project.links)
        if (link.number == number)
            return &link;
    return nullptr;
}

std::optional<MacroDataType> typeNamed(const QString &name)
{
    for (const ValueType &type : valueTypes)
        if (type.variable >= 0 && name == QLatin1String(type.name))
            return static_cast<MacroDataType>(type.variable);
    return std::nullopt;
}

// The longest of the blocks that `text` begins with, or an empty text.
QString blockOf(const QString &text, const QStringList &blocks)
{
    QString longest;
    for (const QString &block : blocks)
        if (text.startsWith(block) && block.size() > longest.size())
            longest = block;
    return longest;
}

// Cuts a number and `sign` behind it off the front of `text`. False when there is a sign without a number.
bool takePrefix(QString &text, char sign, std::optional<int> &number)
{
    const auto end = text.indexOf(QLatin1Char(sign));
    if (end < 0)
        return true;
    bool isNumber = false;
    number = text.left(end).toInt(&isNumber);
    text.remove(0, end + 1);
    return isNumber;
}

std::optional<TypedRegister> parseInternal(const QString &text, const QString &name, const QString &block,
                                           std::optional<MacroDataType> type, QString &error)
{
    bool isNumber = false;
    const int index = name.mid(block.size()).toInt(&isNumber);
    if (!isNumber || index < 0 || index > largestIndex) {
        error = QStringLiteral("'%1': %2 registers are numbered from 0 to 65535").arg(text, block);
        return std::nullopt;
    }
    if (type && index + wordCountOf(*type) - 1 > largestIndex) {
        error = QStringLiteral("'%1': its second word would be behind %2%3, the last of its block")
                    .arg(text, block, QString::number(largestIndex));
        return std::nullopt;
    }
    const bool isBit = block == QLatin1String("LB");
    return TypedRegister{{QLatin1String(internalStorageName), block, index, -1, 0},
                         isBit ? MacroDataType::Bit : MacroDataType::Word};
}

std::optional<TypedRegister> parsePlc(const Project &project, const QString &text, QString &error)
{
    QString rest = text;
    std::optional<int> number;
    std::optional<int> station;
    if (!takePrefix(rest, '/', number) || !takePrefix(rest, '#', station)) {
        error = QStringLiteral("'%1': a number is expected before \"/\" and \"#\"").arg(text);
        return std::nullopt;
    }
    const LinkDefinition *link = linkNumbered(project, number.value_or(1));
    if (link == nullptr) {
        error = QStringLiteral("'%1' is no script variable, and there is no link %2")
                    .arg(text, QString::number(number.value_or(1)));
        return std::nullopt;
    }
    const QString name = blockOf(rest, link->blocks);
    const ModbusBlock *block = findModbusBlock(name);
    if (block == nullptr) {
        error = QStringLiteral("'%1' is no script variable, and no register of link %2, whose blocks are %3")
                    .arg(text, QString::number(link->number), link->blocks.join(QLatin1String(", ")));
        return std::nullopt;
    }
    const int index = modbusIndex(*block, rest.mid(name.size()));
    if (index < 0) {
        error = QStringLiteral("'%1': %2 registers are numbered %3")
                    .arg(text, name,
                         block->isInWord ? QStringLiteral("WORD.BIT, from 1.0 to 65536.15")
                                         : QStringLiteral("from 1 to 65536"));
        return std::nullopt;
    }
    return TypedRegister{{link->name, name, index, station.value_or(link->station), 0},
                         block->isBit ? MacroDataType::Bit : MacroDataType::Word};
}

} // namespace

std::optional<TypedRegister> parseRegister(const Project &project, const QString &text, QString &error)
{
    QString name = text;
    std::optional<MacroDataType> type;
    const auto colon = text.lastIndexOf(QLatin1Char(':'));
    if (colon >= 0 && variableNamed(project, text) == nullptr) {
        type = typeNamed(text.mid(colon + 1));
        if (!type) {
            error = QStringLiteral("'%1': there is no type '%2'").arg(text, text.mid(colon + 1));
            return std::nullopt;
        }
        name = text.left(colon);
    }

    std::optional<TypedRegister> found;
    const QString internalBlock = blockOf(name, internalBlocks);
    if (const VariableDefinition *variable = variableNamed(project, name)) {
        const AddressDefinition &address = variable->address;
        found = TypedRegister{{address.link, address.block, address.index, address.station, variable->extra},
                              static_cast<MacroDataType>(variable->dataType)};
    } else if (!internalBlock.isEmpty()) {
        found = parseInternal(text, name, internalBlock, type, error);
    } else {
        found = parsePlc(project, name, error);
    }
    if (found && type)
        found->type = *type;
    return found;
}

std::optional<MacroValue> parseNumber(const QString &text)
{
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return MacroValue(qint64(text == QLatin1String("true") ? 1 : 0));
    bool isNumber = false;
    const bool isHexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const qlonglong whole = text.toLongLong(&isNumber, isHexadecimal ? 16 : 10);
    if (isNumber)
        return MacroValue(qint64(whole));
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional<MacroValue>(number) : std::nullopt;
}

QString numberText(const MacroValue &value)
{
    if (const auto *whole = std::get_if<qint64>(&value))
        return QString::number(*whole);
    const double number = std::get<double>(value);
    const auto single = static_cast<float>(number);
    const bool isSingle = static_cast<double>(single) == number;
    QString text;
    for (int digits = 6; digits <= 17; ++digits) {
        text = QString::number(number, 'g', digits);
        if (isSingle ? text.toFloat() == single : text.toDouble() == number)
            break;
    }
    return text;
}

} // namespace panelkit::simulator
