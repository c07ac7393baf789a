// What a project's items showed while the panel ran.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <deque>
#include <vector>

namespace panelkit::simulator {

class Session;

class ValueHistory
{
public:
    // Announces the addresses of all items to the session, which must live longer than this. Of more than
    // `capacity` rows the oldest go, a whole sample at a time.
    explicit ValueHistory(const Session &session, std::size_t capacity = 100000);

    // Adds a row for each item. Never waits for a PLC: as long as nothing has come from one, its items have
    // an empty text.
    void sample(const QDateTime &time);

    std::size_t rowCount() const { return m_samples.size() * m_items.size(); }
    std::size_t rowsPerSample() const { return m_items.size(); }

    // Up to `count` rows, the oldest being row 0: time, name, address and the text on the screen.
    QList<QStringList> rows(std::size_t first, std::size_t count) const;

private:
    struct Item
    {
        QString name;
        QString address;
    };
    struct Sample
    {
        QDateTime time;
        std::vector<QString> texts; // of all items; one that has not changed shares its characters
    };

    const Session &m_session;
    std::size_t m_capacity;
    std::vector<Item> m_items;
    std::deque<Sample> m_samples;
};

} // namespace panelkit::simulator
