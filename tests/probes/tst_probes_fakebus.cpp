#include "cdetectinfo.h"
#include "firewallstatus.h"
#include "netadapters.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

// The D-Bus clients of the probes (systemd and firewalld for the firewall,
// NetworkManager for the MTU profile) against fake services on a private
// bus started by the test; the live system bus is never used.

using NmSettings = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(NmSettings)

class FakeSystemdManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")
public:
    QMap<QString, QString> mapStates; // unit -> ActiveState; absent: not loaded
public slots:
    QDBusObjectPath GetUnit(const QString &strUnit)
    {
        if (!mapStates.contains(strUnit)) {
            sendErrorReply("org.freedesktop.systemd1.NoSuchUnit", "Unit " + strUnit + " not loaded.");
            return QDBusObjectPath();
        }
        return QDBusObjectPath("/org/freedesktop/systemd1/unit/" + QString(strUnit).replace('.', '_'));
    }
};

class FakeUnit : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Unit")
    Q_PROPERTY(QString ActiveState READ activeState)
public:
    QString strState;
    QString activeState() const { return strState; }
};

class FakeFirewalld : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.fedoraproject.FirewallD1")
    Q_PROPERTY(QString state READ state)
public:
    QString strState;
    QString state() const { return strState; }
};

class FakeNetworkManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager")
public slots:
    QDBusObjectPath GetDeviceByIpIface(const QString &strName)
    {
        if (strName != "eth0") {
            sendErrorReply("org.freedesktop.NetworkManager.UnknownDevice", "No device found");
            return QDBusObjectPath();
        }
        return QDBusObjectPath("/org/freedesktop/NetworkManager/Devices/1");
    }
};

class FakeDevice : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager.Device")
    Q_PROPERTY(QDBusObjectPath ActiveConnection READ activeConnection)
public:
    QDBusObjectPath activeConnection() const { return QDBusObjectPath("/org/freedesktop/NetworkManager/ActiveConnection/1"); }
};

class FakeActive : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager.Connection.Active")
    Q_PROPERTY(QDBusObjectPath Connection READ connection)
public:
    QDBusObjectPath connection() const { return QDBusObjectPath("/org/freedesktop/NetworkManager/Settings/1"); }
};

class FakeProfile : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager.Settings.Connection")
public:
    NmSettings settings;
    int nUpdates = 0;
public slots:
    NmSettings GetSettings() { return settings; }
    void Update(const NmSettings &newSettings)
    {
        settings = newSettings;
        ++nUpdates;
    }
};

class TstProbesFakeBus : public QObject
{
    Q_OBJECT

private:
    QProcess m_daemon;
    QTemporaryDir m_emptyRoot; // no ufw.conf: only the bus answers count
    QThread m_serviceThread;
    FakeSystemdManager *m_pManager = nullptr;
    QMap<QString, FakeUnit *> m_mapUnits;
    FakeProfile *m_pProfile = nullptr;
    FakeFirewalld *m_pFirewalld = nullptr;
    QList<QObject *> m_listObjects;

