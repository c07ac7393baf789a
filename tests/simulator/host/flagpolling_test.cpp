#include "simulator/host/flagpolling.h"

#include "network/panelip.h"
#include "platform/sys_base.h"
#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/operatormessages.h"
#include "simulator/host/session.h"
#include "simulator/platform/systembase.h"
#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

// A session on the sample, its PLC standing still, with the registers of an operator's screens.
class PolledSession : public ::testing::Test
{
protected:
    PolledSession() { open(); }

    void open()
    {
        session.reset();
        SessionOptions options;
        options.root = root.path();
        options.plc = PlcAddress{QStringLiteral("127.0.0.1"), plc.server.port()};
        QString error;
        session = Session::open(options, error);
        EXPECT_TRUE(session) << error.toStdString();
    }

    void write(int area, int address, std::initializer_list<quint16> words)
    {
        for (const quint16 word : words)
            ASSERT_EQ(session->communication().writeRegisters(area, address++, 1, &word), 0);
    }

    quint16 word(int area, int address)
    {
        quint16 value = 0;
        EXPECT_EQ(session->communication().readRegisters(area, address, 1, &value), 0);
        return value;
    }

    FlagPolling::Outcome poll() { return session->flags().poll(); }

    // The operator chooses link 1 and gives it another station, interval and address.
    void saveLink(quint16 port)
    {
        write(0, 64000, {1});
        poll();
        write(0, 64002, {3});
        write(0, 64003, {50});
        write(0, 64024, {port});
        write(1, 60212, {1});
    }

    // What a screen reads on link 1: the level of station 1's tank, or the pallets of station 3.
    quint16 inputRegister(int index)
    {
        RegisterValueChange address = {};
        address.linkId = 1;
        address.station = session->communication().getLinkValue(1).station;
        address.index = index;
        qstrncpy(address.block, "3x", sizeof(address.block));
        quint16 value = 0;
        const TransferResult result = session->communication().readAddressNow(address, 1, &value);
        EXPECT_EQ(result.status, TransferStatus::Done);
        return value;
    }

    struct StillPlc
    {
        PlcMemory memory{BottlingLine::units(), BottlingLine::registersPerTable};
        PlcServer server{memory};
    };

    QTemporaryDir root;
    StillPlc plc;
    std::unique_ptr<Session> session;
};

} // namespace

TEST_F(PolledSession, DoesNothingUnasked)
{
    const FlagPolling::Outcome outcome = poll();
    EXPECT_EQ(outcome.savedLink, 0);
    EXPECT_FALSE(outcome.savedAddress);
    EXPECT_FALSE(outcome.loadedAddress);
    EXPECT_FALSE(QFileInfo::exists(root.path() + QStringLiteral("/usr/tesk42/APP/linkparams.ini")));
    EXPECT_TRUE(recordedCommands().isEmpty());
}

TEST_F(PolledSession, FillsTheRegistersOfTheLinkThatTheOperatorChooses)
{
    write(0, 64000, {1});
    poll();
    EXPECT_EQ(word(0, 64003), 200);
    EXPECT_EQ(word(0, 64020), 127);
    EXPECT_EQ(word(0, 64024), 502);
    write(0, 64000, {3});
    poll();
    EXPECT_EQ(word(0, 64003), 500);
    EXPECT_EQ(word(0, 64020), 0);
    EXPECT_EQ(word(0, 64041), 19200);
    EXPECT_EQ(word(0, 64044), 2);
}

TEST_F(PolledSession, LeavesTheRegistersToTheOperatorWhileTheLinkStays)
{
    write(0, 64000, {1});
    poll();
    write(0, 64003, {77});
    poll();
    EXPECT_EQ(word(0, 64003), 77);
}

TEST_F(PolledSession, SavesALinkWhoseNumberAndParametersComeAtOnce)
{
    write(0, 64000, {1, 0, 9, 60, 700, 1, 0, 4});
    write(0, 64020, {127, 0, 0, 1, 502});
    write(1, 60212, {1});
    EXPECT_EQ(poll().savedLink, 1);
    EXPECT_EQ(word(1, 60212), 0);
    const QSettings file(root.path() + QStringLiteral("/usr/tesk42/APP/linkparams.ini"),
                         QSettings::IniFormat);
    EXPECT_EQ(file.value(QStringLiteral("link1/plcStation")).toInt(), 9);
    EXPECT_EQ(file.value(QStringLiteral("link1/interval")).toInt(), 60);
    EXPECT_EQ(file.value(QStringLiteral("link1/driLib")).toString(), QStringLiteral("drivers/Modbus"));
    EXPECT_EQ(word(0, 64002), 9);
}

