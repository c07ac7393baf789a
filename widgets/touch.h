// What makes a control fit for a finger.
#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QStyledItemDelegate>

class QListView;

namespace panelkit {

// The least height of what a finger is to hit, in pixels.
const int fingerHeight = 44;

// Rows of a list that are high enough to hit and never wider than the list: a text that does not fit is
// elided as the view says, and line breaks in it are drawn as blanks.
class TouchRowDelegate : public QStyledItemDelegate
{
public:
    explicit TouchRowDelegate(QObject *parent);
    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

// A list whose rows are all alike, as its delegate is to make them, scrolls by finger, elides in the middle
// and shows plainly what is selected.
void makeTouchList(QListView *list);

// The colours by which makeTouchList shows a selection.
void showSelectionPlainly(QWidget *view);

// A combo box whose text is elided in the middle where the width does not hold it.
class TouchComboBox : public QComboBox
{
public:
    explicit TouchComboBox(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// A push button whose text may go over several lines where the width does not hold it in one.
class TouchButton : public QPushButton
{
public:
    explicit TouchButton(QWidget *parent);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize frame() const;
};

} // namespace panelkit
