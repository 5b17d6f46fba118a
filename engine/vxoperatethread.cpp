#include "vxoperatethread.h"

#include "vxitems.h"
#include "vxrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

// QMutex blocks through futexes that ThreadSanitizer does not see, so under
// it the lock and unlock are announced as acquire and release.
#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void *pAddr);
extern "C" void __tsan_release(void *pAddr);
#define VX_TSAN_ACQUIRE(p) __tsan_acquire(p)
#define VX_TSAN_RELEASE(p) __tsan_release(p)
#else
#define VX_TSAN_ACQUIRE(p) ((void)(p))
#define VX_TSAN_RELEASE(p) ((void)(p))
#endif

namespace {
class MutexLocker
{
public:
    explicit MutexLocker(QMutex *pMutex)
        : m_pMutex(pMutex)
    {
        relock();
    }
    ~MutexLocker() { unlock(); }
    MutexLocker(const MutexLocker &) = delete;
    MutexLocker &operator=(const MutexLocker &) = delete;

    void unlock()
    {
        if (!m_bLocked)
            return;
        VX_TSAN_RELEASE(m_pMutex);
        m_pMutex->unlock();
        m_bLocked = false;
    }
    void relock()
    {
        m_pMutex->lock();
        VX_TSAN_ACQUIRE(m_pMutex);
        m_bLocked = true;
    }

private:
    QMutex *m_pMutex;
    bool m_bLocked = false;
};

VxOperateThread::WarningHandler &warningHandler()
{
    static VxOperateThread::WarningHandler handler;
    return handler;
}

qint64 monotonicMs()
{
    static QElapsedTimer timer = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return timer.elapsed();
}
} // namespace

namespace {
std::function<VxProbeTable()> &probeTableSource()
{
    static std::function<VxProbeTable()> source;
    return source;
}
} // namespace

VxOperateThread::VxOperateThread(QObject *pParent)
    : VxOperateThread(probeTableSource() ? probeTableSource()() : defaultProbeTable(), pParent)
{
}

void VxOperateThread::setProbeTableSource(std::function<VxProbeTable()> source)
{
    probeTableSource() = std::move(source);
}

VxOperateThread::VxOperateThread(const VxProbeTable &table, QObject *pParent)
    : QThread(pParent)
    , m_table(table)
    , m_clock(monotonicMs)
{
    qRegisterMetaType<CDetectInfo *>("CDetectInfo*");
    connect(this, &VxOperateThread::sigWarning, this, &VxOperateThread::onWarning);
    m_table.gigeDriverInstall = notingMissingInstaller(m_table.gigeDriverInstall, m_table.gigeInstallerPath);
    m_table.usb3DriverInstall = notingMissingInstaller(m_table.usb3DriverInstall, m_table.usb3InstallerPath);
}

// An install that finds no installer is followed by the "File doesn't
// exist." warning; the installer's path is noted here so the warning can
// name it.
std::function<bool()> VxOperateThread::notingMissingInstaller(std::function<bool()> install,
                                                            std::function<QString()> installerPath)
{
    if (!install || !installerPath)
        return install;
    return [this, install, installerPath] {
        if (install())
            return true;
        const QString strPath = installerPath();
        if (!strPath.isEmpty() && !QFileInfo(strPath).isFile()) {
            MutexLocker locker(&m_missingMutex);
            m_listMissingInstallers << strPath;
        }
        return false;
    };
}

VxOperateThread::~VxOperateThread()
{
    // A pass still running would write into the records being freed.
    if (isRunning()) {
        {
            MutexLocker locker(&mutex);
            bStop = true;
        }
        wait();
    }
    for (CDetectInfo *pInfo : qAsConst(records)) {
        destroyUsbTree(pInfo);
        delete pInfo;
    }
}

void VxOperateThread::setWarningHandler(WarningHandler handler)
{
    warningHandler() = std::move(handler);
}

void VxOperateThread::setClock(Clock clock)
{
    m_clock = clock ? std::move(clock) : Clock(monotonicMs);
}

void VxOperateThread::cutRunningPassShort()
{
    if (!isRunning())
        return;
    bForceStopped = true;
    {
        MutexLocker locker(&mutex);
        bStop = true;
    }
    quit();
    // Deliver the old pass's queued signals while it winds down.
    while (isRunning())
        QCoreApplication::processEvents();
    wait();
    bForceStopped = false;
}

void VxOperateThread::beginPass(bool bDetect, quint32 uMask)
{
    cutRunningPassShort();
    {
        MutexLocker locker(&mutex);
        nInterval = m_nStartInterval;
        if (bDetect)
            detectMask = uMask;
        else
            optimizeMask = uMask;
        bIsDetecting = bDetect;
        bStop = false;
    }
    start(QThread::InheritPriority);
}

void VxOperateThread::startDetect(quint32 uMask)
{
    beginPass(true, uMask);
}

void VxOperateThread::startOptimize(quint32 uMask)
{
    beginPass(false, uMask);
}

void VxOperateThread::stop()
{
    nInterval = m_nStartInterval;
    {
        MutexLocker locker(&mutex);
        bStop = true;
    }
    quit();
}

