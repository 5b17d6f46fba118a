// The one-key page's run state without widgets: what each of the nine states
// shows, and each transition with the worker command it issues.
#include "vxonekeystate.h"

#include <QtTest>

#include <array>

namespace {
// Ten result rows in three groups; items 1, 2, 4, 8 and 256 can be optimised.
class FakeItems : public VxOneKeyItems
{
public:
    QVector<int> listLeftOut;
    quint32 runMask() const override { return 0xFAF; }
    int runRowCount() const override { return 10; }
    QVector<int> leftOutItems(quint32 uMask) const override
    {
        QVector<int> listItems;
        for (int nItem : listLeftOut) {
            if (uMask & quint32(nItem))
                listItems << nItem;
        }
        return listItems;
    }
    bool canOptimize(int nItem) const override { return QVector<int>{1, 2, 4, 8, 256}.contains(nItem); }
    QString itemName(int nItem) const override { return QStringLiteral("Item %1").arg(nItem); }
};

using Command = VxWorkerCommand;
using S = VxOneKeyState;

// A run state on fake items, a clock that steps 3.5 s per reading from
// 10:00, and grade counts the test sets.
struct Fixture
{
    FakeItems items;
    std::array<int, S::kGrades> grades{{0, 0, 0}};
    QTime now{10, 0};
    S run{items};
    Fixture()
    {
        run.setClock([this] {
            const QTime time = now;
            now = now.addMSecs(3500);
            return time;
        });
        run.setGradeCount([this](int nGrade) { return grades[size_t(nGrade)]; });
    }
    // 1/2: the buttons; e/r: the worker ends a pass (r: and still runs);
    // x: item 256 ends exceptional; n: item 4 ends normal; o/f: item 256's
    // repair ends repaired / still exceptional.
    void play(const QString &strActions)
    {
        for (QChar c : strActions) {
            switch (c.toLatin1()) {
            case '1': run.clickButton1(); break;
            case '2': run.clickButton2(); break;
            case 'e': run.endOperate(false); break;
            case 'r': run.endOperate(true); break;
            case 'x': run.endDetectItem(256, false); break;
            case 'n': run.endDetectItem(4, true); break;
            case 'o': run.endOptimizeItem(256, true); break;
            case 'f': run.endOptimizeItem(256, false); break;
            default: QFAIL("unknown action");
            }
        }
    }
};

const QString kGif = QStringLiteral(":/Vetrix/Vetrix/Detecting.gif");
const QString kNothing = QStringLiteral(":/Vetrix/Vetrix/DetectNothing.png");
const QString kFinish = QStringLiteral(":/Vetrix/Vetrix/DetectFinish.png");
const QString kStop = QStringLiteral(":/Vetrix/Vetrix/DetectStop.png");
const QString kWelcome = QStringLiteral("Check the PC system, driver, and software running environment.");
} // namespace

class TestVxOneKeyState : public QObject
{
    Q_OBJECT
private slots:
    void looks_data();
    void looks();
    void finishedOptimizationShowsTheCountersThatHaveRows();
    void startCoversTheRunItemsAndCountsLeftOutOnes();
    void pauseAndContinueDetection();
    void stopDetectionAbortsAtOnce();
    void stopWhilePausedAbortsWithoutCommand();
    void exceptionsCountOptimizableItemsOnce();
    void optimizationStartsOnTheExceptions();
    void pauseOptimizationWaitsForTheWorker();
    void stopOptimizationWaitsForTheWorker();
    void stopWhilePausedSettlesRepairedItems();
    void diagnoseAgainResetsTheRun_data();
    void diagnoseAgainResetsTheRun();
    void itemReportsOutsideTheirPassAreIgnored();
    void buttonsWithoutAnActionAreIgnored();
    void removingAnItemReentersDetectionFinished();
    void optimizationTitleCountsFinishedItems();
    void groupNumbersFollowTheResultWhileDetecting();
    void elapsedSecondsCrossMidnight();
};

