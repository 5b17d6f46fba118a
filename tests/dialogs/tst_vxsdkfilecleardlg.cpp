// The SDK file clear dialog: rows per copy, row clears, "Clear All", the
// record written back on hide, and clears without rights.
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "dialogtestutil.h"
#include "vxdialogprobes.h"
#include "vxsdkfilecleardlg.h"
#include "vxtipswidget.h"

#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QToolTip>
#include <QTest>

#include <new>

namespace {

const QString kLib = QStringLiteral("libLuCameraControl.so");
const QString kUsb = QStringLiteral("libLuUsb3vTL.so");

// What the clears were asked to delete, one record per call.
QList<QMap<QString, QStringList>> g_listCalls;

// A clear that deletes as this process does, or one that lacks the rights
// and deletes nothing.
void installClear(bool bAuthorized)
{
    g_listCalls.clear();
    VxProbeTable table;
    table.setRepair(VxItems::SdkFiles, [bAuthorized](CSDKPathDetectInfo &info) {
        g_listCalls << info.foundFiles;
        VxRepairOutcome outcome;
        if (bAuthorized) {
            for (auto it = info.foundFiles.cbegin(); it != info.foundFiles.cend(); ++it)
                for (const QString &strDir : it.value())
                    QFile::remove(strDir + QLatin1Char('/') + it.key());
        } else {
            outcome = VxRepairOutcome(VxRepairStatus::NotAuthorized);
        }
        info.foundFiles.clear();
        info.bNormal = 1;
        return outcome;
    });
    VxDialogProbes::setTable(table);
}

// Two system folders below a temporary root, the camera library in both and
// the USB library in the second.
struct Fixture
{
    QTemporaryDir dir;
    QString strNative;
    QString strX86;
    CSDKPathDetectInfo info;

    Fixture()
    {
        strNative = dir.path() + QStringLiteral("/usr/lib/x86_64-linux-gnu");
        strX86 = dir.path() + QStringLiteral("/usr/lib32");
        QDir().mkpath(strNative);
        QDir().mkpath(strX86);
        for (const QString &strPath : {strNative + QLatin1Char('/') + kLib, strX86 + QLatin1Char('/') + kLib,
                                       strX86 + QLatin1Char('/') + kUsb}) {
            QFile file(strPath);
            file.open(QIODevice::WriteOnly);
        }
        info.nItem = 1;
        info.foundFiles[kLib] = QStringList{strNative, strX86};
        info.foundFiles[kUsb] = QStringList{strX86};
        info.bNormal = 0;
    }
};

CustomPushButton *rowButton(VxSDKFileClearDlg &dialog, int nRow)
{
    return qobject_cast<CustomPushButton *>(dialog.table()->cellWidget(nRow, 2));
}

} // namespace

