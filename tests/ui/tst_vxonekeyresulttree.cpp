#include "cdetectinfo.h"
#include "custom.h"
#include "customloadingdialog.h"
#include "custompushbutton.h"
#include "../engine/fakeprobes.h"
#include "vxitems.h"
#include "vxonekeyresulttree.h"

#include <QtTest>

namespace {
// Stands in for the dialogs: records what was opened and lets the test
// decide how the record looks when the dialog closes.
class TestTree : public VxOneKeyResultTree
{
public:
    QStringList opened;
    std::function<void(CDetectInfo *)> onDialog;

protected:
    void run(const char *pName, CDetectInfo *pInfo)
    {
        opened << QString::fromLatin1(pName);
        if (onDialog)
            onDialog(pInfo);
    }
    void openSdkFileDialog(CDetectInfo *p) override { run("sdk", p); }
    void openEnvDialog(CDetectInfo *p) override { run("env", p); }
    void installDriver(CDetectInfo *p) override { run("install", p); }
    void openUsbDriverDialog(CDetectInfo *p) override { run("usbdriver", p); }
    void openLineRateDialog(CDetectInfo *p) override { run("linerate", p); }
    void openJumboDialog(CDetectInfo *p) override { run("jumbo", p); }
    void openUsbTreeDialog(CDetectInfo *p) override { run("usbtree", p); }
    void openSystemInfo(CDetectInfo *p) override { run("system", p); }
};
} // namespace

class TestVxOneKeyResultTree : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void layout();
    void severityIcons_data();
    void severityIcons();
    void groupCounter();
    void buttonSizeFollowsLanguage();
    void buttonsOpenTheirDialogs_data();
    void buttonsOpenTheirDialogs();
    void clearResults();
    void logTextHoldsDiagnosedRows();
    void installDriverShowsLoadingUntilInstalled();
};

void TestVxOneKeyResultTree::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
}

void TestVxOneKeyResultTree::layout()
{
    VxOneKeyResultTree tree;
    QCOMPARE(tree.topLevelItemCount(), 4);
    QCOMPARE(tree.columnCount(), 2);
    QVERIFY(tree.isHeaderHidden());
    QCOMPARE(tree.iconSize(), QSize(30, 30));
    const QList<QList<int>> expected = {{1, 2}, {4, 8, 32}, {512, 1024, 256, 128, 2048}, {4096, 8192, 16384, 32768, 65536}};
    const int groups[4] = {1, 2, 4, 8};
    for (int g = 0; g < 4; ++g) {
        QTreeWidgetItem *pGroup = tree.topLevelItem(g);
        QCOMPARE(pGroup->data(0, VxOneKeyResultTree::RoleItemId).toInt(), -1);
        QCOMPARE(pGroup->data(0, VxOneKeyResultTree::RoleGroup).toInt(), groups[g]);
        QVERIFY(!(pGroup->flags() & Qt::ItemIsSelectable));
        QVERIFY(pGroup->isExpanded());
        QList<int> ids;
        for (int i = 0; i < pGroup->childCount(); ++i) {
            ids << pGroup->child(i)->data(0, VxOneKeyResultTree::RoleItemId).toInt();
            QCOMPARE(pGroup->child(i)->data(0, VxOneKeyResultTree::RoleGroup).toInt(), -1);
        }
        QCOMPARE(ids, expected.at(g));
    }
    QVERIFY(!tree.itemRow(16) && !tree.itemRow(64));
    QCOMPARE(tree.itemRow(2048)->text(0), QStringLiteral("Systm Info"));
    // One button per item, made once, disabled until there is a result.
    QVERIFY(tree.button(1) && !tree.button(1)->isEnabled());
    QVERIFY(!tree.button(16));
}

void TestVxOneKeyResultTree::severityIcons_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("normal");
    QTest::addColumn<int>("severity");
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("enabled");
    QTest::addRow("abnormal sdk files are serious") << 1 << false << 2 << "Check and Clear" << true;
    QTest::addRow("abnormal jumbo is medium") << 256 << false << 1 << "Check and Repair" << true;
    QTest::addRow("normal firewall") << 1024 << true << 0 << "Disabled" << false;
    QTest::addRow("missing gige driver") << 4 << false << 1 << "Install Driver" << true;
}

