#include "ethtoolrings.h"
#include "netadapters.h"
#include "netnstestutil.h"
#include "rpfilter.h"
#include "rxbuffers.h"
#include "tuningapply.h"
#include "tuningtestutil.h"

#include <QProcess>
#include <QtTest>

#include <cerrno>
#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

// Integration test: receive rings over ethtool netlink and sysctl writes for
// real, in a network namespace of its own holding a veth pair. main() forks:
// the child leaves the host's network and mount namespaces (its net.*
// sysctls and a private /etc/sysctl.d and /etc/tmpfiles.d are its own) and
// runs the tests; the parent only waits, so the test process and the host
// keep their values. Needs root (CI runs as root).
//
// A failure of the set-up itself (namespace, mounts, veth pair) is reported
// with "SET-UP:" in front, so it cannot be mistaken for a failure of the
// code under test.
class TstTuningNetnsIntegration : public QObject
{
    Q_OBJECT

public:
    // Set by main()'s child before the tests run.
    static QString s_strSetupError;
    static QString s_strHostAdapter;
    static CRxRing s_hostRing;

private:
    QString m_strRingDevice; // an interface of the namespace with a settable ring
    bool m_bNetdevsim = false;

    static QString kernel() { return QString::fromLatin1(proc("/proc/sys/kernel/osrelease")); }
    // A netdevsim device in this namespace, where the kernel has the
    // driver; its interface name, else empty.
    QString netdevsimInterface()
    {
        QFile newDevice("/sys/bus/netdevsim/new_device");
        if (!newDevice.open(QIODevice::WriteOnly) || newDevice.write("4711 1\n") < 0)
            return QString();
        newDevice.close();
        m_bNetdevsim = true;
        // The interface appears a moment after the device.
        for (int i = 0; i < 100; ++i) {
            const QString strName = QDir("/sys/bus/netdevsim/devices/netdevsim4711/net")
                                        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                                        .value(0);
            if (!strName.isEmpty())
                return strName;
            QTest::qWait(100);
        }
        return QString();
    }

    static QByteArray ip(const QStringList &listArgs)
    {
        QProcess process;
        process.start("ip", listArgs);
        if (!process.waitForFinished(10000) || process.exitCode() != 0)
            return QByteArray("<failed: ") + process.readAllStandardError() + ">";
        return process.readAllStandardOutput();
    }
    static QByteArray proc(const QString &strPath)
    {
        QFile file(strPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray("<missing>");
    }
    static VxChange change(const char *pKind, const QString &strTarget, const QString &strNew)
    {
        VxChange change;
        change.strKind = pKind;
        change.strTarget = strTarget;
        change.strNew = strNew;
        return change;
    }

private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to create network and mount namespaces and veth interfaces");
        if (!s_strSetupError.isEmpty())
            QFAIL(qPrintable("SET-UP: " + s_strSetupError));
        const QByteArray added = ip({"link", "add", "vxa", "type", "veth", "peer", "name", "vxb"});
        if (added.contains("Unknown device type"))
            QSKIP("SET-UP: this kernel offers no veth interfaces");
        QVERIFY2(added.isEmpty(), "SET-UP: " + added);
        QVERIFY2(ip({"link", "set", "vxa", "up"}).isEmpty(), "SET-UP: ip link set vxa up");
        QVERIFY2(ip({"link", "set", "vxb", "up"}).isEmpty(), "SET-UP: ip link set vxb up");
        QVERIFY2(QFileInfo::exists("/proc/sys/net/ipv4/conf/vxa/rp_filter"), "SET-UP: no rp_filter for vxa");
    }

    // The request reaches the driver: veth answers it or, on kernels whose
    // veth has no ring operations, says so (a malformed request would be
    // refused as invalid instead).
    void vethRingRequestReachesTheDriver()
    {
        CRxRing ring;
        QString strError;
        if (EthtoolRings::read("vxa", &ring, &strError)) {
            QVERIFY(ring.uRx <= ring.uRxMax);
            m_strRingDevice = "vxa";
        } else {
            QCOMPARE(strError, QString::fromLocal8Bit(std::strerror(EOPNOTSUPP)));
            QVERIFY(!EthtoolRings::setRx("vxa", 256, &strError));
            QCOMPARE(strError, QString::fromLocal8Bit(std::strerror(EOPNOTSUPP)));
            m_strRingDevice = netdevsimInterface();
        }
    }

    void unknownInterfaceHasNoRing()
    {
        CRxRing ring;
        QString strError;
        QVERIFY(!EthtoolRings::read("vxnone", &ring, &strError));
        QCOMPARE(strError, QString::fromLocal8Bit(std::strerror(ENODEV)));
        QVERIFY(!EthtoolRings::read("../x", &ring, &strError));
    }

