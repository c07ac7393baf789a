#include "widgets/touch.h"

#include "widgets/fingerscroll.h"

#include <QAbstractItemView>
#include <QListView>
#include <QPalette>
#include <QStyleOption>
#include <QStylePainter>

namespace panelkit {

namespace {

const int wrappedText = Qt::AlignCenter | Qt::TextWordWrap;

} // namespace

TouchRowDelegate::TouchRowDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

QString TouchRowDelegate::displayText(const QVariant &value, const QLocale &) const
{
    QString text = value.toString();
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character == QLatin1Char('\n') || character == QLatin1Char('\r') ||
            character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            text[i] = QLatin1Char(' ');
    }
    return text;
}

QSize TouchRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return QSize(0, qMax(fingerHeight, option.fontMetrics.height()));
}

void makeTouchList(QListView *list)
{
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideMiddle);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    new FingerScroll(list->viewport()); // lives as long as that
    showSelectionPlainly(list);
}

void showSelectionPlainly(QWidget *view)
{
    QPalette palette = view->palette();
    palette.setColor(QPalette::Highlight, QColor(0, 72, 144));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    view->setPalette(palette);
}

TouchComboBox::TouchComboBox(QWidget *parent) : QComboBox(parent)
{
    setMinimumSize(3 * fingerHeight, fingerHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setItemDelegate(new TouchRowDelegate(this));
    showSelectionPlainly(view());
}

void TouchComboBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideMiddle, room.width());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

TouchButton::TouchButton(QWidget *parent) : QPushButton(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize TouchButton::sizeHint() const
{
    return QPushButton::sizeHint().expandedTo(QSize(0, fingerHeight));
}

QSize TouchButton::minimumSizeHint() const
{
    int longestWord = 0;
    const QStringList words = text().split(QLatin1Char(' '));
    for (const QString &word : words)
        longestWord = qMax(longestWord, fontMetrics().boundingRect(word).width());
    return QSize(longestWord + frame().width(), fingerHeight);
}

int TouchButton::heightForWidth(int width) const
{
    const QRect room(0, 0, width - frame().width(), QWIDGETSIZE_MAX);
    const int textHeight = fontMetrics().boundingRect(room, wrappedText, text()).height();
    return qMax(fingerHeight, textHeight + frame().height());
}

void TouchButton::paintEvent(QPaintEvent *event)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    if (fontMetrics().boundingRect(text()).width() <= room.width()) {
        QPushButton::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    painter.drawItemText(room, wrappedText, palette(), isEnabled(), text(), QPalette::ButtonText);
}

// What the style puts around the text.
QSize TouchButton::frame() const
{
    const QSize textSize = fontMetrics().size(Qt::TextShowMnemonic, text());
    return QPushButton::sizeHint() - textSize;
}

} // namespace panelkit
