// A lamp that shows how a link is doing.
#pragma once

#include "simulator/comm/linkstate.h"

#include <QString>
#include <QWidget>

namespace panelkit::simulator {

// A sign of its own for each state, beside its colour: a full lamp for a link that works, a bar across it
// where a station is missing, a cross where nobody answers, a ring where there is nothing to show.
class LinkLamp : public QWidget
{
    Q_OBJECT
public:
    LinkLamp(int linkNumber, const QString &linkName, QWidget *parent);

    int linkNumber() const { return m_linkNumber; }
    LinkCondition condition() const { return m_condition; }

    // The state, with what is to be said of it to those who ask. Draws anew only when that changes.
    void setState(LinkCondition condition, const QString &description);

    // What stands beside the lamp: its link's number, unless something else is said, or nothing.
    void setText(const QString &text);
    QString text() const { return m_text; }

    int widthWith(const QString &text) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_linkNumber;
    const QString m_linkName;
    QString m_text;
    LinkCondition m_condition = LinkCondition::Unknown;
};

} // namespace panelkit::simulator
