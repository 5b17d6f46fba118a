// The camera host tuning group: whether a camera that works loses frames on
// this PC. USB buffer memory, network receive buffers, reverse-path
// filtering, the GenTL producers and the USB3 Vision links. Their lines and
// facts come from the probes.
#include "itemrows.h"

#include "gentlproducers.h"
#include "rpfilter.h"
#include "rxbuffers.h"
#include "usbbuffers.h"
#include "usblink.h"

namespace {

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

// A check, the plan of its repair and the repair that makes its changes;
// the check and the repair get the sources given (the system's).
template<typename Record, auto Check, auto Plan, auto Repair, typename... Sources>
VxItemProbes repairableProbes(const VxPrivileges &rights, const Sources &...sources)
{
    VxItemProbes probes;
    probes.check = vxCheck([sources...](Record &info) { Check(info, sources...); });
    probes.plan = vxPlan(Plan);
    probes.repair = vxRepair([rights, sources...](Record &info) { return Repair(info, rights, sources...); });
    return probes;
}

// The network items read the system's interfaces; the receive rings come
// from the running kernel (the empty ring reader).
VxItemProbes receiveBufferProbes(const VxPrivileges &rights)
{
    return repairableProbes<CRxBufferDetectInfo, RxBuffers::check, RxBuffers::plan, RxBuffers::repair>(
        rights, NetAdapters::LinkSource::system(), RxBuffers::RingReader());
}

VxItemProbes reversePathProbes(const VxPrivileges &rights)
{
    return repairableProbes<CRpFilterDetectInfo, RpFilter::check, RpFilter::plan, RpFilter::repair>(
        rights, NetAdapters::LinkSource::system());
}

// A row of the group: detected after the other groups' items, its lines in
// a box when asked; repaired (where it has a repair) after the others.
template<typename Record, QStringList (*Lines)(const Record &), QJsonObject (*Facts)(const Record &)>
VxItemRow tuningRow(VxItems::ItemId id, const char *pName, int nRank, bool bRepair)
{
    VxItemRow row = recordRow<Record>(id, pName, VxItems::CameraHostTuningGroup, 10 + nRank, nRank);
    row.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    row.action = VxRowAction::Dialog; // no dialog of its own: its lines in a box
    if (bRepair) {
        row.nOptimizeRank = 5 + nRank;
        row.repair = VxRepairKind::Repair; // the repairs check again themselves
    }
    row.lines = linesOf<Record, Lines>;
    row.facts = factsOf<Record, Facts>;
    return row;
}
} // namespace

QVector<VxItemRow> tuningItemRows()
{
    auto usb = tuningRow<CUsbBufferDetectInfo, usbBufferLines, usbBufferFacts>(
        VxItems::UsbBufferMemory, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB Buffer Memory"), 1, true);
    usb.defaultProbes = repairableProbes<CUsbBufferDetectInfo, UsbBuffers::check, UsbBuffers::plan, UsbBuffers::repair>;

    auto rx = tuningRow<CRxBufferDetectInfo, rxBufferLines, rxBufferFacts>(
        VxItems::ReceiveBuffers, QT_TRANSLATE_NOOP("VxOneKeyResult", "Network Receive Buffers"), 2, true);
    rx.defaultProbes = receiveBufferProbes;

    auto rp = tuningRow<CRpFilterDetectInfo, rpFilterLines, rpFilterFacts>(
        VxItems::ReversePathFilter, QT_TRANSLATE_NOOP("VxOneKeyResult", "Reverse-Path Filter"), 3, true);
    rp.defaultProbes = reversePathProbes;

    auto gentl = tuningRow<CGenTLDetectInfo, genTLLines, genTLFacts>(
        VxItems::GenTLProducers, QT_TRANSLATE_NOOP("VxOneKeyResult", "GenTL Producers"), 4, false);
    gentl.defaultProbes = checkOnly<GenTLProducers::check>;

    auto link = recordRow<CUsbLinkDetectInfo>(VxItems::UsbLink, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3 Vision Link"),
                                              VxItems::CameraHostTuningGroup, 15, 5);
    link.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    link.action = VxRowAction::Dialog;
    link.defaultProbes = checkOnly<static_cast<void (*)(CUsbLinkDetectInfo &)>(VxUsbLink::check)>;
    link.lines = usbLinkLines;
    link.facts = usbLinkFacts;
    return {usb, rx, rp, gentl, link};
}
