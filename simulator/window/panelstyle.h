// The look of the panel's screen: one style sheet, and the parts that it knows.
#pragma once

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

} // namespace panelkit::simulator
