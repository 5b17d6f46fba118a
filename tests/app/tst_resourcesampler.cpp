#include "resourcesampler.h"

#include <QtTest>

class TestResourceSampler : public QObject
{
    Q_OBJECT
private slots:
    void parseProcStat_data();
    void parseProcStat();
    void parseMemInfo_data();
    void parseMemInfo();
    void cpuPercent_data();
    void cpuPercent();
    void firstCpuSampleIsZeroAndMemoryIsReadAtOnce();

private:
    static void writeFile(const QString &strPath, const QByteArray &bytes);
};

void TestResourceSampler::writeFile(const QString &strPath, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(strPath).path());
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

void TestResourceSampler::parseProcStat_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<quint64>("total");
    QTest::addColumn<quint64>("idle");
    QTest::addRow("full line, guest not added twice")
        << QByteArray("cpu  10 20 30 400 50 6 7 8 9 10\ncpu0 1 2 3 4\n") << true << quint64(531) << quint64(450);
    QTest::addRow("old kernel, four fields") << QByteArray("cpu 1 2 3 4\n") << true << quint64(10) << quint64(4);
    QTest::addRow("not the total line") << QByteArray("cpu0 1 2 3 4\n") << false << quint64(0) << quint64(0);
    QTest::addRow("garbage number") << QByteArray("cpu 1 x 3 4\n") << false << quint64(0) << quint64(0);
    QTest::addRow("empty") << QByteArray() << false << quint64(0) << quint64(0);
}

void TestResourceSampler::parseProcStat()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, valid);
    QFETCH(quint64, total);
    QFETCH(quint64, idle);
    const auto times = VxResourceSampler::parseProcStat(text);
    QCOMPARE(times.bValid, valid);
    QCOMPARE(times.uTotal, total);
    QCOMPARE(times.uIdle, idle);
}

void TestResourceSampler::parseMemInfo_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("percent");
    QTest::addRow("quarter used") << QByteArray("MemTotal: 1000 kB\nMemFree: 10 kB\nMemAvailable: 750 kB\n") << 25.0;
    QTest::addRow("no MemAvailable") << QByteArray("MemTotal: 1000 kB\nMemFree: 10 kB\n") << -1.0;
    QTest::addRow("available above total") << QByteArray("MemTotal: 10 kB\nMemAvailable: 20 kB\n") << -1.0;
    QTest::addRow("zero total") << QByteArray("MemTotal: 0 kB\nMemAvailable: 0 kB\n") << -1.0;
}

void TestResourceSampler::parseMemInfo()
{
    QFETCH(QByteArray, text);
    QFETCH(double, percent);
    QCOMPARE(VxResourceSampler::parseMemInfo(text), percent);
}

void TestResourceSampler::cpuPercent_data()
{
    QTest::addColumn<quint64>("total0");
    QTest::addColumn<quint64>("idle0");
    QTest::addColumn<quint64>("total1");
    QTest::addColumn<quint64>("idle1");
    QTest::addColumn<float>("percent");
    QTest::addRow("half busy") << quint64(100) << quint64(50) << quint64(200) << quint64(100) << 50.0f;
    QTest::addRow("idle") << quint64(100) << quint64(50) << quint64(200) << quint64(150) << 0.0f;
    QTest::addRow("no time passed") << quint64(100) << quint64(50) << quint64(100) << quint64(50) << 0.0f;
    QTest::addRow("counter went back") << quint64(100) << quint64(50) << quint64(90) << quint64(40) << 0.0f;
}

void TestResourceSampler::cpuPercent()
{
    QFETCH(quint64, total0);
    QFETCH(quint64, idle0);
    QFETCH(quint64, total1);
    QFETCH(quint64, idle1);
    QFETCH(float, percent);
    VxResourceSampler::CpuTimes a{total0, idle0, true};
    VxResourceSampler::CpuTimes b{total1, idle1, true};
    QCOMPARE(VxResourceSampler::cpuPercent(a, b), percent);
}

void TestResourceSampler::firstCpuSampleIsZeroAndMemoryIsReadAtOnce()
{
    QTemporaryDir root;
    qputenv("VETRIX_SYSROOT", root.path().toUtf8());
    writeFile(root.filePath("proc/stat"), "cpu 100 0 0 100 0 0 0 0\n");
    writeFile(root.filePath("proc/meminfo"), "MemTotal: 2000 kB\nMemAvailable: 500 kB\n");
    VxResourceSampler sampler;
    QCOMPARE(sampler.memoryLoad(), 75.0f);
    QCOMPARE(sampler.cpuLoad(), 0.0f);
    writeFile(root.filePath("proc/stat"), "cpu 175 0 0 125 0 0 0 0\n");
    QCOMPARE(sampler.cpuLoad(), 75.0f);
    // Unreadable files give 0, which the window ignores.
    QFile::remove(root.filePath("proc/meminfo"));
    QCOMPARE(sampler.memoryLoad(), 0.0f);
    qunsetenv("VETRIX_SYSROOT");
}

QTEST_GUILESS_MAIN(TestResourceSampler)
#include "tst_resourcesampler.moc"
