// Item 65536 "USB3 Vision Link" over synthetic sysfs trees read by the real
// probe library: one tree per rule, odd input, the lines and the facts.
#include "probekit.h"
#include "usblink.h"
#include "usbprobe.h"
#include "usbsysroot.h"
#include "usbtreejson.h"
#include "vxitemregistry.h"
#include "vxusbtreecli.h"

#include <QJsonDocument>

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kLibrary = QStringLiteral(VX_BIN_DIR "/probekit");
constexpr quint16 kVendor = 0x1ab2;
constexpr quint16 kCamera = 0xc0de;
constexpr quint16 kDisk = 0xd15c;

// A system root with one xHCI controller: usb1 (USB 2, 4 ports) and usb2
// (USB 3, 4 ports), and a usb.ids that names the test's devices.
struct CSysroot
{
    QTemporaryDir dir;
    QString strController, strUsb2Bus, strUsb3Bus;

    CSysroot()
    {
        const QString root = dir.path();
        UsbSysroot::writeFile(root + "/usr/share/misc/pci.ids", "8086  Intel Corporation\n\ta36d  Test xHCI\n");
        UsbSysroot::writeFile(root + "/usr/share/misc/usb.ids",
                              "1ab2  Vetrix Test Optics\n\tc0de  Test Camera U3\n\td15c  Test Disk\n");
        strController = addController("0000:00:14.0");
        strUsb2Bus = UsbSysroot::addRootHub(strController, 1, 4, false);
        strUsb3Bus = UsbSysroot::addRootHub(strController, 2, 4, true);
    }
    QString addController(const QString &strAddress)
    {
        return UsbSysroot::addController(dir.path(), strAddress, 0x8086, 0xa36d, "xhci_hcd");
    }
    static QString addCamera(const QString &strParent, const QString &strName, const QByteArray &speed, quint16 bcd)
    {
        const QByteArray desc = UsbSysroot::deviceDescriptor(bcd, 0xEF, 1, kVendor, kCamera)
                                + UsbSysroot::interfaceConfiguration(0xEF, 0x05, 0x00);
        return UsbSysroot::addUsbDevice(strParent, strName, desc, speed, 5, 0, "Camera");
    }
    static QString addHub(const QString &strParent, const QString &strName, const QByteArray &speed, quint16 bcd)
    {
        QByteArray desc = UsbSysroot::deviceDescriptor(bcd, 9, 1, 0x0409, 0x005a);
        desc += QByteArray::fromHex("09021900010100e0000904000001090000000705810301000c");
        return UsbSysroot::addUsbDevice(strParent, strName, desc, speed, 3, 4, "Hub");
    }
    CUsbLinkDetectInfo run()
    {
        qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
        CUsbLinkDetectInfo info;
        VxUsbLink::check(info);
        return info;
    }
};

} // namespace

class TestUsbLink : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cameraAtSuperSpeed();
    void cameraAtHighSpeed();
    void cameraBehindUsb2Hub();
    void camerasSharingController();
    void camerasOnTwoControllers();
    void otherSuperSpeedDeviceAtHighSpeed();
    void usb2DeviceIsLeftOut();
    void missingSpeed();
    void shortDescriptors();
    void noTree();
    void factsOfFallback();
    void otherRecordClass();
    void treeJsonOfCapturedTree();
    void treeTextOfCapturedTree();
    void treeJsonOfNullTree();
    void usbTreeOption();
    void rows();
};

void TestUsbLink::initTestCase()
{
    VxUsbProbe::setLibraryPath(kLibrary);
}

void TestUsbLink::cleanup()
{
    qunsetenv("VETRIX_SYSROOT");
}

