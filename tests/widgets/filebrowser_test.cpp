#include "tests/widgets/browserfixture.h"
#include "widgets/filebrowserform.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QMetaMethod>
#include <QSignalSpy>

using namespace panelkit::testing;

namespace {

using FileBrowserInterface = BrowserOn<WidgetFixture>;
using FileBrowserSelection = BrowserOn<WidgetFixture>;
using FileBrowserRoots = BrowserOn<WidgetFixture>;

QStringList ownMethods(const QMetaObject &type)
{
    QStringList methods;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i)
        methods << QString::fromLatin1(type.method(i).methodSignature());
    return methods;
}

QStringList namesIn(const QLayout *layout)
{
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *const item = layout->itemAt(i);
        names << (item->widget() ? item->widget()->objectName() : item->layout()->objectName());
    }
    return names;
}

} // namespace

TEST_F(FileBrowserInterface, HasItsMethodsInTheirOrder)
{
    EXPECT_EQ(ownMethods(FileBrowser::staticMetaObject),
              QStringList({QStringLiteral("fileBro_OK()"), QStringLiteral("fileBro_Cancel()"),
                           QStringLiteral("on_btn_return_clicked()"), QStringLiteral("on_btn_ok_clicked()"),
                           QStringLiteral("on_cb_root_name_currentIndexChanged(int)"),
                           QStringLiteral("on_btn_cancel_clicked()"),
                           QStringLiteral("on_listWidget_itemClicked(QListWidgetItem*)")}));
}

TEST_F(FileBrowserInterface, LaysOutItsNamedWidgets)
{
    EXPECT_EQ(browser.objectName(), QStringLiteral("FileBrowser"));
    auto *const outer = qobject_cast<QVBoxLayout *>(browser.layout());
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(namesIn(outer),
              QStringList({QStringLiteral("label_title"), QStringLiteral("horizontalLayout"),
                           QStringLiteral("listWidget"), QStringLiteral("horizontalLayout_2")}));
    auto *const upper = qobject_cast<QHBoxLayout *>(outer->itemAt(1)->layout());
    ASSERT_NE(upper, nullptr);
    EXPECT_EQ(namesIn(upper), QStringList({QStringLiteral("btn_return"), QStringLiteral("cb_root_name")}));
    auto *const lower = qobject_cast<QHBoxLayout *>(outer->itemAt(3)->layout());
    ASSERT_NE(lower, nullptr);
    EXPECT_EQ(namesIn(lower), QStringList({QStringLiteral("btn_cancel"), QStringLiteral("btn_ok")}));
}

TEST_F(FileBrowserInterface, ShowsItsTextsAndTheTitleOnceItIsTranslated)
{
    browser.setTitle(QStringLiteral("Import recipes"));
    EXPECT_EQ(title->text(), QStringLiteral("TextLabel"));
    browser.reTranslateUI();
    EXPECT_EQ(title->text(), QStringLiteral("Import recipes"));
    EXPECT_EQ(browser.windowTitle(), QStringLiteral("Form"));
    EXPECT_EQ(back->text(), QStringLiteral("Return to the previous directory"));
    EXPECT_EQ(cancel->text(), QStringLiteral("Cancel"));
    EXPECT_EQ(ok->text(), QStringLiteral("OK"));
}

TEST_F(FileBrowserInterface, KeepsTheNameThatItHas)
{
    panelkit::FileBrowserForm form;
    QGraphicsView named;
    named.setObjectName(QStringLiteral("recipes"));
    form.setupUi(&named);
    EXPECT_EQ(named.objectName(), QStringLiteral("recipes"));
}

TEST_F(FileBrowserInterface, StartsAsPickerOfOneFile)
{
    EXPECT_EQ(browser.getBroType(), FileBro_SingleFile);
    EXPECT_EQ(list->selectionMode(), QAbstractItemView::SingleSelection);
}

TEST_F(FileBrowserInterface, SelectsOneOrManyByItsMode)
{
    const struct
    {
        int mode;
        QAbstractItemView::SelectionMode selection;
    } rows[] = {{FileBro_SingleFile, QAbstractItemView::SingleSelection},
                {FileBro_MultiFile, QAbstractItemView::MultiSelection},
                {FileBro_Folder, QAbstractItemView::SingleSelection},
                {9, QAbstractItemView::MultiSelection}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.mode);
        browser.setBroType(static_cast<FileBroType_e>(row.mode));
        EXPECT_EQ(browser.getBroType(), row.mode);
        EXPECT_EQ(list->selectionMode(), row.selection);
    }
}

