#include "cdetectinfo.h"
#include "firewallstatus.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// The firewall state from fake systemd/firewalld answers and fixture ufw.conf files.
class TstFirewallStatus : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", m_pRoot->path().toLocal8Bit());
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
    }

    void states_data()
    {
        QTest::addColumn<QString>("ufwConf"); // "<missing>" for no file
        QTest::addColumn<QStringList>("units"); // unit=state
        QTest::addColumn<QString>("firewalld");
        QTest::addColumn<bool>("enabled");
        const QStringList none;
        QTest::newRow("nothing installed") << "<missing>" << none << "" << false;
        QTest::newRow("ufw.conf ENABLED=yes, no systemd answer") << "ENABLED=yes\n" << none << "" << true;
        QTest::newRow("ufw.conf ENABLED=no") << "ENABLED=no\n" << QStringList{"ufw.service=active"} << "" << false;
        QTest::newRow("ufw.conf quoted yes, service active") << "# c\nENABLED=\"yes\"\n" << QStringList{"ufw.service=active"} << "" << true;
        QTest::newRow("ufw.conf yes, service inactive") << "ENABLED=yes\n" << QStringList{"ufw.service=inactive"} << "" << false;
        QTest::newRow("ufw.conf yes then no: last wins") << "ENABLED=yes\nENABLED=no\n" << none << "" << false;
        QTest::newRow("ufw.conf missing, ufw active") << "<missing>" << QStringList{"ufw.service=active"} << "" << false;
        QTest::newRow("firewalld active") << "<missing>" << QStringList{"firewalld.service=active"} << "" << true;
        QTest::newRow("firewalld failed") << "<missing>" << QStringList{"firewalld.service=failed"} << "" << false;
        QTest::newRow("firewalld reports RUNNING") << "<missing>" << none << "RUNNING" << true;
        QTest::newRow("firewalld reports FAILED") << "<missing>" << none << "FAILED" << false;
        QTest::newRow("nftables active") << "<missing>" << QStringList{"nftables.service=active"} << "" << true;
        QTest::newRow("nftables activating") << "<missing>" << QStringList{"nftables.service=activating"} << "" << false;
    }
    void states()
    {
        QFETCH(QString, ufwConf);
        QFETCH(QStringList, units);
        QFETCH(QString, firewalld);
        QFETCH(bool, enabled);
        if (ufwConf != "<missing>") {
            QVERIFY(QDir().mkpath(m_pRoot->path() + "/etc/ufw"));
            QFile file(m_pRoot->path() + "/etc/ufw/ufw.conf");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(ufwConf.toLatin1());
        }
        QMap<QString, QString> mapUnits;
        for (const QString &strUnit : units)
            mapUnits[strUnit.section('=', 0, 0)] = strUnit.section('=', 1);
        const bool bAnswers = !units.isEmpty();
        const FirewallStatus status(
            [mapUnits, bAnswers](const QString &strUnit) {
                return bAnswers ? mapUnits.value(strUnit, "inactive") : QString();
            },
            [firewalld] { return firewalld; });
        QCOMPARE(status.isEnabled(), enabled);
        CDetectInfo info;
        info.bNormal = enabled ? 1 : 0;
        Firewall::check(info, status);
        QCOMPARE(info.bNormal, enabled ? 0 : 1);
    }

    // Another system root is not asked over D-Bus (a private bus stands in
    // for the running system and must not be reached): a service its systemd
    // starts at boot counts as on.
    void otherRootReadsBootServices_data()
    {
        QTest::addColumn<QStringList>("wants"); // target.wants/unit links
        QTest::addColumn<QString>("ufwConf");   // "<missing>" for no file
        QTest::addColumn<bool>("enabled");
        QTest::newRow("firewalld enabled") << QStringList{"multi-user.target.wants/firewalld.service"} << "<missing>" << true;
        QTest::newRow("nftables enabled") << QStringList{"sysinit.target.wants/nftables.service"} << "<missing>" << true;
        QTest::newRow("other services only") << QStringList{"multi-user.target.wants/ssh.service"} << "<missing>" << false;
        QTest::newRow("ufw switched on and enabled") << QStringList{"multi-user.target.wants/ufw.service"} << "ENABLED=yes\n" << true;
        QTest::newRow("ufw switched on, not enabled") << QStringList{"multi-user.target.wants/ssh.service"} << "ENABLED=yes\n" << false;
    }
    void otherRootReadsBootServices()
    {
        QFETCH(QStringList, wants);
        QFETCH(QString, ufwConf);
        QFETCH(bool, enabled);
        for (const QString &strWant : wants) {
            const QString strLink = m_pRoot->path() + "/etc/systemd/system/" + strWant;
            QVERIFY(QDir().mkpath(QFileInfo(strLink).absolutePath()));
            // Absolute, as systemctl makes them: pointing into the root, not here.
            QVERIFY(QFile::link("/lib/systemd/system/" + QFileInfo(strLink).fileName(), strLink));
        }
        if (ufwConf != "<missing>") {
            QVERIFY(QDir().mkpath(m_pRoot->path() + "/etc/ufw"));
            QFile file(m_pRoot->path() + "/etc/ufw/ufw.conf");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(ufwConf.toLatin1());
        }
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/vetrix-test-bus");
        QCOMPARE(FirewallStatus().isEnabled(), enabled);
    }

    void noSystemBusAnswersQuickly()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/vetrix-test-bus");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!FirewallStatus().isEnabled());
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    }
};

QTEST_GUILESS_MAIN(TstFirewallStatus)
#include "tst_firewallstatus.moc"
