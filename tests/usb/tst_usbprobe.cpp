// The USB probe: the probe library over captured and synthetic sysfs trees,
// the driver facts and their date rule, and the report text.
#include "cdetectinfo.h"
#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbprobe.h"
#include "usbsysroot.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kFixture = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
const QString kLibrary = QStringLiteral(VX_BIN_DIR "/probekit");

void listedNames(const UsbListNode *pList, QStringList &names, int &nEmptyPorts)
{
    for (; pList; pList = pList->pNext) {
        const UsbTreeItem *pItem = pList->pItem;
        if (!CUsbTreeDecoder::isListed(pItem)) {
            const UsbPortConnectionInfo *pConn = pItem ? CUsbTreeDecoder::connectionInfo(pItem->pInfo) : nullptr;
            if (pConn && pConn->ConnectionStatus == UsbNoDeviceConnected)
                ++nEmptyPorts;
            continue;
        }
        names << CUsbTreeDecoder::wideText(pItem->pName);
        listedNames(pItem->pChildren, names, nEmptyPorts);
    }
}

// A hand-made tree of controllers whose driver keys are "0", "1", ...
struct CFakeTree
{
    explicit CFakeTree(int nControllers)
        : vecInfo(nControllers), vecItems(nControllers), vecCells(nControllers), vecKeys(nControllers)
    {
        for (int i = 0; i < nControllers; ++i) {
            vecKeys[i] = {UsbWChar('0' + i), 0};
            vecInfo[i].pDriverKey = vecKeys[i].data();
            vecItems[i].pInfo = &vecInfo[i];
            vecCells[i].pItem = &vecItems[i];
            vecCells[i].pNext = i + 1 < nControllers ? &vecCells[i + 1] : nullptr;
        }
        root.pChildren = nControllers ? &vecCells[0] : nullptr;
    }
    UsbRootItem root{};
    QVector<UsbControllerInfo> vecInfo;
    QVector<UsbTreeItem> vecItems;
    QVector<UsbListNode> vecCells;
    QVector<QVector<UsbWChar>> vecKeys;
};

// An id database without the test's devices, so names do not depend on the machine.
void writeNoPciNames(const QString &strRoot)
{
    UsbSysroot::writeFile(strRoot + "/usr/share/misc/pci.ids", "# no devices\n");
}

void writeKernel(const QString &strRoot, const QByteArray &version)
{
    writeNoPciNames(strRoot);
    UsbSysroot::writeFile(strRoot + "/proc/sys/kernel/osrelease", "6.1.0-test\n");
    UsbSysroot::writeFile(strRoot + "/proc/sys/kernel/version", version + "\n");
}

} // namespace

class TestUsbProbe : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void driverDate_data();
    void driverDate();
    void lastControllerWins_data();
    void lastControllerWins();
    void kernelBuildDate_data();
    void kernelBuildDate();
    void absentLibrary();
    void noHostController();
    void capturedTree();
    void capturedReportDump();
    void capturedDriverFacts();
    void controllerWithoutDriver();
    void hubWithEmptyPorts();
    void platformController();
    void oddSysfs();
    void treeReportOfNullTree();
};

void TestUsbProbe::initTestCase()
{
    QVERIFY(QFile::exists(VX_BIN_DIR "/libprobekit.so") || QFile::exists(VX_BIN_DIR "/Probekit.dll"));
}

void TestUsbProbe::cleanup()
{
    VxUsbProbe::unloadLibrary();
    qunsetenv("VETRIX_SYSROOT");
}

void TestUsbProbe::driverDate_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<bool>("isNew");
    QTest::addRow("6-21-2006 is too old") << "6-21-2006" << false;
    QTest::addRow("1-1-2012 is new enough") << "1-1-2012" << true;
    QTest::addRow("12-31-2011 is too old") << "12-31-2011" << false;
    QTest::addRow("a year alone") << "2015" << true;
    QTest::addRow("empty") << "" << false;
    QTest::addRow("trailing dash") << "1-1-" << false;
    QTest::addRow("words") << "yesterday" << false;
}

void TestUsbProbe::driverDate()
{
    QFETCH(QString, date);
    QFETCH(bool, isNew);
    QCOMPARE(VxUsbProbe::isDriverDateNew(date), isNew);
}