    // Read only, before the child left the host's network: a real driver's
    // ring (the first physical adapter that reports one).
    void readsAPhysicalAdaptersRing()
    {
        if (s_strHostAdapter.isEmpty())
            QSKIP("no physical adapter of this machine reports a receive ring");
        qInfo("%s: rx %u of at most %u", qPrintable(s_strHostAdapter), s_hostRing.uRx, s_hostRing.uRxMax);
        QVERIFY(s_hostRing.uRxMax > 0);
        QVERIFY(s_hostRing.uRx > 0 && s_hostRing.uRx <= s_hostRing.uRxMax);
    }

    void setsTheRingAndSetsItBack()
    {
        if (m_strRingDevice.isEmpty())
            QSKIP(qPrintable("SET-UP: no interface in the namespace has a settable ring: veth on kernel " + kernel()
                + " reports none and netdevsim is not available"));
        const QString strDevice = m_strRingDevice;
        CRxRing before;
        QString strError;
        QVERIFY2(EthtoolRings::read(strDevice, &before, &strError), qPrintable(strError));
        QVERIFY(before.uRxMax > 1);
        const quint32 uNew = before.uRx == before.uRxMax ? before.uRxMax / 2 : before.uRxMax;
        QVERIFY2(applyTuningChange(change(VxChangeKind::RxRing, strDevice, QString::number(uNew)), &strError),
            qPrintable(strError));
        QString strValue;
        QVERIFY(readTuningValue(change(VxChangeKind::RxRing, strDevice, QString()), &strValue));
        QCOMPARE(strValue, QString::number(uNew));
        // Above the driver's maximum: refused by the kernel, value kept.
        QVERIFY(
            !applyTuningChange(change(VxChangeKind::RxRing, strDevice, QString::number(before.uRxMax + 1)), &strError));
        QVERIFY(strError.contains(strDevice));
        QVERIFY(readTuningValue(change(VxChangeKind::RxRing, strDevice, QString()), &strValue));
        QCOMPARE(strValue, QString::number(uNew));
        QVERIFY(applyTuningChange(change(VxChangeKind::RxRing, strDevice, QString::number(before.uRx)), &strError));
        QVERIFY(readTuningValue(change(VxChangeKind::RxRing, strDevice, QString()), &strValue));
        QCOMPARE(strValue, QString::number(before.uRx));
    }

    void writesTheNamespacesRpFilter()
    {
        const QByteArray before = proc("/proc/sys/net/ipv4/conf/vxa/rp_filter");
        QVERIFY2(before == "0" || before == "1", "SET-UP: unexpected rp_filter " + before);
        const QString strTarget = "net.ipv4.conf.vxa.rp_filter";
        QString strError;
        QVERIFY2(applyTuningChange(change(VxChangeKind::Sysctl, strTarget, "2"), &strError), qPrintable(strError));
        QCOMPARE(proc("/proc/sys/net/ipv4/conf/vxa/rp_filter"), QByteArray("2"));
        QVERIFY(
            TuningTest::read("/", "etc/sysctl.d/90-vetrix-tool.conf").endsWith("net.ipv4.conf.vxa.rp_filter = 2\n"));
        QVERIFY(applyTuningChange(change(VxChangeKind::Sysctl, strTarget, QString::fromLatin1(before)), &strError));
        QCOMPARE(proc("/proc/sys/net/ipv4/conf/vxa/rp_filter"), before);
        QVERIFY(!QFileInfo::exists("/etc/sysctl.d/90-vetrix-tool.conf"));
    }

    void aValueTheKernelRefusesChangesNothing()
    {
        // Outside the first network namespace net.core.rmem_max is read-only.
        const QByteArray before = proc("/proc/sys/net/core/rmem_max");
        QString strError;
        QVERIFY(!applyTuningChange(change(VxChangeKind::Sysctl, "net.core.rmem_max", "16777216"), &strError));
        QVERIFY(strError.contains("rmem_max"));
        QCOMPARE(proc("/proc/sys/net/core/rmem_max"), before);
        QVERIFY(!QFileInfo::exists("/etc/sysctl.d/90-vetrix-tool.conf"));
    }

