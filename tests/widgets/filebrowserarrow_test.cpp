#include "tests/widgets/browserfixture.h"

#include <QAbstractItemDelegate>
#include <QImage>
#include <QPainter>

#include <cstdlib>

using namespace panelkit::testing;

namespace {

const int roomForArrow = 22;

class FileBrowserArrow : public BrowserOn<WidgetFixture>
{
protected:
    FileBrowserArrow()
    {
        QPalette palette = list->palette();
        palette.setColor(QPalette::Base, Qt::white);
        palette.setColor(QPalette::Text, Qt::red);
        palette.setColor(QPalette::HighlightedText, Qt::green);
        list->setPalette(palette);
    }

    // Without the outermost pixels, where a style may frame what is selected.
    QImage rowOf(const QString &name)
    {
        const QRect row = list->visualItemRect(item(name));
        return list->viewport()->grab(row.adjusted(0, 2, 0, -2)).toImage();
    }
};

// The part of the row that ends `end` pixels before the row does.
QImage part(const QImage &row, int end, int width)
{
    return row.copy(row.width() - end - width, 0, width, row.height());
}

QImage arrowOf(const QImage &row)
{
    return part(row, 0, roomForArrow);
}

int pointsOf(const QColor &color, const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) == color ? 1 : 0;
    return count;
}

// What differs from white, as closely as a rectangle holds it.
QImage inkOf(const QImage &picture)
{
    QRect bounds;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) != QColor(Qt::white))
                bounds |= QRect(x, y, 1, 1);
    return picture.copy(bounds);
}

} // namespace

TEST_F(FileBrowserArrow, HasTheColourOfTheTextThatItStandsBehind)
{
    makeFolder(QStringLiteral("folder"));
    browse(FileBro_SingleFile);
    show(browser);
    const QImage plain = arrowOf(rowOf(QStringLiteral("folder")));
    EXPECT_GT(pointsOf(Qt::red, plain), 0);
    EXPECT_EQ(pointsOf(Qt::black, plain), 0);
    item(QStringLiteral("folder"))->setSelected(true);
    const QImage selected = arrowOf(rowOf(QStringLiteral("folder")));
    EXPECT_GT(pointsOf(Qt::green, selected), 0);
    EXPECT_EQ(pointsOf(Qt::red, selected), 0);
}

TEST_F(FileBrowserArrow, PointsToTheRightWithSmoothEdges)
{
    makeFolder(QStringLiteral("folder"));
    browse(FileBro_SingleFile);
    show(browser);
    const QImage arrow = inkOf(arrowOf(rowOf(QStringLiteral("folder"))));
    ASSERT_GT(arrow.height(), arrow.width());
    const int middle = arrow.height() / 2;
    EXPECT_EQ(arrow.pixelColor(0, middle), QColor(Qt::white));
    EXPECT_NE(arrow.pixelColor(arrow.width() - 1, middle), QColor(Qt::white));
    EXPECT_LT(pointsOf(Qt::red, arrow) + pointsOf(Qt::white, arrow), arrow.width() * arrow.height())
        << "there are shades between";
    for (int y = 0; y < arrow.height(); ++y)
        for (int x = 0; x < arrow.width(); ++x) {
            const int below = arrow.pixelColor(x, arrow.height() - 1 - y).green();
            EXPECT_LT(std::abs(arrow.pixelColor(x, y).green() - below), 64) << "its halves are alike";
        }
}

TEST_F(FileBrowserArrow, IsNotDrawnOverALongName)
{
    const QString name(250, QLatin1Char('i'));
    makeFolder(QStringLiteral("folder"));
    makeFolder(name);
    browse(FileBro_SingleFile);
    show(browser);
    const QImage row = rowOf(name);
    EXPECT_EQ(arrowOf(row), arrowOf(rowOf(QStringLiteral("folder"))));
    const QImage before = part(row, roomForArrow, 20);
    EXPECT_LT(pointsOf(Qt::white, before), before.width() * before.height())
        << "the name ends not long before";
}

TEST_F(FileBrowserArrow, LeavesThePainterAsItWas)
{
    makeFolder(QStringLiteral("folder"));
    browse(FileBro_SingleFile);
    QImage canvas(200, 44, QImage::Format_RGB32);
    QPainter painter(&canvas);
    painter.setPen(Qt::blue);
    QStyleOptionViewItem option;
    option.widget = list;
    option.rect = canvas.rect();
    list->itemDelegate()->paint(&painter, option, list->model()->index(0, 0));
    EXPECT_EQ(painter.pen().color(), QColor(Qt::blue));
    EXPECT_FALSE(painter.renderHints() & QPainter::Antialiasing);
}
