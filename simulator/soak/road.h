// What all roads of a soak have in common: they are asked, they answer or refuse, and they may lose
// something.
#pragma once

#include <QString>
#include <QStringList>

namespace panelkit::simulator {

class Chance;
class Session;

// What a soak has been asked: each request is counted once as answered or once as refused when it is over.
struct RoadCount
{
    quint64 asked = 0;
    quint64 answered = 0;
    quint64 refused = 0; // and that was said: by a result, a code, an event or a message

    bool isComplete() const { return asked == answered + refused; }
};

// A road works on one session after the other; what it has on disk it keeps in between.
class Road
{
public:
    explicit Road(const QString &name) : m_name(name) {}
    virtual ~Road() = default;
    Road(const Road &) = delete;
    Road &operator=(const Road &) = delete;

    // The session is the one to work on until endShift, which closes whatever the road has opened on it.
    virtual void beginShift(Session &session) = 0;
    virtual void endShift() = 0;

    // One action.
    virtual void act(Chance &chance) = 0;

    const QString &name() const { return m_name; }
    const RoadCount &count() const { return m_count; }

    // What was lost, a sentence each: the first few, in their order.
    const QStringList &losses() const { return m_losses; }

protected:
    void ask() { ++m_count.asked; }
    void settle(bool isAnswered) { ++(isAnswered ? m_count.answered : m_count.refused); }

    void lose(const QString &what)
    {
        const int enough = 20;
        if (m_losses.size() < enough)
            m_losses << m_name + QLatin1String(": ") + what;
    }

private:
    const QString m_name;
    RoadCount m_count;
    QStringList m_losses;
};

} // namespace panelkit::simulator
