// A communication interface that lives in memory, keeps its registers in a map and writes down every call.
#pragma once

#include "register/interfacecomm.h"
#include "register/registervaluechange.h"

#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstring>

namespace panelkit::testing {

class RecordingComm final : public InterfaceComm
{
public:
    // What the interface answers.
    QMap<int, LinkValue> links;                     // by number
    QMap<QString, LinkValue> linksByName;           // by name
    QVector<quint16> words;                         // what readAddressWords copies, as far as it goes
    QMap<QPair<int, int>, quint16> systemRegisters; // by area and address; 0 where nothing stands
    QSet<int> silentRegisters; // addresses of system registers that do not answer: the buffer stays as it is
    int resolvedIndex = 0;

    // What it was asked, one line a call, in order: "getLinkValue 3", "getLinkValueByName PLC1",
    // "resolveAddressIndex 1 D 100 0 3", "readAddressWords 1/2#D100 4", "read 0:64000 1", "write 0:64041
    // 49664 1".
    QStringList calls;

    LinkValue getLinkValue(quint16 linkNumber) override
    {
        calls << QStringLiteral("getLinkValue %1").arg(linkNumber);
        return links.value(linkNumber, unknownLink());
    }

    LinkValue getLinkValueByName(const QString &linkName) override
    {
        calls << QStringLiteral("getLinkValueByName ") + linkName;
        return linksByName.value(linkName, unknownLink());
    }

    int resolveAddressIndex(int linkId, const QString &blockName, const QString &indexText, int extra,
                            int dataType) override
    {
        calls << QStringLiteral("resolveAddressIndex %1 ").arg(linkId) + blockName + QLatin1Char(' ') +
                     indexText + QStringLiteral(" %1 %2").arg(extra).arg(dataType);
        return resolvedIndex;
    }

    int readAddressWords(const RegisterValueChange *reg, int count, void *buffer) override
    {
        if (recordReads) {
            const QString block = QString::fromLatin1(reg->block, static_cast<int>(qstrnlen(reg->block, 32)));
            calls << QStringLiteral("readAddressWords %1/%2#").arg(reg->linkId).arg(reg->station) + block +
                         QStringLiteral("%1 %2").arg(reg->index).arg(count);
        }
        const int available = qMin(count, static_cast<int>(words.size()));
        if (available > 0)
            std::memcpy(buffer, words.constData(), static_cast<std::size_t>(available) * sizeof(quint16));
        return 0;
    }

    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        QString line = QStringLiteral("write %1:%2").arg(area).arg(address);
        for (int i = 0; i < count; ++i) {
            quint16 word = 0;
            std::memcpy(&word, static_cast<const char *>(buffer) + i * 2, sizeof(word));
            systemRegisters.insert({area, address + i}, word);
            line += QStringLiteral(" %1").arg(word);
        }
        calls << line;
        return 0;
    }

    int readRegisters(int area, int address, int count, void *buffer) override
    {
        calls << QStringLiteral("read %1:%2 %3").arg(area).arg(address).arg(count);
        for (int i = 0; i < count; ++i) {
            if (silentRegisters.contains(address + i))
                continue;
            const quint16 word = systemRegisters.value({area, address + i}, 0);
            std::memcpy(static_cast<char *>(buffer) + i * 2, &word, sizeof(word));
        }
        return 0;
    }

    // Off, reads are answered without a note of them, so that counting allocations counts the caller's.
    bool recordReads = true;

    static LinkValue unknownLink()
    {
        LinkValue link;
        link.id = -1;
        return link;
    }
};

} // namespace panelkit::testing
