// Folders as a file system shows them that tells no entry's type along with its name.
#pragma once

namespace panelkit::testing {

// At start types are told. Whatever reads folders in this program sees it.
void setEntryTypesTold(bool told);

} // namespace panelkit::testing