TEST_F(PolledSession, LetsTheLinkWorkWithItsNewParametersAtOnceAndInLaterSessions)
{
    StillPlc other;
    plc.memory.setValue(1, ModbusTable::InputRegisters, 1, 111);
    other.memory.setValue(3, ModbusTable::InputRegisters, 1, 333);
    EXPECT_EQ(inputRegister(1), 111);

    saveLink(other.server.port());
    EXPECT_EQ(poll().savedLink, 1);
    const LinkValue link = session->communication().getLinkValue(1);
    EXPECT_EQ(link.station, 3);
    EXPECT_EQ(link.interval, 50);
    EXPECT_EQ(link.timeout, 1000) << "the project's, which the registers held";
    EXPECT_EQ(inputRegister(1), 333);

    open();
    EXPECT_EQ(session->communication().getLinkValue(1).interval, 50);
    EXPECT_EQ(inputRegister(1), 333);
    EXPECT_TRUE(session->flags().isStored(1));
    EXPECT_FALSE(session->flags().isStored(2));
}

TEST_F(PolledSession, KeepsALinkThatWasNotMovedAtTheNamedPlc)
{
    plc.memory.setValue(3, ModbusTable::InputRegisters, 1, 33);
    saveLink(502); // as the project has it
    EXPECT_EQ(poll().savedLink, 1);
    EXPECT_EQ(inputRegister(1), 33);
}

TEST_F(PolledSession, IgnoresParametersThatWereStoredForAnotherDriver)
{
    QFile file(root.path() + QStringLiteral("/usr/tesk42/APP/linkparams.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[link1]\ndriLib=drivers/Other\ninterval=5\n");
    file.close();
    open();
    EXPECT_EQ(session->communication().getLinkValue(1).interval, 200);
    EXPECT_FALSE(session->flags().isStored(1));
}

TEST_F(PolledSession, SavesThePanelsAddressAndTellsTheOperator)
{
    write(0, 64052, {192, 168, 1, 5, 255, 255, 255, 0, 192, 168, 1, 1, 8, 8, 8, 8});
    write(1, 60213, {1});
    EXPECT_TRUE(poll().savedAddress);
    EXPECT_EQ(takeOperatorMessages(), QStringList(QStringLiteral("Success.")));
    EXPECT_EQ(recordedCommands().size(), 2);
    const QSettings file(root.path() + QStringLiteral("/etc/panel.ini"), QSettings::IniFormat);
    EXPECT_EQ(file.value(QStringLiteral("network/ip")).toString(), QStringLiteral("192.168.1.5"));

    open();
    write(1, 60214, {1});
    EXPECT_TRUE(poll().loadedAddress);
    EXPECT_EQ(word(0, 64055), 5);
    EXPECT_EQ(word(1, 60214), 0);
}

TEST_F(PolledSession, RecordsCommandsUnlessItIsToldToRunThem)
{
    write(0, 64052, {192, 168, 1, 5, 255, 255, 255, 0, 192, 168, 1, 1, 8, 8, 8, 8});
    write(1, 60213, {1});
    poll();
    EXPECT_EQ(sys_base_do_system("false"), 0) << "not even tried";
    session.reset();
    EXPECT_TRUE(recordedCommands().isEmpty());

    SessionOptions options;
    options.runCommands = true;
    QString error;
    session = Session::open(options, error);
    ASSERT_TRUE(session);
    EXPECT_NE(sys_base_do_system("false"), 0);
    session.reset();
    EXPECT_EQ(sys_base_do_system("false"), 0) << "not beyond its session";
}

TEST(PanelFilesOfASession, LetThePanelsLoadBeThisMachines)
{
    const QTemporaryDir root;
    SessionOptions options;
    options.root = root.path();
    QString error;
    ASSERT_TRUE(Session::open(options, error));
    EXPECT_EQ(QFileInfo(root.path() + QStringLiteral("/proc/stat")).symLinkTarget(),
              QStringLiteral("/proc/stat"));
    ASSERT_TRUE(Session::open(options, error)) << "again, with the link there";
}

TEST(WithParameters, ReplacesWhatItsKindOfLinkHas)
{
    LinkValue link;
    link.id = 7;
    link.ip1 = 1;
    link.port = 2;
    link.baud = 3;
    link.check = 4;
    dynamecslinkParam_t param = {1, 99, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24, 25, 31, 32, 33, 34, 35};
    const LinkValue ethernet = withParameters(link, param);
    EXPECT_EQ(ethernet.id, 7);
    EXPECT_EQ(ethernet.station, 11);
    EXPECT_EQ(ethernet.interval, 12);
    EXPECT_EQ(ethernet.timeout, 13);
    EXPECT_EQ(ethernet.retry, 14);
    EXPECT_EQ(ethernet.addmore, 15);
    EXPECT_EQ(ethernet.addrInterval, 16);
    EXPECT_EQ(ethernet.ip1, 21);
    EXPECT_EQ(ethernet.ip4, 24);
    EXPECT_EQ(ethernet.port, 25);
    EXPECT_EQ(ethernet.baud, 3);
    EXPECT_EQ(ethernet.check, 4);

    param.isEthernet = 0;
    const LinkValue serial = withParameters(link, param);
    EXPECT_EQ(serial.ip1, 1);
    EXPECT_EQ(serial.port, 2);
    EXPECT_EQ(serial.baud, 32);
    EXPECT_EQ(serial.dataBits, 33);
    EXPECT_EQ(serial.check, 34);
    EXPECT_EQ(serial.stopBits, 35);
}