void TestUsbLink::cameraAtSuperSpeed()
{
    CSysroot s;
    QVERIFY(s.dir.isValid());
    CSysroot::addCamera(s.strUsb3Bus, "2-1", "5000", 0x0320);
    const CUsbLinkDetectInfo info = s.run();
    QVERIFY(info.bTreeRead);
    QCOMPARE(info.devices.size(), 1);
    const CUsbLinkDevice &d = info.devices.first();
    QVERIFY(d.bUsb3Vision);
    QCOMPARE(d.strPortPath, QString("2-1"));
    QCOMPARE(d.uSpeedKbps, quint32(5000000));
    QCOMPARE(d.strName, QString("Vetrix Test Optics Test Camera U3"));
    QCOMPARE(d.strController, QString("Intel Corporation Test xHCI"));
    QVERIFY(!d.isFallback());
    QCOMPARE(info.bNormal, 1);
    const QStringList lines = usbLinkLines(info);
    QCOMPARE(lines, QStringList({"USB3 Vision camera Vetrix Test Optics Test Camera U3 (1ab2:c0de) at port 2-1: "
                                 "5 Gbit/s (SuperSpeed), capable of SuperSpeed."}));
}

void TestUsbLink::cameraAtHighSpeed()
{
    // A camera that fell back to USB 2 reports bcdUSB 0x0210 on the USB 2 bus.
    CSysroot s;
    CSysroot::addCamera(s.strUsb2Bus, "1-3", "480", 0x0210);
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 1);
    QVERIFY(info.devices.first().isFallback());
    QVERIFY(info.devices.first().bSuperSpeedCapable);
    QCOMPARE(info.bNormal, 0);
    const QStringList lines = usbLinkLines(info);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains("at port 1-3 runs at 480 Mbit/s (High Speed) although it is capable of SuperSpeed"),
             qPrintable(lines.first()));
}

void TestUsbLink::cameraBehindUsb2Hub()
{
    // The hub rule alone: the camera's own speed is not known, so only the
    // USB 2 hub in front of it makes the item exceptional.
    CSysroot s;
    const QString hub = CSysroot::addHub(s.strUsb2Bus, "1-2", "480", 0x0200);
    const QString camera = CSysroot::addCamera(hub, "1-2.4", "480", 0x0210);
    QVERIFY(QFile::remove(camera + "/speed"));
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 1);
    const CUsbLinkDevice &d = info.devices.first();
    QCOMPARE(d.strPortPath, QString("1-2.4"));
    QVERIFY(!d.isFallback());
    QCOMPARE(d.strUsb2HubPath, QString("1-2"));
    QCOMPARE(info.bNormal, 0);
    QVERIFY2(usbLinkLines(info).first().endsWith("is connected behind the USB 2 hub at port 1-2."),
             qPrintable(usbLinkLines(info).join('\n')));
}

void TestUsbLink::camerasSharingController()
{
    // Both at SuperSpeed, each fine alone, on one controller: a warning that
    // names the controller. A SuperSpeed hub in front is no USB 2 hub.
    CSysroot s;
    CSysroot::addCamera(s.strUsb3Bus, "2-1", "5000", 0x0320);
    const QString hub = CSysroot::addHub(s.strUsb3Bus, "2-3", "5000", 0x0320);
    CSysroot::addCamera(hub, "2-3.1", "5000", 0x0320);
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 2);
    QVERIFY(info.devices.at(1).strUsb2HubPath.isEmpty());
    QCOMPARE(info.sharedControllers.size(), 1);
    QCOMPARE(info.sharedControllers.first().listPortPaths, QStringList({"2-1", "2-3.1"}));
    QCOMPARE(info.bNormal, 0);
    QVERIFY(usbLinkLines(info).contains("Warning: 2 USB3 Vision cameras share the host controller Intel Corporation "
                                        "Test xHCI and its bandwidth (ports 2-1, 2-3.1)."));
}

void TestUsbLink::camerasOnTwoControllers()
{
    CSysroot s;
    CSysroot::addCamera(s.strUsb3Bus, "2-1", "5000", 0x0320);
    const QString second = s.addController("0000:03:00.0");
    const QString bus4 = UsbSysroot::addRootHub(second, 4, 2, true);
    CSysroot::addCamera(bus4, "4-1", "5000", 0x0320);
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 2);
    QCOMPARE(info.devices.at(1).nController, 1);
    QVERIFY(info.sharedControllers.isEmpty());
    QCOMPARE(info.bNormal, 1);
}

