#include "fixturetree.h"
#include "luinterface.h"

#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>

// System facts read below fixture system roots (VETRIX_SYSROOT); the live
// machine is never read.
class TstLuSysInfo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cpu_data();
    void cpu();
    void numOfCpu_data();
    void numOfCpu();
    void memory_data();
    void memory();
    void operatingSys_data();
    void operatingSys();
    void graphicsChips_data();
    void graphicsChips();
    void resolution_data();
    void resolution();
    void byteOrder();

private:
    // A fresh fixture root holding the given files (relative path -> content).
    QString makeRoot(const QMap<QString, QByteArray> &mapFiles);
    QTemporaryDir tempDir;
    int nRoots = 0;
};

using FileMap = QMap<QString, QByteArray>;
Q_DECLARE_METATYPE(FileMap)

namespace {

const QByteArray g_cpuinfoX86 =
    "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu family\t: 6\n"
    "model name\t: Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz\ncpu MHz\t\t: 3192.000\ncpu cores\t: 2\n\n"
    "processor\t: 1\nvendor_id\t: GenuineIntel\nmodel name\t: Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz\n\n"
    "processor\t: 2\nmodel name\t: Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz\n\n"
    "processor\t: 3\nmodel name\t: Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz\n\n";

const QByteArray g_cpuinfoArm =
    "Processor\t: ARMv7 Processor rev 4 (v7l)\nprocessor\t: 0\nBogoMIPS\t: 38.40\n\n"
    "processor\t: 1\nBogoMIPS\t: 38.40\n\nHardware\t: BCM2835\nRevision\t: a02082\n";

// A small database in the layout of pci.ids: comments, vendors, devices,
// subsystems and the class section at the end.
const QByteArray g_pciIds =
    "#\n#\tList of PCI ID's (test excerpt)\n#\n"
    "1002  Advanced Micro Devices, Inc. [AMD/ATI]\n"
    "\t67df  Ellesmere [Radeon RX 470/480/570/570X/580/580X/590]\n"
    "10de  NVIDIA Corporation\n"
    "\t1eb8  TU104GL [Tesla T4]\n"
    "\t\t10de 12a2  Tesla T4\n"
    "# a comment between devices\n"
    "\t2484  GA104 [GeForce RTX 3070]\n"
    "8086  Intel Corporation\n"
    "\t\t3e92 0000  Subsystem line that must not be taken for a device\n"
    "\t3e92  CoffeeLake-S GT2 [UHD Graphics 630]\n"
    "\t9a49  TigerLake-LP GT2 [Iris Xe Graphics]\n"
    "C 03  Display controller\n"
    "\t00  VGA compatible controller\n";

// One PCI function folder with class, vendor and device attributes.
void addPci(FileMap &mapFiles, const QString &strSlot, const QByteArray &cls, const QByteArray &vendor,
            const QByteArray &device)
{
    const QString strDir = QStringLiteral("sys/bus/pci/devices/") + strSlot + QLatin1Char('/');
    mapFiles.insert(strDir + QStringLiteral("class"), cls + '\n');
    mapFiles.insert(strDir + QStringLiteral("vendor"), vendor + '\n');
    mapFiles.insert(strDir + QStringLiteral("device"), device + '\n');
}

void addConnector(FileMap &mapFiles, const QString &strName, const QByteArray &status, const QByteArray &modes)
{
    const QString strDir = QStringLiteral("sys/class/drm/") + strName + QLatin1Char('/');
    mapFiles.insert(strDir + QStringLiteral("status"), status + '\n');
    mapFiles.insert(strDir + QStringLiteral("modes"), modes);
}

} // namespace

QString TstLuSysInfo::makeRoot(const FileMap &mapFiles)
{
    const QString strRoot = tempDir.filePath(QStringLiteral("root%1").arg(++nRoots));
    if (!QDir().mkpath(strRoot))
        return QString();
    for (auto it = mapFiles.constBegin(); it != mapFiles.constEnd(); ++it) {
        if (!writeFixtureFile(strRoot, it.key(), it.value()))
            return QString();
    }
    return strRoot;
}

void TstLuSysInfo::initTestCase()
{
    QVERIFY(tempDir.isValid());
}

void TstLuSysInfo::cleanup()
{
    qunsetenv("VETRIX_SYSROOT");
}

#define USE_ROOT(mapFiles)                                              \
    do {                                                                \
        const QString strRoot = makeRoot(mapFiles);                     \
        QVERIFY(!strRoot.isEmpty());                                    \
        qputenv("VETRIX_SYSROOT", QFile::encodeName(strRoot));          \
    } while (false)

