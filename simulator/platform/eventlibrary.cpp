#include "simulator/platform/eventlibrary.h"

#include "platform/hmi_event.h"

#include <deque>
#include <mutex>

namespace panelkit::simulator {

namespace {

struct Queue
{
    std::mutex mutex;
    std::deque<EventLibraryEntry> entries;
    std::function<void()> listener;
};

// Never destroyed: a panel's library takes posts until the process ends, and an event that still waits then
// is no leak of the poster's.
Queue &queue()
{
    static Queue *instance = new Queue;
    return *instance;
}

void append(EventLibraryEntry entry)
{
    std::function<void()> listener;
    {
        std::lock_guard<std::mutex> lock(queue().mutex);
        queue().entries.push_back(std::move(entry));
        listener = queue().listener;
    }
    if (listener)
        listener();
}

} // namespace

std::optional<EventLibraryEntry> takeEventLibraryEntry()
{
    std::lock_guard<std::mutex> lock(queue().mutex);
    if (queue().entries.empty())
        return std::nullopt;
    EventLibraryEntry entry = std::move(queue().entries.front());
    queue().entries.pop_front();
    return entry;
}

int eventLibraryEntryCount()
{
    std::lock_guard<std::mutex> lock(queue().mutex);
    return static_cast<int>(queue().entries.size());
}

void clearEventLibrary()
{
    std::deque<EventLibraryEntry> entries; // outlives the lock: an event's destructor may post
    std::lock_guard<std::mutex> lock(queue().mutex);
    entries.swap(queue().entries);
}

void setEventLibraryListener(std::function<void()> listener)
{
    std::lock_guard<std::mutex> lock(queue().mutex);
    queue().listener = std::move(listener);
}

} // namespace panelkit::simulator

using namespace panelkit::simulator;

void UHmiEvent::hmiEventPost(QEvent *event, QObject *receiver)
{
    if (event == nullptr)
        return;
    PostedEvent posted;
    posted.event.reset(event);
    posted.receiver = receiver;
    posted.hadReceiver = receiver != nullptr;
    append(std::move(posted));
}

int hmiEVent_addressChang_Msg(const RegisterValueChange *address)
{
    if (address == nullptr)
        return -1;
    append(*address);
    return 0;
}

int hmiEVent_SystemOperate_Msg(unsigned short code, int argument)
{
    append(SystemNotice{code, argument});
    return 0;
}
