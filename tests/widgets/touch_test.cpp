#include "widgets/touch.h"

#include "widgets/wrappinglabel.h"

#include <QAbstractItemView>
#include <QImage>
#include <QLocale>

#include <gtest/gtest.h>

using namespace panelkit;

namespace {

// The rows in which two pictures of one size differ.
QList<int> differentRows(const QImage &a, const QImage &b)
{
    QList<int> rows;
    for (int y = 0; y < a.height(); ++y)
        if (a.copy(0, y, a.width(), 1) != b.copy(0, y, b.width(), 1))
            rows << y;
    return rows;
}

// The rows of the picture in which something differs from its first point.
QList<int> markedRows(const QImage &picture)
{
    QImage plain = picture;
    plain.fill(picture.pixelColor(0, 0));
    return differentRows(picture, plain);
}

QImage pictureOf(QWidget &widget)
{
    return widget.grab().toImage();
}

} // namespace

TEST(TouchRowDelegate, ShowsEveryLineEndAsABlank)
{
    const TouchRowDelegate delegate(nullptr);
    const QString text = QStringLiteral("\na\nb\rc\u2028d\u2029e f");
    EXPECT_EQ(delegate.displayText(text, QLocale()), QStringLiteral(" a b c d e f"));
}

TEST(TouchButton, DrawsItsFrameAndATextThatDoesNotFitInSeveralLines)
{
    TouchButton button(nullptr);
    button.resize(120, 100);
    const QImage empty = pictureOf(button);
    button.setText(QStringLiteral("Return to the previous directory"));
    const QImage wrapped = pictureOf(button);
    EXPECT_EQ(wrapped.copy(0, 0, 120, 10), empty.copy(0, 0, 120, 10)) << "the frame";
    EXPECT_NE(wrapped.pixel(0, 50), wrapped.pixel(20, 20)) << "the frame stands out";
    const int lineHeight = button.fontMetrics().height();
    EXPECT_GT(differentRows(wrapped, empty).size(), lineHeight) << "more than one line";
}

TEST(TouchSelection, IsPlainWhateverThePanelsColours)
{
    QWidget view;
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::white);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    view.setPalette(palette);
    showSelectionPlainly(&view);
    EXPECT_EQ(view.palette().color(QPalette::HighlightedText), QColor(Qt::white));
    EXPECT_LT(view.palette().color(QPalette::Highlight).lightness(), 100);
}

TEST(TouchComboBox, AsksForTheRoomOfTwelveCharactersWhateverItHolds)
{
    TouchComboBox box(nullptr);
    box.addItem(QStringLiteral("A"));
    const QSize asked = box.sizeHint();
    EXPECT_GE(asked.width(), box.fontMetrics().boundingRect(QString(12, QLatin1Char('X'))).width());
    box.addItem(QString(100, QLatin1Char('X')));
    EXPECT_EQ(box.sizeHint(), asked);
    EXPECT_EQ(box.view()->textElideMode(), Qt::ElideMiddle) << "the list elides what does not fit";
}

TEST(TouchComboBox, DrawsItselfAndItsText)
{
    TouchComboBox box(nullptr);
    box.resize(300, 44);
    const QImage empty = pictureOf(box);
    EXPECT_GT(markedRows(empty).size(), 0) << "its frame and arrow";
    box.addItem(QStringLiteral("Storage"));
    EXPECT_NE(pictureOf(box), empty);
}

TEST(WrappingLabel, DrawsItsLinesBelowEachOtherWithinItsFrame)
{
    WrappingLabel label(nullptr);
    label.resize(200, 200);
    EXPECT_EQ(markedRows(pictureOf(label)).size(), 0);
    label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label.setText(QStringLiteral("a\nb\nc"));
    const QList<int> top = markedRows(pictureOf(label));
    const int lineHeight = label.fontMetrics().height();
    ASSERT_FALSE(top.isEmpty());
    EXPECT_LT(top.first(), lineHeight);
    EXPECT_GT(top.last(), 2 * lineHeight);
    EXPECT_LT(top.last(), 3 * lineHeight + 2);

    label.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const QList<int> centre = markedRows(pictureOf(label));
    EXPECT_EQ(centre.size(), top.size());
    EXPECT_GT(centre.first(), 200 / 2 - 2 * lineHeight);

    label.setText(QString());
    label.setFrameStyle(QFrame::Box | QFrame::Plain);
    EXPECT_NE(pictureOf(label).pixel(0, 0), pictureOf(label).pixel(100, 100));
}
