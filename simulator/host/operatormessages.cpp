#include "simulator/host/operatormessages.h"

#include "macro/events.h"
#include "simulator/platform/eventlibrary.h"

namespace panelkit::simulator {

QStringList takeOperatorMessages()
{
    QStringList texts;
    while (const auto entry = takeEventLibraryEntry()) {
        const auto *posted = std::get_if<PostedEvent>(&*entry);
        const auto *box = posted ? dynamic_cast<const UMessageBoxEvent *>(posted->event.get()) : nullptr;
        if (box != nullptr)
            texts << box->text;
    }
    return texts;
}

} // namespace panelkit::simulator
