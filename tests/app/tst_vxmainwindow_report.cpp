// File > Export JSON Report and File > Compare with Report: the page's
// diagnosis (on fake probes) saved as JSON and compared with saved reports.
#include "../engine/fakeprobes.h"
#include "custommessagebox.h"
#include "customsavedonehintdlg.h"
#include "customtreewidget.h"
#include "vxmainwindow.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"
#include "vxreportcomparedlg.h"
#include "vxreportdiff.h"
#include "vxtipswidget.h"

#include <QAction>
#include <QtTest>

namespace {
class TestWindow : public VxMainWindow
{
public:
    explicit TestWindow(const VxProbeTable &table)
        : VxMainWindow(nullptr, table)
    {
    }

    QString strReportPath; // what the open dialog "chooses"
    QString strJsonPath; // what the save dialog "chooses"
    int nAsked = 0;
    int nShown = 0;
    QStringList listTopRows;
    QString strTips;
    bool bTreeShown = false;

protected:
    void openAbout() override { }
    void openDumpTool() override { }
    QString askReportPath(const QString &) override
    {
        ++nAsked;
        return strReportPath;
    }
    QString askJsonReportPath(const QString &, const QString &strName) override
    {
        strProposed = strName;
        return strJsonPath;
    }
    void showComparison(VxReportCompareDlg &dialog) override
    {
        ++nShown;
        listTopRows.clear();
        for (int i = 0; i < dialog.tree()->topLevelItemCount(); ++i)
            listTopRows << dialog.tree()->topLevelItem(i)->text(0);
        strTips = dialog.tips()->text().remove(QStringLiteral("\r\n"));
        bTreeShown = !dialog.tree()->isHidden();
    }

public:
    QString strProposed;
};

// Closes the boxes and hint dialogs that open while armed and keeps their texts.
class ModalCloser : public QObject
{
public:
    ModalCloser()
    {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, this, [this] {
            QWidget *pModal = QApplication::activeModalWidget();
            if (auto *pBox = qobject_cast<CustomMessageBox *>(pModal)) {
                listTexts << pBox->cText();
                pBox->reject();
            } else if (auto *pHint = qobject_cast<CustomSaveDoneHintDlg *>(pModal)) {
                listTexts << QStringLiteral("saved ") + pHint->cFilePath();
                pHint->reject();
            }
        });
        timer.start();
    }
    QStringList listTexts;

private:
    QTimer timer;
};
} // namespace

class TestVxMainWindowReport : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void menuEntries();
    void beforeDiagnosisSaysSo();
    void exportThenCompare();
    void badReportIsRefused();

private:
    void diagnose(TestWindow &window);
    QTemporaryDir m_root;
    QTemporaryDir m_files;
    FakeProbes m_fakes;
};

void TestVxMainWindowReport::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Panekit_Default.rcc")));
    QStandardPaths::setTestModeEnabled(true);
    qputenv("VETRIX_SYSROOT", m_root.path().toUtf8());
}

void TestVxMainWindowReport::cleanupTestCase()
{
    qunsetenv("VETRIX_SYSROOT");
}

void TestVxMainWindowReport::diagnose(TestWindow &window)
{
    window.page()->worker()->setItemPause(0);
    window.page()->onOperateClicked2();
    QTRY_VERIFY_WITH_TIMEOUT(
        window.page()->isWorkerIdle() && window.page()->state() == VxOneKeyWidget::DetectFinished, 20000);
}

void TestVxMainWindowReport::menuEntries()
{
    TestWindow window(m_fakes.tableWithoutTrees());
    QAction *pCompare = window.action(VxMainWindow::ActCompareReport);
    QAction *pJson = window.action(VxMainWindow::ActExportJson);
    QVERIFY(pCompare && pJson);
    QCOMPARE(pCompare->objectName(), QStringLiteral("CompareReportAction"));
    QCOMPARE(pCompare->text(), QString::fromUtf8("Compare with Report…"));
    QCOMPARE(pJson->text(), QString::fromUtf8("Export JSON Report…"));
    QVERIFY(pCompare->isEnabled());
    // The JSON export follows the log export.
    QVERIFY(!pJson->isEnabled());
    emit window.page()->sigExportEnable(true);
    QVERIFY(pJson->isEnabled());
    emit window.page()->sigExportEnable(false);
    QVERIFY(!pJson->isEnabled());
}

