// The USB tree viewer over a captured machine: its frame and widgets, the
// tree (empty ports left out), the decoder's lines in the table and in text
// mode, hub lines, scrolling and selection, closing and retranslating.
#include "cdetectinfo.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "customtreewidget.h"
#include "dialogtestutil.h"
#include "probekit.h"
#include "usbbasicinfotestutil.h"
#include "usbprobe.h"
#include "vxusbbasicdelegate.h"
#include "vxusbbasicinfodlg.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>

#include <new>

using namespace UsbBasicInfoTest;

namespace {

const QString kFixture = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");

// A record holding the captured machine's tree, given back on destruction.
class CapturedRecord
{
public:
    CapturedRecord()
    {
        qputenv("VETRIX_SYSROOT", kFixture.toLocal8Bit());
        VxUsbProbe::setLibraryPath(kLibrary);
        info.nItem = 512;
        VxUsbProbe::usbTreeCheck(info);
    }
    ~CapturedRecord() { VxUsbProbe::destroyTree(info.pRootItem); }
    CUsbBasicDetectInfo info;
};

Lines decoderLines(const void *pInfo)
{
    CUsbPairSink sink;
    CUsbTreeDecoder(sink).printNode(pInfo);
    return sink.vecLines;
}

QStringList decoderText(const void *pInfo)
{
    CUsbTextSink sink;
    CUsbTreeDecoder(sink).printNode(pInfo);
    return sink.listLines;
}

const void *nodeOf(const QTreeWidgetItem *pItem)
{
    return pItem->data(0, VxUsbBasicInfoDlg::kNodeRole).value<void *>();
}

} // namespace

class TstVxUsbBasicInfoDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(DialogTest::loadResources() && probeLibraryBuilt()); }
    void cleanupTestCase() { qunsetenv("VETRIX_SYSROOT"); }

    void frameAndWidgets()
    {
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("USB Controller Info"));
        QCOMPARE(dialog.size(), QSize(854, 565));
        QCOMPARE(dialog.cButtons().size(), 1);
        QVERIFY(!dialog.isTextMode());

        CustomTableWidget *pTable = dialog.table();
        QCOMPARE(pTable->columnCount(), 2);
        QCOMPARE(pTable->columnWidth(0), 220);
        QCOMPARE(pTable->columnWidth(1), 253);
        QCOMPARE(pTable->size(), QSize(483, 440));
        QCOMPARE(pTable->minimumSize(), pTable->maximumSize());
        QVERIFY(pTable->horizontalHeader()->isHidden());
        QCOMPARE(pTable->horizontalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
        QVERIFY(qobject_cast<VxUsbBasicDelegate *>(pTable->itemDelegate()));
        QCOMPARE(pTable->cStyleSelector(), QStringLiteral("USBController"));

        CustomTreeWidget *pTree = dialog.tree();
        QCOMPARE(pTree->columnCount(), 1);
        QCOMPARE(pTree->size(), QSize(330, 458));
        QCOMPARE(pTree->minimumSize(), pTree->maximumSize());
        QVERIFY(pTree->header()->isHidden());
        QVERIFY(!pTree->header()->stretchLastSection());
        QCOMPARE(pTree->header()->sectionResizeMode(0), QHeaderView::ResizeToContents);
        QCOMPARE(pTree->textElideMode(), Qt::ElideNone);
        QCOMPARE(pTree->cStyleSelector(), QStringLiteral("USBController"));

        // Tree on the left, table on the right, tops level.
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QPoint treeAt = pTree->mapTo(&dialog, QPoint(0, 0));
        const QPoint tableAt = pTable->mapTo(&dialog, QPoint(0, 0));
        QVERIFY(treeAt.x() + pTree->width() <= tableAt.x());
        QCOMPARE(treeAt.y(), tableAt.y());
        QVERIFY(tableAt.x() + pTable->width() <= dialog.width());
    }

    void nullRecordFailsTheBuild()
    {
        QVERIFY_EXCEPTION_THROWN(VxUsbBasicInfoDlg dialog(nullptr), std::bad_alloc);
        QVERIFY_EXCEPTION_THROWN(VxUsbBasicInfoDlg dialog(nullptr, true), std::bad_alloc);
    }

    void emptyTreesShowAnEmptyDialog()
    {
        // No tree at all (the probe library is missing): nothing is known,
        // nothing is shown.
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.tree()->topLevelItemCount(), 0);
        QCOMPARE(dialog.table()->rowCount(), 0);
        dialog.showNode(nullptr);
        dialog.showNode(dialog.tree()->invisibleRootItem());
        QCOMPARE(dialog.table()->rowCount(), 0);
        VxUsbBasicInfoDlg text(&info, true);
        text.printTree();
        QVERIFY(text.textLines().isEmpty());
    }

    void newNodeOpensAtTheTop()
    {
        // Scrolled down in a long node, then another node: its lines start at the top.
        CapturedRecord record;
        VxUsbBasicInfoDlg dialog(&record.info);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QTreeWidgetItem *pAudio = findItem(dialog.tree(), "[Port3] DeviceConnected : QEMU USB Audio");
        QTreeWidgetItem *pKeyboard = findItem(dialog.tree(), "[Port1] DeviceConnected : QEMU USB Keyboard");
        QVERIFY(pAudio && pKeyboard);
        dialog.tree()->setCurrentItem(pAudio);
        QScrollBar *pBar = dialog.table()->verticalScrollBar();
        QTRY_VERIFY(pBar->maximum() > 0);
        pBar->setValue(pBar->maximum() / 2);
        QVERIFY(pBar->value() > 0);
        dialog.tree()->setCurrentItem(pKeyboard);
        QApplication::processEvents();
        QVERIFY(pBar->maximum() > 0); // the keyboard's lines scroll too
        QCOMPARE(pBar->value(), 0);
        QCOMPARE(dialog.table()->rowAt(0), 0);
    }

    void selectionHighlightsTheWholeRow()
    {
        // The selected item's row is highlighted alike under its text and in
        // its indentation, and visibly apart from an unselected row.
        CapturedRecord record;
        VxUsbBasicInfoDlg dialog(&record.info);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QTreeWidget *pTree = dialog.tree();
        QTreeWidgetItem *pSelected = findItem(pTree, "[Port1] DeviceConnected : QEMU USB Keyboard");
        QTreeWidgetItem *pOther = findItem(pTree, "[Port2] DeviceConnected : QEMU USB Tablet");
        QVERIFY(pSelected && pOther);
        pTree->setCurrentItem(pSelected);
        QVERIFY(pSelected->isSelected());
        QApplication::processEvents();
        const QImage image = pTree->viewport()->grab().toImage();
        const QRect rectSelected = pTree->visualItemRect(pSelected);
        const QRect rectOther = pTree->visualItemRect(pOther);
        QVERIFY(rectSelected.left() > 10); // the item is indented
        // Under the text: the background a few pixels into the text's line
        // box, above the glyphs; in the indentation: left of the item.
        const int y = rectSelected.top() + 2;
        const QColor underText = image.pixelColor(rectSelected.left() + 30, y);
        const QColor indentation = image.pixelColor(rectSelected.left() - 6, y);
        const QColor unselected = image.pixelColor(rectOther.left() + 30, rectOther.top() + 2);
        const auto distance = [](const QColor &a, const QColor &b) {
            return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue());
        };
        QVERIFY2(distance(underText, indentation) <= 6,
                 qPrintable(QString("text %1, indentation %2").arg(underText.name(), indentation.name())));
        QVERIFY2(distance(underText, unselected) >= 40,
                 qPrintable(QString("selected %1, unselected %2").arg(underText.name(), unselected.name())));
    }

    void capturedTreeListsConnectedNodes()
    {
        CapturedRecord record;
        QVERIFY(record.info.pRootItem);
        VxUsbBasicInfoDlg dialog(&record.info);
        QStringList listNames;
        collectNames(dialog.tree()->invisibleRootItem(), listNames);
        QCOMPARE(listNames,
            QStringList({"Red Hat, Inc. QEMU XHCI Host Controller", "Root Hub usb1 (USB 2.0)",
                "[Port1] DeviceConnected : QEMU USB Hub", "[Port1] DeviceConnected : QEMU USB Keyboard",
                "[Port2] DeviceConnected : QEMU USB Tablet", "[Port3] DeviceConnected : QEMU USB Audio",
                "[Port4] DeviceConnected : QEMU USB Hub", "[Port1] DeviceConnected : QEMU USB Mouse",
                "[Port2] DeviceConnected : QEMU USB Mouse", "[Port3] DeviceConnected : QEMU USB Audio",
                "Root Hub usb2 (USB 3.0)", "[Port4] DeviceConnected : USB Attached SCSI HBA"}));
        // The shape: one controller with two root hubs; behind the first, a
        // hub with three devices and a second hub (with a mouse), and a mouse
        // and an audio device on the root hub's own ports.
        QTreeWidget *pTree = dialog.tree();
        QCOMPARE(pTree->topLevelItemCount(), 1);
        QTreeWidgetItem *pController = pTree->topLevelItem(0);
        QCOMPARE(pController->childCount(), 2);
        QTreeWidgetItem *pRootHub = pController->child(0);
        QCOMPARE(pRootHub->childCount(), 3);
        QCOMPARE(pRootHub->child(0)->childCount(), 4);
        QCOMPARE(pRootHub->child(0)->child(3)->childCount(), 1);
        QCOMPARE(pRootHub->child(0)->child(3)->child(0)->text(0),
            QStringLiteral("[Port1] DeviceConnected : QEMU USB Mouse"));
        QCOMPARE(pRootHub->child(1)->childCount(), 0);
        QCOMPARE(pController->child(1)->childCount(), 1);
        // Every item is expanded, carries its node and shows its name as tip.
        QList<QTreeWidgetItem *> listItems = pTree->findItems(QString(), Qt::MatchContains | Qt::MatchRecursive);
        QCOMPARE(listItems.size(), 12);
        for (QTreeWidgetItem *pItem : listItems) {
            QVERIFY(nodeOf(pItem));
            QCOMPARE(pItem->toolTip(0), pItem->text(0));
            if (pItem->childCount() > 0)
                QVERIFY(pItem->isExpanded());
        }
        // No empty port made it in.
        for (QTreeWidgetItem *pItem : listItems) {
            const UsbPortConnectionInfo *pConnection = CUsbTreeDecoder::connectionInfo(nodeOf(pItem));
            QVERIFY(!pConnection || pConnection->ConnectionStatus != UsbNoDeviceConnected);
        }
    }

    void controllerIsShownFirst()
    {
        CapturedRecord record;
        VxUsbBasicInfoDlg dialog(&record.info);
        QTreeWidgetItem *pController = dialog.tree()->topLevelItem(0);
        QCOMPARE(dialog.tree()->currentItem(), pController);
        const Lines expected = {{"DriverKey:", "0000:00:05.0"}, {"VendorID:", "0x1B36"}, {"DeviceID:", "0xD"},
            {"SubSysID:", "0x11001AF4"}, {"Revision:", "0x1"}};
        QCOMPARE(tableLines(dialog.table()), expected);
        for (int nRow = 0; nRow < dialog.table()->rowCount(); ++nRow)
            QCOMPARE(dialog.table()->rowHeight(nRow), VxUsbBasicInfoDlg::kRowHeight);
    }

    void selectingANodeShowsItsLines_data()
    {
        QTest::addColumn<QString>("strName");
        QTest::addColumn<QString>("strLabel");
        QTest::addColumn<QString>("strValue");
        QTest::addRow("controller") << "Red Hat, Inc. QEMU XHCI Host Controller"
                                    << "VendorID:"
                                    << "0x1B36";
        QTest::addRow("root hub") << "Root Hub usb1 (USB 2.0)"
                                  << "Root Hub:"
                                  << "usb1";
        QTest::addRow("external hub") << "[Port1] DeviceConnected : QEMU USB Hub"
                                      << "External Hub:"
                                      << "1-1";
        QTest::addRow("keyboard") << "[Port1] DeviceConnected : QEMU USB Keyboard"
                                  << ""
                                  << "\"QEMU USB Keyboard\"";
        QTest::addRow("audio device") << "[Port3] DeviceConnected : QEMU USB Audio"
                                      << "bDescriptorType:"
                                      << "0x24";
        QTest::addRow("super speed device") << "[Port4] DeviceConnected : USB Attached SCSI HBA"
                                            << "ConnectionStatus:"
                                            << "DeviceConnected";
    }

    void selectingANodeShowsItsLines()
    {
        QFETCH(QString, strName);
        QFETCH(QString, strLabel);
        QFETCH(QString, strValue);
        CapturedRecord record;
        VxUsbBasicInfoDlg dialog(&record.info);
        QTreeWidgetItem *pItem = findItem(dialog.tree(), strName);
        QVERIFY(pItem);
        if (pItem == dialog.tree()->currentItem()) // already shown: pick another first
            dialog.tree()->setCurrentItem(dialog.tree()->topLevelItem(0)->child(1));
        // Selecting in the tree (its itemSelectionChanged) refills the table.
        dialog.tree()->setCurrentItem(pItem);
        const Lines lines = tableLines(dialog.table());
        QCOMPARE(lines, decoderLines(nodeOf(pItem)));
        QVERIFY(lines.contains(qMakePair(strLabel, strValue)));
        // Headings and the blank lines before them span both columns; the
        // other lines do not.
        for (int nRow = 0; nRow < lines.size(); ++nRow)
            QCOMPARE(dialog.table()->columnSpan(nRow, 0), lines.at(nRow).second.isEmpty() ? 2 : 1);
    }

    void textModeCollectsTheSameLines_data()
    {
        QTest::addColumn<QString>("strName");
        QTest::addRow("controller") << "Red Hat, Inc. QEMU XHCI Host Controller";
        QTest::addRow("root hub") << "Root Hub usb2 (USB 3.0)";
        QTest::addRow("audio device") << "[Port3] DeviceConnected : QEMU USB Audio";
    }

    void textModeCollectsTheSameLines()
    {
        QFETCH(QString, strName);
        CapturedRecord record;
        VxUsbBasicInfoDlg table(&record.info);
        VxUsbBasicInfoDlg text(&record.info, true);
        QVERIFY(text.isTextMode());
        // The first node was collected at construction; the table stays empty.
        QCOMPARE(text.textLines(), decoderText(nodeOf(text.tree()->topLevelItem(0))));
        QCOMPARE(text.table()->rowCount(), 0);

        QTreeWidgetItem *pTableItem = findItem(table.tree(), strName);
        QTreeWidgetItem *pTextItem = findItem(text.tree(), strName);
        QVERIFY(pTableItem && pTextItem);
        const int nBefore = text.textLines().size();
        table.showNode(pTableItem);
        text.showNode(pTextItem);
        QCOMPARE(text.table()->rowCount(), 0);
        const QStringList listAdded = text.textLines().mid(nBefore);
        const Lines rows = tableLines(table.table());
        QCOMPARE(listAdded.size(), rows.size());
        for (int i = 0; i < rows.size(); ++i) {
            const QString strExpected = rows.at(i).first.isEmpty() && rows.at(i).second.isEmpty()
                ? QStringLiteral("  ")
                : rows.at(i).first + QStringLiteral("    ") + rows.at(i).second;
            QCOMPARE(listAdded.at(i), strExpected);
        }
    }

    void textModeTreeIsTheReport()
    {
        CapturedRecord record;
        VxUsbBasicInfoDlg text(&record.info, true);
        text.printTree();
        const QStringList listReport = VxUsbProbe::treeReportLines(record.info.pRootItem);
        QVERIFY(listReport.size() > 100);
        QCOMPARE(text.textLines(), listReport);
        // A table-mode dialog collects no text.
        VxUsbBasicInfoDlg table(&record.info);
        table.printTree();
        QVERIFY(table.textLines().isEmpty());
    }

    void hubLines_data()
    {
        QTest::addColumn<QString>("strName");
        QTest::addColumn<QStringList>("listExpected");
        QTest::addRow("root hub") << "Root Hub usb1 (USB 2.0)"
                                  << QStringList {"Root Hub:|usb1", "Hub Power:|Self Power", "Number of Ports:|4",
                                         "Extended Hub Capability Flags:|0x000013", "High speed Capable:|Yes",
                                         "Root hub:|Yes", "Reserved (26 bits):|0x000000"};
        QTest::addRow("external hub") << "[Port4] DeviceConnected : QEMU USB Hub"
                                      << QStringList {"External Hub:|1-1.4", "Number of Ports:|8", "Root hub:|No",
                                             "ConnectionStatus:|DeviceConnected", "Device Descriptor:|"};
    }

    void hubLines()
    {
        QFETCH(QString, strName);
        QFETCH(QStringList, listExpected);
        CapturedRecord record;
        VxUsbBasicInfoDlg dialog(&record.info);
        QTreeWidgetItem *pItem = findItem(dialog.tree(), strName);
        QVERIFY(pItem);
        dialog.tree()->setCurrentItem(pItem);
        const Lines lines = tableLines(dialog.table());
        QCOMPARE(lines.value(0).first, listExpected.first().section('|', 0, 0));
        for (const QString &strLine : listExpected)
            QVERIFY2(
                lines.contains(qMakePair(strLine.section('|', 0, 0), strLine.section('|', 1))), qPrintable(strLine));
    }

    void buttonCloses()
    {
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QVERIFY(dialog.isHidden());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }

    void languageChangeRetranslatesTheTitle()
    {
        CUsbBasicDetectInfo info;
        VxUsbBasicInfoDlg dialog(&info);
        DialogTest::MarkingTranslator translator("VxUsbBasicInfoDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:USB Controller Info"));
        QCoreApplication::removeTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("USB Controller Info"));
    }
};

QTEST_MAIN(TstVxUsbBasicInfoDlg)
#include "tst_vxusbbasicinfodlg.moc"
