#include "tests/support/heapinuse.h"
#include "tests/support/ordinaryuser.h"
#include "tests/widgets/browserfixture.h"

#include <QImage>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace panelkit::testing;

namespace {

using FileBrowserListing = BrowserOn<WidgetFixture>;

const QDir::Filters everything = QDir::Dirs | QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot;

// How many points of the picture differ from its first.
int marks(const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) != picture.pixel(0, 0) ? 1 : 0;
    return count;
}

} // namespace

TEST_F(FileBrowserListing, FiltersFilesByTheirExactSuffix)
{
    makeFolder(QStringLiteral("folder.txt"));
    const QStringList files = {QStringLiteral("report.csv"),  QStringLiteral("report.CSV"),
                               QStringLiteral("README"),      QStringLiteral("archive.csv.gz"),
                               QStringLiteral("old.tar.csv"), QStringLiteral("dot."),
                               QStringLiteral("reportcsv"),   QStringLiteral("csv")};
    for (const QString &file : files)
        makeFile(file);
    browse(FileBro_SingleFile, {QStringLiteral("csv")});
    EXPECT_EQ(listed(), QStringList({QStringLiteral("folder.txt"), QStringLiteral("old.tar.csv"),
                                     QStringLiteral("report.csv")}));
    browse(FileBro_MultiFile, {QStringLiteral("gz"), QStringLiteral("CSV"), QString()});
    EXPECT_EQ(listed(), QStringList({QStringLiteral("folder.txt"), QStringLiteral("archive.csv.gz"),
                                     QStringLiteral("report.CSV")}));
}

TEST_F(FileBrowserListing, ShowsFoldersFirstAndSortsWithCase)
{
    for (const char *folder : {"b", "A", "a"})
        makeFolder(QLatin1String(folder));
    for (const char *file : {"c.csv", "B.csv", "1.csv", "a.csv"})
        makeFile(QLatin1String(file));
    browse(FileBro_SingleFile);
    EXPECT_EQ(listed(), QStringList({QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("b"),
                                     QStringLiteral("1.csv"), QStringLiteral("B.csv"),
                                     QStringLiteral("a.csv"), QStringLiteral("c.csv")}));
}

TEST_F(FileBrowserListing, ShowsOnlyFoldersInFolderMode)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_Folder);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("folder")));
}

TEST_F(FileBrowserListing, ShowsNothingInAnUnknownModeButMovesThere)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("a.csv"));
    browse(static_cast<FileBroType_e>(3));
    EXPECT_EQ(list->count(), 0);
    browser.setBroType(FileBro_Folder);
    EXPECT_EQ(browser.getSelectFile(), QStringList(root()));
}

TEST_F(FileBrowserListing, GivesEachEntryItsPathAndItsKind)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_SingleFile);
    const QListWidgetItem *const folder = item(QStringLiteral("folder"));
    EXPECT_EQ(folder->data(pathRole), QVariant(path(QStringLiteral("folder"))));
    EXPECT_EQ(folder->data(folderRole), QVariant(true));
    EXPECT_TRUE(folder->icon().isNull());
    const QListWidgetItem *const file = item(QStringLiteral("a.csv"));
    EXPECT_EQ(file->data(pathRole), QVariant(path(QStringLiteral("a.csv"))));
    EXPECT_EQ(file->data(folderRole), QVariant(false));
    EXPECT_TRUE(file->icon().isNull());
}

TEST_F(FileBrowserListing, LeavesOutHiddenEntriesLinksAndDevices)
{
    makeFolder(QStringLiteral("folder"));
    makeFolder(QStringLiteral(".hidden"));
    makeFile(QStringLiteral("file.csv"));
    makeFile(QStringLiteral(".hidden.csv"));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("folder")), path(QStringLiteral("link to a folder"))));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("file.csv")), path(QStringLiteral("link.csv"))));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("gone")), path(QStringLiteral("broken.csv"))));
    ASSERT_EQ(mkfifo(QFile::encodeName(path(QStringLiteral("pipe.csv"))).constData(), 0600), 0);
    browse(FileBro_SingleFile);
    EXPECT_EQ(listed(), QStringList({QStringLiteral("folder"), QStringLiteral("file.csv")}));
    browse(FileBro_Folder);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("folder")));
}

