// Hammers the operate thread with rapid start, stop and restart requests, as
// an impatient user or a scripted GUI would. Run under the thread and address
// sanitizers; the observers only touch atomics so the report is about the
// thread's own synchronisation.
#include "fakeprobes.h"
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
    std::atomic<int> nItemEnds{0};
    {
        VxOperateThread thread(fakes.table());
        thread.setItemPause(pause);
        QObject::connect(&thread, &VxOperateThread::sigStartOperate, &thread, [&] { ++nStarts; },
                         Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigEndOperate, &thread, [&] { ++nEnds; }, Qt::DirectConnection);
        QObject::connect(&thread, &VxOperateThread::sigEndDetectItem, &thread,
                         [&](CDetectInfo *pInfo) { nItemEnds += pInfo->nItem > 0; }, Qt::DirectConnection);
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
        // The records are still whole after the storm.
        QCOMPARE(thread.detectInfo(VxItems::SdkFiles)->nItem, int(VxItems::SdkFiles));
    }
    QCOMPARE(fakes.nTreesAlive.load(), 0);
}

QTEST_GUILESS_MAIN(TestVxOperateThreadStress)
#include "tst_vxoperatethread_stress.moc"
