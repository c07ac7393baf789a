#include "simulator/platform/eventlibrary.h"

#include "platform/hmi_event.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

using panelkit::simulator::clearEventLibrary;
using panelkit::simulator::EventLibraryEntry;
using panelkit::simulator::eventLibraryEntryCount;
using panelkit::simulator::PostedEvent;
using panelkit::simulator::setEventLibraryListener;
using panelkit::simulator::SystemNotice;
using panelkit::simulator::takeEventLibraryEntry;

namespace {

// Counts how many of its kind are alive.
class CountedEvent : public QEvent
{
public:
    explicit CountedEvent(int type = 2000) : QEvent(static_cast<QEvent::Type>(type)) { ++alive; }
    ~CountedEvent() override { --alive; }

    static int alive;
};
int CountedEvent::alive = 0;

class EventLibrary : public ::testing::Test
{
protected:
    ~EventLibrary() override
    {
        setEventLibraryListener({});
        clearEventLibrary();
    }

    static void post(int type, QObject *receiver = nullptr)
    {
        UHmiEvent::hmiEventPost(new CountedEvent(type), receiver);
    }

    // Takes the oldest entry, which must be of that kind.
    template <typename Entry>
    static Entry take()
    {
        std::optional<EventLibraryEntry> entry = takeEventLibraryEntry();
        if (entry && std::holds_alternative<Entry>(*entry))
            return std::move(std::get<Entry>(*entry));
        ADD_FAILURE() << "no entry, or one of another kind";
        return Entry();
    }
};

} // namespace

TEST_F(EventLibrary, IsEmptyAtStart)
{
    EXPECT_EQ(eventLibraryEntryCount(), 0);
    EXPECT_FALSE(takeEventLibraryEntry());
}

TEST_F(EventLibrary, KeepsTheOrderOfPosting)
{
    RegisterValueChange address = {};
    address.index = 7;
    post(2001);
    hmiEVent_addressChang_Msg(&address);
    post(2002);
    hmiEVent_SystemOperate_Msg(111, -4);
    EXPECT_EQ(eventLibraryEntryCount(), 4);

    EXPECT_EQ(take<PostedEvent>().event->type(), 2001);
    EXPECT_EQ(take<RegisterValueChange>().index, 7);
    EXPECT_EQ(take<PostedEvent>().event->type(), 2002);
    const SystemNotice notice = take<SystemNotice>();
    EXPECT_EQ(notice.code, 111);
    EXPECT_EQ(notice.argument, -4);
    EXPECT_FALSE(takeEventLibraryEntry());
}

TEST_F(EventLibrary, OwnsAnEventUntilItIsTaken)
{
    post(2001);
    {
        const PostedEvent taken = take<PostedEvent>();
        EXPECT_EQ(CountedEvent::alive, 1);
    }
    EXPECT_EQ(CountedEvent::alive, 0) << "who takes an event owns it";
}

TEST_F(EventLibrary, DeletesWhatIsCleared)
{
    post(2001);
    post(2002);
    clearEventLibrary();
    EXPECT_EQ(CountedEvent::alive, 0);
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(EventLibrary, TakesAPostFromADyingEvent)
{
    class LastWords : public QEvent
    {
    public:
        LastWords() : QEvent(QEvent::User) {}
        ~LastWords() override { hmiEVent_SystemOperate_Msg(5, 0); }
    };
    UHmiEvent::hmiEventPost(new LastWords, nullptr);
    clearEventLibrary();
    EXPECT_EQ(take<SystemNotice>().code, 5);
}

TEST_F(EventLibrary, IgnoresANullEvent)
{
    UHmiEvent::hmiEventPost(nullptr, nullptr);
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(EventLibrary, KeepsTheReceiver)
{
    QObject receiver;
    post(2001, &receiver);
    const PostedEvent posted = take<PostedEvent>();
    EXPECT_TRUE(posted.hadReceiver);
    EXPECT_EQ(posted.receiver, &receiver);
}

TEST_F(EventLibrary, TellsADeadReceiverFromNone)
{
    auto receiver = std::make_unique<QObject>();
    post(2001, receiver.get());
    post(2002);
    receiver.reset();

    const PostedEvent orphan = take<PostedEvent>();
    EXPECT_TRUE(orphan.receiver.isNull());
    EXPECT_TRUE(orphan.hadReceiver);
    const PostedEvent toRuntime = take<PostedEvent>();
    EXPECT_TRUE(toRuntime.receiver.isNull());
    EXPECT_FALSE(toRuntime.hadReceiver);
}

TEST_F(EventLibrary, CopiesAnAddress)
{
    RegisterValueChange address = {};
    address.linkId = 3;
    address.station = -1;
    address.index = 42;
    address.reserved = 9;
    std::memcpy(address.block, "0123456789abcdefghijklmnopqrstuv", 32);
    address.flag = 200;
    EXPECT_EQ(hmiEVent_addressChang_Msg(&address), 0);
    address = {};

    const RegisterValueChange copy = take<RegisterValueChange>();
    EXPECT_EQ(copy.linkId, 3);
    EXPECT_EQ(copy.station, -1);
    EXPECT_EQ(copy.index, 42);
    EXPECT_EQ(copy.reserved, 9);
    EXPECT_EQ(std::string(copy.block, 32), "0123456789abcdefghijklmnopqrstuv");
    EXPECT_EQ(copy.flag, 200);
}

TEST_F(EventLibrary, RefusesANullAddress)
{
    EXPECT_EQ(hmiEVent_addressChang_Msg(nullptr), -1);
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}

TEST_F(EventLibrary, TellsTheListenerOfEachPost)
{
    std::vector<int> counts;
    setEventLibraryListener([&counts] { counts.push_back(eventLibraryEntryCount()); });
    post(2001);
    const RegisterValueChange address = {};
    hmiEVent_addressChang_Msg(&address);
    hmiEVent_SystemOperate_Msg(1, 2);
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3})) << "after the post, with no lock held";

    setEventLibraryListener({});
    post(2002);
    EXPECT_EQ(counts.size(), 3u);
}

TEST_F(EventLibrary, TakesPostsOfManyThreads)
{
    constexpr int threadCount = 4;
    constexpr int postCount = 500;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread)
        threads.emplace_back([thread] {
            for (int i = 0; i < postCount; ++i)
                hmiEVent_SystemOperate_Msg(static_cast<unsigned short>(thread), i);
        });
    for (std::thread &thread : threads)
        thread.join();

    EXPECT_EQ(eventLibraryEntryCount(), threadCount * postCount);
    std::vector<int> next(threadCount, 0);
    for (int i = 0; i < threadCount * postCount; ++i) {
        const SystemNotice notice = take<SystemNotice>();
        EXPECT_EQ(notice.argument, next.at(notice.code)++) << "each thread's posts keep their order";
    }
}
