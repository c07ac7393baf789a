#include "network/dynamiclink.h"

#include "tests/network/linkpanel.h"

#include <QSettings>

using panelkit::testing::LinkPanel;

namespace {

class SaveLinkParam : public LinkPanel
{
protected:
    int save(dynamecslinkParam_t *param = nullptr) { return saveDynamicsLinkParam(&settings, &comm, param); }
};

class LoadLinkParam : public LinkPanel
{
protected:
    int load() { return loadDynamicsLinkParam(&settings, &comm); }
};

class LoadLinkFromFile : public LinkPanel
{
protected:
    int loadFromFile(dynamecslinkParam_t *param, const QString &group = QStringLiteral("link3"))
    {
        return loadDynamicsLinkFromFile(&settings, param, group, comm.links.value(3));
    }
};

const QStringList commonRead = {QStringLiteral("read 0:64002 1"), QStringLiteral("read 0:64003 1"),
                                QStringLiteral("read 0:64004 1"), QStringLiteral("read 0:64005 1"),
                                QStringLiteral("read 0:64006 1"), QStringLiteral("read 0:64007 1")};

const QStringList ethernetRead = {QStringLiteral("read 0:64020 1"), QStringLiteral("read 0:64021 1"),
                                  QStringLiteral("read 0:64022 1"), QStringLiteral("read 0:64023 1"),
                                  QStringLiteral("read 0:64024 1")};

const QStringList serialRead = {QStringLiteral("read 0:64040 1"), QStringLiteral("read 0:64041 2"),
                                QStringLiteral("read 0:64043 1"), QStringLiteral("read 0:64044 1"),
                                QStringLiteral("read 0:64045 1")};

QStringList requestTaken(int linkNumber)
{
    return {QStringLiteral("read 1:60212 1"), QStringLiteral("write 1:60212 0"),
            QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue %1").arg(linkNumber)};
}

// A record in which every field says whether it has been written.
dynamecslinkParam_t markedParam()
{
    return {-101, -102, -103, -104, -105, -106, -107, -108, -109,
            -110, -111, -112, -113, -114, -115, -116, -117, -118};
}

// The fields in their order.
QList<qint32> fields(const dynamecslinkParam_t &param)
{
    return {param.isEthernet, param.linkId,  param.station,      param.interval, param.timeout,
            param.retry,      param.addmore, param.addrInterval, param.ip1,      param.ip2,
            param.ip3,        param.ip4,     param.port,         param.mode,     param.baud,
            param.dataBits,   param.check,   param.stopBits};
}

} // namespace

TEST_F(SaveLinkParam, WithoutTheRequestWritesNothingAndKeepsTheFlag)
{
    for (quint16 request : std::initializer_list<quint16>{0, 2, 257, 65535}) {
        setFlag(60212, request);
        dynamecslinkParam_t param = markedParam();
        int saved = 1;
        EXPECT_EQ(journalOf([&] { saved = save(&param); }), QStringList(QStringLiteral("read 1:60212 1")));
        EXPECT_EQ(saved, 0);
        EXPECT_EQ(flag(60212), request);
        EXPECT_EQ(param.station, -103);
        EXPECT_TRUE(settings.allKeys().isEmpty());
    }
}

TEST_F(SaveLinkParam, OfAnUnknownLinkClearsTheFlagAndWritesNothing)
{
    for (int id : {0, -1, -2147483647}) {
        comm.links[4].id = id;
        setFlag(60212, 1);
        setWords(64000, {4});
        dynamecslinkParam_t param = markedParam();
        int saved = 1;
        EXPECT_EQ(journalOf([&] { saved = save(&param); }), requestTaken(4));
        EXPECT_EQ(saved, 0);
        EXPECT_EQ(flag(60212), 0);
        EXPECT_EQ(param.station, -103);
        EXPECT_TRUE(settings.allKeys().isEmpty());
    }
}

TEST_F(SaveLinkParam, OfAnEthernetLinkReadsWritesAndReports)
{
    editLink(12);
    dynamecslinkParam_t param = markedParam();
    int saved = 0;
    EXPECT_EQ(journalOf([&] { saved = save(&param); }), requestTaken(12) + commonRead + ethernetRead);
    EXPECT_EQ(saved, 1);
    EXPECT_EQ(flag(60212), 0);
    EXPECT_EQ(fields(param),
              QList<qint32>({1, 12, 5, 100, 1000, 3, 1, 16, 192, 168, 1, 77, 502, 0, 0, 0, 0, 0}));
}

TEST_F(SaveLinkParam, OfAnEthernetLinkWritesItsGroupWithoutSerialKeys)
{
    editLink(12);
    EXPECT_EQ(save(), 1);
    EXPECT_EQ(settings.childGroups(), QStringList(QStringLiteral("link12")));
    QStringList keys = settings.allKeys();
    keys.sort();
    EXPECT_EQ(keys, QStringList({QStringLiteral("link12/addmore"), QStringLiteral("link12/addrinterval"),
                                 QStringLiteral("link12/driLib"), QStringLiteral("link12/interval"),
                                 QStringLiteral("link12/ip1"), QStringLiteral("link12/ip2"),
                                 QStringLiteral("link12/ip3"), QStringLiteral("link12/ip4"),
                                 QStringLiteral("link12/plcStation"), QStringLiteral("link12/port"),
                                 QStringLiteral("link12/retry"), QStringLiteral("link12/timeout")}));
    EXPECT_EQ(settings.value(QStringLiteral("link12/driLib")).toString(), QStringLiteral("libmodbus_tcp.so"));
    EXPECT_EQ(settings.value(QStringLiteral("link12/plcStation")).toInt(), 5);
    EXPECT_EQ(settings.value(QStringLiteral("link12/interval")).toInt(), 100);
    EXPECT_EQ(settings.value(QStringLiteral("link12/timeout")).toInt(), 1000);
    EXPECT_EQ(settings.value(QStringLiteral("link12/retry")).toInt(), 3);
    EXPECT_EQ(settings.value(QStringLiteral("link12/addmore")).toInt(), 1);
    EXPECT_EQ(settings.value(QStringLiteral("link12/addrinterval")).toInt(), 16);
    EXPECT_EQ(settings.value(QStringLiteral("link12/ip1")).toInt(), 192);
    EXPECT_EQ(settings.value(QStringLiteral("link12/ip2")).toInt(), 168);
    EXPECT_EQ(settings.value(QStringLiteral("link12/ip3")).toInt(), 1);
    EXPECT_EQ(settings.value(QStringLiteral("link12/ip4")).toInt(), 77);
    EXPECT_EQ(settings.value(QStringLiteral("link12/port")).toInt(), 502);
}

TEST_F(SaveLinkParam, OfASerialLinkReadsWritesAndReports)
{
    editLink(3);
    dynamecslinkParam_t param = markedParam();
    int saved = 0;
    EXPECT_EQ(journalOf([&] { saved = save(&param); }), requestTaken(3) + commonRead + serialRead);
    EXPECT_EQ(saved, 1);
    EXPECT_EQ(fields(param),
              QList<qint32>({0, 3, 5, 100, 1000, 3, 1, 16, 0, 0, 0, 0, 0, 1, 115200, 8, 2, 1}));
    EXPECT_EQ(settings.value(QStringLiteral("link3/driLib")).toString(), QStringLiteral("libmodbus_rtu.so"));
    EXPECT_EQ(settings.value(QStringLiteral("link3/mode")).toInt(), 1);
    EXPECT_EQ(settings.value(QStringLiteral("link3/baudlow")).toInt(), 115200);
    EXPECT_EQ(settings.value(QStringLiteral("link3/data")).toInt(), 8);
    EXPECT_EQ(settings.value(QStringLiteral("link3/check")).toInt(), 2);
    EXPECT_EQ(settings.value(QStringLiteral("link3/stop")).toInt(), 1);
    for (const char *key : {"link3/ip1", "link3/ip2", "link3/ip3", "link3/ip4", "link3/port"})
        EXPECT_FALSE(settings.contains(QLatin1String(key))) << key;
}

TEST_F(SaveLinkParam, NeedsNoRecord)
{
    editLink(3);
    EXPECT_EQ(save(nullptr), 1);
    EXPECT_EQ(settings.value(QStringLiteral("link3/plcStation")).toInt(), 5);
}

TEST_F(SaveLinkParam, NeedsSettingsAndCommunication)
{
    editLink(3);
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(saveDynamicsLinkParam(nullptr, &comm, &param), 0);
    EXPECT_EQ(saveDynamicsLinkParam(&settings, nullptr, &param), 0);
    EXPECT_TRUE(journal().isEmpty());
    EXPECT_EQ(param.station, -103);
    EXPECT_EQ(flag(60212), 1);
}

TEST_F(SaveLinkParam, TakesAFlagThatCannotBeReadForZero)
{
    editLink(3);
    comm.silentRegisters << 60212;
    EXPECT_EQ(journalOf([&] { EXPECT_EQ(save(), 0); }), QStringList(QStringLiteral("read 1:60212 1")));
}

TEST_F(SaveLinkParam, TakesALinkNumberThatCannotBeReadForTheLastAndParametersForZero)
{
    editLink(3);
    comm.silentRegisters << 64000 << 64002 << 64003 << 64004 << 64005 << 64006 << 64007 << 64040 << 64041
                         << 64042 << 64043 << 64044 << 64045;
    comm.links.insert(65535, comm.links.value(3));
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(save(&param), 1);
    EXPECT_EQ(fields(param), QList<qint32>({0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(settings.childGroups(), QStringList(QStringLiteral("link65535")));
}

TEST_F(SaveLinkParam, FindsTheEthernetLinkAnywhereInThePortsNameAndWithCase)
{
    const struct
    {
        const char *portName;
        qint32 isEthernet;
    } rows[] = {{"Ethernet", 1}, {"MyEthernet2", 1}, {"ethernet", 0}, {"ETHERNET", 0}, {"COM1", 0}, {"", 0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.portName);
        editLink(3);
        comm.links[3].portName = QLatin1String(row.portName);
        dynamecslinkParam_t param = markedParam();
        EXPECT_EQ(save(&param), 1);
        EXPECT_EQ(param.isEthernet, row.isEthernet);
    }
}

TEST_F(SaveLinkParam, TakesTheGroupFromTheRegisterAndTheIdFromTheLink)
{
    editLink(3);
    comm.links[65535] = comm.links.value(3);
    comm.links[65535].id = 8;
    setWords(64000, {65535});
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(save(&param), 1);
    EXPECT_EQ(param.linkId, 8);
    EXPECT_EQ(settings.childGroups(), QStringList(QStringLiteral("link65535")));
}

TEST_F(SaveLinkParam, KeepsTheModeAsItIsInTheFileAndNormalisedInTheRecord)
{
    const struct
    {
        quint16 mode;
        qint32 recorded;
    } rows[] = {{0, 0}, {1, 1}, {2, 2}, {7, 2}, {65535, 2}};
    for (const auto &row : rows) {
        editLink(3);
        setWords(64040, {row.mode});
        dynamecslinkParam_t param = markedParam();
        EXPECT_EQ(save(&param), 1);
        EXPECT_EQ(settings.value(QStringLiteral("link3/mode")).toInt(), row.mode);
        EXPECT_EQ(param.mode, row.recorded);
    }
}

TEST_F(SaveLinkParam, LeavesKeysOfTheOtherKindAndOtherGroupsUntouched)
{
    editLink(3);
    EXPECT_EQ(save(), 1);
    comm.links[3].portName = QStringLiteral("Ethernet 1");
    editLink(3);
    EXPECT_EQ(save(), 1);
    editLink(12);
    EXPECT_EQ(save(), 1);
    EXPECT_EQ(settings.value(QStringLiteral("link3/baudlow")).toInt(), 115200);
    EXPECT_EQ(settings.value(QStringLiteral("link3/ip4")).toInt(), 77);
    EXPECT_EQ(settings.childGroups().size(), 2);
}

TEST_F(SaveLinkParam, IsOnDiskWhenItReturnsAndLeavesNoGroupOpen)
{
    editLink(3);
    EXPECT_EQ(save(), 1);
    EXPECT_TRUE(settings.group().isEmpty());
    QFile file(settings.fileName());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("baudlow=115200"));
}

TEST_F(SaveLinkParam, StoresTheWholeRangeOfAWordAndOfABaudRate)
{
    editLink(3);
    setWords(64002, {65535});
    setWords(64041, {65535, 65535});
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(save(&param), 1);
    EXPECT_EQ(param.station, 65535);
    EXPECT_EQ(param.baud, -1);
    EXPECT_EQ(settings.value(QStringLiteral("link3/plcStation")).toInt(), 65535);
    EXPECT_EQ(settings.value(QStringLiteral("link3/baudlow")).toInt(), -1);
}

TEST_F(LoadLinkFromFile, FillsTheRecordOfASerialLinkAndLeavesTheOtherFields)
{
    writeSettings(serialGroup);
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(loadFromFile(&param), 1);
    EXPECT_EQ(fields(param),
              QList<qint32>({0, 3, 21, 22, 23, 24, 25, 26, -109, -110, -111, -112, -113, 2, 9600, 7, 1, 2}));
    EXPECT_TRUE(journal().isEmpty());
    EXPECT_TRUE(settings.group().isEmpty());
}

TEST_F(LoadLinkFromFile, FillsTheRecordOfAnEthernetLinkAndLeavesTheOtherFields)
{
    writeSettings(
        "[link3]\ndriLib=libmodbus_rtu.so\nplcStation=21\ninterval=22\ntimeout=23\nretry=24\naddmore=25\n"
        "addrinterval=26\nip1=10\nip2=20\nip3=30\nip4=40\nport=5020\nmode=1\nbaudlow=9600\n");
    comm.links[3].portName = QStringLiteral("Ethernet");
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(loadFromFile(&param), 1);
    EXPECT_EQ(fields(param), QList<qint32>({1, 3, 21, 22, 23, 24, 25, 26, 10, 20, 30, 40, 5020, -114, -115,
                                            -116, -117, -118}));
}

TEST_F(LoadLinkFromFile, LeavesTheRecordWithoutTheGroup)
{
    writeSettings(serialGroup);
    for (const char *group : {"", "link", "link03", "LINK3", "link33", "link3/", "/link3", "link3/driLib"}) {
        SCOPED_TRACE(group);
        dynamecslinkParam_t param = markedParam();
        EXPECT_EQ(loadFromFile(&param, QLatin1String(group)), 0);
        EXPECT_EQ(fields(param), fields(markedParam()));
    }
}

TEST_F(LoadLinkFromFile, LeavesTheRecordWhenTheDriverIsAnother)
{
    writeSettings(serialGroup);
    for (const char *driver : {"libmodbus_tcp.so", "libmodbus_rtu.s", "LIBMODBUS_RTU.SO", ""}) {
        SCOPED_TRACE(driver);
        comm.links[3].driverLib = QLatin1String(driver);
        dynamecslinkParam_t param = markedParam();
        EXPECT_EQ(loadFromFile(&param), 0);
        EXPECT_EQ(fields(param), fields(markedParam()));
        EXPECT_TRUE(settings.group().isEmpty());
    }
}

TEST_F(LoadLinkFromFile, TakesAGroupWithoutDriverForALinkWithoutDriver)
{
    writeSettings("[link3]\nplcStation=7\n");
    comm.links[3].driverLib.clear();
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(loadFromFile(&param), 1);
    EXPECT_EQ(param.station, 7);
}

TEST_F(LoadLinkFromFile, NeedsSettingsAndRecord)
{
    writeSettings(serialGroup);
    dynamecslinkParam_t param = markedParam();
    EXPECT_EQ(loadFromFile(nullptr), 0);
    EXPECT_EQ(loadDynamicsLinkFromFile(nullptr, &param, QStringLiteral("link3"), comm.links.value(3)), 0);
    EXPECT_EQ(fields(param), fields(markedParam()));
}

TEST_F(LoadLinkParam, WritesTheStoredParametersOfASerialLink)
{
    writeSettings(serialGroup);
    setWords(64000, {3});
    int loaded = 0;
    EXPECT_EQ(journalOf([&] { loaded = load(); }),
              QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue 3"),
                           QStringLiteral("write 0:64002 21"), QStringLiteral("write 0:64003 22"),
                           QStringLiteral("write 0:64004 23"), QStringLiteral("write 0:64005 24"),
                           QStringLiteral("write 0:64006 25"), QStringLiteral("write 0:64007 26"),
                           QStringLiteral("write 0:64020 0"), QStringLiteral("write 0:64021 0"),
                           QStringLiteral("write 0:64022 0"), QStringLiteral("write 0:64023 0"),
                           QStringLiteral("write 0:64024 0"), QStringLiteral("write 0:64040 2"),
                           QStringLiteral("write 0:64041 9600 0"), QStringLiteral("write 0:64043 7"),
                           QStringLiteral("write 0:64044 1"), QStringLiteral("write 0:64045 2")}));
    EXPECT_EQ(loaded, 1);
}

TEST_F(LoadLinkParam, WritesTheStoredParametersOfAnEthernetLink)
{
    writeSettings(
        "[link12]\ndriLib=libmodbus_tcp.so\nplcStation=21\ninterval=22\ntimeout=23\nretry=24\naddmore=25\n"
        "addrinterval=26\nip1=10\nip2=20\nip3=30\nip4=40\nport=5020\nmode=1\nbaudlow=9600\n");
    setWords(64000, {12});
    int loaded = 0;
    EXPECT_EQ(journalOf([&] { loaded = load(); }),
              QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue 12"),
                           QStringLiteral("write 0:64002 21"), QStringLiteral("write 0:64003 22"),
                           QStringLiteral("write 0:64004 23"), QStringLiteral("write 0:64005 24"),
                           QStringLiteral("write 0:64006 25"), QStringLiteral("write 0:64007 26"),
                           QStringLiteral("write 0:64020 10"), QStringLiteral("write 0:64021 20"),
                           QStringLiteral("write 0:64022 30"), QStringLiteral("write 0:64023 40"),
                           QStringLiteral("write 0:64024 5020"), QStringLiteral("write 0:64040 0"),
                           QStringLiteral("write 0:64041 0 0"), QStringLiteral("write 0:64043 0"),
                           QStringLiteral("write 0:64044 0"), QStringLiteral("write 0:64045 0")}));
    EXPECT_EQ(loaded, 1);
}

