// The look of the panel's screen: one style sheet, and the parts that it knows.
#pragma once

#include <QColor>
#include <QSize>
#include <QString>
#include <QWidget>

namespace panelkit::simulator {

// What a label, button or frame is for; the style sheet gives each part its look. Without a part a widget
// looks plain: buttons are at least 44 pixels high, texts are readable from two metres.
enum class Part
{
    Heading, // of a group of displays
    Caption, // what a value is
    Value,   // a value that is read from afar
    Notice,  // what went well
    Refusal, // what was refused, and why
    Hint,    // a sentence that helps
    Primary, // the button that does what the page is for
    Card     // a frame around what belongs together
};

// To be called before the widget is shown, or again when its part changes.
void setPart(QWidget *widget, Part part);

// The colours of the parts that draw themselves; the style sheet is made of the same.
namespace colour {
inline const QColor ink(0x1c, 0x27, 0x33);      // texts
inline const QColor faintInk(0x5b, 0x69, 0x77); // captions and hints
inline const QColor dim(0xa3, 0xad, 0xb8);      // what is not of this moment
inline const QColor ground(0xe9, 0xed, 0xf1);
inline const QColor card(0xff, 0xff, 0xff);
inline const QColor line(0xc9, 0xd1, 0xd9);
inline const QColor bar(0x22, 0x30, 0x3d); // the header and the row of pages
inline const QColor onBar(0xf2, 0xf5, 0xf7);
inline const QColor accent(0x1b, 0x6e, 0x93);
inline const QColor progress(0x46, 0xa0, 0xc4); // under the text that says how far it is
inline const QColor good(0x3b, 0xb2, 0x73);
inline const QColor doubtful(0xf0, 0xb4, 0x29);
inline const QColor bad(0xd6, 0x45, 0x45);
} // namespace colour

// Sizes in pixels on a screen.
struct Sizes
{
    int text;    // of sentences and buttons
    int caption; // of what a value is
    int value;   // of a value that is read from afar
    int gap;     // between parts
    int header;  // height of the header
};
Sizes sizesFor(const QSize &screen);

// Whether the screen is one that stands on its short side.
inline bool isPortrait(const QSize &screen)
{
    return screen.height() > screen.width();
}

// Whether it is one of the screens on which little has room.
inline bool isSmall(const QSize &screen)
{
    return qMin(screen.width(), screen.height()) < 400;
}

// For the window that all of them are in.
QString panelStyleSheet(const QSize &screen);

// The family of all texts, Chinese ones included, and whether this machine has it.
QString panelFontFamily();
bool hasPanelFont();

} // namespace panelkit::simulator
