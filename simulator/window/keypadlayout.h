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

// All that addresses and names are made of: in the order of a typewriter where the screen is wide, else in
// that of the alphabet.
KeypadLayout letterKeys(const QSize &screen);

// How high a row of keys is on that screen: 44 pixels and more, unless the keys would then leave no room for
// the field that they fill.
int keyHeight(const KeypadLayout &layout, const QSize &screen);

} // namespace panelkit::simulator
