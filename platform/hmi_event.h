// The panel's event library, libhmi_event: how the library asks the runtime for work.
//
// Declarations only. On a panel the maker's library defines them, on a PC the simulator's stand-in of the
// same name does; libpanelkit calls them from the runtime's GUI thread and never defines any of them.
#pragma once

#include "platform/export.h"

class QEvent;
class QObject;
struct RegisterValueChange;

class PANELKIT_EXPORT UHmiEvent
{
public:
    // Queues `event`, which must have been allocated with new, for `receiver`; a null receiver means the
    // runtime itself. The event library owns the event from here on, and the poster keeps no pointer to it.
    // Returns at once: the event is handled later.
    static void hmiEventPost(QEvent *event, QObject *receiver);
};

// Announces to the runtime that the register named by `address` has changed. The record is copied before
// the call returns. The result is the event library's own and carries no meaning that a caller may rely on.
PANELKIT_EXPORT int hmiEVent_addressChang_Msg(const RegisterValueChange *address);

// Sends the runtime a system notice, for example code 111 when a message box has closed. What a code and
// its argument stand for is the runtime's; so is the result.
PANELKIT_EXPORT int hmiEVent_SystemOperate_Msg(unsigned short code, int argument);
