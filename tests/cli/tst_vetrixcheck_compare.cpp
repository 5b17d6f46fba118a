// vetrix-check --compare end to end: the built program compares reports it
// wrote itself, edited copies of them and broken files. The system root is an
// empty folder, so that two runs read the same (nothing of the live machine
// that could change between them).
#include <QtTest>

#include <functional>

class TestVetrixCheckCompare : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void helpNamesCompare();
    void twoRunsDoNotDiffer();
    void freshRunAgainstAReport();
    void factDiffersWithoutGrade();
    void gradeDiffers();
    void jsonForm();
    void itemsLimitTheComparison();
    void outputFile();
    void badInput_data();
    void badInput();

private:
    struct Result
    {
        int nExit = -1;
        QByteArray out;
        QByteArray err;
    };
    Result run(const QStringList &args);
    // Writes a copy of the first report with f applied to the item's object.
    QString editedCopy(const QString &strName, int nItem, const std::function<void(QJsonObject &)> &f);
    QString writeFile(const QString &strName, const QByteArray &bytes);

    QString m_strProgram;
    QTemporaryDir m_root;
    QTemporaryDir m_files;
    QString m_strFirst;
    QString m_strSecond;
};

void TestVetrixCheckCompare::initTestCase()
{
    m_strProgram = QStringLiteral(VX_BIN_DIR "/vetrix-check" VX_EXE_SUFFIX);
    QVERIFY2(QFileInfo(m_strProgram).isExecutable(), qPrintable(m_strProgram));
    QVERIFY(m_root.isValid());
    QVERIFY(m_files.isValid());
    m_strFirst = m_files.filePath("first.json");
    m_strSecond = m_files.filePath("second.json");
    for (const QString &strPath : {m_strFirst, m_strSecond}) {
        const Result result = run({"--format", "json", "--output", strPath});
        QVERIFY(result.nExit == 0 || result.nExit == 1);
        QVERIFY(QFileInfo(strPath).size() > 0);
    }
}

TestVetrixCheckCompare::Result TestVetrixCheckCompare::run(const QStringList &args)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VETRIX_SYSROOT", m_root.path());
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