void TestVxOneKeyState::looks_data()
{
    QTest::addColumn<QString>("actions");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<bool>("detailShown");
    QTest::addColumn<bool>("progressShown");
    QTest::addColumn<QString>("button1");
    QTest::addColumn<bool>("button1Shown");
    QTest::addColumn<bool>("button1Enabled");
    QTest::addColumn<QString>("button2");
    QTest::addColumn<bool>("export");

    const QString strAborted = QStringLiteral("Diagnosis process aborted. Please restart diagnosis.");
    const QString strDone = QStringLiteral("10 items were diagnosed in 3 second(s).");
    QTest::addRow("0 idle") << "" << 0 << kNothing << "Vetrix Tool" << true << kWelcome << true << false << ""
                            << false << true << "Start Diagnosis" << false;
    QTest::addRow("1 detecting") << "2" << 1 << kGif << "Diagnosis: (0/10)" << true << kWelcome << false << true
                                 << "Pause Diagnosis" << false << true << "Stop Diagnosis" << false;
    QTest::addRow("1 detecting, one item done") << "2x" << 1 << kGif << "Diagnosis: Item 256(1/10)" << true
                                                << kWelcome << false << true << "Pause Diagnosis" << false << true
                                                << "Stop Diagnosis" << false;
    QTest::addRow("2 detection paused") << "2x1" << 2 << kGif << "Diagnosis paused" << true << kWelcome << true
                                        << false << "Continue Diagnosis" << true << true << "Stop Diagnosis" << false;
    QTest::addRow("3 detection aborted") << "2x2" << 3 << kStop << "Diagnosis aborted." << true << strAborted << true
                                         << false << "Optimize Diagnosis" << false << true << "Diagnose Again"
                                         << false;
    QTest::addRow("3 detection aborted, no exception") << "2n2" << 3 << kStop << "Diagnosis aborted." << true
                                                       << strAborted << true << false << "Optimize Diagnosis" << false
                                                       << false << "Diagnose Again" << false;
    QTest::addRow("4 detection finished") << "2xe" << 4 << kFinish << "Diagnosis completed." << true << strDone
                                          << true << false << "Optimize Diagnosis" << true << true << "Diagnose Again"
                                          << true;
    QTest::addRow("4 detection finished, no exception") << "2ne" << 4 << kFinish << "Diagnosis completed." << true
                                                        << strDone << true << false << "Optimize Diagnosis" << true
                                                        << true << "Diagnose Again" << true;
    QTest::addRow("5 optimising") << "2xe1" << 5 << kGif << "Optimization: (0/1)" << false << "" << false << true
                                  << "Pause Optimization" << false << true << "Stop Optimization" << false;
    QTest::addRow("6 optimisation paused") << "2xe11r" << 6 << kGif << "Optimization paused" << true << "" << true
                                           << false << "Resume Optimization" << true << true << "Stop Optimization"
                                           << false;
    QTest::addRow("7 optimisation stopped") << "2xe12r" << 7 << kStop << "Optimization stopped." << true
                                            << "1 exception(s) are detected. Please optimize the system." << true
                                            << false << "Pause Optimization" << false << true << "Diagnose Again"
                                            << false;
    QTest::addRow("7 optimisation stopped, repaired") << "2xe1o2r" << 7 << kStop << "Optimization stopped." << true
                                                      << "No exception." << true << false << "Pause Optimization"
                                                      << false << true << "Diagnose Again" << false;
    QTest::addRow("7 stopped while paused") << "2xe11r2" << 7 << kStop << "Optimization stopped." << true
                                            << "1 exception(s) are detected. Please optimize the system." << true
                                            << false << "Resume Optimization" << false << true << "Diagnose Again"
                                            << false;
    QTest::addRow("8 optimisation finished") << "2xe1oe" << 8 << kFinish << "Complete" << true << "" << false
                                             << false << "Optimize Diagnosis" << true << false << "Diagnose Again"
                                             << true;
    QTest::addRow("8 optimisation finished, exception left") << "2xe1fe" << 8 << kFinish << "Complete" << true << ""
                                                             << false << false << "Optimize Diagnosis" << true << true
                                                             << "Diagnose Again" << true;
    QTest::addRow("8 after a pause the worker ended") << "2xe11e" << 8 << kFinish << "Complete" << true << ""
                                                      << false << false << "Optimize Diagnosis" << true << true
                                                      << "Diagnose Again" << true;
}