    // The whole item on the running (namespaced) system: strict filtering
    // found, planned, repaired as root through the plan, and gone.
    void reversePathItemRepairsStrictFiltering()
    {
        const NetAdapters::LinkSource links = NetnsTest::vethLinks({"vxa", "vxb"});
        // A new namespace copies the host's "all"; this one's is set here.
        for (const char *pPath : {"/proc/sys/net/ipv4/conf/all/rp_filter", "/proc/sys/net/ipv4/conf/vxa/rp_filter"}) {
            QFile file(pPath);
            QVERIFY2(file.open(QIODevice::WriteOnly) && file.write("0\n") == 2, "SET-UP: cannot clear rp_filter");
        }
        {
            QFile file("/proc/sys/net/ipv4/conf/vxb/rp_filter");
            QVERIFY2(file.open(QIODevice::WriteOnly) && file.write("1\n") == 2, "SET-UP: cannot make vxb strict");
        }
        CRpFilterDetectInfo info;
        RpFilter::check(info, links);
        QCOMPARE(info.adapters.value("vxa"), 0);
        QCOMPARE(info.adapters.value("vxb"), 1);
        QCOMPARE(info.bNormal, 0);
        const VxPlan plan = RpFilter::plan(info);
        QCOMPARE(plan.size(), 1);
        QCOMPARE(plan.first().strTarget, QString("net.ipv4.conf.vxb.rp_filter"));
        QCOMPARE(RpFilter::repair(info, VxPrivileges(QString(), VxPrivileges::Rights::Root), links).status,
            VxRepairStatus::Done);
        QCOMPARE(proc("/proc/sys/net/ipv4/conf/vxb/rp_filter"), QByteArray("2"));
        QCOMPARE(proc("/proc/sys/net/ipv4/conf/vxa/rp_filter"), QByteArray("0"));
        QCOMPARE(info.bNormal, 1);
        QVERIFY(TuningTest::read("/", "etc/sysctl.d/90-vetrix-tool.conf")
                    .contains("# net.ipv4.conf.vxb.rp_filter before Vetrix Tool: 1\n"
                              "net.ipv4.conf.vxb.rp_filter = 2\n"));
    }

    // The receive buffer item on the running system: this namespace's
    // interfaces, each ring read from the kernel (or its reason).
    void receiveBufferItemReadsTheNamespace()
    {
        CRxBufferDetectInfo info;
        RxBuffers::check(info, NetnsTest::vethLinks({"vxa"}));
        QVERIFY(info.bRingsReadable);
        QCOMPARE(info.adapters.size(), 1);
        const CRxAdapter adapter = info.adapters.first();
        QCOMPARE(adapter.strName, QString("vxa"));
        if (m_strRingDevice == "vxa") {
            QVERIFY(adapter.nRxMax > 0);
        } else {
            QCOMPARE(adapter.nRx, -1);
            QCOMPARE(adapter.strReason, QString::fromLocal8Bit(std::strerror(EOPNOTSUPP)));
            QVERIFY(rxBufferLines(info).contains("Receive ring of vxa: not available (" + adapter.strReason + ")."));
        }
        // Read-only in this namespace: the values are the host's.
        QVERIFY(info.sysctls.value("net.core.rmem_max") > 0);
    }

    void cleanupTestCase()
    {
        ip({"link", "del", "vxa"});
        if (m_bNetdevsim) {
            QFile deleteDevice("/sys/bus/netdevsim/del_device");
            if (deleteDevice.open(QIODevice::WriteOnly))
                deleteDevice.write("4711\n");
        }
    }
};

QString TstTuningNetnsIntegration::s_strSetupError;
QString TstTuningNetnsIntegration::s_strHostAdapter;
CRxRing TstTuningNetnsIntegration::s_hostRing;

namespace {

// Reads (never sets) the ring of the host's first physical adapter that has one.
void readHostRing()
{
    const QDir net("/sys/class/net");
    for (const QString &strName : net.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name)) {
        if (!QFileInfo::exists(net.filePath(strName) + "/device"))
            continue;
        CRxRing ring;
        if (EthtoolRings::read(strName, &ring)) {
            TstTuningNetnsIntegration::s_strHostAdapter = strName;
            TstTuningNetnsIntegration::s_hostRing = ring;
            return;
        }
    }
}

// In the child: private network and mount namespaces, this namespace's
// sysfs, and empty folders over the two keeping folders.
QString enterNamespaces()
{
    if (::unshare(CLONE_NEWNET | CLONE_NEWNS) != 0)
        return QString("unshare(CLONE_NEWNET | CLONE_NEWNS): ") + std::strerror(errno);
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return QString("making / private: ") + std::strerror(errno);
    if (::mount("sysfs", "/sys", "sysfs", 0, nullptr) != 0)
        return QString("mounting this namespace's sysfs: ") + std::strerror(errno);
    for (const char *pFolder : {"/etc/sysctl.d", "/etc/tmpfiles.d"}) {
        if (::mount("tmpfs", pFolder, "tmpfs", 0, "mode=0755") != 0)
            return QString("tmpfs over ") + pFolder + ": " + std::strerror(errno);
    }
    return QString();
}

} // namespace

int main(int argc, char *argv[])
{
    if (::geteuid() != 0) {
        QCoreApplication app(argc, argv);
        TstTuningNetnsIntegration test;
        return QTest::qExec(&test, argc, argv);
    }
    const pid_t child = ::fork();
    if (child < 0)
        return 3;
    if (child == 0) {
        readHostRing();
        TstTuningNetnsIntegration::s_strSetupError = enterNamespaces();
        QCoreApplication app(argc, argv);
        TstTuningNetnsIntegration test;
        ::_exit(QTest::qExec(&test, argc, argv));
    }
    int nStatus = 0;
    while (::waitpid(child, &nStatus, 0) < 0 && errno == EINTR) { }
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 128 + WTERMSIG(nStatus);
}

#include "tst_tuning_netns_integration.moc"
