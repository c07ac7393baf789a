// The driver files of a soak's links: a whole driver, and all that a driver file can be instead.
#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <vector>

namespace panelkit::simulator {

enum class SoakDriver
{
    Whole,            // the driver "Modbus"
    Coded,            // answers the code that the number names
    WithoutFunctions, // loads, and has none of a driver's entry points
    OtherProcessor,
    Truncated, // the end is missing
    NoLibrary, // a text
    Missing
};
inline constexpr int soakDriverCount = 7;

class SoakDrivers
{
public:
    // For these links, which have the driver "drivers/SoakDriver".
    explicit SoakDrivers(const std::vector<int> &links) : m_links(links) {}

    // Reads the drivers that panelsim brings along; false, with one line in `error`, when one is not there.
    bool load(QString &error);

    // Puts a driver in the place of what the link had, below the system root `root`: a new file, so that who
    // has loaded the one before keeps it. False when it cannot be written.
    bool place(const QString &root, int link, SoakDriver driver);

    const std::vector<int> &links() const { return m_links; }
    SoakDriver driverOf(int link) const { return m_placed.at(link); }

private:
    QByteArray contentOf(SoakDriver driver) const;

    const std::vector<int> m_links;
    QByteArray m_modbus;
    QByteArray m_coded;
    std::map<int, SoakDriver> m_placed;
};

} // namespace panelkit::simulator
