// The live values of all items of the project.
#pragma once

#include "simulator/window/page.h"

#include <vector>

class QGridLayout;
class QScrollArea;

namespace panelkit::simulator {

class Session;
class ValueTile;

// Reads and draws those that can be seen; a finger scrolls to the others.
class ValuesPage final : public Page
{
    Q_OBJECT
public:
    ValuesPage(Session &session, QWidget *parent);

    QString title() const override;
    void refresh() override;

    const std::vector<ValueTile *> &tiles() const { return m_tiles; } // in the order of the items

protected:
    void retranslate() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    Session &m_session;
    QScrollArea *m_area;
    QGridLayout *m_grid;
    std::vector<ValueTile *> m_tiles;
    int m_columns = 0;
};

} // namespace panelkit::simulator
