#include "luinterface.h"

#include <QTemporaryDir>
#include <QtTest>

// Well-known folders on Linux and their place below the system root.
class TstLuPaths : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void sysPath_data();
    void sysPath();
    void isLiveRoot_data();
    void isLiveRoot();
    void linkToSlashIsLive();
    void folders_data();
    void folders();
    void userFolders();
    void systemName();
};

void TstLuPaths::cleanup()
{
    qunsetenv("VETRIX_SYSROOT");
}

void TstLuPaths::sysPath_data()
{
    QTest::addColumn<QByteArray>("root"); // empty: unset
    QTest::addColumn<QString>("strPath");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("no root") << QByteArray() << "/proc/cpuinfo" << "/proc/cpuinfo";
    QTest::addRow("slash root") << QByteArray("/") << "/proc/cpuinfo" << "/proc/cpuinfo";
    QTest::addRow("fixture root") << QByteArray("/tmp/fx") << "/proc/cpuinfo" << "/tmp/fx/proc/cpuinfo";
    QTest::addRow("trailing slash on root") << QByteArray("/tmp/fx/") << "/sys/bus" << "/tmp/fx/sys/bus";
    QTest::addRow("dot segments cleaned") << QByteArray("/tmp/./fx") << "/etc//os-release" << "/tmp/fx/etc/os-release";
}

void TstLuPaths::sysPath()
{
    QFETCH(QByteArray, root);
    QFETCH(QString, strPath);
    QFETCH(QString, strExpected);
    if (root.isEmpty())
        qunsetenv("VETRIX_SYSROOT");
    else
        qputenv("VETRIX_SYSROOT", root);
    QCOMPARE(LuInterface::sysPath(strPath), strExpected);
}

void TstLuPaths::isLiveRoot_data()
{
    QTest::addColumn<QByteArray>("root"); // empty: unset
    QTest::addColumn<bool>("bLive");
    QTest::addRow("no root") << QByteArray() << true;
    QTest::addRow("slash") << QByteArray("/") << true;
    QTest::addRow("slash twice") << QByteArray("//") << true;
    QTest::addRow("dot segments to slash") << QByteArray("/tmp/..") << true;
    QTest::addRow("fixture root") << QByteArray("/tmp") << false;
    QTest::addRow("missing root") << QByteArray("/nonexistent-vetrix-root") << false;
}

void TstLuPaths::isLiveRoot()
{
    QFETCH(QByteArray, root);
    QFETCH(bool, bLive);
    if (root.isEmpty())
        qunsetenv("VETRIX_SYSROOT");
    else
        qputenv("VETRIX_SYSROOT", root);
    QCOMPARE(LuInterface::isLiveRoot(), bLive);
}

void TstLuPaths::linkToSlashIsLive()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QFile::link("/", dir.filePath("root")));
    qputenv("VETRIX_SYSROOT", dir.filePath("root").toLocal8Bit());
    QVERIFY(LuInterface::isLiveRoot());
}

void TstLuPaths::folders_data()
{
    QTest::addColumn<int>("nWhich"); // 0 common files, 37/41/other: systemDir
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("common files") << 0 << "/fx/opt";
    QTest::addRow("native system folder") << 37 << "/fx/usr/lib";
    QTest::addRow("32-bit system folder") << 41 << "/fx/usr/lib32";
    QTest::addRow("other folder number") << 43 << "";
}

void TstLuPaths::folders()
{
    QFETCH(int, nWhich);
    QFETCH(QString, strExpected);
    qputenv("VETRIX_SYSROOT", "/fx");
    const QString strGot = nWhich == 0 ? LuInterface::commonFilesPath() : LuInterface::systemDir(nWhich);
    QCOMPARE(strGot, strExpected);
    QCOMPARE(LuInterface::commonFilesPath() + QLatin1Char('/') + LuInterface::appName(), QStringLiteral("/fx/opt/Orvex"));
}

void TstLuPaths::userFolders()
{
    qputenv("XDG_DATA_HOME", "/home/tester/.data");
    QCOMPARE(LuInterface::localPath(), QStringLiteral("/home/tester/.data"));
    QCOMPARE(LuInterface::userDataPath(), QStringLiteral("/home/tester/.data/Orvex"));
    // Per-user folders do not move with the system root.
    qputenv("VETRIX_SYSROOT", "/fx");
    QCOMPARE(LuInterface::userDataPath(), QStringLiteral("/home/tester/.data/Orvex"));
}

// Linux is never "the oldest supported Windows" (1), so no Windows-only
// branch reacts to it.
void TstLuPaths::systemName()
{
    QVERIFY(LuInterface::systemName() != 1);
}

QTEST_GUILESS_MAIN(TstLuPaths)
#include "tst_lupaths.moc"