void TestVxOneKeyState::looks()
{
    QFETCH(QString, actions);
    Fixture f;
    f.play(actions);
    const S &run = f.run;
    QTEST(int(run.state()), "state");
    QTEST(run.imagePath(), "image");
    QCOMPARE(run.isAnimated(), run.imagePath() == kGif);
    QTEST(run.titleText(), "title");
    QTEST(run.isTitleBold(), "bold");
    QTEST(run.detailText(), "detail");
    QTEST(run.isDetailShown(), "detailShown");
    QTEST(run.isProgressShown(), "progressShown");
    QTEST(run.button1Text(), "button1");
    QTEST(run.isButton1Shown(), "button1Shown");
    QTEST(run.isButton1Enabled(), "button1Enabled");
    QTEST(run.button2Text(), "button2");
    QTEST(run.isExportEnabled(), "export");
    // Only the finished optimisation shows counters.
    f.grades = {{1, 1, 1}};
    const bool bCounters = run.state() == S::OptimizeFinished;
    for (int nGrade = 0; nGrade < S::kGrades; ++nGrade)
        QCOMPARE(run.isCounterShown(nGrade), bCounters);
}

void TestVxOneKeyState::finishedOptimizationShowsTheCountersThatHaveRows()
{
    Fixture f;
    f.play(QStringLiteral("2xe1fe"));
    f.grades = {{8, 2, 0}};
    QCOMPARE(f.run.state(), S::OptimizeFinished);
    QVERIFY(f.run.isCounterShown(0));
    QVERIFY(f.run.isCounterShown(1));
    QVERIFY(!f.run.isCounterShown(2));
    QCOMPARE(f.run.counterText(0), QStringLiteral("Normal: 8 Item(s)"));
    QCOMPARE(f.run.counterText(1), QStringLiteral("Serious: 2 Item(s)"));
    QCOMPARE(f.run.counterText(2), QStringLiteral("Fatal: 0 Item(s)"));
}

void TestVxOneKeyState::startCoversTheRunItemsAndCountsLeftOutOnes()
{
    Fixture f;
    f.items.listLeftOut = {128, 256, 4096};
    const VxOneKeyStep step = f.run.clickButton2();
    QVERIFY(step.bTaken && step.bEntered);
    QCOMPARE(step.command, Command::StartDetect);
    QCOMPARE(step.uMask, 0xFAFu);
    QCOMPARE(f.run.itemMask(), 0xFAFu);
    QCOMPARE(f.run.total(), 10);
    QCOMPARE(f.run.leftOutItems(), (QVector<int>{128, 256})); // 4096 is not in the run
    QCOMPARE(f.run.detectedCount(), 2);
    QCOMPARE(f.run.progressMaximum(), 10);
    QCOMPARE(f.run.progressValue(), 2);
    QCOMPARE(f.run.pendingState(), S::DetectFinished);
    QCOMPARE(f.run.startTime(), QTime(10, 0));
    QVERIFY(f.run.isResultShown());
}

