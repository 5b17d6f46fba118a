#include "tuningapply.h"
#include "tuningtestutil.h"

#include <QTemporaryDir>
#include <QtTest>

// The sysctl and usbfs appliers below a fixture system root: running value
// and keeping file written together, undo restoring the files exactly, and
// anything outside the closed list of targets and values refused.
class TstTuningApply : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;

    QString root() const { return m_pRoot->path(); }
    static VxChange sysctl(const QString &strKey, const QString &strNew)
    {
        VxChange change;
        change.uItem = 8192;
        change.strKind = VxChangeKind::Sysctl;
        change.strTarget = strKey;
        change.strNew = strNew;
        return change;
    }
    static VxChange usbfs(const QString &strNew)
    {
        VxChange change;
        change.uItem = 4096;
        change.strKind = VxChangeKind::UsbfsMemory;
        change.strTarget = "usbfs_memory_mb";
        change.strNew = strNew;
        return change;
    }
    QByteArray dropIn() const { return TuningTest::read(root(), "etc/sysctl.d/90-vetrix-tool.conf"); }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        QVERIFY(TuningTest::write(root(), "proc/sys/net/core/rmem_max", "212992\n"));
        QVERIFY(TuningTest::write(root(), "proc/sys/net/core/rmem_default", "212992\n"));
        QVERIFY(TuningTest::write(root(), "proc/sys/net/core/netdev_max_backlog", "1000\n"));
        QVERIFY(TuningTest::write(root(), "proc/sys/net/ipv4/conf/all/rp_filter", "1\n"));
        QVERIFY(TuningTest::write(root(), "proc/sys/net/ipv4/conf/eth0.100/rp_filter", "1\n"));
        QVERIFY(TuningTest::write(root(), "sys/module/usbcore/parameters/usbfs_memory_mb", "16\n"));
        QVERIFY(QDir().mkpath(root() + "/etc/sysctl.d"));
        QVERIFY(QDir().mkpath(root() + "/etc/tmpfiles.d"));
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
        m_pRoot = nullptr;
    }

    void sysctlWritesTheValueAndTheDropIn()
    {
        QString strError;
        QVERIFY2(applyTuningChange(sysctl("net.core.rmem_max", "16777216"), &strError), qPrintable(strError));
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/core/rmem_max"), QByteArray("16777216\n"));
        QCOMPARE(dropIn(),
            QByteArray("# Kept by Vetrix Tool. Each setting follows the value it replaced;\n"
                       "# undoing the change in Vetrix Tool removes it again.\n"
                       "# net.core.rmem_max before Vetrix Tool: 212992\n"
                       "net.core.rmem_max = 16777216\n"));
        QString strValue;
        QVERIFY(readTuningValue(sysctl("net.core.rmem_max", QString()), &strValue));
        QCOMPARE(strValue, QString("16777216"));

        // A second change keeps the value the machine had at first.
        QVERIFY(applyTuningChange(sysctl("net.core.rmem_max", "33554432"), &strError));
        QVERIFY(dropIn().contains("# net.core.rmem_max before Vetrix Tool: 212992\nnet.core.rmem_max = 33554432\n"));
        QCOMPARE(dropIn().count("net.core.rmem_max ="), 1);
    }

    void undoRestoresTheRootExactly()
    {
        const auto before = TuningTest::snapshot(root());
        QString strError;
        QVERIFY(applyTuningChange(sysctl("net.core.rmem_max", "16777216"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.core.netdev_max_backlog", "10000"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.ipv4.conf.all.rp_filter", "2"), &strError));
        QVERIFY(applyTuningChange(usbfs("1000"), &strError));
        QVERIFY(TuningTest::snapshot(root()) != before);
        // In reverse order, each back to its old value.
        QVERIFY(applyTuningChange(usbfs("16"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.ipv4.conf.all.rp_filter", "1"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.core.netdev_max_backlog", "1000"), &strError));
        QVERIFY(dropIn().contains("net.core.rmem_max = 16777216"));
        QVERIFY(!dropIn().contains("netdev_max_backlog"));
        QVERIFY(applyTuningChange(sysctl("net.core.rmem_max", "212992"), &strError));
        QCOMPARE(TuningTest::snapshot(root()), before);
    }

    // Lines of the drop-in that are not ours stay, an assignment of the same
    // key included: ours comes last, so it wins, and goes again on undo.
    void otherLinesOfTheDropInAreKept()
    {
        const QByteArray own = "# written by hand\nnet.core.somaxconn = 4096\n-net.ipv4.conf.all.rp_filter = 1\n";
        QVERIFY(TuningTest::write(root(), "etc/sysctl.d/90-vetrix-tool.conf", own));
        QString strError;
        QVERIFY(applyTuningChange(sysctl("net.ipv4.conf.all.rp_filter", "2"), &strError));
        QCOMPARE(dropIn(), own + "# net.ipv4.conf.all.rp_filter before Vetrix Tool: 1\n"
                                 "net.ipv4.conf.all.rp_filter = 2\n");
        QVERIFY(applyTuningChange(sysctl("net.core.rmem_max", "16777216"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.ipv4.conf.all.rp_filter", "0"), &strError));
        QCOMPARE(dropIn(), own + "# net.core.rmem_max before Vetrix Tool: 212992\n"
                                 "net.core.rmem_max = 16777216\n"
                                 "# net.ipv4.conf.all.rp_filter before Vetrix Tool: 1\n"
                                 "net.ipv4.conf.all.rp_filter = 0\n");
        QVERIFY(applyTuningChange(sysctl("net.ipv4.conf.all.rp_filter", "1"), &strError));
        QVERIFY(applyTuningChange(sysctl("net.core.rmem_max", "212992"), &strError));
        QCOMPARE(dropIn(), own);
    }

    void interfaceNamesWithDotsUseSlashesInTheDropIn()
    {
        QString strError;
        QVERIFY2(applyTuningChange(sysctl("net.ipv4.conf.eth0.100.rp_filter", "2"), &strError), qPrintable(strError));
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/ipv4/conf/eth0.100/rp_filter"), QByteArray("2\n"));
        QVERIFY(dropIn().endsWith("net.ipv4.conf.eth0/100.rp_filter = 2\n"));
        QCOMPARE(TuningApply::sysctlFileKey("net.ipv4.conf.eth0.100.rp_filter"),
            QString("net.ipv4.conf.eth0/100.rp_filter"));
    }

    void usbfsWritesTheParameterAndTheTmpfilesEntry()
    {
        QString strError;
        QVERIFY2(applyTuningChange(usbfs("1000"), &strError), qPrintable(strError));
        QCOMPARE(TuningTest::read(root(), "sys/module/usbcore/parameters/usbfs_memory_mb"), QByteArray("1000\n"));
        QVERIFY(TuningTest::read(root(), "etc/tmpfiles.d/vetrix-tool-usbfs.conf")
                    .endsWith("# usbfs_memory_mb before Vetrix Tool: 16\n"
                              "w /sys/module/usbcore/parameters/usbfs_memory_mb - - - - 1000\n"));
        QVERIFY(applyTuningChange(usbfs("16"), &strError));
        QVERIFY(!QFileInfo::exists(root() + "/etc/tmpfiles.d/vetrix-tool-usbfs.conf"));
    }

    void missingParameterChangesNothing()
    {
        QVERIFY(QFile::remove(root() + "/sys/module/usbcore/parameters/usbfs_memory_mb"));
        const auto before = TuningTest::snapshot(root());
        QString strError;
        QVERIFY(!applyTuningChange(usbfs("1000"), &strError));
        QVERIFY(strError.contains("usbfs_memory_mb"));
        QCOMPARE(TuningTest::snapshot(root()), before);
        QString strValue;
        QVERIFY(!readTuningValue(usbfs(QString()), &strValue));
    }

    void unwritableDropInSetsTheRunningValueBack()
    {
        // A folder where the drop-in should be: it cannot be replaced.
        QVERIFY(QDir().mkpath(root() + "/etc/sysctl.d/90-vetrix-tool.conf"));
        QString strError;
        QVERIFY(!applyTuningChange(sysctl("net.core.rmem_default", "16777216"), &strError));
        QVERIFY(!strError.isEmpty());
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/core/rmem_default"), QByteArray("212992\n"));
    }

    void refusesTargetsAndValuesOutsideTheList_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("value");
        QTest::newRow("other core key") << "sysctl"
                                        << "net.core.somaxconn"
                                        << "4096";
        QTest::newRow("kernel key") << "sysctl"
                                    << "kernel.core_pattern"
                                    << "1";
        QTest::newRow("path in key") << "sysctl"
                                     << "net.ipv4.conf.../rp_filter"
                                     << "2";
        QTest::newRow("slash interface") << "sysctl"
                                         << "net.ipv4.conf.a/b.rp_filter"
                                         << "2";
        QTest::newRow("long interface") << "sysctl"
                                        << "net.ipv4.conf.abcdefghijklmnop.rp_filter"
                                        << "2";
        QTest::newRow("empty interface") << "sysctl"
                                         << "net.ipv4.conf..rp_filter"
                                         << "2";
        QTest::newRow("rp_filter 3") << "sysctl"
                                     << "net.ipv4.conf.all.rp_filter"
                                     << "3";
        QTest::newRow("negative") << "sysctl"
                                  << "net.core.rmem_max"
                                  << "-1";
        QTest::newRow("padded") << "sysctl"
                                << "net.core.rmem_max"
                                << "016777216";
        QTest::newRow("too large") << "sysctl"
                                   << "net.core.rmem_max"
                                   << "2147483648";
        QTest::newRow("two lines") << "sysctl"
                                   << "net.core.rmem_max"
                                   << "1\n2";
        QTest::newRow("empty value") << "sysctl"
                                     << "net.core.rmem_max"
                                     << "";
        QTest::newRow("usbfs other target") << "usbfs-memory"
                                            << "usbfs_snoop"
                                            << "1";
        QTest::newRow("usbfs text") << "usbfs-memory"
                                    << "usbfs_memory_mb"
                                    << "lots";
        QTest::newRow("ring 0") << "rx-ring"
                                << "eth0"
                                << "0";
        QTest::newRow("ring bad name") << "rx-ring"
                                       << "../eth0"
                                       << "4096";
        QTest::newRow("unknown kind") << "mtu"
                                      << "eth0"
                                      << "9000";
    }
    void refusesTargetsAndValuesOutsideTheList()
    {
        QFETCH(QString, kind);
        QFETCH(QString, target);
        QFETCH(QString, value);
        VxChange change;
        change.strKind = kind;
        change.strTarget = target;
        change.strNew = value;
        const auto before = TuningTest::snapshot(root());
        QString strError;
        QVERIFY(!applyTuningChange(change, &strError));
        QVERIFY(strError.contains(target));
        QCOMPARE(TuningTest::snapshot(root()), before);
    }

    void ringNeedsTheRunningSystem()
    {
        VxChange change;
        change.strKind = VxChangeKind::RxRing;
        change.strTarget = "eth0";
        change.strNew = "4096";
        QString strError;
        QVERIFY(!applyTuningChange(change, &strError));
        QVERIFY(strError.contains("eth0"));
        QString strValue;
        QVERIFY(!readTuningValue(change, &strValue));
    }
};

QTEST_GUILESS_MAIN(TstTuningApply)
#include "tst_tuningapply.moc"