QString TestVetrixCheckCompare::writeFile(const QString &strName, const QByteArray &bytes)
{
    const QString strPath = m_files.filePath(strName);
    QFile file(strPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return strPath;
}

QString TestVetrixCheckCompare::editedCopy(
    const QString &strName, int nItem, const std::function<void(QJsonObject &)> &f)
{
    QFile file(m_strFirst);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
    QJsonArray items = report.value("items").toArray();
    bool bFound = false;
    for (int i = 0; i < items.size(); ++i) {
        QJsonObject item = items.at(i).toObject();
        if (item.value("id").toInt() == nItem) {
            f(item);
            items[i] = item;
            bFound = true;
        }
    }
    if (!bFound)
        return QString();
    report["items"] = items;
    return writeFile(strName, QJsonDocument(report).toJson());
}

void TestVetrixCheckCompare::helpNamesCompare()
{
    const Result result = run({"--help"});
    QCOMPARE(result.nExit, 0);
    QVERIFY(result.out.contains("--compare"));
}

void TestVetrixCheckCompare::twoRunsDoNotDiffer()
{
    const Result result = run({"--compare", m_strFirst, m_strSecond});
    QCOMPARE(result.nExit, 0);
    QCOMPARE(result.out, ("Before: " + m_strFirst + "\nAfter: " + m_strSecond + "\n\nNo differences.\n").toUtf8());
    QVERIFY(result.err.isEmpty());
}

void TestVetrixCheckCompare::freshRunAgainstAReport()
{
    const Result result = run({"--compare", m_strFirst, "-"});
    QCOMPARE(result.nExit, 0);
    QVERIFY2(result.out.contains("After: a diagnosis run now\n"), result.out.constData());
    QVERIFY(result.out.endsWith("No differences.\n"));
    const Result both = run({"--compare", "-", "-", "--format", "json"});
    QCOMPARE(both.nExit, 0);
    QCOMPARE(QJsonDocument::fromJson(both.out).object().value("items").toArray().size(), 0);
}

void TestVetrixCheckCompare::factDiffersWithoutGrade()
{
    const QString strEdited = editedCopy("fact.json", 1, [](QJsonObject &item) {
        QJsonObject facts = item.value("facts").toObject();
        facts["foundFiles"] = QJsonObject {{"libOld.so", QJsonArray {"/opt/old"}}};
        item["facts"] = facts;
    });
    QVERIFY(!strEdited.isEmpty());
    const Result result = run({"--compare", strEdited, m_strSecond});
    QCOMPARE(result.nExit, 0);
    QVERIFY2(
        result.out.contains("    removed facts.foundFiles[\"libOld.so\"]: [\"/opt/old\"]\n"), result.out.constData());
    QVERIFY(result.out.endsWith("Items that differ: 1. Grade changes: 0.\n"));
}

void TestVetrixCheckCompare::gradeDiffers()
{
    const QString strEdited = editedCopy("grade.json", 1, [](QJsonObject &item) {
        item["normal"] = false;
        item["severity"] = 2;
    });
    QVERIFY(!strEdited.isEmpty());
    const Result result = run({"--compare", strEdited, m_strSecond});
    QCOMPARE(result.nExit, 1);
    QVERIFY2(result.out.contains("  (grade changed)\n    grade changed normal: exceptional -> normal\n"
                                 "    grade changed severity: 2 -> 0\n"),
        result.out.constData());
    // A fresh run on the other side: the same difference.
    QCOMPARE(run({"--compare", strEdited, "-"}).nExit, 1);
}

void TestVetrixCheckCompare::jsonForm()
{
    const QString strEdited = editedCopy("json.json", 1, [](QJsonObject &item) { item["normal"] = false; });
    QVERIFY(!strEdited.isEmpty());
    const Result result = run({"--compare", m_strSecond, strEdited, "--format", "json"});
    QCOMPARE(result.nExit, 1);
    QJsonParseError error;
    const QJsonObject root = QJsonDocument::fromJson(result.out, &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QCOMPARE(root.value("format").toString(), QStringLiteral("vetrix-compare"));
    QCOMPARE(root.value("before").toString(), m_strSecond);
    QCOMPARE(root.value("after").toString(), strEdited);
    QCOMPARE(root.value("gradesDiffer").toBool(false), true);
    const QJsonArray items = root.value("items").toArray();
    QCOMPARE(items.size(), 1);
    const QJsonObject change = items.at(0).toObject().value("changes").toArray().at(0).toObject();
    QCOMPARE(change.value("kind").toString(), QStringLiteral("gradeChanged"));
    QCOMPARE(change.value("path").toString(), QStringLiteral("normal"));
    QCOMPARE(change.value("before").toBool(false), true);
    QCOMPARE(change.value("after").toBool(true), false);
}

void TestVetrixCheckCompare::itemsLimitTheComparison()
{
    const QString strEdited = editedCopy("items.json", 1, [](QJsonObject &item) { item["normal"] = false; });
    QVERIFY(!strEdited.isEmpty());
    QCOMPARE(run({"--compare", strEdited, m_strSecond, "--items", "2,2048"}).nExit, 0);
    QCOMPARE(run({"--compare", strEdited, m_strSecond, "--items", "1"}).nExit, 1);
    // A fresh run of two items against a full report: the others count only
    // when asked for.
    QCOMPARE(run({"--compare", m_strFirst, "-", "--items", "1,2"}).nExit, 0);
}

void TestVetrixCheckCompare::outputFile()
{
    const QString strPath = m_files.filePath("diff.txt");
    const Result result = run({"--compare", m_strFirst, m_strSecond, "--output", strPath});
    QCOMPARE(result.nExit, 0);
    QVERIFY(result.out.isEmpty());
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.endsWith("\r\nNo differences.\r\n"));
    QCOMPARE(bytes.count("\r\n"), bytes.count('\n'));
    QCOMPARE(run({"--compare", m_strFirst, m_strSecond, "--output", m_files.filePath("no/dir/x")}).nExit, 2);
}

void TestVetrixCheckCompare::badInput_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("error");
    const QString strMissing = m_files.filePath("missing.json");
    const QString strText = writeFile("report.log", "|----1: SDK Diagnosis\r\n");
    const QString strOther = writeFile("other.json", R"({"tool":"lsusb","version":"4.1.0","items":[]})");
    const QString strOld = writeFile("old.json", R"({"tool":"vetrix-check","version":"3.2.0","items":[]})");
    const QString strUnknown = editedCopy("unknown.json", 1, [](QJsonObject &item) { item["id"] = 3; });
    QTest::addRow("one report") << QStringList {"--compare", m_strFirst} << "--compare needs two reports";
    QTest::addRow("three reports") << QStringList {"--compare", m_strFirst, m_strFirst, m_strFirst}
                                   << "--compare needs two reports";
    QTest::addRow("missing file") << QStringList {"--compare", strMissing, "-"}
                                  << "Cannot read \"" + strMissing + "\".";
    QTest::addRow("folder") << QStringList {"--compare", m_strFirst, m_files.path()}
                            << "Cannot read \"" + m_files.path() + "\".";
    QTest::addRow("text log") << QStringList {"--compare", strText, m_strFirst} << strText + " is not a JSON report";
    QTest::addRow("other tool") << QStringList {"--compare", m_strFirst, strOther}
                                << strOther + " is not a vetrix-check report.";
    QTest::addRow("old version") << QStringList {"--compare", strOld, m_strFirst}
                                 << strOld + " comes from vetrix-check version \"3.2.0\"";
    QTest::addRow("unknown item") << QStringList {"--compare", m_strFirst, strUnknown}
                                  << strUnknown + ": item 3 is unknown.";
    QTest::addRow("unknown format") << QStringList {"--compare", m_strFirst, m_strSecond, "--format", "xml"}
                                    << "Unknown format";
}

void TestVetrixCheckCompare::badInput()
{
    QFETCH(QStringList, args);
    QFETCH(QString, error);
    const Result result = run(args);
    QCOMPARE(result.nExit, 2);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(QString::fromUtf8(result.err).startsWith(error), result.err.constData());
}

QTEST_GUILESS_MAIN(TestVetrixCheckCompare)
#include "tst_vetrixcheck_compare.moc"
