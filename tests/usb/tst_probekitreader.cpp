// The probe library's sysfs reader, linked in directly: the language the
// device strings are labelled with, the configuration shown when the active
// one is not the first, an unknown speed, hubs known only by their ports,
// and the language list parser both platforms use.
#include "arena.h"
#include "cusbdescriptordecoder.h"
#include "cusblinesink.h"
#include "fssource.h"
#include "idsfile.h"
#include "pciidsdb.h"
#include "probekit.h"
#include "treebuilder.h"
#include "usbstrings.h"
#include "usbsysroot.h"

#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <utility>

namespace {

// The machine's tree below a test root, with usbfs answered from a table:
// (bus, device number) -> string descriptor 0 bytes.
class CFakeUsbfsSource : public probekit::RealFsSource
{
public:
    using RealFsSource::RealFsSource;
    std::map<std::pair<unsigned, unsigned>, std::string> mapLanguages;
    std::vector<std::pair<unsigned, unsigned>> vecAsked;
    // The test root stands for the running machine unless told otherwise
    // (then the real answer: a folder other than "/" is a system image).
    bool bStandsForLiveRoot = true;

    bool isLiveRoot() override { return bStandsForLiveRoot || RealFsSource::isLiveRoot(); }

    bool readLanguageDescriptor(unsigned nBus, unsigned nDevNum, std::string &strOut) override
    {
        vecAsked.emplace_back(nBus, nDevNum);
        const auto it = mapLanguages.find({nBus, nDevNum});
        if (it == mapLanguages.end())
            return false;
        strOut = it->second;
        return true;
    }
};

// The listed device nodes below a list, depth first.
void devices(const UsbListNode *pList, std::vector<const UsbTreeItem *> &vecOut)
{
    for (; pList; pList = pList->pNext) {
        const UsbTreeItem *pItem = pList->pItem;
        if (!pItem || !pItem->pInfo)
            continue;
        const int nKind = *static_cast<const int32_t *>(pItem->pInfo);
        if (nKind == UsbNodeExternalHub || nKind == UsbNodeDevice) {
            const UsbPortConnectionInfo *pConn = nKind == UsbNodeDevice
                                                     ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pConnectionInfo
                                                     : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pConnectionInfo;
            if (pConn && pConn->ConnectionStatus == UsbDeviceConnected)
                vecOut.push_back(pItem);
        }
        devices(pItem->pChildren, vecOut);
    }
}

// The tree built below a test root (the arena owns it) and its connected
// devices, depth first.
struct BuiltTree
{
    probekit::Arena arena;
    UsbRootItem root{};
    std::vector<const UsbTreeItem *> vecDevices;

    explicit BuiltTree(probekit::FsSource &fs)
    {
        probekit::buildSysfsTree(fs, &root, arena);
        devices(root.pChildren, vecDevices);
    }
};

const UsbStringDescriptorNode *stringsOf(const UsbTreeItem *pItem)
{
    const int nKind = *static_cast<const int32_t *>(pItem->pInfo);
    return nKind == UsbNodeDevice ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pStringDescs
                                  : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pStringDescs;
}

const UsbPortConnectionInfo *connectionOf(const UsbTreeItem *pItem)
{
    const int nKind = *static_cast<const int32_t *>(pItem->pInfo);
    return nKind == UsbNodeDevice ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pConnectionInfo
                                  : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pConnectionInfo;
}

const UsbDescriptorRequest *configOf(const UsbTreeItem *pItem)
{
    const int nKind = *static_cast<const int32_t *>(pItem->pInfo);
    return nKind == UsbNodeDevice ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pConfigDesc
                                  : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pConfigDesc;
}

// A configuration with the value, one interface and nEndpoints bulk endpoints.
QByteArray configuration(quint8 value, int nEndpoints, quint8 iConfiguration = 0)
{
    QByteArray c = QByteArray::fromHex("090200000100008032");
    c[5] = char(value);
    c[6] = char(iConfiguration);
    QByteArray i = QByteArray::fromHex("0904000000ff000000");
    i[4] = char(nEndpoints);
    c += i;
    for (int e = 0; e < nEndpoints; ++e) {
        QByteArray ep = QByteArray::fromHex("07058102000200");
        ep[2] = char(0x81 + e);
        c += ep;
    }
    c[2] = char(c.size());
    return c;
}

} // namespace

