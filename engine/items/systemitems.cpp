// The PC system group: the USB tree, the firewall, jumbo frames, line rate
// and the system's facts.
#include "itemrows.h"

#include "cdetectinfo.h"
#include "firewallstatus.h"
#include "jumboframe.h"
#include "linerate.h"
#include "systeminfo.h"
#include "usbprobe.h"

namespace {
using VxItemText::translated;

QStringList usbTreeLines(const CDetectInfo &info)
{
    auto *pUsb = dynamic_cast<const CUsbBasicDetectInfo *>(&info);
    if (!pUsb)
        return {};
    QStringList lines = VxUsbProbe::treeReportLines(pUsb->pRootItem);
    if (VxUsbProbe::controllerCount(pUsb->pRootItem) == 0)
        lines << translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "No USB host controller was found."));
    return lines;
}

QJsonObject usbTreeFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CUsbBasicDetectInfo *>(&info))
        object.insert(QStringLiteral("hasTree"), p->pRootItem != nullptr);
    return object;
}

VxItemProbes usbTreeProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck(VxUsbProbe::usbTreeCheck);
    return probes;
}

// Takes over the tree the controller-driver check built in this pass, or
// builds one.
void detectUsbTree(VxDetectPass &pass, CDetectInfo &info)
{
    if (pass.handedOver(VxItems::UsbControllerInfo)) {
        info.bNormal = 1;
        return;
    }
    pass.destroyTree(&info);
    pass.check(info);
}

QStringList firewallLines(const CDetectInfo &info)
{
    return {info.bNormal ? translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "The firewall hasn't been opened"))
                         : translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "The firewall has been opened"))};
}

VxItemProbes firewallProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = Firewall::check;
    return probes;
}

QStringList jumboLines(const CDetectInfo &info)
{
    QStringList lines;
    auto *pJumbo = dynamic_cast<const CJumboPacketDetectInfo *>(&info);
    if (!pJumbo)
        return lines;
    for (auto it = pJumbo->jumboStates.cbegin(); it != pJumbo->jumboStates.cend(); ++it) {
        const QString strState = it.value() == 1
            ? translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "The Jumbo Packet is enabled(value = %1)"))
                  .arg(pJumbo->jumboValues.value(it.key()))
            : translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "The Jumbo Packet isn't enabled"));
        lines << it.key() + QStringLiteral(" : ") + strState;
    }
    return lines;
}

QJsonObject jumboFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CJumboPacketDetectInfo *>(&info)) {
        object.insert(QStringLiteral("jumboStates"), VxItemFacts::intMap(p->jumboStates));
        object.insert(QStringLiteral("jumboValues"), VxItemFacts::intMap(p->jumboValues));
    }
    return object;
}

VxItemProbes jumboProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(JumboFrame::check);
    probes.repair = vxRepair([rights](CJumboPacketDetectInfo &info) { return JumboFrame::repair(info, rights); });
    return probes;
}

QString rateText(int nMbps)
{
    if (nMbps < 0)
        return translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Unknown"));
    return QString::number(nMbps / 1000.0, 'f', 2) + QStringLiteral("Gbps");
}

QStringList lineRateLines(const CDetectInfo &info)
{
    QStringList lines;
    if (auto *pNet = dynamic_cast<const CNetworkSpeedDetectInfo *>(&info)) {
        for (auto it = pNet->adapterSpeeds.cbegin(); it != pNet->adapterSpeeds.cend(); ++it)
            lines << it.key() + QStringLiteral(" : ") + rateText(it.value());
    }
    return lines;
}

QJsonObject lineRateFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CNetworkSpeedDetectInfo *>(&info))
        object.insert(QStringLiteral("adapterSpeeds"), VxItemFacts::intMap(p->adapterSpeeds));
    return object;
}

VxItemProbes lineRateProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck(LineRate::check);
    return probes;
}

QStringList systemLines(const CDetectInfo &info)
{
    auto *pSys = dynamic_cast<const CSystemDetectInfo *>(&info);
    if (!pSys)
        return {};
    return {translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "CPU               : ")) + pSys->cpu,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "CPU Core Number   : ")) + pSys->cpuCount,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Available Memory  : ")) + pSys->availableMemory,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Endianess         : ")) + pSys->byteOrder,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Operating System  : ")) + pSys->operatingSystem,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Graphic Chipset   : ")) + pSys->graphicsChips,
            translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Screen Resolution : ")) + pSys->resolution};
}

