// The camera host tuning group: USB buffer memory, network receive buffers,
// reverse-path filtering and the GenTL producers. Their lines and facts come
// from the probes; the repairs make the changes of their plans.
#include "itemrows.h"

#include "gentlproducers.h"
#include "rpfilter.h"
#include "rxbuffers.h"
#include "usbbuffers.h"

namespace {

// The group and the ids these rows use, until the item ids and groups name them.
constexpr auto kTuningGroup = VxItems::Group(8);
constexpr auto kUsbBufferMemory = VxItems::ItemId(UsbBuffers::kItemId);
constexpr auto kReceiveBuffers = VxItems::ItemId(RxBuffers::kItemId);
constexpr auto kReversePathFilter = VxItems::ItemId(RpFilter::kItemId);
constexpr auto kGenTLProducers = VxItems::ItemId(GenTLProducers::kItemId);

// The probes' line and fact writers, for any record of the item's class.
template<typename Record, QStringList (*Lines)(const Record &)>
QStringList linesOf(const CDetectInfo &info)
{
    auto *pRecord = dynamic_cast<const Record *>(&info);
    return pRecord ? Lines(*pRecord) : QStringList();
}
template<typename Record, QJsonObject (*Facts)(const Record &)>
QJsonObject factsOf(const CDetectInfo &info)
{
    auto *pRecord = dynamic_cast<const Record *>(&info);
    return pRecord ? Facts(*pRecord) : QJsonObject();
}

VxItemProbes usbBufferProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(UsbBuffers::check);
    probes.repair = vxRepair([rights](CUsbBufferDetectInfo &info) { return UsbBuffers::repair(info, rights); });
    return probes;
}

VxItemProbes rxBufferProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(RxBuffers::check);
    probes.repair = vxRepair([rights](CRxBufferDetectInfo &info) { return RxBuffers::repair(info, rights); });
    return probes;
}

VxItemProbes rpFilterProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(RpFilter::check);
    probes.repair = vxRepair([rights](CRpFilterDetectInfo &info) { return RpFilter::repair(info, rights); });
    return probes;
}

VxItemProbes genTLProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck(GenTLProducers::check);
    return probes;
}

// A tuning row: detected after the spec's items, its lines in a box when
// exceptional, repaired (where it has a repair) after the others.
VxItemRow tuningRow(VxItems::ItemId id, const char *pName, int nRank, bool bRepair)
{
    VxItemRow row{id, pName, kTuningGroup};
    row.nDetectRank = 10 + nRank;
    row.nDisplayRank = nRank;
    row.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    row.action = VxRowAction::Dialog;
    if (bRepair) {
        row.nOptimizeRank = 5 + nRank;
        row.repair = VxRepairKind::Repair; // the repairs check again themselves
    }
    return row;
}
} // namespace

const char *tuningGroupSourceName()
{
    return QT_TRANSLATE_NOOP("VxOneKeyResult", "Camera Host Tuning");
}

QVector<VxItemRow> tuningItemRows()
{
    VxItemRow usb = tuningRow(kUsbBufferMemory, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB Buffer Memory"), 1, true);
    usb.create = vxNewRecord<CUsbBufferDetectInfo>;
    usb.fits = vxRecordFits<CUsbBufferDetectInfo>;
    usb.defaultProbes = usbBufferProbes;
    usb.lines = linesOf<CUsbBufferDetectInfo, usbBufferLines>;
    usb.facts = factsOf<CUsbBufferDetectInfo, usbBufferFacts>;

    VxItemRow rx = tuningRow(kReceiveBuffers, QT_TRANSLATE_NOOP("VxOneKeyResult", "Network Receive Buffers"), 2, true);
    rx.create = vxNewRecord<CRxBufferDetectInfo>;
    rx.fits = vxRecordFits<CRxBufferDetectInfo>;
    rx.defaultProbes = rxBufferProbes;
    rx.lines = linesOf<CRxBufferDetectInfo, rxBufferLines>;
    rx.facts = factsOf<CRxBufferDetectInfo, rxBufferFacts>;

    VxItemRow rp = tuningRow(kReversePathFilter, QT_TRANSLATE_NOOP("VxOneKeyResult", "Reverse-Path Filter"), 3, true);
    rp.create = vxNewRecord<CRpFilterDetectInfo>;
    rp.fits = vxRecordFits<CRpFilterDetectInfo>;
    rp.defaultProbes = rpFilterProbes;
    rp.lines = linesOf<CRpFilterDetectInfo, rpFilterLines>;
    rp.facts = factsOf<CRpFilterDetectInfo, rpFilterFacts>;

    VxItemRow gentl = tuningRow(kGenTLProducers, QT_TRANSLATE_NOOP("VxOneKeyResult", "GenTL Producers"), 4, false);
    gentl.create = vxNewRecord<CGenTLDetectInfo>;
    gentl.fits = vxRecordFits<CGenTLDetectInfo>;
    gentl.defaultProbes = genTLProbes;
    gentl.lines = linesOf<CGenTLDetectInfo, genTLLines>;
    gentl.facts = factsOf<CGenTLDetectInfo, genTLFacts>;
    return {usb, rx, rp, gentl};
}
