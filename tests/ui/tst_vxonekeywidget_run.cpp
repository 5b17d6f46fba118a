// The one-key page while a pass runs: the optimisation title's counts, the
// result rows the worker is still working on, a language change mid-run,
// the row buttons' places after a stop, and the scroll position of a new run.
#include "../engine/fakeprobes.h"
#include "custompushbutton.h"
#include "vxitems.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"

#include <QScopeGuard>
#include <QScrollBar>
#include <QSemaphore>
#include <QTranslator>
#include <QtTest>

#include <atomic>

namespace {
// Holds a probe until the test lets it go. A test declares it before the
// page and opens it with a scope guard declared after the page, so a failing
// check never leaves the worker (and the page's destructor) waiting.
struct Gate
{
    QSemaphore semaphore;
    std::atomic<bool> bReached{false};
    void pass()
    {
        bReached = true;
        semaphore.acquire();
    }
    void open() { semaphore.release(1000); }
};

void waitForEnd(VxOneKeyWidget &page)
{
    QTRY_VERIFY_WITH_TIMEOUT(page.isWorkerIdle() && page.state() != VxOneKeyWidget::Detecting
                                 && page.state() != VxOneKeyWidget::Optimizing,
                             10000);
}

VxOneKeyResultTree *treeOf(VxOneKeyWidget &page)
{
    return page.resultArea()->tree();
}
} // namespace

class TestVxOneKeyWidgetRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void optimizationTitleCountsFinishedItems();
    void rowButtonsWaitForTheWorker();
    void languageChangeKeepsTheProgress();
    void buttonsStayInTheirRowsAfterAStop_data();
    void buttonsStayInTheirRowsAfterAStop();
    void diagnoseAgainScrollsToTheTop();
    void optimizationAsksWithThePlan();

private:
    FakeProbes *m_pFakes = nullptr;
    // The probes the pages of the next test run.
    std::function<VxProbeTable()> m_tableSource;
};

void TestVxOneKeyWidgetRun::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    // These tests start optimisations without looking at the plan.
    VxOneKeyWidget::setConfirmOptimization([](QWidget *, const QStringList &) { return true; });
}

void TestVxOneKeyWidgetRun::init()
{
    m_pFakes = new FakeProbes;
    m_pFakes->nChecksUntilInstalled = 1;
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes] { return pFakes->tableWithoutTrees(); };
}

void TestVxOneKeyWidgetRun::cleanup()
{
    m_tableSource = nullptr;
    delete m_pFakes;
    m_pFakes = nullptr;
}

// Three exceptional items, each repaired: the title counts the finished
// items out of the three, and the numbers never pass each other.
void TestVxOneKeyWidgetRun::optimizationTitleCountsFinishedItems()
{
    std::atomic<bool> bSdkCleared{false}, bEnvRepaired{false}, bJumboRepaired{false};
    std::atomic<bool> bJumboRepairWorks{true};
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [&, pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::SdkFiles, [&](CSDKPathDetectInfo &info) { info.bNormal = bSdkCleared; });
        table.setRepair(VxItems::SdkFiles, [&](CSDKPathDetectInfo &info) {
            bSdkCleared = true;
            info.bNormal = 1;
        });
        table.setCheck(VxItems::EnvVariables, [&](CEnvDetectInfo &info) { info.bNormal = bEnvRepaired; });
        table.setRepair(VxItems::EnvVariables, [&](CEnvDetectInfo &) { bEnvRepaired = true; });
        table.setCheck(VxItems::JumboFrame, [&](CJumboPacketDetectInfo &info) { info.bNormal = bJumboRepaired; });
        table.setRepair(VxItems::JumboFrame, [&](CJumboPacketDetectInfo &info) {
            bJumboRepaired = bJumboRepairWorks.load();
            info.bNormal = bJumboRepaired;
        });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.worker()->setItemPause(1);
    page.show();
    QStringList listTitles;
    auto record = [&] { listTitles << page.titleText(); };
    // Queued like the page's own connections and made after them, so each
    // runs after the page has handled the signal.
    connect(page.worker(), &VxOperateThread::sigStartOptimizeItem, this, record);
    connect(page.worker(), &VxOperateThread::sigEndOptimizeItem, this, record);

    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    waitForEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    bJumboRepairWorks = false;
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    record();
    waitForEnd(page);
    const QString strSdk = VxItems::itemName(VxItems::SdkFiles);
    const QString strEnv = VxItems::itemName(VxItems::EnvVariables);
    const QString strJumbo = VxItems::itemName(VxItems::JumboFrame);
    auto title = [](const QString &strName, int nDone, int nOf) {
        return QStringLiteral("Optimization: %1(%2/%3)").arg(strName).arg(nDone).arg(nOf);
    };
    QCOMPARE(listTitles, (QStringList{title(QString(), 0, 3), title(strSdk, 0, 3), title(strSdk, 1, 3),
                                      title(strEnv, 1, 3), title(strEnv, 2, 3), title(strJumbo, 2, 3),
                                      title(strJumbo, 3, 3)}));
    // The jumbo repair did not take: one exception is left to optimise.
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    QVERIFY(page.operateButton1()->isEnabled());

    listTitles.clear();
    bJumboRepairWorks = true;
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    record();
    waitForEnd(page);
    QCOMPARE(listTitles, (QStringList{title(QString(), 0, 1), title(strJumbo, 0, 1), title(strJumbo, 1, 1)}));
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    QVERIFY(!page.operateButton1()->isEnabled());
}