void TestUsbLink::otherSuperSpeedDeviceAtHighSpeed()
{
    CSysroot s;
    const QByteArray desc = UsbSysroot::deviceDescriptor(0x0300, 0, 0, kVendor, kDisk)
                            + UsbSysroot::interfaceConfiguration(0x08, 0x06, 0x50);
    UsbSysroot::addUsbDevice(s.strUsb2Bus, "1-1", desc, "480", 4, 0, "Disk");
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 1);
    QVERIFY(!info.devices.first().bUsb3Vision);
    QVERIFY(!info.devices.first().isFallback());
    QCOMPARE(info.bNormal, 1);
    QCOMPARE(usbLinkLines(info),
             QStringList({"No USB3 Vision camera is connected.",
                          "Information: Vetrix Test Optics Test Disk (1ab2:d15c) at port 1-1: 480 Mbit/s (High Speed), "
                          "capable of SuperSpeed."}));
}

void TestUsbLink::usb2DeviceIsLeftOut()
{
    CSysroot s;
    const QByteArray desc = UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x046d, 0xc077) + UsbSysroot::simpleConfiguration(3);
    UsbSysroot::addUsbDevice(s.strUsb2Bus, "1-1", desc, "12", 4, 0, "Mouse");
    const CUsbLinkDetectInfo info = s.run();
    QVERIFY(info.devices.isEmpty());
    QCOMPARE(info.bNormal, 1);
}

void TestUsbLink::missingSpeed()
{
    // No speed attribute: the speed is unknown, which breaks no rule.
    CSysroot s;
    const QString camera = CSysroot::addCamera(s.strUsb3Bus, "2-2", "5000", 0x0320);
    QVERIFY(QFile::remove(camera + "/speed"));
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.devices.size(), 1);
    QCOMPARE(info.devices.first().uSpeedKbps, quint32(0));
    QCOMPARE(info.bNormal, 1);
    QVERIFY(usbLinkLines(info).first().contains("at port 2-2: an unknown speed, capable of SuperSpeed"));
    QVERIFY(usbLinkFacts(info).value("devices").toArray().first().toObject().value("speedMbps").isNull());
}

void TestUsbLink::shortDescriptors()
{
    // A descriptors file shorter than the device descriptor: the device
    // cannot be told apart, it is counted and left out; the camera beside
    // it is still checked.
    CSysroot s;
    UsbSysroot::addUsbDevice(s.strUsb2Bus, "1-4", QByteArray::fromHex("1201200300000009b21a"), "480", 6, 0, "Odd");
    CSysroot::addCamera(s.strUsb2Bus, "1-1", "480", 0x0210);
    const CUsbLinkDetectInfo info = s.run();
    QCOMPARE(info.nUnreadable, 1);
    QCOMPARE(info.devices.size(), 1);
    QCOMPARE(info.devices.first().strPortPath, QString("1-1"));
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(usbLinkLines(info).last(),
             QString("Information: 1 connected USB devices whose descriptors could not be read were left out."));
    QCOMPARE(usbLinkFacts(info).value("unreadableDevices").toInt(), 1);
}

void TestUsbLink::noTree()
{
    CUsbLinkDetectInfo info;
    info.devices << CUsbLinkDevice();
    VxUsbLink::analyseTree(nullptr, info);
    QVERIFY(!info.bTreeRead);
    QVERIFY(info.devices.isEmpty());
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(usbLinkLines(info), QStringList({"The USB tree could not be read (the probe library is missing)."}));

    VxUsbProbe::setLibraryPath(QStringLiteral("/nonexistent/probekit"));
    CUsbLinkDetectInfo missing;
    VxUsbLink::check(missing);
    QCOMPARE(missing.bNormal, 0);
    QVERIFY(!missing.bTreeRead);
    VxUsbProbe::setLibraryPath(kLibrary);
}

