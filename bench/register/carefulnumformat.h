// The display texts as careful Qt code makes them: no text literals that allocate, no lists, no number
// formats that parse a pattern; but a QString for each value.
#pragma once

#include "platform/sys_base.h"
#include "register/interfacecomm.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"

#include <QString>

#include <cmath>
#include <cstdio>
#include <cstring>

namespace panelkit::bench {

inline QString carefulFixed(double value, int decimals)
{
    char text[1200];
    return QString::fromLatin1(text, std::snprintf(text, sizeof(text), "%.*f", decimals, value));
}

inline void carefulDigits(QString &out, int totalDigits, int decimals)
{
    const int start = out.startsWith(QLatin1Char('-')) ? 1 : 0;
    if (decimals > 0) {
        const auto point = out.indexOf(QLatin1Char('.'));
        const auto wholeDigits = totalDigits - decimals;
        if (wholeDigits == 0)
            out.replace(start, point - start, QLatin1Char('0'));
        else if (point - start > wholeDigits)
            out.remove(start, point - start - wholeDigits);
        return;
    }
    auto drop = qMax(out.size() - start - totalDigits, decltype(out.size())(0));
    while (start + drop < out.size() - 1 && out.at(start + drop) == QLatin1Char('0'))
        ++drop;
    out.remove(start, drop);
}

inline QString carefulInteger(qint64 value, int decimals)
{
    if (decimals == 0)
        return QString::number(value);
    return carefulFixed(static_cast<double>(value) /
                            static_cast<double>(std::pow(10.0F, static_cast<float>(decimals))),
                        decimals);
}

inline QString carefulBcd(quint32 value, int decimals)
{
    QString out = QString::number(value, 16);
    for (const QChar digit : qAsConst(out)) {
        if (digit > QLatin1Char('9'))
            return QStringLiteral("NA");
    }
    if (decimals > 0) {
        out = out.rightJustified(decimals + 1, QLatin1Char('0'));
        out.insert(out.size() - decimals, QLatin1Char('.'));
    }
    return out;
}

inline bool carefulValueToQString(const RegisterValueChange &reg, int wordCount, int totalDigits,
                                  int decimals, NUM_DATA_TYPE type, NUM_DATA_VIEW_TYPE view, QString &out)
{
    char buffer[130] = {};
    sys_base_get_app_pro()->comm->readAddressWords(&reg, qMin(wordCount, 64), buffer);
    quint16 word;
    quint32 bits;
    std::memcpy(&word, buffer, sizeof(word));
    std::memcpy(&bits, buffer, sizeof(bits));
    switch (type) {
    case NUM_BIT:
        out = word != 0 ? QStringLiteral("1") : QStringLiteral("0");
        return true;
    case NUM_UINT16:
    case NUM_UINT32: {
        const quint32 value = type == NUM_UINT16 ? word : bits;
        if (view == NUM_VIEW_DEC) {
            out = carefulInteger(value, decimals);
            break;
        }
        out = QString::number(value, view == NUM_VIEW_HEX ? 16 : view == NUM_VIEW_OCT ? 8 : 2);
        carefulDigits(out, totalDigits, 0);
        return true;
    }
    case NUM_INT16:
        out = carefulInteger(static_cast<qint16>(word), decimals);
        break;
    case NUM_INT32:
        out = carefulInteger(static_cast<qint32>(bits), decimals);
        break;
    case NUM_BCD16:
    case NUM_BCD32:
        out = carefulBcd(bits, decimals);
        if (out == QLatin1String("NA"))
            return true;
        break;
    case NUM_FLOAT32: {
        float value;
        std::memcpy(&value, buffer, sizeof(value));
        out = carefulFixed(static_cast<double>(value), decimals + 1);
        out.chop(1);
        return true;
    }
    case NUM_STRING:
        out = QString::fromLocal8Bit(buffer);
        return true;
    }
    carefulDigits(out, totalDigits, decimals);
    return true;
}

inline bool carefulAddr2UIText(const RegisterValueChange &reg, const QString &indexText, InterfaceComm *comm,
                               QString &out)
{
    const QString block =
        QString::fromLatin1(reg.block, static_cast<int>(qstrnlen(reg.block, sizeof(reg.block))));
    if (block.startsWith(QLatin1String("LB")) || block.startsWith(QLatin1String("LW")) ||
        block.startsWith(QLatin1String("RWI"))) {
        out = block + QString::number(reg.index);
        return true;
    }
    const LinkValue link = comm->getLinkValue(static_cast<quint16>(reg.linkId));
    QString prefix;
    if (reg.linkId > 1)
        prefix = QString::number(reg.linkId) + QLatin1Char('/');
    if (link.addmore == 1)
        prefix += QString::number(reg.station) + QLatin1Char('#');
    out = prefix + block + indexText;
    return true;
}

} // namespace panelkit::bench
