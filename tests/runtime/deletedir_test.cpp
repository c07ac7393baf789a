#include "runtime/systeminfo.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/panelroot.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using panelkit::testing::OrdinaryUser;

namespace {

// The working directory lies within the test's own folder: were an empty path taken for it, nobody's files
// would go.
class DeleteDir : public ::testing::Test
{
protected:
    DeleteDir() : m_before(QDir::currentPath())
    {
        EXPECT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("tree")));
        EXPECT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("working")));
        EXPECT_TRUE(QDir::setCurrent(path(QStringLiteral("working"))));
    }
    ~DeleteDir() override { QDir::setCurrent(m_before); }

    QString path(const QString &name) const { return folder.filePath(name); }

    // Makes a file of that name, with its folders.
    void makeFile(const QString &name)
    {
        QFile file(path(name));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write("content"), 7);
    }

    // Everything below the tree, links and hidden entries too, sorted.
    QStringList left() const
    {
        QStringList names;
        const QDir tree(path(QStringLiteral("tree")));
        QDirIterator entries(tree.path(),
                             QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext())
            names.append(tree.relativeFilePath(entries.next()));
        names.sort();
        return names;
    }

    bool deleteTree() { return tools_deleteDir(path(QStringLiteral("tree"))); }

    QTemporaryDir folder;

private:
    QString m_before;
};

} // namespace

TEST_F(DeleteDir, RemovesFilesAndLeavesAllFoldersEmpty)
{
    makeFile(QStringLiteral("tree/a"));
    makeFile(QStringLiteral("tree/one/b.txt"));
    makeFile(QStringLiteral("tree/one/two/c"));
    makeFile(QStringLiteral("tree/one/two/name with blanks and %1"));
    makeFile(QString::fromUtf8("tree/three/\xe6\xb8\xa9\xe5\xba\xa6"));
    EXPECT_TRUE(deleteTree());
    EXPECT_EQ(left(),
              QStringList({QStringLiteral("one"), QStringLiteral("one/two"), QStringLiteral("three")}));
}

TEST_F(DeleteDir, LeavesHiddenFilesAndFoldersAlone)
{
    makeFile(QStringLiteral("tree/.hidden"));
    makeFile(QStringLiteral("tree/.folder/file"));
    makeFile(QStringLiteral("tree/open/.hidden"));
    makeFile(QStringLiteral("tree/open/file"));
    EXPECT_TRUE(deleteTree());
    EXPECT_EQ(left(), QStringList({QStringLiteral(".folder"), QStringLiteral(".folder/file"),
                                   QStringLiteral(".hidden"), QStringLiteral("open"),
                                   QStringLiteral("open/.hidden")}));
}

TEST_F(DeleteDir, RemovesLinksToFilesButNotTheirTargets)
{
    makeFile(QStringLiteral("outside/file"));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("outside/file")), path(QStringLiteral("tree/link"))));
    EXPECT_TRUE(deleteTree());
    EXPECT_TRUE(left().isEmpty());
    EXPECT_EQ(QFileInfo(path(QStringLiteral("outside/file"))).size(), 7);
}

TEST_F(DeleteDir, NeitherFollowsNorRemovesLinksToFolders)
{
    makeFile(QStringLiteral("outside/file"));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("outside")), path(QStringLiteral("tree/link"))));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("tree")), path(QStringLiteral("tree/circle"))));
    makeFile(QStringLiteral("tree/file"));
    EXPECT_TRUE(deleteTree());
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("tree/link"))).isSymLink());
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("tree/circle"))).isSymLink());
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("outside/file"))));
    EXPECT_FALSE(QFileInfo::exists(path(QStringLiteral("tree/file"))));
}

TEST_F(DeleteDir, FollowsAPathThatIsItselfALink)
{
    makeFile(QStringLiteral("tree/one/file"));
    ASSERT_TRUE(QFile::link(path(QStringLiteral("tree")), path(QStringLiteral("link"))));
    EXPECT_TRUE(tools_deleteDir(path(QStringLiteral("link"))));
    EXPECT_EQ(left(), QStringList({QStringLiteral("one")}));
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("link"))).isSymLink());
}

