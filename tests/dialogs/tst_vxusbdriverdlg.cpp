// The USB controller driver dialog: wrapped rows and their heights, the
// warning of an old driver, and the delegate's drawing.
#include "cdetectinfo.h"
#include "custom.h"
#include "customlinewidget.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "dialogtestutil.h"
#include "vxtipswidget.h"
#include "vxusbdriverdelegate.h"
#include "vxusbdriverdlg.h"

#include <QHeaderView>
#include <QPainter>
#include <QTest>

#include <new>

namespace {

CUSBControllerDriverInfo fixture(bool bNormal)
{
    CUSBControllerDriverInfo info;
    info.nItem = 32;
    info.driverDesc = QStringLiteral("xhci_hcd");
    info.providerName = QStringLiteral("The Linux Kernel");
    info.driverDate = bNormal ? QStringLiteral("1-1-2012") : QStringLiteral("6-21-2006");
    info.driverVersion = QStringLiteral("6.1.0");
    info.bNormal = bNormal ? 1 : 0;
    return info;
}

// The shortest run of repeated text at least nPixels wide.
QString textOfWidth(const QFontMetrics &metrics, int nPixels)
{
    QString strText;
    while (metrics.horizontalAdvance(strText) < nPixels)
        strText += QLatin1Char('m');
    return strText;
}

} // namespace

class TstVxUSBDriverDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
    }

    void rowHeightFromWrappedLines_data()
    {
        QTest::addColumn<QString>("strLabel");
        QTest::addColumn<QString>("strValue");
        QTest::addColumn<int>("nHeight");
        QTest::addRow("one line each") << QStringLiteral("a") << QStringLiteral("b") << 36;
        QTest::addRow("value on three lines") << QStringLiteral("a") << QStringLiteral("b\r\nc\r\nd") << 88;
        QTest::addRow("label on two lines") << QStringLiteral("a\r\nb") << QStringLiteral("c") << 62;
        QTest::addRow("the taller of the two counts") << QStringLiteral("a\r\nb") << QStringLiteral("c\r\nd\r\ne") << 88;
    }

    void rowHeightFromWrappedLines()
    {
        QFETCH(QString, strLabel);
        QFETCH(QString, strValue);
        QFETCH(int, nHeight);
        QCOMPARE(VxUSBDriverDlg::rowHeightFor(strLabel, strValue), nHeight);
    }

    void rowsWrapToTheirColumns_data()
    {
        QTest::addColumn<int>("nValuePixels");
        QTest::addColumn<int>("nLines");
        QTest::addRow("short value, 36 high") << 40 << 1;
        QTest::addRow("170 pixels wrap to two lines, 62 high") << 170 << 2;
        QTest::addRow("three lines, 88 high") << 400 << 3;
    }

    void rowsWrapToTheirColumns()
    {
        QFETCH(int, nValuePixels);
        QFETCH(int, nLines);
        CUSBControllerDriverInfo info = fixture(true);
        VxUSBDriverDlg probe(&info);
        const QFontMetrics metrics(probe.table()->font());
        info.driverVersion = textOfWidth(metrics, nValuePixels);
        QVERIFY(metrics.horizontalAdvance(info.driverVersion) < 160 * nLines);
        VxUSBDriverDlg dialog(&info);
        const QString strShown = dialog.table()->item(3, 1)->text();
        QCOMPARE(strShown.count(QStringLiteral("\r\n")) + 1, nLines);
        QCOMPARE(QString(strShown).remove(QStringLiteral("\r\n")), info.driverVersion);
        QCOMPARE(dialog.table()->rowHeight(3), 36 + 26 * (nLines - 1));
    }

    void labelsWrapAt150Pixels()
    {
        CUSBControllerDriverInfo info = fixture(false);
        VxUSBDriverDlg dialog(&info);
        const QFontMetrics metrics(dialog.table()->font());
        const QStringList listLabels = {QStringLiteral("Driver Name:"), QStringLiteral("Driver Provider:"),
                                        QStringLiteral("Driver's Latest Update Time:"), QStringLiteral("Driver Version:")};
        QCOMPARE(dialog.table()->rowCount(), 4);
        for (int nRow = 0; nRow < 4; ++nRow) {
            const QString strShown = dialog.table()->item(nRow, 0)->text();
            QCOMPARE(QString(strShown).remove(QStringLiteral("\r\n")), listLabels.at(nRow));
            const int nExpectedLines = metrics.horizontalAdvance(listLabels.at(nRow)) > 150 ? 2 : 1;
            QCOMPARE(strShown.count(QStringLiteral("\r\n")) + 1, nExpectedLines);
            QCOMPARE(dialog.table()->rowHeight(nRow), 36 + 26 * (nExpectedLines - 1));
        }
        QCOMPARE(dialog.table()->item(0, 1)->text(), QStringLiteral("xhci_hcd"));
        QCOMPARE(dialog.table()->item(2, 1)->text(), QStringLiteral("6-21-2006"));
    }

    void layoutAndWarning_data()
    {
        QTest::addColumn<bool>("bNormal");
        QTest::addRow("normal: no separator, no warning") << true;
        QTest::addRow("old driver: separator and warning") << false;
    }

    void layoutAndWarning()
    {
        QFETCH(bool, bNormal);
        CUSBControllerDriverInfo info = fixture(bNormal);
        VxUSBDriverDlg dialog(&info);
        dialog.show();
        QCOMPARE(dialog.size(), QSize(415, 470));
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("USB Controller Driver Info"));
        QCOMPARE(dialog.table()->width(), 370);
        QVERIFY(dialog.table()->height() <= 300);
        QVERIFY(dialog.table()->horizontalHeader()->isHidden());
        QVERIFY(dialog.table()->wordWrap());
        QCOMPARE(dialog.table()->columnWidth(0), 180);
        QCOMPARE(dialog.table()->columnWidth(1), 190);
        QCOMPARE(dialog.table()->cStyleSelector(), QStringLiteral("USBController"));
        QVERIFY(qobject_cast<VxUsbDriverDelegate *>(dialog.table()->itemDelegate()));
        QCOMPARE(dialog.table()->rowCount(), 4);
        QCOMPARE(dialog.separator()->isVisible(), !bNormal);
        QCOMPARE(dialog.tips()->isVisible(), !bNormal);
        QCOMPARE(dialog.tips()->width(), 370);
        if (!bNormal) {
            // The warning stays clear of the table and the button row.
            const QRect rectTable = dialog.table()->geometry();
            const QRect rectTips(dialog.tips()->mapTo(&dialog, QPoint(0, 0)), dialog.tips()->size());
            QVERIFY(dialog.table()->mapTo(&dialog, QPoint(0, rectTable.height())).y() <= rectTips.top());
            QVERIFY(rectTips.bottom() < dialog.cButton(0)->mapTo(&dialog, QPoint(0, 0)).y());
        }
        QCOMPARE(dialog.cButtons().size(), 1);
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
    }

    void emptyTextsGiveEmptyCells()
    {
        CUSBControllerDriverInfo info;
        info.nItem = 32;
        VxUSBDriverDlg dialog(&info);
        for (int nRow = 0; nRow < 4; ++nRow)
            QVERIFY(dialog.table()->item(nRow, 1)->text().isEmpty());
    }

    void noControllerIsSaid()
    {
        // The check found no USB host controller: one line says so across
        // both columns (no bare labels), and the hint says what is needed.
        CUSBControllerDriverInfo info;
        info.nItem = 32;
        info.nControllers = 0;
        info.bNormal = 0;
        VxUSBDriverDlg dialog(&info);
        dialog.show();
        QCOMPARE(dialog.table()->rowCount(), 1);
        QCOMPARE(dialog.table()->item(0, 0)->text().remove(QStringLiteral("\r\n")),
                 QStringLiteral("No USB host controller was found."));
        QCOMPARE(dialog.table()->columnSpan(0, 0), 2);
        QVERIFY(dialog.tips()->isVisible());
        QVERIFY(dialog.tips()->text().contains(QStringLiteral("USB 3.0 host controller")));
        QVERIFY(!dialog.tips()->text().contains(QStringLiteral("too early")));
        // A controller whose facts could not be read is not "no controller".
        CUSBControllerDriverInfo unread;
        unread.nItem = 32;
        unread.nControllers = 1;
        VxUSBDriverDlg other(&unread);
        QCOMPARE(other.table()->rowCount(), 4);
    }

    void delegateDrawsTextOnly()
    {
        VxUsbDriverDelegate delegate;
        const QImage image = DialogTest::paintDelegateCell(delegate, 1, 0, QStringLiteral("Driver"), QSize(120, 36));
        const QColor textColor = Custom::getDataBaseColor(
                                     QStringLiteral("VetrixToolColor_VxUsbBasicInfoDlg_VxUsbDriverDelegate_Item_Font"))
                                     .color();
        QVERIFY(textColor.isValid());
        int nDarkest = 255 * 3;
        QPoint darkest;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                QVERIFY(!(pixel.blue() > 200 && pixel.red() < 60)); // no highlight
                const int nSum = pixel.red() + pixel.green() + pixel.blue();
                if (nSum < nDarkest) {
                    nDarkest = nSum;
                    darkest = QPoint(x, y);
                }
            }
        }
        // Ink starts right of x = 5 and below y = 2, in the house colour.
        QVERIFY(darkest.x() >= 5);
        QVERIFY(darkest.y() >= 2);
        const QColor ink = image.pixelColor(darkest);
        QVERIFY(qAbs(ink.red() - textColor.red()) < 40 && qAbs(ink.blue() - textColor.blue()) < 40);
    }

    void nullItemFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxUSBDriverDlg dialog(nullptr), std::bad_alloc);
    }

    void languageChangeRetranslates()
    {
        CUSBControllerDriverInfo info = fixture(false);
        VxUSBDriverDlg dialog(&info);
        DialogTest::MarkingTranslator translator("VxUSBDriverDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:USB Controller Driver Info"));
        QCOMPARE(dialog.table()->item(0, 0)->text().remove(QStringLiteral("\r\n")), QStringLiteral("T:Driver Name:"));
        QVERIFY(dialog.tips()->text().startsWith(QLatin1String("T:")));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxUSBDriverDlg)
#include "tst_vxusbdriverdlg.moc"
