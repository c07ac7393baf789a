// The row of buttons by which the operator turns to another page.
#pragma once

#include <QWidget>

#include <vector>

class QButtonGroup;
class QGridLayout;
class QPushButton;

namespace panelkit::simulator {

// A column of its screen's height at the left of a screen that lies, rows of three below one that stands.
class PageRow : public QWidget
{
    Q_OBJECT
public:
    PageRow(const QSize &screen, QWidget *parent);

    void addPage();
    void setTitle(int page, const QString &title);
    void setCurrent(int page);
    QPushButton *button(int page) const { return m_buttons.at(static_cast<std::size_t>(page)); }

Q_SIGNALS:
    void pageWanted(int page);

private:
    const bool m_isPortrait;
    QGridLayout *m_grid;
    QButtonGroup *m_group;
    std::vector<QPushButton *> m_buttons;
};

} // namespace panelkit::simulator
