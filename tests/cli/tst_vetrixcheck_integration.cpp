// Runs the built vetrix-check as a user would. The system root points at an
// empty folder so the probes find nothing of the live machine: items whose
// source the root lacks are reported not available.
#include <QtTest>

class TestVetrixCheckIntegration : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void helpAndVersion();
    void usageErrors_data();
    void usageErrors();
    void jsonIsValidAndMatchesExitStatus();
    void outputFileUsesCrLf();
    void outputFileUnwritable();
#ifdef Q_OS_LINUX
    // Another system root's sysfs: a Linux notion.
    void networkWithoutSysfsIsNotAvailable();
    void networkFromTheRootsSysfs();
#endif

private:
    struct Result
    {
        int nExit = -1;
        QByteArray out;
        QByteArray err;
    };
    Result run(const QStringList &args, const QString &strRoot = QString());
    static QJsonObject itemOf(const QByteArray &json, int nItem);

    QString m_strProgram;
    QTemporaryDir m_root;
};

void TestVetrixCheckIntegration::initTestCase()
{
    m_strProgram = QStringLiteral(VX_BIN_DIR "/vetrix-check" VX_EXE_SUFFIX);
    QVERIFY2(QFileInfo(m_strProgram).isExecutable(), qPrintable(m_strProgram));
    QVERIFY(m_root.isValid());
}

TestVetrixCheckIntegration::Result TestVetrixCheckIntegration::run(const QStringList &args, const QString &strRoot)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VETRIX_SYSROOT", strRoot.isEmpty() ? m_root.path() : strRoot);
    process.setProcessEnvironment(env);
    process.start(m_strProgram, args);
    Result result;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.nExit = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

void TestVetrixCheckIntegration::helpAndVersion()
{
    Result help = run({"--help"});
    QCOMPARE(help.nExit, 0);
    for (const char *pOption : {"--items", "--format", "--output", "--timings", "--lang"})
        QVERIFY2(help.out.contains(pOption), pOption);
    Result version = run({"--version"});
    QCOMPARE(version.nExit, 0);
    QCOMPARE(version.out.trimmed(), QByteArray("vetrix-check 4.1.0"));
}

void TestVetrixCheckIntegration::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addRow("unknown option") << QStringList{"--frobnicate"};
    QTest::addRow("unknown item") << QStringList{"--items", "5"};
    QTest::addRow("missing option value") << QStringList{"--items"};
    QTest::addRow("unknown format") << QStringList{"--format", "xml"};
    QTest::addRow("unknown language") << QStringList{"--lang", "eng"};
    QTest::addRow("stray argument") << QStringList{"now"};
}

void TestVetrixCheckIntegration::usageErrors()
{
    QFETCH(QStringList, args);
    Result result = run(args);
    QCOMPARE(result.nExit, 2);
    QVERIFY(result.out.isEmpty());
    QVERIFY(!result.err.isEmpty());
}

void TestVetrixCheckIntegration::jsonIsValidAndMatchesExitStatus()
{
    Result result = run({"--format", "json", "--timings"});
    QVERIFY(result.nExit == 0 || result.nExit == 1);
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(result.out, &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    const QJsonObject root = doc.object();
    QCOMPARE(root.value("tool").toString(), QStringLiteral("vetrix-check"));
    QCOMPARE(root.value("version").toString(), QStringLiteral("4.1.0"));
    const QJsonArray items = root.value("items").toArray();
    QCOMPARE(items.size(), 15);
    bool bExceptional = false;
    QList<int> ids;
    for (const QJsonValue &value : items) {
        const QJsonObject item = value.toObject();
        for (const char *pKey : {"id", "name", "group", "available", "normal", "severity", "lines"})
            QVERIFY2(item.contains(pKey), pKey);
        ids << item.value("id").toInt();
        if (item.value("available").toBool())
            bExceptional = bExceptional || !item.value("normal").toBool();
        else
            QVERIFY(item.value("normal").isNull());
    }
    QCOMPARE(ids, (QList<int>{1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048, 4096, 8192, 16384, 32768, 65536}));
    QCOMPARE(result.nExit, bExceptional ? 1 : 0);
}

void TestVetrixCheckIntegration::outputFileUsesCrLf()
{
    const QString strPath = m_root.filePath("report.log");
    Result result = run({"--items", "2048,1", "--output", strPath});
    QVERIFY(result.nExit == 0 || result.nExit == 1);
    QVERIFY(result.out.isEmpty());
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("|     \r\n|----1: SDK Diagnosis\r\n"));
    QCOMPARE(bytes.count("\r\n"), bytes.count('\n'));
    QVERIFY(bytes.contains("|----3-1: Systm Info\r\n"));
    QVERIFY(!bytes.contains("Driver Diagnosis\r\n|    |----"));

    // On stdout the same report ends its lines the platform's way: LF only,
    // or CR LF from the Windows C run time's text mode.
    Result stdoutResult = run({"--items", "2048,1"});
#ifdef Q_OS_WIN
    QCOMPARE(stdoutResult.out.count("\r\n"), stdoutResult.out.count('\n'));
    QVERIFY(stdoutResult.out.contains("|----3-1: Systm Info\r\n"));
#else
    QVERIFY(!stdoutResult.out.contains('\r'));
    QVERIFY(stdoutResult.out.contains("|----3-1: Systm Info\n"));
#endif
}

