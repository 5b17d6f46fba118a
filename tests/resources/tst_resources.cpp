// The two resource packages in bin/rcc hold every path the program and the
// kit open, at the sizes they are drawn, with their high-density twins.
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QResource>
#include <QSettings>
#include <QTest>
#include <QXmlStreamReader>

namespace {
const QString kRccDir = QStringLiteral(VX_BIN_DIR "/rcc/");
}

class TstResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(QResource::registerResource(kRccDir + "Panekit_Default.rcc"), qPrintable(kRccDir));
        QVERIFY(QResource::registerResource(kRccDir + "Orvex.rcc"));
    }

    // Every path the program names, the package that holds it, and the
    // size it is drawn at (empty: not fixed).
    void pathExists_data()
    {
        QTest::addColumn<QString>("strPath");
        QTest::addColumn<QSize>("size");
        const QSize any;
        QTest::addRow("pc data normal") << ":/Corvane/Corvane/Button/icon_pc_data_normal.png" << QSize(24, 24);
        QTest::addRow("pc data click") << ":/Corvane/Corvane/Button/icon_pc_data_click.png" << QSize(24, 24);
        QTest::addRow("pc data disable") << ":/Corvane/Corvane/Button/icon_pc_data_disable.png" << QSize(24, 24);
        QTest::addRow("hint information") << ":/Lu/Hint/information.png" << any;
        QTest::addRow("hint warning") << ":/Lu/Hint/warning.png" << any;
        QTest::addRow("style-sheet description") << ":/Orvex/QSS/CustomStyleSheet_ox.xml" << any;
        QTest::addRow("settings") << ":/Orvex/config/app.ini" << any;
        QTest::addRow("clear") << ":/Vetrix/Vetrix/Clear.png" << any;
        QTest::addRow("clear disabled") << ":/Vetrix/Vetrix/Clear_dis.png" << any;
        QTest::addRow("clear selected") << ":/Vetrix/Vetrix/Clear_sel.png" << any;
        QTest::addRow("client icon") << ":/Vetrix/Vetrix/Client.ico" << any;
        QTest::addRow("detect empty") << ":/Vetrix/Vetrix/DetectEmpty.png" << any;
        QTest::addRow("detect finish") << ":/Vetrix/Vetrix/DetectFinish.png" << QSize(102, 102);
        QTest::addRow("detect nothing") << ":/Vetrix/Vetrix/DetectNothing.png" << QSize(102, 102);
        QTest::addRow("detect stop") << ":/Vetrix/Vetrix/DetectStop.png" << QSize(102, 102);
        QTest::addRow("detecting") << ":/Vetrix/Vetrix/Detecting.gif" << QSize(102, 102);
        QTest::addRow("diagnostic doing") << ":/Vetrix/Vetrix/Diagnostic_doing.png" << any;
        QTest::addRow("diagnostic error") << ":/Vetrix/Vetrix/Diagnostic_error.png" << any;
        QTest::addRow("diagnostic normal") << ":/Vetrix/Vetrix/Diagnostic_normal.png" << any;
        QTest::addRow("diagnostic warning") << ":/Vetrix/Vetrix/Diagnostic_warning.png" << any;
        QTest::addRow("logo") << ":/Vetrix/Vetrix/Logo.png" << any;
        QTest::addRow("result medium") << ":/Vetrix/Vetrix/ResultMedium.png" << QSize(30, 30);
        QTest::addRow("result normal") << ":/Vetrix/Vetrix/ResultNormal.png" << QSize(30, 30);
        QTest::addRow("result serious") << ":/Vetrix/Vetrix/ResultSerious.png" << QSize(30, 30);
        QTest::addRow("title background left") << ":/Vetrix/Vetrix/TitleBackgroundLeft.png" << any;
        QTest::addRow("title background right") << ":/Vetrix/Vetrix/TitleBackgroundRight.png" << any;
        QTest::addRow("big logo") << ":/Vetrix/Vetrix/logo_big.png" << QSize(338, 120);
        QTest::addRow("kit warning box icon") << ":/Panekit/MessageBox/warning.png" << QSize(32, 32);
        QTest::addRow("kit success box icon") << ":/Panekit/MessageBox/success.png" << QSize(32, 32);
    }
    void pathExists()
    {
        QFETCH(QString, strPath);
        QFETCH(QSize, size);
        QVERIFY2(QFile::exists(strPath), qPrintable(strPath));
        if (!strPath.endsWith(".png") && !strPath.endsWith(".gif"))
            return;
        QImageReader reader(strPath);
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), qPrintable(reader.errorString()));
        if (size.isValid())
            QCOMPARE(image.size(), size);
        if (strPath.endsWith(".png")) {
            // The twin for 200 % screens is exactly twice as large.
            const QString str2x = strPath.left(strPath.size() - 4) + "@2x.png";
            const QImage image2x(str2x);
            QVERIFY2(!image2x.isNull(), qPrintable(str2x));
            QCOMPARE(image2x.size(), image.size() * 2);
        }
    }

    // The packages are split by owner: the kit's files only in its package.
    void packagesAreSeparate()
    {
        QVERIFY(QResource::unregisterResource(kRccDir + "Orvex.rcc"));
        QVERIFY(QFile::exists(":/Lu/Hint/information.png"));
        QVERIFY(!QFile::exists(":/Vetrix/Vetrix/Logo.png"));
        QVERIFY(QResource::registerResource(kRccDir + "Orvex.rcc"));
        QVERIFY(QFile::exists(":/Vetrix/Vetrix/Logo.png"));
    }

    void animationLoops()
    {
        QImageReader reader(":/Vetrix/Vetrix/Detecting.gif");
        QVERIFY(reader.supportsAnimation());
        QVERIFY(reader.imageCount() > 10);
        QCOMPARE(reader.loopCount(), -1);
        QImage first = reader.read();
        QVERIFY(!first.isNull());
        // Corners are transparent, the ring is opaque.
        QCOMPARE(qAlpha(first.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(first.pixel(51, 4)), 255);
        int nFrames = 1;
        QImage previous = first;
        bool bChanges = false;
        while (reader.canRead()) {
            const QImage next = reader.read();
            if (next.isNull())
                break;
            bChanges = bChanges || next != previous;
            previous = next;
            ++nFrames;
        }
        QCOMPARE(nFrames, reader.imageCount());
        QVERIFY(bChanges);
    }

    void iconHasAllSizes()
    {
        QImageReader reader(":/Vetrix/Vetrix/Client.ico");
        QCOMPARE(reader.imageCount(), 7);
        QList<int> listSizes;
        for (int i = 0; i < reader.imageCount(); ++i) {
            QVERIFY(reader.jumpToImage(i));
            const QImage image = reader.read();
            QVERIFY2(!image.isNull(), qPrintable(reader.errorString()));
            QCOMPARE(image.width(), image.height());
            listSizes.append(image.width());
        }
        QCOMPARE(listSizes, (QList<int>{16, 24, 32, 48, 64, 128, 256}));
    }

    void settingsCarryTheVersion()
    {
        // Keys of the [General] group are top-level keys for QSettings.
        QSettings settings(":/Orvex/config/app.ini", QSettings::IniFormat);
        QVERIFY(!settings.value("ToolSoftwareVersion").toString().isEmpty());
    }

    // The packed description is the source file and parses cleanly.
    void descriptionIsPackedAsWritten()
    {
        QFile packed(":/Orvex/QSS/CustomStyleSheet_ox.xml");
        QFile source(VX_SOURCE_DIR "/resources/orvex/QSS/CustomStyleSheet_ox.xml");
        QVERIFY(packed.open(QIODevice::ReadOnly));
        QVERIFY(source.open(QIODevice::ReadOnly));
        const QByteArray data = packed.readAll();
        QCOMPARE(data, source.readAll());
        QXmlStreamReader xml(data);
        int nColors = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("Color"))
                ++nColors;
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(nColors >= 5);
    }
};

QTEST_GUILESS_MAIN(TstResources)
#include "tst_resources.moc"
