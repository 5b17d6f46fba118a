// Fuzz target: the USB tree built from a sysfs tree on disk (fuzztree.h) by
// the real reader, so the kernel resolves the links: the PCI device links of
// /sys/bus/pci/devices, the root hub links of /sys/bus/usb/devices that lead
// to controllers which are not PCI devices (platform, virtual), the port
// entries of hubs, and each controller's `driver` link read by the program's
// driver facts. Then the report text of the tree. Besides crashes it checks
// that every controller's path is a clean absolute path of a folder that is
// there, that its key names it (the PCI address, else the path below
// /sys/devices; never with "..", since the program joins the key to the
// system root), and that a controller found through its root hubs has one.
#include "arena.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "fssource.h"
#include "fuzzsandbox.h"
#include "treebuilder.h"
#include "usblink.h"
#include "usbprobe.h"
#include "usbtreejson.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

bool isCleanPath(const QString &strPath)
{
    if (!strPath.startsWith(QLatin1Char('/')) || strPath.endsWith(QLatin1Char('/')))
        return false;
    const QStringList listParts = strPath.mid(1).split(QLatin1Char('/'));
    for (const QString &part : listParts)
        if (part.isEmpty() || part == QLatin1String(".") || part == QLatin1String(".."))
            return false;
    return true;
}

unsigned countItems(const UsbListNode *pList)
{
    unsigned n = 0;
    for (; pList; pList = pList->pNext)
        n += 1 + countItems(pList->pItem->pChildren);
    return n;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 200000)
        return 0;
    FuzzTree::Tree &tree = FuzzTree::sandbox("fuzz_sysfstree");
    tree.build(std::string(reinterpret_cast<const char *>(pData), nSize));
    UsbRootItem root {};
    probekit::Arena arena;
    {
        probekit::RealFsSource fs(tree.root());
        probekit::buildSysfsTree(fs, &root, arena);
    }
    const unsigned nItems = countItems(root.pChildren);
    for (const UsbListNode *pNode = root.pChildren; pNode; pNode = pNode->pNext) {
        const auto *pInfo = static_cast<const UsbControllerInfo *>(pNode->pItem->pInfo);
        FuzzTree::check(pInfo && pInfo->Kind == UsbNodeController);
        const QString strPath = CUsbTreeDecoder::wideText(pInfo->pDevicePath);
        const QString strKey = CUsbTreeDecoder::wideText(pInfo->pDriverKey);
        FuzzTree::check(isCleanPath(strPath) && strPath.startsWith(QLatin1String("/sys/")));
        FuzzTree::check(!strKey.isEmpty() && !strKey.split(QLatin1Char('/')).contains(QLatin1String("..")));
        // The key names the device: a PCI address, else the path below /sys/devices.
        if (strPath.startsWith(QLatin1String("/sys/bus/pci/devices/")))
            FuzzTree::check(
                !strKey.contains(QLatin1Char('/')) && strPath == QLatin1String("/sys/bus/pci/devices/") + strKey);
        else
            FuzzTree::check(strPath == QLatin1String("/sys/devices/") + strKey
                && (pNode->pItem->pChildren || nItems >= probekit::kMaxNodes)); // found through a root hub
        // The controller's folder is there (names that are not ASCII do not
        // come back to the same bytes from the tree's UTF-16 texts).
        struct stat st;
        const bool bAscii = std::all_of(strPath.cbegin(), strPath.cend(), [](QChar c) { return c.unicode() < 0x80; });
        if (bAscii)
            FuzzTree::check(::stat((tree.root() + strPath.toStdString()).c_str(), &st) == 0 && S_ISDIR(st.st_mode));
        const VxUsbProbe::CControllerDriverFacts facts = VxUsbProbe::readControllerDriver(*pInfo);
        if (std::getenv("VX_FUZZ_PRINT")) // what an input means, for whoever reads the corpus
            std::printf("controller %s key %s driver %s\n", qPrintable(strPath), qPrintable(strKey),
                qPrintable(facts.strDriverDesc));
    }
    // The USB3 Vision link rules and the tree as data take any tree: every
    // device they list has a port path, and the verdict follows the findings.
    CUsbLinkDetectInfo link;
    VxUsbLink::analyseTree(&root, link);
    bool bFinding = !link.sharedControllers.isEmpty();
    for (const CUsbLinkDevice &d : link.devices) {
        FuzzTree::check(!d.strPortPath.isEmpty() && d.strPortPath.at(0).isDigit());
        bFinding = bFinding || d.isFallback() || d.isBehindUsb2Hub();
    }
    FuzzTree::check(link.bNormal == (bFinding ? 0 : 1));
    FuzzTree::check(!usbLinkLines(link).isEmpty());
    FuzzTree::check(VxUsbProbe::treeJson(&root).value(QStringLiteral("controllers")).toArray().size()
                    == VxUsbProbe::controllerCount(&root));
    CUsbTextSink sink;
    CUsbTreeDecoder(sink).printTree(&root);
    if (std::getenv("VX_FUZZ_PRINT"))
        std::printf("%s\n", qPrintable(sink.listLines.join(QLatin1Char('\n'))));
    tree.clear();
    return 0;
}
