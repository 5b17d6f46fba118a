#include "fakeprobes.h"
#include "vxitems.h"
#include "vxoperatethread.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>

namespace {
constexpr quint32 kAll = VxItems::kAllItemsMask;

// Every signal of the thread as one line, in arrival order.
class SignalLog : public QObject
{
public:
    explicit SignalLog(VxOperateThread &thread)
    {
        connect(&thread, &VxOperateThread::sigStartOperate, this,
                [this](bool b) { lines << QStringLiteral("start %1").arg(b ? "detect" : "optimize"); });
        connect(&thread, &VxOperateThread::sigEndOperate, this,
                [this](bool b) { lines << QStringLiteral("end %1").arg(b ? "detect" : "optimize"); });
        connect(&thread, &VxOperateThread::sigStartDetectItem, this,
                [this](CDetectInfo *p) { lines << QStringLiteral("start item %1").arg(p->nItem); });
        connect(&thread, &VxOperateThread::sigEndDetectItem, this,
                [this](CDetectInfo *p) { lines << QStringLiteral("end item %1").arg(p->nItem); });
        connect(&thread, &VxOperateThread::sigStartOptimizeItem, this,
                [this](CDetectInfo *p) { lines << QStringLiteral("start fix %1").arg(p->nItem); });
        connect(&thread, &VxOperateThread::sigEndOptimizeItem, this,
                [this](CDetectInfo *p) { lines << QStringLiteral("end fix %1").arg(p->nItem); });
        connect(&thread, &VxOperateThread::sigWarning, this,
                [this](const QString &s) { lines << QStringLiteral("warning %1").arg(s); });
    }
    QStringList lines;
};

QStringList detectLines(const QVector<int> &items)
{
    QStringList lines;
    for (int n : items)
        lines << QStringLiteral("start item %1").arg(n) << QStringLiteral("end item %1").arg(n);
    return lines;
}
} // namespace

class TestVxOperateThread : public QObject
{
    Q_OBJECT
private slots:
    void signalOrderMatchesDeclaration();
    void emptyMaskStillPausesOnce();
    void detectionRunsItemsInOrder();
    void detectionSkipsItemsWithoutProbe();
    void stopInPauseBeforeItemFourKeepsRemainingBits();
    void stopAndResumeContinuesWhereItStopped();
    void newStartCutsOldPassWithoutEndSignal();
    void usbTree_data();
    void usbTree();
    void usbTreeReplacedOnRerun();
    void optimizationOrderAndMasks();
    void missingInstallerWarns();
    void installPollingSucceeds();
    void installPollingTimesOut();
    void removeItemClearsCurrentModeBit();
    void stopDetectAndResetClearMasks();
    void warningHandlerGetsParent();
};

void TestVxOperateThread::signalOrderMatchesDeclaration()
{
    const QMetaObject &meta = VxOperateThread::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            names << QString::fromLatin1(meta.method(i).name());
    }
    QCOMPARE(names, (QStringList{"sigStartOperate", "sigEndOperate", "sigStartDetectItem", "sigEndDetectItem",
                                 "sigStartOptimizeItem", "sigEndOptimizeItem", "sigWarning"}));
}

void TestVxOperateThread::emptyMaskStillPausesOnce()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table());
    SignalLog log(thread);
    QElapsedTimer timer;
    timer.start();
    thread.startDetect(0);
    QTRY_COMPARE_WITH_TIMEOUT(log.lines, (QStringList{"start detect", "end detect"}), 5000);
    QVERIFY2(timer.elapsed() >= 450, "the pass ends after one 500 ms pause");
    QVERIFY(fakes.takeCalls().isEmpty());
}

void TestVxOperateThread::detectionRunsItemsInOrder()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(1);
    SignalLog log(thread);
    thread.startDetect(kAll);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
    QCOMPARE(log.lines, QStringList{"start detect"} + detectLines({1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048})
                            + QStringList{"end detect"});
    QCOMPARE(thread.pendingDetectMask(), 0u);
    // 512 takes the tree item 32 built.
    QCOMPARE(fakes.takeCalls(), (QStringList{"detect 1", "detect 2", "detect 4", "detect 8", "detect 32",
                                             "detect 1024", "detect 256", "detect 128", "detect 2048"}));
}

