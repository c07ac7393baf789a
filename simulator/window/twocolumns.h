// Two parts of a page, placed as the screen is held.
#pragma once

#include <QWidget>

class QBoxLayout;
class QVBoxLayout;

namespace panelkit::simulator {

// Side by side on a landscape screen, their widths as their stretches, and one above the other on a portrait
// one.
class TwoColumns : public QWidget
{
public:
    TwoColumns(int firstStretch, int secondStretch, QWidget *parent);

    // How wide it has to be for columns that stand side by side; without a call as wide as any landscape
    // screen.
    void setNarrowestForTwo(int width) { m_narrowestForTwo = width; }

    QVBoxLayout *first() const { return m_first; }
    QVBoxLayout *second() const { return m_second; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QBoxLayout *m_columns;
    QVBoxLayout *m_first;
    QVBoxLayout *m_second;
    const int m_firstStretch;
    const int m_secondStretch;
    int m_narrowestForTwo = 340; // pixels
};

} // namespace panelkit::simulator
