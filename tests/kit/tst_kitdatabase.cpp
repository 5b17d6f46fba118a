// The kit's process-wide state: colour database and named styles from the
// style-sheet description, language, fonts, and the save-file dialog.
#include "custom.h"
#include "customlabel.h"
#include "customtreewidget.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLinearGradient>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
const QString kXml = QStringLiteral(VX_SOURCE_DIR "/resources/orvex/QSS/CustomStyleSheet_ox.xml");
}

class TstKitDatabase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(Custom::addXmlPath(kXml), qPrintable(kXml));
        QCOMPARE(Custom::xmlPaths().last(), kXml);
    }

    // Every colour key the program asks for, as it spells it.
    void programColorKeys_data()
    {
        QTest::addColumn<QString>("strKey");
        QTest::addColumn<QString>("strExpected");
        QTest::addRow("one-key top label") << "DB_COLOR_VetrixToolColor_VxOneKeyWidget_TopWidget_Label_Font" << "#414752";
        QTest::addRow("tips widget font") << "VetrixToolColor_VxTipsWidget_Font" << "#5c6370";
        QTest::addRow("USB driver separator") << "DB_COLOR_VetrixToolColor_VxUSBDriverDlg_SpliteLine_Background" << "#e4e7ed";
        QTest::addRow("USB driver delegate") << "VetrixToolColor_VxUsbBasicInfoDlg_VxUsbDriverDelegate_Item_Font" << "#414752";
        QTest::addRow("USB basic delegate") << "VetrixToolColor_VxUsbBasicInfoDlg_VxUsbBasicDelegate_Item_Font" << "#414752";
    }
    void programColorKeys()
    {
        QFETCH(QString, strKey);
        QFETCH(QString, strExpected);
        const QBrush brush = Custom::getDataBaseColor(strKey, QRect(0, 0, 20, 20));
        QCOMPARE(brush.style(), Qt::SolidPattern);
        QCOMPARE(brush.color().name(), strExpected.toLower());
        // The prefix is optional both ways.
        const QString strOther = strKey.startsWith("DB_COLOR_") ? strKey.mid(9) : "DB_COLOR_" + strKey;
        QCOMPARE(Custom::getDataBaseColor(strOther).color(), brush.color());
        QVERIFY(Custom::hasDataBaseColor(strKey));
    }

    void unknownKeyHasNoBrush()
    {
        QCOMPARE(Custom::getDataBaseColor("NoSuchKey").style(), Qt::NoBrush);
        QVERIFY(!Custom::hasDataBaseColor("NoSuchKey"));
        QVERIFY(!Custom::resolveColor("NoSuchKey").isValid());
        QCOMPARE(Custom::resolveColor("#FA6500"), QColor("#FA6500"));
    }

    void gradientFollowsRect()
    {
        const QBrush brush = Custom::getDataBaseColor("VetrixToolColor_OperateButton_Background", QRect(10, 20, 100, 50));
        QCOMPARE(brush.style(), Qt::LinearGradientPattern);
        const auto *pGradient = static_cast<const QLinearGradient *>(brush.gradient());
        QCOMPARE(pGradient->start(), QPointF(10, 20));
        QCOMPARE(pGradient->finalStop(), QPointF(110, 70));
        QCOMPARE(pGradient->stops().first().second, QColor("#FF9900"));
        QCOMPARE(pGradient->stops().last().second, QColor("#F76900"));
    }

    void brokenFilesAreRejectedWhole_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addRow("bad colour") << QByteArray("<S><Color key=\"Broken_A\" value=\"#12\"/></S>");
        QTest::addRow("unterminated") << QByteArray("<S><Color key=\"Broken_A\" value=\"#123456\"/>");
        QTest::addRow("good then bad") << QByteArray("<S><Color key=\"Broken_A\" value=\"#123456\"/><Color key=\"\" value=\"#1\"/></S>");
        QTest::addRow("gradient without stops") << QByteArray("<S><Gradient key=\"Broken_A\" x1=\"0\" y1=\"0\" x2=\"1\" y2=\"0\"></Gradient></S>");
        QTest::addRow("not xml") << QByteArray("\x00\x01garbage", 9);
    }
    void brokenFilesAreRejectedWhole()
    {
        QFETCH(QByteArray, xml);
        QTemporaryDir dir;
        QFile file(dir.filePath("broken.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(xml);
        file.close();
        QVERIFY(!Custom::addXmlPath(file.fileName()));
        QVERIFY(!Custom::hasDataBaseColor("Broken_A"));
        QVERIFY(!Custom::addXmlPath(dir.filePath("missing.xml")));
    }

    void styleSelectorAppliesNamedStyle()
    {
        QVERIFY(Custom::styleSheetForSelector("VxResultTable").contains("QTreeWidget"));
        QVERIFY(!Custom::styleSheetForSelector("USBController").isEmpty());
        CustomTreeWidget tree;
        tree.cSetStyleSelector("VxResultTable");
        QVERIFY(tree.styleSheet().contains(Custom::styleSheetForSelector("VxResultTable")));
        QCOMPARE(tree.property("styleSelector").toString(), QString("VxResultTable"));
    }

    void setterColoursResolveKeys()
    {
        CustomLabel label;
        label.cSetFontColor("VetrixToolColor_VxTipsWidget_Font");
        QCOMPARE(label.cFontColor(), QColor("#5C6370"));
        label.cSetBackgroundColor("#FF0000", CustomObject::StateHover);
        QCOMPARE(label.cBackgroundColor(CustomObject::StateHover), QColor("#FF0000"));
        QVERIFY(label.styleSheet().contains(":hover"));
        label.cSetBackgroundColor("VetrixToolColor_OperateButton_Background");
        QVERIFY(label.styleSheet().contains("qlineargradient(x1:0, y1:0, x2:1, y2:1"));
        QCOMPARE(label.cBackgroundColor(), QColor("#FF9900"));
        label.cSetBackgroundColor(QColor("#00FF00"));
        QVERIFY(!label.styleSheet().contains("qlineargradient"));
        label.cSetFontSize(23);
        QCOMPARE(label.font().pixelSize(), 23);
        label.cSetFontFamily("Arial");
        QCOMPARE(label.font().family(), QString("Arial"));
        QCOMPARE(label.font().pixelSize(), 23);
    }

    void language_data()
    {
        QTest::addColumn<int>("nSet");
        QTest::addColumn<int>("nExpected");
        QTest::addRow("Chinese") << 0 << 0;
        QTest::addRow("English") << 1 << 1;
        QTest::addRow("other value means English") << 7 << 1;
    }
    void language()
    {
        QFETCH(int, nSet);
        QFETCH(int, nExpected);
        Custom::setLanguage(nSet);
        QCOMPARE(Custom::language(), nExpected);
    }

    void missingFontFallsBack()
    {
        const QString strMissing = "Microsoft YaHei";
        Custom::setLanguage(Custom::Chinese);
        Custom::setGlobalFontFamily(Custom::Chinese, strMissing);
        QCOMPARE(Custom::globalFontFamily(Custom::Chinese), strMissing);
        QCOMPARE(Custom::globalFontFamily(), strMissing);
        QCOMPARE(QApplication::font().family(), strMissing);
        const QStringList listInstalled = QFontDatabase().families();
        if (!listInstalled.contains(strMissing, Qt::CaseInsensitive)
            && listInstalled.contains("WenQuanYi Micro Hei", Qt::CaseInsensitive)) {
            QCOMPARE(QFont::substitutes(strMissing).value(0).toLower(), QString("wenquanyi micro hei"));
            QCOMPARE(QFontInfo(QFont(strMissing)).family(), QString("WenQuanYi Micro Hei"));
        }
        // English without its own family uses the house family as well.
        QCOMPARE(Custom::globalFontFamily(Custom::English), strMissing);
        Custom::setLanguage(Custom::English);
    }

    void savePath_data()
    {
        QTest::addColumn<QString>("strDir");
        QTest::addColumn<QString>("strName");
        QTest::addColumn<QString>("strSuffix");
        QTest::addColumn<QString>("strExpected");
        QTest::addRow("name gets the suffix") << "/data/VetrixTool/" << "Log_20250225_101500" << "log" << "/data/VetrixTool/Log_20250225_101500.log";
        QTest::addRow("suffix already there") << "/data" << "Log_1.log" << "log" << "/data/Log_1.log";
        QTest::addRow("suffix in other case") << "/data" << "Log_1.LOG" << "log" << "/data/Log_1.LOG";
        QTest::addRow("suffix with dot") << "/data" << "Log_1" << ".log" << "/data/Log_1.log";
        QTest::addRow("no suffix") << "/data" << "notes" << "" << "/data/notes";
        QTest::addRow("no directory") << "" << "Log_1" << "log" << "Log_1.log";
        QTest::addRow("no name") << "/data/x/" << "" << "log" << "/data/x";
        QTest::addRow("doubled separators") << "/data//x/" << "a" << "log" << "/data/x/a.log";
    }
    void savePath()
    {
        QFETCH(QString, strDir);
        QFETCH(QString, strName);
        QFETCH(QString, strSuffix);
        QFETCH(QString, strExpected);
        QCOMPARE(Custom::composeSavePath(strDir, strName, strSuffix), strExpected);
    }

    void saveFilter_data()
    {
        QTest::addColumn<QString>("strFilter");
        QTest::addColumn<QString>("strSuffix");
        QTest::addColumn<QString>("strExpected");
        QTest::addRow("given filter kept") << "File(*.log)" << "log" << "File(*.log)";
        QTest::addRow("made from suffix") << "" << "log" << "*.log";
        QTest::addRow("made from dotted suffix") << "" << ".txt" << "*.txt";
        QTest::addRow("nothing given") << "" << "" << "*";
    }
    void saveFilter()
    {
        QFETCH(QString, strFilter);
        QFETCH(QString, strSuffix);
        QFETCH(QString, strExpected);
        QCOMPARE(Custom::composeSaveFilter(strFilter, strSuffix), strExpected);
    }

    // The dialog itself: it proposes the directory, name and filter, and a
    // name typed without suffix comes back with it.
    void saveDialogProposes()
    {
        QTemporaryDir dir;
        QString strSeenFile, strSeenFilter, strSeenDir;
        QTimer::singleShot(0, this, [&] {
            auto *pDialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!pDialog)
                return;
            strSeenFile = pDialog->selectedFiles().value(0);
            strSeenFilter = pDialog->selectedNameFilter();
            strSeenDir = pDialog->directory().absolutePath();
            pDialog->selectFile("typed");
            QMetaObject::invokeMethod(pDialog, "accept");
        });
        const QString strResult = Custom::getSaveFileName(nullptr, "Select File.", dir.path(), "Log_20250225_101500",
                                                          "log", "File(*.log)");
        QCOMPARE(strSeenFile, dir.path() + "/Log_20250225_101500.log");
        QCOMPARE(strSeenFilter, QString("File(*.log)"));
        QCOMPARE(strSeenDir, dir.path());
        QCOMPARE(strResult, dir.path() + "/typed.log");
    }

    void saveDialogCancelled()
    {
        QTimer::singleShot(0, this, [] {
            if (QWidget *pDialog = QApplication::activeModalWidget())
                pDialog->close();
        });
        QVERIFY(Custom::getSaveFileName(nullptr, "Select File.", QDir::tempPath(), "a", "log").isEmpty());
    }
};

QTEST_MAIN(TstKitDatabase)
#include "tst_kitdatabase.moc"
