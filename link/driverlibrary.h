// Drivers in the process, counted by the system's loader: one that somebody else has loaded too, by whatever
// means, stays for them.
#pragma once

class QString;

namespace panelkit {

// Loads the Complete driver file at the full path `path`, until closeDriver takes what this returns. Null
// when the system's loader refuses it.
void *openDriver(const QString &path);

// The entry point `name` of `driver`, null where it lacks it.
void *driverEntryPoint(void *driver, const char *name);

// A null `driver` counts as one that was closed before.
void closeDriver(void *driver);

} // namespace panelkit