void TestUsbProbe::lastControllerWins_data()
{
    QTest::addColumn<QStringList>("dates"); // "-" unreadable, "skip" a Controller entry, "nodate" no date value
    QTest::addColumn<QString>("expectedDate");
    QTest::addColumn<int>("expectedNormal");

    QTest::addRow("6-21-2006 alone is exceptional") << QStringList({"6-21-2006"}) << "6-21-2006" << 0;
    QTest::addRow("1-1-2012 alone is normal") << QStringList({"1-1-2012"}) << "1-1-2012" << 1;
    QTest::addRow("2010 then 2015") << QStringList({"1-1-2010", "3-4-2015"}) << "3-4-2015" << 1;
    QTest::addRow("2015 then 2010") << QStringList({"3-4-2015", "1-1-2010"}) << "1-1-2010" << 0;
    QTest::addRow("unreadable then 2015") << QStringList({"-", "3-4-2015"}) << "3-4-2015" << 1;
    QTest::addRow("2015 then unreadable") << QStringList({"3-4-2015", "-"}) << "3-4-2015" << 0;
    QTest::addRow("Controller entry is skipped") << QStringList({"1-1-2010", "skip"}) << "1-1-2010" << 0;
    QTest::addRow("no date keeps the verdict") << QStringList({"nodate"}) << "" << 1;
    QTest::addRow("no controllers") << QStringList() << "" << 1;
}

void TestUsbProbe::lastControllerWins()
{
    QFETCH(QStringList, dates);
    QFETCH(QString, expectedDate);
    QFETCH(int, expectedNormal);
    CFakeTree tree(dates.size());
    CUSBControllerDriverInfo info;
    VxUsbProbe::applyDriverFacts(&tree.root, info, [&](const UsbControllerInfo &c) {
        const int i = CUsbTreeDecoder::wideText(c.pDriverKey).toInt();
        VxUsbProbe::CControllerDriverFacts facts;
        const QString d = dates.value(i);
        facts.bOpened = d != "-";
        facts.bSkip = d == "skip";
        facts.strDriverDesc = QString("controller %1").arg(i);
        if (d.contains('-') && d != "-")
            facts.strDriverDate = d;
        return facts;
    });
    QCOMPARE(info.driverDate, expectedDate);
    QCOMPARE(info.bNormal, expectedNormal);
}

void TestUsbProbe::kernelBuildDate_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("date");
    QTest::addRow("Debian") << "#1 SMP PREEMPT_DYNAMIC Debian 6.1.192-2 (2026-11-16)" << "11-16-2026";
    QTest::addRow("plain") << "#1 SMP PREEMPT_DYNAMIC Thu Nov 20 12:00:00 UTC 2025" << "11-20-2025";
    QTest::addRow("Ubuntu") << "#57-Ubuntu SMP PREEMPT_DYNAMIC Wed Feb  5 14:05:31 UTC 2025" << "2-5-2025";
    QTest::addRow("old") << "#1 SMP Mon Jun 5 10:00:00 CST 2006" << "6-5-2006";
    QTest::addRow("no date") << "#1 SMP" << "";
    QTest::addRow("empty") << "" << "";
}

void TestUsbProbe::kernelBuildDate()
{
    QFETCH(QString, version);
    QFETCH(QString, date);
    QCOMPARE(VxUsbProbe::kernelBuildDate(version), date);
}

void TestUsbProbe::absentLibrary()
{
    VxUsbProbe::setLibraryPath(QStringLiteral("/nonexistent/probekit"));
    CUsbBasicDetectInfo tree;
    VxUsbProbe::usbTreeCheck(tree);
    QCOMPARE(tree.bNormal, 0);
    QVERIFY(!tree.pRootItem);

    CUSBControllerDriverInfo driver;
    driver.driverDesc = "before";
    UsbRootItem *pRoot = reinterpret_cast<UsbRootItem *>(&driver); // any non-null value
    VxUsbProbe::usbDriverCheck(driver, &pRoot);
    QVERIFY(!pRoot);
    QCOMPARE(driver.driverDesc, QString("before"));
    QCOMPARE(driver.bNormal, 1);
    QCOMPARE(driver.nControllers, -1); // not known
    QVERIFY(!VxUsbProbe::isLibraryLoaded());
    VxUsbProbe::destroyTree(nullptr);
}