class TestProbekitReader : public QObject
{
    Q_OBJECT

private slots:
    void languageList_data();
    void languageList();
    void stringsInTheDevicesFirstLanguage();
    void languageUnknownWithoutUsbfs();
    void noUsbfsInSystemImage();
    void liveRoot();
    void firstConfigurationShown();
    void unknownSpeedStaysUnknown_data();
    void unknownSpeedStaysUnknown();
    void hubKnownByItsPorts();
    void pciIdsReadOncePerProcess();
};

void TestProbekitReader::languageList_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVector<quint16>>("expected");
    QTest::addRow("two languages") << QByteArray::fromHex("060309040704") << QVector<quint16>{0x0409, 0x0407};
    QTest::addRow("chinese first") << QByteArray::fromHex("040304080000") << QVector<quint16>{0x0804};
    QTest::addRow("odd length drops the half") << QByteArray::fromHex("0503090407") << QVector<quint16>{0x0409};
    QTest::addRow("bLength past the bytes") << QByteArray::fromHex("ff030904") << QVector<quint16>{0x0409};
    QTest::addRow("no language") << QByteArray::fromHex("0203") << QVector<quint16>{};
    QTest::addRow("not a string descriptor") << QByteArray::fromHex("04010904") << QVector<quint16>{};
    QTest::addRow("bLength below two") << QByteArray::fromHex("01030904") << QVector<quint16>{};
    QTest::addRow("one byte") << QByteArray::fromHex("04") << QVector<quint16>{};
}

void TestProbekitReader::languageList()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QVector<quint16>, expected);
    std::vector<uint8_t> exact(bytes.begin(), bytes.end()); // exact size for a sanitizer build
    const std::vector<uint16_t> list = probekit::parseLanguageList(exact.data(), exact.size());
    QCOMPARE(QVector<quint16>(list.begin(), list.end()), expected);
    QCOMPARE(probekit::firstLanguage(exact.data(), exact.size()), expected.isEmpty() ? quint16(0) : expected.first());
}

void TestProbekitReader::stringsInTheDevicesFirstLanguage()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    QDir().mkpath(root + "/dev/bus/usb");
    const QString hub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 3, 2);
    UsbSysroot::addUsbDevice(hub, "3-1", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001) + configuration(1, 1),
                             "480", 5, 0, "Kamera");
    UsbSysroot::addUsbDevice(hub, "3-2", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0002) + configuration(1, 1),
                             "480", 6, 0, "Camera");
    CFakeUsbfsSource fs(root.toStdString());
    fs.mapLanguages[{3, 5}] = std::string("\x06\x03\x07\x04\x09\x04", 6); // German, then English (US)
    fs.mapLanguages[{3, 6}] = std::string("\x04\x03\x04\x08", 4);         // Chinese (PRC)
    const BuiltTree tree(fs);
    const std::vector<const UsbTreeItem *> &vecDevices = tree.vecDevices;
    QCOMPARE(int(vecDevices.size()), 2);
    const quint16 expected[] = {0x0407, 0x0804};
    for (int i = 0; i < 2; ++i) {
        int nStrings = 0;
        for (const UsbStringDescriptorNode *p = stringsOf(vecDevices[size_t(i)]); p; p = p->pNext, ++nStrings)
            QCOMPARE(quint16(p->LanguageId), expected[i]);
        QCOMPARE(nStrings, 2); // manufacturer and product
    }
    // The device was asked by its bus (from the name) and device number.
    QVERIFY(std::find(fs.vecAsked.begin(), fs.vecAsked.end(), std::make_pair(3u, 5u)) != fs.vecAsked.end());
}

void TestProbekitReader::languageUnknownWithoutUsbfs()
{
    // Without access to the device the language is not known: it is
    // labelled 0, never a guessed language.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    const QString hub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 1);
    UsbSysroot::addUsbDevice(hub, "1-1", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001) + configuration(1, 1),
                             "480", 2, 0, "Camera");
    for (const bool bUsbfs : {false, true}) {
        if (bUsbfs)
            QDir().mkpath(root + "/dev/bus/usb"); // present, but the device does not answer
        CFakeUsbfsSource fs(root.toStdString());
        const BuiltTree tree(fs);
        const std::vector<const UsbTreeItem *> &vecDevices = tree.vecDevices;
        QCOMPARE(int(vecDevices.size()), 1);
        const UsbStringDescriptorNode *p = stringsOf(vecDevices[0]);
        QVERIFY(p);
        for (; p; p = p->pNext)
            QCOMPARE(p->LanguageId, 0u);
        QCOMPARE(fs.vecAsked.empty(), !bUsbfs);
    }
}

