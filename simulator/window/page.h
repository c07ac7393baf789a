// One page of the panel's screen.
#pragma once

#include <QString>
#include <QWidget>

namespace panelkit::simulator {

// What the window shows between its header and its row of pages. A page gets all that it needs in its
// constructor, fits any of the panels' screens (480 x 272, 272 x 480, 800 x 480 with header and row taken
// off) without being cut off, and takes its look from the window's style sheet (see panelstyle.h).
class Page : public QWidget
{
    Q_OBJECT
public:
    explicit Page(QWidget *parent);

    // The page's name in the row of pages, in the language of the moment.
    virtual QString title() const = 0;

    // One step of what the page shows of the running panel; called ten times a second while the page is in
    // front.
    virtual void refresh();

protected:
    // Sets all texts in the language of the moment; a page calls it at the end of its constructor, and it is
    // called again when the language changes.
    virtual void retranslate() = 0;

    void changeEvent(QEvent *event) override;
};

} // namespace panelkit::simulator
