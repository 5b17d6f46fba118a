#include "usbprobe.h"

#include "cdetectinfo.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "probekit.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QMutex>
#include <QMutexLocker>

namespace VxUsbProbe {

namespace {

// The process-wide library handle: loaded on first use, freed by unload.
struct CProbeLibrary
{
    QMutex mutex;
    QString strPath;
    QLibrary *pLibrary = nullptr;
    PFN_CreateRootItem pfnCreate = nullptr;
    PFN_GenneraUSBControllerInfo pfnFill = nullptr;
    PFN_DestroyRootItem pfnDestroy = nullptr;
};

CProbeLibrary &probeLibrary()
{
    static CProbeLibrary lib;
    return lib;
}

QString defaultPath()
{
    QString strDir = QCoreApplication::applicationDirPath();
    if (strDir.isEmpty())
        strDir = QStringLiteral(".");
    return strDir + QStringLiteral("/probekit");
}

void unloadLocked(CProbeLibrary &lib)
{
    if (lib.pLibrary) {
        lib.pLibrary->unload();
        delete lib.pLibrary;
    }
    lib.pLibrary = nullptr;
    lib.pfnCreate = nullptr;
    lib.pfnFill = nullptr;
    lib.pfnDestroy = nullptr;
}

bool loadLocked(CProbeLibrary &lib)
{
    if (lib.pLibrary)
        return true;
    auto *pLibrary = new QLibrary(lib.strPath.isEmpty() ? defaultPath() : lib.strPath);
    if (!pLibrary->load()) {
        delete pLibrary;
        return false;
    }
    lib.pLibrary = pLibrary;
    lib.pfnCreate = reinterpret_cast<PFN_CreateRootItem>(pLibrary->resolve("CreateRootItem"));
    lib.pfnFill = reinterpret_cast<PFN_GenneraUSBControllerInfo>(pLibrary->resolve("GenneraUSBControllerInfo"));
    lib.pfnDestroy = reinterpret_cast<PFN_DestroyRootItem>(pLibrary->resolve("DestroyRootItem"));
    return true;
}

constexpr int kMaxControllers = 4096;

} // namespace

void setLibraryPath(const QString &strPath)
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    if (lib.strPath == strPath)
        return;
    unloadLocked(lib);
    lib.strPath = strPath;
}

QString libraryPath()
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    return lib.strPath.isEmpty() ? defaultPath() : lib.strPath;
}

bool isLibraryLoaded()
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    return lib.pLibrary != nullptr;
}

UsbRootItem *buildTree()
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    if (!loadLocked(lib))
        return nullptr;
    UsbRootItem *pRoot = lib.pfnCreate ? lib.pfnCreate() : nullptr;
    if (lib.pfnFill)
        lib.pfnFill(pRoot, PROBEKIT_MODE_FULL);
    return pRoot;
}

void destroyTree(UsbRootItem *pRoot)
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    if (pRoot && lib.pLibrary && lib.pfnDestroy)
        lib.pfnDestroy(pRoot);
}

void unloadLibrary()
{
    CProbeLibrary &lib = probeLibrary();
    QMutexLocker locker(&lib.mutex);
    unloadLocked(lib);
}

void usbTreeCheck(CUsbBasicDetectInfo &info)
{
    info.pRootItem = buildTree();
    info.bNormal = info.pRootItem ? 1 : 0;
}

bool isDriverDateNew(const QString &strDate)
{
    const QStringList listParts = strDate.split(QLatin1Char('-'), Qt::KeepEmptyParts);
    if (listParts.isEmpty())
        return false;
    return listParts.last().toInt(nullptr, 10) >= 2012;
}

void applyDriverFacts(const UsbRootItem *pRoot, CUSBControllerDriverInfo &info, const DriverReader &reader)
{
    if (!pRoot || !pRoot->pChildren || !reader)
        return;
    int nSeen = 0;
    for (const UsbListNode *pCell = pRoot->pChildren; pCell && nSeen < kMaxControllers; pCell = pCell->pNext, ++nSeen) {
        const UsbTreeItem *pItem = pCell->pItem;
        if (!pItem || !pItem->pInfo)
            continue;
        const auto *pController = static_cast<const UsbControllerInfo *>(pItem->pInfo);
        if (pController->Kind != 0)
            continue;
        const CControllerDriverFacts facts = reader(*pController);
        if (!facts.bOpened) {
            info.bNormal = 0;
            continue;
        }
        if (facts.bSkip)
            continue;
        if (!facts.strDriverDesc.isNull())
            info.driverDesc = facts.strDriverDesc;
        if (!facts.strDriverVersion.isNull())
            info.driverVersion = facts.strDriverVersion;
        if (!facts.strDriverDate.isNull()) {
            info.driverDate = facts.strDriverDate;
            info.bNormal = isDriverDateNew(facts.strDriverDate) ? 1 : 0;
        }
        if (!facts.strProviderName.isNull())
            info.providerName = facts.strProviderName;
    }
}

int controllerCount(const UsbRootItem *pRoot)
{
    if (!pRoot)
        return -1;
    int nControllers = 0;
    int nSeen = 0;
    for (const UsbListNode *pCell = pRoot->pChildren; pCell && nSeen < kMaxControllers; pCell = pCell->pNext, ++nSeen)
        if (pCell->pItem && pCell->pItem->pInfo && static_cast<const UsbControllerInfo *>(pCell->pItem->pInfo)->Kind == 0)
            ++nControllers;
    return nControllers;
}

void usbDriverCheck(CUSBControllerDriverInfo &info, UsbRootItem **ppRoot)
{
    UsbRootItem *pRoot = buildTree();
    if (ppRoot)
        *ppRoot = pRoot;
    // A PC without any USB host controller cannot run a USB3 Vision camera:
    // that is a finding, not a pass.
    info.nControllers = controllerCount(pRoot);
    if (info.nControllers == 0)
        info.bNormal = 0;
    applyDriverFacts(pRoot, info, readControllerDriver);
    if (!ppRoot)
        destroyTree(pRoot);
}

QStringList treeReportLines(const UsbRootItem *pRoot)
{
    CUsbTextSink sink;
    CUsbTreeDecoder(sink).printTree(pRoot);
    return sink.listLines;
}

} // namespace VxUsbProbe
