#include "itemrows.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxrepair.h"

#include <QtTest>

#include <memory>

// The camera host tuning rows: complete by the registry's own rules, in
// their group, each with a repair but the GenTL audit and the USB3 Vision
// link check, and their lines and
// facts written for their own records only.
class TstTuningItemRows : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreComplete()
    {
        const QVector<VxItemRow> rows = tuningItemRows();
        QVector<int> ids;
        for (const VxItemRow &row : rows) {
            ids << int(row.id);
            QCOMPARE(int(row.group), 8);
            const VxItemProbes probes = row.defaultProbes(VxPrivileges(QString(), VxPrivileges::Rights::User));
            const QStringList gaps = VxItemRegistry::rowGaps(row, probes);
            QVERIFY2(gaps.isEmpty(), qPrintable(QString::number(row.id) + ": " + gaps.join("; ")));
            QCOMPARE(row.repair == VxRepairKind::Repair, row.id != 32768 && row.id != 65536);
            std::unique_ptr<CDetectInfo> pRecord(createDetectInfo(int(row.id)));
            QVERIFY(pRecord);
            QCOMPARE(pRecord->nItem, int(row.id));
            QVERIFY(row.fits(*pRecord));
            QVERIFY(!row.lines(*pRecord).isEmpty());
            // Another item's record gets nothing.
            CDetectInfo other;
            QVERIFY(!row.fits(other));
            QVERIFY(row.lines(other).isEmpty());
            QVERIFY(row.facts(other).isEmpty());
        }
        QCOMPARE(ids, (QVector<int>{4096, 8192, 16384, 32768, 65536}));
        QCOMPARE(VxItems::groupName(VxItems::CameraHostTuningGroup), QString("Camera Host Tuning"));
    }
};

QTEST_GUILESS_MAIN(TstTuningItemRows)
#include "tst_tuningitemrows.moc"
