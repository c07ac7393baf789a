// The visibility of what crosses a library's border.
#pragma once

// Marks what libpanelkit gives to its callers, and what the panel's closed libraries give to libpanelkit.
// Everything else is compiled with hidden visibility.
#define PANELKIT_EXPORT __attribute__((visibility("default")))