void TestUsbProbe::noHostController()
{
    // A system root with a PCI bus and no USB: the driver item says no
    // controller was found and is exceptional; the tree item has an empty tree.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QDir().mkpath(dir.path() + "/sys/bus/pci/devices");
    UsbSysroot::addController(dir.path(), "0000:00:1f.0", 0x8086, 0x1234, "e1000e", "0x020000"); // not USB
    qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    CUSBControllerDriverInfo driver;
    QCOMPARE(driver.bNormal, 1);
    VxUsbProbe::usbDriverCheck(driver, nullptr);
    QCOMPARE(driver.nControllers, 0);
    QCOMPARE(driver.bNormal, 0);
    QVERIFY(driver.driverDesc.isEmpty());

    CUsbBasicDetectInfo tree;
    VxUsbProbe::usbTreeCheck(tree);
    QVERIFY(tree.pRootItem);
    QCOMPARE(VxUsbProbe::controllerCount(tree.pRootItem), 0);
    VxUsbProbe::destroyTree(tree.pRootItem);
    tree.pRootItem = nullptr;

    // With a controller the count is the tree's.
    UsbSysroot::addRootHub(UsbSysroot::addController(dir.path(), "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 2);
    CUSBControllerDriverInfo one;
    VxUsbProbe::usbDriverCheck(one, nullptr);
    QCOMPARE(one.nControllers, 1);
}

void TestUsbProbe::capturedTree()
{
    qputenv("VETRIX_SYSROOT", kFixture.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    CUsbBasicDetectInfo info;
    VxUsbProbe::usbTreeCheck(info);
    QCOMPARE(info.bNormal, 1);
    QVERIFY(info.pRootItem);
    QStringList names;
    int nEmpty = 0;
    listedNames(info.pRootItem->pChildren, names, nEmpty);
    QCOMPARE(names, QStringList({"Red Hat, Inc. QEMU XHCI Host Controller", "Root Hub usb1 (USB 2.0)",
                                 "[Port1] DeviceConnected : QEMU USB Hub", "[Port1] DeviceConnected : QEMU USB Keyboard",
                                 "[Port2] DeviceConnected : QEMU USB Tablet", "[Port3] DeviceConnected : QEMU USB Audio",
                                 "[Port4] DeviceConnected : QEMU USB Hub", "[Port1] DeviceConnected : QEMU USB Mouse",
                                 "[Port2] DeviceConnected : QEMU USB Mouse", "[Port3] DeviceConnected : QEMU USB Audio",
                                 "Root Hub usb2 (USB 3.0)", "[Port4] DeviceConnected : USB Attached SCSI HBA"}));
    // 8 + 8 hub ports and 4 + 4 root hub ports, 9 of them in use.
    QCOMPARE(nEmpty, 24 - 9);

    const QStringList report = VxUsbProbe::treeReportLines(info.pRootItem);
    for (const QString &name : names)
        QVERIFY2(report.contains(name + "    "), qPrintable(name));
    QVERIFY(report.filter("NoDeviceConnected").isEmpty());
    for (const char *line : {"DriverKey:    0000:00:05.0", "VendorID:    0x1B36", "DeviceID:    0xD",
                             "SubSysID:    0x11001AF4", "Revision:    0x1", "Root Hub:    usb1", "External Hub:    1-1.4",
                             "Number of Ports:    8", "Hub Power:    Self Power", "Power switching:    UNAVAILABLE",
                             "Extended Hub Capability Flags:    0x000013", "Root hub:    Yes",
                             "ConnectionStatus:    DeviceConnected", "Device Bus Speed:    High",
                             "idVendor:    0x46F4(QEMU)", "    \"QEMU USB Audio\"", "bDescriptorType:    0x24", "Unknown Descriptor:    ",
                             "MaxPower:    0x32(100 mA)"})
        QVERIFY2(report.contains(QString::fromLatin1(line)), line);
    QVERIFY(report.filter("DebugPort:").isEmpty());
    VxUsbProbe::destroyTree(info.pRootItem);
}

void TestUsbProbe::capturedReportDump()
{
    // The whole report of the captured tree against the reviewed dump
    // (fixtures/.../report.txt), line by line so a failure shows the line.
    qputenv("VETRIX_SYSROOT", kFixture.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    const QStringList report = VxUsbProbe::treeReportLines(pRoot);
    VxUsbProbe::destroyTree(pRoot);
    QFile file(kFixture + "/report.txt");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList expected = QString::fromUtf8(file.readAll()).split('\n');
    if (!expected.isEmpty() && expected.last().isEmpty())
        expected.removeLast();
    for (int i = 0; i < qMin(report.size(), expected.size()); ++i)
        QCOMPARE(QString("%1: %2").arg(i + 1).arg(report[i]), QString("%1: %2").arg(i + 1).arg(expected[i]));
    QCOMPARE(report.size(), expected.size());
}

void TestUsbProbe::capturedDriverFacts()
{
    qputenv("VETRIX_SYSROOT", kFixture.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    CUSBControllerDriverInfo info;
    info.bNormal = 0;
    UsbRootItem *pRoot = nullptr;
    VxUsbProbe::usbDriverCheck(info, &pRoot);
    QVERIFY(pRoot);
    QCOMPARE(info.driverDesc, QString("Red Hat, Inc. QEMU XHCI Host Controller (xhci_hcd)"));
    QCOMPARE(info.providerName, QString("The Linux Kernel"));
    QCOMPARE(info.driverVersion, QString("6.1.0-56-amd64"));
    QCOMPARE(info.driverDate, QString("11-16-2026"));
    QCOMPARE(info.bNormal, 1);
    VxUsbProbe::destroyTree(pRoot);
}

void TestUsbProbe::controllerWithoutDriver()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    writeKernel(root, "#1 SMP PREEMPT_DYNAMIC Debian 6.1.1-1 (2023-01-02)");
    UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 2);
    UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:1d.7", 0x8086, 0x27cc, QString(), "0x0c0320"), 2, 2);
    UsbSysroot::addController(root, "0000:00:1f.0", 0x8086, 0x1234, "e1000e", "0x020000"); // not USB
    qputenv("VETRIX_SYSROOT", root.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    CUSBControllerDriverInfo info;
    VxUsbProbe::usbDriverCheck(info, nullptr);
    QCOMPARE(info.driverDate, QString("1-2-2023")); // from the first controller
    QCOMPARE(info.bNormal, 0);                      // the second has no driver bound

    CUsbBasicDetectInfo tree;
    VxUsbProbe::usbTreeCheck(tree);
    QVERIFY(tree.pRootItem);
    QStringList names;
    int nEmpty = 0;
    listedNames(tree.pRootItem->pChildren, names, nEmpty);
    QCOMPARE(names.size(), 4);
    QCOMPARE(names[2], QString("EHCI Host Controller"));
    const QStringList report = VxUsbProbe::treeReportLines(tree.pRootItem);
    QCOMPARE(report.filter("DebugPort:"), QStringList({"DebugPort:    1"}));
    VxUsbProbe::destroyTree(tree.pRootItem);
}

void TestUsbProbe::hubWithEmptyPorts()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    writeNoPciNames(root);
    const QString rootHub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 4);
    QByteArray hub = UsbSysroot::deviceDescriptor(0x0200, 9, 2, 0x0409, 0x55aa);
    hub += QByteArray::fromHex("09021900010100e0000904000001090000000705810301000c");
    UsbSysroot::addUsbDevice(rootHub, "1-3", hub, "480", 2, 7, "Empty Hub");
    qputenv("VETRIX_SYSROOT", root.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    QStringList names;
    int nEmpty = 0;
    listedNames(pRoot->pChildren, names, nEmpty);
    QCOMPARE(names, QStringList({"xHCI Host Controller", "Root Hub usb1 (USB 2.0)", "[Port3] DeviceConnected : Empty Hub"}));
    QCOMPARE(nEmpty, 3 + 7);
    const QStringList report = VxUsbProbe::treeReportLines(pRoot);
    QVERIFY(report.contains("Mulit-transaction Capable:    Yes"));
    QVERIFY(report.contains("High speed:    Yes"));
    QVERIFY(report.contains("Hub Power:    Self Power"));
    VxUsbProbe::destroyTree(pRoot);
}

void TestUsbProbe::platformController()
{
    // A host controller that is no PCI device (here the kernel's dummy_hcd)
    // is found through the root hub's link on the USB bus.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    writeKernel(root, "#1 SMP PREEMPT_DYNAMIC Sun Jan 1 00:00:00 UTC 2011");
    const QString parent = root + "/sys/devices/platform/dummy_hcd.0";
    QDir().mkpath(parent);
    QVERIFY(QFile::link("../../../bus/platform/drivers/dummy_hcd", parent + "/driver"));
    UsbSysroot::addRootHub(parent, 3, 1);
    QDir().mkpath(root + "/sys/bus/usb/devices");
    QVERIFY(QFile::link("../../../devices/platform/dummy_hcd.0/usb3", root + "/sys/bus/usb/devices/usb3"));
    qputenv("VETRIX_SYSROOT", root.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    CUSBControllerDriverInfo info;
    UsbRootItem *pRoot = nullptr;
    VxUsbProbe::usbDriverCheck(info, &pRoot);
    QVERIFY(pRoot);
    QCOMPARE(info.driverDesc, QString("USB Host Controller (dummy_hcd.0) (dummy_hcd)"));
    QCOMPARE(info.driverDate, QString("1-1-2011"));
    QCOMPARE(info.bNormal, 0);
    const QStringList report = VxUsbProbe::treeReportLines(pRoot);
    QVERIFY(report.contains("DriverKey:    platform/dummy_hcd.0"));
    QVERIFY(report.contains("Root Hub:    usb3"));
    VxUsbProbe::destroyTree(pRoot);
}

void TestUsbProbe::oddSysfs()
{
    // Missing files, garbage values, truncated descriptors and a link loop
    // where a device should be: the tree is built without crash or hang.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    writeNoPciNames(root);
    const QString ctrl = UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd");
    QDir().mkpath(ctrl + "/usb1"); // a root hub without any attribute
    const QString hub2 = UsbSysroot::addRootHub(ctrl, 2, 4);
    UsbSysroot::writeFile(hub2 + "/maxchild", "99999\n");       // capped at 255 ports
    UsbSysroot::addUsbDevice(hub2, "2-1", QByteArray::fromHex("1201"), "abc", -5, 0, "\xff\xfe bad"); // short descriptors
    UsbSysroot::addUsbDevice(hub2, "2-2", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 1, 2) + QByteArray::fromHex("0902ffff0101"),
                             "12", 3, 0, "Truncated");
    QByteArray hubLoop = UsbSysroot::deviceDescriptor(0x0200, 9, 0, 0x0409, 0x55aa);
    const QString loopHub = UsbSysroot::addUsbDevice(hub2, "2-3", hubLoop, "12", 4, 2, "Loop Hub");
    QFile::link(loopHub, loopHub + "/2-3.1"); // a device link back to its hub
    UsbSysroot::writeFile(root + "/sys/bus/pci/devices/garbage/class", "not a number");
    qputenv("VETRIX_SYSROOT", root.toLocal8Bit());
    VxUsbProbe::setLibraryPath(kLibrary);
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    QStringList names;
    int nEmpty = 0;
    listedNames(pRoot->pChildren, names, nEmpty);
    QCOMPARE(names, QStringList({"xHCI Host Controller", "Root Hub usb1", "Root Hub usb2 (USB 2.0)",
                                 "[Port1] DeviceConnected : USB Device 0000:0000",
                                 "[Port2] DeviceConnected : Truncated", "[Port3] DeviceConnected : Loop Hub"}));
    QCOMPARE(nEmpty, 255 - 3 + 2);
    const QStringList report = VxUsbProbe::treeReportLines(pRoot);
    QVERIFY(report.size() > 50);
    VxUsbProbe::destroyTree(pRoot);
}

void TestUsbProbe::treeReportOfNullTree()
{
    QVERIFY(VxUsbProbe::treeReportLines(nullptr).isEmpty());
    UsbRootItem empty{};
    QVERIFY(VxUsbProbe::treeReportLines(&empty).isEmpty());
}

QTEST_GUILESS_MAIN(TestUsbProbe)
#include "tst_usbprobe.moc"
