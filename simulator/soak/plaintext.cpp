#include "simulator/soak/plaintext.h"

#include "simulator/project/project.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace panelkit::simulator {

namespace {

std::string fixed(double value, int decimals)
{
    std::string text(512, '\0');
    const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string inBase(quint32 value, quint32 base)
{
    std::string text;
    do {
        text.insert(text.begin(), "0123456789abcdef"[value % base]);
        value /= base;
    } while (value != 0);
    return text;
}

std::string lastOf(const std::string &text, std::size_t count)
{
    return text.size() > count ? text.substr(text.size() - count) : text;
}

// A decimal number in so many digits: those in front that are too many are dropped.
std::string inDigits(std::string text, const ItemDefinition &item)
{
    std::string sign;
    if (text.front() == '-') {
        sign = "-";
        text.erase(0, 1);
    }
    const std::size_t point = text.find('.');
    if (item.decimals > 0) {
        const auto wholeDigits = static_cast<std::size_t>(item.digits - item.decimals);
        const std::string whole = wholeDigits == 0 ? "0" : lastOf(text.substr(0, point), wholeDigits);
        return sign + whole + text.substr(point);
    }
    text = lastOf(text, static_cast<std::size_t>(item.digits));
    text.erase(0, text.find_first_not_of('0'));
    return sign + (text.empty() ? "0" : text);
}

std::string integerText(qint64 value, const ItemDefinition &item)
{
    if (item.decimals == 0)
        return inDigits(std::to_string(value), item);
    const double scale = static_cast<double>(std::pow(10.0F, static_cast<float>(item.decimals)));
    return inDigits(fixed(static_cast<double>(value) / scale, item.decimals), item);
}

std::string unsignedText(quint32 value, const ItemDefinition &item)
{
    if (item.view == NUM_VIEW_DEC)
        return integerText(value, item);
    ItemDefinition whole = item;
    whole.decimals = 0;
    const quint32 base = item.view == NUM_VIEW_HEX ? 16 : item.view == NUM_VIEW_OCT ? 8 : 2;
    return inDigits(inBase(value, base), whole);
}

std::string bcdText(quint32 value, const ItemDefinition &item)
{
    std::string text = inBase(value, 16);
    if (text.find_first_not_of("0123456789") != std::string::npos)
        return "NA";
    if (item.decimals > 0) {
        const auto decimals = static_cast<std::size_t>(item.decimals);
        if (text.size() <= decimals)
            text.insert(0, decimals + 1 - text.size(), '0');
        text.insert(text.size() - decimals, ".");
    }
    return inDigits(text, item);
}

std::string singleText(float value, int decimals)
{
    if (std::isnan(value) || std::isinf(value))
        value = 0;
    if (decimals == 0) {
        const std::string whole = fixed(static_cast<double>(std::trunc(value)), 0);
        return whole == "-0" ? "0" : whole;
    }
    std::string text = fixed(static_cast<double>(value), decimals + 1);
    text.pop_back();
    return text;
}

template <typename Value>
Value valueOf(const QVector<quint16> &words)
{
    Value value = {};
    std::memcpy(&value, words.constData(),
                qMin(sizeof(value), static_cast<std::size_t>(words.size()) * sizeof(quint16)));
    return value;
}

std::optional<QString> stringText(const QVector<quint16> &words)
{
    const auto *bytes = reinterpret_cast<const char *>(words.constData());
    const auto size = static_cast<uint>(words.size()) * 2;
    const QByteArray text(bytes, static_cast<int>(qstrnlen(bytes, size)));
    for (const char byte : text)
        if (static_cast<signed char>(byte) < 0)
            return std::nullopt;
    return QString::fromLatin1(text);
}

} // namespace

std::optional<QString> plainText(const ItemDefinition &item, const QVector<quint16> &words)
{
    std::string text;
    switch (item.type) {
    case NUM_BIT:
        text = valueOf<quint16>(words) != 0 ? "1" : "0";
        break;
    case NUM_UINT16:
        text = unsignedText(valueOf<quint16>(words), item);
        break;
    case NUM_UINT32:
        text = unsignedText(valueOf<quint32>(words), item);
        break;
    case NUM_INT16:
        text = integerText(valueOf<qint16>(words), item);
        break;
    case NUM_INT32:
        text = integerText(valueOf<qint32>(words), item);
        break;
    case NUM_BCD16:
    case NUM_BCD32:
        text = bcdText(valueOf<quint32>(words), item);
        break;
    case NUM_FLOAT32:
        text = singleText(valueOf<float>(words), item.decimals);
        break;
    case NUM_STRING:
        return stringText(words);
    }
    return QString::fromStdString(text);
}

} // namespace panelkit::simulator