void TestUsbLink::factsOfFallback()
{
    CSysroot s;
    const QString hub = CSysroot::addHub(s.strUsb2Bus, "1-2", "480", 0x0200);
    CSysroot::addCamera(hub, "1-2.1", "480", 0x0210);
    const CUsbLinkDetectInfo info = s.run();
    const QJsonObject facts = usbLinkFacts(info);
    QCOMPARE(facts.value("treeRead").toBool(), true);
    const QJsonObject d = facts.value("devices").toArray().first().toObject();
    QCOMPARE(d.value("portPath").toString(), QString("1-2.1"));
    QCOMPARE(d.value("speedMbps").toDouble(), 480.0);
    QCOMPARE(d.value("vendorId").toString(), QString("0x1ab2"));
    QCOMPARE(d.value("bcdUSB").toString(), QString("0x0210"));
    QCOMPARE(d.value("usb3Vision").toBool(), true);
    QCOMPARE(d.value("fallback").toBool(), true);
    QCOMPARE(d.value("behindUsb2Hub").toString(), QString("1-2"));
    QCOMPARE(usbLinkLines(info).size(), 2); // the fallback and the hub
}

void TestUsbLink::otherRecordClass()
{
    CDetectInfo other;
    other.bNormal = 1;
    VxUsbLink::check(other);
    QCOMPARE(other.bNormal, 1);
    QVERIFY(usbLinkLines(other).isEmpty());
    QVERIFY(usbLinkFacts(other).isEmpty());
}