TEST_F(FileBrowserListing, FollowsALinkThatItIsToldToShow)
{
    makeFile(QStringLiteral("a.csv"));
    ASSERT_TRUE(QFile::link(root(), path(QStringLiteral("link"))));
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("link")));
    ASSERT_EQ(listed(), QStringList(QStringLiteral("a.csv")));
    EXPECT_EQ(list->item(0)->data(pathRole).toString(), path(QStringLiteral("link/a.csv")));
}

TEST_F(FileBrowserListing, ListsWhatTheToolkitLists)
{
    makeFolder(QStringLiteral("配方"));
    makeFolder(QStringLiteral("sub"));
    for (const char *file :
         {"报警记录.csv", "two\nlines.csv", "blank .csv", "-rf", "100%.csv", "a&b.csv", "quote'\".csv",
          "tab\t.csv", "\xF0\x9F\x98\x80.csv", "\xEF\xBF\xBD.csv", "\xEE\x80\x80.csv"})
        makeFile(QString::fromUtf8(file));
    makeFile(QString(255, QLatin1Char('x')));
    const QByteArray noText = QFile::encodeName(root()) + "/bad\xFF\xFE.csv";
    const int handle = open(noText.constData(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(handle, 0);
    close(handle);
    ASSERT_TRUE(QFile::link(path(QStringLiteral("sub")), path(QStringLiteral("link"))));

    const QString ways[] = {root(), root() + QLatin1Char('/'), path(QStringLiteral("sub/..")),
                            root() + QStringLiteral("//"), path(QStringLiteral("sub/../"))};
    browse(FileBro_SingleFile);
    for (const QString &way : ways) {
        SCOPED_TRACE(way.toStdString());
        const QFileInfoList expected = QDir(way).entryInfoList(everything, QDir::Name | QDir::DirsFirst);
        ASSERT_GE(expected.size(), 14);
        browser.showDir(way);
        ASSERT_EQ(list->count(), expected.size());
        for (int row = 0; row < list->count(); ++row) {
            EXPECT_EQ(list->item(row)->text(), expected.at(row).fileName());
            EXPECT_EQ(list->item(row)->data(pathRole).toString(), expected.at(row).filePath());
            EXPECT_EQ(list->item(row)->data(folderRole).toBool(), expected.at(row).isDir());
        }
    }
    QFile::remove(QFile::decodeName(noText));
    unlink(noText.constData());
}

TEST_F(FileBrowserListing, TakesARelativePath)
{
    makeFolder(QStringLiteral("sub"));
    makeFile(QStringLiteral("sub/a.csv"));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(root()));
    browser.showDir(QStringLiteral("./sub/"));
    EXPECT_EQ(listed(), QStringList(QStringLiteral("a.csv")));
    EXPECT_EQ(list->item(0)->data(pathRole).toString(), QStringLiteral("./sub/a.csv"));
    browser.setBroType(FileBro_Folder);
    EXPECT_EQ(browser.getSelectFile(), QStringList(QStringLiteral("sub")));
    QDir::setCurrent(before);
}

TEST_F(FileBrowserListing, SaysSoWhereThereIsNoFolder)
{
    makeFile(QStringLiteral("a.csv"));
    browse(FileBro_SingleFile);
    for (const QString &nowhere : {path(QStringLiteral("gone")), path(QStringLiteral("a.csv")), QString()}) {
        SCOPED_TRACE(nowhere.toStdString());
        browser.showDir(root());
        ASSERT_EQ(listed(), QStringList(QStringLiteral("a.csv")));
        browser.showDir(nowhere);
        EXPECT_TRUE(showsThatFolderIsMissing());
    }
}

TEST_F(FileBrowserListing, SaysSoWhenAFolderVanishesWhileItIsShown)
{
    makeFolder(QStringLiteral("stick/data/deep"));
    browse(FileBro_SingleFile);
    browser.showDir(path(QStringLiteral("stick/data")));
    show(browser);
    ASSERT_TRUE(QDir(path(QStringLiteral("stick"))).removeRecursively());
    tap(back);
    EXPECT_EQ(listed(), QStringList(QStringLiteral("deep"))) << "there is nothing above to go to";
    tapItem(QStringLiteral("deep"));
    EXPECT_TRUE(showsThatFolderIsMissing());
    tap(back);
    EXPECT_TRUE(showsThatFolderIsMissing()) << "only another root leads on";
    browser.showDir(root());
    EXPECT_EQ(list->count(), 0);
}

TEST_F(FileBrowserListing, ListsNothingWithoutPermission)
{
    makeFolder(QStringLiteral("closed/inner"));
    const auto reach = [](const QString &where, mode_t mode) {
        return chmod(QFile::encodeName(where).constData(), mode) == 0;
    };
    ASSERT_TRUE(reach(root(), 0755));
    ASSERT_TRUE(reach(path(QStringLiteral("closed")), 0));
    browse(FileBro_Folder);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        browser.showDir(path(QStringLiteral("closed")));
        EXPECT_EQ(list->count(), 0);
        EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("closed"))));
        browser.showDir(path(QStringLiteral("closed/inner")));
        EXPECT_TRUE(showsThatFolderIsMissing()) << "whether it is there cannot be seen";
    }
    ASSERT_TRUE(reach(path(QStringLiteral("closed")), 0700));
}

