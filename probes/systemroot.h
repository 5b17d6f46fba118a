#pragma once

#include <QtGlobal>

// What a diagnosis can read of the system it looks at. With the live system
// every item reads the running machine; with another system root (a mounted
// image, $VETRIX_SYSROOT) an item whose source that root lacks cannot be
// diagnosed: it is left out of the run and reported "not available" rather
// than normal.
namespace SystemRoot {

// The mask of such items (0 for the live system).
quint32 unreadableItems();

} // namespace SystemRoot
