// The comparison dialog: its rows for each kind of change, the summary, the
// empty comparison, Copy and a language change.
#include "customtitlebar.h"
#include "customtreewidget.h"
#include "dialogtestutil.h"
#include "vxreportcomparedlg.h"
#include "vxtipswidget.h"

#include <QClipboard>
#include <QJsonArray>
#include <QtTest>

class TestVxReportCompareDlg : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void rowsPerItemAndChange();
    void noDifferences();
    void copyPutsTheTextForm();
    void languageChangeRetranslates();
    void resizeRewrapsTheHint();

private:
    static QJsonObject report(bool bNormal, const QString &strCpu, bool bWithFirewall);
    static VxReportDiff::Result sample();
};

void TestVxReportCompareDlg::initTestCase()
{
    QVERIFY(DialogTest::loadResources());
}

QJsonObject TestVxReportCompareDlg::report(bool bNormal, const QString &strCpu, bool bWithFirewall)
{
    QJsonArray items;
    items << QJsonObject {{"id", 8}, {"name", "Name in the report"}, {"available", true}, {"normal", bNormal},
        {"severity", bNormal ? 0 : 1}, {"lines", QJsonArray {"x"}}};
    if (bWithFirewall)
        items << QJsonObject {
            {"id", 1024}, {"name", "Firewall"}, {"available", true}, {"normal", true}, {"severity", 0}};
    items << QJsonObject {{"id", 2048}, {"name", "Systm Info"}, {"available", true}, {"normal", true}, {"severity", 0},
        {"facts", QJsonObject {{"cpu", strCpu}}}};
    return QJsonObject {{"tool", "vetrix-check"}, {"version", "4.1.0"}, {"items", items}};
}

// Item 8 turns exceptional, item 1024 disappears, item 2048's CPU changes.
VxReportDiff::Result TestVxReportCompareDlg::sample()
{
    return VxReportDiff::compare(report(true, "Cpu A", true), report(false, "Cpu B", false));
}

void TestVxReportCompareDlg::rowsPerItemAndChange()
{
    VxReportCompareDlg dialog(sample(), "/tmp/saved.json");
    CustomTreeWidget *pTree = dialog.tree();
    QVERIFY(!pTree->isHidden());
    QCOMPARE(pTree->topLevelItemCount(), 3);

    QTreeWidgetItem *pDriver = pTree->topLevelItem(0);
    QCOMPARE(pDriver->text(0), QStringLiteral("[8] USB3 Vision Driver Status  (grade changed)"));
    QCOMPARE(pDriver->childCount(), 2); // named as on screen, not as in the report
    QCOMPARE(pDriver->child(0)->text(VxReportCompareDlg::ColChange), QStringLiteral("grade changed"));
    QCOMPARE(pDriver->child(0)->text(VxReportCompareDlg::ColFact), QStringLiteral("normal"));
    QCOMPARE(pDriver->child(0)->text(VxReportCompareDlg::ColReport), QStringLiteral("normal"));
    QCOMPARE(pDriver->child(0)->text(VxReportCompareDlg::ColNow), QStringLiteral("exceptional"));
    QCOMPARE(pDriver->child(1)->text(VxReportCompareDlg::ColFact), QStringLiteral("severity"));

    QTreeWidgetItem *pFirewall = pTree->topLevelItem(1);
    QCOMPARE(pFirewall->text(0), QStringLiteral("[1024] PC Firewall Status  (grade changed)"));
    QCOMPARE(pFirewall->child(0)->text(VxReportCompareDlg::ColChange), QStringLiteral("item removed"));
    QCOMPARE(pFirewall->child(0)->text(VxReportCompareDlg::ColReport), QStringLiteral("normal"));
    QCOMPARE(pFirewall->child(0)->text(VxReportCompareDlg::ColNow), QString());

    QTreeWidgetItem *pSystem = pTree->topLevelItem(2);
    QCOMPARE(pSystem->text(0), QStringLiteral("[2048] Systm Info"));
    QCOMPARE(pSystem->child(0)->text(VxReportCompareDlg::ColChange), QStringLiteral("changed"));
    QCOMPARE(pSystem->child(0)->text(VxReportCompareDlg::ColFact), QStringLiteral("facts.cpu"));
    QCOMPARE(pSystem->child(0)->text(VxReportCompareDlg::ColReport), QStringLiteral("\"Cpu A\""));
    QCOMPARE(pSystem->child(0)->text(VxReportCompareDlg::ColNow), QStringLiteral("\"Cpu B\""));
    QVERIFY(pSystem->isExpanded());

    QCOMPARE(dialog.tips()->icon(), QString::fromLatin1(VxTipsWidget::kWarningIcon));
    const QString strTips = dialog.tips()->paintedLines().join(QString());
    QVERIFY2(strTips.contains("Items that differ: 3. Grade changes: 2."), qPrintable(strTips));
    QVERIFY2(strTips.startsWith("Report: /tmp/saved.json"), qPrintable(strTips));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Compare with Report"));
}

