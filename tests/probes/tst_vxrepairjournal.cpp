#include "cdetectinfo.h"
#include "changeverbs.h"
#include "envvars.h"
#include "etcenvironment.h"
#include "fixturesnapshot.h"
#include "journaledrepairs.h"
#include "repairplans.h"
#include "sdkfiles.h"
#include "vxapply.h"
#include "vxjournal.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// Repairs as plans: a plan changes nothing, an applied plan is journaled
// change by change and undone exactly, and a repair killed at any point
// leaves a journal that says what was changed. Everything happens below a
// fixture system root; the tuning kinds are played by a fake applier.
class TstVxRepairJournal : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QByteArray m_savedPath;
    QMap<QString, QString> m_mapSysctl; // the fake applier's "kernel"

    QString root() const { return m_pRoot->path(); }
    static QString journalFolder() { return "/var/lib/vetrix-tool"; }

    void writeFile(const QString &strRel, const QByteArray &data, mode_t mode = 0644)
    {
        const QString strPath = root() + strRel;
        QVERIFY(QDir().mkpath(QFileInfo(strPath).absolutePath()));
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
        file.close();
        QCOMPARE(::chmod(QFile::encodeName(strPath).constData(), mode), 0);
    }
    QString envValue(const QString &strName)
    {
        QFile file(root() + "/etc/environment");
        return file.open(QIODevice::ReadOnly) ? EtcEnvironment::valueOf(file.readAll(), strName) : "<missing>";
    }

    // The fixture's repairs: every SDK variable, three stray SDK files (one
    // with its own mode, one a link) and one receive buffer setting.
    VxPlan fixturePlan()
    {
        CEnvDetectInfo env;
        EnvVars::check(env);
        CSDKPathDetectInfo sdk;
        SdkFiles::check(sdk);
        VxPlan plan = RepairPlans::environmentPlan(env) + RepairPlans::sdkFilesPlan(sdk);
        plan << VxChange {
            RepairPlans::kReceiveBuffersItem, VxChangeKind::Sysctl, "net.core.rmem_max", "212992", "16777216"};
        return plan;
    }
    VxAppliers appliers()
    {
        VxAppliers set = VxApply::ownAppliers(root() + journalFolder() + "/quarantine");
        VxApplier sysctl;
        sysctl.read = [this](const VxChange &change, QString *pValue) {
            *pValue = m_mapSysctl.value(change.strTarget);
            return m_mapSysctl.contains(change.strTarget);
        };
        sysctl.apply = [this](const VxChange &change, QString *) {
            m_mapSysctl[change.strTarget] = change.strNew;
            return true;
        };
        set.insert(VxChangeKind::Sysctl, sysctl);
        return set;
    }
    VxApply::Route route()
    {
        VxApply::Route inProcess;
        inProcess.bInProcess = true;
        inProcess.appliers = appliers();
        return inProcess;
    }
    QString currentValue(const VxChange &change)
    {
        QString strValue;
        const VxAppliers set = appliers();
        if (!set.value(change.strKind).read(change, &strValue))
            return "<unreadable>";
        return strValue;
    }
    QStringList results(const QVector<VxChangeResult> &vecResults)
    {
        QStringList listResults;
        for (const VxChangeResult &result : vecResults)
            listResults << result.change.strTarget.section('/', -1) + ": " + result.strResult
                    + (result.strReason.isEmpty() ? "" : " (" + result.strReason + ")");
        return listResults;
    }
    static QStringList all(const QStringList &listResults, const QString &strResult)
    {
        QStringList listExpected;
        for (const QString &strLine : listResults)
            listExpected << strLine.section(':', 0, 0) + ": " + strResult;
        return listExpected;
    }