TEST_F(LoadLinkParam, FromAnEmptyFileWritesTheProjectsValues)
{
    setWords(64000, {12});
    int loaded = 0;
    EXPECT_EQ(journalOf([&] { loaded = load(); }),
              QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue 12"),
                           QStringLiteral("write 0:64002 31"), QStringLiteral("write 0:64003 32"),
                           QStringLiteral("write 0:64004 33"), QStringLiteral("write 0:64005 34"),
                           QStringLiteral("write 0:64006 35"), QStringLiteral("write 0:64007 36"),
                           QStringLiteral("write 0:64020 172"), QStringLiteral("write 0:64021 16"),
                           QStringLiteral("write 0:64022 0"), QStringLiteral("write 0:64023 9"),
                           QStringLiteral("write 0:64024 44818"), QStringLiteral("write 0:64040 0"),
                           QStringLiteral("write 0:64041 0 0"), QStringLiteral("write 0:64043 0"),
                           QStringLiteral("write 0:64044 0"), QStringLiteral("write 0:64045 0")}));
    EXPECT_EQ(loaded, 1);
    EXPECT_TRUE(settings.allKeys().isEmpty());
}

TEST_F(LoadLinkParam, WithAChangedDriverWritesTheProjectsValuesAndSerialModeZero)
{
    writeSettings(QByteArray(serialGroup).replace("libmodbus_rtu.so", "libother.so"));
    setWords(64000, {3});
    int loaded = 0;
    EXPECT_EQ(journalOf([&] { loaded = load(); }),
              QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue 3"),
                           QStringLiteral("write 0:64002 41"), QStringLiteral("write 0:64003 42"),
                           QStringLiteral("write 0:64004 43"), QStringLiteral("write 0:64005 44"),
                           QStringLiteral("write 0:64006 45"), QStringLiteral("write 0:64007 46"),
                           QStringLiteral("write 0:64020 0"), QStringLiteral("write 0:64021 0"),
                           QStringLiteral("write 0:64022 0"), QStringLiteral("write 0:64023 0"),
                           QStringLiteral("write 0:64024 0"), QStringLiteral("write 0:64040 0"),
                           QStringLiteral("write 0:64041 38400 0"), QStringLiteral("write 0:64043 8"),
                           QStringLiteral("write 0:64044 1"), QStringLiteral("write 0:64045 2")}));
    EXPECT_EQ(loaded, 1);
}

