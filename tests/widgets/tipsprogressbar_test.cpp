#include "tests/widgets/widgetfixture.h"
#include "widgets/tipsprogressbar.h"
#include "widgets/tipsprogressbarform.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

using namespace panelkit::testing;

namespace {

template <typename Fixture>
class TipsOn : public Fixture
{
protected:
    TipsProgressBar overlay;
    QWidget *const box = overlay.findChild<QWidget *>(QStringLiteral("widget"));
    QLabel *const title = overlay.findChild<QLabel *>(QStringLiteral("title"));
    QProgressBar *const first = overlay.findChild<QProgressBar *>(QStringLiteral("pb_1"));
    QProgressBar *const second = overlay.findChild<QProgressBar *>(QStringLiteral("pb_2"));
};

using TipsProgressBarForm = TipsOn<WidgetFixture>;
using TipsProgressBarUpdate = TipsOn<WidgetFixture>;
using TipsProgressBarOnScreen = TipsOn<EveryScreen>;

// The place of an item in its grid: row, column, rows, columns.
QList<int> cellOf(QGridLayout *grid, int index)
{
    int row = -1;
    int column = -1;
    int rows = -1;
    int columns = -1;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    return {row, column, rows, columns};
}

} // namespace

TEST_F(TipsProgressBarForm, LooksAsThePanelsOverlaysDo)
{
    EXPECT_EQ(overlay.objectName(), QStringLiteral("TipsProgressBar"));
    EXPECT_EQ(overlay.windowTitle(), QStringLiteral("Form"));
    EXPECT_EQ(overlay.styleSheet(), QStringLiteral("background: transparent; border:0px"));
    EXPECT_EQ(overlay.windowFlags(), Qt::Window | Qt::FramelessWindowHint);
    EXPECT_EQ(overlay.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(overlay.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(box->styleSheet(),
              QStringLiteral(
                  "QWidget{background-color: rgb(240, 240, 240);border:3px solid rgba(64, 64, 64, 160);}"));
    for (const QWidget *part : QList<QWidget *>{title, first, second})
        EXPECT_EQ(part->styleSheet(), QStringLiteral("border:0px;"));
    EXPECT_EQ(first->value(), 0);
    EXPECT_EQ(second->value(), 0);
    EXPECT_EQ(first->orientation(), Qt::Horizontal);
    EXPECT_EQ(second->orientation(), Qt::Horizontal);
    EXPECT_EQ(first->alignment(), Qt::AlignCenter) << "where the percentage stands";
    EXPECT_EQ(second->alignment(), Qt::AlignCenter);
}

TEST_F(TipsProgressBarForm, IsAPartOfItsParent)
{
    QWidget parent;
    const TipsProgressBar part(&parent);
    EXPECT_FALSE(part.isWindow());
    EXPECT_EQ(part.windowFlags(), Qt::FramelessWindowHint);
}

TEST_F(TipsProgressBarForm, KeepsTheNameThatItHas)
{
    panelkit::Ui_TipsProgressBar form;
    QGraphicsView named;
    named.setObjectName(QStringLiteral("loading"));
    form.setupUi(&named);
    EXPECT_EQ(named.objectName(), QStringLiteral("loading"));
}

TEST_F(TipsProgressBarForm, HoldsTheBoxBetweenFourSpacers)
{
    auto *const grid = qobject_cast<QGridLayout *>(overlay.layout());
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->objectName(), QStringLiteral("gridLayout_3"));
    const QSizePolicy::Policy minimum = QSizePolicy::Minimum;
    const QSizePolicy::Policy expanding = QSizePolicy::Expanding;
    const struct
    {
        const char *name;
        QList<int> cell;
        QSize size; // of a spacer
        QSizePolicy policy;
    } rows[] = {{"above", {0, 1, 1, 1}, {20, 73}, {minimum, expanding}},
                {"left", {1, 0, 1, 1}, {60, 20}, {expanding, minimum}},
                {"box", {1, 1, 1, 2}, {}, {}},
                {"right", {1, 3, 1, 1}, {60, 20}, {expanding, minimum}},
                {"below", {2, 2, 1, 1}, {20, 72}, {minimum, expanding}}};
    ASSERT_EQ(grid->count(), 5);
    for (int i = 0; i < grid->count(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(cellOf(grid, i), rows[i].cell);
        QSpacerItem *const spacer = grid->itemAt(i)->spacerItem();
        if (rows[i].size.isNull() || spacer == nullptr) {
            EXPECT_EQ(grid->itemAt(i)->widget(), box);
            continue;
        }
        EXPECT_EQ(spacer->sizeHint(), rows[i].size);
        EXPECT_EQ(spacer->sizePolicy(), rows[i].policy);
    }
    const int rowStretches[] = {4, 3, 4};
    const int columnStretches[] = {1, 4, 1, 1};
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(grid->rowStretch(row), rowStretches[row]) << row;
    for (int column = 0; column < 4; ++column)
        EXPECT_EQ(grid->columnStretch(column), columnStretches[column]) << column;
}

TEST_F(TipsProgressBarForm, StacksTitleAndBarsInTheBox)
{
    auto *const grid = qobject_cast<QGridLayout *>(box->layout());
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->objectName(), QStringLiteral("gridLayout"));
    const QList<QWidget *> parts = {title, first, second};
    ASSERT_EQ(grid->count(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(grid->itemAt(i)->widget(), parts.at(i));
        EXPECT_EQ(cellOf(grid, i), QList<int>({i, 0, 1, 1}));
    }
}

TEST_F(TipsProgressBarForm, HasNeitherSignalsNorSlotsOfItsOwn)
{
    const QMetaObject &type = TipsProgressBar::staticMetaObject;
    EXPECT_STREQ(type.className(), "TipsProgressBar");
    EXPECT_EQ(type.methodCount(), type.methodOffset());
}

TEST_F(TipsProgressBarForm, NamesItsBarsForAScreenReader)
{
    for (QWidget *bar : QList<QWidget *>{first, second})
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(bar)->text(QAccessible::Name).isEmpty());
}

TEST_F(TipsProgressBarForm, KeepsItsDesignSizeWithoutAnApplicationRecord)
{
    takeRecordAway();
    EXPECT_EQ(TipsProgressBar().geometry(), QRect(0, 0, 480, 272));
}

TEST_F(TipsProgressBarUpdate, ShowsAZeroToo)
{
    overlay.UpdateProgress(40, 50, false, QString());
    overlay.UpdateProgress(0, 0, false, QString());
    EXPECT_EQ(first->value(), 0);
    EXPECT_EQ(second->value(), 0);
    EXPECT_FALSE(first->isHidden());
    EXPECT_FALSE(second->isHidden());
}

TEST_F(TipsProgressBarUpdate, ShowsTitleAndBothBars)
{
    overlay.UpdateProgress(40, 70, false, QStringLiteral("Exporting"));
    EXPECT_TRUE(overlay.isVisible());
    EXPECT_TRUE(title->isVisible());
    EXPECT_EQ(title->text(), QStringLiteral("Exporting"));
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->value(), 40);
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(second->value(), 70);
}