private slots:
    void initTestCase()
    {
        m_savedPath = qgetenv("PATH");
        ::umask(077); // the journal's modes do not depend on it
    }
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        for (const char *pName : {"LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
                 "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"})
            qunsetenv(pName);
        qputenv("PATH", "/usr/bin:/bin");
        writeFile("/etc/environment", "# machine environment\nPATH=\"/usr/local/bin:/usr/bin:/bin\"\nLANG=C\n");
        writeFile("/usr/lib/libLuCameraControl.so", "camera control 1.0");
        writeFile("/usr/lib/x86_64-linux-gnu/orvex/libLUGigEVisionSDK.so", QByteArray("gige\0sdk", 8), 0750);
        writeFile("/usr/lib/x86_64-linux-gnu/orvex/libLuUsb3vTL.so.2", "usb3 transport layer");
        QVERIFY(QFile::link("x86_64-linux-gnu/orvex/libLuUsb3vTL.so.2", root() + "/usr/lib/libLuUsb3vTL.so"));
        writeFile("/usr/lib/libc.so", "not ours");
        QVERIFY(QDir().mkpath(root() + "/var/lib")); // as on every system
        m_mapSysctl = {{"net.core.rmem_max", "212992"}};
    }
    void cleanup()
    {
        delete m_pRoot;
        qunsetenv("VETRIX_SYSROOT");
        qputenv("PATH", m_savedPath);
    }

    void planNamesEveryChangeWithItsOldValue()
    {
        const auto sha = [](const QByteArray &content) {
            return "sha256:" + QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        };
        const VxPlan plan = fixturePlan();
        QStringList listPlan;
        for (const VxChange &change : plan) {
            QString strTarget = change.strTarget;
            listPlan << QString("%1 %2 %3 old=%4")
                            .arg(change.uItem)
                            .arg(change.strKind, strTarget.replace(root(), "@"), change.strOld);
        }
        QCOMPARE(listPlan,
            QStringList({"2 env GENICAM_GENTL32_PATH old=", "2 env GENICAM_GENTL64_PATH old=",
                "2 env LUCAM_COMMON_RUNENV old=", "2 env LUCAM_GENICAM_CLPROTOCOL old=",
                "2 env LUCAM_GIGE_DEBUG_HEARTBEAT old=", "2 env PATH old=/usr/local/bin:/usr/bin:/bin",
                "1 sdk-file @/usr/lib/x86_64-linux-gnu/orvex/libLUGigEVisionSDK.so old="
                    + sha(QByteArray("gige\0sdk", 8)),
                "1 sdk-file @/usr/lib/libLuCameraControl.so old=" + sha("camera control 1.0"),
                "1 sdk-file @/usr/lib/libLuUsb3vTL.so old=link:x86_64-linux-gnu/orvex/libLuUsb3vTL.so.2",
                "8192 sysctl net.core.rmem_max old=212992"}));
        for (int i = 6; i < 9; ++i)
            QCOMPARE(plan.at(i).strNew, QString()); // removed
        // The image's own paths: its SDK folders without this machine's root in front.
        QVERIFY(plan.at(5).strNew.startsWith("/opt/Orvex/Runtime/Linux64_x64:/opt/Orvex/Runtime/Linux32_i86:"));
        QVERIFY(plan.at(5).strNew.endsWith(":/usr/local/bin:/usr/bin:/bin"));
        QCOMPARE(plan.at(4).strNew, QString("60000"));
    }

    void dryRunChangesNothing()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const VxPlan plan = fixturePlan();
        QCOMPARE(plan.size(), 10);
        QCOMPARE(fixtureSnapshot(root()), listBefore);
        QVERIFY(!QFileInfo::exists(root() + journalFolder()));
    }

    void repairAndUndoRestoreEverything()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const VxPlan plan = fixturePlan();
        const QString strOpt = VxApply::newOptimisationId();
        QStringList listResults;
        {
            VxJournal journal;
            listResults = results(VxApply::run(strOpt, plan, route(), journal));
        }
        QCOMPARE(listResults, all(listResults, "done"));
        QCOMPARE(listResults.size(), plan.size());
        // Every change is made.
        for (const VxChange &change : plan)
            QCOMPARE(currentValue(change), change.strNew);
        QCOMPARE(envValue("LUCAM_GIGE_DEBUG_HEARTBEAT"), QString("60000"));
        QVERIFY(!QFileInfo::exists(root() + "/usr/lib/libLuCameraControl.so"));
        QCOMPARE(QDir(root() + journalFolder() + "/quarantine").entryList(QDir::Files | QDir::System).size(), 3);
        QCOMPARE(m_mapSysctl.value("net.core.rmem_max"), QString("16777216"));

        // The journal: root's folder, readable by all; the quarantine private.
        QFileInfo folder(root() + journalFolder());
        QCOMPARE(int(folder.permissions() & 0x7777),
            int(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser
                | QFile::ExeUser | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther));
        struct stat st;
        QCOMPARE(::stat(QFile::encodeName(root() + journalFolder() + "/quarantine").constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, 0700u);
        QCOMPARE(::stat(QFile::encodeName(root() + journalFolder() + "/journal.jsonl").constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, 0644u);

        VxJournal reader;
        const QVector<VxJournalEntry> vecLines = reader.lines();
        QCOMPARE(vecLines.size(), 2 * plan.size()); // pending, then done
        for (int i = 0; i < plan.size(); ++i) {
            QCOMPARE(vecLines.at(2 * i).strResult, QString("pending"));
            QCOMPARE(vecLines.at(2 * i + 1).strResult, QString("done"));
            QCOMPARE(vecLines.at(2 * i + 1).strOpt, strOpt);
            QCOMPARE(vecLines.at(2 * i + 1).change.strOld, plan.at(i).strOld);
            QCOMPARE(vecLines.at(2 * i + 1).change.strNew, plan.at(i).strNew);
            QVERIFY(vecLines.at(2 * i + 1).time.isValid());
        }
        QCOMPARE(VxApply::lastUndoable(reader.optimisations()), strOpt);

        VxPlan undo;
        QVERIFY(VxApply::undoPlan(reader.optimisations(), strOpt, &undo));
        QCOMPARE(undo.size(), plan.size());
        QCOMPARE(undo.first().strTarget, plan.last().strTarget); // last change first
        {
            VxJournal journal;
            listResults = results(VxApply::run(VxApply::newOptimisationId(), undo, route(), journal, strOpt));
        }
        QCOMPARE(listResults, all(listResults, "done"));
        QCOMPARE(fixtureSnapshot(root(), {journalFolder()}), listBefore);
        QCOMPARE(m_mapSysctl.value("net.core.rmem_max"), QString("212992"));
        QCOMPARE(QDir(root() + journalFolder() + "/quarantine").entryList(QDir::Files | QDir::System).size(), 0);
        // The undo is journaled too, and the repair counts as undone.
        const QVector<VxOptimisation> vecOpts = reader.optimisations();
        QCOMPARE(vecOpts.size(), 2);
        QCOMPARE(vecOpts.at(1).strUndoes, strOpt);
        QVERIFY(vecOpts.at(0).bUndone);
        QCOMPARE(VxApply::lastUndoable(vecOpts), QString());
    }

    void changeMadeMeanwhileIsLeftAlone()
    {
        const VxPlan plan = fixturePlan();
        writeFile("/etc/environment", "PATH=/mine\n");
        VxJournal journal;
        const QVector<VxChangeResult> vecResults = VxApply::run(VxApply::newOptimisationId(), plan, route(), journal);
        QCOMPARE(vecResults.at(5).change.strTarget, QString("PATH"));
        QCOMPARE(vecResults.at(5).strResult, QString("failed"));
        QCOMPARE(vecResults.at(5).strReason, QString("changed since planned; now: /mine"));
        QCOMPARE(envValue("PATH"), QString("/mine"));
        QCOMPARE(vecResults.at(4).strResult, QString("done")); // the others go on
    }

    void undoChoosesTheLastOrTheNamedOne()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const VxPlan plan = fixturePlan();
        const QString strFirst = "20261124T100000Z-00000a";
        const QString strSecond = "20261124T100001Z-00000b";
        {
            VxJournal journal;
            VxApply::run(strFirst, plan.mid(0, 6), route(), journal); // environment
        }
        {
            VxJournal journal;
            VxApply::run(strSecond, plan.mid(6), route(), journal); // files, sysctl
        }
        VxJournal reader;
        QCOMPARE(VxApply::lastUndoable(reader.optimisations()), strSecond);
        // The first one by its id: the environment comes back, the files stay away.
        VxPlan undo;
        QVERIFY(VxApply::undoPlan(reader.optimisations(), strFirst, &undo));
        {
            VxJournal journal;
            VxApply::run("20261124T100002Z-00000c", undo, route(), journal, strFirst);
        }
        QCOMPARE(envValue("LUCAM_GIGE_DEBUG_HEARTBEAT"), QString());
        QVERIFY(!QFileInfo::exists(root() + "/usr/lib/libLuCameraControl.so"));
        QCOMPARE(VxApply::lastUndoable(reader.optimisations()), strSecond);
        QVERIFY(VxApply::undoPlan(reader.optimisations(), strSecond, &undo));
        {
            VxJournal journal;
            VxApply::run("20261124T100003Z-00000d", undo, route(), journal, strSecond);
        }
        QCOMPARE(fixtureSnapshot(root(), {journalFolder()}), listBefore);
        QCOMPARE(VxApply::lastUndoable(reader.optimisations()), QString());
        QVERIFY(!VxApply::undoPlan(reader.optimisations(), "20261124T100009Z-00000f", &undo));
    }

    // Without root the plan goes to the helper; what it made is read back
    // from the journal, and what it never reached fails with the reason.
    void helperRouteReadsResultsFromTheJournal()
    {
        const VxPlan plan = fixturePlan().mid(0, 9);
        QStringList listCalls;
        VxApply::Route helper;
        helper.runHelper = [&](const QString &strVerb, const QStringList &listArgs) {
            listCalls << strVerb + " " + QString::number(listArgs.size());
            VxJournal journal;
            QStringList listCut = listArgs.mid(0, 1 + 5 * 7); // this helper stops after seven changes
            return ChangeVerbs::runApply(listCut, appliers(), journal) == 0 ? VxRepairStatus::Done
                                                                            : VxRepairStatus::Failed;
        };
        const QString strOpt = VxApply::newOptimisationId();
        VxJournal journal;
        const QStringList listResults = results(VxApply::run(strOpt, plan, helper, journal));
        QCOMPARE(listCalls, QStringList({"apply 46"}));
        QCOMPARE(listResults.mid(0, 7), all(listResults.mid(0, 7), "done"));
        QCOMPARE(listResults.mid(7),
            QStringList({"libLuCameraControl.so: failed (not reported by vetrix-helper)",
                "libLuUsb3vTL.so: failed (not reported by vetrix-helper)"}));

        helper.runHelper = [](const QString &, const QStringList &) { return VxRepairStatus::NotAuthorized; };
        const QStringList listRefused
            = results(VxApply::run(VxApply::newOptimisationId(), plan.mid(7), helper, journal));
        QCOMPARE(listRefused,
            QStringList(
                {"libLuCameraControl.so: failed (not authorised)", "libLuUsb3vTL.so: failed (not authorised)"}));
        QVERIFY(QFileInfo::exists(root() + "/usr/lib/libLuCameraControl.so"));
    }

    // The rows' repairs of items 1 and 2 as journaled plans: the records
    // turn normal, and undoing both optimisations restores the fixture.
    void journaledRepairsCanBeUndone()
    {
        const QStringList listBefore = fixtureSnapshot(root());
        const VxPrivileges rights(QString(), VxPrivileges::Rights::Root);
        CSDKPathDetectInfo sdk;
        SdkFiles::check(sdk);
        QCOMPARE(sdk.bNormal, 0);
        QVERIFY(JournaledRepairs::repairSdkFiles(sdk, rights).ok());
        QCOMPARE(sdk.bNormal, 1);
        CEnvDetectInfo env;
        EnvVars::check(env);
        QCOMPARE(env.bNormal, 0);
        QVERIFY(JournaledRepairs::repairEnvironment(env, rights).ok());
        QCOMPARE(env.bNormal, 1);
        // Another system root's environment is its /etc/environment: nothing
        // waits for a login there.
        QCOMPARE(env.pendingValues.size(), 0);

        VxJournal reader;
        QCOMPARE(reader.optimisations().size(), 2);
        for (int i = 0; i < 2; ++i) {
            VxPlan undo;
            const QString strLast = VxApply::lastUndoable(reader.optimisations());
            QVERIFY(VxApply::undoPlan(reader.optimisations(), strLast, &undo));
            VxJournal journal;
            const QStringList listResults
                = results(VxApply::run(VxApply::newOptimisationId(), undo, route(), journal, strLast));
            QCOMPARE(listResults, all(listResults, "done"));
        }
        QCOMPARE(fixtureSnapshot(root(), {journalFolder()}), listBefore);
    }

    void tornAndForeignLinesAreSkipped()
    {
        VxJournalEntry entry;
        entry.time = QDateTime(QDate(2026, 11, 24), QTime(14, 0), Qt::UTC);
        entry.strOpt = "20261124T140000Z-abcdef";
        entry.change = VxChange {2, VxChangeKind::Environment, "PATH", "/a", "/b"};
        entry.strResult = "done";
        const QByteArray line = VxJournal::lineOf(entry);
        QCOMPARE(line,
            QByteArray("{\"item\":2,\"kind\":\"env\",\"new\":\"/b\",\"old\":\"/a\",\"opt\":\"20261124T140000Z-abcdef\","
                       "\"result\":\"done\",\"seq\":0,\"target\":\"PATH\",\"time\":\"2026-11-24T14:00:00Z\"}"));
        writeFile(journalFolder() + "/journal.jsonl", line + "\nnot json\n{\"opt\":1}\n" + line.left(20));
        VxJournal journal;
        QCOMPARE(journal.lines().size(), 1);
        QString strError;
        QVERIFY2(journal.openForWriting(&strError), qPrintable(strError));
        entry.nSeq = 1;
        QVERIFY(journal.append(entry, &strError));
        // The torn line is closed off, so the new one reads.
        QCOMPARE(journal.lines().size(), 2);
        QCOMPARE(journal.lines().at(1).nSeq, 1);
    }

    // The helper killed at each point of a repair: every change the journal
    // calls done is made, every change it has no line for is not, and the
    // one it calls interrupted is either; undo then restores the fixture.
    void killDuringRepairLeavesAConsistentJournal_data()
    {
        QTest::addColumn<int>("killSeq");
        QTest::addColumn<int>("killStage");
        QTest::addRow("before the first change") << 0 << int(VxApply::Stage::Pending);
        QTest::addRow("after the third change, before its result") << 2 << int(VxApply::Stage::Made);
        QTest::addRow("before an SDK file moves") << 6 << int(VxApply::Stage::Pending);
        QTest::addRow("after an SDK file moved") << 7 << int(VxApply::Stage::Made);
    }
    void killDuringRepairLeavesAConsistentJournal()
    {
        QFETCH(int, killSeq);
        QFETCH(int, killStage);
        const QStringList listBefore = fixtureSnapshot(root());
        const VxPlan plan = fixturePlan().mid(0, 9); // the changes on disk
        const QString strOpt = VxApply::newOptimisationId();
        const QString strMarker = root() + "/paused";
        const VxAppliers set = appliers();

        const pid_t pid = ::fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            VxJournal journal;
            ChangeVerbs::runApply(
                VxApply::applyArguments(strOpt, plan), set, journal, [&](int nSeq, VxApply::Stage stage) {
                    if (nSeq != killSeq || int(stage) != killStage)
                        return;
                    QFile(strMarker).open(QIODevice::WriteOnly);
                    for (;;)
                        ::pause();
                });
            ::_exit(0);
        }
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(strMarker), 30000);
        QCOMPARE(::kill(pid, SIGKILL), 0);
        int nStatus = 0;
        QCOMPARE(::waitpid(pid, &nStatus, 0), pid);
        QVERIFY(WIFSIGNALED(nStatus));
        QFile::remove(strMarker);

        VxJournal reader;
        const QVector<VxOptimisation> vecOpts = reader.optimisations();
        QCOMPARE(vecOpts.size(), 1);
        QStringList listStates;
        for (int i = 0; i < plan.size(); ++i) {
            QString strState = "none";
            for (const VxJournalEntry &entry : vecOpts.first().vecChanges) {
                if (entry.nSeq == i)
                    strState = entry.strResult;
            }
            const QString strNow = currentValue(plan.at(i));
            const QString strMade = strNow == plan.at(i).strNew ? "made"
                : strNow == plan.at(i).strOld                   ? "not made"
                                                                : "neither";
            listStates << QString("%1 %2 %3").arg(i).arg(strState, strMade);
        }
        QStringList listExpected;
        for (int i = 0; i < plan.size(); ++i) {
            if (i < killSeq)
                listExpected << QString("%1 done made").arg(i);
            else if (i == killSeq)
                listExpected << QString("%1 interrupted %2")
                                    .arg(i)
                                    .arg(killStage == int(VxApply::Stage::Made) ? "made" : "not made");
            else
                listExpected << QString("%1 none not made").arg(i);
        }
        QCOMPARE(listStates, listExpected);

        VxPlan undo;
        QCOMPARE(VxApply::lastUndoable(vecOpts), strOpt);
        QVERIFY(VxApply::undoPlan(vecOpts, strOpt, &undo));
        QCOMPARE(undo.size(), killSeq + 1);
        {
            VxJournal journal;
            const QStringList listResults
                = results(VxApply::run(VxApply::newOptimisationId(), undo, route(), journal, strOpt));
            QCOMPARE(listResults.size(), killSeq + 1);
            QVERIFY2(!listResults.join('\n').contains("failed"), qPrintable(listResults.join('\n')));
        }
        QCOMPARE(fixtureSnapshot(root(), {journalFolder()}), listBefore);
    }
};

QTEST_GUILESS_MAIN(TstVxRepairJournal)
#include "tst_vxrepairjournal.moc"
