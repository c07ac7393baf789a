// Registers in memory, for macros.
#pragma once

#include "simulator/lua/macroregisters.h"

#include <QMap>
#include <QStringList>

namespace panelkit::testing {

// Words by link and block; the index counts words. What was never written is 0. The link "away" fails.
class MemoryRegisters final : public simulator::MacroRegisters
{
public:
    QMap<QString, quint16> words; // by "link/block/index"
    QStringList calls; // "read L1/D/100 1 station 1 extra 0", "write L1/D/100 7 8 station 1 extra 0"

    static QString key(const QString &link, const QString &block, int index)
    {
        return link + QLatin1Char('/') + block + QLatin1Char('/') + QString::number(index);
    }

    QString read(const simulator::MacroAddress &address, simulator::RegisterWords &out) override
    {
        note(QStringLiteral("read "), address, QStringList(QString::number(out.count)));
        if (address.link == QLatin1String("away"))
            return QStringLiteral("the PLC does not answer");
        copyOut(address, out);
        return QString();
    }

    QString write(const simulator::MacroAddress &address, const simulator::RegisterWords &written,
                  std::optional<simulator::RegisterWords> &before) override
    {
        QStringList numbers;
        for (int i = 0; i < written.count; ++i)
            numbers << QString::number(written.words[static_cast<std::size_t>(i)]);
        note(QStringLiteral("write "), address, numbers);
        if (address.link == QLatin1String("away"))
            return QStringLiteral("the PLC does not answer");
        before = written;
        copyOut(address, *before);
        for (int i = 0; i < written.count; ++i)
            words.insert(key(address.link, address.block, address.index + i),
                         written.words[static_cast<std::size_t>(i)]);
        return QString();
    }

private:
    void copyOut(const simulator::MacroAddress &address, simulator::RegisterWords &out) const
    {
        for (int i = 0; i < out.count; ++i)
            out.words[static_cast<std::size_t>(i)] =
                words.value(key(address.link, address.block, address.index + i));
    }

    void note(const QString &what, const simulator::MacroAddress &address, const QStringList &numbers)
    {
        calls << what + key(address.link, address.block, address.index) + QLatin1Char(' ') +
                     numbers.join(QLatin1Char(' ')) +
                     QStringLiteral(" station %1 extra %2").arg(address.station).arg(address.extra);
    }
};

} // namespace panelkit::testing
