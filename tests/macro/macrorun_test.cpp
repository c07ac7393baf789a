#include "macro/events.h"
#include "macro/helpmacrolua.h"
#include "macro/interfaceall.h"
#include "tests/support/panelfixture.h"

#include <memory>
#include <vector>

using namespace panelkit::simulator;
using panelkit::testing::RecordingComm;

namespace {

QString described(const KEY_ADDRESS &address)
{
    return QStringLiteral("%1 station %2 %3 index %4 extra %5 reserved %6 %7 '%8' %9")
        .arg(address.linkName)
        .arg(address.station)
        .arg(address.blockName)
        .arg(address.addrIndex)
        .arg(address.extra)
        .arg(address.reservedA)
        .arg(address.reservedB)
        .arg(address.reservedText)
        .arg(address.reservedC);
}

QStringList described(const QList<KEY_ADDRESS> &addresses)
{
    QStringList lines;
    for (const KEY_ADDRESS &address : addresses)
        lines << described(address);
    return lines;
}

scriptVarTable variable(const QString &name, const QString &link, const QString &station,
                        const QString &index, const QString &extra, int type)
{
    scriptVarTable entry;
    entry.name = name;
    entry.linkName = link;
    entry.station = station;
    entry.blockName = QStringLiteral("D");
    entry.regIndex = index;
    entry.extra = extra;
    entry.dataType = type;
    return entry;
}

itemMacro macroWithTextVariables(const QStringList &declarations)
{
    itemMacro macro;
    macro.hasMacro = 1;
    macro.textVarList = declarations;
    return macro;
}

} // namespace

TEST(MonitorAddresses, TakeTextVariablesOfExactly6Fields)
{
    itemMacro macro = macroWithTextVariables(
        {QStringLiteral(" L1 ,2, D ,300,4,name"), QStringLiteral("L1,2,D,300,4"),
         QStringLiteral("L1,2,D,300,4,name,more"), QString(), QStringLiteral("L2,-1,LW,5,0,")});
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_EQ(described(out),
              (QStringList{QStringLiteral("L1 station 2 D index 300 extra 4 reserved 0 0 '' 0"),
                           QStringLiteral("L2 station -1 LW index 5 extra 0 reserved 0 0 '' 0")}));
    EXPECT_TRUE(comm.calls.isEmpty());
}

TEST(MonitorAddresses, HaveZerosForWhatIsNoDecimalInteger)
{
    itemMacro macro =
        macroWithTextVariables({QStringLiteral("L1,x,D,,1.5,n"), QStringLiteral("L1,0x10,D,12a,4294967296,n"),
                                QStringLiteral("L1, 7 ,D,-8,+9,n")});
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_EQ(described(out),
              (QStringList{QStringLiteral("L1 station 0 D index 0 extra 0 reserved 0 0 '' 0"),
                           QStringLiteral("L1 station 0 D index 0 extra 0 reserved 0 0 '' 0"),
                           QStringLiteral("L1 station 7 D index -8 extra 9 reserved 0 0 '' 0")}));
}

TEST(MonitorAddresses, ResolveTheVariablesThatTheMacrosRead)
{
    itemMacro macro;
    macro.hasMacro = 1;
    macro.varMap.insert(QStringLiteral("v"),
                        variable(QStringLiteral("v"), QStringLiteral("PLC1"), QStringLiteral("3"),
                                 QStringLiteral("D100.5"), QStringLiteral("2"), 7));
    RecordingComm comm;
    LinkValue link;
    link.id = 4;
    comm.linksByName.insert(QStringLiteral("PLC1"), link);
    comm.resolvedIndex = 1605;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_EQ(described(out),
              QStringList(QStringLiteral("PLC1 station 3 D index 1605 extra 2 reserved 0 0 '' 0")));
    EXPECT_EQ(comm.calls, (QStringList{QStringLiteral("getLinkValueByName PLC1"),
                                       QStringLiteral("resolveAddressIndex 4 D D100.5 2 7")}));
}

TEST(MonitorAddresses, ResolveAVariableOfAnUnknownLinkToo)
{
    itemMacro macro;
    macro.hasMacro = 1;
    macro.varMap.insert(QStringLiteral("v"),
                        variable(QStringLiteral("v"), QStringLiteral("gone"), QStringLiteral("a"),
                                 QStringLiteral("1"), QStringLiteral("b"), -1));
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_EQ(described(out),
              QStringList(QStringLiteral("gone station 0 D index 0 extra 0 reserved 0 0 '' 0")));
    EXPECT_EQ(comm.calls, (QStringList{QStringLiteral("getLinkValueByName gone"),
                                       QStringLiteral("resolveAddressIndex -1 D 1 0 -1")}));
}

TEST(MonitorAddresses, OfTextVariablesStandBeforeThoseOfReadVariablesInNameOrder)
{
    itemMacro macro = macroWithTextVariables({QStringLiteral("z,1,D,1,0,n"), QStringLiteral("y,1,D,1,0,n")});
    for (const char *name : {"b", "C", "a", "温"})
        macro.varMap.insert(QString::fromUtf8(name),
                            variable(QString::fromUtf8(name),
                                     QStringLiteral("link of ") + QString::fromUtf8(name), QString(),
                                     QString(), QString(), 0));
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    QStringList links;
    for (const KEY_ADDRESS &address : out)
        links << address.linkName;
    EXPECT_EQ(links, (QStringList{QStringLiteral("z"), QStringLiteral("y"), QStringLiteral("link of C"),
                                  QStringLiteral("link of a"), QStringLiteral("link of b"),
                                  QStringLiteral("link of 温")}));
}

