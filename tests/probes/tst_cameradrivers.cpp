#include "cameradrivers.h"
#include "cdetectinfo.h"
#include "vxrepair.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The driver checks and installers over fixture system roots.
class TstCameraDrivers : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    const QByteArray m_path = qgetenv("PATH");
    QString root() const { return m_pRoot->path(); }
    void write(const QString &strRel, const QByteArray &data)
    {
        QVERIFY(QDir().mkpath(QFileInfo(root() + strRel).absolutePath()));
        QFile file(root() + strRel);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
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
        qputenv("PATH", m_path);
        delete m_pRoot;
    }

    // A device node only its owner may open (mode 0600, another user's):
    // the driver is installed all the same. As root the check runs in a
    // child that has become "nobody"; otherwise the node is the test user's
    // own with no permissions at all.
    void gigeNodeOfAnotherUser()
    {
        write("/dev/QelGEVFilter", "");
        const QByteArray node = QFile::encodeName(root() + "/dev/QelGEVFilter");
        int nNormal = -1;
        if (::geteuid() == 0) {
            QVERIFY(::chmod(node.constData(), 0600) == 0);
            QVERIFY(::chmod(QFile::encodeName(root()).constData(), 0755) == 0);
            const pid_t pid = ::fork();
            QVERIFY(pid >= 0);
            if (pid == 0) {
                if (::setresgid(65534, 65534, 65534) != 0 || ::setresuid(65534, 65534, 65534) != 0)
                    ::_exit(3);
                if (::access(node.constData(), R_OK) == 0)
                    ::_exit(4); // the node must be unreadable here
                CDetectInfo info;
                info.bNormal = 0;
                CameraDrivers::gigeCheck(info);
                ::_exit(info.bNormal == 1 ? 1 : 0);
            }
            int nStatus = 0;
            QCOMPARE(::waitpid(pid, &nStatus, 0), pid);
            QVERIFY(WIFEXITED(nStatus));
            QVERIFY2(WEXITSTATUS(nStatus) < 2, "the child could not become nobody or could still read the node");
            nNormal = WEXITSTATUS(nStatus);
        } else {
            QVERIFY(::chmod(node.constData(), 0) == 0);
            CDetectInfo info;
            info.bNormal = 0;
            CameraDrivers::gigeCheck(info);
            nNormal = info.bNormal;
        }
        QCOMPARE(nNormal, 1);
        // A node that is not there is still not installed.
        QVERIFY(QFile::remove(root() + "/dev/QelGEVFilter"));
        CDetectInfo info;
        CameraDrivers::gigeCheck(info);
        QCOMPARE(info.bNormal, 0);
    }

    // As a normal user the installer starts through pkexec and the helper;
    // when either is missing or the rights are refused, nothing started and
    // the install says so with the reason.
    void installerNotStartedAsUser_data()
    {
        QTest::addColumn<bool>("script");
        QTest::addColumn<QByteArray>("pkexec"); // "" for none in PATH
        QTest::addColumn<bool>("helper");
        QTest::addColumn<bool>("started");
        QTest::addColumn<int>("status");
        QTest::newRow("no install.sh") << false << QByteArray("exec \"$@\"") << true << false
                                       << int(VxRepairStatus::NotFound);
        QTest::newRow("no pkexec") << true << QByteArray() << true << false << int(VxRepairStatus::HelperMissing);
        QTest::newRow("no helper") << true << QByteArray("exec \"$@\"") << false << false
                                   << int(VxRepairStatus::HelperMissing);
        QTest::newRow("rights refused") << true << QByteArray("exit 126") << true << false
                                        << int(VxRepairStatus::NotAuthorized);
        QTest::newRow("helper refused") << true << QByteArray("exec \"$@\"") << true << false
                                        << int(VxRepairStatus::Refused);
        QTest::newRow("started") << true << QByteArray("exec \"$@\"") << true << true << int(VxRepairStatus::Done);
    }
    void installerNotStartedAsUser()
    {
        QFETCH(bool, script);
        QFETCH(QByteArray, pkexec);
        QFETCH(bool, helper);
        QFETCH(bool, started);
        QFETCH(int, status);
        if (script)
            write("/opt/Orvex/Drivers/GigE/install.sh", "exit 0\n");
        else
            QVERIFY(QDir().mkpath(root() + "/opt/Orvex/Drivers/GigE"));
        QVERIFY(QDir().mkpath(root() + "/bin"));
        const auto executable = [this](const QString &strRel, const QByteArray &body) {
            write(strRel, "#!/bin/sh\n" + body + "\n");
            QFile::setPermissions(root() + strRel, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        };
        if (!pkexec.isEmpty())
            executable("/bin/pkexec", pkexec);
        // The helper stands in for vetrix-helper: it notes its arguments and
        // answers as the real one would.
        const QByteArray helperExit = QTest::currentDataTag() == QByteArray("helper refused") ? "2" : "0";
        if (helper)
            executable("/fake-helper", "echo \"$@\" > '" + QFile::encodeName(root()) + "/helper-args'\nexit " + helperExit);
        qputenv("PATH", QFile::encodeName(root() + "/bin"));
        const VxPrivileges asUser(root() + "/fake-helper", VxPrivileges::Rights::User);
        const VxRepairOutcome outcome = CameraDrivers::installGige(asUser);
        QCOMPARE(outcome.ok(), started);
        QCOMPARE(int(outcome.status), status);
        if (started) {
            QFile args(root() + "/helper-args");
            QVERIFY(args.open(QIODevice::ReadOnly));
            QCOMPARE(args.readAll().trimmed(), QByteArray("run-installer gige"));
        }
    }

    void paths()
    {
        QCOMPARE(CameraDrivers::gigeInstallScript(), root() + "/opt/Orvex/Drivers/GigE/install.sh");
        QCOMPARE(CameraDrivers::usb3InstallScript(), root() + "/opt/Orvex/Drivers/Usb3.0/install.sh");
    }

    void gige()
    {
        CDetectInfo info;
        CameraDrivers::gigeCheck(info);
        QCOMPARE(info.bNormal, 0);
        write("/dev/QelGEVFilter", ""); // stands for the driver's device node
        CameraDrivers::gigeCheck(info);
        QCOMPARE(info.bNormal, 1);
    }

    void usb3_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("normal");
        QTest::newRow("none") << "" << QByteArray() << 0;
        QTest::newRow("in /etc") << "/etc/udev/rules.d/99-orvex-u3v.rules" << QByteArray("SUBSYSTEM==\"usb\"\n") << 1;
        QTest::newRow("in /usr/lib") << "/usr/lib/udev/rules.d/99-orvex-u3v.rules" << QByteArray("x") << 1;
        QTest::newRow("empty file") << "/etc/udev/rules.d/99-orvex-u3v.rules" << QByteArray() << 0;
        QTest::newRow("only in the SDK folder") << "/opt/Orvex/Drivers/Usb3.0/99-orvex-u3v.rules" << QByteArray("x") << 0;
        QTest::newRow("other name") << "/etc/udev/rules.d/98-other.rules" << QByteArray("x") << 0;
    }
    void usb3()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(int, normal);
        if (!file.isEmpty())
            write(file, content);
        CDetectInfo info;
        info.bNormal = 1 - normal;
        CameraDrivers::usb3Check(info);
        QCOMPARE(info.bNormal, normal);
    }

    void installersMissing()
    {
        QVERIFY(QDir().mkpath(root() + "/opt/Orvex"));
        QVERIFY(!CameraDrivers::installGige());
        QVERIFY(!CameraDrivers::installUsb3());
        QVERIFY(QDir().mkpath(root() + "/opt/Orvex/Drivers/GigE/install.sh")); // a folder, not a file
        QVERIFY(!CameraDrivers::installGige());
    }

    void installerStarts()
    {
        if (::geteuid() != 0)
            QSKIP("without root the installer goes through pkexec, which needs a desktop session");
        const QString strMarker = root() + "/ran";
        write("/opt/Orvex/Drivers/Usb3.0/install.sh", "echo \"$PWD\" > '" + strMarker.toLocal8Bit() + "'\n");
        QVERIFY(CameraDrivers::installUsb3());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(strMarker).size() > 0, 5000);
        QFile marker(strMarker);
        QVERIFY(marker.open(QIODevice::ReadOnly));
        QCOMPARE(marker.readAll().trimmed(), (root() + "/opt/Orvex/Drivers/Usb3.0").toLocal8Bit());
    }
};

QTEST_GUILESS_MAIN(TstCameraDrivers)
#include "tst_cameradrivers.moc"
