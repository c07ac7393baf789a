#include "simulator/host/session.h"

#include "platform/sys_base.h"
#include "register/registervaluechange.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

std::unique_ptr<Session> openSession(const SessionOptions &options)
{
    QString error;
    auto session = Session::open(options, error);
    EXPECT_TRUE(session) << error.toStdString();
    return session;
}

std::unique_ptr<Session> openSession(const PlcServer &server)
{
    SessionOptions options;
    options.plc.emplace(PlcAddress{QStringLiteral("127.0.0.1"), server.port()});
    return openSession(options);
}

QString refusal(const SessionOptions &options)
{
    QString error;
    EXPECT_FALSE(Session::open(options, error));
    EXPECT_FALSE(error.contains(QLatin1Char('\n')));
    return error;
}

std::size_t itemNamed(const Session &session, const char *name)
{
    for (std::size_t i = 0; i < session.project().items.size(); ++i)
        if (session.project().items[i].name == QLatin1String(name))
            return i;
    ADD_FAILURE() << "the sample has no item " << name;
    return 0;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

} // namespace

TEST(PlcAddress, IsAHostAndAPort)
{
    const auto address = parsePlcAddress(QStringLiteral("plc.example:1502"));
    ASSERT_TRUE(address);
    EXPECT_EQ(address->host, QStringLiteral("plc.example"));
    EXPECT_EQ(address->port, 1502);
}

TEST(PlcAddress, TakesAnIpv6HostInBracketsOnly)
{
    const auto address = parsePlcAddress(QStringLiteral("[::1]:502"));
    ASSERT_TRUE(address);
    EXPECT_EQ(address->host, QStringLiteral("::1"));
    EXPECT_FALSE(parsePlcAddress(QStringLiteral("::1:502")));
}

TEST(PlcAddress, IsNothingWithoutAHostOrAPortFrom1To65535)
{
    for (const char *text :
         {"", ":", "host", "host:", ":502", "host:0", "host:65536", "host:-1", "host:x", "[]:502"})
        EXPECT_FALSE(parsePlcAddress(QLatin1String(text))) << text;
}

TEST(Session, OpensTheSampleAndSetsTheApplicationRecord)
{
    const auto session = openSession({});
    ASSERT_TRUE(session);
    const sys_base_app_pro *record = sys_base_get_app_pro();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->screenWidth, 800);
    EXPECT_EQ(record->screenHeight, 480);
    EXPECT_EQ(record->comm, &session->communication());
}

TEST(Session, TakesTheApplicationRecordAwayAtItsEnd)
{
    openSession({}).reset();
    EXPECT_EQ(sys_base_get_app_pro(), nullptr);
    EXPECT_TRUE(tools_systemRoot().isEmpty());
}

TEST(Session, RemovesATemporaryRootAtItsEnd)
{
    auto session = openSession({});
    const QString root = tools_systemRoot();
    EXPECT_TRUE(QFileInfo(root + QStringLiteral("/usr/tesk42/project/driver")).isDir());
    session.reset();
    EXPECT_FALSE(QFileInfo::exists(root));
}

TEST(Session, KeepsItsFilesBelowANamedRoot)
{
    const QTemporaryDir folder;
    const QString root = folder.filePath(QStringLiteral("panel"));
    SessionOptions options;
    options.root = root;
    openSession(options).reset();
    EXPECT_TRUE(QFileInfo(root + QStringLiteral("/usr/tesk42/project/cache/links.json")).isFile());

    QFile kept(root + QStringLiteral("/usr/tesk42/config.ini"));
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
    kept.write("MODEL=W10\n");
    kept.close();
    openSession(options).reset();
    EXPECT_EQ(contentOf(kept.fileName()), "MODEL=W10\n");
}

TEST(Session, WritesTheLinkListOfTheProject)
{
    const auto session = openSession({});
    const QByteArray json =
        contentOf(tools_systemRoot() + QStringLiteral("/usr/tesk42/project/cache/links.json"));
    const QJsonArray links = QJsonDocument::fromJson(json).object().value(QStringLiteral("links")).toArray();
    ASSERT_EQ(links.size(), 3);
    EXPECT_EQ(links.at(0).toObject().value(QStringLiteral("linkName")).toString(),
              QStringLiteral("Line PLC"));
}

TEST(Session, RefusesAMissingProjectByItsPath)
{
    SessionOptions options;
    options.projectFile = QStringLiteral("/nowhere/project.json");
    EXPECT_TRUE(refusal(options).startsWith(QStringLiteral("/nowhere/project.json: found No such file")));
}