void TestVxReportCompareDlg::noDifferences()
{
    const VxReportDiff::Result result = VxReportDiff::compare(report(true, "A", true), report(true, "A", true));
    VxReportCompareDlg dialog(result, "/tmp/saved.json");
    QVERIFY(dialog.tree()->isHidden());
    QCOMPARE(dialog.tree()->topLevelItemCount(), 0);
    QCOMPARE(dialog.tips()->icon(), QString::fromLatin1(VxTipsWidget::kInformationIcon));
    QVERIFY(dialog.tips()->paintedLines().join(QString()).contains("No differences."));
}

void TestVxReportCompareDlg::copyPutsTheTextForm()
{
    VxReportCompareDlg dialog(sample(), "/tmp/saved.json");
    QGuiApplication::clipboard()->setText("old");
    emit dialog.cSigButtonClick(0);
    const QString strText = QGuiApplication::clipboard()->text();
    QVERIFY2(strText.startsWith("Before: /tmp/saved.json\nAfter: this diagnosis\n"), qPrintable(strText));
    QVERIFY(strText.contains("    changed facts.cpu: \"Cpu A\" -> \"Cpu B\"\n"));
    QCOMPARE(strText, dialog.clipboardText());
}

void TestVxReportCompareDlg::languageChangeRetranslates()
{
    VxReportCompareDlg dialog(sample(), "/tmp/saved.json");
    DialogTest::MarkingTranslator dialogTexts("VxReportCompareDlg");
    DialogTest::MarkingTranslator diffTexts("VxReportDiff");
    QCoreApplication::installTranslator(&dialogTexts);
    QCoreApplication::installTranslator(&diffTexts);
    QCoreApplication::processEvents();
    const QString strTitle = dialog.windowTitle();
    const QString strHeader = dialog.tree()->headerItem()->text(VxReportCompareDlg::ColNow);
    const QString strKind = dialog.tree()->topLevelItem(2)->child(0)->text(VxReportCompareDlg::ColChange);
    QCoreApplication::removeTranslator(&diffTexts);
    QCoreApplication::removeTranslator(&dialogTexts);
    QCOMPARE(strTitle, QStringLiteral("T:Compare with Report"));
    QCOMPARE(strHeader, QStringLiteral("T:Now"));
    QCOMPARE(strKind, QStringLiteral("T:changed"));
    QCoreApplication::processEvents();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Compare with Report"));
}

void TestVxReportCompareDlg::resizeRewrapsTheHint()
{
    VxReportDiff::Result result = sample();
    const QString strLong = "/tmp/" + QString(300, QLatin1Char('d')) + "/saved.json";
    VxReportCompareDlg dialog(result, strLong);
    dialog.resize(1200, 600);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const int nWide = dialog.tips()->paintedLines().size();
    dialog.resize(700, 600);
    QTRY_VERIFY(dialog.tips()->paintedLines().size() > nWide);
    QVERIFY(dialog.tips()->width() <= dialog.width());
    // Wrapping never loses text.
    QCOMPARE(dialog.tips()->paintedLines().join(QString()), "Report: " + strLong + VxReportDiff::summaryText(result));
}

QTEST_MAIN(TestVxReportCompareDlg)
#include "tst_vxreportcomparedlg.moc"
