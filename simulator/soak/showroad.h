// From an item to its text, with every text compared.
#pragma once

#include "simulator/soak/road.h"
#include "simulator/soak/soakproject.h"

#include <QVector>

#include <map>

struct RegisterValueChange;

namespace panelkit::simulator {

class Communication;
class SoakPlc;

// The text has to be what the words say, and what zeros say while there are none. The words of a witness have
// to be of one generation of the PLC, and of none before the last one that was shown.
class ShowRoad final : public Road
{
public:
    ShowRoad(const SoakProject &project, const SoakPlc &plc);

    void beginShift(Session &session) override;
    void endShift() override { m_session = nullptr; }
    void act(Chance &chance) override;

    // Words that were shown, for an item of the project on the unit `unit`.
    void judgeWords(const ItemDefinition &item, int unit, const QVector<quint16> &words);
    void judgeText(const ItemDefinition &item, const QVector<quint16> &words, const QString &text);

private:
    void judgeAddress(const ItemDefinition &item, const RegisterValueChange &address);

    const SoakProject &m_project;
    const SoakPlc &m_plc;
    Session *m_session = nullptr;
    std::map<QString, quint16> m_lastGenerations; // by item
};

} // namespace panelkit::simulator
