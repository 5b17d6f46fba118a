// The camera host tuning group: whether a camera that works loses frames on
// this PC through its USB link.
#include "itemrows.h"

#include "usblink.h"

namespace {

VxItemProbes usbLinkProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck([](CUsbLinkDetectInfo &info) { VxUsbLink::check(info); });
    return probes;
}

} // namespace

QVector<VxItemRow> tuningItemRows()
{
    VxItemRow link{VxItems::UsbLink, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3 Vision Link"),
                   VxItems::CameraHostTuningGroup};
    link.nDetectRank = 11; // after the spec's items
    link.nDisplayRank = 1;
    link.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    link.action = VxRowAction::Dialog; // no dialog of its own: its lines in a box
    link.create = vxNewRecord<CUsbLinkDetectInfo>;
    link.fits = vxRecordFits<CUsbLinkDetectInfo>;
    link.defaultProbes = usbLinkProbes;
    link.lines = usbLinkLines;
    link.facts = usbLinkFacts;
    return {link};
}
