#include "../engine/fakeprobes.h"
#include "custompushbutton.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"

#include <QDir>
#include <QtTest>

namespace {
class TestPage : public VxOneKeyWidget
{
public:
    explicit TestPage(const VxProbeTable &table)
        : VxOneKeyWidget(nullptr, table)
    {
    }

    QString strExportPath;
    QString strAskedDir;
    QString strAskedName;

protected:
    QString askExportPath(const QString &strDir, const QString &strName) override
    {
        strAskedDir = strDir;
        strAskedName = strName;
        return strExportPath;
    }
};

// Closes the next modal box that opens (a message or a save-done hint) and
// remembers its class.
class ModalCloser : public QObject
{
public:
    QString strSeen;
    ModalCloser()
    {
        auto *pTimer = new QTimer(this);
        connect(pTimer, &QTimer::timeout, this, [this] {
            if (QWidget *pModal = QApplication::activeModalWidget()) {
                strSeen = QString::fromLatin1(pModal->metaObject()->className());
                pModal->close();
            }
        });
        pTimer->start(50);
    }
};
} // namespace

class TestVxOneKeyWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void startsIdle();
    void detectionWithoutExceptionEndsInStateFour();
    void stopDuringDetectionAbortsAtOnce();
    void optimizationClearsExceptionsAndDisablesButton();
    void repairFromTreeReentersStateFour();
    void exportWritesLog();
    void exportRefusesLongPath();
    void groupNumbersFollowGrades();
    void unreadableItemsSayNotAvailable();

private:
    void runToEnd(VxOneKeyWidget &page);
    FakeProbes *m_pFakes = nullptr;
    // The probes the pages of the next test run.
    std::function<VxProbeTable()> m_tableSource;
    QList<bool> m_listExport;
};

void TestVxOneKeyWidget::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    // These tests start optimisations without looking at the plan.
    VxOneKeyWidget::setConfirmOptimization([](QWidget *, const QStringList &) { return true; });
}

void TestVxOneKeyWidget::init()
{
    m_pFakes = new FakeProbes;
    m_pFakes->nChecksUntilInstalled = 1;
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes] { return pFakes->tableWithoutTrees(); };
    m_listExport.clear();
}

void TestVxOneKeyWidget::cleanup()
{
    m_tableSource = nullptr;
    delete m_pFakes;
    m_pFakes = nullptr;
}

void TestVxOneKeyWidget::runToEnd(VxOneKeyWidget &page)
{
    QTRY_VERIFY_WITH_TIMEOUT(page.isWorkerIdle() && page.state() != VxOneKeyWidget::Detecting
                                 && page.state() != VxOneKeyWidget::Optimizing,
                             10000);
}

void TestVxOneKeyWidget::startsIdle()
{
    VxOneKeyWidget page(nullptr, m_tableSource());
    QCOMPARE(page.state(), 0);
    QCOMPARE(page.titleText(), QStringLiteral("Vetrix Tool"));
    QCOMPARE(page.detailText(), QStringLiteral("Check the PC system, driver, and software running environment."));
    QVERIFY(page.isDetailShown());
    QCOMPARE(page.operateButton2()->text(), QStringLiteral("Start Diagnosis"));
    QVERIFY(page.isWorkerIdle());
}

void TestVxOneKeyWidget::detectionWithoutExceptionEndsInStateFour()
{
    VxOneKeyWidget page(nullptr, m_tableSource());
    connect(&page, &VxOneKeyWidget::sigExportEnable, this, [this](bool b) { m_listExport << b; });
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QCOMPARE(page.state(), int(VxOneKeyWidget::Detecting));
    QCOMPARE(m_listExport.last(), false);
    QCOMPARE(page.operateButton2()->text(), QStringLiteral("Stop Diagnosis"));
    QVERIFY(!page.operateButton1()->isVisible());
    runToEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    QCOMPARE(page.titleText(), QStringLiteral("Diagnosis completed."));
    // A run shorter than a second reports 0 seconds.
    QCOMPARE(page.detailText(), QStringLiteral("15 items were diagnosed in 0 second(s)."));
    QCOMPARE(page.operateButton1()->text(), QStringLiteral("Optimize Diagnosis"));
    QVERIFY(page.operateButton1()->isVisible());
    QVERIFY(page.operateButton1()->isEnabled());
    QCOMPARE(m_listExport.last(), true);
    QCOMPARE(page.operateButton2()->text(), QStringLiteral("Diagnose Again"));

    // Diagnosing again disables the export until the run finishes.
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QCOMPARE(m_listExport.last(), false);
    runToEnd(page);
    QCOMPARE(m_listExport.last(), true);
}

void TestVxOneKeyWidget::stopDuringDetectionAbortsAtOnce()
{
    VxOneKeyWidget page(nullptr, m_tableSource());
    connect(&page, &VxOneKeyWidget::sigExportEnable, this, [this](bool b) { m_listExport << b; });
    page.worker()->setItemPause(100);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(page.resultArea()->tree()->record(1), 5000);
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectAborted));
    QCOMPARE(page.titleText(), QStringLiteral("Diagnosis aborted."));
    QCOMPARE(page.detailText(), QStringLiteral("Diagnosis process aborted. Please restart diagnosis."));
    QCOMPARE(page.operateButton2()->text(), QStringLiteral("Diagnose Again"));
    QVERIFY(!page.operateButton1()->isVisible());
    // The worker's later end changes nothing.
    QTRY_VERIFY_WITH_TIMEOUT(page.isWorkerIdle(), 5000);
    QTest::qWait(150);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectAborted));
    QCOMPARE(page.titleText(), QStringLiteral("Diagnosis aborted."));
    QVERIFY(!m_listExport.contains(true));
}

