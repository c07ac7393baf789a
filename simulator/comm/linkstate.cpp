#include "simulator/comm/linkstate.h"

#include <QCoreApplication>
#include <QStringList>

namespace panelkit::simulator {

namespace {

class LinkStateText
{
    Q_DECLARE_TR_FUNCTIONS(LinkStateText)

public:
    static QString of(const LinkState &state)
    {
        switch (state.condition) {
        case LinkCondition::Unknown:
            return tr("no such link");
        case LinkCondition::Internal:
            return tr("internal");
        case LinkCondition::WithoutConnection:
            return tr("without connection");
        case LinkCondition::Idle:
            return tr("idle");
        case LinkCondition::Connected:
            return tr("connected");
        case LinkCondition::Disturbed:
            return disturbed(state);
        case LinkCondition::Away:
            return withReason(tr("away"), state);
        }
        return {};
    }

private:
    static QString withReason(const QString &text, const LinkState &state)
    {
        if (state.lastFailure)
            return text;
        return tr("%1: %2").arg(text, QString::fromStdString(describe(state.lastFailure)));
    }

    static QString disturbed(const LinkState &state)
    {
        QStringList stations;
        for (const int station : state.awayStations)
            stations << QString::number(station);
        return withReason(tr("connected, but not with station %1").arg(stations.join(QStringLiteral(", "))),
                          state);
    }
};

} // namespace

QString describe(const LinkState &state)
{
    return LinkStateText::of(state);
}

} // namespace panelkit::simulator
