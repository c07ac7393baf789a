// The display texts the ordinary Qt way, one rule after the other and without a thought for speed: what the
// library's own way is compared with, by tests for the answer and by benchmarks for the time.
#pragma once

#include "platform/sys_base.h"
#include "register/interfacecomm.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"

#include <QRegExp>
#include <QString>
#include <QStringList>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace panelkit::testing {

// The C format, which rounds ties to even where the toolkit's own rounds them away from zero.
inline QString plainFixed(double value, int decimals)
{
    const int size = std::snprintf(nullptr, 0, "%.*f", decimals, value);
    QByteArray text(size + 1, '\0');
    std::snprintf(text.data(), static_cast<std::size_t>(size) + 1, "%.*f", decimals, value);
    return QString::fromLatin1(text.constData());
}

// In single precision.
inline double plainPowerOfTen(int decimals)
{
    return static_cast<double>(std::pow(10.0F, static_cast<float>(decimals)));
}

inline void plainDecimalDigits(QString &out, int totalDigits, int decimals)
{
    const bool negative = out.startsWith("-");
    if (negative)
        out = out.mid(1);
    const QStringList parts = out.split(".");
    const int wholeDigits = totalDigits - decimals;
    if (wholeDigits == 0)
        out = QString("0.") + parts[1];
    else
        out = parts[0].right(wholeDigits) + "." + parts[1];
    if (negative)
        out = QString("-") + out;
}

inline void plainIntegerDigits(QString &out, int totalDigits)
{
    const bool negative = out.startsWith("-");
    if (negative)
        out = out.mid(1);
    if (out.length() > totalDigits)
        out = out.right(totalDigits);
    while (out.startsWith("0"))
        out = out.mid(1);
    if (out.isEmpty())
        out = "0";
    if (negative)
        out = QString("-") + out;
}

inline void plainDigits(QString &out, int totalDigits, int decimals)
{
    if (decimals > 0)
        plainDecimalDigits(out, totalDigits, decimals);
    else
        plainIntegerDigits(out, totalDigits);
}

inline QString plainInteger(qint64 value, int decimals)
{
    if (decimals == 0)
        return QString("%1").arg(value);
    if (decimals < -45)
        decimals = -45; // below, the power is 0 and divides nothing
    return plainFixed(static_cast<double>(value) / plainPowerOfTen(decimals), decimals);
}

inline QString plainBcd(quint32 value, int decimals)
{
    QString out = QString::number(value, 16);
    bool isNumber = false;
    out.toInt(&isNumber, 10);
    if (!isNumber)
        return "NA";
    if (decimals > 0) {
        while (out.length() < decimals)
            out = QString("0") + out;
        out = out.insert(out.length() - decimals, ".");
        if (out.startsWith("."))
            out = QString("0") + out;
    }
    return out;
}

inline QString plainSingle(float value, int decimals)
{
    if (std::isnan(value) || std::isinf(value))
        value = 0;
    if (decimals < 1) {
        const QString whole = plainFixed(static_cast<double>(std::trunc(value)), 0);
        return whole == "-0" ? QString("0") : whole;
    }
    const QString out = plainFixed(static_cast<double>(value), decimals + 1);
    return out.left(out.length() - 1);
}

template <typename Word>
Word plainWord(const char *buffer)
{
    Word word;
    std::memcpy(&word, buffer, sizeof(word));
    return word;
}