TEST_F(TipsProgressBarUpdate, ShowsAnEmptyBoxWithoutTextAndValues)
{
    overlay.UpdateProgress(-1, -1, false, QString());
    EXPECT_TRUE(overlay.isVisible());
    EXPECT_TRUE(box->isVisible());
    EXPECT_FALSE(title->isVisible());
    EXPECT_FALSE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
}

TEST_F(TipsProgressBarUpdate, ShowsEachBarByItsOwnValue)
{
    overlay.UpdateProgress(0, -1, false, QString());
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
    overlay.UpdateProgress(-1, 0, false, QString());
    EXPECT_FALSE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
}

TEST_F(TipsProgressBarUpdate, KeepsWhatItDoesNotSet)
{
    overlay.UpdateProgress(40, 70, false, QStringLiteral("Exporting"));
    overlay.UpdateProgress(-5, -1, false, QString());
    EXPECT_EQ(title->text(), QStringLiteral("Exporting"));
    EXPECT_EQ(first->value(), 40);
    EXPECT_EQ(second->value(), 70);
}

TEST_F(TipsProgressBarUpdate, SetsEverythingWhileItHides)
{
    overlay.UpdateProgress(1, 2, false, QStringLiteral("Exporting"));
    overlay.UpdateProgress(50, 60, true, QStringLiteral("Done"));
    EXPECT_FALSE(overlay.isVisible());
    EXPECT_EQ(title->text(), QStringLiteral("Done"));
    EXPECT_EQ(first->value(), 50);
    EXPECT_EQ(second->value(), 60);
}

INSTANTIATE_ON_EVERY_SCREEN(TipsProgressBarOnScreen);

TEST_P(TipsProgressBarOnScreen, CoversTheScreenWithTheBoxInTheMiddle)
{
    EXPECT_EQ(overlay.geometry(), QRect(QPoint(0, 0), screenSize()));
    overlay.UpdateProgress(10, 20, false,
                           QStringLiteral("A title that is wider than the box on every one of the screens, "
                                          "however wide that may be"));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&overlay));
    EXPECT_EQ(overlay.size(), screenSize());
    EXPECT_TRUE(overlay.rect().contains(box->geometry()));
    EXPECT_LE(qAbs(box->geometry().center().y() - overlay.rect().center().y()), 2);
    EXPECT_LT(first->geometry().bottom(), second->geometry().top());
}