void TestVxOperateThread::detectionSkipsItemsWithoutProbe()
{
    FakeProbes fakes;
    VxProbeTable table = fakes.table();
    table.setCheck(VxItems::Firewall, nullptr);
    VxOperateThread thread(table);
    thread.setItemPause(1);
    SignalLog log(thread);
    thread.startDetect(VxItems::Firewall | VxItems::LineRate);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
    QCOMPARE(log.lines, QStringList{"start detect"} + detectLines({128}) + QStringList{"end detect"});
    QCOMPARE(thread.pendingDetectMask(), quint32(VxItems::Firewall));
}

// The stop requests below are made on the worker, straight from the end
// signal of an item (a direct connection): a request sent through the event
// loop would land wherever a loaded machine lets the GUI thread catch up
// with the worker, and the test would then check a different case.
void TestVxOperateThread::stopInPauseBeforeItemFourKeepsRemainingBits()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table()); // the product's 500 ms pause
    SignalLog log(thread);
    connect(&thread, &VxOperateThread::sigEndDetectItem, &thread, [&thread](CDetectInfo *pInfo) {
        if (pInfo->nItem == VxItems::EnvVariables)
            thread.stop(); // seen in the pause before item 4
    }, Qt::DirectConnection);
    thread.startDetect(kAll);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 10000);
    QVERIFY(thread.wait(5000));
    QVERIFY(!log.lines.contains("start item 4"));
    QVERIFY(!log.lines.contains("end item 4"));
    QCOMPARE(log.lines.last(), QStringLiteral("end detect"));
    QCOMPARE(thread.pendingDetectMask(), kAll & ~quint32(VxItems::SdkFiles | VxItems::EnvVariables));
}

void TestVxOperateThread::stopAndResumeContinuesWhereItStopped()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(20);
    SignalLog log(thread);
    connect(&thread, &VxOperateThread::sigEndDetectItem, &thread, [&thread](CDetectInfo *pInfo) {
        if (pInfo->nItem == VxItems::Usb3Driver)
            thread.stop();
    }, Qt::DirectConnection);
    thread.startDetect(kAll);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
    QVERIFY(thread.wait(5000));
    const quint32 uLeft = thread.pendingDetectMask();
    QCOMPARE(uLeft, kAll & ~quint32(VxItems::SdkFiles | VxItems::EnvVariables | VxItems::GigeDriver
                                    | VxItems::Usb3Driver));

    log.lines.clear();
    fakes.takeCalls();
    thread.startDetect(uLeft);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
    QVERIFY(!log.lines.contains("start item 1"));
    QVERIFY(!log.lines.contains("start item 8"));
    QVERIFY(log.lines.contains("end item 2048"));
    QCOMPARE(thread.pendingDetectMask(), 0u);
}

// The old pass is held inside item 4's probe until the new start is under
// way, so the new start always finds it running.
void TestVxOperateThread::newStartCutsOldPassWithoutEndSignal()
{
    FakeProbes fakes;
    QSemaphore gate;
    std::atomic<bool> bInProbe{false};
    fakes.onStatusCheck = [&] {
        bInProbe = true;
        gate.acquire();
    };
    VxOperateThread thread(fakes.table());
    thread.setItemPause(30);
    SignalLog log(thread);
    thread.startDetect(kAll);
    QTRY_VERIFY_WITH_TIMEOUT(bInProbe.load(), 5000);
    // Let the probe finish once the new start waits for the old pass.
    QTimer::singleShot(0, this, [&gate] { gate.release(100); });
    thread.startDetect(VxItems::SystemInfo);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
    QVERIFY(thread.wait(5000));
    QTest::qWait(50);
    QCOMPARE(log.lines.count("start detect"), 2);
    QCOMPARE(log.lines.count("end detect"), 1);
    QVERIFY(!log.lines.contains("end item 4"));
    QCOMPARE(log.lines.mid(log.lines.size() - 4),
             (QStringList{"start detect", "start item 2048", "end item 2048", "end detect"}));
}