void TstLuSysInfo::cpu_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("x86 model name") << FileMap{{"proc/cpuinfo", g_cpuinfoX86}}
                                    << "Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz";
    QTest::addRow("arm processor line") << FileMap{{"proc/cpuinfo", g_cpuinfoArm}} << "ARMv7 Processor rev 4 (v7l)";
    QTest::addRow("blanks collapsed") << FileMap{{"proc/cpuinfo", "model name : AMD   Ryzen  7 \n"}} << "AMD Ryzen 7";
    QTest::addRow("no cpuinfo") << FileMap{} << "Unknown";
    QTest::addRow("no name line") << FileMap{{"proc/cpuinfo", "processor : 0\nflags : fpu\n"}} << "Unknown";
    QTest::addRow("garbage bytes") << FileMap{{"proc/cpuinfo", QByteArray("\x00\xff:\n::\n", 6)}} << "Unknown";
}

void TstLuSysInfo::cpu()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::cpu(), strExpected);
}

void TstLuSysInfo::numOfCpu_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("four x86 processors") << FileMap{{"proc/cpuinfo", g_cpuinfoX86}} << "4";
    QTest::addRow("two arm processors") << FileMap{{"proc/cpuinfo", g_cpuinfoArm}} << "2";
    QTest::addRow("online list fallback") << FileMap{{"sys/devices/system/cpu/online", "0-3,6\n"}} << "5";
    QTest::addRow("single online cpu") << FileMap{{"sys/devices/system/cpu/online", "0\n"}} << "1";
    QTest::addRow("reversed range") << FileMap{{"sys/devices/system/cpu/online", "3-1\n"}} << "Unknown";
    QTest::addRow("odd online text") << FileMap{{"sys/devices/system/cpu/online", "zero-one\n"}} << "Unknown";
    QTest::addRow("nothing") << FileMap{} << "Unknown";
}

void TstLuSysInfo::numOfCpu()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::numOfCpu(), strExpected);
}

void TstLuSysInfo::memory_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("16 GB class machine") << FileMap{{"proc/meminfo", "MemTotal:       16384000 kB\nMemFree:  100 kB\n"}}
                                         << "15.6 GB";
    QTest::addRow("exactly 8 GiB") << FileMap{{"proc/meminfo", "MemFree: 1 kB\nMemTotal: 8388608 kB\n"}} << "8.0 GB";
    QTest::addRow("small board in MB") << FileMap{{"proc/meminfo", "MemTotal: 524288 kB\n"}} << "512 MB";
    QTest::addRow("not a number") << FileMap{{"proc/meminfo", "MemTotal: lots kB\n"}} << "Unknown";
    QTest::addRow("zero") << FileMap{{"proc/meminfo", "MemTotal: 0 kB\n"}} << "Unknown";
    QTest::addRow("wrong unit") << FileMap{{"proc/meminfo", "MemTotal: 1024 pages\n"}} << "Unknown";
    QTest::addRow("no meminfo") << FileMap{} << "Unknown";
}

void TstLuSysInfo::memory()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::availbleMmeory(), strExpected);
}

void TstLuSysInfo::operatingSys_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    const QByteArray kernel = "6.1.0-18-amd64\n";
    QTest::addRow("debian with kernel")
        << FileMap{{"etc/os-release", "NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"},
                   {"proc/sys/kernel/osrelease", kernel}}
        << "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-18-amd64";
    QTest::addRow("single quotes and escapes")
        << FileMap{{"etc/os-release", "PRETTY_NAME='My \\\"Best\\\" OS'\n"}} << "My \"Best\" OS";
    QTest::addRow("unquoted value") << FileMap{{"etc/os-release", "PRETTY_NAME=Arch\n"}} << "Arch";
    QTest::addRow("name and version without pretty name")
        << FileMap{{"etc/os-release", "NAME=Fedora\nVERSION=\"39 (Workstation Edition)\"\n"}, {"proc/sys/kernel/osrelease", kernel}}
        << "Fedora 39 (Workstation Edition), Linux 6.1.0-18-amd64";
    QTest::addRow("usr lib fallback") << FileMap{{"usr/lib/os-release", "PRETTY_NAME=\"Ubuntu 24.04 LTS\"\n"}}
                                      << "Ubuntu 24.04 LTS";
    QTest::addRow("nothing but kernel") << FileMap{{"proc/sys/kernel/osrelease", kernel}} << "Linux, Linux 6.1.0-18-amd64";
    QTest::addRow("nothing") << FileMap{} << "Linux";
}

