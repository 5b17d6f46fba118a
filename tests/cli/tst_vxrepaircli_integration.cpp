// Runs the built vetrix-check's repair options on a fixture system root, as
// a fleet script would: the plan as JSON, repair, journal, undo.
#include "../probes/fixturesnapshot.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class TstVxRepairCliIntegration : public QObject
{
    Q_OBJECT

private:
    struct Result
    {
        int nExit = -1;
        QByteArray out;
        QByteArray err;
        QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
    };
    QTemporaryDir *m_pRoot = nullptr;
    QString root() const { return m_pRoot->path(); }

    void writeFile(const QString &strRel, const QByteArray &data)
    {
        QVERIFY(QDir().mkpath(QFileInfo(root() + strRel).absolutePath()));
        QFile file(root() + strRel);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }
    Result run(const QStringList &listArgs)
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("VETRIX_SYSROOT", root());
        env.insert("PATH", "/usr/bin:/bin");
        env.insert("QT_LOGGING_RULES", "vetrix.repair.info=false");
        for (const char *pName : {"LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
                 "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"})
            env.remove(pName);
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(VX_BIN_DIR "/vetrix-check"), listArgs);
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
    static QStringList targets(const QJsonArray &array)
    {
        QStringList listTargets;
        for (const QJsonValue &value : array)
            listTargets << value.toObject().value("kind").toString() + " "
                    + value.toObject().value("target").toString().section('/', -1);
        return listTargets;
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        writeFile("/etc/environment", "PATH=\"/usr/bin:/bin\"\nLANG=C\n");
        writeFile("/usr/lib/libLuCameraControl.so", "camera control");
        writeFile("/usr/lib/orvex/libLuCamLVision.so", "vision");
        QVERIFY(QDir().mkpath(root() + "/var/lib"));
    }
    void cleanup() { delete m_pRoot; }

    void dryRunPrintsThePlanAndChangesNothing()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const Result result = run({"--repair", "--dry-run", "--format", "json"});
        QCOMPARE(result.nExit, 1); // changes planned
        const QJsonObject json = result.json();
        QCOMPARE(targets(json.value("plan").toArray()),
            QStringList({"sdk-file libLuCamLVision.so", "sdk-file libLuCameraControl.so", "env GENICAM_GENTL32_PATH",
                "env GENICAM_GENTL64_PATH", "env LUCAM_COMMON_RUNENV", "env LUCAM_GENICAM_CLPROTOCOL",
                "env LUCAM_GIGE_DEBUG_HEARTBEAT", "env PATH"}));
        const QJsonObject path = json.value("plan").toArray().at(7).toObject();
        QCOMPARE(path.value("item").toInt(), 2);
        QCOMPARE(path.value("old").toString(), QString("/usr/bin:/bin"));
        QVERIFY(path.value("new").toString().endsWith("/opt/Orvex/Runtime/Linux32_i86:/usr/bin:/bin"));
        QCOMPARE(json.value("applied").toArray().size(), 0);
        QCOMPARE(json.value("failed").toArray().size(), 0);
        QCOMPARE(json.value("dryRun").toBool(), true);
        QCOMPARE(fixtureSnapshot(root()), listBefore);

        const Result text = run({"--repair=2", "--dry-run"});
        QCOMPARE(text.nExit, 1);
        QVERIFY2(text.out.startsWith("Planned changes: 6\n  [2] env GENICAM_GENTL32_PATH: (absent) -> \""), text.out);
        QCOMPARE(fixtureSnapshot(root()), listBefore);
    }

    void repairJournalAndUndo()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const Result repair = run({"--repair=1,2", "--format", "json"});
        QCOMPARE(repair.nExit, 0);
        QCOMPARE(repair.json().value("applied").toArray().size(), 8);
        QCOMPARE(repair.json().value("failed").toArray().size(), 0);
        const QString strOpt = repair.json().value("optimisation").toString();
        QVERIFY(!strOpt.isEmpty());
        QVERIFY(!QFileInfo::exists(root() + "/usr/lib/libLuCameraControl.so"));
        QVERIFY(fixtureSnapshot(root()) != listBefore);
        // Nothing is left to repair.
        QCOMPARE(run({"--repair", "--dry-run"}).nExit, 0);

        const Result journal = run({"--journal", "--format", "json"});
        QCOMPARE(journal.nExit, 0);
        const QJsonArray list = journal.json().value("journal").toArray();
        QCOMPARE(list.size(), 1);
        QCOMPARE(list.at(0).toObject().value("optimisation").toString(), strOpt);
        QCOMPARE(list.at(0).toObject().value("changes").toArray().size(), 8);

        const Result undo = run({"--undo", "--format", "json"});
        QCOMPARE(undo.nExit, 0);
        QCOMPARE(undo.json().value("undoes").toString(), strOpt);
        QCOMPARE(undo.json().value("applied").toArray().size(), 8);
        QCOMPARE(fixtureSnapshot(root(), {"/var/lib/vetrix-tool"}), listBefore);

        const Result again = run({"--undo"});
        QCOMPARE(again.nExit, 0);
        QCOMPARE(again.out, QByteArray("Nothing to undo.\n"));
        // The undo is journaled; undoing it by number repairs again.
        QCOMPARE(run({"--journal", "--format", "json"}).json().value("journal").toArray().size(), 2);
        QCOMPARE(run({"--undo=2"}).nExit, 0);
        QVERIFY(!QFileInfo::exists(root() + "/usr/lib/libLuCameraControl.so"));
    }

    void failedChangeExitsOne()
    {
        // The journal folder cannot be made: nothing changes, every change fails.
        writeFile("/var/lib/vetrix-tool", "a file in the way");
        const QStringList listBefore = fixtureSnapshot(root());
        const Result result = run({"--repair=1", "--format", "json"});
        QCOMPARE(result.nExit, 1);
        QCOMPARE(result.json().value("failed").toArray().size(), 2);
        QCOMPARE(fixtureSnapshot(root()), listBefore);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addRow("item without repair") << QStringList {"--repair=5"};
        QTest::addRow("item list with junk") << QStringList {"--repair=1,x"};
        QTest::addRow("empty item list") << QStringList {"--repair="};
        QTest::addRow("repair and undo") << QStringList {"--repair", "--undo"};
        QTest::addRow("dry run alone") << QStringList {"--dry-run"};
        QTest::addRow("journal with repair") << QStringList {"--journal", "--repair"};
        QTest::addRow("undo of nothing") << QStringList {"--undo=1"};
        QTest::addRow("undo of unknown id") << QStringList {"--undo=20261124T100000Z-000000"};
        QTest::addRow("value for the journal") << QStringList {"--journal=1"};
    }
    void usageErrors()
    {
        QFETCH(QStringList, args);
        const QStringList listBefore = fixtureSnapshot(root());
        const Result result = run(args);
        QCOMPARE(result.nExit, 2);
        QVERIFY(!result.err.isEmpty());
        QCOMPARE(fixtureSnapshot(root()), listBefore);
    }
};

QTEST_GUILESS_MAIN(TstVxRepairCliIntegration)
#include "tst_vxrepaircli_integration.moc"
