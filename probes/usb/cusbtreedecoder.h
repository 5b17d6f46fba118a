#pragma once

#include "probekit.h"

#include <QString>

class CUsbLineSink;

// Label/value lines for the nodes of a probekit tree: a controller's ids, a
// hub's descriptor and capabilities, a port's connection facts and the
// device's descriptors. The tree viewer shows one node at a time; the report
// takes the whole tree in text mode.
class CUsbTreeDecoder
{
public:
    explicit CUsbTreeDecoder(CUsbLineSink &sink);

    // The lines of one node information record, by its kind; nothing for an
    // unknown kind or null.
    void printNode(const void *pInfo);
    void printController(const UsbControllerInfo *pInfo);
    void printHub(const UsbHubNodeInfo *pInfo);
    void printDevice(const UsbPortConnectionInfo *pConnection, const UsbDescriptorRequest *pConfig,
                     const UsbStringDescriptorNode *pStrings);

    // Every listed node of the tree in tree order: a heading with the node's
    // name, then its lines.
    void printTree(const UsbRootItem *pRoot);

    // Whether the viewer lists the item: it has information, and when it is
    // a hub or device port with connection facts, something is connected.
    static bool isListed(const UsbTreeItem *pItem);
    // The port connection facts of an external hub or device record.
    static const UsbPortConnectionInfo *connectionInfo(const void *pInfo);
    // A NUL-terminated UTF-16 text (read at most 4096 units).
    static QString wideText(const UsbWChar *pText);
    // "0x" and 6 hex digits.
    static QString hex6(quint32 uValue);

private:
    void printItems(const UsbListNode *pList, int nDepth, int &nBudget);

    CUsbLineSink &m_sink;
};
