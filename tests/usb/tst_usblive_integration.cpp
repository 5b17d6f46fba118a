// Integration test on the live machine (reads the real /sys): the probe
// library lists every USB host controller the kernel shows, once.
#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbprobe.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtTest>

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
    QTest::addColumn<int>("minimum");
    QTest::addRow("this machine") << QString() << 0;
    // The same check over the captured tree shows that it can see controllers.
    QTest::addRow("captured tree") << QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio") << 1;
}

void TestUsbLiveIntegration::controllersOfThisMachine()
{
    QFETCH(QString, root);
    QFETCH(int, minimum);
    if (root.isEmpty())
        qunsetenv("VETRIX_SYSROOT");
    else
        qputenv("VETRIX_SYSROOT", root.toLocal8Bit());
    // The host controllers by the kernel's own lists: the parents of the
    // root hubs on the USB bus (each PCI or platform controller once).
    QSet<QString> setParents;
    const QDir usb(root + QStringLiteral("/sys/bus/usb/devices"));
    for (const QString &name : usb.entryList({QStringLiteral("usb*")}, QDir::AllEntries | QDir::System))
        setParents.insert(QFileInfo(QFileInfo(usb.filePath(name)).canonicalFilePath()).path());

    VxUsbProbe::setLibraryPath(QStringLiteral(VX_BIN_DIR "/probekit"));
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    QVERIFY(pRoot);
    QSet<QString> setListed;
    int nRootHubs = 0;
    for (const UsbListNode *pCell = pRoot->pChildren; pCell; pCell = pCell->pNext) {
        const auto *pInfo = static_cast<const UsbControllerInfo *>(pCell->pItem->pInfo);
        QCOMPARE(pInfo->Kind, 0);
        const QString path = root + CUsbTreeDecoder::wideText(pInfo->pDevicePath);
        setListed.insert(QFileInfo(path).canonicalFilePath());
        for (const UsbListNode *pHub = pCell->pItem->pChildren; pHub; pHub = pHub->pNext)
            ++nRootHubs;
    }
    QCOMPARE(setListed, setParents);
    QVERIFY(setListed.size() >= minimum);
    QCOMPARE(nRootHubs, usb.entryList({QStringLiteral("usb*")}, QDir::AllEntries | QDir::System).size());
    QVERIFY(!VxUsbProbe::treeReportLines(pRoot).isEmpty() || setParents.isEmpty());
    VxUsbProbe::destroyTree(pRoot);
    VxUsbProbe::unloadLibrary();
}

QTEST_GUILESS_MAIN(TestUsbLiveIntegration)
#include "tst_usblive_integration.moc"
