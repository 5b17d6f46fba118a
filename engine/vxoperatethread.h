#pragma once

#include "cdetectinfo.h"
#include "vxitems.h"
#include "vxprobetable.h"

#include <QMap>
#include <QMutex>
#include <QThread>

#include <atomic>
#include <functional>

// Runs the one-key work off the GUI thread: a detection pass that calls the
// probe of each selected item and fills its record, or an optimization pass
// that repairs the selected items. Owns every diagnosis record.
//
// The pass runs without an event loop; a stop request is polled in the pause
// before each item, and the pause is taken with the mutex held so a caller
// that takes the mutex waits at most one pause.
class VxOperateThread : public QThread
{
    Q_OBJECT
public:
    // Shows a warning for the thread's owner (a widget in the GUI; stderr in
    // the command-line tool). Installed once by the program.
    using WarningHandler = std::function<void(QObject *pParent, const QString &strInfo)>;
    // Milliseconds since some fixed point; the install polling measures its
    // ten-minute limit with it.
    using Clock = std::function<qint64()>;

    static constexpr int kItemPauseMs = 500;
    static constexpr qint64 kInstallPollLimitMs = 600000;

    // Uses the probe table of this platform (or the one a test installed
    // with setProbeTableSource).
    explicit VxOperateThread(QObject *pParent = nullptr);
    VxOperateThread(const VxProbeTable &table, QObject *pParent = nullptr);
    ~VxOperateThread() override;

    static void setWarningHandler(WarningHandler handler);
    // Where threads made without an explicit table get theirs; null restores
    // the platform's probes. Lets GUI tests run pages and runners on fakes.
    static void setProbeTableSource(std::function<VxProbeTable()> source);

    void startDetect(quint32 uMask);
    void startOptimize(quint32 uMask);
    void stop();
    bool stopAndWait();
    void stop(bool bWait);
    void stopDetect();
    void stopOptimizeAndWait();
    void reset();

    // The record of an item, created when absent. Stays valid until the
    // thread object is destroyed.
    CDetectInfo *detectInfo(int nItem);
    QMap<int, CDetectInfo *> allRecords() const;

    // One-shot use by a runner: set the mode, pause and mask of the next pass
    // directly (no cutting short), hand in records to work on, and take them
    // back out without deleting them afterwards.
    void prepareRun(bool bIsDetecting, quint32 uMask, int nInterval);
    void setRecords(const QMap<int, CDetectInfo *> &mapRecords);
    void releaseRecords();

    // How the last repair (or install) of an item in this thread ended;
    // Done for an item that had none.
    VxRepairOutcome repairOutcome(int nItem) const;

    quint32 pendingDetectMask();
    quint32 pendingOptimizeMask();
    bool isDetectMode();
    const VxProbeTable &probeTable() const { return m_table; }

    // The pause a start (and a stop) sets: 500 ms in the program; the
    // command-line tool runs items back to back.
    void setItemPause(int nMs) { m_nStartInterval = nMs; }
    void setClock(Clock clock);

    // The warning for a driver install that did not start, by the status of
    // its outcome (NotFound: no installer).
    static QString installFailureText(int nStatus);

public slots:
    void onRemoveItem(int nItem);

signals:
    void sigStartOperate(bool bIsDetecting);
    void sigEndOperate(bool bIsDetecting);
    void sigStartDetectItem(CDetectInfo *pInfo);
    void sigEndDetectItem(CDetectInfo *pInfo);
    void sigStartOptimizeItem(CDetectInfo *pInfo);
    void sigEndOptimizeItem(CDetectInfo *pInfo);
    void sigWarning(QString strInfo);

protected:
    void run() override;

private slots:
    void onWarning(const QString &strInfo);

private:
    void cutRunningPassShort();
    void beginPass(bool bIsDetecting, quint32 uMask);
    bool pauseAndCheckStop();
    void finalPause();
    bool stopRequested();
    void clearCurrentBit(int nItem);
    bool maskHas(bool bDetect, int nItem);
    void detectPass();
    void optimizePass();
    void optimizeItem(CDetectInfo *pInfo);
    void noteOutcome(int nItem, const VxRepairOutcome &outcome);
    void installAndPoll(CDetectInfo *pInfo, const std::function<VxRepairOutcome()> &install,
                        const std::function<void(CDetectInfo &)> &check);
    void destroyUsbTree(CDetectInfo *pInfo);
    std::function<VxRepairOutcome()> notingMissingInstaller(std::function<VxRepairOutcome()> install,
                                                            std::function<QString()> installerPath);

    std::atomic<bool> bForceStopped{false};
    bool bIsDetecting = true;
    bool bStop = false;
    std::atomic<int> nInterval{0};
    QMutex mutex;
    quint32 detectMask = 0;
    quint32 optimizeMask = 0;
    QMap<int, CDetectInfo *> records;
    QMap<int, VxRepairOutcome> m_mapOutcomes; // guarded by m_recordsMutex

    mutable QMutex m_recordsMutex; // the map is reached from the worker and the GUI
    // Installers found missing by the worker, oldest first; the warning
    // slot names them in the warnings they caused.
    QMutex m_missingMutex;
    QStringList m_listMissingInstallers;
    VxProbeTable m_table;
    int m_nStartInterval = kItemPauseMs;
    Clock m_clock;
};

Q_DECLARE_METATYPE(CDetectInfo *)
