// From what an author types to a verdict, with every verdict compared.
#pragma once

#include "simulator/host/projectchecker.h"
#include "simulator/soak/road.h"
#include "simulator/soak/soakdrivers.h"

#include <map>
#include <memory>
#include <optional>

namespace panelkit::simulator {

struct SoakProject;

class CheckRoad final : public Road
{
public:
    CheckRoad(const SoakProject &project, SoakDrivers &drivers);

    void beginShift(Session &session) override;
    void endShift() override;
    void act(Chance &chance) override;

    // Asks about one address. `code` is what has to come; nothing where any code may.
    void check(const TypedAddress &address, std::optional<int> code);

private:
    void replaceDriver(Chance &chance);
    void checkItem(Chance &chance);
    void checkInternal(Chance &chance);
    void checkRefusingLink(Chance &chance);
    void checkAnything(Chance &chance);

    const SoakProject &m_project;
    SoakDrivers &m_drivers;
    Session *m_session = nullptr;
    std::unique_ptr<ProjectChecker> m_checker;
    std::map<std::size_t, int> m_codes; // of items, as they were first
};

} // namespace panelkit::simulator