TEST_F(LoadLinkParam, TakesTheProjectsParityOnlyFromZeroToTwo)
{
    setWords(64000, {3});
    const struct
    {
        qint32 check;
        quint16 written;
    } rows[] = {{0, 0}, {1, 1}, {2, 2}, {3, 0}, {5, 0}, {-1, 0}, {65537, 0}};
    for (const auto &row : rows) {
        comm.links[3].check = row.check;
        setWords(64044, {99});
        EXPECT_EQ(load(), 1);
        EXPECT_EQ(word(64044), row.written) << row.check;
    }
}

TEST_F(LoadLinkParam, TakesAStoredParityAsItIs)
{
    writeSettings(QByteArray(serialGroup).replace("check=1", "check=5"));
    setWords(64000, {3});
    EXPECT_EQ(load(), 1);
    EXPECT_EQ(word(64044), 5);
}

TEST_F(LoadLinkParam, OfAnUnknownLinkWritesNothing)
{
    writeSettings("[link4]\nplcStation=1\n[link0]\nplcStation=1\n");
    for (quint16 number : std::initializer_list<quint16>{4, 0}) {
        setWords(64000, {number});
        comm.links[number].id = 0;
        int loaded = 1;
        EXPECT_EQ(
            journalOf([&] { loaded = load(); }),
            QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue %1").arg(number)}));
        EXPECT_EQ(loaded, 0);
    }
}

TEST_F(LoadLinkParam, TakesALinkNumberThatCannotBeReadForZero)
{
    setWords(64000, {3});
    comm.silentRegisters << 64000;
    EXPECT_EQ(journalOf([&] { EXPECT_EQ(load(), 0); }),
              QStringList({QStringLiteral("read 0:64000 1"), QStringLiteral("getLinkValue 0")}));
}

TEST_F(LoadLinkParam, NeedsSettingsAndCommunication)
{
    setWords(64000, {3});
    EXPECT_EQ(loadDynamicsLinkParam(nullptr, &comm), 0);
    EXPECT_EQ(loadDynamicsLinkParam(&settings, nullptr), 0);
    EXPECT_TRUE(journal().isEmpty());
}

TEST_F(LoadLinkParam, BringsBackWhatWasSaved)
{
    const struct
    {
        const char *name;
        quint16 low, high;
    } rates[] = {{"115200", 49664, 1}, {"9600", 9600, 0}, {"all bits", 65535, 65535}, {"the sign", 0, 32768}};
    for (const auto &rate : rates) {
        SCOPED_TRACE(rate.name);
        editLink(3);
        setWords(64040, {7, rate.low, rate.high});
        EXPECT_EQ(saveDynamicsLinkParam(&settings, &comm, nullptr), 1);
        setWords(64002, {0, 0, 0, 0, 0, 0});
        setWords(64040, {0, 0, 0, 0, 0, 0});
        EXPECT_EQ(load(), 1);
        EXPECT_EQ(word(64002), 5);
        EXPECT_EQ(word(64007), 16);
        EXPECT_EQ(word(64040), 2) << "a mode of 7 comes back as 2";
        EXPECT_EQ(word(64041), rate.low);
        EXPECT_EQ(word(64042), rate.high);
        EXPECT_EQ(word(64045), 1);
    }
    EXPECT_EQ(settings.value(QStringLiteral("link3/mode")).toInt(), 7);
}

TEST_F(LoadLinkParam, KnowsTheFirstLink)
{
    LinkValue first = comm.links.value(3);
    first.id = 1;
    comm.links.insert(1, first);
    editLink(1);
    EXPECT_EQ(saveDynamicsLinkParam(&settings, &comm, nullptr), 1);
    setWords(64002, {0});
    EXPECT_EQ(loadDynamicsLinkParam(&settings, &comm), 1);
    EXPECT_EQ(word(64002), 5);
}

TEST_F(LoadLinkParam, TellsLinksApart)
{
    writeSettings(
        "[link1]\ndriLib=libmodbus_rtu.so\nplcStation=1\n[link12]\ndriLib=libmodbus_tcp.so\nplcStation=12\n"
        "[link3]\ndriLib=libmodbus_rtu.so\nplcStation=3\n");
    for (quint16 number : std::initializer_list<quint16>{12, 3}) {
        setWords(64000, {number});
        EXPECT_EQ(load(), 1);
        EXPECT_EQ(word(64002), number);
    }
}