// While the optimisation installs the GigE driver, the USB3 Vision row (not
// reached yet) and the GigE row (in progress) cannot start an installer;
// the finished environment row can open its dialog.
void TestVxOneKeyWidgetRun::rowButtonsWaitForTheWorker()
{
    std::atomic<bool> bEnvRepaired{false}, bGigeInstalled{false}, bUsbInstalled{false};
    std::atomic<int> nUsbInstalls{0};
    Gate gigeInstall;
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [&, pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::EnvVariables, [&](CEnvDetectInfo &info) { info.bNormal = bEnvRepaired; });
        table.setRepair(VxItems::EnvVariables, [&](CEnvDetectInfo &) { bEnvRepaired = true; });
        table.setCheck(VxItems::GigeDriver, [&](CDetectInfo &info) { info.bNormal = bGigeInstalled; });
        table.setInstall(VxItems::GigeDriver, [&] {
            gigeInstall.pass();
            bGigeInstalled = true;
            return true;
        });
        table.setCheck(VxItems::Usb3Driver, [&](CDetectInfo &info) { info.bNormal = bUsbInstalled; });
        table.setInstall(VxItems::Usb3Driver, [&] {
            ++nUsbInstalls;
            bUsbInstalled = true;
            return true;
        });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    const auto openAtEnd = qScopeGuard([&gigeInstall] { gigeInstall.open(); });
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    waitForEnd(page);
    VxOneKeyResultTree *pTree = treeOf(page);
    QVERIFY(pTree->button(VxItems::Usb3Driver)->isEnabled()); // "Install Driver" before the pass

    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(gigeInstall.bReached.load(), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(pTree->button(VxItems::EnvVariables)->isEnabled(), 10000);
    QVERIFY(!pTree->button(VxItems::GigeDriver)->isEnabled());
    QVERIFY(!pTree->button(VxItems::Usb3Driver)->isEnabled());
    // Even a click that gets through starts nothing.
    emit pTree->button(VxItems::Usb3Driver)->clicked();
    emit pTree->button(VxItems::GigeDriver)->clicked();
    QCOMPARE(nUsbInstalls.load(), 0);

    gigeInstall.open();
    waitForEnd(page);
    QCOMPARE(nUsbInstalls.load(), 1);
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    // After the pass the rows follow their outcome again.
    QVERIFY(pTree->button(VxItems::EnvVariables)->isEnabled());
    QCOMPARE(pTree->button(VxItems::Usb3Driver)->text(), QStringLiteral("Installed"));
}

// Switching the language while the firewall is being checked keeps the
// item's name in the progress title and the group numbers as they were.
void TestVxOneKeyWidgetRun::languageChangeKeepsTheProgress()
{
    Gate firewall;
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [&, pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) { info.bNormal = 0; });
        table.setCheck(VxItems::Firewall, [&](CDetectInfo &) { firewall.pass(); });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    const auto openAtEnd = qScopeGuard([&firewall] { firewall.open(); });
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(firewall.bReached.load(), 10000);
    const QString strFirewall = VxItems::itemName(VxItems::Firewall);
    QTRY_COMPARE_WITH_TIMEOUT(page.titleText(), QStringLiteral("Diagnosis: %1(6/15)").arg(strFirewall), 10000);
    QCOMPARE(page.groupNumberText(0), QStringLiteral("5"));
    QCOMPARE(page.groupNumberText(2), QStringLiteral("1"));

    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(VX_BIN_DIR "/Translation/Vetrix_zh.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const auto removeAtEnd = qScopeGuard([&translator] { QCoreApplication::removeTranslator(&translator); });
    const QString strTranslated = VxItems::itemName(VxItems::Firewall);
    QVERIFY(strTranslated != strFirewall);
    const QString strExpected =
        QCoreApplication::translate("VxOneKeyWidget", "Diagnosis: %1(%2/%3)").arg(strTranslated).arg(6).arg(15);
    QTRY_COMPARE_WITH_TIMEOUT(page.titleText(), strExpected, 5000);
    QCOMPARE(page.groupNumberText(0), QStringLiteral("5"));
    QCOMPARE(page.groupNumberText(2), QStringLiteral("1"));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QTRY_COMPARE_WITH_TIMEOUT(page.titleText(), QStringLiteral("Diagnosis: %1(6/15)").arg(strFirewall), 5000);
    firewall.open();
    waitForEnd(page);
}

void TestVxOneKeyWidgetRun::buttonsStayInTheirRowsAfterAStop_data()
{
    QTest::addColumn<int>("item");
    for (int nItem : VxItems::detectOrder())
        QTest::addRow("stop after item %d", nItem) << nItem;
}

// "Stop Diagnosis" right after an item ended: every shown row button lies
// inside its own row.
void TestVxOneKeyWidgetRun::buttonsStayInTheirRowsAfterAStop()
{
    QFETCH(int, item);
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.resize(1366, 700);
    page.worker()->setItemPause(1);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    connect(page.worker(), &VxOperateThread::sigEndDetectItem, this, [&page, item](CDetectInfo *pInfo) {
        if (pInfo->nItem == item && page.state() == VxOneKeyWidget::Detecting)
            page.onOperateClicked2();
    });
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    // The worker may be done before the page has seen its signals: wait for
    // both.
    QTRY_VERIFY_WITH_TIMEOUT(page.isWorkerIdle() && page.state() != VxOneKeyWidget::Detecting, 10000);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectAborted));
    QTest::qWait(50); // let the view lay itself out
    VxOneKeyResultTree *pTree = treeOf(page);
    int nShown = 0;
    for (int nItem : VxItems::detectOrder()) {
        CustomPushButton *pButton = pTree->button(nItem);
        if (!pButton->isVisible())
            continue;
        ++nShown;
        const QRect rowRect = pTree->visualItemRect(pTree->itemRow(nItem));
        const QRect buttonRect(pButton->mapTo(pTree->viewport(), QPoint(0, 0)), pButton->size());
        QVERIFY2(rowRect.contains(buttonRect),
                 qPrintable(QStringLiteral("item %1: button at y %2..%3, row at y %4..%5")
                                .arg(nItem)
                                .arg(buttonRect.top())
                                .arg(buttonRect.bottom())
                                .arg(rowRect.top())
                                .arg(rowRect.bottom())));
    }
    QCOMPARE(nShown, VxItems::detectOrder().indexOf(item) + 1);
}

