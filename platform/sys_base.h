// The panel's system library, libsys_base: the application record, the shell and the panel's own network
// configuration.
//
// Declarations only. On a panel the maker's library defines them, on a PC the simulator's stand-in of the
// same name does; libpanelkit calls them from the runtime's GUI thread.
#pragma once

#include "platform/export.h"

#include <QString>

#include <cstddef>

class InterfaceComm;

// The runtime's application record. The runtime owns and fills it; libpanelkit only reads it, anew in every
// call, and keeps no pointer into it.
struct sys_base_app_pro
{
    unsigned char reserved0;
    unsigned char reserved1;
    unsigned char announceMessageBoxClose; // byte 2 of the record: non-zero asks for notice 111 on closing
    unsigned char reserved3;
    int screenWidth;     // pixels
    int screenHeight;    // pixels
    InterfaceComm *comm; // the communication interface, or null while there is none
};
static_assert(offsetof(sys_base_app_pro, announceMessageBoxClose) == 2, "the same on every processor");
static_assert(offsetof(sys_base_app_pro, screenWidth) == 4, "the same on every processor");
static_assert(offsetof(sys_base_app_pro, screenHeight) == 8, "the same on every processor");

// The application record; null counts as a record without a communication interface.
PANELKIT_EXPORT sys_base_app_pro *sys_base_get_app_pro();

// Runs one shell command line and waits for its end. The result is the shell's and is not examined by
// libpanelkit.
PANELKIT_EXPORT int sys_base_do_system(const char *command);

// Reads the system configuration again after a change.
PANELKIT_EXPORT void sys_base_init_config();

// The panel's own network settings as dotted texts; `iotDevice` says whether the panel is a device with the
// IoT runtime, which keeps its address elsewhere.
PANELKIT_EXPORT QString sys_base_get_config_Ip(bool iotDevice);
PANELKIT_EXPORT QString sys_base_get_config_NetMask();
PANELKIT_EXPORT QString sys_base_get_config_Gateway();
PANELKIT_EXPORT QString sys_base_get_config_DNS();

// Store new network settings in the system configuration. They are not checked here.
PANELKIT_EXPORT void sys_base_set_config_Ip(const QString &address);
PANELKIT_EXPORT void sys_base_set_config_NetMask(const QString &mask);
PANELKIT_EXPORT void sys_base_set_config_Gateway(const QString &gateway);
PANELKIT_EXPORT void sys_base_set_config_DNS(const QString &server);