void TestVxOneKeyWidget::optimizationClearsExceptionsAndDisablesButton()
{
    // The environment check fails until the repair ran.
    bool bRepaired = false;
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes, &bRepaired] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::EnvVariables, [&bRepaired](CEnvDetectInfo &info) { info.bNormal = bRepaired; });
        table.setRepair(VxItems::EnvVariables, [&bRepaired](CEnvDetectInfo &) { bRepaired = true; });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    runToEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    QCOMPARE(page.groupNumberText(1), QStringLiteral("1"));
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    QCOMPARE(page.state(), int(VxOneKeyWidget::Optimizing));
    QCOMPARE(page.operateButton2()->text(), QStringLiteral("Stop Optimization"));
    runToEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    QCOMPARE(page.titleText(), QStringLiteral("Complete"));
    QVERIFY(page.operateButton1()->isVisible());
    QCOMPARE(page.operateButton1()->text(), QStringLiteral("Optimize Diagnosis"));
    QVERIFY(!page.operateButton1()->isEnabled());
    QVERIFY(bRepaired);
}

void TestVxOneKeyWidget::repairFromTreeReentersStateFour()
{
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) { info.bNormal = 0; });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    runToEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    // The optimization leaves the jumbo item exceptional (the fake repair
    // changes nothing), so the page ends in "Complete" with work left.
    QTest::mouseClick(page.operateButton1(), Qt::LeftButton);
    runToEnd(page);
    QCOMPARE(page.state(), int(VxOneKeyWidget::OptimizeFinished));
    QVERIFY(page.operateButton1()->isEnabled());
    // Now the jumbo dialog repairs it: the page comes back to "Diagnosis
    // completed.".
    page.resultArea()->tree()->record(256)->bNormal = 1;
    emit page.resultArea()->tree()->sigRemoveOptimizeItem(256);
    QCOMPARE(page.state(), int(VxOneKeyWidget::DetectFinished));
    QCOMPARE(page.titleText(), QStringLiteral("Diagnosis completed."));
}

void TestVxOneKeyWidget::exportWritesLog()
{
    QTemporaryDir dir;
    TestPage page(m_tableSource());
    page.worker()->setItemPause(1);
    page.strExportPath = dir.filePath("out.log");
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    runToEnd(page);
    ModalCloser closer;
    page.exportLog();
    QCOMPARE(closer.strSeen, QStringLiteral("CustomSaveDoneHintDlg"));
    QVERIFY(page.strAskedDir.endsWith("/Data/VetrixTool/"));
    QVERIFY(QRegularExpression("^Log_\\d{8}_\\d{6}$").match(page.strAskedName).hasMatch());
    QFile file(page.strExportPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("|     \r\n|----1: SDK Diagnosis\r\n"));
    QVERIFY(bytes.contains("|    |----3-5: Systm Info\r\n"));
}

void TestVxOneKeyWidget::exportRefusesLongPath()
{
    QTemporaryDir dir;
    TestPage page(m_tableSource());
    page.strExportPath = dir.filePath(QString(260, QLatin1Char('a')) + ".log");
    ModalCloser closer;
    page.exportLog();
    QCOMPARE(closer.strSeen, QStringLiteral("CustomMessageBox"));
    QVERIFY(!QFileInfo::exists(page.strExportPath));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 0);
}

void TestVxOneKeyWidget::groupNumbersFollowGrades()
{
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) { info.bNormal = 0; });
        table.setCheck(VxItems::Firewall, [](CDetectInfo &info) { info.bNormal = 0; });
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    runToEnd(page);
    QCOMPARE(page.groupNumberText(0), QStringLiteral("13"));
    QCOMPARE(page.groupNumberText(1), QStringLiteral("1"));
    QCOMPARE(page.groupNumberText(2), QStringLiteral("1"));
}

// Items the system root cannot give (a mounted image without sys/class/net)
// are not run; their rows say so at once, with no grade.
void TestVxOneKeyWidget::unreadableItemsSayNotAvailable()
{
    qputenv("VETRIX_SYSROOT", "/mnt/image");
    FakeProbes *pFakes = m_pFakes;
    m_tableSource = [pFakes] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.uUnreadable = 128 | 256;
        return table;
    };
    VxOneKeyWidget page(nullptr, m_tableSource());
    page.worker()->setItemPause(1);
    page.show();
    QTest::mouseClick(page.operateButton2(), Qt::LeftButton);
    runToEnd(page);
    qunsetenv("VETRIX_SYSROOT");
    VxOneKeyResultTree *pTree = page.resultArea()->tree();
    QVERIFY(!pTree->record(128));
    QVERIFY(!pTree->record(256));
    QVERIFY(pTree->record(1024));
    int nRows = 0;
    for (QTreeWidgetItemIterator it(pTree); *it; ++it) {
        const int nItem = (*it)->data(0, VxOneKeyResultTree::RoleItemId).toInt();
        if (nItem != 128 && nItem != 256)
            continue;
        ++nRows;
        QVERIFY(!(*it)->data(0, VxOneKeyResultTree::RoleSeverity).isValid());
        QCOMPARE((*it)->childCount(), 1);
        QCOMPARE((*it)->child(0)->text(0), QStringLiteral("Not available: this check cannot read the system below %1.").arg(QDir::toNativeSeparators(QStringLiteral("/mnt/image"))));
    }
    QCOMPARE(nRows, 2);
    QCOMPARE(page.resultArea()->countOfSeverity(0), 13);
}

QTEST_MAIN(TestVxOneKeyWidget)
#include "tst_vxonekeywidget.moc"
