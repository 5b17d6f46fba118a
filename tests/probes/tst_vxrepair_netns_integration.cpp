#include "cdetectinfo.h"
#include "jumboframe.h"
#include "netadapters.h"
#include "repairplans.h"
#include "vxapply.h"
#include "vxjournal.h"

#include <QProcess>
#include <QTemporaryDir>
#include "netnstestutil.h"

#include <QtTest>

#include <sched.h>
#include <unistd.h>

// Integration test: the jumbo repair's plan applied to real interfaces and
// undone, in a network namespace of its own holding a veth pair (needs
// root). The journal lives in a temporary folder.
class TstVxRepairNetnsIntegration : public QObject
{
    Q_OBJECT

private:
    bool m_bReady = false;

    static QByteArray ip(const QStringList &listArgs) { return NetnsTest::ip(listArgs); }
    static int mtuOf(const QString &strName) { return NetnsTest::mtuOf(strName); }
    static VxApply::Route route(const VxJournal &journal)
    {
        VxApply::Route inProcess;
        inProcess.bInProcess = true;
        inProcess.appliers = VxApply::ownAppliers(journal.quarantineFolder());
        return inProcess;
    }

private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to create a network namespace and veth interfaces");
        QVERIFY2(::unshare(CLONE_NEWNET) == 0, "unshare(CLONE_NEWNET) failed");
        QCOMPARE(ip({"link", "add", "vxa", "type", "veth", "peer", "name", "vxb"}), QByteArray());
        QCOMPARE(ip({"link", "set", "vxa", "up"}), QByteArray());
        QCOMPARE(ip({"link", "set", "vxb", "up"}), QByteArray());
        QTRY_VERIFY_WITH_TIMEOUT(ip({"-o", "link", "show", "dev", "vxa"}).contains("state UP")
                && ip({"-o", "link", "show", "dev", "vxb"}).contains("state UP"),
            10000);
        m_bReady = true;
    }

    void jumboRepairAndUndo()
    {
        QCOMPARE(ip({"link", "set", "vxb", "mtu", "1400"}), QByteArray());
        CJumboPacketDetectInfo info;
        JumboFrame::check(info, NetnsTest::vethLinks({"vxa", "vxb"}));
        const VxPlan plan = RepairPlans::jumboPlan(info);
        QStringList listPlan;
        for (const VxChange &change : plan)
            listPlan << QString("%1 %2 %3 %4 -> %5")
                            .arg(change.uItem)
                            .arg(change.strKind, change.strTarget, change.strOld, change.strNew);
        QCOMPARE(listPlan, QStringList({"256 mtu vxa 1500 -> 65535", "256 mtu vxb 1400 -> 65535"}));
        // Planning changed nothing.
        QCOMPARE(mtuOf("vxa"), 1500);
        QCOMPARE(mtuOf("vxb"), 1400);

        QTemporaryDir folder;
        const QString strOpt = VxApply::newOptimisationId();
        {
            VxJournal journal(folder.path() + "/vetrix-tool");
            const QVector<VxChangeResult> vecResults = VxApply::run(strOpt, plan, route(journal), journal);
            QCOMPARE(vecResults.size(), 2);
            QCOMPARE(vecResults.at(0).strResult, QString("done"));
            QCOMPARE(vecResults.at(1).strResult, QString("done"));
        }
        QCOMPARE(mtuOf("vxa"), 65535);
        QCOMPARE(mtuOf("vxb"), 65535);

        VxJournal journal(folder.path() + "/vetrix-tool");
        VxPlan undo;
        QVERIFY(VxApply::undoPlan(journal.optimisations(), VxApply::lastUndoable(journal.optimisations()), &undo));
        const QVector<VxChangeResult> vecResults
            = VxApply::run(VxApply::newOptimisationId(), undo, route(journal), journal, strOpt);
        QCOMPARE(vecResults.size(), 2);
        QCOMPARE(vecResults.at(0).change.strTarget, QString("vxb")); // last change first
        QCOMPARE(vecResults.at(0).strResult, QString("done"));
        QCOMPARE(vecResults.at(1).strResult, QString("done"));
        QCOMPARE(mtuOf("vxa"), 1500);
        QCOMPARE(mtuOf("vxb"), 1400);
    }

    void mtuChangedMeanwhileIsLeftAlone()
    {
        const VxPlan plan = {VxChange {256, VxChangeKind::Mtu, "vxa", "1500", "9000"}};
        QCOMPARE(ip({"link", "set", "vxa", "mtu", "2000"}), QByteArray());
        QTemporaryDir folder;
        VxJournal journal(folder.path() + "/vetrix-tool");
        const QVector<VxChangeResult> vecResults
            = VxApply::run(VxApply::newOptimisationId(), plan, route(journal), journal);
        QCOMPARE(vecResults.at(0).strResult, QString("failed"));
        QCOMPARE(vecResults.at(0).strReason, QString("changed since planned; now: 2000"));
        QCOMPARE(mtuOf("vxa"), 2000);
    }

    void cleanupTestCase()
    {
        if (m_bReady)
            ip({"link", "del", "vxa"});
    }
};

QTEST_GUILESS_MAIN(TstVxRepairNetnsIntegration)
#include "tst_vxrepair_netns_integration.moc"
