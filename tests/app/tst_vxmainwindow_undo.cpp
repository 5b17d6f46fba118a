// File > Undo Last Optimization on Linux: restores the last journaled
// optimisation below a fixture system root, says what came back, and is off
// while the worker runs.
#include "../engine/fakeprobes.h"
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "envvars.h"
#include "journaledrepairs.h"
#include "vxjournal.h"
#include "vxmainwindow.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"

#include <QAction>
#include <QtTest>

#include <atomic>

namespace {
class TestWindow : public VxMainWindow
{
public:
    explicit TestWindow(const VxProbeTable &table)
        : VxMainWindow(nullptr, table)
    {
    }

    QStringList listShown; // text, then details, per outcome

protected:
    void openAbout() override { }
    void openDumpTool() override { }
    void showUndoOutcome(const QString &strText, const QString &strDetails) override
    {
        listShown << strText << strDetails;
    }
};

const char kEnvironment[] = "# machine environment\nPATH=\"/usr/bin:/bin\"\n";
} // namespace

class TestVxMainWindowUndo : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void nothingToUndo();
    void undoRestoresTheLastOptimization();
    void offWhileTheWorkerRuns();

private:
    QString environmentFile() const { return m_pRoot->path() + "/etc/environment"; }
    QByteArray environment() const
    {
        QFile file(environmentFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }

    QTemporaryDir *m_pRoot = nullptr;
    FakeProbes m_fakes;
};

void TestVxMainWindowUndo::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Panekit_Default.rcc")));
    QStandardPaths::setTestModeEnabled(true);
    VxOneKeyWidget::setConfirmOptimization([](QWidget *, const QStringList &) { return true; });
}

void TestVxMainWindowUndo::init()
{
    m_pRoot = new QTemporaryDir;
    QVERIFY(m_pRoot->isValid());
    qputenv("VETRIX_SYSROOT", m_pRoot->path().toUtf8());
    for (const char *pName : {"LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
             "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"})
        qunsetenv(pName);
    QVERIFY(QDir().mkpath(m_pRoot->path() + "/etc"));
    QVERIFY(QDir().mkpath(m_pRoot->path() + "/var/lib"));
    QFile file(environmentFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(kEnvironment);
}

void TestVxMainWindowUndo::cleanup()
{
    qunsetenv("VETRIX_SYSROOT");
    delete m_pRoot;
    m_pRoot = nullptr;
}

void TestVxMainWindowUndo::nothingToUndo()
{
    TestWindow window(m_fakes.tableWithoutTrees());
    QAction *pUndo = window.action(VxMainWindow::ActUndoOptimization);
    QVERIFY(pUndo);
    QCOMPARE(pUndo->objectName(), QStringLiteral("UndoOptimizationAction"));
    QVERIFY(pUndo->isEnabled());
    pUndo->trigger();
    QCOMPARE(window.listShown, (QStringList {"There is no optimization to undo.", ""}));
}

void TestVxMainWindowUndo::undoRestoresTheLastOptimization()
{
    const VxPrivileges rights(QString(), VxPrivileges::Rights::Root);
    CEnvDetectInfo env;
    EnvVars::check(env);
    QVERIFY(JournaledRepairs::repairEnvironment(env, rights).ok());
    QVERIFY(environment() != kEnvironment);

    TestWindow window(m_fakes.tableWithoutTrees());
    window.action(VxMainWindow::ActUndoOptimization)->trigger();
    QCOMPARE(environment(), QByteArray(kEnvironment));
    QCOMPARE(window.listShown.size(), 2);
    QCOMPARE(window.listShown.at(0),
        QStringLiteral("The last optimization was undone.\nDiagnose again to see the current state."));
    const QString strEnv = VxItems::itemName(VxItems::EnvVariables);
    const QStringList listDetails = window.listShown.at(1).split('\n');
    QCOMPARE(listDetails.size(), 6);
    QVERIFY2(listDetails.contains(strEnv + ": LUCAM_COMMON_RUNENV: restored"), qPrintable(window.listShown.at(1)));
    QVERIFY2(listDetails.contains(strEnv + ": PATH: restored"), qPrintable(window.listShown.at(1)));
    QCOMPARE(VxJournal().optimisations().size(), 2);

    // The undo is itself undone only by a new repair: a second undo finds nothing.
    window.listShown.clear();
    window.action(VxMainWindow::ActUndoOptimization)->trigger();
    QCOMPARE(window.listShown.value(0), QStringLiteral("There is no optimization to undo."));
    QCOMPARE(environment(), QByteArray(kEnvironment));
}

void TestVxMainWindowUndo::offWhileTheWorkerRuns()
{
    std::atomic<bool> bRelease {false};
    VxProbeTable table = m_fakes.tableWithoutTrees();
    table.setCheck(VxItems::SdkFiles, [&](CSDKPathDetectInfo &info) {
        while (!bRelease)
            QThread::msleep(5);
        info.bNormal = 1;
    });
    TestWindow window(table);
    QAction *pUndo = window.action(VxMainWindow::ActUndoOptimization);
    QTest::mouseClick(window.findChild<VxOneKeyWidget *>()->operateButton2(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!pUndo->isEnabled(), 10000);
    pUndo->trigger(); // a disabled action does nothing
    QVERIFY(window.listShown.isEmpty());
    bRelease = true;
    QTRY_VERIFY_WITH_TIMEOUT(window.findChild<VxOneKeyWidget *>()->isWorkerIdle(), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(pUndo->isEnabled(), 10000);
}

QTEST_MAIN(TestVxMainWindowUndo)
#include "tst_vxmainwindow_undo.moc"
