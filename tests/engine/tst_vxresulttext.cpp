#include "cdetectinfo.h"
#include "probekit.h"
#include "vxresulttext.h"

#include <QtTest>

#include <memory>

class TestVxResultText : public QObject
{
    Q_OBJECT
private slots:
    void treePrefix_data();
    void treePrefix();
    void itemLines_data();
    void itemLines();
    void usbTreeWithoutController();
    void logText();
    void logTextLeavesOutMissingRows();
    void proposedLogName();
    void writeLog();
    void writeLogUnwritable();
};

void TestVxResultText::treePrefix_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("branch");
    QTest::addColumn<bool>("continued");
    QTest::addColumn<QString>("prefix");
    QTest::addRow("level 1 spacer") << 1 << false << false << "|     ";
    QTest::addRow("level 1 branch") << 1 << true << true << "|----";
    QTest::addRow("level 1 continued") << 1 << false << true << "|    |";
    QTest::addRow("level 2 spacer") << 2 << false << false << "|    |     ";
    QTest::addRow("level 2 branch") << 2 << true << false << "|    |----";
    QTest::addRow("level 3 continued") << 3 << false << true << "|    |    |    |";
}

void TestVxResultText::treePrefix()
{
    QFETCH(int, level);
    QFETCH(bool, branch);
    QFETCH(bool, continued);
    QFETCH(QString, prefix);
    QCOMPARE(VxResultText::treePrefix(level, branch, continued), prefix);
}

namespace {
using RecordPtr = std::shared_ptr<CDetectInfo>;

template<typename T>
std::shared_ptr<T> make(int nItem, bool bNormal)
{
    auto p = std::make_shared<T>();
    p->nItem = nItem;
    p->bNormal = bNormal ? 1 : 0;
    return p;
}
} // namespace

Q_DECLARE_METATYPE(RecordPtr)

