#include "cameradrivers.h"
#include "fakeprobes.h"
#include "itemrows.h"
#include "vxitems.h"
#include "vxoperatethread.h"
#include "vxrepair.h"
#include "vxresulttext.h"

#include <QTemporaryDir>
#include <QtTest>

// How the optimization pass reports repairs that did not happen: a driver
// installer that could not start, a privileged step that was refused, and
// the pace of the status polling after an install.
class TestVxOperateThreadRepairs : public QObject
{
    Q_OBJECT

    // Runs one optimization pass over uMask and returns the warnings.
    static QStringList optimize(VxOperateThread &thread, quint32 uMask)
    {
        QStringList listWarnings;
        bool bEnded = false;
        QObject context;
        QObject::connect(&thread, &VxOperateThread::sigWarning, &context,
                         [&listWarnings](const QString &s) { listWarnings << s; });
        QObject::connect(&thread, &VxOperateThread::sigEndOperate, &context, [&bEnded](bool) { bEnded = true; });
        thread.setItemPause(0);
        thread.startOptimize(uMask);
        [&] { QTRY_VERIFY_WITH_TIMEOUT(bEnded, 20000); }();
        return listWarnings;
    }

private slots:
    void installNotStarted_data()
    {
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("warning");
        QTest::newRow("gige: no installer") << 4 << int(VxRepairStatus::NotFound) << "File doesn't exist.";
        QTest::newRow("usb3: no installer") << 8 << int(VxRepairStatus::NotFound) << "File doesn't exist.";
        QTest::newRow("gige: rights refused")
            << 4 << int(VxRepairStatus::NotAuthorized)
            << "The driver was not installed: administrator rights were not granted.";
        QTest::newRow("usb3: no pkexec")
            << 8 << int(VxRepairStatus::HelperMissing)
            << "The driver was not installed: administrator rights could not be requested.";
        QTest::newRow("gige: helper refused")
            << 4 << int(VxRepairStatus::Refused) << "The driver was not installed: the installer was not accepted.";
        QTest::newRow("usb3: start failed")
            << 8 << int(VxRepairStatus::Failed) << "The driver was not installed: the installer could not be started.";
    }
    // Nothing started: the reason is told at once and the status is never
    // polled, so no ten-minute wait follows.
    void installNotStarted()
    {
        QFETCH(int, item);
        QFETCH(int, status);
        QFETCH(QString, warning);
        FakeProbes fakes;
        VxProbeTable table = fakes.table();
        const auto notStarted = [status] { return VxRepairOutcome(VxRepairStatus(status)); };
        table.setInstall(VxItems::GigeDriver, notStarted);
        table.setInstall(VxItems::Usb3Driver, notStarted);
        VxOperateThread thread(table);
        thread.detectInfo(item)->bNormal = 0;
        QCOMPARE(optimize(thread, quint32(item)), QStringList{warning});
        QCOMPARE(fakes.nStatusChecks.load(), 0);
        QCOMPARE(thread.detectInfo(item)->bNormal, 0);
        QCOMPARE(thread.pendingOptimizeMask(), quint32(item));
    }

    void statusPollIsPaced_data()
    {
        QTest::addColumn<int>("item");
        QTest::newRow("GigE Vision") << 4;
        QTest::newRow("USB3 Vision") << 8;
    }
    // The real status checks (over an empty system root, so the driver never
    // appears) polled for the whole ten minutes of a fake clock: time moves
    // 20 ms with every reading and by whatever the pacing sleeps. Back to back
    // that would be 30 000 checks; paced, at most one per 250 ms.
    void statusPollIsPaced()
    {
        QFETCH(int, item);
        QTemporaryDir root;
        QVERIFY(root.isValid());
        qputenv("VETRIX_SYSROOT", root.path().toLocal8Bit());
        std::atomic<qint64> nNow{1000};
        std::atomic<qint64> nSlept{0};
        const auto pPacer = std::make_shared<CameraDrivers::PollPacer>([&nNow] { return nNow.load(); },
                                                                       [&nNow, &nSlept](int nMs) {
                                                                           nNow += nMs;
                                                                           nSlept += nMs;
                                                                       });
        std::atomic<int> nChecks{0};
        VxProbeTable table = defaultProbeTable();
        table.uUnreadable = 0; // the empty root stands for a machine without the driver
        // The driver row's own check, paced by the pacer on the fake clock.
        const auto realCheck = cameraDriverProbes(VxItems::ItemId(item), VxPrivileges::system(), pPacer).check;
        QVERIFY(realCheck);
        const auto countedCheck = [realCheck, &nChecks](CDetectInfo &info) {
            ++nChecks;
            realCheck(info);
        };
        table.setCheck(VxItems::GigeDriver, countedCheck);
        table.setCheck(VxItems::Usb3Driver, countedCheck);
        table.setInstall(VxItems::GigeDriver, [] { return true; });
        table.setInstall(VxItems::Usb3Driver, [] { return true; });
        VxOperateThread thread(table);
        thread.setClock([&nNow] { return nNow += 20; });
        thread.detectInfo(item)->bNormal = 0;
        const QStringList listWarnings = optimize(thread, quint32(item));
        qunsetenv("VETRIX_SYSROOT");
        QCOMPARE(listWarnings, QStringList{"Installation of the driver timed out."});
        const int nLimit = int(VxOperateThread::kInstallPollLimitMs / 250) + 2;
        QVERIFY2(nChecks.load() <= nLimit, qPrintable(QStringLiteral("%1 checks in ten minutes").arg(nChecks.load())));
        QVERIFY(nChecks.load() >= 100);
        QVERIFY(nSlept.load() >= VxOperateThread::kInstallPollLimitMs / 2);
    }

