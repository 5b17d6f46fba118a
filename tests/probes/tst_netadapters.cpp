#include "cdetectinfo.h"
#include "jumboframe.h"
#include "linerate.h"
#include "netadapters.h"

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

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        m_listLinks.clear();
        NetAdapters::setLinkReader([this] { return m_listLinks; });
    }
    void cleanup()
    {
        NetAdapters::setLinkReader({});
        NetAdapters::setPhysicalTest({});
        qunsetenv("VETRIX_PHYSICAL_IFACES");
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
        QVERIFY(NetAdapters::isPhysical("enp0s3"));
        QVERIFY(!NetAdapters::isPhysical("veth0"));
        QVERIFY(!NetAdapters::isPhysical("missing"));
        QVERIFY(!NetAdapters::isPhysical("../../devices"));
        qputenv("VETRIX_PHYSICAL_IFACES", "veth0,other");
        QVERIFY(NetAdapters::isPhysical("veth0"));
        NetAdapters::setPhysicalTest([](const QString &) { return false; });
        QVERIFY(!NetAdapters::isPhysical("enp0s3"));
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
        JumboFrame::check(info);
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
        LineRate::check(info);
        QStringList listGot;
        for (auto it = info.adapterSpeeds.cbegin(); it != info.adapterSpeeds.cend(); ++it)
            listGot << it.key() + "=" + QString::number(it.value());
        QCOMPARE(listGot, expected);
        QCOMPARE(info.bNormal, normal);
    }

    void lineRateWithoutAnyInterface()
    {
        CNetworkSpeedDetectInfo info;
        LineRate::check(info);
        QVERIFY(info.adapterSpeeds.isEmpty());
        QCOMPARE(info.bNormal, 0);
    }
};

QTEST_GUILESS_MAIN(TstNetAdapters)
#include "tst_netadapters.moc"
