// The jumbo frame dialog: state texts, the never-cleared table, the repair
// and its failure without rights.
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "dialogtestutil.h"
#include "vxdialogprobes.h"
#include "vxjumbpacketdlg.h"

#include <QHeaderView>
#include <QTest>

#include <new>

namespace {

CJumboPacketDetectInfo fixture()
{
    CJumboPacketDetectInfo info;
    info.nItem = 256;
    info.jumboStates = {{QStringLiteral("enp3s0"), 1}, {QStringLiteral("enp4s0"), 0}, {QStringLiteral("enp5s0"), 2}};
    info.jumboValues = {{QStringLiteral("enp3s0"), 9014}, {QStringLiteral("enp4s0"), 1514}, {QStringLiteral("enp5s0"), 1514}};
    info.bNormal = 0;
    return info;
}

} // namespace

class TstVxJumbPacketDlg : public QObject
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

    void stateText_data()
    {
        QTest::addColumn<int>("nState");
        QTest::addColumn<int>("nValue");
        QTest::addColumn<QString>("strText");
        QTest::addRow("enabled 9014 ends in one blank") << 1 << 9014 << QStringLiteral("Enabled. Value: 9014 ");
        QTest::addRow("off") << 0 << 1514 << QStringLiteral("Disabled");
        QTest::addRow("no jumbo setting") << 2 << 1514 << QStringLiteral("Disabled");
        QTest::addRow("an odd state") << 7 << 9014 << QStringLiteral("Disabled");
    }

    void stateText()
    {
        QFETCH(int, nState);
        QFETCH(int, nValue);
        QFETCH(QString, strText);
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        info.jumboStates[QStringLiteral("eth0")] = nState;
        info.jumboValues[QStringLiteral("eth0")] = nValue;
        VxJumbPacketDlg dialog(&info);
        QCOMPARE(dialog.table()->rowCount(), 1);
        QCOMPARE(dialog.table()->item(0, 0)->text(), QStringLiteral("eth0"));
        QCOMPARE(dialog.table()->item(0, 1)->text(), strText);
    }

    void layoutAndTexts()
    {
        CJumboPacketDetectInfo info = fixture();
        VxJumbPacketDlg dialog(&info);
        QCOMPARE(dialog.size(), QSize(430, 300));
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("Jumbo Frame Info"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Enable Jumbo Frame for All NICs"));
        QCOMPARE(dialog.table()->columnWidth(0), 200);
        QCOMPARE(dialog.table()->columnWidth(1), 150);
        QCOMPARE(dialog.table()->horizontalHeader()->height(), 34);
        QCOMPARE(dialog.table()->horizontalHeaderItem(0)->text(), QStringLiteral("Network Interfaces"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(1)->text(), QStringLiteral("Jumbo Frame Info"));
        QCOMPARE(dialog.table()->rowCount(), 3);
        info.bNormal = 1;
        VxJumbPacketDlg normal(&info);
        QCOMPARE(normal.cButton(0)->text(), QStringLiteral("OK"));
    }

    void emptyMapGivesNoRows()
    {
        CJumboPacketDetectInfo info;
        info.nItem = 256;
        info.bNormal = 0;
        VxJumbPacketDlg dialog(&info);
        QCOMPARE(dialog.table()->rowCount(), 0);
    }

    void refillKeepsOldExtraRows()
    {
        // After the repair only one interface is listed, now enabled.
        VxProbeTable table;
        table.setRepair(VxItems::JumboFrame, [](CJumboPacketDetectInfo &info) {
            info.jumboStates = {{QStringLiteral("enp9s0"), 1}};
            info.jumboValues = {{QStringLiteral("enp9s0"), 9014}};
            info.bNormal = 1;
        });
        VxDialogProbes::setTable(table);
        CJumboPacketDetectInfo info = fixture();
        VxJumbPacketDlg dialog(&info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.table()->rowCount(), 3);
        QCOMPARE(dialog.table()->item(0, 0)->text(), QStringLiteral("enp9s0"));
        QCOMPARE(dialog.table()->item(0, 1)->text(), QStringLiteral("Enabled. Value: 9014 "));
        QCOMPARE(dialog.table()->item(1, 0)->text(), QStringLiteral("enp4s0"));
        QCOMPARE(dialog.table()->item(1, 1)->text(), QStringLiteral("Disabled"));
        QCOMPARE(dialog.table()->item(2, 0)->text(), QStringLiteral("enp5s0"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("OK"));
        QVERIFY(catcher.listTexts.isEmpty());
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
    }

    void repairWithoutRightsStaysExceptional()
    {
        VxProbeTable table;
        table.setRepair(VxItems::JumboFrame, [](CJumboPacketDetectInfo &) { return VxRepairOutcome(VxRepairStatus::NotAuthorized); });
        VxDialogProbes::setTable(table);
        CJumboPacketDetectInfo info = fixture();
        VxJumbPacketDlg dialog(&info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Enable Jumbo Frame for All NICs"));
        QCOMPARE(dialog.table()->item(1, 1)->text(), QStringLiteral("Disabled"));
        QCOMPARE(catcher.listTexts.size(), 1);
        QVERIFY(catcher.listTexts.first().contains(QLatin1String("administrator rights")));
        QVERIFY(dialog.isVisible());
    }

    void nullItemFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxJumbPacketDlg dialog(nullptr), std::bad_alloc);
    }

    void languageChangeRetranslates()
    {
        CJumboPacketDetectInfo info = fixture();
        VxJumbPacketDlg dialog(&info);
        DialogTest::MarkingTranslator translator("VxJumbPacketDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:Jumbo Frame Info"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(0)->text(), QStringLiteral("T:Network Interfaces"));
        QCOMPARE(dialog.table()->item(0, 1)->text(), QStringLiteral("T:Enabled. Value: 9014 "));
        QCOMPARE(dialog.table()->item(1, 1)->text(), QStringLiteral("T:Disabled"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("T:Enable Jumbo Frame for All NICs"));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxJumbPacketDlg)
#include "tst_vxjumbpacketdlg.moc"
