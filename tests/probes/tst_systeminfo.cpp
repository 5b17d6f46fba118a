#include "../base/fixturetree.h"
#include "cdetectinfo.h"
#include "systeminfo.h"

#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>

// The system facts item fills each of its texts from the machine below the
// system root and is always normal. A fixture root with known facts shows
// that each text comes from its own source and lands in its own field.
class TstSystemInfo : public QObject
{
    Q_OBJECT

private slots:
    void fillsEachTextFromItsSource()
    {
        QTemporaryDir root;
        QVERIFY(root.isValid());
        const QString strRoot = root.path();
        QVERIFY(writeFixtureFile(strRoot, "proc/cpuinfo",
                                 "processor\t: 0\nmodel name\t: Fixture CPU @ 2.40GHz\n\n"
                                 "processor\t: 1\nmodel name\t: Fixture CPU @ 2.40GHz\n\n"
                                 "processor\t: 2\nmodel name\t: Fixture CPU @ 2.40GHz\n\n"));
        QVERIFY(writeFixtureFile(strRoot, "proc/meminfo", "MemTotal:        8388608 kB\nMemFree:  1024 kB\n"));
        QVERIFY(writeFixtureFile(strRoot, "etc/os-release", "NAME=\"Fixture\"\nPRETTY_NAME=\"Fixture OS 7\"\n"));
        QVERIFY(writeFixtureFile(strRoot, "proc/sys/kernel/osrelease", "6.1.0-fixture\n"));
        QVERIFY(writeFixtureFile(strRoot, "usr/share/misc/pci.ids",
                                 "8086  Intel Corporation\n\t3e92  CoffeeLake-S GT2 [UHD Graphics 630]\n"));
        QVERIFY(writeFixtureFile(strRoot, "sys/bus/pci/devices/0000:00:02.0/class", "0x030000\n"));
        QVERIFY(writeFixtureFile(strRoot, "sys/bus/pci/devices/0000:00:02.0/vendor", "0x8086\n"));
        QVERIFY(writeFixtureFile(strRoot, "sys/bus/pci/devices/0000:00:02.0/device", "0x3e92\n"));
        QVERIFY(writeFixtureFile(strRoot, "sys/class/drm/card0-DP-1/status", "connected\n"));
        QVERIFY(writeFixtureFile(strRoot, "sys/class/drm/card0-DP-1/modes", "2560x1440\n1920x1080\n"));
        // A big-endian program: the root's byte order, not this machine's.
        QVERIFY(writeFixtureFile(strRoot, "usr/bin/env", QByteArray("\x7f" "ELF\x02\x02\x01\x00", 8)));
        qputenv("VETRIX_SYSROOT", strRoot.toUtf8());

        CSystemDetectInfo info;
        info.bNormal = 0;
        info.cpu = "stale";
        SystemInfo::check(info);
        qunsetenv("VETRIX_SYSROOT");

        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.cpu, QStringLiteral("Fixture CPU @ 2.40GHz"));
        QCOMPARE(info.cpuCount, QStringLiteral("3"));
        QCOMPARE(info.availableMemory, QStringLiteral("8.0 GB"));
        QCOMPARE(info.operatingSystem, QStringLiteral("Fixture OS 7, Linux 6.1.0-fixture"));
        QCOMPARE(info.graphicsChips, QStringLiteral("Intel Corporation CoffeeLake-S GT2 [UHD Graphics 630]"));
        // No GUI here: the size comes from the first connected display.
        QCOMPARE(info.resolution, QStringLiteral("2560 x 1440"));
        QCOMPARE(info.byteOrder, QStringLiteral("Big Endian"));
    }

    // An empty root: every fact the machine does not give is "Unknown", and
    // the item is still normal.
    void emptyRootGivesUnknownTexts()
    {
        QTemporaryDir root;
        qputenv("VETRIX_SYSROOT", root.path().toUtf8());
        CSystemDetectInfo info;
        info.bNormal = 0;
        SystemInfo::check(info);
        qunsetenv("VETRIX_SYSROOT");
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.cpu, QStringLiteral("Unknown"));
        QCOMPARE(info.cpuCount, QStringLiteral("Unknown"));
        QCOMPARE(info.availableMemory, QStringLiteral("Unknown"));
        QCOMPARE(info.graphicsChips, QStringLiteral("Unknown"));
        QCOMPARE(info.resolution, QStringLiteral("Unknown"));
        QCOMPARE(info.byteOrder, QStringLiteral("Unknown"));
    }
};

QTEST_GUILESS_MAIN(TstSystemInfo)
#include "tst_systeminfo.moc"