TEST_F(FileBrowserListing, HoldsTwentyThousandFiles)
{
    const int count = 20000;
    makeFile(QStringLiteral(".original")); // many names of one file are made faster than files
    const QByteArray original = QFile::encodeName(path(QStringLiteral(".original")));
    for (int i = 0; i < count; ++i) {
        const QString name = path(QStringLiteral("record_%1.csv").arg(i, 5, 10, QLatin1Char('0')));
        ASSERT_EQ(link(original.constData(), QFile::encodeName(name).constData()), 0);
    }
    makeFolder(QStringLiteral("zone"));
    browse(FileBro_SingleFile);
    ASSERT_EQ(list->count(), count + 1);
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("zone"));
    EXPECT_EQ(list->item(1)->text(), QStringLiteral("record_00000.csv"));
    EXPECT_EQ(list->item(count)->text(), QStringLiteral("record_19999.csv"));
    show(browser);
    tapItem(QStringLiteral("record_19999.csv"));
    EXPECT_EQ(browser.getSelectFile(), QStringList(path(QStringLiteral("record_19999.csv"))));

    browser.showDir(path(QStringLiteral("zone")));
    QApplication::processEvents();
    const std::size_t without = heapInUse();
    browser.showDir(root());
    QApplication::processEvents();
    EXPECT_LE((heapInUse() - without) / count, 350U) << "bytes of heap an entry";
}

TEST_F(FileBrowserListing, DrawsAFoldersNameAndAnArrowBehindIt)
{
    makeFolder(QStringLiteral("folder"));
    makeFile(QStringLiteral("file.csv"));
    browse(FileBro_SingleFile);
    show(browser);
    const auto rowOf = [this](const char *name) {
        const QRect row = list->visualItemRect(item(QLatin1String(name)));
        return list->viewport()->grab(row.adjusted(0, 2, 0, -2)).toImage();
    };
    const auto nameOf = [](const QImage &row) {
        return row.copy(0, 0, row.width() - 30, row.height());
    };
    const auto endOf = [](const QImage &row) {
        return row.copy(row.width() - 30, 0, 30, row.height());
    };
    EXPECT_GT(marks(nameOf(rowOf("folder"))), 0);
    EXPECT_GT(marks(endOf(rowOf("folder"))), 0);
    EXPECT_GT(marks(nameOf(rowOf("file.csv"))), 0);
    EXPECT_EQ(marks(endOf(rowOf("file.csv"))), 0);

    const QImage before = rowOf("folder");
    item(QStringLiteral("folder"))->setSelected(true);
    const QImage selected = rowOf("folder");
    EXPECT_EQ(selected.pixelColor(selected.width() - 1, 0), list->palette().color(QPalette::Highlight));
    EXPECT_NE(selected.pixelColor(0, 0), before.pixelColor(0, 0));
    EXPECT_GT(marks(nameOf(selected)), 0);
    EXPECT_GT(marks(endOf(selected)), 0);
}