void TestVxOperateThread::usbTree_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QStringList>("calls");
    QTest::addRow("only 512 builds through the tree probe") << quint32(512) << QStringList{"detect 512"};
    QTest::addRow("32 and 512 build the tree once") << quint32(32 | 512) << QStringList{"detect 32"};
    QTest::addRow("only 32 hands its tree to 512") << quint32(32) << QStringList{"detect 32"};
}

void TestVxOperateThread::usbTree()
{
    QFETCH(quint32, mask);
    QFETCH(QStringList, calls);
    FakeProbes fakes;
    {
        VxOperateThread thread(fakes.table());
        thread.setItemPause(0);
        SignalLog log(thread);
        thread.startDetect(mask);
        QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end detect"), 5000);
        QCOMPARE(fakes.takeCalls(), calls);
        QCOMPARE(fakes.nTreesBuilt.load(), 1);
        auto *pUsb = dynamic_cast<CUsbBasicDetectInfo *>(thread.detectInfo(512));
        QVERIFY(pUsb && pUsb->pRootItem);
        if (mask & 512)
            QVERIFY(log.lines.contains("end item 512"));
    }
    QCOMPARE(fakes.nTreesAlive.load(), 0); // the thread's destructor frees the tree
}

void TestVxOperateThread::usbTreeReplacedOnRerun()
{
    FakeProbes fakes;
    {
        VxOperateThread thread(fakes.table());
        thread.setItemPause(0);
        // Waiting for the thread rather than counting its signals: a signal
        // spy would append on the worker while the test reads it.
        for (int i = 0; i < 3; ++i) {
            thread.startDetect(32 | 512);
            QVERIFY(thread.wait(5000));
            QCOMPARE(fakes.nTreesAlive.load(), 1);
        }
        thread.startDetect(512);
        QVERIFY(thread.wait(5000));
        QCOMPARE(fakes.nTreesAlive.load(), 1);
        QCOMPARE(fakes.nTreesBuilt.load(), 4);
    }
    QCOMPARE(fakes.nTreesAlive.load(), 0);
}

void TestVxOperateThread::optimizationOrderAndMasks()
{
    FakeProbes fakes;
    fakes.nChecksUntilInstalled = 1;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(1);
    SignalLog log(thread);
    thread.detectInfo(4)->bNormal = 0;
    thread.detectInfo(8)->bNormal = 0;
    thread.startOptimize(VxItems::kAllItemsMask);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end optimize"), 5000);
    QStringList expected{"start optimize"};
    for (int n : {1, 2, 4, 8, 256})
        expected << QStringLiteral("start fix %1").arg(n) << QStringLiteral("end fix %1").arg(n);
    expected << "end optimize";
    QCOMPARE(log.lines, expected);
    QCOMPARE(fakes.takeCalls(), (QStringList{"clear 1", "repair 2", "detect 2", "install 4", "detect 4",
                                             "install 8", "detect 8", "repair 256"}));
    // Only the repairable items leave the mask; the others were never run.
    QCOMPARE(thread.pendingOptimizeMask(), VxItems::kAllItemsMask & ~quint32(1 | 2 | 4 | 8 | 256));
}

void TestVxOperateThread::missingInstallerWarns()
{
    FakeProbes fakes;
    fakes.bInstallFound = false;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(0);
    SignalLog log(thread);
    thread.detectInfo(4)->bNormal = 1;
    thread.startOptimize(VxItems::GigeDriver);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end optimize"), 5000);
    QCOMPARE(log.lines, (QStringList{"start optimize", "start fix 4", "end fix 4", "warning File doesn't exist.",
                                     "end optimize"}));
    QCOMPARE(thread.detectInfo(4)->bNormal, 0);
    QCOMPARE(thread.pendingOptimizeMask(), quint32(VxItems::GigeDriver));
    QCOMPARE(fakes.takeCalls(), QStringList{"install 4"});
}

