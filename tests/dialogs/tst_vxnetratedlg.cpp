// The line rate dialog: rate texts, rows and the warning that is always shown.
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "dialogtestutil.h"
#include "vxnetratedlg.h"
#include "vxtipswidget.h"

#include <QHeaderView>
#include <QTest>

#include <new>

class TstVxNetRateDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
    }

    void rateText_data()
    {
        QTest::addColumn<int>("nMbps");
        QTest::addColumn<QString>("strText");
        QTest::addRow("2500 Mbit/s") << 2500 << QStringLiteral("2.50Gbps");
        QTest::addRow("10000 Mbit/s") << 10000 << QStringLiteral("10.00Gbps");
        QTest::addRow("1000 Mbit/s") << 1000 << QStringLiteral("1.00Gbps");
        QTest::addRow("100 Mbit/s") << 100 << QStringLiteral("0.10Gbps");
        QTest::addRow("0 Mbit/s") << 0 << QStringLiteral("0.00Gbps");
        QTest::addRow("unknown speed") << -1 << QStringLiteral("Unknown");
    }

    void rateText()
    {
        QFETCH(int, nMbps);
        QFETCH(QString, strText);
        QCOMPARE(VxNetRateDlg::rateText(nMbps), strText);
        CNetworkSpeedDetectInfo info;
        info.adapterSpeeds[QStringLiteral("eth0")] = nMbps;
        VxNetRateDlg dialog(&info);
        QCOMPARE(dialog.table()->item(0, 1)->text(), strText);
    }

    void noAdaptersStillWarns()
    {
        CNetworkSpeedDetectInfo info;
        VxNetRateDlg dialog(&info);
        QCOMPARE(dialog.size(), QSize(430, 330));
        QCOMPARE(dialog.table()->rowCount(), 0);
        QCOMPARE(dialog.table()->horizontalHeaderItem(0)->text(), QStringLiteral("Network Interfaces"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(1)->text(), QStringLiteral("Line Rate"));
        QCOMPARE(dialog.table()->horizontalHeader()->height(), 34);
        QCOMPARE(dialog.table()->columnWidth(0), 200);
        QCOMPARE(dialog.table()->columnWidth(1), 100);
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("Line Rate"));
        QVERIFY(!dialog.tips()->isHidden());
        QCOMPARE(dialog.tips()->icon(), QStringLiteral(":/Lu/Hint/warning.png"));
        QCOMPARE(dialog.tips()->width(), 390);
        QCOMPARE(dialog.tips()->text().remove(QStringLiteral("\r\n")),
                 QStringLiteral("The line rate of the NIC is lower than 1Gbps. Please check if the NIC, network, or the "
                                "switch is abnormal."));
    }

    void rowsInKeyOrderAndOneClosingButton()
    {
        CNetworkSpeedDetectInfo info;
        info.adapterSpeeds = {{QStringLiteral("enp4s0"), 100}, {QStringLiteral("enp3s0"), 1000}};
        VxNetRateDlg dialog(&info);
        dialog.show();
        QCOMPARE(dialog.table()->rowCount(), 2);
        QCOMPARE(dialog.table()->item(0, 0)->text(), QStringLiteral("enp3s0"));
        QCOMPARE(dialog.table()->item(1, 0)->text(), QStringLiteral("enp4s0"));
        QCOMPARE(dialog.table()->rowHeight(0), 34);
        // Slow rates are not marked.
        QCOMPARE(dialog.table()->item(1, 1)->foreground().style(), Qt::NoBrush);
        QCOMPARE(dialog.cButtons().size(), 1);
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
    }

    void nullItemFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxNetRateDlg dialog(nullptr), std::bad_alloc);
    }

    void languageChangeRetranslates()
    {
        CNetworkSpeedDetectInfo info;
        info.adapterSpeeds[QStringLiteral("eth0")] = -1;
        VxNetRateDlg dialog(&info);
        DialogTest::MarkingTranslator translator("VxNetRateDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:Line Rate"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(0)->text(), QStringLiteral("T:Network Interfaces"));
        QCOMPARE(dialog.table()->item(0, 1)->text(), QStringLiteral("T:Unknown"));
        QVERIFY(dialog.tips()->text().startsWith(QLatin1String("T:")));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxNetRateDlg)
#include "tst_vxnetratedlg.moc"
