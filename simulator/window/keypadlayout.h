// Which keys the keypad has, and where.
#pragma once

#include <QSize>
#include <QString>

#include <vector>

namespace panelkit::simulator {

struct Key
{
    enum class Action
    {
        Type, // `text`
        Shift,
        Delete, // the character before the cursor
        Clear,
        Enter
    };

    Action action = Action::Type;
    QString text; // what it types, one character
    int row = 0;
    int column = 0;
    int span = 1; // columns
};

struct KeypadLayout
{
    std::vector<Key> keys;
    int rows = 0;
    int columns = 0;
};

// Digits, point and sign, with large keys.
KeypadLayout digitKeys();

// All that addresses and names are made of: in the order of a typewriter where the screen is wide, in few
// rows where it is low, else in the order of the alphabet.
KeypadLayout letterKeys(const QSize &screen);

// How many lines there are above the keys for a note, on screens that show nothing else beside keypad and
// field.
int noteLines(const QSize &screen);

// How high a row of keys is on that screen, which has to leave room for the field that they fill and for a
// note of that height.
int keyHeight(const KeypadLayout &layout, const QSize &screen, int noteHeight);

} // namespace panelkit::simulator
