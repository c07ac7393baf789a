// The way to the runtime's communication interface.
#pragma once

#include "platform/sys_base.h"

namespace panelkit {

// The communication interface of the application record, or null while the runtime has none. A missing record
// counts as one without an interface.
inline InterfaceComm *communication()
{
    const sys_base_app_pro *record = sys_base_get_app_pro();
    return record == nullptr ? nullptr : record->comm;
}

} // namespace panelkit