void TestVxOneKeyResultTree::severityIcons()
{
    QFETCH(int, item);
    QFETCH(bool, normal);
    QFETCH(int, severity);
    QFETCH(QString, button);
    QFETCH(bool, enabled);
    VxOneKeyResultTree tree;
    std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(item));
    pInfo->bNormal = normal;
    tree.updateItem(pInfo.get());
    QCOMPARE(tree.itemRow(item)->data(0, VxOneKeyResultTree::RoleSeverity).toInt(), severity);
    const QImage expected = QIcon(VxItems::severityIconPath(severity)).pixmap(30, 30).toImage();
    QCOMPARE(tree.itemRow(item)->icon(0).pixmap(30, 30).toImage(), expected);
    QCOMPARE(tree.button(item)->text(), button);
    QCOMPARE(tree.button(item)->isEnabled(), enabled);
    QCOMPARE(tree.countOfSeverity(severity), 1);
}

void TestVxOneKeyResultTree::groupCounter()
{
    VxOneKeyResultTree tree;
    std::unique_ptr<CDetectInfo> pJumbo(createDetectInfo(256));
    std::unique_ptr<CDetectInfo> pRate(createDetectInfo(128));
    std::unique_ptr<CDetectInfo> pSystem(createDetectInfo(2048));
    pJumbo->bNormal = 0;
    pRate->bNormal = 0;
    tree.updateItem(pSystem.get());
    QCOMPARE(tree.groupRow(4)->text(0), QStringLiteral("PC System Diagnosis"));
    tree.updateItem(pJumbo.get());
    tree.updateItem(pRate.get());
    QCOMPARE(tree.groupRow(4)->text(0), QStringLiteral("PC System Diagnosis (2 Exception(s))"));
    pRate->bNormal = 1;
    tree.refreshItem(pRate.get());
    QCOMPARE(tree.groupRow(4)->text(0), QStringLiteral("PC System Diagnosis (1 Exception(s))"));
    QCOMPARE(tree.groupRow(1)->text(0), QStringLiteral("SDK Diagnosis"));
}

void TestVxOneKeyResultTree::buttonSizeFollowsLanguage()
{
    Custom::setLanguage(1);
    {
        VxOneKeyResultTree tree;
        QCOMPARE(tree.button(1)->size(), QSize(120, 24));
    }
    Custom::setLanguage(0);
    {
        VxOneKeyResultTree tree;
        QCOMPARE(tree.button(1)->size(), QSize(86, 24));
    }
    Custom::setLanguage(1);
}

void TestVxOneKeyResultTree::buttonsOpenTheirDialogs_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("normalAfter");
    QTest::addColumn<QString>("opened");
    QTest::addColumn<int>("removed"); // -1: no sigRemoveOptimizeItem
    QTest::addRow("sdk files cleared") << 1 << true << "sdk" << 1;
    QTest::addRow("sdk files still there") << 1 << false << "sdk" << -1;
    QTest::addRow("env repaired") << 2 << true << "env" << 2;
    QTest::addRow("jumbo repaired") << 256 << true << "jumbo" << 256;
    QTest::addRow("gige installed") << 4 << true << "install" << -1;
    QTest::addRow("usb3 installed") << 8 << true << "install" << -1;
    QTest::addRow("controller driver") << 32 << false << "usbdriver" << -1;
    QTest::addRow("line rate") << 128 << false << "linerate" << -1;
    QTest::addRow("usb tree") << 512 << false << "usbtree" << -1;
    QTest::addRow("system info") << 2048 << false << "system" << -1;
}

