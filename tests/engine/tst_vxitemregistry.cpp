#include "cdetectinfo.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#ifndef Q_OS_WIN
#include "vxjournal.h"
#endif
#include "vxprobetable.h"

#include <QDir>
#include <QFile>
#include <QMetaEnum>
#include <QTemporaryDir>
#include <QSet>
#include <QTest>

#include <memory>

// The item rows are the program's one description of its items: every id
// has one, and each row has what its button and repair need.
class TstVxItemRegistry : public QObject
{
    Q_OBJECT

private slots:
    void everyItemHasOneRow()
    {
        const QMetaEnum ids = QMetaEnum::fromType<VxItems::ItemId>();
        QVERIFY(ids.keyCount() >= 12);
        for (int i = 0; i < ids.keyCount(); ++i) {
            const quint32 nId = quint32(ids.value(i));
            QVERIFY2(VxItemRegistry::row(nId), ids.key(i));
            QCOMPARE(quint32(VxItemRegistry::row(nId)->id), nId);
        }
        QCOMPARE(VxItemRegistry::rows().size(), ids.keyCount());
    }

    void idsAreSingleBitsAndUnique()
    {
        QSet<quint32> seen;
        for (const VxItemRow &row : VxItemRegistry::rows()) {
            QVERIFY2(row.id != 0 && (row.id & (row.id - 1)) == 0, row.pName);
            QVERIFY2(!seen.contains(row.id), row.pName);
            seen.insert(row.id);
        }
    }

    // Each row checked against this platform's real probes.
    void rowsAreComplete()
    {
        const VxProbeTable table = defaultProbeTable();
        for (const VxItemRow &row : VxItemRegistry::rows()) {
            const QStringList gaps = VxItemRegistry::rowGaps(row, table.probes(row.id));
            QVERIFY2(gaps.isEmpty(), qPrintable(QString::fromLatin1(row.pName) + ": " + gaps.join("; ")));
        }
    }

    // The gap finder itself: each rule is broken once on a copy of a real row.
    void gapsAreFound_data()
    {
        QTest::addColumn<int>("item");
        QTest::addColumn<QString>("breakage");
        QTest::addColumn<QString>("gap");
        QTest::newRow("repair button without repair probe") << 256 << "no repair probe" << "a repair without a repair probe";
        QTest::newRow("install without install probe") << 4 << "no install probe" << "an install without its install and check probes";
        QTest::newRow("install without label") << 8 << "no label" << "an install without a loading text";
        QTest::newRow("clickable button without action") << 2048 << "no action" << "a button that can be clicked but does nothing";
        QTest::newRow("repair text without repair") << 2 << "no repair kind" << "a repair button without a repair";
        QTest::newRow("detected without check") << 1024 << "no check" << "detected without a check";
        QTest::newRow("no record factory") << 128 << "no factory" << "no record factory";
        QTest::newRow("no lines") << 512 << "no lines" << "no result lines";
        QTest::newRow("no facts") << 32 << "no facts" << "no report facts";
        QTest::newRow("recheck without check") << 2 << "no check" << "a recheck without a check";
        QTest::newRow("install text without install") << 8 << "no install kind" << "an install button without an install";
    }
    void gapsAreFound()
    {
        QFETCH(int, item);
        QFETCH(QString, breakage);
        QFETCH(QString, gap);
        const VxItemRow *pRow = VxItemRegistry::row(quint32(item));
        QVERIFY(pRow);
        VxItemRow row = *pRow;
        VxItemProbes probes = defaultProbeTable().probes(row.id);
        QVERIFY(VxItemRegistry::rowGaps(row, probes).isEmpty());
        if (breakage == "no repair probe")
            probes.repair = nullptr;
        else if (breakage == "no install probe")
            probes.install = nullptr;
        else if (breakage == "no label")
            row.pInstallLabel = nullptr;
        else if (breakage == "no action")
            row.action = VxRowAction::None;
        else if (breakage == "no repair kind")
            row.repair = VxRepairKind::None, row.nOptimizeRank = 0;
        else if (breakage == "no check")
            probes.check = nullptr;
        else if (breakage == "no factory")
            row.create = nullptr;
        else if (breakage == "no lines")
            row.lines = nullptr;
        else if (breakage == "no facts")
            row.facts = nullptr;
        else if (breakage == "no install kind")
            row.repair = VxRepairKind::None, row.nOptimizeRank = 0;
        else
            QFAIL("unknown breakage");
        const QStringList gaps = VxItemRegistry::rowGaps(row, probes);
        QVERIFY2(gaps.contains(gap), qPrintable(gaps.join("; ")));
    }

