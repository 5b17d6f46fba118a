#include "changeverbs.h"
#include "fixturesnapshot.h"
#include "helperverbs.h"
#include "netadapters.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// vetrix-helper's apply and undo verbs refuse every argument they do not
// expect before touching anything (exit status 2), and the program's own
// helper makes and undoes a journaled change.
class TstChangeVerbs : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QString root() const { return m_pRoot->path(); }
    static QString opt() { return "20261124T142000Z-1a2b3c"; }
    static QString sha(char c) { return "sha256:" + QString(64, QChar(c)); }
    void write(const QString &strRel, const QByteArray &data)
    {
        QVERIFY(QDir().mkpath(QFileInfo(root() + strRel).absolutePath()));
        QFile file(root() + strRel);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }
    QByteArray read(const QString &strRel)
    {
        QFile file(root() + strRel);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
    QStringList rooted(QStringList listArgs) const { return listArgs.replaceInStrings("@", root()); }
    // The interfaces the verbs check their arguments against.
    static NetAdapters::LinkSource links()
    {
        NetAdapters::LinkSource source;
        source.links = [] { return QList<CLinkFacts> {{"lo", 1, 65536, 0, true}, {"eth0", 2, 1500, 9000, true}}; };
        return source;
    }
    int runHelperExecutable(const QStringList &listArgs)
    {
        QProcess process;
        process.start(QStringLiteral(VX_BIN_DIR) + "/vetrix-helper", listArgs);
        if (!process.waitForFinished(30000))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        write("/etc/environment", "LANG=C\n");
        write("/usr/lib/libLuCameraControl.so", "x");
        write("/usr/lib/libc.so", "x");
        write("/etc/libLuCameraControl.so", "x");
        QVERIFY(QDir().mkpath(root() + "/var/lib"));
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
    }

    void refused_data()
    {
        QTest::addColumn<QStringList>("args");
        const QStringList env = {"2", "env", "PATH", "", "/x"};
        QTest::addRow("apply: no change") << QStringList {"apply", opt()};
        QTest::addRow("apply: no id") << QStringList {"apply"} + env;
        QTest::addRow("apply: a field missing") << QStringList {"apply", opt(), "2", "env", "PATH", ""};
        QTest::addRow("apply: a field too many") << QStringList {"apply", opt()} + env + QStringList {"x"};
        QTest::addRow("apply: id with a path") << QStringList {"apply", "../../etc/passwd"} + env;
        QTest::addRow("apply: id in capitals") << QStringList {"apply", "20261124T142000Z-1A2B3C"} + env;
        QTest::addRow("apply: item not a number") << QStringList {"apply", opt(), "x2", "env", "PATH", "", "/x"};
        QTest::addRow("apply: item negative") << QStringList {"apply", opt(), "-2", "env", "PATH", "", "/x"};
        QTest::addRow("apply: item with a sign") << QStringList {"apply", opt(), "+2", "env", "PATH", "", "/x"};
        QTest::addRow("apply: unknown kind") << QStringList {"apply", opt(), "2", "chmod", "PATH", "", "/x"};
        QTest::addRow("apply: kind of another item") << QStringList {"apply", opt(), "1", "env", "PATH", "", "/x"};
        QTest::addRow("apply: old and new the same") << QStringList {"apply", opt(), "2", "env", "PATH", "/x", "/x"};
        QTest::addRow("env: foreign variable")
            << QStringList {"apply", opt(), "2", "env", "LD_PRELOAD", "", "/tmp/x.so"};
        QTest::addRow("env: line break in value")
            << QStringList {"apply", opt(), "2", "env", "PATH", "", "/x\nLD_PRELOAD=/y"};
        QTest::addRow("env: quote in old value") << QStringList {"apply", opt(), "2", "env", "PATH", "\"", "/x"};
        QTest::addRow("env: NUL in value")
            << QStringList {"apply", opt(), "2", "env", "PATH", "", QString("/x") + QChar(0)};
        QTest::addRow("env: value too long")
            << QStringList {"apply", opt(), "2", "env", "PATH", "", QString(5000, 'x')};
        QTest::addRow("mtu: not a number") << QStringList {"apply", opt(), "256", "mtu", "eth0", "1500", "9k"};
        QTest::addRow("mtu: below 68") << QStringList {"apply", opt(), "256", "mtu", "eth0", "1500", "67"};
        QTest::addRow("mtu: above the driver's maximum")
            << QStringList {"apply", opt(), "256", "mtu", "eth0", "1500", "9001"};
        QTest::addRow("mtu: old value absent") << QStringList {"apply", opt(), "256", "mtu", "eth0", "", "9000"};
        QTest::addRow("mtu: no such interface") << QStringList {"apply", opt(), "256", "mtu", "eth9", "1500", "9000"};
        QTest::addRow("mtu: path as interface")
            << QStringList {"apply", opt(), "256", "mtu", "../eth0", "1500", "9000"};
        QTest::addRow("sdk-file: system file")
            << QStringList {"apply", opt(), "1", "sdk-file", "/etc/passwd", sha('a'), ""};
        QTest::addRow("sdk-file: other library")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/libc.so", sha('a'), ""};
        QTest::addRow("sdk-file: outside the folders")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/etc/libLuCameraControl.so", sha('a'), ""};
        QTest::addRow("sdk-file: escape with ..")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/../../etc/libLuCameraControl.so", sha('a'), ""};
        QTest::addRow("sdk-file: relative path")
            << QStringList {"apply", opt(), "1", "sdk-file", "usr/lib/libLuCameraControl.so", sha('a'), ""};
        QTest::addRow("sdk-file: not an identity")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/libLuCameraControl.so", "present", ""};
        QTest::addRow("sdk-file: short hash")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/libLuCameraControl.so", "sha256:abc", ""};
        QTest::addRow("sdk-file: replaced, not removed")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/libLuCameraControl.so", sha('a'), sha('b')};
        QTest::addRow("sysctl: foreign key")
            << QStringList {"apply", opt(), "8192", "sysctl", "kernel.core_pattern", "core", "|/tmp/x"};
        QTest::addRow("sysctl: buffer not a number")
            << QStringList {"apply", opt(), "8192", "sysctl", "net.core.rmem_max", "212992", "16M"};
        QTest::addRow("sysctl: buffer above range")
            << QStringList {"apply", opt(), "8192", "sysctl", "net.core.rmem_max", "212992", "4294967296"};
        QTest::addRow("sysctl: rp_filter 3")
            << QStringList {"apply", opt(), "16384", "sysctl", "net.ipv4.conf.all.rp_filter", "1", "3"};
        QTest::addRow("sysctl: rp_filter of no interface")
            << QStringList {"apply", opt(), "16384", "sysctl", "net.ipv4.conf.eth9.rp_filter", "1", "2"};
        QTest::addRow("sysctl: rp_filter with a path")
            << QStringList {"apply", opt(), "16384", "sysctl", "net.ipv4.conf.../all.rp_filter", "1", "2"};
        QTest::addRow("sysctl: from the SDK files item")
            << QStringList {"apply", opt(), "1", "sysctl", "net.core.rmem_max", "212992", "16777216"};
        QTest::addRow("usbfs: other parameter")
            << QStringList {"apply", opt(), "4096", "usbfs-memory", "autosuspend", "2", "-1"};
        QTest::addRow("usbfs: above range")
            << QStringList {"apply", opt(), "4096", "usbfs-memory", "usbfs_memory_mb", "16", "99999999999"};
        QTest::addRow("rx-ring: zero") << QStringList {"apply", opt(), "8192", "rx-ring", "eth0", "256", "0"};
        QTest::addRow("rx-ring: no such interface")
            << QStringList {"apply", opt(), "8192", "rx-ring", "eth9", "256", "4096"};
        QTest::addRow("apply: one good, one bad")
            << QStringList {"apply", opt()} + env + QStringList {"2", "env", "HOME", "", "/y"};
        QTest::addRow("undo: no id") << QStringList {"undo"};
        QTest::addRow("undo: bad id") << QStringList {"undo", "last"};
        QTest::addRow("undo: bad undone id") << QStringList {"undo", opt(), "*"};
        QTest::addRow("undo: itself") << QStringList {"undo", opt(), opt()};
        QTest::addRow("undo: too many") << QStringList {
            "undo", opt(), "20261124T142001Z-000000", "20261124T142002Z-000000"};
    }
    void refused()
    {
        QFETCH(QStringList, args);
        args = rooted(args);
        const QStringList listBefore = fixtureSnapshot(root());
        QString strReason;
        QVERIFY(!HelperVerbs::validate(args, &strReason, links()));
        QVERIFY(!strReason.isEmpty());
        QCOMPARE(HelperVerbs::run(args, links()), int(HelperVerbs::ExitRefused));
        // Nothing was touched, not even the journal.
        QCOMPARE(fixtureSnapshot(root()), listBefore);
    }

    void accepted_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addRow("env") << QStringList {
            "apply", opt(), "2", "env", "PATH", "", "/opt/Orvex/Runtime/Linux64_x64:/usr/bin"};
        QTest::addRow("env unset") << QStringList {
            "apply", opt(), "2", "env", "LUCAM_GIGE_DEBUG_HEARTBEAT", "60000", ""};
        QTest::addRow("mtu") << QStringList {"apply", opt(), "256", "mtu", "eth0", "1500", "9000"};
        QTest::addRow("sdk-file removed")
            << QStringList {"apply", opt(), "1", "sdk-file", "@/usr/lib/libLuCameraControl.so", sha('a'), ""};
        QTest::addRow("sdk-file put back") << QStringList {
            "apply", opt(), "1", "sdk-file", "@/usr/lib/libLuCameraControl.so", "", "link:libLuCameraControl.so.1"};
        QTest::addRow("sysctl buffer") << QStringList {
            "apply", opt(), "8192", "sysctl", "net.core.rmem_max", "212992", "16777216"};
        QTest::addRow("sysctl rp_filter")
            << QStringList {"apply", opt(), "16384", "sysctl", "net.ipv4.conf.eth0.rp_filter", "1", "2"};
        QTest::addRow("usbfs") << QStringList {"apply", opt(), "4096", "usbfs-memory", "usbfs_memory_mb", "16", "1000"};
        QTest::addRow("rx-ring") << QStringList {"apply", opt(), "8192", "rx-ring", "eth0", "256", "4096"};
        QTest::addRow("undo the last") << QStringList {"undo", opt()};
        QTest::addRow("undo a chosen one") << QStringList {"undo", opt(), "20261124T100000Z-000000"};
    }
    void accepted()
    {
        QFETCH(QStringList, args);
        QString strReason;
        QVERIFY2(HelperVerbs::validate(rooted(args), &strReason, links()), qPrintable(strReason));
    }

    // Ids are checked against the journal: one already used, or an undo of
    // one the journal does not have, is refused as well.
    void idsCheckedAgainstTheJournal()
    {
        const QStringList listApply = {"apply", opt(), "2", "env", "LUCAM_GIGE_DEBUG_HEARTBEAT", "", "60000"};
        QCOMPARE(HelperVerbs::run(listApply, links()), int(HelperVerbs::ExitDone));
        const QByteArray environment = read("/etc/environment");
        QCOMPARE(environment, QByteArray("LANG=C\nLUCAM_GIGE_DEBUG_HEARTBEAT=\"60000\"\n"));
        const QByteArray journal = read("/var/lib/vetrix-tool/journal.jsonl");
        QCOMPARE(journal.count('\n'), 2);
        QCOMPARE(
            HelperVerbs::run({"apply", opt(), "2", "env", "PATH", "", "/x"}, links()), int(HelperVerbs::ExitRefused));
        QCOMPARE(HelperVerbs::run({"undo", opt()}, links()), int(HelperVerbs::ExitRefused));
        QCOMPARE(HelperVerbs::run({"undo", "20261124T142001Z-000000", "20261124T100000Z-000000"}, links()),
            int(HelperVerbs::ExitRefused));
        QCOMPARE(read("/etc/environment"), environment);
        QCOMPARE(read("/var/lib/vetrix-tool/journal.jsonl"), journal);
    }

    void executableRefusesAndChangesNothing()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        QCOMPARE(runHelperExecutable({"apply", opt(), "2", "env", "LD_PRELOAD", "", "/tmp/x.so"}),
            int(HelperVerbs::ExitRefused));
        QCOMPARE(runHelperExecutable({"undo", "20261124T142001Z-000000", opt()}), int(HelperVerbs::ExitRefused));
        QCOMPARE(fixtureSnapshot(root()), listBefore);
    }

    void executableAppliesAndUndoes()
    {
        const QStringList listBefore = fixtureSnapshot(root(), {"/var/lib/vetrix-tool"});
        QCOMPARE(runHelperExecutable({"apply", opt(), "2", "env", "LUCAM_GIGE_DEBUG_HEARTBEAT", "", "60000", "2", "env",
                     "PATH", "", "/opt/Orvex/Runtime/Linux64_x64:"}),
            int(HelperVerbs::ExitDone));
        QCOMPARE(read("/etc/environment"),
            QByteArray("LANG=C\nLUCAM_GIGE_DEBUG_HEARTBEAT=\"60000\"\nPATH=\"/opt/Orvex/Runtime/Linux64_x64:\"\n"));
        QCOMPARE(runHelperExecutable({"undo", "20261124T142001Z-000000"}), int(HelperVerbs::ExitDone));
        QCOMPARE(read("/etc/environment"), QByteArray("LANG=C\n"));
        QCOMPARE(fixtureSnapshot(root(), {"/var/lib/vetrix-tool"}), listBefore);
        QCOMPARE(read("/var/lib/vetrix-tool/journal.jsonl").count('\n'), 8);
    }
};

QTEST_GUILESS_MAIN(TstChangeVerbs)
#include "tst_changeverbs.moc"
