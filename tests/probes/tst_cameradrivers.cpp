#include "cameradrivers.h"
#include "cdetectinfo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

// The driver checks and installers over fixture system roots.
class TstCameraDrivers : public QObject
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