bool VxOperateThread::stopAndWait()
{
    stop();
    while (isRunning())
        QCoreApplication::processEvents();
    return wait();
}

void VxOperateThread::stop(bool bWait)
{
    {
        MutexLocker locker(&mutex);
        bStop = true;
    }
    quit();
    if (bWait) {
        while (isRunning())
            QCoreApplication::processEvents();
        wait();
    }
}

// The masks are written under the mutex here too: the worker reads them
// under it, and an unguarded write would race with that read.
void VxOperateThread::stopDetect()
{
    stop();
    MutexLocker locker(&mutex);
    detectMask = 0;
}

void VxOperateThread::stopOptimizeAndWait()
{
    stopAndWait();
    MutexLocker locker(&mutex);
    optimizeMask = 0;
}

void VxOperateThread::reset()
{
    nInterval = 0;
    MutexLocker locker(&mutex);
    detectMask = 0;
    optimizeMask = 0;
    bStop = true;
    locker.unlock();
    quit();
}

void VxOperateThread::onRemoveItem(int nItem)
{
    MutexLocker locker(&mutex);
    if (bIsDetecting)
        detectMask &= ~quint32(nItem);
    else
        optimizeMask &= ~quint32(nItem);
}

CDetectInfo *VxOperateThread::detectInfo(int nItem)
{
    MutexLocker locker(&m_recordsMutex);
    CDetectInfo *&pInfo = records[nItem];
    if (!pInfo)
        pInfo = createDetectInfo(nItem);
    return pInfo;
}

QMap<int, CDetectInfo *> VxOperateThread::allRecords() const
{
    MutexLocker locker(&m_recordsMutex);
    return records;
}

void VxOperateThread::prepareRun(bool bDetect, quint32 uMask, int nPause)
{
    MutexLocker locker(&mutex);
    bIsDetecting = bDetect;
    bStop = false;
    nInterval = nPause;
    if (bDetect)
        detectMask = uMask;
    else
        optimizeMask = uMask;
}

void VxOperateThread::setRecords(const QMap<int, CDetectInfo *> &mapRecords)
{
    MutexLocker locker(&m_recordsMutex);
    records = mapRecords;
}

void VxOperateThread::releaseRecords()
{
    MutexLocker locker(&m_recordsMutex);
    records.clear();
}

quint32 VxOperateThread::pendingDetectMask()
{
    MutexLocker locker(&mutex);
    return detectMask;
}

quint32 VxOperateThread::pendingOptimizeMask()
{
    MutexLocker locker(&mutex);
    return optimizeMask;
}

bool VxOperateThread::isDetectMode()
{
    MutexLocker locker(&mutex);
    return bIsDetecting;
}

void VxOperateThread::onWarning(const QString &strInfo)
{
    QString strText = strInfo;
    if (strInfo == tr("File doesn't exist.")) {
        MutexLocker locker(&m_missingMutex);
        if (!m_listMissingInstallers.isEmpty())
            strText += QLatin1Char('\n')
                + tr("Missing file: %1").arg(QDir::toNativeSeparators(m_listMissingInstallers.takeFirst()));
    }
    if (warningHandler())
        warningHandler()(parent(), strText);
}

// --- the worker side ------------------------------------------------------

void VxOperateThread::run()
{
    bool bDetect;
    {
        MutexLocker locker(&mutex);
        bDetect = bIsDetecting;
    }
    emit sigStartOperate(bDetect);
    if (bDetect)
        detectPass();
    else
        optimizePass();
    if (!bForceStopped)
        emit sigEndOperate(bDetect);
}

bool VxOperateThread::pauseAndCheckStop()
{
    MutexLocker locker(&mutex);
    const int nPause = nInterval;
    if (nPause > 0)
        msleep(ulong(nPause));
    return !bStop;
}

void VxOperateThread::finalPause()
{
    MutexLocker locker(&mutex);
    const int nPause = nInterval;
    if (nPause > 0)
        msleep(ulong(nPause));
}

bool VxOperateThread::stopRequested()
{
    MutexLocker locker(&mutex);
    return bStop;
}

void VxOperateThread::clearCurrentBit(int nItem)
{
    MutexLocker locker(&mutex);
    if (bIsDetecting)
        detectMask &= ~quint32(nItem);
    else
        optimizeMask &= ~quint32(nItem);
}

bool VxOperateThread::maskHas(bool bDetect, int nItem)
{
    MutexLocker locker(&mutex);
    return ((bDetect ? detectMask : optimizeMask) & quint32(nItem)) != 0;
}

void VxOperateThread::detectPass()
{
    bool bTreeHandedBack = false;
    for (int nItem : VxItems::detectOrder()) {
        if (!maskHas(true, nItem) || !m_table.canDetect(nItem))
            continue;
        if (!pauseAndCheckStop())
            return;
        CDetectInfo *pInfo = detectInfo(nItem);
        pInfo->nRepairStatus = 0;
        emit sigStartDetectItem(pInfo);
        detectItem(pInfo, bTreeHandedBack);
        if (!stopRequested()) {
            emit sigEndDetectItem(pInfo);
            clearCurrentBit(pInfo->nItem);
        }
    }
    finalPause();
}