inline bool plainValueToQString(const RegisterValueChange &reg, int wordCount, int totalDigits, int decimals,
                                NUM_DATA_TYPE type, NUM_DATA_VIEW_TYPE view, QString &out)
{
    if (totalDigits == 0 || totalDigits < decimals) {
        out = "0";
        return true;
    }
    sys_base_app_pro *record = sys_base_get_app_pro();
    if (record == nullptr || record->comm == nullptr)
        return false;
    char buffer[130];
    std::memset(buffer, 0, sizeof(buffer));
    if (wordCount > 0)
        record->comm->readAddressWords(&reg, qMin(wordCount, 64), buffer);
    if (decimals > 1024)
        decimals = 1024;

    switch (type) {
    case NUM_BIT:
        out = plainWord<quint16>(buffer) != 0 ? "1" : "0";
        return true;
    case NUM_UINT16:
    case NUM_UINT32: {
        const quint32 value = type == NUM_UINT16 ? plainWord<quint16>(buffer) : plainWord<quint32>(buffer);
        if (view == NUM_VIEW_DEC) {
            out = plainInteger(value, decimals);
            plainDigits(out, totalDigits, decimals);
            return true;
        }
        if (view == NUM_VIEW_HEX)
            out = QString().asprintf("%x", value);
        else if (view == NUM_VIEW_OCT)
            out = QString().asprintf("%o", value);
        else
            out = QString::number(value, 2);
        plainIntegerDigits(out, totalDigits);
        return true;
    }
    case NUM_INT16:
        out = plainInteger(plainWord<qint16>(buffer), decimals);
        plainDigits(out, totalDigits, decimals);
        return true;
    case NUM_INT32:
        out = plainInteger(plainWord<qint32>(buffer), decimals);
        plainDigits(out, totalDigits, decimals);
        return true;
    case NUM_BCD16:
    case NUM_BCD32:
        out = plainBcd(plainWord<quint32>(buffer), decimals);
        if (out != "NA")
            plainDigits(out, totalDigits, decimals);
        return true;
    case NUM_FLOAT32:
        out = plainSingle(plainWord<float>(buffer), decimals);
        return true;
    case NUM_STRING:
        out = QString::fromLocal8Bit(buffer);
        return true;
    }
    out = QString();
    return true;
}

inline qint64 plainTruncated(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= std::ldexp(1.0, 63))
        return std::numeric_limits<qint64>::max();
    if (value < -std::ldexp(1.0, 63))
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

inline QString plainDoubleToQString(double value, int decimals)
{
    if (decimals == 0)
        return QString("%1").arg(value);
    if (decimals > 1024)
        decimals = 1024;
    const double bias = value >= 0 ? 1e-8 : -1e-8;
    const qint64 whole = plainTruncated(value + bias);
    const double fraction = std::fabs(bias + (value - static_cast<double>(whole)));
    const qint64 scaled = plainTruncated(fraction * plainPowerOfTen(decimals));
    QString fractionText;
    if (scaled != 0)
        fractionText = QString("%1").arg(scaled);
    while (fractionText.length() < decimals)
        fractionText = QString("0") + fractionText;
    QString text = QString("%1.%2").arg(whole).arg(fractionText);
    if (whole >= 0 && value < 0)
        text = QString("-") + text;
    return text;
}

inline bool plainIeee754TofloatStr(unsigned char *bytes, QString &out)
{
    float value;
    std::memcpy(&value, bytes, sizeof(value));
    if (std::isnan(value) || std::isinf(value))
        value = 0;
    const float whole = std::trunc(value);
    const float rest = value - whole;
    if (whole == 0 && rest == 0) {
        out = "0.0";
    } else if (rest == 0) {
        out = QString("%1").arg(static_cast<double>(value), 0, 'f', 0);
    } else {
        const int limit = whole == 0 ? 8 : 7;
        const QString wholeText = QString("%1").arg(static_cast<int>(whole));
        if (wholeText.length() <= limit) {
            out = QString("%1").arg(static_cast<double>(value), 0, 'f',
                                    limit - static_cast<int>(wholeText.length()));
            const int zeros = QRegExp("(\\.){0,1}0+$").indexIn(out);
            if (zeros >= 0)
                out.truncate(zeros);
        } else {
            const QString restText = QString("%1").arg(static_cast<double>(rest), 0, 'g',
                                                       10 - static_cast<int>(wholeText.length()));
            out = QString("%1.%2").arg(static_cast<int>(whole)).arg(restText.mid(2));
        }
    }
    return true;
}

inline QString plainBlock(const RegisterValueChange &reg)
{
    return QString::fromLatin1(reg.block, static_cast<int>(qstrnlen(reg.block, sizeof(reg.block))));
}

inline bool plainAddr2UIText(const RegisterValueChange &reg, const QString &indexText, InterfaceComm *comm,
                             QString &out)
{
    out = "";
    const QString block = plainBlock(reg);
    if (block.startsWith("LB") || block.startsWith("LW") || block.left(3) == "RWI") {
        out = QString("%1%2").arg(block, QString::number(reg.index));
        return true;
    }
    if (comm == nullptr)
        return false;
    const LinkValue link = comm->getLinkValue(static_cast<quint16>(reg.linkId));
    if (link.id == -1)
        return true;
    QString linkPrefix = "";
    if (reg.linkId > 1)
        linkPrefix = QString("%1/").arg(reg.linkId);
    QString stationPrefix = "";
    if (link.addmore == 1)
        stationPrefix = QString("%1#").arg(reg.station);
    out = linkPrefix + stationPrefix + block + indexText;
    return true;
}

} // namespace panelkit::testing