QJsonObject systemFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CSystemDetectInfo *>(&info)) {
        object.insert(QStringLiteral("cpu"), p->cpu);
        object.insert(QStringLiteral("cpuCount"), p->cpuCount);
        object.insert(QStringLiteral("availableMemory"), p->availableMemory);
        object.insert(QStringLiteral("byteOrder"), p->byteOrder);
        object.insert(QStringLiteral("operatingSystem"), p->operatingSystem);
        object.insert(QStringLiteral("graphicsChips"), p->graphicsChips);
        object.insert(QStringLiteral("resolution"), p->resolution);
    }
    return object;
}

VxItemProbes systemProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck(SystemInfo::check);
    return probes;
}
} // namespace

QVector<VxItemRow> systemItemRows()
{
    VxItemRow usb{VxItems::UsbControllerInfo, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB Controller Info"),
                  VxItems::SystemGroup};
    usb.nDetectRank = 6;
    usb.nDisplayRank = 1;
    usb.button = {VxItems::BtnCheck, true, VxItems::BtnCheck, true};
    usb.action = VxRowAction::Dialog;
    usb.bLinesInTree = false; // the tree is shown by its viewer; the log has it all
    usb.create = vxNewRecord<CUsbBasicDetectInfo>;
    usb.fits = vxRecordFits<CUsbBasicDetectInfo>;
    usb.defaultProbes = usbTreeProbes;
    usb.lines = usbTreeLines;
    usb.facts = usbTreeFacts;
    usb.detect = detectUsbTree;

    VxItemRow firewall{VxItems::Firewall, QT_TRANSLATE_NOOP("VxOneKeyResult", "PC Firewall Status"),
                       VxItems::SystemGroup};
    firewall.nDetectRank = 7;
    firewall.nDisplayRank = 2;
    // Normal means the firewall is off; the button only states it.
    firewall.button = {VxItems::BtnDisabled, false, VxItems::BtnEnabled, false};
    firewall.create = vxNewRecord<CDetectInfo>;
    firewall.fits = vxRecordFits<CDetectInfo>;
    firewall.defaultProbes = firewallProbes;
    firewall.lines = firewallLines;
    firewall.facts = VxItemFacts::none;

    VxItemRow jumbo{VxItems::JumboFrame, QT_TRANSLATE_NOOP("VxOneKeyResult", "Jumbo Frame"), VxItems::SystemGroup};
    jumbo.nDetectRank = 8;
    jumbo.nDisplayRank = 3;
    jumbo.nOptimizeRank = 5;
    jumbo.button = {VxItems::BtnCheck, true, VxItems::BtnCheckAndRepair, true};
    jumbo.action = VxRowAction::RepairDialog;
    jumbo.repair = VxRepairKind::Repair; // the repair checks again itself
    jumbo.create = vxNewRecord<CJumboPacketDetectInfo>;
    jumbo.fits = vxRecordFits<CJumboPacketDetectInfo>;
    jumbo.defaultProbes = jumboProbes;
    jumbo.lines = jumboLines;
    jumbo.facts = jumboFacts;

    VxItemRow rate{VxItems::LineRate, QT_TRANSLATE_NOOP("VxOneKeyResult", "Network Line Rate"), VxItems::SystemGroup};
    rate.nDetectRank = 9;
    rate.nDisplayRank = 4;
    rate.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    rate.action = VxRowAction::Dialog;
    rate.create = vxNewRecord<CNetworkSpeedDetectInfo>;
    rate.fits = vxRecordFits<CNetworkSpeedDetectInfo>;
    rate.defaultProbes = lineRateProbes;
    rate.lines = lineRateLines;
    rate.facts = lineRateFacts;

    VxItemRow system{VxItems::SystemInfo, QT_TRANSLATE_NOOP("VxOneKeyResult", "Systm Info"), VxItems::SystemGroup};
    system.nDetectRank = 10;
    system.nDisplayRank = 5;
    system.button = {VxItems::BtnCheck, true, VxItems::BtnCheck, true};
    system.action = VxRowAction::Dialog;
    system.create = vxNewRecord<CSystemDetectInfo>;
    system.fits = vxRecordFits<CSystemDetectInfo>;
    system.defaultProbes = systemProbes;
    system.lines = systemLines;
    system.facts = systemFacts;
    return {usb, firewall, jumbo, rate, system};
}
