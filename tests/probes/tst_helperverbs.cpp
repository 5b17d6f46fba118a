#include "helperverbs.h"
#include "netadapters.h"
#include "vxrepair.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

// vetrix-helper refuses every argument it does not expect, before touching
// anything, and performs the valid ones; the client maps its exit status.
class TstHelperVerbs : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QString root() const { return m_pRoot->path(); }
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
        QVERIFY(QDir().mkpath(root() + "/usr/lib/sub/libLuUsb3vTL.so"));
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
    }

    void refused_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("no verb") << QStringList{};
        QTest::newRow("unknown verb") << QStringList{"chmod", "/etc/shadow"};
        QTest::newRow("set-env: no pair") << QStringList{"set-env"};
        QTest::newRow("set-env: odd count") << QStringList{"set-env", "PATH"};
        QTest::newRow("set-env: foreign variable") << QStringList{"set-env", "LD_PRELOAD", "/tmp/x.so"};
        QTest::newRow("set-env: Windows spelling of path") << QStringList{"set-env", "path", "/x"};
        QTest::newRow("set-env: newline in value") << QStringList{"set-env", "PATH", "/x\nLD_PRELOAD=/y"};
        QTest::newRow("set-env: carriage return in value") << QStringList{"set-env", "PATH", "/x\r"};
        QTest::newRow("set-env: NUL in value") << QStringList{"set-env", "PATH", QString("/x") + QChar(0)};
        QTest::newRow("set-env: quote in value") << QStringList{"set-env", "LUCAM_GIGE_DEBUG_HEARTBEAT", "1\""};
        QTest::newRow("set-env: second pair bad") << QStringList{"set-env", "PATH", "/x", "HOME", "/y"};
        QTest::newRow("set-mtu: missing MTU") << QStringList{"set-mtu", "eth0"};
        QTest::newRow("set-mtu: extra argument") << QStringList{"set-mtu", "eth0", "9000", "x"};
        QTest::newRow("set-mtu: not a number") << QStringList{"set-mtu", "eth0", "abc"};
        QTest::newRow("set-mtu: below 68") << QStringList{"set-mtu", "eth0", "67"};
        QTest::newRow("set-mtu: above 65535") << QStringList{"set-mtu", "eth0", "65536"};
        QTest::newRow("set-mtu: negative") << QStringList{"set-mtu", "eth0", "-1500"};
        QTest::newRow("set-mtu: above the driver's maximum") << QStringList{"set-mtu", "eth0", "9001"};
        QTest::newRow("set-mtu: no such interface") << QStringList{"set-mtu", "eth9", "1500"};
        QTest::newRow("set-mtu: path as interface") << QStringList{"set-mtu", "../eth0", "1500"};
        QTest::newRow("remove: no path") << QStringList{"remove-sdk-file"};
        QTest::newRow("remove: system file") << QStringList{"remove-sdk-file", "/etc/passwd"};
        QTest::newRow("remove: other library") << QStringList{"remove-sdk-file", "@/usr/lib/libc.so"};
        QTest::newRow("remove: SDK name outside the folders") << QStringList{"remove-sdk-file", "@/etc/libLuCameraControl.so"};
        QTest::newRow("remove: escape with ..") << QStringList{"remove-sdk-file", "@/usr/lib/../../etc/libLuCameraControl.so"};
        QTest::newRow("remove: relative path") << QStringList{"remove-sdk-file", "usr/lib/libLuCameraControl.so"};
        QTest::newRow("remove: a folder") << QStringList{"remove-sdk-file", "@/usr/lib/sub/libLuUsb3vTL.so"};
        QTest::newRow("remove: missing file") << QStringList{"remove-sdk-file", "@/usr/lib/libLuCamLVision.so"};
        QTest::newRow("remove: one good, one bad") << QStringList{"remove-sdk-file", "@/usr/lib/libLuCameraControl.so", "/etc/passwd"};
        QTest::newRow("installer: no kind") << QStringList{"run-installer"};
        QTest::newRow("installer: unknown kind") << QStringList{"run-installer", "/tmp/evil.sh"};
        QTest::newRow("installer: two kinds") << QStringList{"run-installer", "gige", "usb3"};
        QTest::newRow("installer: script missing") << QStringList{"run-installer", "gige"};
    }
    void refused()
    {
        QFETCH(QStringList, args);
        args = rooted(args);
        QString strReason;
        QVERIFY(!HelperVerbs::validate(args, &strReason, links()));
        QVERIFY(!strReason.isEmpty());
        QCOMPARE(HelperVerbs::run(args, links()), int(HelperVerbs::ExitRefused));
        // Nothing was touched.
        QCOMPARE(read("/etc/environment"), QByteArray("LANG=C\n"));
        QVERIFY(QFile::exists(root() + "/usr/lib/libLuCameraControl.so"));
        QVERIFY(QFile::exists(root() + "/etc/libLuCameraControl.so"));
        QVERIFY(QFile::exists(root() + "/usr/lib/libc.so"));
    }

    void accepted_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("set-env") << QStringList{"set-env", "PATH", "/opt/Orvex/Runtime/Linux64_x64:/usr/bin", "LUCAM_GIGE_DEBUG_HEARTBEAT", "60000"};
        QTest::newRow("set-mtu") << QStringList{"set-mtu", "eth0", "9000"};
        QTest::newRow("remove-sdk-file") << QStringList{"remove-sdk-file", "@/usr/lib/libLuCameraControl.so"};
        QTest::newRow("run-installer") << QStringList{"run-installer", "usb3"};
    }
    void accepted()
    {
        QFETCH(QStringList, args);
        write("/opt/Orvex/Drivers/Usb3.0/install.sh", "true\n");
        QString strReason;
        QVERIFY2(HelperVerbs::validate(rooted(args), &strReason, links()), qPrintable(strReason));
    }

    void setEnvWrites()
    {
        QCOMPARE(HelperVerbs::run({"set-env", "LUCAM_GIGE_DEBUG_HEARTBEAT", "60000", "PATH", "/a:/usr/bin"}, links()),
            int(HelperVerbs::ExitDone));
        QCOMPARE(read("/etc/environment"), QByteArray("LANG=C\nLUCAM_GIGE_DEBUG_HEARTBEAT=\"60000\"\nPATH=\"/a:/usr/bin\"\n"));
    }

    void removeDeletes()
    {
        QCOMPARE(HelperVerbs::run({"remove-sdk-file", root() + "/usr/lib/libLuCameraControl.so"}, links()),
            int(HelperVerbs::ExitDone));
        QVERIFY(!QFile::exists(root() + "/usr/lib/libLuCameraControl.so"));
    }

    // The helper starts the installer in its folder and ends at once with
    // "done", while the script goes on (here: until the test lets it end).
    void runInstallerStartsDetached()
    {
        const QString strGo = root() + "/go";
        const QString strMarker = root() + "/ran";
        write("/opt/Orvex/Drivers/Usb3.0/install.sh",
              "echo \"$PWD\" > '" + strMarker.toLocal8Bit() + ".tmp'\n"
              "while [ ! -e '" + strGo.toLocal8Bit() + "' ]; do sleep 0.05; done\n"
              "mv '" + strMarker.toLocal8Bit() + ".tmp' '" + strMarker.toLocal8Bit() + "'\n");
        QCOMPARE(HelperVerbs::run({"run-installer", "usb3"}, links()), int(HelperVerbs::ExitDone));
        QVERIFY(!QFileInfo::exists(strMarker)); // returned before the script ended
        write("/go", "");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(strMarker).size() > 0, 10000);
        QCOMPARE(read("/ran").trimmed(), (root() + "/opt/Orvex/Drivers/Usb3.0").toLocal8Bit());
    }

    void executableRefuses()
    {
        const QString strHelper = QStringLiteral(VX_BIN_DIR) + "/vetrix-helper";
        QVERIFY2(QFileInfo(strHelper).isExecutable(), qPrintable(strHelper));
        QProcess process;
        process.start(strHelper, {"set-env", "LD_PRELOAD", "/tmp/x.so"});
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitCode(), int(HelperVerbs::ExitRefused));
        QCOMPARE(read("/etc/environment"), QByteArray("LANG=C\n"));
    }

    void clientMapsExitStatus_data()
    {
        QTest::addColumn<QString>("script"); // "" for no helper at all
        QTest::addColumn<int>("status");
        QTest::newRow("done") << "exit 0" << int(VxRepairStatus::Done);
        QTest::newRow("failed") << "exit 1" << int(VxRepairStatus::Failed);
        QTest::newRow("refused") << "exit 2" << int(VxRepairStatus::Refused);
        QTest::newRow("authorisation dismissed") << "exit 126" << int(VxRepairStatus::NotAuthorized);
        QTest::newRow("not authorised") << "exit 127" << int(VxRepairStatus::NotAuthorized);
        QTest::newRow("killed") << "kill -9 $$" << int(VxRepairStatus::Failed);
        QTest::newRow("helper missing") << "" << int(VxRepairStatus::HelperMissing);
    }
    void clientMapsExitStatus()
    {
        QFETCH(QString, script);
        QFETCH(int, status);
        if (!VxPrivileged::isRoot())
            QSKIP("without root the client goes through pkexec, which needs a desktop session");
        const QString strHelper = root() + "/fake-helper";
        if (!script.isEmpty()) {
            write("/fake-helper", "#!/bin/sh\n" + script.toLatin1() + "\n");
            QVERIFY(QFile::setPermissions(strHelper, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        }
        const VxRepairStatus result = VxPrivileges(strHelper).runHelper("set-mtu", {"eth0", "9000"});
        QCOMPARE(int(result), status);
    }
};

QTEST_GUILESS_MAIN(TstHelperVerbs)
#include "tst_helperverbs.moc"
