#include "simulator/window/panelstyle.h"

#include <QFontDatabase>
#include <QStyle>
#include <QVariant>

// A static library's resource is registered only when somebody asks for it, from the global namespace.
static void registerResource()
{
    Q_INIT_RESOURCE(panelstyle);
}

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

// What stands between "@" and "@" is a colour or a size.
const char *const styleSheet = R"(
* { font-family: "@family@"; font-size: @text@px; color: @ink@; }
#content, QDialog, FileBrowser { background: @ground@; }

#header, #pageRow { background: @bar@; }
#header QLabel { color: @onBar@; }
#header #projectName { font-weight: bold; }
#header QPushButton, #pageRow QPushButton { background: transparent; color: @onBar@; border: none;
    border-radius: 0; padding: 0 4px; min-height: 0; }
#header QPushButton { padding: 0 8px; }
#pageRow QPushButton { min-height: 44px; }
#header QPushButton:pressed { background: @accent@; }
#pageRow QPushButton { font-size: @caption@px; }
#pageRow QPushButton:checked { background: @accent@; }

QPushButton { background: @card@; border: 1px solid @line@; border-radius: 6px; padding: 2px 12px;
    min-height: 40px; }
QPushButton:pressed, QPushButton:checked { background: @accent@; border-color: @accent@; color: white; }
QPushButton:disabled { color: @dim@; }
QPushButton[part="primary"] { background: @accent@; border-color: @accent@; color: white; font-weight: bold; }
QPushButton[part="primary"]:pressed { background: @ink@; border-color: @ink@; }
QPushButton[part="primary"]:disabled { background: @dim@; border-color: @dim@; }

#keypad QLabel { color: @onBar@; font-size: @caption@px; }
#keypad QPushButton { padding: 0; min-height: 0; }
#keypad QPushButton[part="word"], #keypad QPushButton[part="primary"] { font-size: @caption@px; }

QLabel { background: transparent; }
QLabel[part="heading"] { font-weight: bold; }
QLabel[part="caption"] { font-size: @caption@px; color: @faintInk@; }
QLabel[part="value"] { font-size: @value@px; }
QLabel[part="notice"] { color: @goodInk@; }
QLabel[part="refusal"] { color: @badInk@; }
QLabel[part="hint"] { font-size: @caption@px; color: @faintInk@; }
QFrame[part="card"] { background: @card@; border: 1px solid @line@; border-radius: 6px; }

QLineEdit, QComboBox { background: @card@; border: 1px solid @line@; border-radius: 6px; padding: 2px 8px;
    min-height: 38px; selection-background-color: @accent@; selection-color: white; }
QLineEdit:focus { border: 2px solid @accent@; padding: 1px 7px; }
QLineEdit[part="notice"] { border-color: @good@; }
QLineEdit[part="refusal"] { border-color: @bad@; }
QComboBox::drop-down { border: none; width: 32px; }
QComboBox::down-arrow { image: url(:/window/arrow.xpm); }
QComboBox QAbstractItemView, QListView { background: @card@; border: 1px solid @line@; }
QComboBox QAbstractItemView::item, QListView::item { min-height: 44px; }

QProgressBar { background: @card@; border: 1px solid @line@; border-radius: 6px; min-height: 24px;
    text-align: center; }
QProgressBar::chunk { background: @progress@; border-radius: 5px; }

QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; border: none; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }
QScrollBar::handle:vertical { background: @dim@; border-radius: 3px; min-height: 40px; margin: 2px; }
QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page { height: 0;
    background: transparent; }
)";

// Half of the width is not much for the name of a storage.
const char *const portraitRules = R"(
FileBrowser QComboBox { font-size: @caption@px; padding: 2px 4px; }
FileBrowser QComboBox::drop-down { width: 18px; }
)";

} // namespace

void setPart(QWidget *widget, Part part)
{
    widget->setProperty("part", QVariant(QString::fromLatin1(partName(part))));
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

Sizes sizesFor(const QSize &screen)
{
    return isSmall(screen) ? Sizes{16, 14, 28, 6, 44} : Sizes{20, 17, 34, 10, 52};
}

QString panelStyleSheet(const QSize &screen)
{
    registerResource();
    const Sizes sizes = sizesFor(screen);
    const QList<QPair<const char *, QString>> words = {
        {"@family@", panelFontFamily()},
        {"@text@", QString::number(sizes.text)},
        {"@caption@", QString::number(sizes.caption)},
        {"@value@", QString::number(sizes.value)},
        {"@ink@", colour::ink.name()},
        {"@faintInk@", colour::faintInk.name()},
        {"@dim@", colour::dim.name()},
        {"@ground@", colour::ground.name()},
        {"@card@", colour::card.name()},
        {"@line@", colour::line.name()},
        {"@bar@", colour::bar.name()},
        {"@onBar@", colour::onBar.name()},
        {"@accent@", colour::accent.name()},
        {"@progress@", colour::progress.name()},
        {"@good@", colour::good.name()},
        {"@bad@", colour::bad.name()},
        {"@goodInk@", colour::good.darker(160).name()},
        {"@badInk@", colour::bad.darker(120).name()},
    };
    QString sheet = QString::fromLatin1(styleSheet);
    if (isPortrait(screen))
        sheet += QLatin1String(portraitRules);
    for (const auto &[word, value] : words)
        sheet.replace(QLatin1String(word), value);
    return sheet;
}

QString panelFontFamily()
{
    return QStringLiteral("WenQuanYi Micro Hei");
}

bool hasPanelFont()
{
    return QFontDatabase().families().contains(panelFontFamily());
}

} // namespace panelkit::simulator
