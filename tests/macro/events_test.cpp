#include "macro/events.h"
#include "macro/interfaceall.h"
#include "platform/hmi_event.h"
#include "simulator/platform/eventlibrary.h"
#include "tests/macro/freshargument.h"
#include "tests/support/fieldorder.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace panelkit::simulator;
using panelkit::testing::expectFresh;
using panelkit::testing::followEachOther;

namespace {

// Posts and takes back, as the event library's owner does.
template <typename Event>
std::unique_ptr<Event> postAndTake(Event *event)
{
    UHmiEvent::hmiEventPost(event, nullptr);
    auto entry = takeEventLibraryEntry();
    if (!entry || !std::holds_alternative<PostedEvent>(*entry))
        return nullptr;
    auto *taken = dynamic_cast<Event *>(std::get<PostedEvent>(*entry).event.release());
    return std::unique_ptr<Event>(taken);
}

} // namespace

TEST(UExternalFuncCallEvent, ArrivesWithTypeFlagNameAndArgument)
{
    InterfaceAll argument;
    const auto event = postAndTake(new UExternalFuncCallEvent(QStringLiteral("runLua"), &argument));
    ASSERT_TRUE(event);
    EXPECT_EQ(event->type(), 1010);
    EXPECT_TRUE(event->flag);
    EXPECT_EQ(event->funcName, QStringLiteral("runLua"));
    EXPECT_EQ(event->arg, &argument);
}

TEST(UExternalFuncCallEvent, LeavesItsArgumentAliveWhenItGoes)
{
    struct Watched : InterfaceAll
    {
        explicit Watched(bool &flag) : gone(flag) {}
        ~Watched() override { gone = true; }
        bool &gone;
    };
    bool gone = false;
    Watched argument(gone);
    delete new UExternalFuncCallEvent(QStringLiteral("runLua"), &argument);
    EXPECT_FALSE(gone);
}

TEST(UMessageBoxEvent, ArrivesWithTypeTextAndBothNumbers)
{
    const auto event = postAndTake(new UMessageBoxEvent(QStringLiteral("Success."), 30, 2));
    ASSERT_TRUE(event);
    EXPECT_EQ(event->type(), 1007);
    EXPECT_EQ(event->text, QStringLiteral("Success."));
    EXPECT_EQ(event->param1, 30);
    EXPECT_EQ(event->param2, 2);
    EXPECT_EQ(event->reserved, 0U);
}

TEST(UEventBase, TakesItsTypeFromTheSubclassAndIsDestroyedThroughItsBase)
{
    static_assert(std::has_virtual_destructor<UEventBase>::value, "events are deleted as QEvent");
    static_assert(std::is_base_of<QEvent, UEventBase>::value, "events travel as QEvent");
    const UEventBase event(1234);
    EXPECT_EQ(event.type(), 1234);
}

TEST(Events, HaveTheirFieldsInTheOrderThatTheRuntimeKnows)
{
    const UMessageBoxEvent box(QString(), 0, 0);
    EXPECT_TRUE(followEachOther({box.reserved, box.text, box.param1, box.param2}));
    const UExternalFuncCallEvent call(QString(), nullptr);
    EXPECT_TRUE(followEachOther({call.reserved, call.flag, call.funcName, call.arg}));
}

TEST(InterfaceAll, StartsWithTheValuesOfAFreshMacroArgument)
{
    const InterfaceAll argument;
    EXPECT_TRUE(argument.args.isEmpty());
    expectFresh(argument);
}

TEST(InterfaceAll, KeepsTheKindOfLogEntryThatItWasGiven)
{
    InterfaceAll argument;
    argument.setOptLogType(7);
    EXPECT_EQ(argument.getOptLogType(), 7);
    EXPECT_EQ(argument.optLogType, 7);
}

TEST(InterfaceAll, OtherHooksOfAPlainObjectHaveNoEffect)
{
    InterfaceAll argument;
    argument.keyboardReflash(QStringLiteral("text"));
    argument.execComplete(3, QStringLiteral("text"));
    argument.exportData();
    argument.insertOperatorLog(QStringLiteral("entry"));
    argument.insertOperatorLog(QStringList{QStringLiteral("a"), QStringLiteral("b")});
    EXPECT_TRUE(argument.args.isEmpty());
    expectFresh(argument);
}

TEST(InterfaceAll, HasItsFieldsInTheOrderThatTheRuntimeKnows)
{
    const InterfaceAll a;
    const auto *begin = reinterpret_cast<const char *>(&a);
    EXPECT_EQ(static_cast<const void *>(&a.args), begin + sizeof(void *)) << "behind the table of operations";
    EXPECT_TRUE(followEachOther({a.args, a.reserved0, a.idText, a.valueText, a.flagA, a.flagB, a.intA, a.intB,
                                 a.note, a.flagC, a.intC, a.intD, a.optLogType}));
}

// The runtime overrides by place in the table, so the order of the hooks is checked against the table itself.
TEST(InterfaceAll, HooksStandInTheOrderOfTheTable)
{
    struct Recording : InterfaceAll
    {
        void keyboardReflash(const QString &) override { called = 3; }
        void execComplete(const int &, const QString &) override { called = 4; }
        quint16 getOptLogType() override
        {
            called = 5;
            return 0;
        }
        void setOptLogType(unsigned short) override { called = 6; }
        void exportData() override { called = 7; }
        void insertOperatorLog(QString) override { called = 8; }
        void insertOperatorLog(const QStringList &) override { called = 9; }
        int called = 0;
    };
    Recording recording;
    InterfaceAll *object = &recording;
    using Slot = void (*)(InterfaceAll *, const void *, const void *);
    Slot *table = *reinterpret_cast<Slot **>(object);
    const int number = 0;
    const QString text;
    const QStringList list;
    const struct
    {
        int slot;
        const void *first;
    } rows[] = {{3, &text}, {4, &number}, {5, nullptr}, {6, nullptr}, {7, nullptr}, {8, &text}, {9, &list}};
    for (const auto &row : rows) {
        table[row.slot - 1](object, row.first, &text);
        EXPECT_EQ(recording.called, row.slot);
    }
}
