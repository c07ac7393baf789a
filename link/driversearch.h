// The search for a driver by its name.
#pragma once

class QString;

namespace panelkit {

// The absolute path of the first file of the driver folder, in the folder's own order, whose name contains
// `driverName` whatever the case. Hidden files count, links and folders do not. Empty when there is none.
QString findDriverFile(const QString &driverName);

} // namespace panelkit
