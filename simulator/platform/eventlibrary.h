// The host's side of the event library's stand-in: what has been posted, in the order of posting.
#pragma once

#include "platform/export.h"
#include "register/registervaluechange.h"

#include <QEvent>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace panelkit::simulator {

// An event with its receiver. `receiver` is null for an event to the runtime itself, and also when the object
// has been destroyed since; `hadReceiver` tells the two apart.
struct PostedEvent
{
    std::unique_ptr<QEvent> event;
    QPointer<QObject> receiver;
    bool hadReceiver = false;
};

// A notice of hmiEVent_SystemOperate_Msg.
struct SystemNotice
{
    unsigned short code = 0;
    int argument = 0;
};

using EventLibraryEntry = std::variant<PostedEvent, RegisterValueChange, SystemNotice>;

// Takes the oldest entry out of the queue, or nothing when it is empty. The caller owns the event from then
// on.
PANELKIT_EXPORT std::optional<EventLibraryEntry> takeEventLibraryEntry();

// Number of entries that wait.
PANELKIT_EXPORT int eventLibraryEntryCount();

// Deletes all entries that wait.
PANELKIT_EXPORT void clearEventLibrary();

// `listener` is called after each post, on the thread that posted, with no lock held; a host wakes its loop
// with it. An empty function ends that, save for a call that another thread has begun. The listener must not
// post.
PANELKIT_EXPORT void setEventLibraryListener(std::function<void()> listener);

} // namespace panelkit::simulator
