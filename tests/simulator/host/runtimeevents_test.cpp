#include "macro/events.h"
#include "macro/interfaceall.h"
#include "platform/hmi_event.h"
#include "register/registervaluechange.h"
#include "simulator/comm/communication.h"
#include "simulator/host/runtimeevents.h"
#include "simulator/host/session.h"
#include "simulator/lua/linkregisters.h"
#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"

#include <QCoreApplication>
#include <QStringList>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

// The sample project on a PLC whose registers stand still.
class RuntimeEventsTest : public ::testing::Test
{
protected:
    RuntimeEventsTest()
    {
        SessionOptions options;
        options.plc.emplace(PlcAddress{QStringLiteral("127.0.0.1"), server.port()});
        QString error;
        session = Session::open(options, error);
        EXPECT_TRUE(session) << error.toStdString();
        macros = std::make_unique<ItemMacros>(*session);
        registers = std::make_unique<LinkRegisters>(session->communication());
        engine = std::make_unique<MacroEngine>(*registers);
        events = std::make_unique<RuntimeEvents>(*session, *macros, *engine, noteAll());
    }

    RuntimeEvents::Handlers noteAll()
    {
        RuntimeEvents::Handlers handlers;
        handlers.messageBox = [this](const QString &text, int param1, int param2) {
            seen << QStringLiteral("message %1 %2 %3").arg(text).arg(param1).arg(param2);
        };
        handlers.macroEnded = [this](const MacroOwner &owner, const MacroResult &result) {
            const bool isPress = owner.type == ITEM_MACRO_PRESS;
            seen << session->project().items[owner.item].name +
                        QLatin1String(isPress ? " press" : " release") +
                        QLatin1String(result.isDone() ? " done" : " failed");
        };
        handlers.addressChanged = [this](const RegisterValueChange &address) {
            seen << QStringLiteral("changed %1 %2").arg(QLatin1String(address.block)).arg(address.index);
        };
        handlers.systemNotice = [this](unsigned short code, int argument) {
            seen << QStringLiteral("notice %1 %2").arg(code).arg(argument);
        };
        return handlers;
    }

    std::size_t itemNamed(const char *name) const
    {
        for (std::size_t i = 0; i < session->project().items.size(); ++i)
            if (session->project().items[i].name == QLatin1String(name))
                return i;
        ADD_FAILURE() << "the sample has no item " << name;
        return 0;
    }

    void press(const char *item) { helpMacroLua::runLua(macros->macro(itemNamed(item)), ITEM_MACRO_PRESS); }
    void release(const char *item)
    {
        helpMacroLua::runLua(macros->macro(itemNamed(item)), ITEM_MACRO_RELEASE);
    }

    PlcMemory memory{BottlingLine::units(), BottlingLine::registersPerTable};
    BottlingLine line{memory};
    PlcServer server{memory};
    QStringList seen;
    std::unique_ptr<Session> session;
    std::unique_ptr<ItemMacros> macros;
    std::unique_ptr<LinkRegisters> registers;
    std::unique_ptr<MacroEngine> engine;
    std::unique_ptr<RuntimeEvents> events;
};

TEST_F(RuntimeEventsTest, RunAMacroThatReadsThePlcAndWritesItOverModbusTcp)
{
    memory.setValue(1, ModbusTable::HoldingRegisters, 0, 180);
    press("Faster");
    EXPECT_EQ(memory.value(1, ModbusTable::HoldingRegisters, 0), 180);
    EXPECT_EQ(events->handleWaiting(), 1);
    EXPECT_EQ(seen, QStringList(QStringLiteral("Faster press done")));
    EXPECT_EQ(memory.value(1, ModbusTable::HoldingRegisters, 0), 190);
}

TEST_F(RuntimeEventsTest, RunAMacroFromOneRegisterOfThePlcToAnother)
{
    const auto doubleWord = [this](ModbusTable table, int index) {
        return memory.value(1, table, index) + memory.value(1, table, index + 1) * 0x10000;
    };
    memory.setValue(1, ModbusTable::InputRegisters, 4, 0x1000); // filled
    memory.setValue(1, ModbusTable::InputRegisters, 5, 1);
    memory.setValue(1, ModbusTable::HoldingRegisters, 4, 0x3000); // ordered
    memory.setValue(1, ModbusTable::HoldingRegisters, 5, 1);
    ASSERT_NE(doubleWord(ModbusTable::HoldingRegisters, 8), 0x2000);
    press("Work out the order");
    events->handleWaiting();
    EXPECT_EQ(doubleWord(ModbusTable::HoldingRegisters, 8), 0x2000);
}

TEST_F(RuntimeEventsTest, TakeWhatWasPostedInItsOrder)
{
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("first"), 30, 2), nullptr);
    press("Lamp test");
    SendLWFRegMessage(5);
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("second"), 2, 0), nullptr);
    release("Lamp test");
    hmiEVent_SystemOperate_Msg(111, 7);
    EXPECT_EQ(events->handleWaiting(), 6);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("message first 30 2"), QStringLiteral("Lamp test press done"),
                                 QStringLiteral("changed LWF 5"), QStringLiteral("message second 2 0"),
                                 QStringLiteral("Lamp test release done"), QStringLiteral("notice 111 7")}));
    EXPECT_EQ(events->handleWaiting(), 0);
}

