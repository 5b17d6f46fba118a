// The environment variable dialog: table, tool-tips, sizes, repair and its
// failure without rights.
#include "cdetectinfo.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "custompushbutton.h"
#include "dialogtestutil.h"
#include "envvars.h"
#include "vxdialogprobes.h"
#include "vxenvcheckdlg.h"

#include <QHeaderView>
#include <QTest>
#include <QThread>

#include <new>

namespace {

CEnvDetectInfo fixture(int nVariables, bool bNormal)
{
    CEnvDetectInfo info;
    info.nItem = 2;
    const QStringList listNames = {QStringLiteral("GENICAM_GENTL32_PATH"), QStringLiteral("GENICAM_GENTL64_PATH"),
                                   QStringLiteral("LUCAM_COMMON_RUNENV"), QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT"),
                                   QStringLiteral("LUCAM_GENICAM_CLPROTOCOL"), QStringLiteral("PATH")};
    for (int i = 0; i < nVariables; ++i)
        info.currentValues[listNames.at(i)] = QStringLiteral("/opt/Orvex/value%1").arg(i);
    if (!bNormal) {
        info.missingValues[listNames.at(0)] = QStringList{QStringLiteral("/opt/Orvex/Runtime/Linux32_i86:")};
        info.bNormal = 0;
    }
    return info;
}

// Repairs that succeed, or end the privileged part with a failure.
void installProbes(bool bAuthorized, int *pChecks = nullptr,
                   VxRepairStatus failure = VxRepairStatus::NotAuthorized)
{
    VxProbeTable table;
    table.setRepair(VxItems::EnvVariables, [bAuthorized, failure](CEnvDetectInfo &info) {
        if (!bAuthorized)
            return VxRepairOutcome(failure);
        info.missingValues.clear();
        info.bNormal = 1;
        return VxRepairOutcome();
    });
    // Counts the checks run on the GUI thread (the repair pass runs one of
    // its own on the worker).
    table.setCheck(VxItems::EnvVariables, [pChecks](CEnvDetectInfo &) {
        if (pChecks && QThread::currentThread() == QCoreApplication::instance()->thread())
            ++*pChecks;
    });
    VxDialogProbes::setTable(table);
}

} // namespace

class TstVxEnvCheckDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
    }

    void cleanup()
    {
        VxDialogProbes::resetTable();
    }

    void valueToolTip_data()
    {
        QTest::addColumn<QString>("strValue");
        QTest::addColumn<QChar>("cSeparator");
        QTest::addColumn<QString>("strTip");
        QTest::addRow("windows list sorted, empty part dropped")
            << QStringLiteral("b;a;;c") << QChar(';') << QStringLiteral("a;\r\nb;\r\nc;");
        QTest::addRow("linux list with colons")
            << QStringLiteral("b:a::c") << QChar(':') << QStringLiteral("a:\r\nb:\r\nc:");
        QTest::addRow("no separator is its own tip") << QStringLiteral("60000") << QChar(':') << QStringLiteral("60000");
        QTest::addRow("one part with a trailing separator") << QStringLiteral("/opt/a:") << QChar(':')
                                                             << QStringLiteral("/opt/a:");
        QTest::addRow("empty value, empty tip") << QString() << QChar(';') << QString();
        QTest::addRow("the other platform's separator is not split")
            << QStringLiteral("b;a") << QChar(':') << QStringLiteral("b;a");
    }

    void valueToolTip()
    {
        QFETCH(QString, strValue);
        QFETCH(QChar, cSeparator);
        QFETCH(QString, strTip);
        QCOMPARE(VxEnvCheckDlg::valueToolTip(strValue, cSeparator), strTip);
    }

    void sizesFollowTheRows_data()
    {
        QTest::addColumn<int>("nVariables");
        QTest::addColumn<int>("nTableHeight");
        QTest::addRow("four variables") << 4 << 186;
        QTest::addRow("six variables") << 6 << 262;
        QTest::addRow("no variables") << 0 << 34;
    }

    void sizesFollowTheRows()
    {
        QFETCH(int, nVariables);
        QFETCH(int, nTableHeight);
        CEnvDetectInfo info = fixture(nVariables, false);
        VxEnvCheckDlg dialog(&info);
        QCOMPARE(dialog.table()->rowCount(), nVariables);
        QCOMPARE(dialog.table()->size(), QSize(735, nTableHeight));
        QCOMPARE(dialog.size(), QSize(770, nTableHeight + 100));
    }

    void tableShowsTheRecord()
    {
        CEnvDetectInfo info = fixture(4, false);
        const QChar cSep = EnvVars::layout().cSeparator;
        const QString strPath = QStringLiteral("b%1a%1%1c").arg(cSep);
        info.currentValues[QStringLiteral("PATH")] = strPath;
        VxEnvCheckDlg dialog(&info);
        CustomTableWidget *pTable = dialog.table();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("Environment Variables"));
        QCOMPARE(pTable->columnCount(), 3);
        QCOMPARE(pTable->columnWidth(0), 220);
        QCOMPARE(pTable->columnWidth(1), 420);
        QCOMPARE(pTable->columnWidth(2), 90);
        QCOMPARE(pTable->horizontalHeader()->height(), 34);
        QCOMPARE(pTable->horizontalHeaderItem(0)->text(), QStringLiteral("Variable Name"));
        QCOMPARE(pTable->horizontalHeaderItem(1)->text(), QStringLiteral("Variable Value"));
        QCOMPARE(pTable->horizontalHeaderItem(2)->text(), QStringLiteral("Status"));
        QVERIFY(!pTable->wordWrap());
        // Key order; PATH sorts last.
        QCOMPARE(pTable->rowCount(), 5);
        QCOMPARE(pTable->item(4, 0)->text(), QStringLiteral("PATH"));
        QCOMPARE(pTable->item(4, 1)->text(), strPath); // shown as read
        QCOMPARE(pTable->item(4, 1)->toolTip(), QStringLiteral("a%1\r\nb%1\r\nc%1").arg(cSep));
        for (int nRow = 0; nRow < 5; ++nRow)
            QCOMPARE(pTable->rowHeight(nRow), 38);
        // The missing variable reads "Exception" in red; the others "Normal".
        QCOMPARE(pTable->item(0, 2)->text(), QStringLiteral("Exception"));
        QCOMPARE(pTable->item(0, 2)->foreground().color(), QColor(Qt::red));
        QCOMPARE(pTable->item(1, 2)->text(), QStringLiteral("Normal"));
        QCOMPARE(pTable->item(1, 2)->foreground().style(), Qt::NoBrush);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Repair"));
    }

    // A variable set machine-wide but not yet seen by this login reads
    // "Next login", not in red, and says so in its tool-tip.
    void pendingVariableReadsNextLogin()
    {
        CEnvDetectInfo info = fixture(4, false);
        info.pendingValues[QStringLiteral("LUCAM_COMMON_RUNENV")] = QStringLiteral("/opt/Orvex/Development");
        VxEnvCheckDlg dialog(&info);
        CustomTableWidget *pTable = dialog.table();
        QCOMPARE(pTable->item(2, 0)->text(), QStringLiteral("LUCAM_COMMON_RUNENV"));
        QCOMPARE(pTable->item(2, 2)->text(), QStringLiteral("Next login"));
        QCOMPARE(pTable->item(2, 2)->foreground().style(), Qt::NoBrush);
        QCOMPARE(pTable->item(2, 2)->toolTip(),
                 QStringLiteral("Set machine-wide to \"/opt/Orvex/Development\". It takes effect at the next login."));
        QCOMPARE(pTable->item(0, 2)->text(), QStringLiteral("Exception"));
        QCOMPARE(pTable->item(1, 2)->text(), QStringLiteral("Normal"));
        QCOMPARE(pTable->item(1, 2)->toolTip(), QString());
    }

    void normalItemReadsOkAndCloses()
    {
        CEnvDetectInfo info = fixture(4, true);
        VxEnvCheckDlg dialog(&info);
        dialog.show();
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("OK"));
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }

    void repairTurnsRowsNormal()
    {
        int nChecks = 0;
        installProbes(true, &nChecks);
        CEnvDetectInfo info = fixture(4, false);
        VxEnvCheckDlg dialog(&info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(nChecks, 1); // checked again on the GUI thread
        QVERIFY(dialog.isVisible());
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("OK"));
        for (int nRow = 0; nRow < dialog.table()->rowCount(); ++nRow) {
            QCOMPARE(dialog.table()->item(nRow, 2)->text(), QStringLiteral("Normal"));
            QCOMPARE(dialog.table()->item(nRow, 2)->foreground().style(), Qt::NoBrush);
        }
        QVERIFY(catcher.listTexts.isEmpty());
    }

    void repairWithoutRightsStaysExceptional()
    {
        installProbes(false);
        CEnvDetectInfo info = fixture(4, false);
        VxEnvCheckDlg dialog(&info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(info.bNormal, 0);
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Repair"));
        QCOMPARE(dialog.table()->item(0, 2)->text(), QStringLiteral("Exception"));
        QCOMPARE(catcher.listTexts.size(), 1);
        QVERIFY(catcher.listTexts.first().contains(QLatin1String("administrator rights")));
    }

    void eachFailureHasItsMessage_data()
    {
        QTest::addColumn<int>("nStatus");
        QTest::addColumn<QString>("strFragment");
        QTest::addRow("rights refused") << int(VxRepairStatus::NotAuthorized) << QStringLiteral("administrator rights");
        // Windows has no helper to start: the program itself lacks the rights.
#ifdef Q_OS_WIN
        QTest::addRow("helper missing") << int(VxRepairStatus::HelperMissing) << QStringLiteral("does not run as administrator");
#else
        QTest::addRow("helper missing") << int(VxRepairStatus::HelperMissing) << QStringLiteral("could not be started");
#endif
        QTest::addRow("helper refused") << int(VxRepairStatus::Refused) << QStringLiteral("refused the values");
        QTest::addRow("write failed") << int(VxRepairStatus::Failed) << QStringLiteral("could not be written");
    }

    void eachFailureHasItsMessage()
    {
        QFETCH(int, nStatus);
        QFETCH(QString, strFragment);
        installProbes(false, nullptr, VxRepairStatus(nStatus));
        CEnvDetectInfo info = fixture(4, false);
        VxEnvCheckDlg dialog(&info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(catcher.listTexts.size(), 1);
        QVERIFY2(catcher.listTexts.first().contains(strFragment), qPrintable(catcher.listTexts.first()));
        QCOMPARE(info.bNormal, 0);
    }

    void nullItemFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxEnvCheckDlg dialog(nullptr), std::bad_alloc);
    }

    void languageChangeRetranslates()
    {
        CEnvDetectInfo info = fixture(2, false);
        VxEnvCheckDlg dialog(&info);
        DialogTest::MarkingTranslator translator("VxEnvCheckDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:Environment Variables"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(1)->text(), QStringLiteral("T:Variable Value"));
        QCOMPARE(dialog.table()->item(0, 2)->text(), QStringLiteral("T:Exception"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("T:Repair"));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxEnvCheckDlg)
#include "tst_vxenvcheckdlg.moc"