void TstLuSysInfo::operatingSys()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::operatingSys(), strExpected);
}

void TstLuSysInfo::graphicsChips_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    FileMap mapTwo{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapTwo, "0000:00:02.0", "0x030000", "0x8086", "0x3e92");
    addPci(mapTwo, "0000:00:1f.3", "0x040300", "0x8086", "0xa348"); // audio: not a display
    addPci(mapTwo, "0000:01:00.0", "0x030200", "0x10de", "0x1eb8");
    QTest::addRow("intel and nvidia in bus order")
        << mapTwo << "Intel Corporation CoffeeLake-S GT2 [UHD Graphics 630]; NVIDIA Corporation TU104GL [Tesla T4]";

    FileMap mapAfterComment{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapAfterComment, "0000:03:00.0", "0x030000", "0x10de", "0x2484");
    QTest::addRow("device after comment line") << mapAfterComment << "NVIDIA Corporation GA104 [GeForce RTX 3070]";

    FileMap mapUnknownDevice{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapUnknownDevice, "0000:00:02.0", "0x030000", "0x8086", "0xabcd");
    QTest::addRow("unknown device id") << mapUnknownDevice << "Intel Corporation Device abcd";

    FileMap mapUnknownVendor{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapUnknownVendor, "0000:00:02.0", "0x030000", "0x1234", "0x1111");
    QTest::addRow("unknown vendor") << mapUnknownVendor << "Vendor 1234 Device 1111";

    FileMap mapNoDatabase;
    addPci(mapNoDatabase, "0000:00:02.0", "0x030000", "0x1002", "0x67df");
    QTest::addRow("no id database") << mapNoDatabase << "Vendor 1002 Device 67df";

    FileMap mapHwdata{{"usr/share/hwdata/pci.ids", g_pciIds}};
    addPci(mapHwdata, "0000:00:02.0", "0x030000", "0x1002", "0x67df");
    QTest::addRow("hwdata location")
        << mapHwdata << "Advanced Micro Devices, Inc. [AMD/ATI] Ellesmere [Radeon RX 470/480/570/570X/580/580X/590]";

    FileMap mapOdd{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapOdd, "0000:00:02.0", "0x030000", "intel", "0x3e92");
    addPci(mapOdd, "0000:00:03.0", "garbage", "0x8086", "0x3e92");
    QTest::addRow("odd vendor and class values") << mapOdd << "PCI 0000:00:02.0";

    FileMap mapNone{{"usr/share/misc/pci.ids", g_pciIds}};
    addPci(mapNone, "0000:00:1f.3", "0x040300", "0x8086", "0xa348");
    QTest::addRow("no display device") << mapNone << "None";
    QTest::addRow("no pci bus (an image: sysfs is empty)") << FileMap{} << "Unknown";
}

void TstLuSysInfo::graphicsChips()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::graphicsChips(), strExpected);
}

void TstLuSysInfo::resolution_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QString>("strExpected");

    FileMap mapConnected;
    addConnector(mapConnected, "card0-DP-1", "connected", "2560x1440\n1920x1080\n");
    addConnector(mapConnected, "card0-HDMI-A-1", "disconnected", "");
    QTest::addRow("first mode of connected connector") << mapConnected << "2560 x 1440";

    FileMap mapSecond;
    addConnector(mapSecond, "card0-DP-1", "disconnected", "1024x768\n");
    addConnector(mapSecond, "card0-eDP-1", "connected", "1920x1080i\n");
    QTest::addRow("interlaced suffix") << mapSecond << "1920 x 1080";

    FileMap mapOdd;
    addConnector(mapOdd, "card0-DP-1", "connected", "widexhigh\n");
    QTest::addRow("odd mode text") << mapOdd << "Unknown";

    FileMap mapNone;
    addConnector(mapNone, "card0-DP-1", "disconnected", "1920x1080\n");
    QTest::addRow("nothing connected") << mapNone << "Unknown";
    QTest::addRow("no drm") << FileMap{} << "Unknown";
}

// Without a GUI application the screen size comes from the DRM connectors.
void TstLuSysInfo::resolution()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QString, strExpected);
    USE_ROOT(mapFiles);
    QCOMPARE(LuInterface::resolution(), strExpected);
}

void TstLuSysInfo::byteOrder()
{
    const QString strExpected = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? QStringLiteral("Little Endian")
                                                                              : QStringLiteral("Big Endian");
    QCOMPARE(LuInterface::byteOrder(), strExpected);
}

QTEST_GUILESS_MAIN(TstLuSysInfo)
#include "tst_lusysinfo.moc"