void TestProbekitReader::noUsbfsInSystemImage()
{
    // A mounted image's device nodes would reach the devices of the machine
    // running the program: the language is not asked for there.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    QDir().mkpath(root + "/dev/bus/usb");
    const QString hub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 3, 1);
    UsbSysroot::addUsbDevice(hub, "3-1", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001) + configuration(1, 1),
                             "480", 5, 0, "Camera");
    CFakeUsbfsSource fs(root.toStdString());
    fs.bStandsForLiveRoot = false;
    fs.mapLanguages[{3, 5}] = std::string("\x04\x03\x09\x04", 4);
    const BuiltTree tree(fs);
    QCOMPARE(int(tree.vecDevices.size()), 1);
    const UsbStringDescriptorNode *p = stringsOf(tree.vecDevices[0]);
    QVERIFY(p);
    for (; p; p = p->pNext)
        QCOMPARE(p->LanguageId, 0u);
    QVERIFY(fs.vecAsked.empty());
}

void TestProbekitReader::liveRoot()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QFile::link("/", dir.path() + "/slash"));
    QVERIFY(probekit::RealFsSource("/").isLiveRoot());
    QVERIFY(probekit::RealFsSource("").isLiveRoot());
    QVERIFY(probekit::RealFsSource((dir.path() + "/slash").toStdString()).isLiveRoot());
    QVERIFY(!probekit::RealFsSource(dir.path().toStdString()).isLiveRoot());
    QVERIFY(!probekit::RealFsSource((dir.path() + "/missing").toStdString()).isLiveRoot());
}

void TestProbekitReader::firstConfigurationShown()
{
    // Two configurations, the second active: the tree shows the first (the
    // configuration at index 0, as on Windows) while the connection facts
    // (current value, open pipes) are those of the active one.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    const QString hub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 1);
    QByteArray dd = UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001);
    dd[17] = 2; // bNumConfigurations
    const QByteArray first = configuration(1, 1);
    const QByteArray second = configuration(2, 3);
    const QString dev = UsbSysroot::addUsbDevice(hub, "1-1", dd + first + second, "480", 2, 0, "Two Configs");
    UsbSysroot::writeFile(dev + "/bConfigurationValue", "2\n");
    probekit::RealFsSource fs(root.toStdString());
    const BuiltTree tree(fs);
    const std::vector<const UsbTreeItem *> &vecDevices = tree.vecDevices;
    QCOMPARE(int(vecDevices.size()), 1);
    const UsbDescriptorRequest *pConfig = configOf(vecDevices[0]);
    QVERIFY(pConfig);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(pConfig->Data), pConfig->SetupPacket.wLength), first);
    QCOMPARE(int(pConfig->SetupPacket.wValue), 0x0200); // configuration descriptor, index 0
    QCOMPARE(int(connectionOf(vecDevices[0])->CurrentConfigurationValue), 2);
    QCOMPARE(int(connectionOf(vecDevices[0])->NumberOfOpenPipes), 3);
}

void TestProbekitReader::unknownSpeedStaysUnknown_data()
{
    QTest::addColumn<QByteArray>("speed");
    QTest::addColumn<bool>("bWritten");
    QTest::addColumn<int>("code");
    QTest::addRow("missing") << QByteArray() << false << int(UsbSpeedUnknown);
    QTest::addRow("garbage") << QByteArray("fast") << true << int(UsbSpeedUnknown);
    QTest::addRow("empty") << QByteArray() << true << int(UsbSpeedUnknown);
    QTest::addRow("full") << QByteArray("12") << true << int(UsbSpeedFull);
    QTest::addRow("low") << QByteArray("1.5") << true << int(UsbSpeedLow);
}

void TestProbekitReader::unknownSpeedStaysUnknown()
{
    QFETCH(QByteArray, speed);
    QFETCH(bool, bWritten);
    QFETCH(int, code);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    const QString hub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 1);
    const QString dev = UsbSysroot::addUsbDevice(hub, "1-1", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001)
                                                                 + configuration(1, 1), speed, 2, 0, "Camera");
    if (bWritten)
        UsbSysroot::writeFile(dev + "/speed", speed);
    else
        QFile::remove(dev + "/speed");
    probekit::RealFsSource fs(root.toStdString());
    const BuiltTree tree(fs);
    const std::vector<const UsbTreeItem *> &vecDevices = tree.vecDevices;
    QCOMPARE(int(vecDevices.size()), 1);
    QCOMPARE(int(connectionOf(vecDevices[0])->Speed), code);
    CUsbPairSink sink;
    CUsbDescriptorDecoder(sink).printConnection(connectionOf(vecDevices[0]));
    QCOMPARE(sink.vecLines.value(2), qMakePair(QString("Device Bus Speed:"), CUsbDescriptorDecoder::speedName(quint32(code))));
    if (code == UsbSpeedUnknown)
        QCOMPARE(sink.vecLines.value(2).second, QString("Unknown"));
}

