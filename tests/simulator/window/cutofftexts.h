// Texts that are not all to be seen.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QScrollArea>
#include <QStringList>
#include <QWidget>

namespace panelkit::testing {

// Whether all of the widget lies within what its parents show, or could be scrolled to.
inline bool isWithinItsParents(const QWidget &widget)
{
    for (const QWidget *child = &widget; !child->isWindow(); child = child->parentWidget()) {
        const bool isScrolled = qobject_cast<QScrollArea *>(child->parentWidget()->parentWidget()) != nullptr;
        const QRect place = child->geometry();
        const QRect room = child->parentWidget()->rect();
        if (isScrolled ? place.width() > room.width() : !room.contains(place))
            return false;
    }
    return true;
}

inline QSize neededBy(const QLabel &label)
{
    const QRect room = label.contentsRect();
    const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
    const QRect limit(0, 0, label.wordWrap() ? room.width() : 10'000, 10'000);
    return label.fontMetrics().boundingRect(limit, flags, label.text()).size();
}

inline QSize neededBy(const QAbstractButton &button)
{
    const bool isPlain = button.inherits("QPushButton");
    if (isPlain)
        return button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    return button.fontMetrics()
        .boundingRect(button.rect().adjusted(8, 2, -8, -2), Qt::AlignCenter | Qt::TextWordWrap, button.text())
        .size();
}

// One line for each visible text of labels and buttons that does not fit, with both sizes.
inline QStringList cutOffTexts(const QWidget &window)
{
    QStringList found;
    const auto look = [&found](const QWidget &widget, const QString &text, const QSize &needed,
                               const QSize &room) {
        const bool fits = needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1;
        if (widget.isVisible() && !text.isEmpty() && !(fits && isWithinItsParents(widget)))
            found << QStringLiteral("\"%1\": %2 x %3 in %4 x %5")
                         .arg(text)
                         .arg(needed.width())
                         .arg(needed.height())
                         .arg(room.width())
                         .arg(room.height());
    };
    for (const QLabel *label : window.findChildren<QLabel *>())
        look(*label, label->text(), neededBy(*label), label->contentsRect().size());
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>())
        look(*button, button->text(), neededBy(*button), button->size());
    return found;
}

} // namespace panelkit::testing
