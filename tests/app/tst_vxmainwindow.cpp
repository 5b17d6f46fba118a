#include "../engine/fakeprobes.h"
#include "custom.h"
#include "custommenu.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "luinterface.h"
#include "vxmainwindow.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"

#include <QtTest>

namespace {
class TestWindow : public VxMainWindow
{
public:
    explicit TestWindow(const VxProbeTable &table)
        : VxMainWindow(nullptr, table)
    {
    }

    int nAboutOpened = 0;

protected:
    void openAbout() override { ++nAboutOpened; }
    void openDumpTool() override {}
};

const char *const kQmFiles[4] = {"Vetrix_zh.qm", "Panekit_zh_CN.qm", "Basekit_zh_CN.qm", "qt_zh_CN.qm"};
} // namespace

class TestVxMainWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void menus();
    void exportFollowsPage();
    void commandLineLanguage_data();
    void commandLineLanguage();
    void englishWhileEnglishReloadsAndMarks();
    void missingTranslationOnlyMovesMarks();
    void chineseInstallsTranslators();
    void userManualHiddenByMaker();
    void userManualUrl();
    void readoutKeepsPreviousOnZero();
    void closeRefusedWhileRunning();
    void languageEventAccepted();
    void aboutFromMenu();
    void destroyStopsResourceLoop();
    void workerWarningShowsMessageBox();
    void missingInstallersAreNamedOneBoxAtATime();

private:
    QTemporaryDir m_root;
    QTemporaryDir m_translations;
    FakeProbes m_fakes;
    // The probes the pages of the next test run.
    std::function<VxProbeTable()> m_tableSource;
};

void TestVxMainWindow::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Panekit_Default.rcc")));
    QStandardPaths::setTestModeEnabled(true);
    // These tests start optimisations without looking at the plan.
    VxOneKeyWidget::setConfirmOptimization([](QWidget *, const QStringList &) { return true; });
    qputenv("VETRIX_SYSROOT", m_root.path().toUtf8());
    QDir().mkpath(m_translations.filePath("Translation"));
    for (const char *pFile : kQmFiles) {
        const QString strName = QString::fromLatin1(pFile);
        QVERIFY2(QFile::copy(QStringLiteral(VX_BIN_DIR "/Translation/") + strName,
                             m_translations.filePath("Translation/" + strName)),
                 pFile);
    }
    // qt_zh_CN.qm loads Qt's module catalogues from beside it.
    for (const QString &strName : QDir(QStringLiteral(VX_BIN_DIR "/Translation")).entryList({"qt*_zh_CN.qm"}))
        QFile::copy(QStringLiteral(VX_BIN_DIR "/Translation/") + strName, m_translations.filePath("Translation/" + strName));
    FakeProbes *pFakes = &m_fakes;
    m_tableSource = [pFakes] { return pFakes->tableWithoutTrees(); };
}

void TestVxMainWindow::init()
{
    LuInterface::setAppIniFile(QString());
    VxMainWindow::switchLanguage(QStringLiteral("ENG"), m_translations.path());
}

void TestVxMainWindow::cleanupTestCase()
{
    m_tableSource = nullptr;
    qunsetenv("VETRIX_SYSROOT");
}

void TestVxMainWindow::menus()
{
    TestWindow window(m_tableSource());
    const QList<QPair<int, QString>> expected = {{0, "FileExportAction"}, {2, "EngAction"}, {3, "ChAction"},
                                                 {4, "UserDocAction"},    {5, "AboutAction"}};
    for (const auto &entry : expected) {
        QAction *pAction = window.action(entry.first);
        QVERIFY2(pAction, qPrintable(entry.second));
        QCOMPARE(pAction->objectName(), entry.second);
    }
    QVERIFY(!window.action(1)); // close has no action
    QVERIFY(!window.action(0)->isEnabled());
    QVERIFY(window.action(2)->isCheckable() && window.action(3)->isCheckable());
    QCOMPARE(window.action(2)->text(), QStringLiteral("English"));
    QCOMPARE(window.action(3)->text(), QString::fromUtf8("简体中文"));
    QCOMPARE(window.memoryAction()->text(), QStringLiteral("Memory: --%"));
    QCOMPARE(window.cpuAction()->text(), QStringLiteral("CPU: --%"));
    QCOMPARE(window.resourceButton()->objectName(), QStringLiteral("ResourceUsageMenu"));
    QCOMPARE(window.resourceButton()->size(), QSize(24, 24));
    QCOMPARE(window.windowTitle(), QStringLiteral("Vetrix Tool"));
    QCOMPARE(window.size(), QSize(1366, 768));
    auto *pHelp = window.findChild<CustomMenu *>(QStringLiteral("HelpMenu"));
    QVERIFY(pHelp);
    QVERIFY(window.findChild<CustomMenu *>(QStringLiteral("LangMenu")));
    QVERIFY(window.findChild<CustomMenu *>(QStringLiteral("FileMenu")));
}