void TestProbekitReader::hubKnownByItsPorts()
{
    // A hub that declares its class only on its interface (device class 0)
    // is still a hub when the kernel gave it ports; its device is listed.
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path();
    const QString rootHub = UsbSysroot::addRootHub(UsbSysroot::addController(root, "0000:00:14.0", 0x8086, 0xa36d, "xhci_hcd"), 1, 1);
    const QString hub = UsbSysroot::addUsbDevice(rootHub, "1-1", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x05e3, 0x0608)
                                                                     + UsbSysroot::simpleConfiguration(9), "480", 2, 4, "Hub");
    UsbSysroot::addUsbDevice(hub, "1-1.3", UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x1234, 0x0001) + configuration(1, 1),
                             "480", 3, 0, "Camera");
    probekit::RealFsSource fs(root.toStdString());
    const BuiltTree tree(fs);
    const std::vector<const UsbTreeItem *> &vecDevices = tree.vecDevices;
    QCOMPARE(int(vecDevices.size()), 2);
    QCOMPARE(*static_cast<const int32_t *>(vecDevices[0]->pInfo), int32_t(UsbNodeExternalHub));
    const auto *pHub = static_cast<const UsbHubNodeInfo *>(vecDevices[0]->pInfo);
    QVERIFY(pHub->pHubInfo);
    QCOMPARE(int(pHub->pHubInfo->HubDescriptor.bNumberOfPorts), 4);
    QCOMPARE(int(pHub->pConnectionInfo->DeviceIsHub), 1);
    QCOMPARE(vecDevices[1]->pParent, vecDevices[0]);
    QCOMPARE(QString::fromUtf16(vecDevices[1]->pName), QString("[Port3] DeviceConnected : Camera"));
}

void TestProbekitReader::pciIdsReadOncePerProcess()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QByteArray ids = "# test excerpt\n1b73  Fresco Logic\n\t1100  FL1100 USB 3.0 Host Controller\n"
                           "\t\t1b73 1100  subsystem line\n8086  Intel Corporation\n\t# comment\n"
                           "\ta36d  Cannon Lake PCH USB 3.1 xHCI Host Controller\nC 0c  Serial bus controller\n"
                           "1234  after the classes\n";
    QVERIFY(UsbSysroot::writeFile(dir.path() + "/usr/share/misc/pci.ids", ids));
    probekit::RealFsSource fs(dir.path().toStdString());
    const unsigned nBefore = pciids::fileLoadCount();
    for (int i = 0; i < 3; ++i) {
        std::map<uint32_t, std::string> names{{0x1b731100, ""}, {0x8086a36d, ""}, {0x8086ffff, ""}, {0x12340001, ""}};
        probekit::lookupPciNames(fs, names);
        QCOMPARE(QString::fromStdString(names[0x1b731100]), QString("Fresco Logic FL1100 USB 3.0 Host Controller"));
        QCOMPARE(QString::fromStdString(names[0x8086a36d]),
                 QString("Intel Corporation Cannon Lake PCH USB 3.1 xHCI Host Controller"));
        QCOMPARE(QString::fromStdString(names[0x8086ffff]), QString("Intel Corporation"));
        QVERIFY(names[0x12340001].empty()); // past the vendor section
    }
    QCOMPARE(pciids::fileLoadCount() - nBefore, 1u);
    const auto pFirst = pciids::databaseOfFile(dir.path().toStdString() + "/usr/share/misc/pci.ids");
    QVERIFY(pFirst);
    QCOMPARE(pciids::fileLoadCount() - nBefore, 1u);
    // A changed file is read again.
    QVERIFY(UsbSysroot::writeFile(dir.path() + "/usr/share/misc/pci.ids", ids + "abcd  Added Vendor\n"));
    const auto pSecond = pciids::databaseOfFile(dir.path().toStdString() + "/usr/share/misc/pci.ids");
    QVERIFY(pSecond && pSecond != pFirst);
    QCOMPARE(pciids::fileLoadCount() - nBefore, 2u);
}

QTEST_GUILESS_MAIN(TestProbekitReader)
#include "tst_probekitreader.moc"
