#include "tests/widgets/browserfixture.h"

#include <QAccessible>
#include <QScrollBar>

#include <cmath>

using namespace panelkit::testing;

namespace {

class FileBrowserOnScreen : public BrowserOn<EveryScreen>
{
protected:
    // Whether the list flies on when the finger has left it.
    bool flick()
    {
        const QPoint bottom = list->viewport()->rect().center() + QPoint(0, list->viewport()->height() / 3);
        drag(list->viewport(), bottom, QPoint(bottom.x(), 2));
        const QScrollBar *const position = list->verticalScrollBar();
        const int whenLifted = position->value();
        return QTest::qWaitFor([&] { return position->value() > whenLifted; });
    }
};

const int fingerHeight = 44;

QString longName()
{
    return QStringLiteral("a name far too long for the screen ").repeated(7) + QStringLiteral("1.csv");
}

// How high the label's text is, broken between words at the label's width.
int heightOfText(const QLabel &label)
{
    const QRect room(0, 0, label.width(), 10000);
    return label.fontMetrics().boundingRect(room, Qt::TextWordWrap, label.text()).height();
}

// Contrast of two colours, from 1 (none) to 21 (black and white), as accessibility guidelines count it.
double contrast(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return qMax(first, second) / qMin(first, second);
}

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(FileBrowserOnScreen);

TEST_P(FileBrowserOnScreen, CoversTheScreenWhateverItShows)
{
    makeFile(longName());
    EXPECT_EQ(browser.geometry(), QRect(QPoint(0, 0), screenSize()));
    browser.setTitle(
        QStringLiteral("A title that is much too long for one line of the smallest of all screens"));
    browser.setFileBrowserInfo(
        {{QStringLiteral("A root with a name that no combo box of that width can show"), root()}});
    browser.reTranslateUI();
    show(browser);
    EXPECT_EQ(browser.size(), screenSize());
    EXPECT_GE(title->height(), heightOfText(*title)) << "all of the title is seen";
    browser.setTitle(QString(200, QLatin1Char('m')));
    browser.reTranslateUI();
    QApplication::processEvents();
    EXPECT_EQ(browser.size(), screenSize()) << "a title that cannot be broken is cut";
}

TEST_P(FileBrowserOnScreen, KeepsFourPixelsAroundWhatItHolds)
{
    browse(FileBro_SingleFile);
    show(browser);
    const int gap = 4;
    const QRect room = browser.contentsRect().adjusted(gap, gap, -gap, -gap);
    EXPECT_EQ(list->geometry().left(), room.left());
    EXPECT_EQ(list->geometry().right(), room.right());
    EXPECT_EQ(title->geometry().top(), room.top());
    EXPECT_EQ(ok->geometry().bottom(), room.bottom());
    EXPECT_EQ(list->geometry().bottom() + 1 + gap, ok->geometry().top());
}

TEST_P(FileBrowserOnScreen, OffersTargetsThatAFingerHits)
{
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("two\nlines.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    for (const QWidget *control : QList<QWidget *>{back, rootNames, cancel, ok}) {
        SCOPED_TRACE(control->objectName().toStdString());
        EXPECT_GE(control->height(), fingerHeight);
        EXPECT_GE(control->width(), 2 * fingerHeight);
        EXPECT_TRUE(browser.rect().contains(control->geometry()));
    }
    EXPECT_EQ(rootNames->height(), back->height()) << "however many lines the button needs";
    for (int row = 0; row < list->count(); ++row)
        EXPECT_EQ(list->visualItemRect(list->item(row)).height(), fingerHeight) << row;
    EXPECT_GE(list->viewport()->height(), 2 * fingerHeight) << "at least two rows are seen";
}

TEST_P(FileBrowserOnScreen, LetsAFingerChooseAmongTheRoots)
{
    makeFolder(QStringLiteral("one"));
    makeFolder(QStringLiteral("two"));
    makeFile(QStringLiteral("two/b.csv"));
    browser.setFileBrowserInfo({{QStringLiteral("Storage"), path(QStringLiteral("one"))},
                                {QStringLiteral("USB stick"), path(QStringLiteral("two"))}});
    browser.reTranslateUI();
    show(browser);
    tap(rootNames);
    QAbstractItemView *const popup = rootNames->view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup->window()));
    const QRect row = popup->visualRect(rootNames->model()->index(1, 0));
    EXPECT_GE(row.height(), fingerHeight);
    QTest::qWait(
        QApplication::doubleClickInterval()); // a second tap right away would count as part of the first
    tap(popup->viewport(), row.center());
    EXPECT_EQ(rootNames->currentIndex(), 1);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("b.csv")));
}

TEST_P(FileBrowserOnScreen, OpensAFolderOnASingleTap)
{
    makeFolder(QStringLiteral("data/deep"));
    browse(FileBro_SingleFile);
    show(browser);
    tapItem(QStringLiteral("data"));
    EXPECT_EQ(listed(), QStringList(QStringLiteral("deep")));
    tapItem(QStringLiteral("deep"));
    EXPECT_EQ(list->count(), 0);
    tap(back);
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("data")));
}

TEST_P(FileBrowserOnScreen, ScrollsByFingerWithoutSelecting)
{
    for (int i = 0; i < 100; ++i)
        makeFile(QStringLiteral("record_%1.csv").arg(i));
    browse(FileBro_MultiFile);
    show(browser);
    QScrollBar *const position = list->verticalScrollBar();
    ASSERT_EQ(position->value(), 0);
    EXPECT_EQ(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel) << "not row by row";
    const QPoint middle = list->viewport()->rect().center();
    drag(list->viewport(), middle, QPoint(middle.x(), 2));
    EXPECT_TRUE(QTest::qWaitFor([&] { return position->value() > 10; }));
    EXPECT_TRUE(list->selectedItems().isEmpty());
}