    void refusedRepairStaysExceptional_data()
    {
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("line");
        QTest::newRow("SDK files, rights refused")
            << 1 << int(VxRepairStatus::NotAuthorized) << "Not repaired: administrator rights were not granted.";
        QTest::newRow("SDK files, no pkexec")
            << 1 << int(VxRepairStatus::HelperMissing) << "Not repaired: administrator rights could not be requested.";
        QTest::newRow("environment, helper refused")
            << 2 << int(VxRepairStatus::Refused) << "Not repaired: the change was not accepted.";
        QTest::newRow("environment, rights refused")
            << 2 << int(VxRepairStatus::NotAuthorized) << "Not repaired: administrator rights were not granted.";
        QTest::newRow("jumbo, write failed")
            << 256 << int(VxRepairStatus::Failed) << "Not repaired: the change could not be made.";
    }
    // As a normal user on Linux: the privileged step did not happen, so the
    // item stays exceptional (the SDK files are still listed) and says why.
    // On Windows the item is marked normal after its clear, as before.
    void refusedRepairStaysExceptional()
    {
        QFETCH(int, item);
        QFETCH(int, status);
        QFETCH(QString, line);
        FakeProbes fakes;
        VxProbeTable table = fakes.table();
        const VxRepairStatus failure = VxRepairStatus(status);
        // The repairs behave as the real ones do when the helper's step fails:
        // the clear marks its item normal anyway, the others leave it.
        table.setRepair(VxItems::SdkFiles, [failure](CSDKPathDetectInfo &info) {
            info.foundFiles.clear();
            info.bNormal = 1;
            return VxRepairOutcome(failure);
        });
        table.setCheck(VxItems::SdkFiles, [](CSDKPathDetectInfo &info) {
            info.foundFiles = {{"libLuCameraControl.so", {"/usr/lib"}}};
            info.bNormal = 0;
        });
        table.setRepair(VxItems::EnvVariables, [failure](CEnvDetectInfo &) { return VxRepairOutcome(failure); });
        table.setCheck(VxItems::EnvVariables, [](CEnvDetectInfo &info) { info.bNormal = 0; });
        table.setRepair(VxItems::JumboFrame, [failure](CJumboPacketDetectInfo &info) {
            info.bNormal = 0;
            return VxRepairOutcome(failure);
        });
        VxOperateThread thread(table);
        CDetectInfo *pInfo = thread.detectInfo(item);
        pInfo->bNormal = 0;
        QCOMPARE(optimize(thread, quint32(item)), QStringList());
        if (!VxPrivileged::failedRepairStaysExceptional()) {
            // Windows: the program runs elevated; the clear marks its item
            // normal and no reason is kept.
            QCOMPARE(pInfo->bNormal, item == 1 ? 1 : 0);
            QCOMPARE(pInfo->nRepairStatus, 0);
            QVERIFY(!VxResultText::itemLines(*pInfo).contains(line));
            return;
        }
        QCOMPARE(pInfo->bNormal, 0);
        QCOMPARE(pInfo->nRepairStatus, status);
        const QStringList listLines = VxResultText::itemLines(*pInfo);
        QVERIFY2(listLines.contains(line), qPrintable(listLines.join(" | ")));
        QVERIFY(!listLines.contains(" No other SDK files were found"));
        if (item == 1)
            QVERIFY(listLines.contains("    /usr/lib/libLuCameraControl.so"));
        QVERIFY(VxResultText::logText({pInfo}).contains(line));

        // The next detection forgets the reason.
        thread.startDetect(quint32(item));
        QTRY_VERIFY_WITH_TIMEOUT(thread.pendingDetectMask() == 0 && !thread.isRunning(), 10000);
        QCOMPARE(pInfo->nRepairStatus, 0);
        QVERIFY(!VxResultText::itemLines(*pInfo).contains(line));
    }

    // A repair that went through leaves no reason behind, and neither does a
    // failed one whose item a fresh check found normal.
    void successfulRepairHasNoReason()
    {
        FakeProbes fakes;
        VxProbeTable table = fakes.table();
        table.setRepair(VxItems::EnvVariables, [](CEnvDetectInfo &) { return VxRepairOutcome(VxRepairStatus::Failed); });
        table.setCheck(VxItems::EnvVariables, [](CEnvDetectInfo &info) { info.bNormal = 1; });
        VxOperateThread thread(table);
        thread.detectInfo(1)->bNormal = 0;
        thread.detectInfo(1)->nRepairStatus = int(VxRepairStatus::NotAuthorized);
        thread.detectInfo(2)->bNormal = 0;
        optimize(thread, 1 | 2);
        QCOMPARE(thread.detectInfo(1)->bNormal, 1);
        QCOMPARE(thread.detectInfo(1)->nRepairStatus, 0);
        QCOMPARE(thread.detectInfo(2)->bNormal, 1);
        QCOMPARE(thread.detectInfo(2)->nRepairStatus, 0);
        QVERIFY(VxResultText::itemLines(*thread.detectInfo(1)).contains(" No other SDK files were found"));
    }
};

QTEST_GUILESS_MAIN(TestVxOperateThreadRepairs)
#include "tst_vxoperatethread_repairs.moc"
