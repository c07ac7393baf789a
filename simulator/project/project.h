// A project as its author writes it down: the screen, the links to PLCs, the items on the screen and the
// script variables of the macros. Plain values; the file format is drawn in docs/formats/project.md.
#pragma once

#include "register/numformat.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace panelkit::simulator {

// The link of the panel's own memory. It has the number 0 and is part of every project without being listed.
inline constexpr char internalStorageName[] = "Internal storage area";

// Characters of UTF-16; those of a block are Latin-1.
inline constexpr int longestLinkName = 64;
inline constexpr int longestBlockName = 32;

enum class Parity
{
    None = 0,
    Odd = 1,
    Even = 2
};

// One link to a PLC.
struct LinkDefinition
{
    int number = 0; // 1 to 65535, unique
    QString name;   // unique
    QString port;   // "Ethernet..." or "COM..."
    QString driver; // what the link nodes carry as "driverLib": "drivers/Modbus"
    QStringList blocks;

    // Ethernet links; zeros for serial ones.
    std::array<quint8, 4> ip = {}; // most significant byte first
    int tcpPort = 0;

    // Serial links; zeros for Ethernet ones.
    int baud = 0;
    int dataBits = 0;
    Parity parity = Parity::None;
    int stopBits = 0;

    int station = 0;           // the link's PLC station
    bool manyStations = false; // each address names its own station
    int interval = 0;          // milliseconds between polls
    int timeout = 0;           // milliseconds
    int retry = 0;
    int addressGap = 0; // the largest gap, in registers, that one request bridges

    bool isEthernet() const { return port.contains(QLatin1String("Ethernet")); }

    // The driver's name without its folder: what stands behind the first "/", or all of it.
    QString driverBaseName() const { return driver.mid(driver.indexOf(QLatin1Char('/')) + 1); }
};

// Where a register lies. `station` is -1 in the internal storage.
struct AddressDefinition
{
    QString link; // a link's name, or the internal storage's
    int station = 0;
    QString block;
    int index = 0; // as the link's driver counts
};

// A text variable of an item's macros: a register that is watched as long as the item is shown.
struct TextVariableDefinition
{
    QString name;
    AddressDefinition address;
    int extra = 0;
};

// What an item's Lua does; texts of several lines are joined with "\n".
struct MacroDefinition
{
    int mode = 0; // 0 none, 1 press, 2 release, 3 both
    QString press;
    QString release;
    std::vector<TextVariableDefinition> textVariables;
};

// One numeric or text display on the screen.
struct ItemDefinition
{
    QString name; // unique
    AddressDefinition address;
    QString number; // the register's number as the author types it, in the driver's notation
    int length = 0; // registers that the address spans

    NUM_DATA_TYPE type = NUM_UINT16;
    NUM_DATA_VIEW_TYPE view = NUM_VIEW_DEC;
    int digits = 0;
    int decimals = 0;
    int wordCount = 0; // 16-bit words that are read

    MacroDefinition macro;
};

// A variable that macros use by name.
struct VariableDefinition
{
    QString name; // unique
    AddressDefinition address;
    int extra = 0;
    int dataType = 0; // the number of a DATA_TYPE_ name, 0 to 7
};

struct Project
{
    QString name;
    int screenWidth = 0;  // pixels
    int screenHeight = 0; // pixels
    std::vector<LinkDefinition> links;
    std::vector<ItemDefinition> items;
    std::vector<VariableDefinition> variables;
};

} // namespace panelkit::simulator
