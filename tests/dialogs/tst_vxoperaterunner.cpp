// The one-item runner: loading box, worker thread, records in and out.
#include "cdetectinfo.h"
#include "customloadingdialog.h"
#include "dialogtestutil.h"
#include "vxdialogprobes.h"
#include "vxoperaterunner.h"
#include "vxoperatethread.h"

#include <QPointer>
#include <QTest>
#include <QThread>

#include <atomic>

namespace {

// What the GUI saw while the worker ran a probe: the loading boxes shown.
struct Observation
{
    int nBoxes = 0;
    QWidget *pBoxParent = nullptr;
    QString strLabel;
    bool bModal = false;
};

std::atomic<bool> g_bSeen{false};

// Looks at the top-level loading boxes once the worker has entered a probe,
// then lets the probe finish.
void observeFromGui(QObject *pContext, Observation *pObservation)
{
    g_bSeen = false;
    auto *pTimer = new QTimer(pContext);
    pTimer->setInterval(5);
    QObject::connect(pTimer, &QTimer::timeout, pContext, [pTimer, pObservation] {
        for (QWidget *pWidget : QApplication::topLevelWidgets()) {
            auto *pBox = qobject_cast<CustomLoadingDialog *>(pWidget);
            if (pBox && pBox->isVisible()) {
                ++pObservation->nBoxes;
                pObservation->pBoxParent = pBox->parentWidget();
                pObservation->strLabel = pBox->LabelText();
                pObservation->bModal = pBox->isModal();
            }
        }
        g_bSeen = true;
        pTimer->stop();
        pTimer->deleteLater();
    });
    pTimer->start();
}

// A probe table whose jumbo repair and check wait until the GUI looked.
VxProbeTable waitingTable()
{
    VxProbeTable table;
    auto waitForGui = [] {
        for (int i = 0; i < 2000 && !g_bSeen; ++i)
            QThread::msleep(1);
    };
    table.setRepair(VxItems::JumboFrame, [waitForGui](CJumboPacketDetectInfo &info) {
        waitForGui();
        info.jumboStates = {{QStringLiteral("eth0"), 1}};
        info.jumboValues = {{QStringLiteral("eth0"), 9014}};
        info.bNormal = 1;
    });
    table.setCheck(VxItems::JumboFrame, [waitForGui](CJumboPacketDetectInfo &info) {
        waitForGui();
        info.jumboStates = {{QStringLiteral("eth1"), 0}};
        info.bNormal = 0;
    });
    return table;
}

} // namespace

class TstVxOperateRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
        VxDialogProbes::setTable(waitingTable());
    }

    void cleanupTestCase()
    {
        VxDialogProbes::resetTable();
    }

    void emptyTextRunsWithoutBox()
    {
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        info.bNormal = 0;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(false, 256, nullptr, QString(), {{256, &info}});
        runner.run();
        QVERIFY(g_bSeen);
        QCOMPARE(seen.nBoxes, 0);
        QCOMPARE(info.bNormal, 1); // the repair ran on the caller's record
        QCOMPARE(runner.items().value(256), static_cast<CDetectInfo *>(&info));
    }

    void boxBelongsToTheGivenParent()
    {
        QWidget owner;
        owner.show();
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        info.bNormal = 0;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(false, 256, &owner, QStringLiteral("Enabling jumbo frame..."), {{256, &info}});
        runner.run();
        QCOMPARE(seen.nBoxes, 1);
        QCOMPARE(seen.pBoxParent, &owner);
        QCOMPARE(seen.strLabel, QStringLiteral("Enabling jumbo frame..."));
        QVERIFY(seen.bModal);
        // The box is closed at the end and deleted with the next events.
        QPointer<CustomLoadingDialog> pBox = owner.findChild<CustomLoadingDialog *>();
        QVERIFY(!pBox || !pBox->isVisible());
        QTRY_VERIFY(owner.findChild<CustomLoadingDialog *>() == nullptr);
    }

    void nullParentUsesTheActiveWindow_data()
    {
        QTest::addColumn<bool>("bActive");
        QTest::addRow("an active window") << true;
        QTest::addRow("no active window") << false;
    }

    void nullParentUsesTheActiveWindow()
    {
        QFETCH(bool, bActive);
        QWidget active;
        if (bActive) {
            active.show();
            QApplication::setActiveWindow(&active);
        } else {
            QApplication::setActiveWindow(nullptr);
        }
        QCOMPARE(QApplication::activeWindow() != nullptr, bActive);
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(false, 256, nullptr, QStringLiteral("Working..."), {{256, &info}});
        runner.run();
        QCOMPARE(seen.nBoxes, 1);
        QCOMPARE(seen.pBoxParent, bActive ? &active : nullptr);
        QApplication::setActiveWindow(nullptr);
        QTest::qWait(20); // let the closed box be deleted
    }

    void detectionFillsHeldRecordsInPlace()
    {
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(true, 256, nullptr, QString(), {{256, &info}});
        runner.run();
        QCOMPARE(runner.items().size(), 1);
        QCOMPARE(runner.items().value(256), static_cast<CDetectInfo *>(&info));
        QCOMPARE(info.jumboStates.value(QStringLiteral("eth1"), -1), 0);
        QCOMPARE(info.bNormal, 0);
    }

    void detectionHandsOverNewRecords()
    {
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(true, 256, nullptr, QString(), {});
        runner.run();
        QCOMPARE(runner.items().size(), 1);
        auto *pInfo = dynamic_cast<CJumboPacketDetectInfo *>(runner.items().value(256));
        QVERIFY(pInfo);
        QCOMPARE(pInfo->nItem, 256);
        QCOMPARE(pInfo->jumboStates.value(QStringLiteral("eth1"), -1), 0);
        delete pInfo; // the records the thread made belong to the caller
    }

    void recordIdFollowsItsKey()
    {
        CJumboPacketDetectInfo info; // nItem still 1, as a new record starts
        info.bNormal = 0;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(false, 256, nullptr, QString(), {{256, &info}});
        runner.run();
        QCOMPARE(info.nItem, 256);
        QCOMPARE(info.bNormal, 1); // repaired as the jumbo item
    }

    void recordOfAnotherItemIsNotRun()
    {
        CEnvDetectInfo wrong; // not a jumbo record
        wrong.nItem = 256;
        wrong.currentValues[QStringLiteral("PATH")] = QStringLiteral("/bin");
        g_bSeen = true; // nothing is going to wait
        VxOperateRunner runner(false, 256, nullptr, QString(), {{256, &wrong}});
        runner.run();
        QCOMPARE(wrong.currentValues.value(QStringLiteral("PATH")), QStringLiteral("/bin"));
        QCOMPARE(runner.items().value(256), static_cast<CDetectInfo *>(&wrong));
        QCOMPARE(runner.items().size(), 1);
    }

    void followsTheOperateThreadsTableByDefault()
    {
        VxDialogProbes::resetTable();
        VxOperateThread::setProbeTableSource([] {
            VxProbeTable table;
            table.setRepair(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) { info.jumboValues[QStringLiteral("eth9")] = 4088; });
            return table;
        });
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        VxOperateRunner runner(false, 256, nullptr, QString(), {{256, &info}});
        runner.run();
        VxOperateThread::setProbeTableSource(nullptr);
        VxDialogProbes::setTable(waitingTable());
        QCOMPARE(info.jumboValues.value(QStringLiteral("eth9")), 4088);
    }

    void repairLeavesTheItemsMapAlone()
    {
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        info.bNormal = 0;
        Observation seen;
        observeFromGui(this, &seen);
        VxOperateRunner runner(false, 256, nullptr, QString(), {{256, &info}});
        runner.run();
        QCOMPARE(runner.items().keys(), QList<int>({256}));
        QCOMPARE(info.jumboValues.value(QStringLiteral("eth0")), 9014);
    }
};

QTEST_MAIN(TstVxOperateRunner)
#include "tst_vxoperaterunner.moc"
