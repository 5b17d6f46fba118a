#include "vxoperatethread.h"

#include "vxitemregistry.h"
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
    for (VxItemProbes &probes : m_table.items)
        probes.install = notingMissingInstaller(probes.install, probes.installerPath);
}

// An install that finds no installer is followed by the "File doesn't
// exist." warning; the installer's path is noted here so the warning can
// name it.
std::function<VxRepairOutcome()> VxOperateThread::notingMissingInstaller(std::function<VxRepairOutcome()> install,
                                                                       std::function<QString()> installerPath)
{
    if (!install || !installerPath)
        return install;
    return [this, install, installerPath] {
        const VxRepairOutcome outcome = install();
        if (outcome.ok())
            return outcome;
        const QString strPath = installerPath();
        if (!strPath.isEmpty() && !QFileInfo(strPath).isFile()) {
            MutexLocker locker(&m_missingMutex);
            m_listMissingInstallers << strPath;
        }
        return outcome;
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

VxRepairOutcome VxOperateThread::repairOutcome(int nItem) const
{
    MutexLocker locker(&m_recordsMutex);
    return m_mapOutcomes.value(nItem);
}

void VxOperateThread::noteOutcome(int nItem, const VxRepairOutcome &outcome)
{
    MutexLocker locker(&m_recordsMutex);
    m_mapOutcomes.insert(nItem, outcome);
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

namespace {
// The running detection pass as the rows' own detection steps see it.
class ThreadPass : public VxDetectPass
{
public:
    ThreadPass(std::function<CDetectInfo *(quint32)> record, const VxProbeTable &table,
               std::function<void(CDetectInfo *)> destroyTree)
        : m_record(std::move(record))
        , m_table(table)
        , m_destroyTree(std::move(destroyTree))
    {
    }
    CDetectInfo *record(quint32 nItem) override { return m_record(nItem); }
    void check(CDetectInfo &info) override
    {
        if (const auto &check = m_table.probes(quint32(info.nItem)).check)
            check(info);
    }
    void destroyTree(CDetectInfo *pInfo) override { m_destroyTree(pInfo); }

private:
    std::function<CDetectInfo *(quint32)> m_record;
    const VxProbeTable &m_table;
    std::function<void(CDetectInfo *)> m_destroyTree;
};
} // namespace

void VxOperateThread::detectPass()
{
    ThreadPass pass([this](quint32 nItem) { return detectInfo(int(nItem)); }, m_table,
                    [this](CDetectInfo *pInfo) { destroyUsbTree(pInfo); });
    for (int nItem : VxItems::detectOrder()) {
        if (!maskHas(true, nItem) || !m_table.canDetect(nItem))
            continue;
        if (!pauseAndCheckStop())
            return;
        CDetectInfo *pInfo = detectInfo(nItem);
        pInfo->nRepairStatus = 0;
        emit sigStartDetectItem(pInfo);
        const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
        if (pRow && pRow->detect)
            pRow->detect(pass, *pInfo);
        else
            pass.check(*pInfo);
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
    const VxItemRow *pRow = VxItemRegistry::row(quint32(pInfo->nItem));
    const VxItemProbes probes = m_table.probes(quint32(pInfo->nItem));
    if (!pRow)
        return;
    if (pRow->repair == VxRepairKind::Install) {
        installAndPoll(pInfo, probes.install, probes.check);
        return; // signals and mask handled there
    }
    const VxRepairOutcome outcome = probes.repair ? probes.repair(*pInfo) : VxRepairOutcome();
    noteOutcome(pInfo->nItem, outcome);
    if (!outcome.ok())
        qCWarning(lcVxRepair).noquote() << "repair of item" << pInfo->nItem << "did not happen:" << outcome.strReason;
    const bool bFailedVisibly = !outcome.ok() && VxPrivileged::failedRepairStaysExceptional();
    const bool bRecheck =
        pRow->recheck == VxRecheck::Always || (pRow->recheck == VxRecheck::AfterFailedStep && bFailedVisibly);
    if (bRecheck && probes.check)
        probes.check(*pInfo);
    // An item still exceptional after a failed repair keeps the reason.
    const bool bFailed = bFailedVisibly && pInfo->bNormal == 0;
    pInfo->nRepairStatus = bFailed ? int(outcome.status) : 0;
    emit sigEndOptimizeItem(pInfo);
    clearCurrentBit(pInfo->nItem);
}