void TestVxOneKeyState::pauseAndContinueDetection()
{
    Fixture f;
    f.grades = {{1, 0, 1}};
    f.play(QStringLiteral("2x"));
    f.run.resultChanged();
    QCOMPARE(f.run.groupNumber(2), 1);
    VxOneKeyStep step = f.run.clickButton1();
    QCOMPARE(step.command, Command::PauseDetect);
    QCOMPARE(f.run.state(), S::DetectPaused);
    QCOMPARE(f.run.pendingState(), S::Idle);
    QCOMPARE(f.run.groupNumber(2), 1);
    // The paused pass's end changes nothing.
    QVERIFY(!f.run.endOperate(false).bTaken);
    QCOMPARE(f.run.state(), S::DetectPaused);
    step = f.run.clickButton1();
    QVERIFY(step.bEntered);
    QCOMPARE(step.command, Command::ResumeDetect);
    QCOMPARE(f.run.state(), S::Detecting);
    QCOMPARE(f.run.pendingState(), S::DetectFinished);
    QCOMPARE(f.run.groupNumber(2), 0);
    QCOMPARE(f.run.detectedCount(), 1);
    QCOMPARE(f.run.titleText(), QStringLiteral("Diagnosis: Item 256(1/10)"));
}

void TestVxOneKeyState::stopDetectionAbortsAtOnce()
{
    Fixture f;
    f.play(QStringLiteral("2"));
    const VxOneKeyStep step = f.run.clickButton2();
    QCOMPARE(step.command, Command::StopDetect);
    QCOMPARE(f.run.state(), S::DetectAborted);
    QVERIFY(!f.run.endOperate(false).bTaken);
    QCOMPARE(f.run.state(), S::DetectAborted);
}

void TestVxOneKeyState::stopWhilePausedAbortsWithoutCommand()
{
    Fixture f;
    f.play(QStringLiteral("21"));
    const VxOneKeyStep step = f.run.clickButton2();
    QVERIFY(step.bEntered);
    QCOMPARE(step.command, Command::None);
    QCOMPARE(f.run.state(), S::DetectAborted);
}

void TestVxOneKeyState::exceptionsCountOptimizableItemsOnce()
{
    Fixture f;
    f.play(QStringLiteral("2"));
    f.run.endDetectItem(1024, false); // not optimisable
    f.run.endDetectItem(2, false);
    f.run.endDetectItem(2, false);
    f.run.endDetectItem(8, true);
    QCOMPARE(f.run.exceptionMask(), 2u);
    QCOMPARE(f.run.exceptionCount(), 1);
    QCOMPARE(f.run.detectedCount(), 4);
    QCOMPARE(f.run.progressValue(), 4);
}

void TestVxOneKeyState::optimizationStartsOnTheExceptions()
{
    for (const char *pFrom : {"2xe", "2x2", "2xe1fe"}) {
        Fixture f;
        f.play(QString::fromLatin1(pFrom));
        f.run.removeOptimizeItem(0); // no such bit: changes nothing
        const VxOneKeyStep step = f.run.clickButton1();
        QVERIFY2(step.bEntered, pFrom);
        QCOMPARE(step.command, Command::StartOptimize);
        QCOMPARE(step.uMask, 256u);
        QCOMPARE(f.run.state(), S::Optimizing);
        QCOMPARE(f.run.pendingState(), S::OptimizeFinished);
        QCOMPARE(f.run.progressMaximum(), 1);
        QCOMPARE(f.run.progressValue(), 0);
        QCOMPARE(f.run.optimizedCount(), 0);
    }
}

void TestVxOneKeyState::pauseOptimizationWaitsForTheWorker()
{
    Fixture f;
    f.play(QStringLiteral("2xe1"));
    VxOneKeyStep step = f.run.clickButton1();
    QVERIFY(step.bTaken && !step.bEntered);
    QCOMPARE(step.command, Command::PauseOptimize);
    QCOMPARE(f.run.state(), S::Optimizing);
    QCOMPARE(f.run.pendingState(), S::OptimizePaused);
    QVERIFY(f.run.isAwaitingWorker());
    step = f.run.endOperate(true);
    QVERIFY(step.bEntered);
    QCOMPARE(f.run.state(), S::OptimizePaused);
    QVERIFY(!f.run.isAwaitingWorker());
    step = f.run.clickButton1();
    QCOMPARE(step.command, Command::ResumeOptimize);
    QCOMPARE(f.run.state(), S::Optimizing);
    QCOMPARE(f.run.pendingState(), S::OptimizeFinished);
}

