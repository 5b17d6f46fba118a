// Hammers the operate thread with rapid start, stop and restart requests, as
// an impatient user or a scripted GUI would. Run under the thread and address
// sanitizers; the observers only touch atomics so the report is about the
// thread's own synchronisation.
#include "fakeprobes.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxoperatethread.h"

#include <QtTest>

#include <atomic>

class TestVxOperateThreadStress : public QObject
{
    Q_OBJECT
private slots:
    void rapidStartStopCycles_data();
    void rapidStartStopCycles();
};

void TestVxOperateThreadStress::rapidStartStopCycles_data()
{
    QTest::addColumn<int>("pause");
    QTest::addRow("back to back") << 0;
    QTest::addRow("1 ms pauses") << 1;
}

void TestVxOperateThreadStress::rapidStartStopCycles()
{
    QFETCH(int, pause);
    FakeProbes fakes;
    fakes.nChecksUntilInstalled = 1;
    std::atomic<int> nStarts{0};
    std::atomic<int> nEnds{0};
    std::atomic<int> nItemStarts{0};
    std::atomic<int> nItemEnds{0};
    // The item a pass has started and not yet ended (0: none), and every
    // signal that breaks the order start, end, start, end... within a pass.
    std::atomic<int> nOpenItem{0};
    std::atomic<int> nOutOfOrder{0};
    {
        VxOperateThread thread(fakes.table());
        thread.setItemPause(pause);
        // Direct connections: the observers run on the worker, in the order
        // the signals are emitted.
        QObject::connect(&thread, &VxOperateThread::sigStartOperate, &thread, [&] {
            ++nStarts;
            nOpenItem = 0; // an item cut short by a stop sends no end
        }, Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigEndOperate, &thread, [&] { ++nEnds; }, Qt::DirectConnection);
        auto itemStarted = [&](CDetectInfo *pInfo) {
            ++nItemStarts;
            if (nOpenItem.exchange(pInfo->nItem) != 0)
                ++nOutOfOrder;
        };
        auto itemEnded = [&](CDetectInfo *pInfo) {
            ++nItemEnds;
            if (nOpenItem.exchange(0) != pInfo->nItem)
                ++nOutOfOrder;
        };
        QObject::connect(&thread, &VxOperateThread::sigStartDetectItem, &thread, itemStarted, Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigStartOptimizeItem, &thread, itemStarted, Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigEndDetectItem, &thread, itemEnded, Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigEndOptimizeItem, &thread, itemEnded, Qt::DirectConnection);
        for (int i = 0; i < 1000; ++i) {
            if (i % 2)
                thread.startDetect(VxItems::kAllItemsMask);
            else
                thread.startOptimize(VxItems::SdkFiles | VxItems::EnvVariables | VxItems::JumboFrame
                                     | VxItems::GigeDriver);
            switch (i % 5) {
            case 0:
                thread.stop();
                break;
            case 1:
                QVERIFY(thread.stopAndWait());
                break;
            case 2:
                thread.reset();
                break;
            case 3:
                thread.onRemoveItem(VxItems::JumboFrame);
                break;
            default:
                break; // the next start cuts this pass short
            }
        }
        QVERIFY(thread.stopAndWait());
        QVERIFY(!thread.isRunning());
        // A pass cut short by a new start sends no end signal; every other
        // pass does, so ends never outnumber starts.
        QVERIFY(nStarts.load() > 0);
        QVERIFY(nEnds.load() <= nStarts.load());
        // Every item end closes the item its pass started last, and no item
        // starts while another is open; an item cut short by a stop is the
        // only one that may end without its end signal.
        QCOMPARE(nOutOfOrder.load(), 0);
        QVERIFY(nItemEnds.load() <= nItemStarts.load());
        QVERIFY(nItemStarts.load() - nItemEnds.load() <= nStarts.load());

        // After the storm a detection left alone runs every item once.
        const int nStartsBefore = nItemStarts.load();
        const int nEndsBefore = nItemEnds.load();
        const int nPassEndsBefore = nEnds.load();
        thread.startDetect(VxItemRegistry::shownMask());
        QTRY_COMPARE_WITH_TIMEOUT(nEnds.load(), nPassEndsBefore + 1, 30000);
        QVERIFY(thread.wait());
        QCOMPARE(nItemStarts.load() - nStartsBefore, VxItems::detectOrder().size());
        QCOMPARE(nItemEnds.load() - nEndsBefore, VxItems::detectOrder().size());
        QCOMPARE(thread.pendingDetectMask(), 0u);
        QCOMPARE(nOutOfOrder.load(), 0);
        // The records are still whole after the storm.
        QCOMPARE(thread.detectInfo(VxItems::SdkFiles)->nItem, int(VxItems::SdkFiles));
    }
    QCOMPARE(fakes.nTreesAlive.load(), 0);
}

QTEST_GUILESS_MAIN(TestVxOperateThreadStress)
#include "tst_vxoperatethread_stress.moc"
