// A transparent overlay over the whole screen with a box that holds a title and up to two progress bars.
#pragma once

#include "platform/export.h"

#include <QGraphicsView>
#include <QString>

namespace panelkit {
class Ui_TipsProgressBar;
}

// The runtime drives it and hides it; it takes no input. With a parent it is a part of that and no window of
// its own. The title is shown as it stands, broken into lines, and percentages in the middle of their bars.
// The names of its children "widget", "title", "pb_1" and "pb_2" are an interface.
class PANELKIT_EXPORT TipsProgressBar : public QGraphicsView
{
    Q_OBJECT
public:
    explicit TipsProgressBar(QWidget *parent = nullptr);
    ~TipsProgressBar();

    // Shows the overlay, or hides it; title and bars are set in both cases. A negative value hides its bar,
    // an empty text hides the title. The bars go from 0 to 100 and ignore values beyond.
    void UpdateProgress(int value1, int value2, bool hide, const QString &text);

private:
    panelkit::Ui_TipsProgressBar *m_form;
};
