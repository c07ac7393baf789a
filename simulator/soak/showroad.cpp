#include "simulator/soak/showroad.h"

#include "platform/sys_base.h"
#include "register/addresstext.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "simulator/comm/communication.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"
#include "simulator/platform/systembase.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/plaintext.h"
#include "simulator/soak/soakplc.h"

#include <algorithm>

namespace panelkit::simulator {

namespace {

// The communication interface of an application record, as long as it lives; it keeps the words that a
// display asks for.
class SeenWords final : public InterfaceComm
{
public:
    explicit SeenWords(Communication &communication)
        : m_communication(communication),
          m_earlier(sys_base_get_app_pro()),
          m_record(*m_earlier)
    {
        m_record.comm = this;
        setApplicationRecord(&m_record);
    }
    ~SeenWords() { setApplicationRecord(m_earlier); }

    LinkValue getLinkValue(quint16 number) override { return m_communication.getLinkValue(number); }
    LinkValue getLinkValueByName(const QString &name) override
    {
        return m_communication.getLinkValueByName(name);
    }
    int resolveAddressIndex(int link, const QString &block, const QString &index, int extra,
                            int type) override
    {
        return m_communication.resolveAddressIndex(link, block, index, extra, type);
    }
    int readAddressWords(const RegisterValueChange *reg, int count, void *buffer) override
    {
        const int result = m_communication.readAddressWords(reg, count, buffer);
        hasAnswered = result == 0;
        words.fill(0, count);
        std::copy_n(static_cast<const quint16 *>(buffer), count, words.begin());
        return result;
    }
    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        return m_communication.writeRegisters(area, address, count, buffer);
    }
    int readRegisters(int area, int address, int count, void *buffer) override
    {
        return m_communication.readRegisters(area, address, count, buffer);
    }

    bool hasAnswered = false;
    QVector<quint16> words;

private:
    Communication &m_communication;
    sys_base_app_pro *m_earlier;
    sys_base_app_pro m_record;
};

QString hexText(const QVector<quint16> &words)
{
    QStringList texts;
    for (const quint16 word : words)
        texts << QStringLiteral("%1").arg(word, 4, 16, QLatin1Char('0'));
    return texts.join(QLatin1Char(' '));
}

} // namespace

ShowRoad::ShowRoad(const SoakProject &project, const SoakPlc &plc)
    : Road(QStringLiteral("show")),
      m_project(project),
      m_plc(plc)
{
}

void ShowRoad::beginShift(Session &session)
{
    m_session = &session;
    watchItems(session);
}

void ShowRoad::act(Chance &chance)
{
    const std::vector<ItemDefinition> &items = m_project.project.items;
    if (items.empty())
        return;
    const auto number = static_cast<std::size_t>(chance.between(0, static_cast<int>(items.size()) - 1));
    const ItemDefinition &item = items[number];
    ask();
    SeenWords comm(m_session->communication());
    RegisterValueChangeSize address = {};
    QString text;
    if (!ObjectAddress2RegisterValueChangeSize(m_session->itemNode(number), address) ||
        !getValueToQString(address, item.wordCount, item.digits, item.decimals, item.type, item.view, text)) {
        settle(false);
        lose(QStringLiteral("'%1' was not shown at all").arg(item.name));
        return;
    }
    settle(comm.hasAnswered);
    judgeAddress(item, address);
    judgeText(item, comm.words, text);
    if (!comm.hasAnswered && std::count(comm.words.begin(), comm.words.end(), 0) != comm.words.size())
        lose(QStringLiteral("'%1' got %2 from a link that did not answer")
                 .arg(item.name, hexText(comm.words)));
    if (comm.hasAnswered && m_project.isWitness(item)) {
        const LinkValue link = comm.getLinkValue(static_cast<quint16>(address.linkId));
        judgeWords(item, link.addmore == 0 ? link.station : address.station, comm.words);
    }
}

void ShowRoad::judgeText(const ItemDefinition &item, const QVector<quint16> &words, const QString &text)
{
    const auto expected = plainText(item, words);
    if (expected && text != *expected)
        lose(QStringLiteral("'%1' shows '%2' where %3 says '%4'")
                 .arg(item.name, text, hexText(words), *expected));
}

void ShowRoad::judgeWords(const ItemDefinition &item, int unit, const QVector<quint16> &words)
{
    const auto generation = SoakPlc::generationOf(unit, item.address.index, words);
    const auto last = m_lastGenerations.find(item.name);
    const quint16 earliest = last == m_lastGenerations.end() ? 1 : last->second;
    // The count goes round, so what is earlier than a generation lies in the half of it behind that.
    const auto isBefore = [](quint16 one, quint16 other) {
        return static_cast<quint16>(other - one - 1) < 32767;
    };
    if (!generation || isBefore(*generation, earliest) || isBefore(m_plc.generation(), *generation))
        lose(QStringLiteral("'%1' holds %2, which unit %3 did not have then (generation %4, not %5 to %6)")
                 .arg(item.name, hexText(words), QString::number(unit),
                      generation ? QString::number(*generation) : QStringLiteral("none"),
                      QString::number(earliest), QString::number(m_plc.generation())));
    else
        m_lastGenerations[item.name] = *generation;
}

void ShowRoad::judgeAddress(const ItemDefinition &item, const RegisterValueChange &address)
{
    Communication &comm = m_session->communication();
    QString shown;
    conversionAddr2UIText(address, item.number, &comm, shown);
    QString expected = item.address.block;
    if (item.address.link == QLatin1String(internalStorageName)) {
        expected += QString::number(item.address.index);
    } else {
        expected += item.number;
        if (comm.getLinkValue(static_cast<quint16>(address.linkId)).addmore == 1)
            expected.prepend(QString::number(address.station) + QLatin1Char('#'));
        if (address.linkId > 1)
            expected.prepend(QString::number(address.linkId) + QLatin1Char('/'));
    }
    if (shown != expected)
        lose(QStringLiteral("'%1' has the address '%2' and not '%3'").arg(item.name, shown, expected));
}

} // namespace panelkit::simulator