class TstVxSDKFileClearDlg : public QObject
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

    void oneRowPerCopy()
    {
        Fixture fx;
        fx.info.foundFiles[kUsb].append(QString()); // empty directories are skipped
        VxSDKFileClearDlg dialog(&fx.info);
        CustomTableWidget *pTable = dialog.table();
        QCOMPARE(dialog.size(), QSize(650, 472));
        QCOMPARE(pTable->size(), QSize(615, 300));
        QCOMPARE(pTable->columnWidth(0), 140);
        QCOMPARE(pTable->columnWidth(1), 380);
        QCOMPARE(pTable->columnWidth(2), 90);
        QCOMPARE(pTable->horizontalHeader()->height(), 34);
        QCOMPARE(pTable->horizontalHeaderItem(0)->text(), QStringLiteral("SDK File"));
        QCOMPARE(pTable->horizontalHeaderItem(1)->text(), QStringLiteral("Saving Path"));
        QCOMPARE(pTable->horizontalHeaderItem(2)->text(), QStringLiteral("Operation"));
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("SDK File Info"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Clear All"));
        // A file found in two folders gives two rows with the same name.
        QCOMPARE(pTable->rowCount(), 3);
        QCOMPARE(pTable->item(0, 0)->text(), kLib);
        QCOMPARE(pTable->item(0, 1)->text(), fx.strNative);
        QCOMPARE(pTable->item(1, 0)->text(), kLib);
        QCOMPARE(pTable->item(1, 1)->text(), fx.strX86);
        QCOMPARE(pTable->item(2, 0)->text(), kUsb);
        for (int nRow = 0; nRow < 3; ++nRow) {
            QCOMPARE(pTable->rowHeight(nRow), 38);
            CustomPushButton *pButton = rowButton(dialog, nRow);
            QVERIFY(pButton);
            QVERIFY(pButton->text().isEmpty());
            QCOMPARE(pButton->cBackgroundImage(CustomObject::StateNormal), QStringLiteral(":/Vetrix/Vetrix/Clear.png"));
            QCOMPARE(pButton->cBackgroundImage(CustomObject::StateDisabled), QStringLiteral(":/Vetrix/Vetrix/Clear_dis.png"));
            QCOMPARE(pButton->cBackgroundImage(CustomObject::StateHover), QStringLiteral(":/Vetrix/Vetrix/Clear_sel.png"));
            QCOMPARE(pButton->cBackgroundImage(CustomObject::StatePressed), QStringLiteral(":/Vetrix/Vetrix/Clear_sel.png"));
        }
        QCOMPARE(dialog.tips()->width(), 614);
        QVERIFY(dialog.tips()->text().remove(QStringLiteral("\r\n")).startsWith(QLatin1String("SDK files exist")));
    }

    void clearingRowsOneByOneLeavesTheItemNormal()
    {
        installClear(true);
        Fixture fx;
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        QTest::mouseClick(rowButton(dialog, 1), Qt::LeftButton);
        // The clear got a record of that single copy.
        QCOMPARE(g_listCalls.size(), 1);
        QCOMPARE(g_listCalls.first(), (QMap<QString, QStringList>{{kLib, {fx.strX86}}}));
        QCOMPARE(dialog.table()->rowCount(), 2);
        QCOMPARE(dialog.table()->item(1, 0)->text(), kUsb);
        while (dialog.table()->rowCount() > 0)
            QTest::mouseClick(rowButton(dialog, 0), Qt::LeftButton);
        QCOMPARE(g_listCalls.size(), 3);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Clear All"));
        QCOMPARE(fx.info.bNormal, 0); // written back only on hide
        dialog.close();
        QVERIFY(fx.info.foundFiles.isEmpty());
        QCOMPARE(fx.info.bNormal, 1);
        QVERIFY(!QFile::exists(fx.strNative + QLatin1Char('/') + kLib));
    }

    void closingUntouchedKeepsTheRecord()
    {
        installClear(true);
        Fixture fx;
        const QMap<QString, QStringList> mapBefore = fx.info.foundFiles;
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        dialog.close();
        QCOMPARE(fx.info.foundFiles, mapBefore);
        QCOMPARE(fx.info.bNormal, 0);
        QVERIFY(g_listCalls.isEmpty());
    }

    void clearAllEmptiesAndThenCloses()
    {
        installClear(true);
        Fixture fx;
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(g_listCalls.size(), 1);
        QCOMPARE(g_listCalls.first().value(kLib).size(), 2);
        QCOMPARE(dialog.table()->rowCount(), 0);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("OK"));
        QVERIFY(dialog.isVisible());
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(fx.info.bNormal, 1);
        QVERIFY(fx.info.foundFiles.isEmpty());
    }

    void rowClearWithoutRightsKeepsTheRow()
    {
        installClear(false);
        Fixture fx;
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(rowButton(dialog, 0), Qt::LeftButton);
        QCOMPARE(dialog.table()->rowCount(), 3);
        QCOMPARE(catcher.listTexts.size(), 1);
        QVERIFY(catcher.listTexts.first().contains(QLatin1String("administrator rights")));
        dialog.close();
        QCOMPARE(fx.info.bNormal, 0);
        QCOMPARE(fx.info.foundFiles.value(kLib).size(), 2);
    }

    void clearAllWithoutRightsStaysExceptional()
    {
        installClear(false);
        Fixture fx;
        // One copy has gone meanwhile: it leaves the list, the others stay.
        QFile::remove(fx.strX86 + QLatin1Char('/') + kUsb);
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(catcher.listTexts.size(), 1);
        QCOMPARE(dialog.table()->rowCount(), 2);
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("Clear All"));
        QCOMPARE(fx.info.bNormal, 0);
        QCOMPARE(fx.info.foundFiles, (QMap<QString, QStringList>{{kLib, {fx.strNative, fx.strX86}}}));
        QVERIFY(dialog.isVisible());
    }

    // Resting the mouse on a row's file name or folder shows it whole as a
    // tool tip (the columns are narrower than long paths), also while the
    // dialog is not the active window (no window manager gave it the focus,
    // or the user looks at a file manager beside it).
    void cellsShowTheirToolTips()
    {
        Fixture fx;
        VxSDKFileClearDlg dialog(&fx.info);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QWidget other;
        other.setGeometry(dialog.geometry().right() + 20, 0, 100, 100);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        QVERIFY(!dialog.isActiveWindow());
        CustomTableWidget *pTable = dialog.table();
        for (int nColumn : {0, 1}) {
            QToolTip::hideText();
            QTRY_VERIFY(!QToolTip::isVisible());
            const QRect cell = pTable->visualItemRect(pTable->item(0, nColumn));
            QTest::mouseMove(pTable->viewport(), cell.center());
            QTRY_VERIFY2_WITH_TIMEOUT(QToolTip::isVisible(), qPrintable(QStringLiteral("column %1").arg(nColumn)),
                                      10000);
            QCOMPARE(QToolTip::text(), nColumn == 0 ? kLib : fx.strNative);
        }
        QToolTip::hideText();
    }

    void nullItemFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxSDKFileClearDlg dialog(nullptr), std::bad_alloc);
    }

    void languageChangeRetranslates()
    {
        Fixture fx;
        VxSDKFileClearDlg dialog(&fx.info);
        DialogTest::MarkingTranslator translator("VxSDKFileClearDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:SDK File Info"));
        QCOMPARE(dialog.table()->horizontalHeaderItem(2)->text(), QStringLiteral("T:Operation"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("T:Clear All"));
        QVERIFY(dialog.tips()->text().startsWith(QLatin1String("T:")));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxSDKFileClearDlg)
#include "tst_vxsdkfilecleardlg.moc"
