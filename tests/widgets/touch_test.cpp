#include "widgets/touch.h"

#include "widgets/wrappinglabel.h"

#include <QAbstractItemView>
#include <QImage>
#include <QLocale>
#include <QTextLayout>
#include <QVBoxLayout>

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

TEST(TouchButton, DrawsATextOfTwoLinesOnlyOnce)
{
    TouchButton button(nullptr);
    button.resize(120, 100);
    const QImage empty = pictureOf(button);
    const QString word(80 / button.fontMetrics().horizontalAdvance(QLatin1Char('m')), QLatin1Char('m'));
    button.setText(word + QLatin1Char(' ') + word);
    const QImage picture = pictureOf(button);
    EXPECT_NE(picture, empty);
    const QRect besideWords(8, 10, 12, 80);
    EXPECT_EQ(picture.copy(besideWords), empty.copy(besideWords)) << "both in one line would reach there";
}

TEST(TouchButton, AsksForTheRoomOfItsTextAndItsFrame)
{
    TouchButton button(nullptr);
    button.setText(QStringLiteral("a\nb\nc\nd\ne"));
    const QRect lines =
        button.fontMetrics().boundingRect(QRect(0, 0, 300, 1000), Qt::AlignCenter, button.text());
    EXPECT_GT(button.heightForWidth(300), lines.height());
    button.setText(QStringLiteral("previous mmmmmmmmmm"));
    const int word = button.fontMetrics().boundingRect(QStringLiteral("mmmmmmmmmm")).width();
    EXPECT_GT(button.minimumSizeHint().width(), word);
}

TEST(TouchButton, GetsTheHeightOfItsLinesFromALayout)
{
    QWidget form;
    QVBoxLayout layout(&form);
    auto *const button = new TouchButton(&form);
    button->setText(QStringLiteral("one or another of many words ").repeated(5));
    layout.addWidget(button);
    layout.addStretch(1);
    layout.setGeometry(QRect(0, 0, 150, 600));
    EXPECT_GE(button->height(), button->heightForWidth(button->width()));
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
    TouchComboBox little(nullptr);
    little.addItem(QStringLiteral("A"));
    EXPECT_GE(little.sizeHint().width(),
              little.fontMetrics().boundingRect(QString(12, QLatin1Char('X'))).width());
    TouchComboBox box(nullptr);
    box.addItem(QString(100, QLatin1Char('X')));
    EXPECT_EQ(box.sizeHint(), little.sizeHint());
    EXPECT_EQ(box.view()->textElideMode(), Qt::ElideMiddle) << "the list elides what does not fit";
    EXPECT_LT(box.view()->palette().color(QPalette::Highlight).lightness(), 100);
}

TEST(TouchComboBox, ShowsTheEndOfALongName)
{
    TouchComboBox box(nullptr);
    box.resize(200, 44);
    const QString name(100, QLatin1Char('m'));
    box.addItems({name + QLatin1Char('1'), name + QLatin1Char('2')});
    const QImage first = pictureOf(box);
    box.setCurrentIndex(1);
    EXPECT_NE(pictureOf(box), first);
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

TEST(WrappingLabel, AsksForTheHeightOfItsLinesAndItsFrame)
{
    WrappingLabel label(nullptr);
    label.setText(QStringLiteral("a\nb\nc"));
    QTextLayout layout(QStringLiteral("a"), label.font());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(200);
    layout.endLayout();
    EXPECT_GE(label.heightForWidth(200), 3 * line.height());
    label.setText(QStringLiteral("a ").repeated(200));
    const int plain = label.heightForWidth(100);
    label.setFrameStyle(QFrame::Box | QFrame::Plain);
    label.setLineWidth(5);
    EXPECT_EQ(label.heightForWidth(110), plain + 10);
}

TEST(WrappingLabel, DrawsInTheColourOfTextsWhateverItsFrame)
{
    WrappingLabel label(nullptr);
    EXPECT_EQ(label.textFormat(), Qt::PlainText) << "what looks like markup is a name";
    label.resize(200, 100);
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    label.setPalette(palette);
    QFont font;
    font.setPixelSize(60);
    label.setFont(font);
    label.setText(QStringLiteral("I"));
    for (const int frame : {QFrame::NoFrame | QFrame::Plain, QFrame::Panel | QFrame::Raised}) {
        label.setFrameStyle(frame);
        const QImage picture = pictureOf(label).copy(10, 10, 180, 80);
        int redPoints = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                redPoints += picture.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
        EXPECT_GT(redPoints, 0) << frame;
    }
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
    EXPECT_LT(centre.last(), 200 / 2 + 2 * lineHeight);

    label.setText(QString());
    label.setFrameStyle(QFrame::Box | QFrame::Plain);
    EXPECT_NE(pictureOf(label).pixel(0, 0), pictureOf(label).pixel(100, 100));
}