TEST(Session, RefusesAWrongValueByFileAndPathAndLeavesNothingBehind)
{
    const QTemporaryDir folder;
    SessionOptions options;
    options.projectFile = folder.filePath(QStringLiteral("wrong.json"));
    options.root = folder.filePath(QStringLiteral("panel"));
    QFile file(options.projectFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"name": "X", "screenWidth": 0, "screenHeight": 272})");
    file.close();
    EXPECT_EQ(refusal(options),
              options.projectFile + QStringLiteral(": screenWidth: found 0, expected a whole "
                                                   "number from 1 to 8192"));
    EXPECT_FALSE(QFileInfo::exists(options.root));
    EXPECT_EQ(sys_base_get_app_pro(), nullptr);
}

TEST(Session, RefusesARootThatIsAFile)
{
    const QTemporaryDir folder;
    SessionOptions options;
    options.root = folder.filePath(QStringLiteral("file"));
    ASSERT_TRUE(QFile(options.root).open(QIODevice::WriteOnly));
    EXPECT_EQ(refusal(options),
              options.root + QStringLiteral("/etc: the folder cannot be made: name another one with --root"));
}

TEST(Session, RefusesAPlcOnAnUnknownHost)
{
    SessionOptions options;
    options.plc = parsePlcAddress(QStringLiteral("no-such-host.invalid:502"));
    EXPECT_TRUE(refusal(options).startsWith(QStringLiteral("no-such-host.invalid: there is no such host")));
}

TEST(ItemDisplay, ShowsWhatTheNamedPlcHolds)
{
    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    memory.setValue(1, ModbusTable::InputRegisters, 1, 421); // the tank's level in tenths of a per cent
    const PlcServer server(memory);
    const auto session = openSession(server);
    ASSERT_TRUE(session);
    watchItems(*session);

    const ItemDisplay display = displayItem(*session, itemNamed(*session, "Tank level"));
    EXPECT_EQ(display.address, QStringLiteral("3x2"));
    EXPECT_EQ(display.words, QVector<quint16>{421});
    EXPECT_EQ(display.text, QStringLiteral("42.1"));
    EXPECT_EQ(display.linkNumber, 1);
}

TEST(ItemDisplay, ReadsEachStationOfALinkOfMany)
{
    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    memory.setValue(2, ModbusTable::InputRegisters, 3, 17);  // bottles rejected by the packer
    memory.setValue(3, ModbusTable::InputRegisters, 0, 400); // pallets finished
    const PlcServer server(memory);
    const auto session = openSession(server);
    ASSERT_TRUE(session);

    EXPECT_EQ(displayItem(*session, itemNamed(*session, "Bottles rejected")).text, QStringLiteral("17"));
    const ItemDisplay pallets = displayItem(*session, itemNamed(*session, "Pallets finished"));
    EXPECT_EQ(pallets.text, QStringLiteral("400"));
    EXPECT_EQ(pallets.address, QStringLiteral("2/3#3x1"));
}

TEST(ItemDisplay, ShowsTheInternalStorage)
{
    const auto session = openSession({});
    ASSERT_TRUE(session);
    RegisterValueChange address = {};
    address.station = -1;
    address.index = 110;
    qstrncpy(address.block, "LW", sizeof(address.block));
    const quint16 word = 845;
    ASSERT_TRUE(session->communication().writeAddressWords(address, 1, &word));
    EXPECT_EQ(displayItem(*session, itemNamed(*session, "Order done, percent")).text, QStringLiteral("84.5"));
}

TEST(ItemDisplay, IsZeroOnALinkWithoutConnection)
{
    const auto session = openSession({});
    ASSERT_TRUE(session);
    const ItemDisplay display = displayItem(*session, itemNamed(*session, "Steam pressure"));
    EXPECT_EQ(display.text, QStringLiteral("0.00"));
    EXPECT_FALSE(display.isCurrent);
    EXPECT_FALSE(isOwed(*session, display));
}

TEST(ItemDisplay, IsOwedByAPlcThatRefuses)
{
    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    PlcServer server(memory);
    server.setFault({PlcFault::Exception});
    const auto session = openSession(server);
    ASSERT_TRUE(session);
    EXPECT_TRUE(isOwed(*session, displayItem(*session, itemNamed(*session, "Tank level"))));
    server.clearFault();
    EXPECT_FALSE(isOwed(*session, displayItem(*session, itemNamed(*session, "Pallets finished"))));
}