void TestVxResultText::itemLines_data()
{
    QTest::addColumn<RecordPtr>("record");
    QTest::addColumn<QStringList>("lines");

    QTest::addRow("sdk files none") << RecordPtr(make<CSDKPathDetectInfo>(1, true))
                                    << QStringList{" No other SDK files were found"};
    {
        auto p = make<CSDKPathDetectInfo>(1, false);
        p->foundFiles["libLuCameraControl.so"] = QStringList{"/usr/lib", "", "/usr/lib32"};
        p->foundFiles["LuUsb3vTL.dll"] = QStringList{"/usr/lib/x86_64-linux-gnu/sub"};
        QTest::addRow("sdk files, an empty directory gives no line")
            << RecordPtr(p)
            << QStringList{"The Other SDK Files :", "    /usr/lib/x86_64-linux-gnu/sub/LuUsb3vTL.dll",
                           "    /usr/lib/libLuCameraControl.so", "    /usr/lib32/libLuCameraControl.so"};
    }
    QTest::addRow("env correct") << RecordPtr(make<CEnvDetectInfo>(2, true))
                                 << QStringList{"Environment Variables are correct"};
    {
        auto p = make<CEnvDetectInfo>(2, false);
        p->missingValues["path"] = QStringList{"/opt/Orvex/Runtime/a:", "/opt/Orvex/Runtime/b:"};
        p->missingValues["LUCAM_GIGE_DEBUG_HEARTBEAT"] = QStringList{"60000", ""};
        QTest::addRow("env exceptional") << RecordPtr(p)
                                         << QStringList{"The following environment variables are exceptional:",
                                                        "    LUCAM_GIGE_DEBUG_HEARTBEAT=60000",
                                                        "    path=/opt/Orvex/Runtime/a:",
                                                        "    path=/opt/Orvex/Runtime/b:"};
    }
    {
        auto p = make<CEnvDetectInfo>(2, true);
        p->pendingValues["PATH"] = "/opt/Orvex/Runtime/a:/usr/bin";
        p->pendingValues["LUCAM_GIGE_DEBUG_HEARTBEAT"] = "60000";
        QTest::addRow("env pending until the next login")
            << RecordPtr(p)
            << QStringList{"The following environment variables are set and take effect at the next login:",
                           "    LUCAM_GIGE_DEBUG_HEARTBEAT=60000", "    PATH=/opt/Orvex/Runtime/a:/usr/bin"};
    }
    {
        auto p = make<CEnvDetectInfo>(2, false);
        p->missingValues["GENICAM_GENTL64_PATH"] = QStringList{"/opt/Orvex/Runtime/b:"};
        p->pendingValues["LUCAM_GIGE_DEBUG_HEARTBEAT"] = "60000";
        QTest::addRow("env exceptional and pending")
            << RecordPtr(p)
            << QStringList{"The following environment variables are exceptional:",
                           "    GENICAM_GENTL64_PATH=/opt/Orvex/Runtime/b:",
                           "The following environment variables are set and take effect at the next login:",
                           "    LUCAM_GIGE_DEBUG_HEARTBEAT=60000"};
    }
    QTest::addRow("gige installed") << RecordPtr(make<CDetectInfo>(4, true)) << QStringList{"GigE driver is installed."};
    QTest::addRow("gige missing") << RecordPtr(make<CDetectInfo>(4, false))
                                  << QStringList{" GigE driver is not installed."};
    QTest::addRow("usb installed") << RecordPtr(make<CDetectInfo>(8, true)) << QStringList{"USB driver is installed."};
    QTest::addRow("usb missing") << RecordPtr(make<CDetectInfo>(8, false))
                                 << QStringList{" USB driver is not installed."};
    {
        auto p = make<CUSBControllerDriverInfo>(32, true);
        p->driverDesc = "xHCI Host Controller";
        p->providerName = "Linux";
        p->driverDate = "11-2-2025";
        p->driverVersion = "6.1.0";
        QTest::addRow("controller driver")
            << RecordPtr(p)
            << QStringList{"Name     : xHCI Host Controller", "Provider : Linux", "Date     : 11-2-2025",
                           "Version  : 6.1.0"};
    }
    {
        // The check found no USB host controller at all.
        auto p = make<CUSBControllerDriverInfo>(32, false);
        p->nControllers = 0;
        QTest::addRow("controller driver, no controller") << RecordPtr(p)
                                                          << QStringList{"No USB host controller was found."};
    }
    {
        auto p = make<CNetworkSpeedDetectInfo>(128, false);
        p->adapterSpeeds["eth0"] = 100;
        p->adapterSpeeds["eth1"] = 10000;
        p->adapterSpeeds["Ethernet"] = 1000;
        p->adapterSpeeds["eth2"] = 2500;
        QTest::addRow("line rates") << RecordPtr(p)
                                    << QStringList{"Ethernet : 1.00Gbps", "eth0 : 0.10Gbps", "eth1 : 10.00Gbps",
                                                   "eth2 : 2.50Gbps"};
    }
    {
        auto p = make<CJumboPacketDetectInfo>(256, false);
        p->jumboStates["eth0"] = 1;
        p->jumboValues["eth0"] = 9014;
        p->jumboStates["eth1"] = 0;
        p->jumboValues["eth1"] = 1514;
        p->jumboStates["eth2"] = 2;
        p->jumboValues["eth2"] = 0;
        QTest::addRow("jumbo") << RecordPtr(p)
                               << QStringList{"eth0 : The Jumbo Packet is enabled(value = 9014)",
                                              "eth1 : The Jumbo Packet isn't enabled",
                                              "eth2 : The Jumbo Packet isn't enabled"};
    }
    QTest::addRow("firewall off") << RecordPtr(make<CDetectInfo>(1024, true))
                                  << QStringList{"The firewall hasn't been opened"};
    QTest::addRow("firewall on") << RecordPtr(make<CDetectInfo>(1024, false))
                                 << QStringList{"The firewall has been opened"};
    {
        auto p = make<CSystemDetectInfo>(2048, true);
        p->cpu = "Intel";
        p->cpuCount = "8";
        p->availableMemory = "16 GB";
        p->byteOrder = "Little Endian";
        p->operatingSystem = "Debian";
        p->graphicsChips = "VGA";
        p->resolution = "1920 x 1080";
        QTest::addRow("system") << RecordPtr(p)
                                << QStringList{"CPU               : Intel", "CPU Core Number   : 8",
                                               "Available Memory  : 16 GB", "Endianess         : Little Endian",
                                               "Operating System  : Debian", "Graphic Chipset   : VGA",
                                               "Screen Resolution : 1920 x 1080"};
    }
    QTest::addRow("usb tree without tree") << RecordPtr(make<CUsbBasicDetectInfo>(512, false)) << QStringList{};
    QTest::addRow("unnamed item") << RecordPtr(make<CDetectInfo>(16, true)) << QStringList{};
}

