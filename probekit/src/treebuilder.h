#pragma once

#include "arena.h"
#include "probekit.h"

#include <string>

namespace probekit {

class FsSource;

// Appends items to one child list in order.
class ChildAppender
{
public:
    ChildAppender(Arena &arena, UsbListNode **ppHead, UsbTreeItem *pParent)
        : m_arena(arena), m_ppNext(ppHead), m_pParent(pParent)
    {
        while (*m_ppNext)
            m_ppNext = &(*m_ppNext)->pNext;
    }
    // A new item with the name and information record; null when out of memory.
    UsbTreeItem *add(const std::string &strName, void *pInfo)
    {
        auto *pNode = m_arena.make<UsbListNode>();
        auto *pItem = m_arena.make<UsbTreeItem>();
        if (!pNode || !pItem)
            return nullptr;
        pItem->pName = m_arena.wide(strName);
        pItem->pParent = m_pParent;
        pItem->pInfo = pInfo;
        pNode->pItem = pItem;
        *m_ppNext = pNode;
        m_ppNext = &pNode->pNext;
        return pItem;
    }

private:
    Arena &m_arena;
    UsbListNode **m_ppNext;
    UsbTreeItem *m_pParent;
};

// Limits that keep a walk over odd input finite.
constexpr int kMaxHubDepth = 8;        // USB allows 5 hub tiers below the root hub
constexpr unsigned kMaxPorts = 255;    // bNumberOfPorts is one byte
constexpr unsigned kMaxNodes = 16384;  // per tree
constexpr size_t kMaxDescriptorBytes = 65536 + 18;

// Fills the root from the platform (the machine's tree below the system root).
void buildPlatformTree(UsbRootItem *pRoot, Arena &arena);

#ifndef _WIN32
// Fills the root from the sysfs tree that fs shows (Linux reader).
void buildSysfsTree(FsSource &fs, UsbRootItem *pRoot, Arena &arena);
#endif

} // namespace probekit