// The toolkit takes a relative name that begins with a colon for one of its resources.
TEST_F(DeleteDir, RemovesFilesWhoseNamesBeginWithAColon)
{
    makeFile(QStringLiteral("tree/:a.txt"));
    makeFile(QStringLiteral("tree/:one/:b.txt"));
    EXPECT_TRUE(deleteTree());
    EXPECT_EQ(left(), QStringList({QStringLiteral(":one")}));
}

TEST_F(DeleteDir, LeavesBrokenLinksAndPipesAlone)
{
    ASSERT_TRUE(QFile::link(path(QStringLiteral("nowhere")), path(QStringLiteral("tree/broken"))));
    ASSERT_EQ(mkfifo(QFile::encodeName(path(QStringLiteral("tree/pipe"))).constData(), 0600), 0);
    EXPECT_TRUE(deleteTree());
    EXPECT_EQ(left(), QStringList({QStringLiteral("broken"), QStringLiteral("pipe")}));
}

TEST_F(DeleteDir, GoesOnBehindFoldersThatItMayNotReadOrChange)
{
    makeFile(QStringLiteral("tree/secret/file"));
    makeFile(QStringLiteral("tree/fixed/file"));
    makeFile(QStringLiteral("tree/zebra/file"));
    const auto permit = [this](const char *name, mode_t mode) {
        ASSERT_EQ(chmod(QFile::encodeName(path(QLatin1String(name))).constData(), mode), 0);
    };
    permit("", 0755);
    permit("tree", 0755);
    permit("tree/secret", 0);
    permit("tree/fixed", 0555);
    permit("tree/zebra", 0777);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        EXPECT_TRUE(deleteTree());
    }
    permit("tree/secret", 0755);
    permit("tree/fixed", 0755);
    EXPECT_EQ(left(),
              QStringList({QStringLiteral("fixed"), QStringLiteral("fixed/file"), QStringLiteral("secret"),
                           QStringLiteral("secret/file"), QStringLiteral("zebra")}));
}

TEST_F(DeleteDir, ClearsAFolderOfTenThousandFiles)
{
    for (int i = 0; i < 10000; ++i)
        makeFile(QStringLiteral("tree/file%1").arg(i));
    EXPECT_TRUE(deleteTree());
    EXPECT_TRUE(left().isEmpty());
}

TEST_F(DeleteDir, ReachesFilesTwoHundredFoldersDeep)
{
    QString deep = QStringLiteral("tree");
    for (int i = 0; i < 200; ++i)
        deep += QStringLiteral("/level");
    makeFile(deep + QStringLiteral("/file"));
    makeFile(QStringLiteral("tree/level/level/file"));
    EXPECT_TRUE(deleteTree());
    EXPECT_FALSE(QFileInfo::exists(path(deep + QStringLiteral("/file"))));
    EXPECT_FALSE(QFileInfo::exists(path(QStringLiteral("tree/level/level/file"))));
    EXPECT_EQ(left().size(), 200);
}

TEST_F(DeleteDir, OfAnEmptyPathIsFalseAndLeavesTheWorkingDirectoryAlone)
{
    makeFile(QStringLiteral("working/file"));
    EXPECT_FALSE(tools_deleteDir(QString()));
    EXPECT_FALSE(tools_deleteDir(QLatin1String("")));
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("working/file"))));
}

TEST_F(DeleteDir, OfAMissingPathIsTrue)
{
    EXPECT_TRUE(tools_deleteDir(path(QStringLiteral("nowhere"))));
}

TEST_F(DeleteDir, LeavesAPathThatIsAFileAlone)
{
    makeFile(QStringLiteral("file"));
    EXPECT_TRUE(tools_deleteDir(path(QStringLiteral("file"))));
    EXPECT_TRUE(QFileInfo::exists(path(QStringLiteral("file"))));
}

TEST_F(DeleteDir, TakesARelativePathFromTheWorkingDirectory)
{
    makeFile(QStringLiteral("tree/one/file"));
    EXPECT_TRUE(tools_deleteDir(QStringLiteral("../tree")));
    EXPECT_EQ(left(), QStringList({QStringLiteral("one")}));
}

TEST_F(DeleteDir, LooksWhereTheCallerSaysWhateverTheSystemRoot)
{
    makeFile(QStringLiteral("tree/file"));
    const panelkit::testing::PanelRoot root;
    EXPECT_TRUE(deleteTree());
    EXPECT_TRUE(left().isEmpty());
}