    template<typename T>
    T *serve(QDBusConnection &bus, const QString &strPath)
    {
        T *pObject = new T;
        pObject->moveToThread(&m_serviceThread); // answers while the test thread blocks in a call
        m_listObjects << pObject;
        bool bOk = bus.registerObject(strPath, pObject, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        if (!bOk)
            qWarning("cannot register %s", qPrintable(strPath));
        return pObject;
    }

    // With a fixture root the firewall asks nobody over D-Bus; these tests
    // talk to the fake services through its bus readers.
    static FirewallStatus busStatus()
    {
        return FirewallStatus(&FirewallStatus::systemdUnitState, &FirewallStatus::firewalldState);
    }

private slots:
    void initTestCase()
    {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        QVERIFY2(m_daemon.waitForStarted(5000), "dbus-daemon is needed (package dbus-daemon)");
        QVERIFY(m_daemon.waitForReadyRead(5000));
        const QByteArray address = m_daemon.readLine().trimmed();
        QVERIFY(!address.isEmpty());
        // The probes reach "the system bus" through this variable.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        qDBusRegisterMetaType<NmSettings>();
        QVERIFY(m_emptyRoot.isValid());
        qputenv("VETRIX_SYSROOT", m_emptyRoot.path().toLocal8Bit());
        m_serviceThread.start();

        QDBusConnection bus = QDBusConnection::connectToBus(QString::fromLatin1(address), "fake-services");
        QVERIFY(bus.isConnected());
        m_pManager = serve<FakeSystemdManager>(bus, "/org/freedesktop/systemd1");
        for (const char *strUnit : {"firewalld.service", "ufw.service", "nftables.service"})
            m_mapUnits[strUnit] = serve<FakeUnit>(bus, "/org/freedesktop/systemd1/unit/" + QString(strUnit).replace('.', '_'));
        serve<FakeNetworkManager>(bus, "/org/freedesktop/NetworkManager");
        serve<FakeDevice>(bus, "/org/freedesktop/NetworkManager/Devices/1");
        serve<FakeActive>(bus, "/org/freedesktop/NetworkManager/ActiveConnection/1");
        m_pProfile = serve<FakeProfile>(bus, "/org/freedesktop/NetworkManager/Settings/1");
        // firewalld on a connection of its own, so its name can come and go.
        QDBusConnection firewalldBus = QDBusConnection::connectToBus(QString::fromLatin1(address), "fake-firewalld");
        QVERIFY(firewalldBus.isConnected());
        m_pFirewalld = serve<FakeFirewalld>(firewalldBus, "/org/fedoraproject/FirewallD1");
        QVERIFY(bus.registerService("org.freedesktop.systemd1"));
        QVERIFY(bus.registerService("org.freedesktop.NetworkManager"));
    }

    void cleanupTestCase()
    {
        m_serviceThread.quit();
        m_serviceThread.wait();
        qDeleteAll(m_listObjects);
        QDBusConnection::disconnectFromBus("fake-services");
        QDBusConnection::disconnectFromBus("fake-firewalld");
        m_daemon.terminate();
        m_daemon.waitForFinished(5000);
    }

    void firewall_data()
    {
        QTest::addColumn<QStringList>("units"); // unit=state; not listed: not loaded
        QTest::addColumn<bool>("enabled");
        QTest::newRow("nothing loaded") << QStringList{} << false;
        QTest::newRow("firewalld active") << QStringList{"firewalld.service=active"} << true;
        QTest::newRow("firewalld inactive") << QStringList{"firewalld.service=inactive"} << false;
        QTest::newRow("nftables active") << QStringList{"nftables.service=active"} << true;
        QTest::newRow("ufw active but not switched on") << QStringList{"ufw.service=active"} << false;
    }
    void firewall()
    {
        QFETCH(QStringList, units);
        QFETCH(bool, enabled);
        QMap<QString, QString> mapStates;
        for (const QString &strUnit : units)
            mapStates[strUnit.section('=', 0, 0)] = strUnit.section('=', 1);
        QMetaObject::invokeMethod(
            m_pManager,
            [this, mapStates] {
                m_pManager->mapStates = mapStates;
                for (auto it = m_mapUnits.cbegin(); it != m_mapUnits.cend(); ++it)
                    it.value()->strState = mapStates.value(it.key());
            },
            Qt::BlockingQueuedConnection);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(busStatus().isEnabled(), enabled);
        QVERIFY(timer.elapsed() < 3000); // firewalld is absent from the bus: no activation, no wait
    }

    void firewalldState_data()
    {
        QTest::addColumn<QString>("state"); // "" = firewalld not on the bus
        QTest::addColumn<bool>("enabled");
        QTest::newRow("not on the bus") << "" << false;
        QTest::newRow("RUNNING") << "RUNNING" << true;
        QTest::newRow("FAILED") << "FAILED" << false;
    }
    void firewalldState()
    {
        QFETCH(QString, state);
        QFETCH(bool, enabled);
        QMetaObject::invokeMethod(
            m_pManager,
            [this] {
                m_pManager->mapStates.clear();
                for (FakeUnit *pUnit : qAsConst(m_mapUnits))
                    pUnit->strState.clear();
            },
            Qt::BlockingQueuedConnection);
        QMetaObject::invokeMethod(m_pFirewalld, [this, state] { m_pFirewalld->strState = state; }, Qt::BlockingQueuedConnection);
        QDBusConnection firewalldBus(QDBusConnection::connectToBus(QString::fromLatin1(qgetenv("DBUS_SYSTEM_BUS_ADDRESS")), "fake-firewalld"));
        if (state.isEmpty())
            firewalldBus.unregisterService("org.fedoraproject.FirewallD1");
        else
            QVERIFY(firewalldBus.registerService("org.fedoraproject.FirewallD1"));
        QCOMPARE(busStatus().isEnabled(), enabled);
    }

    void networkManagerProfileGetsTheMtu()
    {
        NmSettings settings;
        settings["connection"] = QVariantMap{{"id", "Wired"}, {"type", "802-3-ethernet"}};
        settings["802-3-ethernet"] = QVariantMap{{"mtu", 0u}};
        settings["ipv4"] = QVariantMap{{"method", "auto"}};
        QMetaObject::invokeMethod(m_pProfile, [this, settings] { m_pProfile->settings = settings; }, Qt::BlockingQueuedConnection);
        // Another system root: the running NetworkManager is not its.
        NetAdapters::updateNetworkManagerMtu("eth0", 9000);
        int nUpdatesOffline = -1;
        QMetaObject::invokeMethod(m_pProfile, [&] { nUpdatesOffline = m_pProfile->nUpdates; }, Qt::BlockingQueuedConnection);
        QCOMPARE(nUpdatesOffline, 0);
        // The live system (no file is read on this path).
        qunsetenv("VETRIX_SYSROOT");
        NetAdapters::updateNetworkManagerMtu("eth0", 9000);
        NetAdapters::updateNetworkManagerMtu("eth9", 9000); // not NetworkManager's: nothing happens
        qputenv("VETRIX_SYSROOT", m_emptyRoot.path().toLocal8Bit());
        NmSettings after;
        int nUpdates = 0;
        QMetaObject::invokeMethod(m_pProfile, [&] { after = m_pProfile->settings; nUpdates = m_pProfile->nUpdates; },
                                  Qt::BlockingQueuedConnection);
        QCOMPARE(nUpdates, 1);
        QCOMPARE(after.value("802-3-ethernet").value("mtu").toUInt(), 9000u);
        QCOMPARE(after.value("connection").value("id").toString(), QString("Wired"));
        QCOMPARE(after.value("ipv4").value("method").toString(), QString("auto"));
    }
};

QTEST_GUILESS_MAIN(TstProbesFakeBus)
#include "tst_probes_fakebus.moc"
