#include "ethtoolrings.h"
#include "tuningapply.h"
#include "netadapters.h"
#include "rpfilter.h"
#include "rxbuffers.h"
#include "tuningtestutil.h"
#include "usbbuffers.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

// The USB buffer memory, network receive buffer and reverse-path filter
// checks against fixture system roots, at every threshold.
class TstTuningChecks : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;

    QString root() const { return m_pRoot->path(); }
    // The fixture's interfaces; those named eth* count as physical.
    static NetAdapters::LinkSource links()
    {
        NetAdapters::LinkSource source = NetAdapters::LinkSource::system();
        source.isPhysical = [](const QString &strName) { return strName.startsWith("eth"); };
        return source;
    }
    // A user's rights: enough for another system root.
    static VxPrivileges asUser() { return VxPrivileges(QString(), VxPrivileges::Rights::User); }
    bool write(const QString &strRelative, const QByteArray &content)
    {
        return TuningTest::write(root(), strRelative, content);
    }
    // A network interface in the fixture's sys/class/net.
    bool addInterface(const QString &strName)
    {
        const QString strDir = "sys/class/net/" + strName + "/";
        return write(strDir + "ifindex", "2\n") && write(strDir + "operstate", "up\n")
            && write(strDir + "mtu", "1500\n") && write("proc/sys/net/ipv4/conf/" + strName + "/rp_filter", "0\n");
    }
    void writeSysctls(const QByteArray &rmemMax, const QByteArray &rmemDefault, const QByteArray &backlog)
    {
        QVERIFY(write("proc/sys/net/core/rmem_max", rmemMax + "\n"));
        QVERIFY(write("proc/sys/net/core/rmem_default", rmemDefault + "\n"));
        QVERIFY(write("proc/sys/net/core/netdev_max_backlog", backlog + "\n"));
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
        m_pRoot = nullptr;
    }

    // --- USB buffer memory --------------------------------------------------
    void usbfsMemoryThresholds_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("usb3RootHub");
        QTest::addColumn<bool>("u3vCamera");
        QTest::addColumn<int>("normal");
        QTest::newRow("999 with a USB 3 root hub") << QByteArray("999") << true << false << 0;
        QTest::newRow("1000 with a USB 3 root hub") << QByteArray("1000") << true << false << 1;
        QTest::newRow("0 is unlimited") << QByteArray("0") << true << true << 1;
        QTest::newRow("default 16 with a USB3 Vision camera") << QByteArray("16") << false << true << 0;
        QTest::newRow("16 without USB 3") << QByteArray("16") << false << false << 1;
        QTest::newRow("unreadable text") << QByteArray("lots") << true << true << 1;
    }
    void usbfsMemoryThresholds()
    {
        QFETCH(QByteArray, value);
        QFETCH(bool, usb3RootHub);
        QFETCH(bool, u3vCamera);
        QFETCH(int, normal);
        QVERIFY(write("sys/module/usbcore/parameters/usbfs_memory_mb", value + "\n"));
        QVERIFY(write("sys/bus/usb/devices/usb1/speed", "480\n"));
        QVERIFY(write("sys/bus/usb/devices/usb2/speed", usb3RootHub ? "5000\n" : "480\n"));
        // A USB3 Vision interface (0xEF/0x05) or a video class one.
        QVERIFY(write("sys/bus/usb/devices/2-1:1.0/bInterfaceClass", u3vCamera ? "ef\n" : "0e\n"));
        QVERIFY(write("sys/bus/usb/devices/2-1:1.0/bInterfaceSubClass", u3vCamera ? "05\n" : "01\n"));
        QVERIFY(write("sys/bus/usb/devices/2-1/speed", "5000\n"));

        CUsbBufferDetectInfo info;
        UsbBuffers::check(info);
        QCOMPARE(info.bNormal, normal);
        QCOMPARE(info.nItem, 4096);
        QCOMPARE(info.usb3Controllers, usb3RootHub ? QStringList {"usb2"} : QStringList());
        QCOMPARE(info.usb3Cameras, u3vCamera ? QStringList {"2-1"} : QStringList());
        const VxPlan plan = UsbBuffers::plan(info);
        QCOMPARE(plan.size(), normal ? 0 : 1);
        const QStringList listLines = usbBufferLines(info);
        const QJsonObject facts = usbBufferFacts(info);
        if (value == "lots") {
            QCOMPARE(info.nUsbfsMemoryMb, -1);
            QVERIFY(listLines.first().contains("cannot be read"));
            QVERIFY(facts.value("usbfsMemoryMb").isNull());
            return;
        }
        QCOMPARE(info.nUsbfsMemoryMb, value.toInt());
        QCOMPARE(facts.value("usbfsMemoryMb").toInt(), value.toInt());
        if (!normal) {
            QCOMPARE(plan.first().uItem, 4096u);
            QCOMPARE(plan.first().strKind, QString(VxChangeKind::UsbfsMemory));
            QCOMPARE(plan.first().strTarget, QString("usbfs_memory_mb"));
            QCOMPARE(plan.first().strOld, QString::fromLatin1(value));
            QCOMPARE(plan.first().strNew, QString("1000"));
            QCOMPARE(listLines.first(),
                QString("USB buffer memory (usbfs_memory_mb) is %1 MB; USB3 Vision cameras need at least 1000 MB.")
                    .arg(QString(value)));
        } else if (value == "0") {
            QCOMPARE(listLines.first(), QString("USB buffer memory (usbfs_memory_mb): unlimited."));
        } else {
            QCOMPARE(listLines.first(), QString("USB buffer memory (usbfs_memory_mb): %1 MB.").arg(QString(value)));
        }
        QCOMPARE(listLines.contains("No USB 3 controller or USB3 Vision camera found."), !usb3RootHub && !u3vCamera);
    }

    void usbcoreNotLoadedIsNotExceptional()
    {
        QVERIFY(write("sys/bus/usb/devices/usb2/speed", "5000\n"));
        CUsbBufferDetectInfo info;
        UsbBuffers::check(info);
        QCOMPARE(info.nUsbfsMemoryMb, -1);
        QCOMPARE(info.bNormal, 1);
        QVERIFY(UsbBuffers::plan(info).isEmpty());
        QCOMPARE(usbBufferLines(info).first(),
            QString("The USB buffer memory cannot be read (the usbcore module is not loaded)."));
    }

    // --- network receive buffers ----------------------------------------------
    void receiveSysctlThresholds_data()
    {
        QTest::addColumn<QByteArray>("rmemMax");
        QTest::addColumn<QByteArray>("rmemDefault");
        QTest::addColumn<QByteArray>("backlog");
        QTest::addColumn<QStringList>("planned"); // key=old>new
        QTest::newRow("all at the threshold")
            << QByteArray("16777216") << QByteArray("16777216") << QByteArray("10000") << QStringList();
        QTest::newRow("rmem_max 16 MiB - 1") << QByteArray("16777215") << QByteArray("16777216") << QByteArray("10000")
                                             << QStringList {"net.core.rmem_max=16777215>16777216"};
        QTest::newRow("rmem_default 16 MiB - 1")
            << QByteArray("33554432") << QByteArray("16777215") << QByteArray("20000")
            << QStringList {"net.core.rmem_default=16777215>16777216"};
        QTest::newRow("backlog 9999") << QByteArray("16777216") << QByteArray("16777216") << QByteArray("9999")
                                      << QStringList {"net.core.netdev_max_backlog=9999>10000"};
        QTest::newRow("Debian defaults") << QByteArray("212992") << QByteArray("212992") << QByteArray("1000")
                                         << QStringList {"net.core.rmem_max=212992>16777216",
                                                "net.core.rmem_default=212992>16777216",
                                                "net.core.netdev_max_backlog=1000>10000"};
        QTest::newRow("unreadable is not low")
            << QByteArray("x") << QByteArray("") << QByteArray("-5") << QStringList();
    }
    void receiveSysctlThresholds()
    {
        QFETCH(QByteArray, rmemMax);
        QFETCH(QByteArray, rmemDefault);
        QFETCH(QByteArray, backlog);
        QFETCH(QStringList, planned);
        writeSysctls(rmemMax, rmemDefault, backlog);
        CRxBufferDetectInfo info;
        RxBuffers::check(info, links());
        QCOMPARE(info.nItem, 8192);
        QCOMPARE(info.sysctls.size(), 3);
        QStringList listPlanned;
        for (const VxChange &change : RxBuffers::plan(info)) {
            QCOMPARE(change.uItem, 8192u);
            QCOMPARE(change.strKind, QString(VxChangeKind::Sysctl));
            listPlanned << change.strTarget + "=" + change.strOld + ">" + change.strNew;
        }
        QCOMPARE(listPlanned, planned);
        QCOMPARE(info.bNormal, planned.isEmpty() ? 1 : 0);
        const QStringList listLines = rxBufferLines(info);
        if (rmemMax == "16777215")
            QVERIFY(listLines.contains("net.core.rmem_max is 16777215; cameras need at least 16777216."));
        if (rmemMax == "x")
            QVERIFY(listLines.contains("net.core.rmem_max cannot be read."));
        if (planned.isEmpty() && rmemMax != "x")
            QVERIFY(listLines.contains("net.core.netdev_max_backlog is " + backlog + "."));
    }

    void ringsAreNotAvailableWithAnotherRoot()
    {
        writeSysctls("16777216", "16777216", "10000");
        QVERIFY(addInterface("eth0"));
        QVERIFY(addInterface("lo"));
        CRxBufferDetectInfo info;
        RxBuffers::check(info, links());
        QVERIFY(!info.bRingsReadable);
        QCOMPARE(info.adapters.size(), 1);
        QCOMPARE(info.adapters.first().strName, QString("eth0"));
        QCOMPARE(info.adapters.first().nRx, -1);
        QCOMPARE(info.bNormal, 1);
        QVERIFY(rxBufferLines(info).contains("Receive rings are read from the running system only: not available."));
        QCOMPARE(rxBufferFacts(info).value("ringsReadable").toBool(), false);
    }

    void ringBelowItsMaximumIsPlannedToTheMaximum_data()
    {
        QTest::addColumn<int>("rx");
        QTest::addColumn<int>("max");
        QTest::addColumn<int>("normal");
        QTest::newRow("256 of 4096") << 256 << 4096 << 0;
        QTest::newRow("4095 of 4096") << 4095 << 4096 << 0;
        QTest::newRow("at the maximum") << 4096 << 4096 << 1;
    }
    void ringBelowItsMaximumIsPlannedToTheMaximum()
    {
        QFETCH(int, rx);
        QFETCH(int, max);
        QFETCH(int, normal);
        writeSysctls("16777216", "16777216", "10000");
        QVERIFY(addInterface("eth0"));
        QVERIFY(addInterface("eth1"));
        const RxBuffers::RingReader rings = [&](const QString &strName, CRxRing *pRing, QString *pError) {
            if (strName == "eth1") {
                *pError = "Operation not supported";
                return false;
            }
            pRing->uRx = quint32(rx);
            pRing->uRxMax = quint32(max);
            return true;
        };
        CRxBufferDetectInfo info;
        RxBuffers::check(info, links(), rings);
        QCOMPARE(info.bNormal, normal);
        const VxPlan plan = RxBuffers::plan(info);
        QCOMPARE(plan.size(), normal ? 0 : 1);
        const QStringList listLines = rxBufferLines(info);
        QVERIFY(listLines.contains("Receive ring of eth1: not available (Operation not supported)."));
        if (normal) {
            QVERIFY(listLines.contains(QString("Receive ring of eth0: %1 entries (the maximum).").arg(max)));
            return;
        }
        QCOMPARE(plan.first().strKind, QString(VxChangeKind::RxRing));
        QCOMPARE(plan.first().strTarget, QString("eth0"));
        QCOMPARE(plan.first().strOld, QString::number(rx));
        QCOMPARE(plan.first().strNew, QString::number(max));
        QVERIFY(listLines.contains(QString("Receive ring of eth0: %1 of at most %2 entries.").arg(rx).arg(max)));
        const QJsonArray adapters = rxBufferFacts(info).value("adapters").toArray();
        QCOMPARE(adapters.size(), 2);
        QCOMPARE(adapters.at(0).toObject().value("rx").toInt(), rx);
        QCOMPARE(adapters.at(0).toObject().value("rxMax").toInt(), max);
    }

    // Windows' adapters come as records; the plan and lines are shared.
    void windowsReceiveBuffersAndModeration()
    {
        CRxBufferDetectInfo info;
        CRxAdapter adapter;
        adapter.strName = "Intel(R) Ethernet";
        adapter.strDriverKey = "{4D36E972-E325-11CE-BFC1-08002BE10318}\\0007";
        adapter.nRx = 512;
        adapter.nRxMax = 4096;
        adapter.nInterruptModeration = 0;
        info.adapters << adapter;
        QVERIFY(RxBuffers::isExceptional(info));
        const VxPlan plan = RxBuffers::plan(info);
        QCOMPARE(plan.size(), 2);
        QCOMPARE(plan.at(0).strKind, QString(RxBuffers::kReceiveBuffersKind));
        QCOMPARE(plan.at(0).strTarget, adapter.strDriverKey);
        QCOMPARE(plan.at(0).strNew, QString("4096"));
        QCOMPARE(plan.at(1).strKind, QString(RxBuffers::kInterruptModerationKind));
        QCOMPARE(plan.at(1).strNew, QString("1"));
        QCOMPARE(rxBufferLines(info),
            QStringList({"Receive buffers of Intel(R) Ethernet: 512 of at most 4096.",
                "Interrupt moderation of Intel(R) Ethernet is off: every frame costs an interrupt."}));
        info.adapters[0].nRx = 4096;
        info.adapters[0].nInterruptModeration = 1;
        QVERIFY(!RxBuffers::isExceptional(info));
        QVERIFY(RxBuffers::plan(info).isEmpty());
    }

    // --- reverse-path filter ---------------------------------------------------
    void reversePathFilter_data()
    {
        QTest::addColumn<QByteArray>("all");
        QTest::addColumn<QByteArray>("own");
        QTest::addColumn<int>("effective");
        QTest::newRow("0/0") << QByteArray("0") << QByteArray("0") << 0;
        QTest::newRow("0/1 strict") << QByteArray("0") << QByteArray("1") << 1;
        QTest::newRow("0/2") << QByteArray("0") << QByteArray("2") << 2;
        QTest::newRow("all=1 over 0") << QByteArray("1") << QByteArray("0") << 1;
        QTest::newRow("1/1") << QByteArray("1") << QByteArray("1") << 1;
        QTest::newRow("1/2 loose wins") << QByteArray("1") << QByteArray("2") << 2;
        QTest::newRow("all=2 over 1") << QByteArray("2") << QByteArray("1") << 2;
    }
    void reversePathFilter()
    {
        QFETCH(QByteArray, all);
        QFETCH(QByteArray, own);
        QFETCH(int, effective);
        QVERIFY(addInterface("eth0"));
        QVERIFY(addInterface("wlan0")); // not physical here: not graded
        QVERIFY(write("proc/sys/net/ipv4/conf/all/rp_filter", all + "\n"));
        QVERIFY(write("proc/sys/net/ipv4/conf/eth0/rp_filter", own + "\n"));
        QVERIFY(write("proc/sys/net/ipv4/conf/wlan0/rp_filter", "1\n"));
        CRpFilterDetectInfo info;
        RpFilter::check(info, links());
        QCOMPARE(info.nItem, 16384);
        QCOMPARE(info.adapters, (QMap<QString, int> {{"eth0", own.toInt()}}));
        QCOMPARE(RpFilter::effective(info.nAll, info.adapters.value("eth0")), effective);
        QCOMPARE(info.bNormal, effective == 1 ? 0 : 1);
        const VxPlan plan = RpFilter::plan(info);
        QCOMPARE(plan.size(), effective == 1 ? 1 : 0);
        const QString strLine = rpFilterLines(info).first();
        if (effective == 1) {
            QCOMPARE(plan.first().strKind, QString(VxChangeKind::Sysctl));
            QCOMPARE(plan.first().strTarget, QString("net.ipv4.conf.eth0.rp_filter"));
            QCOMPARE(plan.first().strOld, QString::fromLatin1(own));
            QCOMPARE(plan.first().strNew, QString("2"));
            QVERIFY2(strLine.startsWith("The reverse-path filter of eth0 is strict"), qPrintable(strLine));
        } else {
            QCOMPARE(strLine, QString("The reverse-path filter of eth0 is %1.").arg(effective == 0 ? "off" : "loose"));
        }
        QCOMPARE(rpFilterFacts(info).value("adapters").toObject().value("eth0").toObject().value("effective").toInt(),
            effective);
    }

    // The repairs as root (or, as here, below another system root): each
    // plan applied, the item normal afterwards, the keeping files written.
    void repairsApplyTheirPlans()
    {
        QVERIFY(addInterface("eth0"));
        writeSysctls("212992", "16777216", "1000");
        QVERIFY(write("proc/sys/net/ipv4/conf/all/rp_filter", "1\n"));
        QVERIFY(write("sys/module/usbcore/parameters/usbfs_memory_mb", "16\n"));
        QVERIFY(write("sys/bus/usb/devices/usb2/speed", "5000\n"));

        CRxBufferDetectInfo rx;
        RxBuffers::check(rx, links());
        QCOMPARE(rx.bNormal, 0);
        QCOMPARE(RxBuffers::repair(rx, asUser(), links()).status, VxRepairStatus::Done);
        QCOMPARE(rx.bNormal, 1);
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/core/netdev_max_backlog"), QByteArray("10000\n"));

        CRpFilterDetectInfo rp;
        RpFilter::check(rp, links());
        QCOMPARE(rp.bNormal, 0);
        QCOMPARE(RpFilter::repair(rp, asUser(), links()).status, VxRepairStatus::Done);
        QCOMPARE(rp.bNormal, 1);
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/ipv4/conf/all/rp_filter"), QByteArray("1\n"));
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/ipv4/conf/eth0/rp_filter"), QByteArray("2\n"));

        CUsbBufferDetectInfo usb;
        UsbBuffers::check(usb);
        QCOMPARE(UsbBuffers::repair(usb, asUser()).status, VxRepairStatus::Done);
        QCOMPARE(usb.nUsbfsMemoryMb, 1000);
        QCOMPARE(usb.bNormal, 1);

        const QByteArray dropIn = TuningTest::read(root(), "etc/sysctl.d/90-vetrix-tool.conf");
        QVERIFY(dropIn.contains("net.core.rmem_max = 16777216\n"));
        QVERIFY(!dropIn.contains("net.core.rmem_default")); // was at the threshold already
        QVERIFY(dropIn.contains("net.core.netdev_max_backlog = 10000\n"));
        QVERIFY(dropIn.contains("net.ipv4.conf.eth0.rp_filter = 2\n"));
        QVERIFY(TuningTest::read(root(), "etc/tmpfiles.d/vetrix-tool-usbfs.conf").contains("usbfs_memory_mb - - - - 1000\n"));
    }

    // A change that fails is reported and left as it was; the plan's other
    // changes are made (each one journaled, so it can be undone).
    void repairReportsTheFailedChange()
    {
        writeSysctls("212992", "212992", "1000");
        QVERIFY(QFile::remove(root() + "/proc/sys/net/core/rmem_default"));
        CRxBufferDetectInfo rx;
        RxBuffers::check(rx, links());
        QCOMPARE(TuningApply::applyPlan(RxBuffers::plan(rx), asUser(), links()).status, VxRepairStatus::Done);
        QVERIFY(write("proc/sys/net/core/rmem_max", "212992\n"));
        RxBuffers::check(rx, links());
        VxPlan plan = RxBuffers::plan(rx);
        plan.prepend(VxChange {8192, VxChangeKind::Sysctl, "net.core.rmem_default", "212992", "16777216"});
        const VxRepairOutcome outcome = TuningApply::applyPlan(plan, asUser(), links());
        QCOMPARE(outcome.status, VxRepairStatus::Failed);
        QVERIFY(outcome.strReason.contains("rmem_default"));
        QVERIFY(!QFile::exists(root() + "/proc/sys/net/core/rmem_default"));
        QCOMPARE(TuningTest::read(root(), "proc/sys/net/core/rmem_max"), QByteArray("16777216\n"));
    }

    void unreadableFilterIsNotStrict()
    {
        QVERIFY(addInterface("eth0"));
        QVERIFY(QFile::remove(root() + "/proc/sys/net/ipv4/conf/eth0/rp_filter"));
        CRpFilterDetectInfo info;
        RpFilter::check(info, links());
        QCOMPARE(info.nAll, -1);
        QCOMPARE(info.adapters.value("eth0"), -1);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(rpFilterLines(info),
            QStringList(
                {"net.ipv4.conf.all.rp_filter cannot be read.", "The reverse-path filter of eth0 cannot be read."}));
    }
};

QTEST_GUILESS_MAIN(TstTuningChecks)
#include "tst_tuningchecks.moc"
