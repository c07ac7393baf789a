#include "simulator/drivers/addressrule.h"

#include <algorithm>

namespace panelkit::simulator {

namespace {

// No block comes near this many units; larger numbers need not be told apart.
const int beyondEveryBlock = 100000000;

DriverCode readNumber(const QString &digits, int radix, int &value)
{
    value = 0;
    bool isOctal = true;
    for (const QChar c : digits) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return DriverCode::UnreadableNumber;
        const int digit = c.unicode() - '0';
        isOctal = isOctal && digit < 8;
        value = std::min(value * radix + digit, beyondEveryBlock);
    }
    if (digits.isEmpty())
        return DriverCode::UnreadableNumber;
    return radix == 8 && !isOctal ? DriverCode::NotOctal : DriverCode::Accepted;
}

QString writeNumber(const AddressRule &rule, int index)
{
    const QString unit = QString::number(index / rule.bitsPerUnit + rule.firstNumber, rule.radix);
    return rule.bitsPerUnit == 1 ? unit : unit + QLatin1Char('.') + QString::number(index % rule.bitsPerUnit);
}

DriverCode readIndex(const AddressRule &rule, const QString &number, int &index)
{
    const QString text = number.trimmed();
    const auto point = rule.bitsPerUnit > 1 ? text.indexOf(QLatin1Char('.')) : -1;
    int unit = 0;
    const DriverCode unitCode = readNumber(point < 0 ? text : text.left(point), rule.radix, unit);
    if (unitCode != DriverCode::Accepted)
        return unitCode;
    int bit = 0;
    if (rule.bitsPerUnit > 1) {
        if (point < 0)
            return DriverCode::BadBit;
        const DriverCode bitCode = readNumber(text.mid(point + 1), 10, bit);
        if (bitCode != DriverCode::Accepted)
            return bitCode;
        if (bit >= rule.bitsPerUnit)
            return DriverCode::BadBit;
    }
    unit -= rule.firstNumber;
    if (unit < 0 || unit >= rule.unitCount)
        return DriverCode::OutOfRange;
    if (unit % rule.unitsPerRegister != 0)
        return DriverCode::Unaligned;
    index = unit * rule.bitsPerUnit + bit;
    return DriverCode::Accepted;
}

bool fitsBlock(const AddressRule &rule, int index, int length)
{
    const qint64 end = index + qint64(std::max(length, 1)) * rule.unitsPerRegister;
    return length >= 0 && end <= qint64(rule.unitCount) * rule.bitsPerUnit;
}

} // namespace

DriverCode checkAddress(const AddressRule *rule, QString &number, int &index, int addrType, int length)
{
    if (rule == nullptr)
        return DriverCode::UnknownBlock;
    if (rule->isBit != (addrType == -1))
        return DriverCode::WrongAccess;
    int found = 0;
    const DriverCode code = readIndex(*rule, number, found);
    if (code != DriverCode::Accepted)
        return code;
    if (!fitsBlock(*rule, found, length))
        return DriverCode::RunTooLong;
    index = found;
    number = writeNumber(*rule, found);
    return DriverCode::Accepted;
}

void findIndex(const AddressRule *rule, const QString &number, int &index, int width)
{
    if (rule != nullptr && width == rule->bitsPerUnit)
        readIndex(*rule, number, index);
}

QStringList describeBlock(const AddressRule &rule)
{
    const int lastUnit = rule.unitCount - rule.unitsPerRegister;
    return {QLatin1String(rule.name), writeNumber(rule, 0),
            writeNumber(rule, lastUnit * rule.bitsPerUnit + rule.bitsPerUnit - 1),
            QString::number(rule.bitsPerUnit), rule.isBit ? QStringLiteral("bit") : QStringLiteral("word")};
}

} // namespace panelkit::simulator
