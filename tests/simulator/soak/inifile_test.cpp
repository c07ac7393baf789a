#include "simulator/soak/inifile.h"

#include "simulator/soak/fulldisk.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

TEST(IniFile, GivesTheValuesOfItsSections)
{
    const IniValues values = iniValues("[a]\nx=1\nno setting\n\n[b]\r\nx=2=3\r\n=4\n");
    EXPECT_EQ(values, (IniValues{{"a/x", "1"}, {"b/x", "2=3"}}));
}

TEST(IniFile, SaysHowValuesDiffer)
{
    const IniValues expected{{"a/x", "1"}, {"a/y", "2"}};
    EXPECT_EQ(difference(expected, expected), QString());
    EXPECT_EQ(difference(expected, {{"a/x", "1"}}).toStdString(), "a/y is 'missing' and not '2'");
    EXPECT_EQ(difference(expected, {{"a/x", "0"}, {"a/y", "2"}}).toStdString(), "a/x is '0' and not '1'");
    EXPECT_EQ(difference(expected, {{"a/x", "1"}, {"a/y", "2"}, {"b/z", "3"}}).toStdString(),
              "b/z = '3' has come from nowhere");
}

TEST(IniFile, IsReplacedByANewFileUnderItsName)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.ini"));
    ASSERT_TRUE(replaceFile(path, "one"));
    QFile open(path);
    ASSERT_TRUE(open.open(QIODevice::ReadOnly));
    ASSERT_TRUE(replaceFile(path, "two"));
    EXPECT_EQ(open.readAll(), "one"); // who has opened it keeps what it was
    EXPECT_EQ(fileBytes(path), "two");
    EXPECT_FALSE(replaceFile(folder.filePath(QStringLiteral("missing/a.ini")), "x"));
}

TEST(FullDisk, EndsFilesForAWhile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    {
        const FullDisk disk(5);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        EXPECT_EQ(file.write("0123456789"), 5);
        EXPECT_EQ(file.write("x"), -1);
    }
    EXPECT_TRUE(replaceFile(path, "0123456789"));
    EXPECT_EQ(fileBytes(path).size(), 10);
}
