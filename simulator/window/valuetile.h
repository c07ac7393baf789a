// One live value on the screen.
#pragma once

#include "simulator/window/panelstyle.h"

#include <QString>
#include <QWidget>

namespace panelkit::simulator {

// A card with the name of an item above its value. Both are drawn smaller where they would not fit. Draws
// anew only what has changed.
class ValueTile : public QWidget
{
    Q_OBJECT
public:
    ValueTile(const QString &name, const Sizes &sizes, QWidget *parent);

    // `isCurrent`: the value is of this moment. One that is not is dim; it keeps the text of the last one
    // that was, or a dash where there was none.
    void setValue(const QString &text, bool isCurrent);

    QString name() const { return m_name; }
    QString text() const { return m_text; }
    bool isDim() const { return !m_isCurrent; }

    // How wide the tile would be with `text` at the full size.
    int widthFor(const QString &text) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QFont fontFor(const QString &text, int largest, int smallest, int width) const;
    QRect valueRect() const;

    const QString m_name;
    const Sizes m_sizes;
    QString m_text;
    bool m_isCurrent = false;
};

} // namespace panelkit::simulator