void TestVxMainWindowReport::beforeDiagnosisSaysSo()
{
    TestWindow window(m_fakes.tableWithoutTrees());
    window.strReportPath = m_files.filePath("never.json");
    ModalCloser closer;
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActCompareReport));
    QCOMPARE(closer.listTexts, QStringList {"No diagnosis has run yet. Start the diagnosis first."});
    QCOMPARE(window.nAsked, 0);
    QCOMPARE(window.nShown, 0);
}

void TestVxMainWindowReport::exportThenCompare()
{
    TestWindow window(m_fakes.tableWithoutTrees());
    diagnose(window);
    ModalCloser closer;

    // Saved beside the log, under the log's name.
    window.strJsonPath = m_files.filePath("saved.json");
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActExportJson));
    QVERIFY2(window.strProposed.startsWith("Log_"), qPrintable(window.strProposed));
    QCOMPARE(closer.listTexts, QStringList {"saved " + window.strJsonPath});
    QJsonObject saved;
    QString strError;
    QVERIFY2(VxReportDiff::readReport(window.strJsonPath, &saved, &strError), qPrintable(strError));
    QCOMPARE(saved.value("version").toString(), QStringLiteral("4.1.0"));
    QList<int> ids;
    for (const QJsonValue &value : saved.value("items").toArray())
        ids << value.toObject().value("id").toInt();
    QCOMPARE(ids, (QList<int> {1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048, 4096, 8192, 16384, 32768, 65536}));

    // The same diagnosis: nothing differs.
    window.strReportPath = window.strJsonPath;
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActCompareReport));
    QCOMPARE(window.nShown, 1);
    QVERIFY(!window.bTreeShown);
    QVERIFY2(window.strTips.endsWith("No differences."), qPrintable(window.strTips));

    // A report in which item 1 was exceptional.
    QJsonArray items = saved.value("items").toArray();
    QJsonObject first = items.at(0).toObject();
    const bool bNormalNow = first.value("normal").toBool();
    first["normal"] = !bNormalNow;
    items[0] = first;
    saved["items"] = items;
    QFile file(m_files.filePath("edited.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QJsonDocument(saved).toJson());
    file.close();
    window.strReportPath = file.fileName();
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActCompareReport));
    QCOMPARE(window.nShown, 2);
    QVERIFY(window.bTreeShown);
    QCOMPARE(window.listTopRows.size(), 1);
    QVERIFY2(window.listTopRows.first().startsWith("[1] ") && window.listTopRows.first().endsWith("(grade changed)"),
        qPrintable(window.listTopRows.first()));
    QCOMPARE(closer.listTexts.size(), 1); // no box besides the save hint
}

void TestVxMainWindowReport::badReportIsRefused()
{
    TestWindow window(m_fakes.tableWithoutTrees());
    diagnose(window);
    ModalCloser closer;
    QFile file(m_files.filePath("bad.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("|----1: SDK Diagnosis\r\n");
    file.close();
    window.strReportPath = file.fileName();
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActCompareReport));
    QCOMPARE(window.nShown, 0);
    QCOMPARE(closer.listTexts.size(), 1);
    QVERIFY2(closer.listTexts.first().startsWith(file.fileName() + " is not a JSON report"),
        qPrintable(closer.listTexts.first()));

    // Cancelling the open dialog does nothing.
    window.strReportPath.clear();
    window.OnMenuActionTriggered(window.action(VxMainWindow::ActCompareReport));
    QCOMPARE(window.nShown, 0);
    QCOMPARE(closer.listTexts.size(), 1);
}

QTEST_MAIN(TestVxMainWindowReport)
#include "tst_vxmainwindow_report.moc"