TEST_F(FileBrowserInterface, KeepsItsDesignSizeWithoutAnApplicationRecord)
{
    takeRecordAway();
    EXPECT_EQ(FileBrowser().geometry(), QRect(0, 0, 645, 574));
}

TEST_F(FileBrowserInterface, SaysOkBeforeItCloses)
{
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    tapItem(QStringLiteral("a.csv"));
    bool visibleThen = false;
    QStringList selectedThen;
    QSignalSpy accepted(&browser, &FileBrowser::fileBro_OK);
    QObject::connect(&browser, &FileBrowser::fileBro_OK, [&] {
        visibleThen = browser.isVisible();
        selectedThen = browser.getSelectFile();
    });
    QSignalSpy cancelled(&browser, &FileBrowser::fileBro_Cancel);
    tap(ok);
    EXPECT_TRUE(visibleThen);
    EXPECT_EQ(selectedThen, QStringList(path(QStringLiteral("a.csv"))));
    EXPECT_FALSE(browser.isVisible());
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_EQ(cancelled.count(), 0);
}

TEST_F(FileBrowserInterface, SaysCancelBeforeItCloses)
{
    browse(FileBro_SingleFile);
    show(browser);
    bool visibleThen = false;
    QObject::connect(&browser, &FileBrowser::fileBro_Cancel, [&] { visibleThen = browser.isVisible(); });
    QSignalSpy accepted(&browser, &FileBrowser::fileBro_OK);
    QSignalSpy cancelled(&browser, &FileBrowser::fileBro_Cancel);
    tap(cancel);
    EXPECT_TRUE(visibleThen);
    EXPECT_FALSE(browser.isVisible());
    EXPECT_EQ(cancelled.count(), 1);
    EXPECT_EQ(accepted.count(), 0);
}

TEST_F(FileBrowserInterface, IgnoresATapOnNothing)
{
    makeFolder(QStringLiteral("folder"));
    browse(FileBro_SingleFile);
    ASSERT_TRUE(QMetaObject::invokeMethod(&browser, "on_listWidget_itemClicked",
                                          Q_ARG(QListWidgetItem *, static_cast<QListWidgetItem *>(nullptr))));
    EXPECT_EQ(listed(), QStringList(QStringLiteral("folder")));
}

TEST_F(FileBrowserSelection, IsEmptyWithNothingSelected)
{
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_SingleFile);
    EXPECT_TRUE(browser.getSelectFile().isEmpty());
    browse(FileBro_MultiFile);
    EXPECT_TRUE(browser.getSelectFile().isEmpty());
}

TEST_F(FileBrowserSelection, HoldsTheLastTappedFileInSingleMode)
{
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    tapItem(QStringLiteral("a.csv"));
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("a.csv"))));
    tapItem(QStringLiteral("b.csv"));
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("b.csv"))));
}

TEST_F(FileBrowserSelection, TogglesWithEachTapInMultiMode)
{
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    browse(FileBro_MultiFile);
    show(browser);
    tapItem(QStringLiteral("a.csv"));
    tapItem(QStringLiteral("b.csv"));
    EXPECT_EQ(browser.getSelectFile(),
              QStringList({path(QStringLiteral("a.csv")), path(QStringLiteral("b.csv"))}));
    tapItem(QStringLiteral("a.csv"));
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("b.csv"))));
}

TEST_F(FileBrowserSelection, LeavesFoldersOutInMultiMode)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    browse(FileBro_MultiFile);
    show(browser);
    tapItem(QStringLiteral("a.csv"));
    // A tap would open the folder: it is selected as the keys of a keyboard do.
    list->setCurrentItem(item(QStringLiteral("folder")), QItemSelectionModel::NoUpdate);
    QTest::keyClick(list, Qt::Key_Space);
    tapItem(QStringLiteral("b.csv"));
    ASSERT_EQ(list->selectedItems().size(), 3);
    EXPECT_EQ(browser.getSelectFile(),
              QStringList({path(QStringLiteral("a.csv")), path(QStringLiteral("b.csv"))}));
}