TEST(MonitorAddresses, AreAppendedToWhatIsThere)
{
    itemMacro macro = macroWithTextVariables({QStringLiteral("L1,1,D,1,0,n")});
    RecordingComm comm;
    KEY_ADDRESS earlier;
    earlier.linkName = QStringLiteral("earlier");
    QList<KEY_ADDRESS> out = {earlier};
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    ASSERT_EQ(out.size(), 2);
    EXPECT_EQ(out[0].linkName, QStringLiteral("earlier"));
    EXPECT_EQ(out[1].linkName, QStringLiteral("L1"));
}

TEST(MonitorAddresses, AreNoneWithoutCommunication)
{
    itemMacro macro = macroWithTextVariables({QStringLiteral("L1,1,D,1,0,n")});
    macro.varMap.insert(QStringLiteral("v"), scriptVarTable());
    QList<KEY_ADDRESS> out = {KEY_ADDRESS()};
    helpMacroLua::registerLuaMonitorAddress(macro, out, nullptr);
    EXPECT_EQ(out.size(), 1);
}

TEST(MonitorAddresses, AreNoneForAnItemWithoutMacro)
{
    itemMacro macro = macroWithTextVariables({QStringLiteral("L1,1,D,1,0,n")});
    macro.hasMacro = 0;
    macro.varMap.insert(QStringLiteral("v"), scriptVarTable());
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(comm.calls.isEmpty());
}

TEST(MonitorAddresses, TakeAnyFlagButZeroForAMacro)
{
    itemMacro macro = macroWithTextVariables({QStringLiteral("L1,1,D,1,0,n")});
    macro.hasMacro = -3;
    RecordingComm comm;
    QList<KEY_ADDRESS> out;
    helpMacroLua::registerLuaMonitorAddress(macro, out, &comm);
    EXPECT_EQ(out.size(), 1);
}

class RunLua : public panelkit::testing::PanelFixture
{
protected:
    RunLua()
    {
        macro.hasMacro = 1;
        macro.macroMode = 3;
        macro.pressMacro = QStringLiteral("f()");
        macro.releaseMacro = QStringLiteral("g()");
        macro.pressArg = &press;
        macro.releaseArg = &release;
    }

    // The arguments of the macros that the runtime was asked to run since the last call, in order.
    std::vector<const InterfaceAll *> requests()
    {
        std::vector<const InterfaceAll *> arguments;
        while (auto entry = takeEventLibraryEntry()) {
            const auto *posted = std::get_if<PostedEvent>(&*entry);
            if (posted == nullptr) {
                ADD_FAILURE() << "something else than an event was posted";
                continue;
            }
            EXPECT_FALSE(posted->hadReceiver);
            const auto *call = dynamic_cast<const UExternalFuncCallEvent *>(posted->event.get());
            if (call == nullptr) {
                ADD_FAILURE() << "another event was posted";
                continue;
            }
            EXPECT_EQ(call->type(), 1010);
            EXPECT_TRUE(call->flag);
            EXPECT_EQ(call->funcName, QStringLiteral("runLua"));
            arguments.push_back(call->arg);
        }
        return arguments;
    }

    std::vector<const InterfaceAll *> requestsOf(ITEM_MACRO_TYPE type)
    {
        helpMacroLua::runLua(macro, type);
        return requests();
    }

    using Arguments = std::vector<const InterfaceAll *>;
    InterfaceAll press, release;
    itemMacro macro;
};

TEST_F(RunLua, PostsACallWithTheArgumentOfThatMacro)
{
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{&press});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{&release});
}

TEST_F(RunLua, CarriesTheSameArgumentInEveryRun)
{
    helpMacroLua::runLua(macro, ITEM_MACRO_PRESS);
    helpMacroLua::runLua(macro, ITEM_MACRO_RELEASE);
    helpMacroLua::runLua(macro, ITEM_MACRO_PRESS);
    EXPECT_EQ(requests(), (Arguments{&press, &release, &press}));
}

TEST_F(RunLua, OfMode1RunsOnPressAlone)
{
    macro.macroMode = 1;
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{&press});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{});
}

TEST_F(RunLua, OfMode2RunsOnReleaseAlone)
{
    macro.macroMode = 2;
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{&release});
}

TEST_F(RunLua, OfOtherModesNeverRuns)
{
    for (const int mode : {0, 4, 5, -1}) {
        macro.macroMode = mode;
        EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{}) << mode;
        EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{}) << mode;
    }
}

TEST_F(RunLua, DoesNothingWithoutAMacro)
{
    macro.hasMacro = 0;
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{});
}

TEST_F(RunLua, DoesNothingForAnEmptyText)
{
    macro.pressMacro.clear();
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{&release});
    macro.releaseMacro.clear();
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{});
}

TEST_F(RunLua, DoesNothingWithoutAnArgument)
{
    macro.pressArg = nullptr;
    EXPECT_EQ(requestsOf(ITEM_MACRO_PRESS), Arguments{});
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{&release});
    macro.releaseArg = nullptr;
    EXPECT_EQ(requestsOf(ITEM_MACRO_RELEASE), Arguments{});
}

TEST_F(RunLua, DoesNothingForAnUnknownType)
{
    for (const int type : {0, 3, -1})
        EXPECT_EQ(requestsOf(static_cast<ITEM_MACRO_TYPE>(type)), Arguments{}) << type;
}
