#include "dumpgrabber.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// Dump collection and copying over fixture system roots.
class TstDumpGrabber : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QTemporaryDir *m_pTarget = nullptr;
    QString root() const { return m_pRoot->path(); }
    void write(const QString &strPath, const QByteArray &data)
    {
        QVERIFY(QDir().mkpath(QFileInfo(strPath).absolutePath()));
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }
    QByteArray read(const QString &strPath)
    {
        QFile file(strPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        m_pTarget = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid() && m_pTarget->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
    }
    void cleanup()
    {
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
        delete m_pTarget;
    }

    void names()
    {
        QCOMPARE(DumpGrabber::watchedNames().size(), 9);
        // This program's own dumps carry its executable's name.
        QCOMPARE(DumpGrabber::watchedNames().first(), QString("VetrixTool"));
        QCOMPARE(DumpGrabber::watchedNames().last(), QString("Sorrel_Check"));
    }

    void watched_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("watched");
        QTest::newRow("coredump of a sibling") << "core.Quillscope.1000.b1.42.1700000000000000.zst" << true;
        QTest::newRow("coredump in lower case") << "core.tamsel_panel.1000.b1.42.17.zst" << true;
        QTest::newRow("coredump, name cut to 15") << "core.Tiverton_Transf.1000.b1.42.17.zst" << true;
        QTest::newRow("coredump of another program") << "core.bash.0.b1.1.17.zst" << false;
        QTest::newRow("apport of a sibling") << "_opt_Orvex_bin_Marlow_Flash.1000.crash" << true;
        QTest::newRow("apport in the SDK folder but another program") << "_opt_Orvex_bin_other.1000.crash" << false;
        QTest::newRow("apport of this program") << "_usr_bin_VetrixTool.1000.crash" << true;
        QTest::newRow("apport of this program, lower case") << "_opt_vetrixtool_bin_vetrixtool.0.crash" << true;
        QTest::newRow("coredump of this program") << "core.VetrixTool.1000.b1.42.1700000000000000.zst" << true;
        QTest::newRow("apport named after the SDK") << "_usr_bin_orvex.0.crash" << false;
        QTest::newRow("coredump named after the SDK") << "core.Orvex.1000.b1.42.17.zst" << false;
        QTest::newRow("not a dump") << "Quillscope.log" << false;
    }
    void watched()
    {
        QFETCH(QString, name);
        QFETCH(bool, watched);
        QCOMPARE(DumpGrabber::isWatchedDump(name), watched);
    }

    void systemDumpPrecedence()
    {
        write(root() + "/var/crash/vmcore", "top");
        write(root() + "/var/crash/202611201200/vmcore", "older");
        write(root() + "/var/crash/202611221200/vmcore", "newest");
        write(root() + "/var/crash/202611231200/dmesg", "no dump here");
        QMap<QString, QString> map;
        DumpGrabber::collect(map);
        QCOMPARE(map, (QMap<QString, QString>{{"vmcore", root() + "/var/crash/202611221200"}}));
        QCOMPARE(DumpGrabber::grab(m_pTarget->path()), 1);
        QCOMPARE(read(m_pTarget->path() + "/OrvexDumps/vmcore"), QByteArray("newest"));
    }

    void systemDumpInTheCrashFolderOnly()
    {
        write(root() + "/var/crash/vmcore", "top");
        QMap<QString, QString> map;
        DumpGrabber::collect(map);
        QCOMPARE(map, (QMap<QString, QString>{{"vmcore", root() + "/var/crash"}}));
    }

    void grabCopiesWatchedOnly()
    {
        write(root() + "/var/lib/systemd/coredump/core.tamsel_panel.1000.b.7.1.zst", "lower");
        write(root() + "/var/lib/systemd/coredump/core.bash.1000.b.7.1.zst", "other");
        write(root() + "/var/crash/_opt_Orvex_bin_Sorrel_Check.1000.crash", "apport");
        write(root() + "/var/lib/systemd/coredump/core.VetrixTool.1000.b.7.1.zst", "ours");
        write(root() + "/var/lib/systemd/coredump/core.Orvex.1000.b.7.1.zst", "the SDK's name");
        QCOMPARE(DumpGrabber::grab(m_pTarget->path()), 3);
        const QString strTarget = m_pTarget->path() + "/OrvexDumps/";
        QCOMPARE(DumpGrabber::targetFolder(m_pTarget->path()), strTarget);
        QCOMPARE(QDir(strTarget).entryList(QDir::Files, QDir::Name),
                 QStringList({"_opt_Orvex_bin_Sorrel_Check.1000.crash", "core.VetrixTool.1000.b.7.1.zst",
                              "core.tamsel_panel.1000.b.7.1.zst"}));
        QCOMPARE(read(strTarget + "core.tamsel_panel.1000.b.7.1.zst"), QByteArray("lower"));
    }

    void secondGrabLeavesEarlierFiles()
    {
        write(root() + "/var/lib/systemd/coredump/core.Quillscope.1000.b.7.1", "first");
        QCOMPARE(DumpGrabber::grab(m_pTarget->path()), 1);
        write(root() + "/var/lib/systemd/coredump/core.Quillscope.1000.b.7.1", "second");
        QCOMPARE(DumpGrabber::grab(m_pTarget->path()), 0);
        QCOMPARE(read(m_pTarget->path() + "/OrvexDumps/core.Quillscope.1000.b.7.1"), QByteArray("first"));
    }

    void noDumpCreatesEmptyTarget()
    {
        QCOMPARE(DumpGrabber::grab(m_pTarget->path()), 0);
        QVERIFY(QFileInfo(m_pTarget->path() + "/OrvexDumps").isDir());
        QVERIFY(QDir(m_pTarget->path() + "/OrvexDumps").isEmpty());
    }

    void targetParentMustExist()
    {
        write(root() + "/var/crash/vmcore", "top");
        QCOMPARE(DumpGrabber::grab(m_pTarget->path() + "/missing"), 0);
        QVERIFY(!QFileInfo::exists(m_pTarget->path() + "/missing"));
    }

    void savedFolder()
    {
        QCOMPARE(DumpGrabber::savedTargetFolder(), QString());
        DumpGrabber::setSavedTargetFolder("/x/Dump");
        QCOMPARE(DumpGrabber::savedTargetFolder(), QString("/x/Dump"));
    }
};

QTEST_GUILESS_MAIN(TstDumpGrabber)
#include "tst_dumpgrabber.moc"
