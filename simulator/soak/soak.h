// All roads at once, against a PLC, drivers, links and a disk that fail by plan: what is asked has to be
// answered or refused, nothing may be lost, and the process must not grow.
#pragma once

#include "simulator/soak/footprint.h"
#include "simulator/soak/road.h"

#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace panelkit::simulator {

struct SoakOptions
{
    QString projectFile; // empty: the sample
    quint64 seed = 0;    // the same seed makes the same actions in the same order
};

// A session is opened, worked on in a shift of some hundred actions, and closed; then the next one. Between
// two shifts nothing is open, and the process is measured. Takes a QApplication, and the process: its system
// root, its application record, its event queue, and the toolkit's cache of pictures, which is switched off.
class Soak
{
public:
    static constexpr int actionsOfAShift = 300;

    // Nothing, with one line in `error`, when the project is refused, or no folder or port can be had.
    static std::unique_ptr<Soak> open(const SoakOptions &options, QString &error);
    ~Soak();

    // The next action; between two shifts, the change. False when it could not go on, with a loss that says
    // why.
    bool act();

    // Ends the shift that is on, and measures once more.
    void end();

    // Takes the last measurement as what the process may hold: what is warm by now is warm.
    void endWarmUp();

    quint64 actions() const;
    quint64 shifts() const; // that are over
    std::vector<const Road *> roads() const;
    std::map<QString, quint64> faults() const; // how often each was switched on

    struct Rows // of the CSV road
    {
        quint64 exported = 0;
        quint64 inFiles = 0;
        quint64 reported = 0;
    };
    Rows rows() const;

    quint64 plcRequests() const;
    quint64 plcFaultyAnswers() const;

    std::optional<Footprint> footprintWarm() const; // nothing before the end of the warm-up
    std::optional<Footprint> footprint() const;     // the last one; nothing before the first shift is over

    // Everything that was lost, and everything that has grown since the warm-up, a sentence each; empty when
    // all is well.
    QStringList losses() const;
    QStringList growths() const;

private:
    Soak();
    bool beginShift();
    void endShift();

    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace panelkit::simulator
