// One line of the USB tree viewer: long labels and values broken, headings
// spanning both columns, the text mode's line format, and the table
// delegate's drawing.
#include "cdetectinfo.h"
#include "custom.h"
#include "customtablewidget.h"
#include "dialogtestutil.h"
#include "usbbasicinfotestutil.h"
#include "vxusbbasicdelegate.h"
#include "vxusbbasicinfodlg.h"

#include <QPainter>
#include <QTest>

using namespace UsbBasicInfoTest;

namespace {

QString textOfWidth(const QFontMetrics &metrics, int nPixels)
{
    QString strText;
    while (metrics.boundingRect(strText).width() < nPixels)
        strText += QLatin1Char('m');
    return strText;
}

// One cell of the viewer's two-column table as its delegate paints it.
QImage paintCell(int nColumn, const QString &strText)
{
    VxUsbBasicDelegate delegate;
    return DialogTest::paintDelegateCell(delegate, 2, nColumn, strText, QSize(200, 36));
}

QRect inkRect(const QImage &image)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) != QColor(Qt::white))
                rect |= QRect(x, y, 1, 1);
    return rect;
}

int inkCount(const QImage &image)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).lightness() < 160)
                ++n;
    return n;
}

} // namespace

class TstVxUsbBasicInfoLines : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(DialogTest::loadResources()); }

    void longLinesBreak_data()
    {
        QTest::addColumn<int>("nLabelPixels");
        QTest::addColumn<int>("nValuePixels");
        QTest::addColumn<int>("nHeight");
        QTest::addRow("both short") << 40 << 40 << 36;
        QTest::addRow("label just short of 170") << 150 << 40 << 36;
        QTest::addRow("label of 170 px") << 170 << 40 << 52;
        QTest::addRow("label of 300 px") << 300 << 40 << 52;
        QTest::addRow("value just short of 245") << 40 << 230 << 36;
        QTest::addRow("value of 245 px") << 40 << 245 << 52;
        QTest::addRow("both long") << 200 << 400 << 52;
    }

    void longLinesBreak()
    {
        QFETCH(int, nLabelPixels);
        QFETCH(int, nValuePixels);
        QFETCH(int, nHeight);
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        const QFontMetrics metrics(dialog.table()->font());
        const QString strLabel = textOfWidth(metrics, nLabelPixels);
        const QString strValue = textOfWidth(metrics, nValuePixels);
        dialog.appendLine(strLabel, strValue);
        QCOMPARE(dialog.table()->rowCount(), 1);
        QCOMPARE(dialog.table()->rowHeight(0), nHeight);
        QCOMPARE(dialog.table()->columnSpan(0, 0), 1);
        const auto expect = [&](const QString &strText, int nLimit) {
            const int nWidth = metrics.boundingRect(strText).width();
            if (nWidth < nLimit)
                return strText;
            return QString(strText).insert(strText.length() * nLimit / nWidth, kBreak);
        };
        QCOMPARE(dialog.table()->item(0, 0)->text(), expect(strLabel, VxUsbBasicInfoDlg::kLabelBreak));
        QCOMPARE(dialog.table()->item(0, 1)->text(), expect(strValue, VxUsbBasicInfoDlg::kValueBreak));
        QCOMPARE(dialog.table()->item(0, 0)->text().count(kBreak), nLabelPixels >= 170 ? 1 : 0);
        QCOMPARE(dialog.table()->item(0, 1)->text().count(kBreak), nValuePixels >= 245 ? 1 : 0);
    }

    void headingSpansBothColumns_data()
    {
        QTest::addColumn<QString>("strLabel");
        QTest::addColumn<QString>("strValue");
        QTest::addColumn<int>("nSpan");
        QTest::addRow("heading") << "Device Descriptor:"
                                 << "" << 2;
        QTest::addRow("blank line") << ""
                                    << "" << 2;
        QTest::addRow("string line with no label") << ""
                                                   << "\"QEMU\"" << 1;
        QTest::addRow("label and value") << "bcdUSB:"
                                         << "0x0200" << 1;
    }

    void headingSpansBothColumns()
    {
        QFETCH(QString, strLabel);
        QFETCH(QString, strValue);
        QFETCH(int, nSpan);
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        dialog.appendLine(QStringLiteral("first:"), QStringLiteral("1"));
        dialog.appendLine(strLabel, strValue);
        QCOMPARE(dialog.table()->rowCount(), 2);
        QCOMPARE(dialog.table()->columnSpan(0, 0), 1);
        QCOMPARE(dialog.table()->columnSpan(1, 0), nSpan);
        QCOMPARE(dialog.table()->item(1, 0)->text(), strLabel);
        QCOMPARE(dialog.table()->item(1, 1)->text(), strValue);
        QCOMPARE(dialog.table()->rowHeight(1), 36);
    }

    void textModeLineFormat_data()
    {
        QTest::addColumn<QString>("strLabel");
        QTest::addColumn<QString>("strValue");
        QTest::addColumn<QString>("strLine");
        QTest::addRow("label and value") << "bcdUSB:"
                                         << "0x0200"
                                         << "bcdUSB:    0x0200";
        QTest::addRow("heading") << "Device Descriptor:"
                                 << ""
                                 << "Device Descriptor:    ";
        QTest::addRow("value only") << ""
                                    << "\"QEMU\""
                                    << "    \"QEMU\"";
        QTest::addRow("blank") << ""
                               << ""
                               << "  ";
    }

    void textModeLineFormat()
    {
        QFETCH(QString, strLabel);
        QFETCH(QString, strValue);
        QFETCH(QString, strLine);
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info, true);
        dialog.appendLine(strLabel, strValue);
        QCOMPARE(dialog.textLines(), QStringList {strLine});
        QCOMPARE(dialog.table()->rowCount(), 0);
    }

    void delegateGeometry_data()
    {
        QTest::addColumn<int>("nColumn");
        QTest::addColumn<int>("nLeft");
        QTest::addColumn<bool>("bBold");
        QTest::addRow("label column") << 0 << 20 << true;
        QTest::addRow("value column") << 1 << 5 << false;
    }

    void delegateGeometry()
    {
        QFETCH(int, nColumn);
        QFETCH(int, nLeft);
        QFETCH(bool, bBold);
        const QRect rectCell(10, 100, 220, 36);
        QCOMPARE(VxUsbBasicDelegate::textRect(rectCell, nColumn), QRect(10 + nLeft, 102, 220 - nLeft, 34));
        QFont font;
        font.setWeight(QFont::Normal);
        QCOMPARE(VxUsbBasicDelegate::textFont(font, nColumn).weight(), bBold ? 75 : int(QFont::Normal));

        // Painted: no selection, ink from the column's indent and 2 pixels
        // down, in the viewer's house colour.
        const QImage image = paintCell(nColumn, QStringLiteral("IDVendor"));
        const QRect ink = inkRect(image);
        QVERIFY(ink.isValid());
        QVERIFY2(ink.left() >= nLeft && ink.left() <= nLeft + 3, qPrintable(QString::number(ink.left())));
        QVERIFY(ink.top() >= 2);
        const QColor colour
            = Custom::getDataBaseColor(QStringLiteral("VetrixToolColor_VxUsbBasicInfoDlg_VxUsbBasicDelegate_Item_Font"))
                  .color();
        QVERIFY(colour.isValid());
        int nDarkest = 255 * 3;
        QColor darkest;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                QVERIFY(!(pixel.blue() > 200 && pixel.red() < 60)); // no highlight
                if (pixel.red() + pixel.green() + pixel.blue() < nDarkest) {
                    nDarkest = pixel.red() + pixel.green() + pixel.blue();
                    darkest = pixel;
                }
            }
        }
        QVERIFY(qAbs(darkest.red() - colour.red()) < 40 && qAbs(darkest.blue() - colour.blue()) < 40);
    }

    void delegateLabelIsBolder()
    {
        // The same text carries more ink in the label column.
        QVERIFY(inkCount(paintCell(0, QStringLiteral("bDescriptorType:")))
            > inkCount(paintCell(1, QStringLiteral("bDescriptorType:"))));
    }
};

QTEST_MAIN(TstVxUsbBasicInfoLines)
#include "tst_vxusbbasicinfolines.moc"
