#include "simulator/window/keypadlayout.h"

#include "simulator/window/panelstyle.h"

#include <QStringList>

namespace panelkit::simulator {

namespace {

constexpr int roomForField = 56; // pixels, for the field and the air around it
constexpr int highestKey = 64;

// Adds keys that type the characters of `text`, a row of them.
void addRow(KeypadLayout &layout, const QString &text, int span = 1)
{
    for (int i = 0; i < text.size(); ++i)
        layout.keys.push_back({Key::Action::Type, text.mid(i, 1), layout.rows, i * span, span});
    ++layout.rows;
}

void addKey(KeypadLayout &layout, Key::Action action, int row, int column, int span = 1)
{
    layout.keys.push_back({action, QString(), row, column, span});
}

} // namespace

KeypadLayout digitKeys()
{
    KeypadLayout layout;
    layout.columns = 5;
    for (const char *row : {"789.", "456-", "1230"})
        addRow(layout, QString::fromLatin1(row));
    addKey(layout, Key::Action::Delete, 0, 4);
    addKey(layout, Key::Action::Clear, 1, 4);
    addKey(layout, Key::Action::Enter, 2, 4);
    return layout;
}

KeypadLayout letterKeys(const QSize &screen)
{
    KeypadLayout layout;
    if (isPortrait(screen)) {
        layout.columns = 14; // two a letter, so that words find room
        for (const char *row : {"1234567", "890.-/#", "abcdefg", "hijklmn", "opqrstu", "vwxyz_"})
            addRow(layout, QString::fromLatin1(row), 2);
        addKey(layout, Key::Action::Shift, layout.rows - 1, 12, 2);
        layout.keys.push_back({Key::Action::Type, QStringLiteral(" "), layout.rows, 0, 3});
        addKey(layout, Key::Action::Delete, layout.rows, 3, 4);
        addKey(layout, Key::Action::Clear, layout.rows, 7, 3);
        addKey(layout, Key::Action::Enter, layout.rows, 10, 4);
    } else if (isSmall(screen)) {
        layout.columns = 13;
        for (const char *row : {"1234567890-", "qwertyuiop/", "asdfghjkl.#"})
            addRow(layout, QString::fromLatin1(row));
        addKey(layout, Key::Action::Delete, 0, 11, 2);
        addKey(layout, Key::Action::Clear, 1, 11, 2);
        addKey(layout, Key::Action::Enter, 2, 11, 2);
        addKey(layout, Key::Action::Shift, layout.rows, 0, 2);
        const QString last = QStringLiteral("zxcvbnm_");
        for (int i = 0; i < last.size(); ++i)
            layout.keys.push_back({Key::Action::Type, last.mid(i, 1), layout.rows, 2 + i, 1});
        layout.keys.push_back({Key::Action::Type, QStringLiteral(" "), layout.rows, 10, 3});
    } else {
        layout.columns = 10;
        for (const char *row : {"1234567890", "qwertyuiop", "asdfghjkl-", "zxcvbnm./#"})
            addRow(layout, QString::fromLatin1(row));
        addKey(layout, Key::Action::Shift, layout.rows, 0);
        layout.keys.push_back({Key::Action::Type, QStringLiteral("_"), layout.rows, 1, 1});
        layout.keys.push_back({Key::Action::Type, QStringLiteral(" "), layout.rows, 2, 2});
        addKey(layout, Key::Action::Delete, layout.rows, 4, 2);
        addKey(layout, Key::Action::Clear, layout.rows, 6, 2);
        addKey(layout, Key::Action::Enter, layout.rows, 8, 2);
    }
    ++layout.rows;
    return layout;
}

int noteLines(const QSize &screen)
{
    if (!isSmall(screen))
        return 0;
    return isPortrait(screen) ? 2 : 1;
}

int keyHeight(const KeypadLayout &layout, const QSize &screen, int noteHeight)
{
    return qMin((screen.height() - roomForField - noteHeight) / layout.rows, highestKey);
}

} // namespace panelkit::simulator