void TestVxMainWindow::exportFollowsPage()
{
    TestWindow window(m_tableSource());
    emit window.page()->sigExportEnable(true);
    QVERIFY(window.action(0)->isEnabled());
    emit window.page()->sigExportEnable(false);
    QVERIFY(!window.action(0)->isEnabled());
}

void TestVxMainWindow::commandLineLanguage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("language");
    QTest::addRow("ENG") << QStringList{"prog", "ENG"} << "ENG";
    QTest::addRow("CH") << QStringList{"prog", "CH"} << "CH";
    QTest::addRow("eng is ignored") << QStringList{"prog", "eng"} << "";
    QTest::addRow("English is ignored") << QStringList{"prog", "English"} << "";
    QTest::addRow("no argument") << QStringList{"prog"} << "";
    QTest::addRow("only the first argument counts") << QStringList{"prog", "x", "ENG"} << "";
}

void TestVxMainWindow::commandLineLanguage()
{
    QFETCH(QStringList, args);
    QFETCH(QString, language);
    QList<QByteArray> bytes;
    std::vector<char *> argv;
    for (const QString &strArg : args)
        bytes << strArg.toLatin1();
    for (QByteArray &arg : bytes)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    QCOMPARE(VxMainWindow::commandLineLanguage(int(args.size()), argv.data()), language);
}

void TestVxMainWindow::englishWhileEnglishReloadsAndMarks()
{
    QVERIFY(VxMainWindow::switchLanguage(QStringLiteral("ENG"), m_translations.path()));
    TestWindow window(m_tableSource());
    window.action(3)->setChecked(true);
    window.action(2)->setChecked(false);
    window.OnMenuActionTriggered(window.action(2));
    QVERIFY(window.action(2)->isChecked());
    QVERIFY(!window.action(3)->isChecked());
    QCOMPARE(Custom::language(), 1);
}

void TestVxMainWindow::missingTranslationOnlyMovesMarks()
{
    // The test program's own folder has no translations: the switch fails
    // at loading and only the check marks move.
    QVERIFY(!QFileInfo::exists(QCoreApplication::applicationDirPath() + "/Translation/qt_zh_CN.qm"));
    TestWindow window(m_tableSource());
    window.OnMenuActionTriggered(window.action(3));
    QVERIFY(window.action(3)->isChecked());
    QVERIFY(!window.action(2)->isChecked());
    QCOMPARE(Custom::language(), 1);
    QCOMPARE(QCoreApplication::translate("VxOneKeyResult", "Systm Info"), QStringLiteral("Systm Info"));

    QTemporaryDir partial;
    QDir().mkpath(partial.filePath("Translation"));
    for (int i = 0; i < 3; ++i)
        QFile::copy(m_translations.filePath(QStringLiteral("Translation/") + kQmFiles[i]),
                    partial.filePath(QStringLiteral("Translation/") + kQmFiles[i]));
    QVERIFY(!VxMainWindow::switchLanguage(QStringLiteral("CH"), partial.path()));
    QCOMPARE(Custom::language(), 1);
}

void TestVxMainWindow::chineseInstallsTranslators()
{
    TestWindow window(m_tableSource());
    QVERIFY(VxMainWindow::switchLanguage(QStringLiteral("CH"), m_translations.path()));
    QCOMPARE(Custom::language(), 0);
    QCOMPARE(LuInterface::language(0), QStringLiteral("CH"));
    QVERIFY(QCoreApplication::translate("VxOneKeyResult", "Systm Info") != QStringLiteral("Systm Info"));
    QCoreApplication::processEvents();
    QVERIFY(window.windowTitle() != QStringLiteral("Vetrix Tool"));
    QVERIFY(VxMainWindow::switchLanguage(QStringLiteral("ENG"), m_translations.path()));
    QCoreApplication::processEvents();
    QCOMPARE(window.windowTitle(), QStringLiteral("Vetrix Tool"));
    QCOMPARE(QCoreApplication::translate("VxOneKeyResult", "Systm Info"), QStringLiteral("Systm Info"));
}