void TestVetrixCheckIntegration::outputFileUnwritable()
{
    Result result = run({"--items", "1", "--output", m_root.filePath("no/such/dir/report.log")});
    QCOMPARE(result.nExit, 2);
    QVERIFY(result.err.contains("Cannot write"));
}


QJsonObject TestVetrixCheckIntegration::itemOf(const QByteArray &json, int nItem)
{
    for (const QJsonValue &value : QJsonDocument::fromJson(json).object().value("items").toArray()) {
        if (value.toObject().value("id").toInt() == nItem)
            return value.toObject();
    }
    return QJsonObject();
}

// The empty root has no sys/class/net: the network items are not available
// (not normal), in JSON and in the text report, and fail nothing.
#ifdef Q_OS_LINUX
void TestVetrixCheckIntegration::networkWithoutSysfsIsNotAvailable()
{
    Result result = run({"--items", "128,256", "--format", "json"});
    QCOMPARE(result.nExit, 0);
    const QString strLine = "Not available: this check cannot read the system below " + m_root.path() + ".";
    for (int nItem : {128, 256}) {
        const QJsonObject item = itemOf(result.out, nItem);
        QCOMPARE(item.value("available").toBool(true), false);
        QVERIFY(item.value("normal").isNull());
        QCOMPARE(item.value("lines").toArray().first().toString(), strLine);
    }
    Result text = run({"--items", "128,256"});
    QCOMPARE(text.nExit, 0);
    QVERIFY2(text.out.contains("Network Line Rate\n|    |     " + strLine.toUtf8()), text.out.constData());
}

// A root with interfaces: read from its attributes (eth0 up, mtu 9000,
// 10 Gbit/s), not from this machine's kernel.
void TestVetrixCheckIntegration::networkFromTheRootsSysfs()
{
    QTemporaryDir root;
    QVERIFY(root.isValid());
    const QString strNet = root.path() + "/sys/devices/pci0000:00/0000:00:03.0/net/eth0";
    QVERIFY(QDir().mkpath(strNet));
    QVERIFY(QDir().mkpath(root.path() + "/sys/class/net"));
    QVERIFY(QFile::link("../..", strNet + "/device"));
    QVERIFY(QFile::link("../../devices/pci0000:00/0000:00:03.0/net/eth0", root.path() + "/sys/class/net/eth0"));
    const QMap<QString, QByteArray> mapAttributes = {
        {"operstate", "up\n"}, {"carrier", "1\n"}, {"mtu", "9000\n"}, {"speed", "10000\n"}, {"ifindex", "2\n"}};
    for (auto it = mapAttributes.cbegin(); it != mapAttributes.cend(); ++it) {
        QFile file(strNet + "/" + it.key());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(it.value());
    }
    Result result = run({"--items", "128,256", "--format", "json"}, root.path());
    QCOMPARE(result.nExit, 0);
    const QJsonObject rate = itemOf(result.out, 128);
    QCOMPARE(rate.value("available").toBool(), true);
    QCOMPARE(rate.value("normal").toBool(), true);
    QCOMPARE(rate.value("facts").toObject().value("adapterSpeeds").toObject(), QJsonObject({{"eth0", 10000}}));
    const QJsonObject jumbo = itemOf(result.out, 256);
    QCOMPARE(jumbo.value("normal").toBool(), true);
    QCOMPARE(jumbo.value("facts").toObject().value("jumboStates").toObject(), QJsonObject({{"eth0", 1}}));
    QCOMPARE(jumbo.value("facts").toObject().value("jumboValues").toObject(), QJsonObject({{"eth0", 9014}}));
}
#endif

QTEST_GUILESS_MAIN(TestVetrixCheckIntegration)
#include "tst_vetrixcheck_integration.moc"
