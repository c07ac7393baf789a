#include "simulator/window/panelstyle.h"

#include <QStyle>
#include <QVariant>

namespace panelkit::simulator {

namespace {

const char *partName(Part part)
{
    switch (part) {
    case Part::Heading:
        return "heading";
    case Part::Caption:
        return "caption";
    case Part::Value:
        return "value";
    case Part::Notice:
        return "notice";
    case Part::Refusal:
        return "refusal";
    case Part::Hint:
        return "hint";
    case Part::Primary:
        return "primary";
    case Part::Card:
        return "card";
    }
    return "";
}

} // namespace

void setPart(QWidget *widget, Part part)
{
    widget->setProperty("part", QLatin1String(partName(part)));
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

} // namespace panelkit::simulator