void TestVxMainWindow::userManualHiddenByMaker()
{
    QFile ini(m_root.filePath("app.ini"));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[OEM]\nShowUserManuel=false\n");
    ini.close();
    LuInterface::setAppIniFile(ini.fileName());
    TestWindow window(m_tableSource());
    QVERIFY(!window.action(4)->isVisible());
    auto *pHelp = window.findChild<CustomMenu *>(QStringLiteral("HelpMenu"));
    QStringList visible;
    for (QAction *pAction : pHelp->actions()) {
        if (pAction->isVisible())
            visible << (pAction->menu() ? pAction->menu()->objectName() : pAction->objectName());
    }
    QCOMPARE(visible, (QStringList{"LangMenu", "AboutAction"}));
}

void TestVxMainWindow::userManualUrl()
{
    LuInterface::setLanguage(QStringLiteral("ENG"));
    QString strStart;
    const QString strUrl = VxMainWindow::userManualUrl(&strStart);
    QVERIFY(strStart.endsWith("/../doc/User_Manual_Orvex_English/index.html"));
    QVERIFY(strUrl.startsWith("file://"));
    QVERIFY(strUrl.endsWith("/doc/User_Manual_Orvex_English/index.html?guid=GUID-CAB2338A-7C22-4FB6-B268-6BC80BF7D6AC.html"));
    LuInterface::setLanguage(QStringLiteral("CH"));
    QVERIFY(VxMainWindow::userManualUrl().endsWith(
        "/doc/User_Manual_Orvex_Chinese/index.html?guid=GUID-AAB876F3-D1ED-4664-A94D-56CA4C6FE275.html"));
    LuInterface::setLanguage(QStringLiteral("ENG"));
}

void TestVxMainWindow::readoutKeepsPreviousOnZero()
{
    TestWindow window(m_tableSource());
    window.onSigUpdateCPUUsage(0.0f);
    window.onSigUpdateMemoryUsage(0.0f);
    QCOMPARE(window.cpuAction()->text(), QStringLiteral("CPU: --%"));
    QCOMPARE(window.memoryAction()->text(), QStringLiteral("Memory: --%"));
    window.onSigUpdateCPUUsage(12.5f);
    window.onSigUpdateMemoryUsage(33.3333f);
    QCOMPARE(window.cpuAction()->text(), QStringLiteral("CPU: 12.5%"));
    QCOMPARE(window.memoryAction()->text(), QStringLiteral("Memory: 33.3333%"));
    window.onSigUpdateCPUUsage(0.0f);
    QCOMPARE(window.cpuAction()->text(), QStringLiteral("CPU: 12.5%"));
}

void TestVxMainWindow::closeRefusedWhileRunning()
{
    TestWindow window(m_tableSource());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.page()->worker()->setItemPause(100);
    window.page()->onOperateClicked2(); // start diagnosis
    QVERIFY(!window.page()->isWorkerIdle());
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(window.page()->isWorkerIdle(), 10000);
    QVERIFY(window.close());
}

void TestVxMainWindow::languageEventAccepted()
{
    TestWindow window(m_tableSource());
    QEvent event(QEvent::Type(1100));
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    QVERIFY(event.isAccepted());
    QEvent other(QEvent::Type(QEvent::User + 7));
    other.ignore();
    QCoreApplication::sendEvent(&window, &other);
    QVERIFY(other.isAccepted());
}

void TestVxMainWindow::aboutFromMenu()
{
    TestWindow window(m_tableSource());
    window.OnMenuActionTriggered(window.action(5));
    QCOMPARE(window.nAboutOpened, 1);
}