TEST_P(FileBrowserOnScreen, TakesNoDragForATapWhereNothingCanScroll)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_MultiFile);
    show(browser);
    const QPoint folder = list->visualItemRect(item(QStringLiteral("folder"))).center();
    drag(list->viewport(), folder, folder - QPoint(0, folder.y() + 60));
    const QPoint file = list->visualItemRect(item(QStringLiteral("a.csv"))).center();
    drag(list->viewport(), file, file + QPoint(100, 0));
    EXPECT_EQ(listed(), QStringList({QStringLiteral("folder"), QStringLiteral("a.csv")}));
    EXPECT_TRUE(list->selectedItems().isEmpty());
}

TEST_P(FileBrowserOnScreen, BeginsEachFolderAtItsTop)
{
    makeFolder(QStringLiteral("deep"));
    for (int i = 0; i < 1000; ++i) {
        makeFile(QStringLiteral("record_%1.csv").arg(i));
        makeFile(QStringLiteral("deep/record_%1.csv").arg(i));
    }
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("deep")));
    show(browser);
    QScrollBar *const position = list->verticalScrollBar();
    ASSERT_TRUE(flick());
    tap(back);
    ASSERT_EQ(list->item(0)->text(), QStringLiteral("deep"));
    EXPECT_EQ(position->value(), 0);
    QTest::qWait(100);
    EXPECT_EQ(position->value(), 0) << "the flick has ended";
}

TEST_P(FileBrowserOnScreen, TakesATrembleForATap)
{
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    const QPoint place = list->visualItemRect(item(QStringLiteral("a.csv"))).center();
    drag(list->viewport(), place, place + QPoint(2, 3));
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("a.csv"))));
}

TEST_P(FileBrowserOnScreen, StopsAFlickByATouchThatSelectsNothing)
{
    for (int i = 0; i < 1000; ++i)
        makeFile(QStringLiteral("record_%1.csv").arg(i));
    browse(FileBro_SingleFile);
    show(browser);
    QScrollBar *const position = list->verticalScrollBar();
    ASSERT_TRUE(flick());
    tap(list->viewport());
    EXPECT_TRUE(list->selectedItems().isEmpty());
    const int whenStopped = position->value();
    QTest::qWait(100);
    EXPECT_EQ(position->value(), whenStopped);
    tap(list->viewport());
    EXPECT_EQ(list->selectedItems().size(), 1) << "a touch of the list at rest is a tap again";
}

TEST_P(FileBrowserOnScreen, ElidesLongNamesInTheMiddle)
{
    makeFile(longName());
    makeFolder(longName().replace(QLatin1Char('1'), QLatin1Char('2')));
    browse(FileBro_SingleFile);
    show(browser);
    EXPECT_EQ(list->textElideMode(), Qt::ElideMiddle);
    EXPECT_EQ(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    for (int row = 0; row < list->count(); ++row)
        EXPECT_EQ(list->visualItemRect(list->item(row)).width(), list->viewport()->width());
}

TEST_P(FileBrowserOnScreen, ShowsPlainlyWhatIsSelected)
{
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    tapItem(QStringLiteral("a.csv"));
    const QImage picture = list->viewport()->grab().toImage();
    // The right end of a row, where no text stands.
    const auto background = [&](const QString &name) {
        const QRect row = list->visualItemRect(item(name));
        return picture.pixelColor(row.right() - 4, row.center().y());
    };
    EXPECT_GE(contrast(background(QStringLiteral("a.csv")), background(QStringLiteral("b.csv"))), 7.0);
    EXPECT_GE(contrast(background(QStringLiteral("a.csv")), list->palette().color(QPalette::HighlightedText)),
              7.0);
}

TEST_P(FileBrowserOnScreen, MarksFoldersByAnArrow)
{
    makeFolder(QStringLiteral("a"));
    makeFile(QStringLiteral("b"));
    browse(FileBro_SingleFile);
    show(browser);
    const QImage picture = list->viewport()->grab().toImage();
    const auto inkAtRightEnd = [&](const QString &name) {
        const QRect row = list->visualItemRect(item(name));
        int ink = 0;
        for (int x = row.right() - fingerHeight / 2; x <= row.right(); ++x) {
            for (int y = row.top(); y <= row.bottom(); ++y)
                ink += qGray(picture.pixel(x, y)) < 128;
        }
        return ink;
    };
    EXPECT_GT(inkAtRightEnd(QStringLiteral("a")), 8);
    EXPECT_EQ(inkAtRightEnd(QStringLiteral("b")), 0);
}

TEST_P(FileBrowserOnScreen, NamesEveryControlForAScreenReader)
{
    browse(FileBro_SingleFile);
    for (QWidget *control : QList<QWidget *>{back, rootNames, list, cancel, ok}) {
        QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(interface, nullptr);
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << control->objectName().toStdString();
    }
    EXPECT_EQ(rootNames->accessibleName(), QStringLiteral("Storage")) << "not the name of the chosen root";
    EXPECT_EQ(list->accessibleName(), QStringLiteral("Files and folders"));
}

TEST_P(FileBrowserOnScreen, TellsAScreenReaderOfEveryEntry)
{
    QAccessible::setActive(true);
    makeFolder(QStringLiteral("data"));
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    browser.showDir(path(QStringLiteral("data")));
    browser.showDir(root());
    QAccessibleInterface *const entries = QAccessible::queryAccessibleInterface(list);
    ASSERT_EQ(entries->childCount(), 3);
    EXPECT_EQ(entries->child(0)->text(QAccessible::Name), QStringLiteral("data"));
    EXPECT_EQ(entries->child(2)->text(QAccessible::Name), QStringLiteral("b.csv"));
    QAccessible::setActive(false);
}