void VxOperateThread::destroyUsbTree(CDetectInfo *pInfo)
{
    auto *pUsb = dynamic_cast<CUsbBasicDetectInfo *>(pInfo);
    if (!pUsb || !pUsb->pRootItem)
        return;
    if (m_table.usbTreeDestroy)
        m_table.usbTreeDestroy(pUsb->pRootItem);
    pUsb->pRootItem = nullptr;
}

void VxOperateThread::detectItem(CDetectInfo *pInfo, bool &bTreeHandedBack)
{
    switch (pInfo->nItem) {
    case VxItems::SdkFiles:
        m_table.sdkFileCheck(*static_cast<CSDKPathDetectInfo *>(pInfo));
        break;
    case VxItems::EnvVariables:
        m_table.envCheck(*static_cast<CEnvDetectInfo *>(pInfo));
        break;
    case VxItems::GigeDriver:
        m_table.gigeDriverCheck(*pInfo);
        break;
    case VxItems::Usb3Driver:
        m_table.usb3DriverCheck(*pInfo);
        break;
    case VxItems::UsbControllerDriver: {
        // The controller-driver probe builds the USB tree as a side effect;
        // the USB tree item takes it over instead of building its own.
        auto *pUsb = static_cast<CUsbBasicDetectInfo *>(detectInfo(VxItems::UsbControllerInfo));
        destroyUsbTree(pUsb);
        UsbRootItem *pRoot = nullptr;
        m_table.usbDriverCheck(*static_cast<CUSBControllerDriverInfo *>(pInfo), &pRoot);
        pUsb->pRootItem = pRoot;
        bTreeHandedBack = pRoot != nullptr;
        break;
    }
    case VxItems::UsbControllerInfo: {
        auto *pUsb = static_cast<CUsbBasicDetectInfo *>(pInfo);
        if (bTreeHandedBack) {
            pUsb->bNormal = 1;
        } else {
            destroyUsbTree(pUsb);
            m_table.usbTreeCheck(*pUsb);
        }
        break;
    }
    case VxItems::Firewall:
        m_table.firewallCheck(*pInfo);
        break;
    case VxItems::JumboFrame:
        m_table.jumboCheck(*static_cast<CJumboPacketDetectInfo *>(pInfo));
        break;
    case VxItems::LineRate:
        m_table.lineRateCheck(*static_cast<CNetworkSpeedDetectInfo *>(pInfo));
        break;
    case VxItems::SystemInfo:
        m_table.systemInfoCheck(*static_cast<CSystemDetectInfo *>(pInfo));
        break;
    default:
        break;
    }
}

void VxOperateThread::optimizePass()
{
    for (int nItem : VxItems::optimizeOrder()) {
        if (!maskHas(false, nItem) || !m_table.canOptimize(nItem))
            continue;
        if (!pauseAndCheckStop())
            return;
        CDetectInfo *pInfo = detectInfo(nItem);
        emit sigStartOptimizeItem(pInfo);
        optimizeItem(pInfo);
    }
    finalPause();
}

void VxOperateThread::optimizeItem(CDetectInfo *pInfo)
{
    // The repairs report how their privileged step went here.
    VxPrivileged::setLastStatus(VxRepairStatus::Done);
    switch (pInfo->nItem) {
    case VxItems::SdkFiles: {
        auto &sdk = *static_cast<CSDKPathDetectInfo *>(pInfo);
        m_table.sdkFileClear(sdk);
        // The clear marks the item normal whatever it removed; where a failed
        // removal must show, a fresh check finds the files still on disk.
        if (repairFailedVisibly() && m_table.sdkFileCheck)
            m_table.sdkFileCheck(sdk);
        break;
    }
    case VxItems::EnvVariables: {
        auto &env = *static_cast<CEnvDetectInfo *>(pInfo);
        m_table.envRepair(env);
        m_table.envCheck(env);
        break;
    }
    case VxItems::GigeDriver:
        installAndPoll(pInfo, m_table.gigeDriverInstall, m_table.gigeDriverCheck);
        return; // signals and mask handled there
    case VxItems::Usb3Driver:
        installAndPoll(pInfo, m_table.usb3DriverInstall, m_table.usb3DriverCheck);
        return;
    case VxItems::JumboFrame:
        m_table.jumboRepair(*static_cast<CJumboPacketDetectInfo *>(pInfo));
        break;
    default:
        break;
    }
    // An item still exceptional after a failed repair keeps the reason.
    const bool bFailed = repairFailedVisibly() && pInfo->bNormal == 0;
    pInfo->nRepairStatus = bFailed ? int(VxPrivileged::lastStatus()) : 0;
    emit sigEndOptimizeItem(pInfo);
    clearCurrentBit(pInfo->nItem);
}

bool VxOperateThread::repairFailedVisibly()
{
    return VxPrivileged::lastStatus() != VxRepairStatus::Done && VxPrivileged::failedRepairStaysExceptional();
}