    // Orders and masks come from the rows and match the product's.
    void derivedOrdersAndMasks()
    {
        QCOMPARE(VxItemRegistry::detectOrder(), (QVector<int>{1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048, 4096, 8192, 16384, 32768, 65536}));
        QCOMPARE(VxItemRegistry::optimizeOrder(), (QVector<int>{1, 2, 4, 8, 256, 4096, 8192, 16384}));
        QCOMPARE(VxItemRegistry::groupMask(VxItems::SdkGroup), VxItems::kSdkGroupMask);
        QCOMPARE(VxItemRegistry::groupMask(VxItems::DriverGroup), VxItems::kDriverGroupMask);
        QCOMPARE(VxItemRegistry::groupMask(VxItems::SystemGroup), VxItems::kSystemGroupMask);
        QCOMPARE(VxItemRegistry::shownMask() & VxItems::kAllItemsMask, VxItems::kAllItemsMask);
        for (int nGroup : VxItemRegistry::groups()) {
            quint32 uRows = 0;
            for (int nItem : VxItemRegistry::displayOrder(nGroup))
                uRows |= quint32(nItem);
            QCOMPARE(uRows, VxItemRegistry::groupMask(nGroup));
        }
    }

    // Each row's factory makes a record its own class test accepts, and the
    // class tests tell the record classes apart.
    void factoriesMatchClassTests()
    {
        for (const VxItemRow &row : VxItemRegistry::rows()) {
            if (!row.create)
                continue;
            std::unique_ptr<CDetectInfo> pRecord(row.create());
            QVERIFY(pRecord);
            QVERIFY2(row.fits(*pRecord), row.pName);
            std::unique_ptr<CDetectInfo> pPlain(new CDetectInfo);
            const bool bPlainRecord = typeid(*pRecord) == typeid(CDetectInfo);
            QCOMPARE(row.fits(*pPlain), bPlainRecord);
        }
    }

    // A table entry written for a record class refuses a record of another
    // class instead of misreading it.
    void typedEntriesCheckTheRecordClass()
    {
        VxProbeTable table;
        int nCalls = 0;
        table.setCheck(VxItems::JumboFrame, [&nCalls](CJumboPacketDetectInfo &) { ++nCalls; });
        table.setRepair(VxItems::JumboFrame, [&nCalls](CJumboPacketDetectInfo &) { ++nCalls; });
        CNetworkSpeedDetectInfo wrong;
        CJumboPacketDetectInfo right;
        table.probes(VxItems::JumboFrame).check(wrong);
        QCOMPARE(table.probes(VxItems::JumboFrame).repair(wrong).status, VxRepairStatus::Failed);
        QCOMPARE(nCalls, 0);
        table.probes(VxItems::JumboFrame).check(right);
        QVERIFY(table.probes(VxItems::JumboFrame).repair(right).ok());
        QCOMPARE(nCalls, 2);

        table.setPlan(VxItems::JumboFrame, [&nCalls](const CJumboPacketDetectInfo &) {
            ++nCalls;
            return VxPlan{VxChange{VxItems::JumboFrame, VxChangeKind::Mtu, "eth0", "1500", "9000"}};
        });
        QVERIFY(table.probes(VxItems::JumboFrame).plan(wrong).isEmpty());
        QCOMPARE(nCalls, 2);
        QCOMPARE(table.probes(VxItems::JumboFrame).plan(right).size(), 1);
        QCOMPARE(nCalls, 3);
    }

    // The journaled items say beforehand what their repair changes; on
    // Windows, whose repairs are not journaled, the plans are empty.
    void journaledItemsHavePlans()
    {
        const VxProbeTable table = defaultProbeTable();
        for (quint32 uItem : {VxItems::SdkFiles, VxItems::EnvVariables, VxItems::JumboFrame})
            QVERIFY2(bool(table.probes(uItem).plan), qPrintable(QString::number(uItem)));

        QTemporaryDir root;
        QVERIFY(root.isValid());
        QVERIFY(QDir().mkpath(root.path() + "/etc"));
        QFile file(root.path() + "/etc/environment");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("PATH=\"/usr/bin:/bin\"\n");
        file.close();
        qputenv("VETRIX_SYSROOT", root.path().toLocal8Bit());
        for (const char *pName : {"LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
                 "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"})
            qunsetenv(pName);
        std::unique_ptr<CDetectInfo> pEnv(createDetectInfo(VxItems::EnvVariables));
        table.probes(VxItems::EnvVariables).check(*pEnv);
        const VxPlan plan = table.probes(VxItems::EnvVariables).plan(*pEnv);
#ifdef Q_OS_WIN
        QVERIFY(plan.isEmpty());
#else
        QCOMPARE(pEnv->bNormal, 0);
        QVERIFY(!plan.isEmpty());
        for (const VxChange &change : plan) {
            QCOMPARE(change.uItem, quint32(VxItems::EnvVariables));
            QCOMPARE(change.strKind, QString(VxChangeKind::Environment));
        }
        // The row's repair applies that plan as one journaled optimisation.
        QVERIFY(QDir().mkpath(root.path() + "/var/lib"));
        const VxProbeTable rooted = defaultProbeTable(VxPrivileges(QString(), VxPrivileges::Rights::Root));
        QVERIFY(rooted.probes(VxItems::EnvVariables).repair(*pEnv).ok());
        QCOMPARE(pEnv->bNormal, 1);
        const QVector<VxOptimisation> vecDone = VxJournal().optimisations();
        QCOMPARE(vecDone.size(), 1);
#endif
        qunsetenv("VETRIX_SYSROOT");
    }
};

QTEST_GUILESS_MAIN(TstVxItemRegistry)
#include "tst_vxitemregistry.moc"
