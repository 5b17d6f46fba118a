// The USB tree viewer over hand-made trees: no controller at all, hub and
// controller lines (with the debug port), empty ports and missing parts left
// out, and a node of an unknown kind.
#include "cdetectinfo.h"
#include "customtablewidget.h"
#include "customtreewidget.h"
#include "dialogtestutil.h"
#include "probekit.h"
#include "usbbasicinfotestutil.h"
#include "usbprobe.h"
#include "vxusbbasicinfodlg.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <deque>

using namespace UsbBasicInfoTest;

namespace {

// Hand-made library trees: every record lives as long as the builder.
class TreeBuilder
{
public:
    TreeBuilder() { root.pChildren = nullptr; }

    UsbTreeItem *add(UsbTreeItem *pParent, const QString &strName, void *pInfo)
    {
        names.push_back(strName);
        items.push_back(
            UsbTreeItem {reinterpret_cast<const UsbWChar *>(names.back().utf16()), pParent, pInfo, nullptr});
        UsbTreeItem *pItem = &items.back();
        link(pParent ? &pParent->pChildren : &root.pChildren, pItem);
        return pItem;
    }
    // A list cell with no item in it.
    void addEmptyCell(UsbTreeItem *pParent) { link(pParent ? &pParent->pChildren : &root.pChildren, nullptr); }

    UsbControllerInfo *controller(quint32 uVendor, quint32 uDevice)
    {
        controllers.push_back(UsbControllerInfo {});
        UsbControllerInfo *p = &controllers.back();
        p->Kind = UsbNodeController;
        p->pDriverKey = reinterpret_cast<const UsbWChar *>(kDriverKey.utf16());
        p->VendorID = uVendor;
        p->DeviceID = uDevice;
        p->SubSysID = 0x11001AF4;
        p->Revision = 0x10;
        return p;
    }
    UsbHubNodeInfo *hub(int nKind, quint32 uStatus)
    {
        connections.push_back(UsbPortConnectionInfo {});
        connections.back().ConnectionStatus = uStatus;
        connections.back().DeviceDescriptor.bLength = 18;
        connections.back().DeviceDescriptor.bDescriptorType = 1;
        hubInfos.push_back(UsbHubInformationBlock {});
        hubInfos.back().HubDescriptor.bNumberOfPorts = 2;
        hubInfos.back().HubDescriptor.wHubCharacteristics = 0x0009; // individual switching and over-current
        hubInfos.back().HubIsBusPowered = 1;
        hubs.push_back(UsbHubNodeInfo {});
        UsbHubNodeInfo *p = &hubs.back();
        p->Kind = nKind;
        p->uHubFieldsKnown = USB_HUB_FIELDS_ALL;
        p->pHubInfo = &hubInfos.back();
        p->pHubName = reinterpret_cast<const UsbWChar *>(kHubName.utf16());
        p->pConnectionInfo = nKind == UsbNodeExternalHub ? &connections.back() : nullptr;
        return p;
    }
    UsbDeviceNodeInfo *device(quint32 uStatus)
    {
        connections.push_back(UsbPortConnectionInfo {});
        connections.back().ConnectionStatus = uStatus;
        devices.push_back(UsbDeviceNodeInfo {});
        devices.back().Kind = UsbNodeDevice;
        devices.back().pConnectionInfo = &connections.back();
        return &devices.back();
    }

    UsbRootItem root {};

private:
    void link(UsbListNode **ppList, UsbTreeItem *pItem)
    {
        cells.push_back(UsbListNode {pItem, nullptr});
        while (*ppList)
            ppList = &(*ppList)->pNext;
        *ppList = &cells.back();
    }

    const QString kDriverKey = QStringLiteral("0000:00:1d.7");
    const QString kHubName = QStringLiteral("usb9");
    std::deque<QString> names;
    std::deque<UsbTreeItem> items;
    std::deque<UsbListNode> cells;
    std::deque<UsbControllerInfo> controllers;
    std::deque<UsbHubNodeInfo> hubs;
    std::deque<UsbHubInformationBlock> hubInfos;
    std::deque<UsbDeviceNodeInfo> devices;
    std::deque<UsbPortConnectionInfo> connections;
};

} // namespace

