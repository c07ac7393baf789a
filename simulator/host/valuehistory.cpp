#include "simulator/host/valuehistory.h"

#include "simulator/comm/communication.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/host/session.h"

#include <algorithm>

namespace panelkit::simulator {

ValueHistory::ValueHistory(const Session &session, std::size_t capacity)
    : m_session(session),
      m_capacity(capacity)
{
    watchItems(session);
    for (const ItemDefinition &item : session.project().items)
        m_items.push_back({item.name, QString()});
}

void ValueHistory::sample(const QDateTime &time)
{
    Sample taken;
    taken.time = time;
    taken.texts.resize(m_items.size());
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        if (!isDisplayedAtOnce(m_session, i))
            continue;
        const ItemDisplay display = displayItem(m_session, i);
        m_items[i].address = display.address;
        const bool isUnchanged = !m_samples.empty() && m_samples.back().texts[i] == display.text;
        taken.texts[i] = isUnchanged ? m_samples.back().texts[i] : display.text;
    }
    m_samples.push_back(std::move(taken));
    while (rowCount() > m_capacity && m_samples.size() > 1)
        m_samples.pop_front();
}

QList<QStringList> ValueHistory::rows(std::size_t first, std::size_t count) const
{
    QList<QStringList> rows;
    const std::size_t end = first + std::min(count, rowCount() - std::min(first, rowCount()));
    QString timeText;
    for (std::size_t row = first; row < end; ++row) {
        const Sample &sample = m_samples[row / m_items.size()];
        const std::size_t item = row % m_items.size();
        if (item == 0 || timeText.isEmpty())
            timeText = sample.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        rows << QStringList{timeText, m_items[item].name, m_items[item].address, sample.texts[item]};
    }
    return rows;
}

} // namespace panelkit::simulator