TEST_F(FileBrowserSelection, IsTheFolderShownInFolderMode)
{
    makeFolder(QStringLiteral("data"));
    makeFile(QStringLiteral("data/a.csv"));
    browse(FileBro_Folder);
    show(browser);
    tapItem(QStringLiteral("data"));
    EXPECT_EQ(list->count(), 0) << "the folder holds only files";
    tap(ok);
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("data"))));
}

TEST_F(FileBrowserSelection, DoesNotAskForASelectedItemInFolderMode)
{
    makeFolder(QStringLiteral("data"));
    browse(FileBro_Folder);
    item(QStringLiteral("data"))->setSelected(true);
    EXPECT_EQ(browser.getSelectFile(), QStringList(root()));
}

TEST_F(FileBrowserSelection, IsEmptyInAMissingFolder)
{
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("gone")));
    show(browser);
    tapItem(QStringLiteral("Folder does not exist"));
    EXPECT_TRUE(showsThatFolderIsMissing()) << "the notice leads nowhere";
    EXPECT_TRUE(browser.getSelectFile().isEmpty());
    browser.setBroType(FileBro_Folder);
    EXPECT_TRUE(browser.getSelectFile().isEmpty());
}

TEST_F(FileBrowserRoots, FillTheComboBoxInTheirOrder)
{
    browser.setFileBrowserInfo({{QStringLiteral("B"), root() + QStringLiteral("//x/../")},
                                {QStringLiteral("A"), path(QStringLiteral("gone"))}});
    browser.reTranslateUI();
    ASSERT_EQ(rootNames->count(), 2);
    EXPECT_EQ(rootNames->itemText(0), QStringLiteral("B"));
    EXPECT_EQ(rootNames->itemText(1), QStringLiteral("A"));
    EXPECT_TRUE(rootNames->itemIcon(0).isNull());
    EXPECT_FALSE(rootNames->itemData(0).isValid());
    EXPECT_EQ(rootNames->currentIndex(), 0);
    browser.setBroType(FileBro_Folder);
    EXPECT_EQ(browser.getSelectFile(), QStringList(root())) << "the path is kept in cleaned form";
}

TEST_F(FileBrowserRoots, AreListedOnceByATranslation)
{
    makeFile(QStringLiteral("a.csv"));
    makeFile(QStringLiteral("b.csv"));
    QSignalSpy clearings(list->model(), &QAbstractItemModel::modelReset);
    QSignalSpy insertions(list->model(), &QAbstractItemModel::rowsInserted);
    browse(FileBro_SingleFile);
    EXPECT_EQ(clearings.count(), 1);
    EXPECT_EQ(insertions.count(), 1) << "the view is told once, not for every entry";
    EXPECT_EQ(listed(), QStringList({QStringLiteral("a.csv"), QStringLiteral("b.csv")}));
}

TEST_F(FileBrowserRoots, AreAnnouncedToTheViewAfterAnEmptyFolderToo)
{
    makeFolder(QStringLiteral("empty"));
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("empty")));
    ASSERT_EQ(list->count(), 0);
    QSignalSpy insertions(list->model(), &QAbstractItemModel::rowsInserted);
    browser.showDir(root());
    EXPECT_EQ(insertions.count(), 1);
}

TEST_F(FileBrowserRoots, MayBeChosenThereAndBack)
{
    makeFolder(QStringLiteral("first"));
    makeFolder(QStringLiteral("first/a"));
    makeFolder(QStringLiteral("second"));
    browser.setFileBrowserInfo({{QStringLiteral("First"), path(QStringLiteral("first"))},
                                {QStringLiteral("Second"), path(QStringLiteral("second"))}});
    browser.reTranslateUI();
    rootNames->setCurrentIndex(1);
    EXPECT_EQ(listed(), QStringList());
    rootNames->setCurrentIndex(0);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("a")));
}

TEST_F(FileBrowserRoots, StartOverInTheFirstWithEachTranslation)
{
    makeFolder(QStringLiteral("data"));
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("data")));
    browser.reTranslateUI();
    EXPECT_EQ(listed(), QStringList(QStringLiteral("data")));
    EXPECT_EQ(rootNames->count(), 1) << "the names do not pile up";
}

