#include "widgets/folderlisting.h"

#include "tests/support/entrytypes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

using panelkit::FolderEntry;

class FolderListing : public ::testing::TestWithParam<bool>
{
protected:
    FolderListing()
    {
        panelkit::testing::setEntryTypesTold(GetParam());
        QDir(m_folder.path()).mkdir(QStringLiteral("zone"));
        QFile file(path("data.csv"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }

    ~FolderListing() override { panelkit::testing::setEntryTypesTold(true); }

    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    std::vector<std::unique_ptr<FolderEntry>> entries(bool withFiles, const QList<QString> &extensions = {})
    {
        std::vector<std::unique_ptr<FolderEntry>> owned;
        for (FolderEntry *entry : panelkit::folderEntries(m_folder.path(), withFiles, extensions))
            owned.emplace_back(entry);
        return owned;
    }

    QStringList names(bool withFiles)
    {
        QStringList texts;
        for (const auto &entry : entries(withFiles))
            texts << entry->text();
        return texts;
    }

    QTemporaryDir m_folder;
};

TEST_P(FolderListing, HasFoldersAndFilesAndNothingElse)
{
    ASSERT_EQ(symlink("data.csv", qPrintable(path("link.csv"))), 0);
    ASSERT_EQ(symlink("zone", qPrintable(path("linked"))), 0);
    ASSERT_EQ(symlink("nowhere", qPrintable(path("dangling"))), 0);
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    EXPECT_EQ(names(true), (QStringList{QStringLiteral("zone"), QStringLiteral("data.csv")}));
    EXPECT_EQ(names(false), QStringList(QStringLiteral("zone")));
}

TEST_P(FolderListing, TellsOfEachEntryItsPathAndItsKind)
{
    const auto listed = entries(true);
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0]->data(panelkit::pathRole).toString(), path("zone"));
    EXPECT_TRUE(listed[0]->data(panelkit::folderRole).toBool());
    EXPECT_EQ(listed[1]->data(panelkit::pathRole).toString(), path("data.csv"));
    EXPECT_FALSE(listed[1]->data(panelkit::folderRole).toBool());
    EXPECT_EQ(listed[1]->data(Qt::EditRole).toString(), QStringLiteral("data.csv"));
    EXPECT_FALSE(listed[1]->data(Qt::ToolTipRole).isValid());
}

TEST_P(FolderListing, PrefersWhatWasSetAndCopiesIt)
{
    const auto listed = entries(true);
    ASSERT_EQ(listed.size(), 2U);
    listed[1]->setData(panelkit::folderRole, true);
    listed[1]->setText(QStringLiteral("other"));
    const std::unique_ptr<QListWidgetItem> copy(listed[1]->clone());
    for (const QListWidgetItem *entry : {static_cast<const QListWidgetItem *>(listed[1].get()),
                                         static_cast<const QListWidgetItem *>(copy.get())}) {
        EXPECT_EQ(entry->text(), QStringLiteral("other"));
        EXPECT_TRUE(entry->data(panelkit::folderRole).toBool());
        EXPECT_EQ(entry->data(panelkit::pathRole).toString(), path("data.csv"));
    }
}

TEST_P(FolderListing, SortsNamesThatBeginAlikeAsTheToolkitDoes)
{
    // Each after the last one of its kind; some pairs differ only behind many characters, by their lengths,
    // by a control character, or by the first character that needs more than eight bits.
    const QString ends[] = {QStringLiteral("a"), QString(QChar(1)), QString(QChar(0x100))};
    for (const QString &end : ends) {
        SCOPED_TRACE(end.toStdString());
        const QString folder = m_folder.filePath(QStringLiteral("of ") + end);
        for (int length = 1; length <= 24; ++length)
            ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("/b") + end.repeated(length)));
        const QStringList expected = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        ASSERT_EQ(expected.size(), 24);
        QStringList listed;
        for (FolderEntry *entry : panelkit::folderEntries(folder, false, {})) {
            listed << entry->text();
            delete entry;
        }
        EXPECT_EQ(listed, expected);
    }
}

TEST_P(FolderListing, LeavesNoFolderOpen)
{
    const auto openFiles = [] {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
    };
    const auto before = openFiles();
    for (int i = 0; i < 10; ++i)
        names(true);
    EXPECT_EQ(openFiles(), before);
}

INSTANTIATE_TEST_SUITE_P(Types, FolderListing, ::testing::Values(true, false),
                         [](const auto &types) { return types.param ? "Told" : "Untold"; });
