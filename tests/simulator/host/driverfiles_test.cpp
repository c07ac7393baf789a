#include "simulator/host/driverfiles.h"

#include "runtime/systemroot.h"
#include "simulator/host/session.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    file.write(content);
}

} // namespace

class DriverFiles : public ::testing::Test
{
protected:
    DriverFiles()
    {
        QString error;
        session = Session::open({}, error);
        EXPECT_TRUE(session) << error.toStdString();
    }

    // Of link 1, "Line PLC".
    DriverDiagnosis diagnosis() const { return diagnoseDrivers(*session).front(); }
    QString file() const { return tools_driverFilePath(text("drivers/Modbus"), 1); }

    static QByteArray testDriver(const char *name)
    {
        return contentOf(text(PANELKIT_TEST_DRIVERS "/") + text(name));
    }

    std::unique_ptr<Session> session;
};

TEST_F(DriverFiles, AreCopiesOneForEachLink)
{
    const QDir folder(tools_systemRoot() + text("/usr/tesk42/project/driver"));
    EXPECT_EQ(folder.entryList(QDir::Files | QDir::NoSymLinks), QStringList() << text("libByteAddressed_3.so")
                                                                              << text("libModbus_1.so")
                                                                              << text("libModbus_2.so"));
    EXPECT_EQ(contentOf(folder.filePath(text("libModbus_1.so"))),
              contentOf(text(PANELKIT_DRIVERS "/libModbus.so")));
}

TEST_F(DriverFiles, OfOthersAreLeftWhereTheyLie)
{
    QTemporaryDir folder;
    write(folder.filePath(text("project.json")),
          R"({"name": "X", "screenWidth": 480, "screenHeight": 272, "links": [{"number": 5, "name": "Own",
              "driver": "drivers/Own", "blocks": ["D"], "port": "Ethernet", "ip": "10.0.0.1", "tcpPort": 502}]})");
    SessionOptions options;
    options.projectFile = folder.filePath(text("project.json"));
    options.root = folder.filePath(text("panel"));
    const QString own = options.root + text("/usr/tesk42/project/driver/libOwn_5.so");
    ASSERT_TRUE(QDir().mkpath(QFileInfo(own).path()));
    write(own, "somebody's driver");
    session.reset();
    QString error;
    ASSERT_TRUE(Session::open(options, error)) << error.toStdString();
    EXPECT_EQ(contentOf(own), "somebody's driver");
}

TEST_F(DriverFiles, OfTheUserAreNotReplacedByThoseThatComeAlong)
{
    QTemporaryDir folder;
    SessionOptions options;
    options.root = folder.path();
    session.reset();
    const QString drivers = options.root + text("/usr/tesk42/project/driver");
    ASSERT_TRUE(QDir().mkpath(drivers));
    write(drivers + text("/libModbus_1.so"), "the user's driver");
    QString error;
    ASSERT_TRUE(Session::open(options, error)) << error.toStdString();
    EXPECT_EQ(contentOf(drivers + text("/libModbus_1.so")), "the user's driver");
    EXPECT_EQ(contentOf(drivers + text("/libModbus_2.so")),
              contentOf(text(PANELKIT_DRIVERS "/libModbus.so")));
}

TEST_F(DriverFiles, AreSoundAsTheyComeAlong)
{
    const std::vector<DriverDiagnosis> diagnoses = diagnoseDrivers(*session);
    ASSERT_EQ(diagnoses.size(), 3U);
    EXPECT_EQ(diagnoses[1].linkNumber, 2);
    EXPECT_EQ(diagnoses[1].linkName, text("Packing PLC"));
    EXPECT_EQ(diagnoses[1].file, tools_driverFilePath(text("Modbus"), 2));
    for (const DriverDiagnosis &diagnosis : diagnoses) {
        EXPECT_EQ(diagnosis.state, DriverFileState::Complete);
        EXPECT_TRUE(diagnosis.loads);
        EXPECT_TRUE(diagnosis.isSound());
        EXPECT_EQ(diagnosis.problem, QString());
    }
}

TEST_F(DriverFiles, ThatCannotBeLoadedAreToldApart)
{
    QByteArray foreign = contentOf(file());
    foreign[18] = char(0x55); // e_machine
    foreign[19] = char(0x55);
    const struct
    {
        QByteArray content;
        DriverFileState state;
        const char *problem;
    } rows[] = {
        {"a driver this is not\n", DriverFileState::NotALibrary, "The file is no shared library."},
        {contentOf(file()).left(3000), DriverFileState::Truncated,
         "The end of the library is missing: the copy broke off."},
        {foreign, DriverFileState::ForeignProcessor, "The library is for another processor."},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.problem);
        write(file(), row.content);
        EXPECT_EQ(diagnosis().state, row.state);
        EXPECT_FALSE(diagnosis().loads);
        EXPECT_FALSE(diagnosis().isSound());
        EXPECT_EQ(diagnosis().problem, text(row.problem));
    }
    ASSERT_TRUE(QFile::remove(file()));
    EXPECT_EQ(diagnosis().state, DriverFileState::Missing);
    EXPECT_EQ(diagnosis().problem, text("There is no such file, or it cannot be read."));
}

TEST_F(DriverFiles, ThatTheSystemRefusesSayWhy)
{
    // It asks for a library that there is not.
    write(file(), contentOf(file()).replace("libQt", "libXt"));
    EXPECT_EQ(diagnosis().state, DriverFileState::Complete);
    EXPECT_FALSE(diagnosis().loads);
    EXPECT_TRUE(diagnosis().problem.startsWith(text("The system does not load it: ")))
        << diagnosis().problem.toStdString();
}

TEST_F(DriverFiles, ThatLackAnEntryPointSayWhich)
{
    const struct
    {
        const char *driver, *problem;
    } rows[] = {
        {"nocheck.so", "It lacks intf_checkAddr."},
        {"novalidity.so", "It lacks intf_checkAddrValidity."},
        {"nodescription.so", "It lacks intf_getRegDiscription."},
    };
    for (const auto &row : rows) {
        write(file(), testDriver(row.driver));
        EXPECT_TRUE(diagnosis().loads);
        EXPECT_FALSE(diagnosis().isSound());
        EXPECT_EQ(diagnosis().problem, text(row.problem));
        ASSERT_TRUE(QFile::remove(file()));
    }
}
