// The driver group: the camera drivers and the USB 3.0 host controllers'
// driver (whose check also builds the USB tree that item 512 shows).
#include "itemrows.h"

#include "cameradrivers.h"
#include "cdetectinfo.h"
#include "usbprobe.h"

namespace {
using VxItemText::translated;

QStringList gigeLines(const CDetectInfo &info)
{
    return VxItemText::outcomeLine(info, QT_TRANSLATE_NOOP("VxOneKeyResult", "GigE driver is installed."),
        QT_TRANSLATE_NOOP("VxOneKeyResult", " GigE driver is not installed."));
}

QStringList usb3Lines(const CDetectInfo &info)
{
    return VxItemText::outcomeLine(info, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB driver is installed."),
        QT_TRANSLATE_NOOP("VxOneKeyResult", " USB driver is not installed."));
}

// A camera driver: its status check paced by pPacer, its installer and
// where that is.
template <auto PacedCheck, auto Install, auto InstallerPath>
VxItemProbes driverProbes(const VxPrivileges &rights, const std::shared_ptr<CameraDrivers::PollPacer> &pPacer)
{
    VxItemProbes probes;
    const auto pOwn = pPacer ? pPacer : std::make_shared<CameraDrivers::PollPacer>();
    probes.check = [pOwn](CDetectInfo &info) { PacedCheck(*pOwn, info); };
    probes.install = [rights] { return Install(rights); };
    probes.installerPath = InstallerPath;
    return probes;
}

// The driver rows' own probes: each table gets a pacer of its own on the
// real clock, shared by the copies of that table.
template <VxItems::ItemId Id> VxItemProbes systemDriverProbes(const VxPrivileges &rights)
{
    return cameraDriverProbes(Id, rights, std::make_shared<CameraDrivers::PollPacer>());
}

QStringList controllerDriverLines(const CDetectInfo &info)
{
    auto *pDrv = dynamic_cast<const CUSBControllerDriverInfo *>(&info);
    if (!pDrv)
        return {};
    if (pDrv->nControllers == 0)
        return {translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "No USB host controller was found."))};
    return {translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Name     : ")) + pDrv->driverDesc,
        translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Provider : ")) + pDrv->providerName,
        translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Date     : ")) + pDrv->driverDate,
        translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Version  : ")) + pDrv->driverVersion};
}

QJsonObject controllerDriverFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CUSBControllerDriverInfo *>(&info)) {
        object = VxItemFacts::strings({{"driverDesc", p->driverDesc}, {"providerName", p->providerName},
            {"driverDate", p->driverDate}, {"driverVersion", p->driverVersion}});
    }
    return object;
}

VxItemProbes controllerDriverProbes(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck([](CUSBControllerDriverInfo &info) {
        UsbRootItem *pRoot = nullptr;
        VxUsbProbe::usbDriverCheck(info, &pRoot);
        info.pBuiltTree = pRoot;
    });
    return probes;
}

// The controller-driver check builds the USB tree as a side effect; the USB
// tree item takes it over instead of building its own.
void detectControllerDriver(VxDetectPass &pass, CDetectInfo &info)
{
    auto *pUsb = dynamic_cast<CUsbBasicDetectInfo *>(pass.record(VxItems::UsbControllerInfo));
    auto *pDrv = dynamic_cast<CUSBControllerDriverInfo *>(&info);
    if (!pUsb || !pDrv)
        return;
    pass.destroyTree(pUsb);
    pass.check(info);
    pUsb->pRootItem = std::exchange(pDrv->pBuiltTree, nullptr);
    if (pUsb->pRootItem)
        pass.markHandedOver(VxItems::UsbControllerInfo);
}
} // namespace

VxItemProbes cameraDriverProbes(VxItems::ItemId id, const VxPrivileges &rights,
    const std::shared_ptr<CameraDrivers::PollPacer> &pPacer)
{
    if (id == VxItems::GigeDriver) {
        return driverProbes<CameraDrivers::pacedGigeCheck, CameraDrivers::installGige,
            CameraDrivers::gigeInstallScript>(rights, pPacer);
    }
    if (id == VxItems::Usb3Driver) {
        return driverProbes<CameraDrivers::pacedUsb3Check, CameraDrivers::installUsb3,
            CameraDrivers::usb3InstallScript>(rights, pPacer);
    }
    return VxItemProbes();
}

QVector<VxItemRow> driverItemRows()
{
    auto gige = recordRow<CDetectInfo>(VxItems::GigeDriver,
        QT_TRANSLATE_NOOP("VxOneKeyResult", "GigE Vision Driver Status"), VxItems::DriverGroup, 3, 1);
    gige.nOptimizeRank = 3;
    gige.button = {VxItems::BtnInstalled, false, VxItems::BtnInstallDriver, true};
    gige.action = VxRowAction::Install;
    gige.repair = VxRepairKind::Install;
    gige.pInstallLabel = QT_TRANSLATE_NOOP("VxOneKeyResultTree", "Installing GigE driver...");
    gige.defaultProbes = systemDriverProbes<VxItems::GigeDriver>;
    gige.lines = gigeLines;
    gige.facts = VxItemFacts::none;

    VxItemRow usb3 = gige;
    usb3.id = VxItems::Usb3Driver;
    usb3.pName = QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3 Vision Driver Status");
    usb3.nDetectRank = 4;
    usb3.nDisplayRank = 2;
    usb3.nOptimizeRank = 4;
    usb3.pInstallLabel = QT_TRANSLATE_NOOP("VxOneKeyResultTree", "Installing USB driver...");
    usb3.defaultProbes = systemDriverProbes<VxItems::Usb3Driver>;
    usb3.lines = usb3Lines;

    auto controller = recordRow<CUSBControllerDriverInfo>(VxItems::UsbControllerDriver,
        QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3.0 Controller Driver Version"), VxItems::DriverGroup, 5, 3);
    controller.button = {VxItems::BtnCheck, true, VxItems::BtnCheckAndUpgrade, true};
    controller.action = VxRowAction::Dialog;
    controller.defaultProbes = controllerDriverProbes;
    controller.lines = controllerDriverLines;
    controller.facts = controllerDriverFacts;
    controller.detect = detectControllerDriver;

    // Named by the product, but never probed or shown.
    const VxItemRow inNetwork {VxItems::GigeDriverInNetwork,
        QT_TRANSLATE_NOOP("VxOneKeyResult", "GigE Driver Check in Network"), VxItems::DriverGroup};
    const VxItemRow count {
        VxItems::DriverCount, QT_TRANSLATE_NOOP("VxOneKeyResult", "The num of Driver"), VxItems::DriverGroup};
    return {gige, usb3, inNetwork, controller, count};
}
