// Which device this panel is, from its configuration file.
#pragma once

class QString;

namespace panelkit {

// The key "MODEL" of the device configuration file below the system root, which is looked at in every call;
// docs/security.md says which change of a file the toolkit misses. Empty when there is no file or no such
// key.
QString deviceModel();

// A gateway box: its model holds "Keld", with this case, anywhere.
bool isBoxDevice();

// A device with the IoT runtime: a model that holds "W", or a box.
bool isIotDevice();

} // namespace panelkit