void TestVxOneKeyResultTree::buttonsOpenTheirDialogs()
{
    QFETCH(int, item);
    QFETCH(bool, normalAfter);
    QFETCH(QString, opened);
    QFETCH(int, removed);
    TestTree tree;
    std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(item));
    pInfo->bNormal = 0;
    tree.updateItem(pInfo.get());
    tree.onDialog = [normalAfter](CDetectInfo *p) { p->bNormal = normalAfter; };
    QSignalSpy spy(&tree, &VxOneKeyResultTree::sigRemoveOptimizeItem);
    QVERIFY(tree.button(item)->isEnabled());
    QTest::mouseClick(tree.button(item), Qt::LeftButton);
    QCOMPARE(tree.opened, QStringList{opened});
    if (removed < 0) {
        QCOMPARE(spy.count(), 0);
    } else {
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), removed);
    }
    // The row shows the record as the dialog left it.
    QCOMPARE(tree.itemRow(item)->data(0, VxOneKeyResultTree::RoleSeverity).toInt(),
             VxItems::severity(pInfo->bNormal, item));
}

void TestVxOneKeyResultTree::clearResults()
{
    VxOneKeyResultTree tree;
    std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(1));
    pInfo->bNormal = 0;
    tree.updateItem(pInfo.get());
    QVERIFY(tree.itemRow(1)->childCount() > 0);
    tree.clearResults();
    QVERIFY(!tree.itemRow(1)->data(0, VxOneKeyResultTree::RoleSeverity).isValid());
    QCOMPARE(tree.itemRow(1)->childCount(), 0);
    QVERIFY(!tree.button(1)->isEnabled());
    QCOMPARE(tree.countOfSeverity(2), 0);
    QCOMPARE(tree.groupRow(1)->text(0), QStringLiteral("SDK Diagnosis"));
    QVERIFY(!tree.record(1));
}

void TestVxOneKeyResultTree::logTextHoldsDiagnosedRows()
{
    VxOneKeyResultTree tree;
    std::unique_ptr<CDetectInfo> pFirewall(createDetectInfo(1024));
    tree.updateItem(pFirewall.get());
    const QString strLog = tree.logText();
    QVERIFY(strLog.contains("|    |----3-1: PC Firewall Status\r\n|    |     The firewall hasn't been opened\r\n"));
    QVERIFY(!strLog.contains("1-1"));
}

void TestVxOneKeyResultTree::installDriverShowsLoadingUntilInstalled()
{
    // The installer starts; the third status poll finds the driver.
    FakeProbes fakes;
    fakes.nChecksUntilInstalled = 3;
    fakes.onStatusCheck = [] { QThread::msleep(50); };
    VxOneKeyResultTree tree;
    tree.setProbeTable(fakes.table());
    tree.show();
    std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(4));
    pInfo->bNormal = 0;
    tree.updateItem(pInfo.get());
    QCOMPARE(tree.button(4)->text(), QStringLiteral("Install Driver"));

    // Watch the loading box while the click runs the installation.
    QStringList listSeen;
    QTimer watcher;
    connect(&watcher, &QTimer::timeout, this, [&listSeen] {
        for (QWidget *pWidget : QApplication::topLevelWidgets()) {
            auto *pLoading = qobject_cast<CustomLoadingDialog *>(pWidget);
            if (pLoading && pLoading->isVisible() && !listSeen.contains(pLoading->LabelText()))
                listSeen << pLoading->LabelText();
        }
    });
    watcher.start(10);
    QTest::mouseClick(tree.button(4), Qt::LeftButton);
    watcher.stop();

    QCOMPARE(listSeen, QStringList{"Installing GigE driver..."});
    QCOMPARE(fakes.takeCalls(), (QStringList{"install 4", "detect 4", "detect 4", "detect 4"}));
    QCOMPARE(pInfo->bNormal, 1);
    QCOMPARE(tree.button(4)->text(), QStringLiteral("Installed"));
    QVERIFY(!tree.button(4)->isEnabled());
    QCOMPARE(tree.itemRow(4)->data(0, VxOneKeyResultTree::RoleSeverity).toInt(), 0);
    for (QWidget *pWidget : QApplication::topLevelWidgets()) {
        if (auto *pLoading = qobject_cast<CustomLoadingDialog *>(pWidget))
            QVERIFY(!pLoading->isVisible());
    }
}

QTEST_MAIN(TestVxOneKeyResultTree)
#include "tst_vxonekeyresulttree.moc"
