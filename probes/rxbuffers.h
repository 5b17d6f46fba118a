#pragma once

#include "cdetectinfo.h"
#include "netadapters.h"
#include "vxchange.h"
#include "vxrepair.h"

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QStringList>

#include <functional>

struct CRxRing;

// One physical network adapter's receive settings.
struct CRxAdapter
{
    QString strName; // interface name (Linux), adapter description (Windows)
    QString strDriverKey; // Windows: the adapter's class key "{4D36E972-...}\NNNN"
    qint64 nRx = -1; // RX ring entries / *ReceiveBuffers; -1 not known
    qint64 nRxMax = -1; // the most the driver offers; -1 not known
    // Windows: *InterruptModeration 1 on, 0 off, -1 the driver has none
    int nInterruptModeration = -1;
    QString strReason; // why the receive buffers are not known
};

// Item 8192 "network receive buffers": whether the host can take a camera's
// bursts. Linux: net.core.rmem_max and net.core.rmem_default below 16 MiB,
// net.core.netdev_max_backlog below 10000, and each physical adapter's RX
// ring below its maximum are exceptional. Windows: per adapter, the driver's
// *ReceiveBuffers below its maximum and *InterruptModeration off.
class CRxBufferDetectInfo : public CDetectInfo
{
public:
    CRxBufferDetectInfo() { nItem = 8192; }
    ~CRxBufferDetectInfo() override;

    QMap<QString, qint64> sysctls; // Linux: key -> value, -1 cannot be read
    // Linux: false with another system root, whose rings are not this
    // machine's: they are "not available" and not graded.
    bool bRingsReadable = true;
    QList<CRxAdapter> adapters;
};

namespace RxBuffers {

constexpr quint32 kItemId = 8192;
constexpr qint64 kMinimumRmem = 16777216; // 16 MiB
constexpr qint64 kMinimumBacklog = 10000;

// The sysctl keys read, in the order shown, and the least each should be.
QStringList sysctlKeys();
qint64 minimumOf(const QString &strKey);

// Reads an interface's receive ring (Linux), as EthtoolRings::read does.
using RingReader = std::function<bool(const QString &strName, CRxRing *pRing, QString *pError)>;

// Linux: the sysctls and the ring of each physical adapter of links, read
// with rings; an empty reader asks the running kernel, with the live system
// root only (tests hand in a reader so that fixture roots carry rings).
// Windows: its own adapter list (links and rings unused).
void check(CRxBufferDetectInfo &info, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system(),
    const RingReader &rings = RingReader());
bool isExceptional(const CRxBufferDetectInfo &info);

// Linux: Sysctl changes to the minimum and RxRing changes to the maximum.
// Windows: kReceiveBuffersKind to the maximum and kInterruptModerationKind
// to on, targets the class keys.
VxPlan plan(const CRxBufferDetectInfo &info);

// Makes the plan's changes and checks again (Windows: then restarts the
// adapters as the jumbo repair does; Linux: as root, see
// TuningApply::applyPlan, its interfaces checked against links; the check
// again reads rings).
VxRepairOutcome repair(CRxBufferDetectInfo &info, const VxPrivileges &rights,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system(), const RingReader &rings = RingReader());

inline constexpr char kReceiveBuffersKind[] = "receive-buffers";
inline constexpr char kInterruptModerationKind[] = "interrupt-moderation";

} // namespace RxBuffers

QStringList rxBufferLines(const CRxBufferDetectInfo &info);
QJsonObject rxBufferFacts(const CRxBufferDetectInfo &info);
