// A system root that is not the running machine (a mounted image): every
// item reads the image's files or is left out as not available; nothing
// comes from the machine running the test.
#include "cameradrivers.h"
#include "cdetectinfo.h"
#include "envvars.h"
#include "luinterface.h"
#include "systemroot.h"
#include "vxprobetable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

void writeFile(const QString &strPath, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(strPath).absolutePath());
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(data), qint64(data.size()));
}

// The first bytes of an ELF program: magic, class 64-bit, EI_DATA.
QByteArray elfHeader(char cData)
{
    QByteArray h("\x7f" "ELF", 4);
    h += char(2);
    h += cData;
    h += QByteArray(10, '\1');
    return h;
}

} // namespace

class TestOfflineRoot : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QString root() const { return m_pRoot->path(); }

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
        qunsetenv("GENICAM_GENTL64_PATH");
        delete m_pRoot;
        m_pRoot = nullptr;
    }

    // An image has no sysfs and no /proc: the network, GigE driver, USB and
    // tuning items are not available.
    void emptyImageLeavesOutWhatItCannotRead()
    {
        QVERIFY(QDir().mkpath(root() + "/etc"));
        QVERIFY(!LuInterface::isLiveRoot());
        QCOMPARE(SystemRoot::unreadableItems(),
                 quint32(4 | 32 | 128 | 256 | 512 | 4096 | 8192 | 16384 | 65536));
    }

    // A captured tree with USB, PCI and network devices but no kernel
    // parameters: the tuning items stay out with the GigE driver, whose
    // device node would reach the running machine's driver.
    void capturedSysfsIsRead()
    {
        QVERIFY(QDir().mkpath(root() + "/sys/bus/usb/devices"));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        QCOMPARE(SystemRoot::unreadableItems(), quint32(4 | 4096 | 8192 | 16384));
    }

    // The image's configuration files say what a boot would set, not what a
    // kernel uses: they leave the tuning items out...
    void tuningConfigurationAloneIsNotRead()
    {
        QVERIFY(QDir().mkpath(root() + "/sys/bus/usb/devices"));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        writeFile(root() + "/etc/sysctl.d/90-vetrix-tool.conf", "net.core.rmem_max = 16777216\n");
        writeFile(root() + "/etc/tmpfiles.d/vetrix-tool-usbfs.conf",
                  "w /sys/module/usbcore/parameters/usbfs_memory_mb - - - - 1000\n");
        QCOMPARE(SystemRoot::unreadableItems(), quint32(4 | 4096 | 8192 | 16384));
    }

    // ...while the running values of a captured system are read, each item
    // by its own source.
    void capturedKernelValuesAreRead_data()
    {
        QTest::addColumn<QString>("strFile");
        QTest::addColumn<quint32>("uStillOut");
        QTest::newRow("usbfs") << "/sys/module/usbcore/parameters/usbfs_memory_mb" << quint32(4 | 8192 | 16384);
        QTest::newRow("net.core") << "/proc/sys/net/core/rmem_max" << quint32(4 | 4096 | 16384);
        QTest::newRow("rp_filter") << "/proc/sys/net/ipv4/conf/all/rp_filter" << quint32(4 | 4096 | 8192);
    }
    void capturedKernelValuesAreRead()
    {
        QFETCH(QString, strFile);
        QFETCH(quint32, uStillOut);
        QVERIFY(QDir().mkpath(root() + "/sys/bus/usb/devices"));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        writeFile(root() + strFile, "1\n");
        QCOMPARE(SystemRoot::unreadableItems(), uStillOut);
    }

    // The image's driver installer is a program of the image: started here it
    // would install into this machine. It is not run.
    void imagesDriverInstallerIsNotRun()
    {
        const QString strMarker = root() + "/ran";
        writeFile(CameraDrivers::usb3InstallScript(), QByteArray("#!/bin/sh\ntouch '") + strMarker.toLocal8Bit() + "'\n");
        QVERIFY(CameraDrivers::usb3InstallScript().startsWith(root()));
        const VxProbeTable table = defaultProbeTable(VxPrivileges(QString(), VxPrivileges::Rights::Root));
        QVERIFY(table.items.value(8).install);
        QCOMPARE(table.items.value(8).install().status, VxRepairStatus::OtherSystem);
        QTest::qWait(300);
        QVERIFY(!QFileInfo::exists(strMarker));
    }

    void liveRootLeavesNothingOut()
    {
        qunsetenv("VETRIX_SYSROOT");
        QVERIFY(LuInterface::isLiveRoot());
        QCOMPARE(SystemRoot::unreadableItems(), 0u);
    }

    // The environment check reads the image's /etc/environment, not the
    // values this process has.
    void environmentComesFromTheImage()
    {
        qputenv("GENICAM_GENTL64_PATH", "/from/this/process");
        writeFile(root() + "/etc/environment", "GENICAM_GENTL64_PATH=\"/from/the/image\"\n");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.currentValues.value("GENICAM_GENTL64_PATH"), QString("/from/the/image"));
        QCOMPARE(info.currentValues.value("LUCAM_GIGE_DEBUG_HEARTBEAT"), QString());
        QVERIFY(info.pendingValues.isEmpty());
        QCOMPARE(info.bNormal, 0);
    }

    // The SDK folders are named as the image's own programs see them.
    void environmentNamesTheImagesFolders()
    {
        writeFile(root() + "/etc/environment",
                  "GENICAM_GENTL64_PATH=\"/opt/Orvex/Runtime/Linux64_x64:\"\n"
                  "GENICAM_GENTL32_PATH=\"/elsewhere\"\n");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QVERIFY(!info.missingValues.contains("GENICAM_GENTL64_PATH"));
        QCOMPARE(info.missingValues.value("GENICAM_GENTL32_PATH"), QStringList({"/opt/Orvex/Runtime/Linux32_i86:"}));
        const auto writes = EnvVars::plannedWrites(info);
        for (const auto &write : writes)
            QVERIFY2(!write.second.contains(root()), qPrintable(write.first + "=" + write.second));
    }

    void byteOrderOfTheImagesPrograms_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<bool>("link");
        QTest::addColumn<QString>("expected");
        QTest::addRow("little endian") << elfHeader(1) << false << "Little Endian";
        QTest::addRow("big endian") << elfHeader(2) << false << "Big Endian";
        QTest::addRow("not ELF") << QByteArray("#!/bin/sh\n") << false << "Unknown";
        QTest::addRow("cut header") << elfHeader(2).left(5) << false << "Unknown";
        QTest::addRow("absolute link to the running machine's") << QByteArray() << true << "Unknown";
        QTest::addRow("no programs") << QByteArray() << false << "Unknown";
    }
    void byteOrderOfTheImagesPrograms()
    {
        QFETCH(QByteArray, header);
        QFETCH(bool, link);
        QFETCH(QString, expected);
        QVERIFY(QDir().mkpath(root() + "/usr/bin"));
        if (link)
            QVERIFY(QFile::link("/usr/bin/env", root() + "/usr/bin/env"));
        else if (!header.isEmpty())
            writeFile(root() + "/usr/bin/env", header);
        QCOMPARE(LuInterface::byteOrder(), expected);
    }

    // No sysfs in the image: the graphics chips are not known (not "None").
    void graphicsChipsOfAnImageWithoutSysfs()
    {
        QCOMPARE(LuInterface::graphicsChips(), QString("Unknown"));
    }
};

QTEST_GUILESS_MAIN(TestOfflineRoot)
#include "tst_offlineroot.moc"