void TestVxResultText::itemLines()
{
    QFETCH(RecordPtr, record);
    QFETCH(QStringList, lines);
    QCOMPARE(VxResultText::itemLines(*record), lines);
}

void TestVxResultText::usbTreeWithoutController()
{
    // A tree was built and holds no controller: the report says so.
    UsbRootItem root{};
    CUsbBasicDetectInfo info;
    info.nItem = 512;
    info.pRootItem = &root;
    QCOMPARE(VxResultText::itemLines(info), QStringList{"No USB host controller was found."});
    info.pRootItem = nullptr; // not the record's to free
}

void TestVxResultText::logText()
{
    auto sdk = make<CSDKPathDetectInfo>(1, true);
    auto gige = make<CDetectInfo>(4, false);
    auto firewall = make<CDetectInfo>(1024, true);
    const QString strText = VxResultText::logText(QList<const CDetectInfo *>{firewall.get(), gige.get(), sdk.get()});
    const QStringList expected = {
        "|     ",
        "|----1: SDK Diagnosis",
        "|    |     ",
        "|    |----1-1: SDK File Saving Path",
        "|    |      No other SDK files were found",
        "|    |     ",
        "|     ",
        "|     ",
        "|----2: Driver Diagnosis",
        "|    |     ",
        "|    |----2-1: GigE Vision Driver Status",
        "|    |      GigE driver is not installed.",
        "|    |     ",
        "|     ",
        "|     ",
        "|----3: PC System Diagnosis",
        "|    |     ",
        "|    |----3-1: PC Firewall Status",
        "|    |     The firewall hasn't been opened",
        "|    |     ",
        "|     ",
        "|     ",
        "|----4: Camera Host Tuning",
        "|    |     ",
        "|     ",
    };
    QVERIFY(strText.endsWith("\r\n"));
    QCOMPARE(strText.count("\r\n"), expected.size());
    QCOMPARE(strText.count('\n'), expected.size()); // no bare LF
    QCOMPARE(strText.split("\r\n", Qt::SkipEmptyParts), expected);
}

void TestVxResultText::logTextLeavesOutMissingRows()
{
    const QString strText = VxResultText::logText(QMap<int, QStringList>{{256, {"a"}}, {128, {"b"}}});
    // Display order of the system group is 512, 1024, 256, 128, 2048; rows are
    // numbered among those present.
    QVERIFY(strText.contains("|    |----3-1: Jumbo Frame\r\n|    |     a\r\n"));
    QVERIFY(strText.contains("|    |----3-2: Network Line Rate\r\n|    |     b\r\n"));
    QVERIFY(!strText.contains("1-1"));
}

void TestVxResultText::proposedLogName()
{
    const QDateTime time(QDate(2025, 2, 25), QTime(14, 3, 9));
    QCOMPARE(VxResultText::proposedLogName(time), QStringLiteral("Log_20250225_140309.log"));
}

void TestVxResultText::writeLog()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString strPath = dir.filePath("out.log");
    QFile old(strPath);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("an older, longer file that must be replaced as a whole\r\n");
    old.close();

    const QString strText = QStringLiteral("|----1: 诊断 Ü\r\n|     \r\n");
    QVERIFY(VxResultText::writeLog(strPath, strText));
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), strText.toUtf8());
}

void TestVxResultText::writeLogUnwritable()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(!VxResultText::writeLog(dir.filePath("missing/folder/out.log"), "x\r\n"));
    QVERIFY(!QFileInfo::exists(dir.filePath("missing")));
    QVERIFY(!VxResultText::writeLog(QString(), "x\r\n"));
    // A directory in the way: nothing is written, nothing left behind.
    QVERIFY(QDir(dir.path()).mkdir("taken"));
    QVERIFY(!VxResultText::writeLog(dir.filePath("taken"), "x\r\n"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 0);
}

QTEST_GUILESS_MAIN(TestVxResultText)
#include "tst_vxresulttext.moc"