class TstVxUsbBasicInfoTrees : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(DialogTest::loadResources() && probeLibraryBuilt()); }
    void cleanupTestCase() { qunsetenv("VETRIX_SYSROOT"); }

    void noControllerIsSaid_data()
    {
        QTest::addColumn<bool>("bFromSysroot");
        QTest::addRow("a root with no children") << false;
        QTest::addRow("a system root without USB") << true;
    }

    void noControllerIsSaid()
    {
        // The machine was looked at and has no USB host controller: the
        // viewer says so instead of showing two blank panes.
        QFETCH(bool, bFromSysroot);
        TreeBuilder builder;
        CUsbBasicDetectInfo info;
        QTemporaryDir dir;
        if (bFromSysroot) {
            QVERIFY(dir.isValid());
            QDir().mkpath(dir.path() + "/sys/bus/pci/devices");
            qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
            VxUsbProbe::setLibraryPath(kLibrary);
            VxUsbProbe::usbTreeCheck(info);
            QVERIFY(info.pRootItem);
            QVERIFY(!info.pRootItem->pChildren);
        } else {
            info.pRootItem = &builder.root;
        }
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.tree()->topLevelItemCount(), 0);
        QCOMPARE(tableLines(dialog.table()), Lines({{"No USB host controller was found.", ""}}));
        QCOMPARE(dialog.table()->columnSpan(0, 0), 2);
        VxUsbBasicInfoDlg text(&info, true);
        text.printTree();
        QCOMPARE(text.textLines(), QStringList({"No USB host controller was found.    "}));
        if (bFromSysroot)
            VxUsbProbe::destroyTree(info.pRootItem);
        info.pRootItem = nullptr; // not the record's to free
    }

    void handMadeHubLines()
    {
        // A hub whose descriptor is known in full, with no capabilities at all.
        TreeBuilder builder;
        UsbTreeItem *pController
            = builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        builder.add(pController, QStringLiteral("Root Hub"), builder.hub(UsbNodeRootHub, 0));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        dialog.tree()->setCurrentItem(findItem(dialog.tree(), QStringLiteral("Root Hub")));
        const Lines expected = {{"Root Hub:", "usb9"}, {"Hub Power:", "Bus Power"}, {"Number of Ports:", "2"},
            {"Power switching:", "Individual"}, {"Compound device:", "No"}, {"Over-current Protection:", "Individual"},
            {"Extended Hub Capabilities UNAVAILABLE", ""}, {"Hub Capabilities UNAVAILABLE", ""}};
        QCOMPARE(tableLines(dialog.table()), expected);
        QCOMPARE(dialog.table()->columnSpan(6, 0), 2);
        QCOMPARE(dialog.table()->columnSpan(7, 0), 2);
        info.pRootItem = nullptr;
    }

    void debugPort_data()
    {
        QTest::addColumn<uint>("uVendor");
        QTest::addColumn<uint>("uDevice");
        QTest::addColumn<bool>("bDebugPort");
        QTest::addRow("Intel 0x27CC") << 0x8086u << 0x27CCu << true;
        QTest::addRow("Intel 0x24CD") << 0x8086u << 0x24CDu << true;
        QTest::addRow("Intel 0x24DD") << 0x8086u << 0x24DDu << true;
        QTest::addRow("Intel 0x265C") << 0x8086u << 0x265Cu << true;
        QTest::addRow("NVIDIA 0x00D8") << 0x10DEu << 0x00D8u << true;
        QTest::addRow("Intel xHCI not in the table") << 0x8086u << 0x1E31u << false;
        QTest::addRow("device id of another vendor") << 0x10DEu << 0x27CCu << false;
        QTest::addRow("vendor 0") << 0u << 0u << false;
    }

    void debugPort()
    {
        QFETCH(uint, uVendor);
        QFETCH(uint, uDevice);
        QFETCH(bool, bDebugPort);
        TreeBuilder builder;
        builder.add(nullptr, QStringLiteral("EHCI"), builder.controller(uVendor, uDevice));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        const Lines lines = tableLines(dialog.table());
        QCOMPARE(lines.size(), bDebugPort ? 6 : 5);
        QCOMPARE(lines.value(0), qMakePair(QStringLiteral("DriverKey:"), QStringLiteral("0000:00:1d.7")));
        QCOMPARE(lines.value(1).second, QStringLiteral("0x") + QString::number(uVendor, 16).toUpper());
        QCOMPARE(lines.value(4), qMakePair(QStringLiteral("Revision:"), QStringLiteral("0x10")));
        if (bDebugPort)
            QCOMPARE(lines.value(5), qMakePair(QStringLiteral("DebugPort:"), QStringLiteral("1")));
        info.pRootItem = nullptr;
    }

    void emptyPortsAndMissingPartsAreLeftOut()
    {
        TreeBuilder builder;
        builder.addEmptyCell(nullptr);
        builder.add(nullptr, QStringLiteral("No information"), nullptr);
        UsbTreeItem *pController
            = builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        UsbTreeItem *pRootHub = builder.add(pController, QStringLiteral("Root Hub"), builder.hub(UsbNodeRootHub, 0));
        UsbTreeItem *pHub = builder.add(
            pRootHub, QStringLiteral("Hub, ports empty"), builder.hub(UsbNodeExternalHub, UsbDeviceConnected));
        builder.add(pHub, QStringLiteral("[Port1] NoDeviceConnected"), builder.device(UsbNoDeviceConnected));
        builder.add(pHub, QStringLiteral("[Port2] NoDeviceConnected"), builder.device(UsbNoDeviceConnected));
        builder.addEmptyCell(pHub);
        builder.add(
            pRootHub, QStringLiteral("Hub, not connected"), builder.hub(UsbNodeExternalHub, UsbNoDeviceConnected));
        builder.add(
            pRootHub, QStringLiteral("[Port3] DeviceFailedEnumeration"), builder.device(UsbDeviceFailedEnumeration));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        QStringList listNames;
        collectNames(dialog.tree()->invisibleRootItem(), listNames);
        QCOMPARE(
            listNames, QStringList({"Controller", "Root Hub", "Hub, ports empty", "[Port3] DeviceFailedEnumeration"}));
        QTreeWidgetItem *pHubItem = findItem(dialog.tree(), QStringLiteral("Hub, ports empty"));
        QCOMPARE(pHubItem->childCount(), 0);
        // A failed port still shows its connection line.
        dialog.tree()->setCurrentItem(findItem(dialog.tree(), QStringLiteral("[Port3] DeviceFailedEnumeration")));
        QCOMPARE(tableLines(dialog.table()).value(0),
            qMakePair(QStringLiteral("ConnectionStatus:"), QStringLiteral("DeviceFailedEnumeration")));
        info.pRootItem = nullptr;
    }

    void unknownKindShowsNothing()
    {
        TreeBuilder builder;
        qint32 nOddKind[4] = {7, 0, 0, 0};
        builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        builder.add(nullptr, QStringLiteral("Odd"), nOddKind);
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.table()->rowCount(), 5);
        dialog.tree()->setCurrentItem(dialog.tree()->topLevelItem(1));
        QCOMPARE(dialog.table()->rowCount(), 0);
        // An item without a node leaves the table as it is.
        dialog.showNode(dialog.tree()->topLevelItem(0));
        QTreeWidgetItem bare(QStringList {QStringLiteral("bare")});
        dialog.showNode(&bare);
        QCOMPARE(dialog.table()->rowCount(), 5);
        info.pRootItem = nullptr;
    }
};

QTEST_MAIN(TstVxUsbBasicInfoTrees)
#include "tst_vxusbbasicinfotrees.moc"