void TestUsbLink::treeJsonOfCapturedTree()
{
    qputenv("VETRIX_SYSROOT", VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    const QJsonObject tree = VxUsbProbe::treeJson(pRoot);
    VxUsbProbe::destroyTree(pRoot);
    QCOMPARE(tree.value("schemaVersion").toInt(), 1);
    const QJsonArray controllers = tree.value("controllers").toArray();
    QCOMPARE(controllers.size(), 1);
    const QJsonObject c = controllers.first().toObject();
    QCOMPARE(c.value("driver").toString(), QString("xhci_hcd"));
    QCOMPARE(c.value("pciAddress").toString(), QString("0000:00:05.0"));
    QCOMPARE(c.value("vendorId").toString(), QString("0x1b36"));
    const QJsonArray hubs = c.value("rootHubs").toArray();
    QCOMPARE(hubs.size(), 2);
    QCOMPARE(hubs.at(1).toObject().value("bus").toString(), QString("2"));
    QCOMPARE(hubs.at(1).toObject().value("speedMbps").toDouble(), 5000.0);
    // usb2 port 4: the SuperSpeed storage device.
    const QJsonArray ports = hubs.at(1).toObject().value("ports").toArray();
    QCOMPARE(ports.size(), 4);
    QCOMPARE(ports.at(0).toObject().value("status").toString(), QString("NoDeviceConnected"));
    QVERIFY(!ports.at(0).toObject().contains("device"));
    const QJsonObject disk = ports.at(3).toObject().value("device").toObject();
    QCOMPARE(disk.value("portPath").toString(), QString("2-4"));
    QCOMPARE(disk.value("speedMbps").toDouble(), 5000.0);
    QCOMPARE(disk.value("usbVersion").toString(), QString("3.00"));
    QCOMPARE(disk.value("configurationValue").toInt(), 1);
    const QJsonObject storage = disk.value("interfaces").toArray().first().toObject();
    QCOMPARE(storage.value("class").toInt(), 8);
    QCOMPARE(storage.value("subClass").toInt(), 6);
    QCOMPARE(storage.value("protocol").toInt(), 0x62);
    // usb1 port 1: the hub, with the keyboard on its port 1.
    const QJsonObject hub = hubs.at(0).toObject().value("ports").toArray().first().toObject().value("device").toObject();
    QCOMPARE(hub.value("isHub").toBool(), true);
    const QJsonObject keyboard = hub.value("ports").toArray().first().toObject().value("device").toObject();
    QCOMPARE(keyboard.value("portPath").toString(), QString("1-1.1"));
    QCOMPARE(keyboard.value("product").toString(), QString("QEMU USB Keyboard"));
    QCOMPARE(keyboard.value("speedMbps").toDouble(), 12.0);
}

void TestUsbLink::treeTextOfCapturedTree()
{
    qputenv("VETRIX_SYSROOT", VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    const QStringList lines = VxUsbProbe::treeText(pRoot);
    VxUsbProbe::destroyTree(pRoot);
    QVERIFY2(lines.first().startsWith("Controller: ") && lines.first().endsWith(" (0000:00:05.0, xhci_hcd)"),
             qPrintable(lines.first()));
    QVERIFY(lines.contains("    /:  Bus 2: Root Hub usb2 (USB 3.0), 5000M"));
    const int nKeyboard = lines.indexOf(QRegularExpression(".*Port 1 \\(1-1\\.1\\): .*\\[0627:0001\\], USB 2\\.00, 12M$"));
    QVERIFY2(nKeyboard > 0, qPrintable(lines.join('\n')));
    QVERIFY(lines.at(nKeyboard).startsWith("            |__ Port 1"));
    QCOMPARE(lines.at(nKeyboard + 1), QString("                Interface 0.0: class 03, subclass 01, protocol 01"));
}

void TestUsbLink::treeJsonOfNullTree()
{
    const QJsonObject tree = VxUsbProbe::treeJson(nullptr);
    QCOMPARE(tree.value("schemaVersion").toInt(), 1);
    QVERIFY(tree.value("controllers").toArray().isEmpty());
    QVERIFY(VxUsbProbe::treeText(nullptr).isEmpty());
}

void TestUsbLink::usbTreeOption()
{
    QVERIFY(VxUsbTreeCli::isRequested({"vetrix-check", "--format", "json", "--usb-tree"}));
    QVERIFY(!VxUsbTreeCli::isRequested({"vetrix-check", "--items", "512"}));
    qputenv("VETRIX_SYSROOT", VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
    QString strText;
    QVERIFY(VxUsbTreeCli::render("text", strText));
    QVERIFY(strText.startsWith("Controller: ") && strText.endsWith("\n"));
    QVERIFY(strText.contains("(2-4): "));
    QString strJson;
    QVERIFY(VxUsbTreeCli::render("json", strJson));
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(strJson.toUtf8(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(doc.object().value("controllers").toArray().size(), 1);

    // An image without USB: the text says so; without the library there is no tree.
    QTemporaryDir empty;
    qputenv("VETRIX_SYSROOT", empty.path().toLocal8Bit());
    QVERIFY(VxUsbTreeCli::render("text", strText));
    QCOMPARE(strText, QString("No USB host controller was found.\n"));
    VxUsbProbe::setLibraryPath(QStringLiteral("/nonexistent/probekit"));
    QVERIFY(!VxUsbTreeCli::render("text", strText));
    QCOMPARE(strText, QString("The USB tree could not be read (the probe library is missing).\n"));
    QVERIFY(!VxUsbTreeCli::render("json", strJson));
    QCOMPARE(QJsonDocument::fromJson(strJson.toUtf8()).object().value("schemaVersion").toInt(), 1);
    VxUsbProbe::setLibraryPath(kLibrary);
}

// Item 512's report facts carry the tree as data; item 65536 has its row.
void TestUsbLink::rows()
{
    const VxItemRow *pTree = VxItemRegistry::row(512);
    QVERIFY(pTree && pTree->facts);
    qputenv("VETRIX_SYSROOT", VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
    CUsbBasicDetectInfo info;
    info.pRootItem = VxUsbProbe::buildTree();
    QVERIFY(info.pRootItem);
    const QJsonObject facts = pTree->facts(info);
    VxUsbProbe::destroyTree(info.pRootItem);
    info.pRootItem = nullptr;
    QCOMPARE(facts.value("usbTree").toObject().value("schemaVersion").toInt(), 1);
    QCOMPARE(facts.value("usbTree").toObject().value("controllers").toArray().size(), 1);

    const VxItemRow *pLink = VxItemRegistry::row(65536);
    QVERIFY(pLink);
    QCOMPARE(QString(pLink->pName), QString("USB3 Vision Link"));
    QCOMPARE(int(pLink->group), 8);
    std::unique_ptr<CDetectInfo> record(pLink->create());
    QVERIFY(dynamic_cast<CUsbLinkDetectInfo *>(record.get()));
    QCOMPARE(record->nItem, 65536);
    VxUsbLink::check(*record);
    QCOMPARE(pLink->lines(*record), usbLinkLines(*record));
    QCOMPARE(pLink->facts(*record).value("devices").toArray().size(), 1); // the fixture's SuperSpeed disk
}

QTEST_GUILESS_MAIN(TestUsbLink)
#include "tst_usblink.moc"
