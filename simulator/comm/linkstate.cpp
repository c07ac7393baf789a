#include "simulator/comm/linkstate.h"

#include <QStringList>

namespace panelkit::simulator {

namespace {

QString withReason(const QString &text, const LinkState &state)
{
    if (state.lastFailure)
        return text;
    return text + QStringLiteral(": ") + QString::fromStdString(describe(state.lastFailure));
}

QString disturbed(const LinkState &state)
{
    QStringList stations;
    for (const int station : state.awayStations)
        stations << QString::number(station);
    return withReason(
        QStringLiteral("connected, but not with station ") + stations.join(QStringLiteral(", ")), state);
}

} // namespace

QString describe(const LinkState &state)
{
    switch (state.condition) {
    case LinkCondition::Unknown:
        return QStringLiteral("no such link");
    case LinkCondition::Internal:
        return QStringLiteral("internal");
    case LinkCondition::WithoutConnection:
        return QStringLiteral("without connection");
    case LinkCondition::Idle:
        return QStringLiteral("idle");
    case LinkCondition::Connected:
        return QStringLiteral("connected");
    case LinkCondition::Disturbed:
        return disturbed(state);
    case LinkCondition::Away:
        return withReason(QStringLiteral("away"), state);
    }
    return {};
}

} // namespace panelkit::simulator
