#include "cdetectinfo.h"
#include "jumboframe.h"
#include "linerate.h"
#include "netadapters.h"
#include "systemroot.h"
#include "vxprobetable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// The adapter list, the jumbo-frame check and the line rate over fixture
// sysfs trees and a fake kernel link list (no live network is touched).
class TstNetAdapters : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QList<CLinkFacts> m_listLinks;

    QString root() const { return m_pRoot->path(); }
    // The fixture's sysfs tells physical adapters; the kernel's list is fake.
    NetAdapters::LinkSource links() const
    {
        NetAdapters::LinkSource source = NetAdapters::LinkSource::system();
        source.links = [this] { return m_listLinks; };
        return source;
    }

    // A physical adapter "name" on a PCI device, with its speed file
    // ("" = no speed file).
    void addPhysical(const QString &strName, int nIndex, int nMtu, int nMaxMtu, bool bUp, const QString &strSpeed)
    {
        const QString strDev = "/sys/devices/pci0000:00/0000:00:0" + QString::number(nIndex) + ".0";
        const QString strNet = strDev + "/net/" + strName;
        QVERIFY(QDir().mkpath(root() + strNet));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        QVERIFY(QFile::link("../..", root() + strNet + "/device"));
        QVERIFY(QFile::link("../../.." + strNet, root() + "/sys/class/net/" + strName));
        if (!strSpeed.isEmpty()) {
            QFile file(root() + strNet + "/speed");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(strSpeed.toLatin1() + "\n");
        }
        m_listLinks << CLinkFacts{strName, nIndex, nMtu, nMaxMtu, bUp};
    }
    void addVirtual(const QString &strName, int nIndex, int nMtu, bool bUp)
    {
        const QString strNet = "/sys/devices/virtual/net/" + strName;
        QVERIFY(QDir().mkpath(root() + strNet));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        QVERIFY(QFile::link("../../.." + strNet, root() + "/sys/class/net/" + strName));
        m_listLinks << CLinkFacts{strName, nIndex, nMtu, 65535, bUp};
    }

    // The attributes sysfs shows for an interface (under its device folder).
    void writeAttributes(const QString &strName, const QMap<QString, QString> &mapValues)
    {
        const QString strDir = QFileInfo(root() + "/sys/class/net/" + strName).canonicalFilePath();
        QVERIFY(!strDir.isEmpty());
        for (auto it = mapValues.cbegin(); it != mapValues.cend(); ++it) {
            QFile file(strDir + "/" + it.key());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(it.value().toLatin1() + "\n");
        }
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        m_listLinks.clear();
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
    }

    void jumboState_data()
    {
        QTest::addColumn<int>("mtu");
        QTest::addColumn<int>("maxMtu");
        QTest::addColumn<int>("state");
        QTest::newRow("1514 bytes is off") << 1500 << 9000 << 0;
        QTest::newRow("1515 bytes is on") << 1501 << 9000 << 1;
        QTest::newRow("9014 bytes is on") << 9000 << 9000 << 1;
        QTest::newRow("driver without jumbo MTU") << 1500 << 1500 << 2;
        QTest::newRow("driver reports no maximum") << 1500 << 0 << 2;
        QTest::newRow("small MTU, jumbo offered") << 1400 << 65535 << 0;
    }
    void jumboState()
    {
        QFETCH(int, mtu);
        QFETCH(int, maxMtu);
        QFETCH(int, state);
        QCOMPARE(NetAdapters::jumboStateOf(mtu, maxMtu), state);
    }

    void physicalTest()
    {
        addPhysical("enp0s3", 2, 1500, 9000, true, "1000");
        addVirtual("veth0", 3, 1500, true);
        QVERIFY(links().physical("enp0s3"));
        QVERIFY(!links().physical("veth0"));
        QVERIFY(!links().physical("missing"));
        QVERIFY(!links().physical("../../devices"));
        NetAdapters::LinkSource source = links();
        source.isPhysical = [](const QString &strName) { return strName == "veth0"; };
        QVERIFY(source.physical("veth0"));
        QVERIFY(!source.physical("enp0s3"));
        QCOMPARE(NetAdapters::deviceOf("enp0s3"), QString("0000:00:02.0"));
    }

    void jumboCheck_data()
    {
        QTest::addColumn<QStringList>("adapters"); // name:index:mtu:max:up
        QTest::addColumn<QStringList>("expected"); // name=state/value
        QTest::addColumn<int>("normal");
        QTest::newRow("no connected adapter") << QStringList{"eth0:2:1500:9000:0"} << QStringList{} << 0;
        QTest::newRow("one off") << QStringList{"eth0:2:1500:9000:1"} << QStringList{"eth0=0/1514"} << 0;
        QTest::newRow("one on") << QStringList{"eth0:2:1501:9000:1"} << QStringList{"eth0=1/1515"} << 1;
        QTest::newRow("no jumbo MTU: listed, not failing")
            << QStringList{"eth0:2:1500:1500:1", "eth1:3:9000:9216:1"} << QStringList{"eth0=2/1514", "eth1=1/9014"} << 1;
        QTest::newRow("only no-jumbo adapters") << QStringList{"eth0:2:1500:1500:1"} << QStringList{"eth0=2/1514"} << 1;
    }
    void jumboCheck()
    {
        QFETCH(QStringList, adapters);
        QFETCH(QStringList, expected);
        QFETCH(int, normal);
        for (const QString &strAdapter : adapters) {
            const QStringList f = strAdapter.split(':');
            addPhysical(f[0], f[1].toInt(), f[2].toInt(), f[3].toInt(), f[4] == "1", "1000");
        }
        addVirtual("lo", 1, 65536, true);
        CJumboPacketDetectInfo info;
        info.jumboStates["stale"] = 0;
        JumboFrame::check(info, links());
        QStringList listGot;
        for (auto it = info.jumboStates.cbegin(); it != info.jumboStates.cend(); ++it)
            listGot << it.key() + "=" + QString::number(it.value()) + "/" + QString::number(info.jumboValues.value(it.key()));
        QCOMPARE(listGot, expected);
        QCOMPARE(info.bNormal, normal);
        QCOMPARE(NetAdapters::adapterList().size(), expected.size());
    }

    void lineRate_data()
    {
        QTest::addColumn<QStringList>("adapters"); // name:up:speed
        QTest::addColumn<QStringList>("expected"); // name=Mbit/s
        QTest::addColumn<int>("normal");
        QTest::newRow("100 Mbit/s fails") << QStringList{"eth0:1:100", "eth1:1:1000"} << QStringList{"eth0=100", "eth1=1000"} << 0;
        QTest::newRow("10 Gbit/s normal") << QStringList{"eth0:1:10000"} << QStringList{"eth0=10000"} << 1;
        QTest::newRow("disconnected slow adapter not listed") << QStringList{"eth0:0:10", "eth1:1:1000"} << QStringList{"eth1=1000"} << 1;
        QTest::newRow("unknown speed is not slow") << QStringList{"eth0:1:-1", "eth1:1:"} << QStringList{"eth0=-1", "eth1=-1"} << 1;
        QTest::newRow("garbage speed is unknown") << QStringList{"eth0:1:fast"} << QStringList{"eth0=-1"} << 1;
        QTest::newRow("virtual only") << QStringList{} << QStringList{} << 1;
    }
    void lineRate()
    {
        QFETCH(QStringList, adapters);
        QFETCH(QStringList, expected);
        QFETCH(int, normal);
        int nIndex = 2;
        for (const QString &strAdapter : adapters) {
            const QStringList f = strAdapter.split(':');
            addPhysical(f[0], nIndex++, 1500, 9000, f[1] == "1", f[2]);
        }
        addVirtual("lo", 1, 65536, true);
        addVirtual("docker0", 9, 1500, true);
        CNetworkSpeedDetectInfo info;
        LineRate::check(info, links());
        QStringList listGot;
        for (auto it = info.adapterSpeeds.cbegin(); it != info.adapterSpeeds.cend(); ++it)
            listGot << it.key() + "=" + QString::number(it.value());
        QCOMPARE(listGot, expected);
        QCOMPARE(info.bNormal, normal);
    }

    // Another system root: the links come from its sys/class/net attributes,
    // never from this machine's kernel, and no maximum MTU is known.
    void otherRootReadsItsOwnSysfs()
    {
        addPhysical("eth0", 2, 0, 0, false, "10000");
        writeAttributes("eth0", {{"operstate", "up"}, {"carrier", "1"}, {"mtu", "9000"}, {"ifindex", "2"}});
        addPhysical("eth1", 3, 0, 0, false, "1000");
        writeAttributes("eth1", {{"operstate", "down"}, {"carrier", "0"}, {"mtu", "1500"}, {"ifindex", "3"}});
        addPhysical("eth2", 4, 0, 0, false, "100");
        writeAttributes("eth2", {{"operstate", "unknown"}, {"carrier", "1"}, {"mtu", "1500"}, {"ifindex", "4"}});
        addVirtual("lo", 1, 0, false);
        writeAttributes("lo", {{"operstate", "unknown"}, {"carrier", "1"}, {"mtu", "65536"}, {"ifindex", "1"}});

        QVERIFY(NetAdapters::linksReadable());
        QStringList listLinks;
        for (const CLinkFacts &link : NetAdapters::systemLinks())
            listLinks << QStringLiteral("%1 %2 %3 %4 %5").arg(link.strName).arg(link.nIndex).arg(link.nMtu).arg(link.nMaxMtu).arg(link.bConnected);
        QCOMPARE(listLinks, QStringList({"eth0 2 9000 0 1", "eth1 3 1500 0 0", "eth2 4 1500 0 1", "lo 1 65536 0 1"}));

        CNetworkSpeedDetectInfo rate;
        LineRate::check(rate);
        QCOMPARE(rate.adapterSpeeds, (QMap<QString, int>{{"eth0", 10000}, {"eth2", 100}}));
        QCOMPARE(rate.bNormal, 0); // eth2 at 100 Mbit/s

        CJumboPacketDetectInfo jumbo;
        JumboFrame::check(jumbo);
        QCOMPARE(jumbo.jumboStates, (QMap<QString, int>{{"eth0", 1}, {"eth2", 2}}));
        QCOMPARE(jumbo.jumboValues.value("eth0"), 9014);
        QCOMPARE(jumbo.bNormal, 1);
        QCOMPARE(SystemRoot::unreadableItems() & quint32(128 | 256), 0u);
    }

    // An image without sys/class/net (sysfs exists only while a system runs):
    // the network items cannot be diagnosed and are left out, not normal.
    void otherRootWithoutSysfsIsNotAvailable()
    {
        QVERIFY(QDir().mkpath(root() + "/etc"));
        QVERIFY(!NetAdapters::linksReadable());
        QVERIFY(NetAdapters::systemLinks().isEmpty());
        QCOMPARE(SystemRoot::unreadableItems() & quint32(128 | 256), quint32(128 | 256));
        const VxProbeTable table = defaultProbeTable();
        QVERIFY(table.isUnreadable(128) && table.isUnreadable(256));
        QVERIFY(!table.canDetect(128));
        QVERIFY(!table.canDetect(256));
        QVERIFY(!table.canOptimize(256));
        QVERIFY(table.canDetect(1024));
        QVERIFY(!table.isUnreadable(1024));

        // Its interfaces are not this machine's to change.
        QCOMPARE(NetAdapters::setMtu("eth0", 9000), VxRepairStatus::Failed);
    }

    // The live system keeps all items, with or without a sysfs.
    void liveRootReadsEverything()
    {
        qunsetenv("VETRIX_SYSROOT");
        QVERIFY(NetAdapters::linksReadable());
        QCOMPARE(SystemRoot::unreadableItems(), 0u);
        QVERIFY(!defaultProbeTable().isUnreadable(128));
    }

    void lineRateWithoutAnyInterface()
    {
        CNetworkSpeedDetectInfo info;
        LineRate::check(info, links());
        QVERIFY(info.adapterSpeeds.isEmpty());
        QCOMPARE(info.bNormal, 0);
    }
};

QTEST_GUILESS_MAIN(TstNetAdapters)
#include "tst_netadapters.moc"