void TestVxOneKeyState::stopOptimizationWaitsForTheWorker()
{
    Fixture f;
    f.play(QStringLiteral("2xe1o"));
    const VxOneKeyStep step = f.run.clickButton2();
    QCOMPARE(step.command, Command::StopOptimize);
    QCOMPARE(f.run.state(), S::Optimizing);
    QCOMPARE(f.run.pendingState(), S::OptimizeStopped);
    QVERIFY(f.run.isAwaitingWorker());
    // During the pass the exception still counts, so the title's numbers
    // belong together; the end settles it.
    QCOMPARE(f.run.exceptionCount(), 1);
    f.run.endOperate(true);
    QCOMPARE(f.run.state(), S::OptimizeStopped);
    QCOMPARE(f.run.exceptionCount(), 0);
    QCOMPARE(f.run.exceptionMask(), 0u);
    QVERIFY(!f.run.isAwaitingWorker());
}

void TestVxOneKeyState::stopWhilePausedSettlesRepairedItems()
{
    Fixture f;
    f.play(QStringLiteral("2xe1o1r"));
    QCOMPARE(f.run.state(), S::OptimizePaused);
    QCOMPARE(f.run.repairedMask(), 256u);
    const VxOneKeyStep step = f.run.clickButton2();
    QCOMPARE(step.command, Command::None);
    QCOMPARE(f.run.state(), S::OptimizeStopped);
    QCOMPARE(f.run.exceptionCount(), 0);
    QCOMPARE(f.run.repairedMask(), 0u);
}

void TestVxOneKeyState::diagnoseAgainResetsTheRun_data()
{
    QTest::addColumn<QString>("actions");
    QTest::addRow("3") << "2x2";
    QTest::addRow("4") << "2xe";
    QTest::addRow("7") << "2xe12r";
    QTest::addRow("8") << "2xe1oe";
}

void TestVxOneKeyState::diagnoseAgainResetsTheRun()
{
    QFETCH(QString, actions);
    Fixture f;
    f.play(actions);
    const VxOneKeyStep step = f.run.clickButton2();
    QCOMPARE(step.command, Command::StartDetect);
    QCOMPARE(step.uMask, 0xFAFu);
    QCOMPARE(f.run.state(), S::Detecting);
    QCOMPARE(f.run.detectedCount(), 0);
    QCOMPARE(f.run.exceptionCount(), 0);
    QCOMPARE(f.run.optimizedCount(), 0);
    QCOMPARE(f.run.exceptionMask(), 0u);
    QCOMPARE(f.run.currentItem(), 0);
    QCOMPARE(f.run.titleText(), QStringLiteral("Diagnosis: (0/10)"));
}

void TestVxOneKeyState::itemReportsOutsideTheirPassAreIgnored()
{
    Fixture f;
    QVERIFY(!f.run.startDetectItem(4).bTaken);
    QVERIFY(!f.run.endDetectItem(4, false).bTaken);
    f.play(QStringLiteral("2"));
    QVERIFY(!f.run.startOptimizeItem(256).bTaken);
    QVERIFY(!f.run.endOptimizeItem(256, true).bTaken);
    f.play(QStringLiteral("x2"));
    QVERIFY(!f.run.endDetectItem(2, false).bTaken);
    QCOMPARE(f.run.detectedCount(), 1);
    QCOMPARE(f.run.exceptionCount(), 1);
}

void TestVxOneKeyState::buttonsWithoutAnActionAreIgnored()
{
    Fixture f;
    QVERIFY(!f.run.clickButton1().bTaken);
    QCOMPARE(f.run.state(), S::Idle);
    f.play(QStringLiteral("2xe12r"));
    QCOMPARE(f.run.state(), S::OptimizeStopped);
    QVERIFY(!f.run.clickButton1().bTaken);
    QCOMPARE(f.run.state(), S::OptimizeStopped);
}