void TestVxOperateThread::installPollingSucceeds()
{
    FakeProbes fakes;
    fakes.nChecksUntilInstalled = 3;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(0);
    SignalLog log(thread);
    thread.detectInfo(8)->bNormal = 0;
    thread.startOptimize(VxItems::Usb3Driver);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end optimize"), 5000);
    QCOMPARE(log.lines, (QStringList{"start optimize", "start fix 8", "end fix 8", "end optimize"}));
    QCOMPARE(fakes.nStatusChecks.load(), 3);
    QCOMPARE(thread.detectInfo(8)->bNormal, 1);
    QCOMPARE(thread.pendingOptimizeMask(), 0u);
}

void TestVxOperateThread::installPollingTimesOut()
{
    // Time moves 100 s with every status check, so the ten-minute limit is
    // reached after six checks without waiting for it.
    FakeProbes fakes;
    std::atomic<qint64> nNow{1000};
    fakes.onStatusCheck = [&nNow] { nNow += 100000; };
    VxOperateThread thread(fakes.table());
    thread.setClock([&nNow] { return nNow.load(); });
    thread.setItemPause(0);
    SignalLog log(thread);
    thread.detectInfo(4)->bNormal = 0;
    thread.startOptimize(VxItems::GigeDriver);
    QTRY_VERIFY_WITH_TIMEOUT(log.lines.contains("end optimize"), 5000);
    QCOMPARE(log.lines, (QStringList{"start optimize", "start fix 4", "end fix 4",
                                     "warning Installation of the driver timed out.", "end optimize"}));
    QCOMPARE(fakes.nStatusChecks.load(), 6);
    QCOMPARE(thread.pendingOptimizeMask(), quint32(VxItems::GigeDriver));
}

void TestVxOperateThread::removeItemClearsCurrentModeBit()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(0);
    // An unknown item keeps both masks; the optimize mask is the current one
    // after an optimization pass.
    thread.prepareRun(false, VxItems::SdkFiles | VxItems::JumboFrame, 0);
    thread.onRemoveItem(VxItems::JumboFrame);
    QCOMPARE(thread.pendingOptimizeMask(), quint32(VxItems::SdkFiles));
    thread.prepareRun(true, VxItems::LineRate | VxItems::Firewall, 0);
    thread.onRemoveItem(VxItems::Firewall);
    QCOMPARE(thread.pendingDetectMask(), quint32(VxItems::LineRate));
    QCOMPARE(thread.pendingOptimizeMask(), quint32(VxItems::SdkFiles));
}

void TestVxOperateThread::stopDetectAndResetClearMasks()
{
    FakeProbes fakes;
    VxOperateThread thread(fakes.table());
    thread.setItemPause(50);
    thread.startDetect(kAll);
    thread.stopDetect();
    QCOMPARE(thread.pendingDetectMask(), 0u);
    QVERIFY(thread.wait(5000));
    thread.startOptimize(VxItems::SdkFiles | VxItems::JumboFrame);
    thread.stopOptimizeAndWait();
    QVERIFY(!thread.isRunning());
    QCOMPARE(thread.pendingOptimizeMask(), 0u);
    thread.prepareRun(true, kAll, 0);
    thread.reset();
    QCOMPARE(thread.pendingDetectMask(), 0u);
    QCOMPARE(thread.pendingOptimizeMask(), 0u);
}

void TestVxOperateThread::warningHandlerGetsParent()
{
    FakeProbes fakes;
    fakes.bInstallFound = false;
    QObject owner;
    auto *pThread = new VxOperateThread(fakes.table(), &owner);
    pThread->setItemPause(0);
    QObject *pSeenParent = nullptr;
    QString strSeen;
    VxOperateThread::setWarningHandler([&](QObject *pParent, const QString &strInfo) {
        pSeenParent = pParent;
        strSeen = strInfo;
    });
    pThread->startOptimize(VxItems::Usb3Driver);
    QTRY_COMPARE_WITH_TIMEOUT(strSeen, QStringLiteral("File doesn't exist."), 5000);
    QCOMPARE(pSeenParent, &owner);
    VxOperateThread::setWarningHandler(nullptr);
    pThread->wait(5000);
}

QTEST_GUILESS_MAIN(TestVxOperateThread)
#include "tst_vxoperatethread.moc"