// "Diagnose Again" shows the new run from the first row.
void TestVxOneKeyWidgetRun::diagnoseAgainScrollsToTheTop()
{
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.resize(1200, 450);
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    waitForEnd(page);
    QScrollBar *pBar = treeOf(page)->verticalScrollBar();
    QTRY_VERIFY(pBar->maximum() > 0);
    pBar->setValue(pBar->maximum());
    QVERIFY(pBar->value() > 0);
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QCOMPARE(page.state(), int(VxOneKeyWidget::Detecting));
    QCOMPARE(pBar->value(), 0);
    waitForEnd(page);
    QCOMPARE(pBar->value(), 0);
}

// "Optimize Diagnosis" first lists what the pass would change: Cancel
// leaves the page as it was, OK starts the pass.
void TestVxOneKeyWidgetRun::optimizationAsksWithThePlan()
{
    std::atomic<int> nRepairs{0};
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [&, pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) { info.bNormal = 0; });
        table.setRepair(VxItems::SdkFiles, [&](CSDKPathDetectInfo &) { ++nRepairs; });
        table.setPlan(VxItems::SdkFiles, [](const CSDKPathDetectInfo &) {
            return VxPlan{VxChange{VxItems::SdkFiles, VxChangeKind::SdkFile, "/usr/lib/libOld.so", "sha256:ab", ""}};
        });
        table.setCheck(VxItems::EnvVariables, [](CEnvDetectInfo &info) { info.bNormal = 0; });
        table.setRepair(VxItems::EnvVariables, [&](CEnvDetectInfo &) { ++nRepairs; });
        table.setPlan(VxItems::EnvVariables, [](const CEnvDetectInfo &) {
            return VxPlan{VxChange{VxItems::EnvVariables, VxChangeKind::Environment, "LUCAM_X", "", "1"}};
        });
        table.setCheck(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) { info.bNormal = 0; });
        table.setRepair(VxItems::JumboFrame, [&](CJumboPacketDetectInfo &) { ++nRepairs; });
        table.setPlan(VxItems::JumboFrame, nullptr);
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    waitForEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));

    QStringList listAsked;
    bool bAccept = false;
    VxOneKeyWidget::setConfirmOptimization([&](QWidget *, const QStringList &listChanges) {
        listAsked = listChanges;
        return bAccept;
    });
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    const QString strSdk = VxItems::itemName(VxItems::SdkFiles);
    const QString strEnv = VxItems::itemName(VxItems::EnvVariables);
    const QString strJumbo = VxItems::itemName(VxItems::JumboFrame);
    QVERIFY(listAsked.size() >= 3);
    QCOMPARE(listAsked.mid(0, 2), (QStringList{strSdk + ": /usr/lib/libOld.so: sha256:ab → (removed)",
                                      strEnv + ": LUCAM_X: (not set) → 1"}));
    QVERIFY(listAsked.contains(strJumbo + ": will be repaired"));
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    QTest::qWait(200);
    QVERIFY(page.isWorkerIdle());
    QCOMPARE(nRepairs.load(), 0);
    QVERIFY(page.operateButton1()->isEnabled());

    listAsked.clear();
    bAccept = true;
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    QVERIFY(!listAsked.isEmpty());
    waitForEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    QVERIFY(nRepairs.load() >= 3);
    VxOneKeyWidget::setConfirmOptimization([](QWidget *, const QStringList &) { return true; });
}

QTEST_MAIN(TestVxOneKeyWidgetRun)
#include "tst_vxonekeywidget_run.moc"
