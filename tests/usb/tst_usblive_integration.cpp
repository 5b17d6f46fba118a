// Integration test on the live machine (reads the real /sys): the probe
// library lists every USB host controller the kernel shows, once, with each
// of its root hubs. The expected set is enumerated here independently: the
// PCI functions of class 0x0c03xx and the parents of the usbN root hubs on
// the USB bus.
#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbprobe.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtTest>

namespace {

QString firstLine(const QString &strPath)
{
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLatin1(file.readLine(256)).trimmed();
}

// The host controllers below a system root, by the kernel's own lists.
QSet<QString> kernelControllers(const QString &strRoot, int &nRootHubs)
{
    QSet<QString> setControllers;
    const QDir pci(strRoot + QStringLiteral("/sys/bus/pci/devices"));
    for (const QString &name : pci.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        bool ok = false;
        const uint uClass = firstLine(pci.filePath(name) + QStringLiteral("/class")).toUInt(&ok, 16);
        if (ok && (uClass >> 8) == 0x0c03)
            setControllers.insert(QFileInfo(pci.filePath(name)).canonicalFilePath());
    }
    const QDir usb(strRoot + QStringLiteral("/sys/bus/usb/devices"));
    const QStringList listHubs = usb.entryList({QStringLiteral("usb*")}, QDir::AllEntries | QDir::System);
    nRootHubs = listHubs.size();
    for (const QString &name : listHubs)
        setControllers.insert(QFileInfo(QFileInfo(usb.filePath(name)).canonicalFilePath()).path());
    return setControllers;
}

} // namespace

class TestUsbLiveIntegration : public QObject
{
    Q_OBJECT

private slots:
    void controllersOfThisMachine_data();
    void controllersOfThisMachine();
};

void TestUsbLiveIntegration::controllersOfThisMachine_data()
{
    QTest::addColumn<QString>("root");
    QTest::addRow("this machine") << QString();
    // The same check over the captured tree (one xHCI controller, two buses).
    QTest::addRow("captured tree") << QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
}

void TestUsbLiveIntegration::controllersOfThisMachine()
{
    QFETCH(QString, root);
    int nKernelRootHubs = 0;
    const QSet<QString> setExpected = kernelControllers(root, nKernelRootHubs);
    if (setExpected.isEmpty()) {
        if (!QFileInfo(root + QStringLiteral("/sys/bus/usb")).isDir())
            QSKIP("this machine has no USB bus (no /sys/bus/usb)");
        QSKIP("this machine's USB bus has no host controller");
    }
    if (root.isEmpty())
        qunsetenv("VETRIX_SYSROOT");
    else
        qputenv("VETRIX_SYSROOT", root.toLocal8Bit());

    VxUsbProbe::setLibraryPath(QStringLiteral(VX_BIN_DIR "/probekit"));
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    QSet<QString> setListed;
    int nControllers = 0;
    int nRootHubs = 0;
    for (const UsbListNode *pCell = pRoot->pChildren; pCell; pCell = pCell->pNext) {
        const auto *pInfo = static_cast<const UsbControllerInfo *>(pCell->pItem->pInfo);
        QCOMPARE(pInfo->Kind, 0);
        ++nControllers;
        setListed.insert(QFileInfo(root + CUsbTreeDecoder::wideText(pInfo->pDevicePath)).canonicalFilePath());
        for (const UsbListNode *pHub = pCell->pItem->pChildren; pHub; pHub = pHub->pNext)
            ++nRootHubs;
    }
    QCOMPARE(setListed, setExpected);
    QCOMPARE(nControllers, setExpected.size()); // each once
    QCOMPARE(nRootHubs, nKernelRootHubs);
    // The report has a heading per controller at least.
    const QStringList lines = VxUsbProbe::treeReportLines(pRoot);
    QVERIFY(lines.filter(QStringLiteral("DriverKey:")).size() == nControllers);
    VxUsbProbe::destroyTree(pRoot);
    VxUsbProbe::unloadLibrary();
}

QTEST_GUILESS_MAIN(TestUsbLiveIntegration)
#include "tst_usblive_integration.moc"