TEST_F(FileBrowserRoots, MayBeMissingAltogether)
{
    browser.reTranslateUI();
    EXPECT_EQ(rootNames->currentIndex(), -1);
    EXPECT_TRUE(showsThatFolderIsMissing());
    show(browser);
    tap(back);
    EXPECT_TRUE(showsThatFolderIsMissing());
}

TEST_F(FileBrowserRoots, MayBeMissingInALaterTranslationThatKeepsTheFolder)
{
    makeFolder(QStringLiteral("data/deep"));
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("data")));
    browser.setFileBrowserInfo({});
    browser.reTranslateUI();
    EXPECT_EQ(listed(), QStringList(QStringLiteral("deep")));
}

TEST_F(FileBrowserRoots, MayLieNowhereAndThenDisableTheReturnButton)
{
    makeFolder(QStringLiteral("there"));
    browser.setFileBrowserInfo({{QStringLiteral("USB stick"), path(QStringLiteral("gone"))},
                                {QStringLiteral("Storage"), path(QStringLiteral("there"))}});
    browser.reTranslateUI();
    show(browser);
    EXPECT_TRUE(showsThatFolderIsMissing());
    tap(back);
    EXPECT_TRUE(showsThatFolderIsMissing());
    QTest::keyClick(rootNames, Qt::Key_Down);
    EXPECT_EQ(rootNames->currentIndex(), 1);
    EXPECT_EQ(list->count(), 0) << "the other root is an empty folder";
}

TEST_F(FileBrowserRoots, BoundTheReturnButton)
{
    makeFolder(QStringLiteral("root/one/two"));
    browser.setFileBrowserInfo({{QStringLiteral("Storage"), path(QStringLiteral("root"))}});
    browser.reTranslateUI();
    show(browser);
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one"))) << "nothing is above the root";
    tapItem(QStringLiteral("one"));
    EXPECT_EQ(listed(), QStringList(QStringLiteral("two")));
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one")));
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one")));
}

TEST_F(FileBrowserRoots, AreOnlyComparedSoThatAFolderBesideThemIsLeftUpwards)
{
    makeFolder(QStringLiteral("root"));
    makeFolder(QStringLiteral("beside/deep"));
    browser.setFileBrowserInfo({{QStringLiteral("Storage"), path(QStringLiteral("root"))}});
    browser.reTranslateUI();
    browser.showDir(path(QStringLiteral("beside/deep")));
    show(browser);
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("deep")));
    tap(back);
    EXPECT_EQ(listed(), QStringList({QStringLiteral("beside"), QStringLiteral("root")}));
}

TEST_F(FileBrowserRoots, EndAtTheTopOfTheFileTree)
{
    browser.setFileBrowserInfo({{QStringLiteral("Storage"), root()}});
    browser.reTranslateUI();
    browser.showDir(QStringLiteral("/"));
    const QStringList atTheTop = listed();
    ASSERT_TRUE(atTheTop.contains(QStringLiteral("tmp")) || atTheTop.contains(QStringLiteral("usr")));
    EXPECT_EQ(list->item(0)->data(pathRole).toString(), QLatin1Char('/') + atTheTop.first());
    show(browser);
    tap(back);
    EXPECT_EQ(listed(), atTheTop);
}

TEST_F(FileBrowserRoots, AreNotLookedForBeyondTheirEnd)
{
    makeFolder(QStringLiteral("one/two"));
    browser.setFileBrowserInfo(
        {{QStringLiteral("A"), root()}, {QStringLiteral("B"), path(QStringLiteral("one"))}});
    browser.reTranslateUI();
    show(browser);
    browser.setFileBrowserInfo({});
    browser.showDir(path(QStringLiteral("one")));
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("two")));
    browser.showDir(root());
    rootNames->setCurrentIndex(1); // the names are still those of the last translation
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one")));
    rootNames->setCurrentIndex(-1);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one")));
    browser.setFileBrowserInfo({{QStringLiteral("A"), path(QStringLiteral("one"))}});
    rootNames->setCurrentIndex(1); // right behind the last that is left
    EXPECT_EQ(listed(), QStringList(QStringLiteral("one")));
    browser.showDir(path(QStringLiteral("one")));
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("two")));
}