void TestVxMainWindow::destroyStopsResourceLoop()
{
    // The destructor waits for the loop, so no sample reaches a freed window
    // (the sanitizer runs would see it), and wakes it, so closing is not
    // held up by the sampling period: with a ten-minute period a destructor
    // that did not wake the loop would keep the test until its time-out.
    VxMainWindow::setSamplePeriod(600000);
    const auto restore = qScopeGuard([] { VxMainWindow::setSamplePeriod(1000); });
    for (int i = 0; i < 3; ++i) {
        auto *pWindow = new TestWindow(m_tableSource());
        // Let the loop take its first sample and go to sleep (should it not
        // be there yet, it sees the cleared flag before it sleeps).
        QTest::qWait(50);
        delete pWindow;
    }
}

void TestVxMainWindow::workerWarningShowsMessageBox()
{
    TestWindow window(m_tableSource());
    window.show();
    QString strShown;
    QString strTitle;
    QTimer::singleShot(50, this, [&] {
        if (auto *pBox = qobject_cast<CustomMessageBox *>(QApplication::activeModalWidget())) {
            strShown = pBox->cText();
            strTitle = pBox->windowTitle();
            pBox->close();
        }
    });
    emit window.page()->worker()->sigWarning(QStringLiteral("File doesn't exist."));
    QCOMPARE(strShown, QStringLiteral("File doesn't exist."));
    QCOMPARE(strTitle, QStringLiteral("Prompt"));
}

// Both driver installers are missing: the optimisation warns twice, each
// box naming its installer, and the second box only opens once the first is
// closed.
void TestVxMainWindow::missingInstallersAreNamedOneBoxAtATime()
{
    QTemporaryDir sdk;
    const QString strGige = sdk.filePath("Drivers/GigE/install.sh");
    const QString strUsb3 = sdk.filePath("Drivers/Usb3.0/install.sh");
    FakeProbes *pFakes = &m_fakes;
    m_tableSource = [pFakes, strGige, strUsb3] {
        VxProbeTable table = pFakes->tableWithoutTrees();
        table.setCheck(VxItems::GigeDriver, [](CDetectInfo &info) { info.bNormal = 0; });
        table.setCheck(VxItems::Usb3Driver, [](CDetectInfo &info) { info.bNormal = 0; });
        table.setInstall(VxItems::GigeDriver, [] { return false; });
        table.setInstall(VxItems::Usb3Driver, [] { return false; });
        table[VxItems::GigeDriver].installerPath = [strGige] { return strGige; };
        table[VxItems::Usb3Driver].installerPath = [strUsb3] { return strUsb3; };
        return table;
    };
    const auto restore = qScopeGuard([this, pFakes] {
        m_tableSource = [pFakes] { return pFakes->tableWithoutTrees(); };
    });
    TestWindow window(m_tableSource());
    window.show();
    VxOneKeyWidget *pPage = window.page();
    pPage->worker()->setItemPause(1);
    QTest::mouseClick(pPage->operateButton2(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(pPage->state(), int(VxOneKeyWidget::DetectFinished), 10000);

    QStringList listShown;
    int nMostOpen = 0;
    QTimer closer;
    connect(&closer, &QTimer::timeout, this, [&] {
        int nOpen = 0;
        for (QWidget *pWidget : QApplication::topLevelWidgets())
            nOpen += qobject_cast<CustomMessageBox *>(pWidget) && pWidget->isVisible();
        nMostOpen = qMax(nMostOpen, nOpen);
        // Leave each box open a little while, so a second one would be seen.
        if (auto *pBox = qobject_cast<CustomMessageBox *>(QApplication::activeModalWidget())) {
            if (pBox->property("vxSeen").toBool()) {
                listShown << pBox->cText();
                pBox->close();
            } else {
                pBox->setProperty("vxSeen", true);
            }
        }
    });
    closer.start(100);
    QTest::mouseClick(pPage->operateButton1(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(listShown.size(), 2, 15000);
    QTRY_VERIFY_WITH_TIMEOUT(pPage->isWorkerIdle() && pPage->state() == VxOneKeyWidget::OptimizeFinished, 10000);
    QTest::qWait(300);
    QCOMPARE(listShown.size(), 2);
    QCOMPARE(nMostOpen, 1);
    QCOMPARE(listShown.at(0),
             QStringLiteral("File doesn't exist.\nMissing file: ") + QDir::toNativeSeparators(strGige));
    QCOMPARE(listShown.at(1),
             QStringLiteral("File doesn't exist.\nMissing file: ") + QDir::toNativeSeparators(strUsb3));
}

QTEST_MAIN(TestVxMainWindow)
#include "tst_vxmainwindow.moc"