void TestVxOneKeyState::removingAnItemReentersDetectionFinished()
{
    Fixture f;
    f.play(QStringLiteral("2"));
    f.run.endDetectItem(2, false);
    f.play(QStringLiteral("xe1fe"));
    QCOMPARE(f.run.state(), S::OptimizeFinished);
    QCOMPARE(f.run.exceptionCount(), 2);
    QVERIFY(!f.run.removeOptimizeItem(4).bTaken);
    const VxOneKeyStep step = f.run.removeOptimizeItem(256);
    QVERIFY(step.bEntered);
    QCOMPARE(step.command, Command::None);
    QCOMPARE(f.run.state(), S::DetectFinished);
    QCOMPARE(f.run.exceptionCount(), 1);
    QCOMPARE(f.run.exceptionMask(), 2u);
    QCOMPARE(f.run.titleText(), QStringLiteral("Diagnosis completed."));
}

void TestVxOneKeyState::optimizationTitleCountsFinishedItems()
{
    Fixture f;
    f.play(QStringLiteral("2"));
    f.run.endDetectItem(1, false);
    f.run.endDetectItem(2, false);
    f.play(QStringLiteral("xe1"));
    QStringList listTitles{f.run.titleText()};
    for (int nItem : {1, 2, 256}) {
        f.run.startOptimizeItem(nItem);
        listTitles << f.run.titleText();
        f.run.endOptimizeItem(nItem, nItem != 256);
        listTitles << f.run.titleText();
    }
    QCOMPARE(listTitles, (QStringList{"Optimization: (0/3)", "Optimization: Item 1(0/3)", "Optimization: Item 1(1/3)",
                                      "Optimization: Item 2(1/3)", "Optimization: Item 2(2/3)",
                                      "Optimization: Item 256(2/3)", "Optimization: Item 256(3/3)"}));
    QCOMPARE(f.run.progressValue(), 3);
    f.run.endOperate(false);
    QCOMPARE(f.run.exceptionCount(), 1);
    QCOMPARE(f.run.exceptionMask(), 256u);
    QVERIFY(f.run.isButton1Enabled());
}

void TestVxOneKeyState::groupNumbersFollowTheResultWhileDetecting()
{
    Fixture f;
    f.grades = {{3, 1, 1}};
    f.play(QStringLiteral("2"));
    QCOMPARE(f.run.groupNumber(0), 0);
    f.run.resultChanged();
    QCOMPARE(f.run.groupNumber(0), 3);
    f.grades = {{4, 1, 1}};
    f.play(QStringLiteral("e"));
    QCOMPARE(f.run.groupNumber(0), 3); // state 4 keeps them
    f.play(QStringLiteral("2"));
    QCOMPARE(f.run.groupNumber(0), 0);
    f.play(QStringLiteral("2"));
    QCOMPARE(f.run.state(), S::DetectAborted);
    QCOMPARE(f.run.groupNumber(0), 4); // state 3 takes them
    f.run.removeOptimizeItem(0);
    QCOMPARE(f.run.groupNumber(-1), 0);
    QCOMPARE(f.run.groupNumber(3), 0);
}

void TestVxOneKeyState::elapsedSecondsCrossMidnight()
{
    Fixture f;
    QList<QTime> listTimes{QTime(23, 59, 59), QTime(0, 0, 2, 999)};
    f.run.setClock([&listTimes] { return listTimes.takeFirst(); });
    f.play(QStringLiteral("2e"));
    QCOMPARE(f.run.elapsedSeconds(), 3);
    QCOMPARE(f.run.detailText(), QStringLiteral("10 items were diagnosed in 3 second(s)."));
    listTimes = {QTime(9, 0), QTime(9, 0, 0, 999)};
    f.play(QStringLiteral("2e"));
    QCOMPARE(f.run.detailText(), QStringLiteral("10 items were diagnosed in 0 second(s)."));
}

QTEST_GUILESS_MAIN(TestVxOneKeyState)
#include "tst_vxonekeystate.moc"
