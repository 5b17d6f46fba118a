// The PC system group: the USB tree, the firewall, jumbo frames, line rate
// and the system's facts.
#include "itemrows.h"

#include "cdetectinfo.h"
#include "firewallstatus.h"
#include "journaledrepairs.h"
#include "jumboframe.h"
#include "linerate.h"
#include "repairplans.h"
#include "systeminfo.h"
#include "usbprobe.h"
#include "usbtreejson.h"

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
    {
        object.insert(QStringLiteral("hasTree"), p->pRootItem != nullptr);
        // The whole tree as data (doc/schema/usb-tree.schema.json).
        object.insert(QStringLiteral("usbTree"), VxUsbProbe::treeJson(p->pRootItem));
    }
    return object;
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
    return VxItemText::outcomeLine(info, QT_TRANSLATE_NOOP("VxOneKeyResult", "The firewall hasn't been opened"),
        QT_TRANSLATE_NOOP("VxOneKeyResult", "The firewall has been opened"));
}

// The firewall as the system tells it (D-Bus, or another root's boot links).
VxItemProbes firewallProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck([](CDetectInfo &info) { Firewall::check(info, FirewallStatus()); });
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

// The jumbo probes on the system's network interfaces.
VxItemProbes jumboProbes(const VxPrivileges &rights)
{
    const NetAdapters::LinkSource links = NetAdapters::LinkSource::system();
    VxItemProbes probes;
    probes.check = vxCheck([links](CJumboPacketDetectInfo &info) { JumboFrame::check(info, links); });
    probes.repair = vxRepair(
        [rights, links](CJumboPacketDetectInfo &info) { return JournaledRepairs::repairJumbo(info, rights, links); });
    probes.plan = vxPlan([links](const CJumboPacketDetectInfo &info) { return RepairPlans::jumboPlan(info, links); });
    return probes;
}

QString rateText(int nMbps)
{
    if (nMbps < 0)
        return translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Unknown"));
    return QString::number(nMbps / 1000.0, 'f', 2) + QStringLiteral("Gbps");
}

VxItemProbes lineRateProbes(const VxPrivileges &)
{
    const NetAdapters::LinkSource links = NetAdapters::LinkSource::system();
    VxItemProbes probes;
    probes.check = vxCheck([links](CNetworkSpeedDetectInfo &info) { LineRate::check(info, links); });
    return probes;
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
        object
            = VxItemFacts::strings({{"cpu", p->cpu}, {"cpuCount", p->cpuCount}, {"availableMemory", p->availableMemory},
                {"byteOrder", p->byteOrder}, {"operatingSystem", p->operatingSystem},
                {"graphicsChips", p->graphicsChips}, {"resolution", p->resolution}});
    }
    return object;
}
} // namespace

QVector<VxItemRow> systemItemRows()
{
    auto usb = recordRow<CUsbBasicDetectInfo>(VxItems::UsbControllerInfo,
        QT_TRANSLATE_NOOP("VxOneKeyResult", "USB Controller Info"), VxItems::SystemGroup, 6, 1);
    usb.button = {VxItems::BtnCheck, true, VxItems::BtnCheck, true};
    usb.action = VxRowAction::Dialog;
    usb.bLinesInTree = false; // the tree is shown by its viewer; the log has it all
    usb.defaultProbes = checkOnly<VxUsbProbe::usbTreeCheck>;
    usb.lines = usbTreeLines;
    usb.facts = usbTreeFacts;
    usb.detect = detectUsbTree;

    auto firewall = recordRow<CDetectInfo>(
        VxItems::Firewall, QT_TRANSLATE_NOOP("VxOneKeyResult", "PC Firewall Status"), VxItems::SystemGroup, 7, 2);
    // Normal means the firewall is off; the button only states it.
    firewall.button = {VxItems::BtnDisabled, false, VxItems::BtnEnabled, false};
    firewall.defaultProbes = firewallProbes;
    firewall.lines = firewallLines;
    firewall.facts = VxItemFacts::none;

    auto jumbo = recordRow<CJumboPacketDetectInfo>(
        VxItems::JumboFrame, QT_TRANSLATE_NOOP("VxOneKeyResult", "Jumbo Frame"), VxItems::SystemGroup, 8, 3);
    jumbo.nOptimizeRank = 5;
    jumbo.button = {VxItems::BtnCheck, true, VxItems::BtnCheckAndRepair, true};
    jumbo.action = VxRowAction::RepairDialog;
    jumbo.repair = VxRepairKind::Repair; // the repair checks again itself
    jumbo.defaultProbes = jumboProbes;
    jumbo.lines = jumboLines;
    jumbo.facts = jumboFacts;

    auto rate = recordRow<CNetworkSpeedDetectInfo>(
        VxItems::LineRate, QT_TRANSLATE_NOOP("VxOneKeyResult", "Network Line Rate"), VxItems::SystemGroup, 9, 4);
    rate.button = {VxItems::BtnNormal, false, VxItems::BtnViewSolution, true};
    rate.action = VxRowAction::Dialog;
    rate.defaultProbes = lineRateProbes;
    rate.lines = lineRateLines;
    rate.facts = lineRateFacts;

    auto system = recordRow<CSystemDetectInfo>(
        VxItems::SystemInfo, QT_TRANSLATE_NOOP("VxOneKeyResult", "Systm Info"), VxItems::SystemGroup, 10, 5);
    system.button = {VxItems::BtnCheck, true, VxItems::BtnCheck, true};
    system.action = VxRowAction::Dialog;
    system.defaultProbes = checkOnly<SystemInfo::check>;
    system.lines = systemLines;
    system.facts = systemFacts;
    return {usb, firewall, jumbo, rate, system};
}
