// A system root that is not the running machine (a mounted image): every
// item reads the image's files or is left out as not available; nothing
// comes from the machine running the test.
#include "cdetectinfo.h"
#include "envvars.h"
#include "luinterface.h"
#include "systemroot.h"

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

    // An image has no sysfs: the network, GigE driver and USB items are not available.
    void emptyImageLeavesOutWhatItCannotRead()
    {
        QVERIFY(QDir().mkpath(root() + "/etc"));
        QVERIFY(!LuInterface::isLiveRoot());
        QCOMPARE(SystemRoot::unreadableItems(), quint32(4 | 32 | 128 | 256 | 512 | 65536));
    }

    // A captured tree with USB, PCI and network devices: only the GigE driver,
    // whose device node would reach the running machine's driver, stays out.
    void capturedSysfsIsRead()
    {
        QVERIFY(QDir().mkpath(root() + "/sys/bus/usb/devices"));
        QVERIFY(QDir().mkpath(root() + "/sys/class/net"));
        QCOMPARE(SystemRoot::unreadableItems(), quint32(4));
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
