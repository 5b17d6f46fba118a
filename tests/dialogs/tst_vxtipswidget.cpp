// The hint line: character wrapping, the height rule and what it paints.
#include "dialogtestutil.h"
#include "vxtipswidget.h"

#include <QFontMetrics>
#include <QImage>
#include <QTest>

namespace {

// Rows of the text column that hold ink (pixels clearly darker than the
// background), grouped into bands: {first row, last row} per band.
QList<QPair<int, int>> inkBands(const QImage &image, int nFromX)
{
    const QRgb background = image.pixel(image.width() - 1, 0);
    QList<QPair<int, int>> listBands;
    for (int y = 0; y < image.height(); ++y) {
        bool bInk = false;
        for (int x = nFromX; x < image.width() && !bInk; ++x)
            bInk = qAbs(qGray(image.pixel(x, y)) - qGray(background)) > 60;
        if (!bInk)
            continue;
        if (!listBands.isEmpty() && listBands.last().second == y - 1)
            listBands.last().second = y;
        else
            listBands.append({y, y});
    }
    return listBands;
}

} // namespace

class TstVxTipsWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
    }

    void wrapText_data()
    {
        QTest::addColumn<QString>("strText");
        QTest::addColumn<int>("nWidth");
        QTest::addRow("text that fits is unchanged") << QStringLiteral("Short hint") << 400;
        QTest::addRow("long text wraps by characters")
            << QStringLiteral("The line rate of the NIC is lower than 1Gbps. Please check if the NIC, network, "
                              "or the switch is abnormal.")
            << 120;
        QTest::addRow("a width below one character gives one per line") << QStringLiteral("WWW") << 1;
        QTest::addRow("existing breaks count as characters") << QStringLiteral("abc\r\ndefghijklmnop") << 40;
        QTest::addRow("empty text") << QString() << 10;
    }

    void wrapText()
    {
        QFETCH(QString, strText);
        QFETCH(int, nWidth);
        QFont font;
        font.setPixelSize(12);
        const QFontMetrics metrics(font);
        const QString strWrapped = VxTipsWidget::wrapText(strText, nWidth, metrics);
        if (metrics.horizontalAdvance(strText) <= nWidth) {
            QCOMPARE(strWrapped, strText);
            return;
        }
        const QStringList listLines = strWrapped.split(QStringLiteral("\r\n"));
        QVERIFY(listLines.size() > 1);
        // Without breaks of its own, the lines put together are the text.
        if (!strText.contains(QLatin1String("\r\n")))
            QCOMPARE(listLines.join(QString()), strText);
        // Every line fits, or is a single character wider than the width.
        for (const QString &strLine : listLines)
            QVERIFY2(metrics.horizontalAdvance(strLine) <= nWidth || strLine.size() == 1, qPrintable(strLine));
    }

    void lineBreaksOnlyWhereNeeded()
    {
        QFont font;
        font.setPixelSize(12);
        const QFontMetrics metrics(font);
        const QString strText = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz");
        const int nWidth = metrics.horizontalAdvance(strText) / 3 + 5;
        const QStringList listLines = VxTipsWidget::wrapText(strText, nWidth, metrics).split(QStringLiteral("\r\n"));
        QCOMPARE(listLines.join(QString()), strText);
        int nPos = 0;
        for (int i = 0; i + 1 < listLines.size(); ++i) {
            nPos += listLines.at(i).size();
            // The largest count that fits: one more character would not.
            QVERIFY(metrics.horizontalAdvance(listLines.at(i) + strText.at(nPos)) > nWidth);
        }
    }

    void oneLineHintIs34High()
    {
        VxTipsWidget tips;
        tips.setFixedWidth(390);
        tips.setText(QStringLiteral("One short hint."));
        tips.adjustHeight();
        const int nLine = QFontMetrics(tips.font()).boundingRect(QStringLiteral("One short hint.")).height();
        QCOMPARE(tips.lineHeight(), nLine);
        QCOMPARE(tips.height(), 34);
        QCOMPARE(tips.width(), 390);
        QCOMPARE(tips.topMargin(), (30 - nLine) / 2);
        QCOMPARE(tips.text(), QStringLiteral("One short hint."));
    }

    void longHintGrowsWithItsLines()
    {
        VxTipsWidget tips;
        tips.setFixedWidth(200);
        tips.setText(QStringLiteral("SDK files exist in directories such as System32 and SysWow64, which may cause "
                                    "software exception after upgrading software version."));
        tips.adjustHeight();
        const int nBreaks = tips.text().count(QStringLiteral("\r\n"));
        QVERIFY(nBreaks >= 2);
        QCOMPARE(tips.topMargin(), 0);
        QCOMPARE(tips.height(), tips.lineHeight() + nBreaks * (tips.lineHeight() + 5) + 4);
        // Wrapped to the width less the icon column.
        for (const QString &strLine : tips.paintedLines())
            QVERIFY(QFontMetrics(tips.font()).horizontalAdvance(strLine) <= 200 - 44);
    }

    void narrowWidgetIsWidenedTo64()
    {
        VxTipsWidget tips;
        tips.setFixedWidth(10);
        tips.setText(QStringLiteral("x"));
        tips.adjustHeight();
        QCOMPARE(tips.width(), 64);
    }

    void consecutiveBreaksDrawNoEmptyLine()
    {
        VxTipsWidget tips;
        tips.setFixedWidth(400);
        tips.setText(QStringLiteral("Hd\r\n\r\nHd"));
        tips.adjustHeight();
        const int nLine = tips.lineHeight();
        // The height counts both breaks...
        QCOMPARE(tips.height(), nLine + 2 * (nLine + 5) + 4);
        // ...but only two lines are drawn, one line step apart.
        QCOMPARE(tips.paintedLines(), QStringList({QStringLiteral("Hd"), QStringLiteral("Hd")}));
        const QImage image = tips.grab().toImage();
        const QList<QPair<int, int>> listBands = inkBands(image, tips.iconRect().right() + 5);
        QCOMPARE(listBands.size(), 2);
        QCOMPARE(listBands.at(1).first - listBands.at(0).first, nLine + 5);
        QVERIFY(listBands.at(0).first >= tips.topMargin() + 2);
    }

    void houseFontAndColour()
    {
        VxTipsWidget tips;
        QCOMPARE(tips.font().pixelSize(), 12);
        QCOMPARE(tips.font().family(), QFont(Custom::globalFontFamily()).family());
        const QColor colour = Custom::getDataBaseColor(QStringLiteral("VetrixToolColor_VxTipsWidget_Font")).color();
        QVERIFY(colour.isValid());
        QCOMPARE(tips.palette().color(QPalette::Active, QPalette::WindowText), colour);
        QCOMPARE(tips.palette().color(QPalette::Disabled, QPalette::WindowText), colour);
    }

    void iconSitsLeftAndCentred()
    {
        VxTipsWidget tips;
        QCOMPARE(tips.icon(), QStringLiteral(":/Lu/Hint/information.png"));
        tips.setIcon(QString::fromLatin1(VxTipsWidget::kWarningIcon));
        tips.setFixedWidth(300);
        tips.setText(QStringLiteral("Warning"));
        tips.adjustHeight();
        const QRect rect = tips.iconRect();
        QVERIFY(!rect.isEmpty()); // the icon loaded from the package
        QCOMPARE(rect.left(), 2);
        QCOMPARE(rect.top(), (tips.height() - rect.height()) / 2);
    }
};

QTEST_MAIN(TstVxTipsWidget)
#include "tst_vxtipswidget.moc"
