// The library's C interface: root life cycle and the tree fill.
#include "probekit.h"

#include "arena.h"
#include "treebuilder.h"

#include <new>

using probekit::Arena;

extern "C" {

PROBEKIT_API UsbRootItem *CreateRootItem(void)
{
    auto *pRoot = new (std::nothrow) UsbRootItem{};
    if (!pRoot)
        return nullptr;
    pRoot->pArena = new (std::nothrow) Arena;
    if (!pRoot->pArena) {
        delete pRoot;
        return nullptr;
    }
    return pRoot;
}

PROBEKIT_API void GenneraUSBControllerInfo(UsbRootItem *pRoot, int nMode)
{
    if (!pRoot || !pRoot->pArena || nMode != PROBEKIT_MODE_FULL)
        return;
    auto *pArena = static_cast<Arena *>(pRoot->pArena);
    pRoot->pChildren = nullptr;
    pArena->clear();
    try {
        probekit::buildPlatformTree(pRoot, *pArena);
    } catch (...) {
        // Out of memory while building: keep what was linked so far.
    }
}

PROBEKIT_API void DestroyRootItem(UsbRootItem *pRoot)
{
    if (!pRoot)
        return;
    delete static_cast<Arena *>(pRoot->pArena);
    delete pRoot;
}

} // extern "C"