TEST_F(RuntimeEventsTest, RunTheSameMacroAsOftenAsItWasAskedFor)
{
    memory.setValue(1, ModbusTable::HoldingRegisters, 0, 100);
    for (int i = 0; i < 3; ++i)
        press("Faster");
    EXPECT_EQ(events->handleWaiting(), 3);
    EXPECT_EQ(memory.value(1, ModbusTable::HoldingRegisters, 0), 130);
}

TEST_F(RuntimeEventsTest, TellOfAMacroThatFails)
{
    PlcFaultSetting gone;
    gone.fault = PlcFault::Gone;
    server.setFault(gone);
    press("Faster");
    events->handleWaiting();
    EXPECT_EQ(seen, QStringList(QStringLiteral("Faster press failed")));
}

TEST_F(RuntimeEventsTest, PassOverWhatIsNobodysMacro)
{
    InterfaceAll foreign;
    UHmiEvent::hmiEventPost(new UExternalFuncCallEvent(QStringLiteral("runLua"), &foreign), nullptr);
    UHmiEvent::hmiEventPost(new UExternalFuncCallEvent(QStringLiteral("runLua"), nullptr), nullptr);
    InterfaceAll *known = macros->macro(itemNamed("Faster")).pressArg;
    UHmiEvent::hmiEventPost(new UExternalFuncCallEvent(QStringLiteral("other"), known), nullptr);
    UHmiEvent::hmiEventPost(new QEvent(QEvent::User), nullptr);
    EXPECT_EQ(events->handleWaiting(), 4);
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(RuntimeEventsTest, HandAnEventToItsReceiverIfThereIsStillOne)
{
    struct Receiver : QObject
    {
        bool event(QEvent *event) override
        {
            types << event->type();
            return true;
        }
        QList<int> types;
    } receiver;
    auto *gone = new QObject;
    UHmiEvent::hmiEventPost(new QEvent(QEvent::User), &receiver);
    UHmiEvent::hmiEventPost(new QEvent(QEvent::User), gone);
    delete gone;
    EXPECT_EQ(events->handleWaiting(), 2);
    EXPECT_EQ(receiver.types, QList<int>{QEvent::User});
}

TEST_F(RuntimeEventsTest, LeaveWhatIsPostedMeanwhileForTheNextTime)
{
    RuntimeEvents::Handlers handlers;
    int messages = 0;
    handlers.messageBox = [&messages](const QString &, int, int) {
        ++messages;
        UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("again"), 0, 0), nullptr);
    };
    RuntimeEvents endless(*session, *macros, *engine, handlers);
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("once"), 0, 0), nullptr);
    EXPECT_EQ(endless.handleWaiting(), 1);
    EXPECT_EQ(endless.handleWaiting(), 1);
    EXPECT_EQ(messages, 2);
}

TEST_F(RuntimeEventsTest, AreHandledInTheEventLoop)
{
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("before"), 0, 0), nullptr);
    events->handleInEventLoop();
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("behind"), 0, 0), nullptr);
    EXPECT_TRUE(seen.isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(seen,
              (QStringList{QStringLiteral("message before 0 0"), QStringLiteral("message behind 0 0")}));
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("later"), 0, 0), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(seen.size(), 3);
    events.reset();
    UHmiEvent::hmiEventPost(new UMessageBoxEvent(QStringLiteral("unheard"), 0, 0), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(seen.size(), 3);
}

TEST_F(RuntimeEventsTest, PointToNoRecordOnceTheMacrosAreGone)
{
    press("Faster");
    events.reset();
    macros.reset();
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(RuntimeEventsTest, KnowWhoseArgumentTheyCarry)
{
    const std::size_t lamp = itemNamed("Lamp test");
    const auto owner = macros->ownerOf(macros->macro(lamp).releaseArg);
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->item, lamp);
    EXPECT_EQ(owner->type, ITEM_MACRO_RELEASE);
    EXPECT_FALSE(macros->ownerOf(nullptr));
}

TEST_F(RuntimeEventsTest, WatchTheAddressesOfTextVariablesAndOfWhatTheMacrosRead)
{
    const QList<KEY_ADDRESS> addresses = macros->watchedAddresses(itemNamed("Work out the order"));
    ASSERT_EQ(addresses.size(), 3);
    EXPECT_EQ(addresses[0].blockName, QStringLiteral("4x")); // the batch code
    EXPECT_EQ(addresses[0].addrIndex, 10);
    EXPECT_EQ(addresses[1].blockName, QStringLiteral("3x")); // filled
    EXPECT_EQ(addresses[1].addrIndex, 4);
    EXPECT_EQ(addresses[2].blockName, QStringLiteral("4x")); // ordered
    EXPECT_EQ(addresses[2].addrIndex, 4);
    EXPECT_TRUE(macros->watchedAddresses(itemNamed("Tank level")).isEmpty());
}
