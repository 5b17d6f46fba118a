// The USB tree viewer: the tree of a captured machine (empty ports left
// out), the decoder's lines in the table and in text mode, hub and debug-port
// lines, broken long lines and headings, hand-made trees with missing parts,
// and the table delegate's drawing.
#include "cdetectinfo.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "custom.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "customtreewidget.h"
#include "dialogtestutil.h"
#include "probekit.h"
#include "usbprobe.h"
#include "vxusbbasicdelegate.h"
#include "vxusbbasicinfodlg.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QPainter>
#include <QTest>

#include <deque>
#include <new>

namespace {

const QString kFixture = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
const QString kLibrary = QStringLiteral(VX_BIN_DIR "/probekit");
const QString kBreak = QStringLiteral("\r\n");

using Lines = QVector<QPair<QString, QString>>;

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

// Hand-made library trees: every record lives as long as the builder.
class TreeBuilder
{
public:
    TreeBuilder() { root.pChildren = nullptr; }

    UsbTreeItem *add(UsbTreeItem *pParent, const QString &strName, void *pInfo)
    {
        names.push_back(strName);
        items.push_back(
            UsbTreeItem {reinterpret_cast<const UsbWChar *>(names.back().utf16()), pParent, pInfo, nullptr});
        UsbTreeItem *pItem = &items.back();
        link(pParent ? &pParent->pChildren : &root.pChildren, pItem);
        return pItem;
    }
    // A list cell with no item in it.
    void addEmptyCell(UsbTreeItem *pParent) { link(pParent ? &pParent->pChildren : &root.pChildren, nullptr); }

    UsbControllerInfo *controller(quint32 uVendor, quint32 uDevice)
    {
        controllers.push_back(UsbControllerInfo {});
        UsbControllerInfo *p = &controllers.back();
        p->Kind = UsbNodeController;
        p->pDriverKey = reinterpret_cast<const UsbWChar *>(kDriverKey.utf16());
        p->VendorID = uVendor;
        p->DeviceID = uDevice;
        p->SubSysID = 0x11001AF4;
        p->Revision = 0x10;
        return p;
    }
    UsbHubNodeInfo *hub(int nKind, quint32 uStatus)
    {
        connections.push_back(UsbPortConnectionInfo {});
        connections.back().ConnectionStatus = uStatus;
        connections.back().DeviceDescriptor.bLength = 18;
        connections.back().DeviceDescriptor.bDescriptorType = 1;
        hubInfos.push_back(UsbHubInformationBlock {});
        hubInfos.back().HubDescriptor.bNumberOfPorts = 2;
        hubInfos.back().HubDescriptor.wHubCharacteristics = 0x0009; // individual switching and over-current
        hubInfos.back().HubIsBusPowered = 1;
        hubs.push_back(UsbHubNodeInfo {});
        UsbHubNodeInfo *p = &hubs.back();
        p->Kind = nKind;
        p->uHubFieldsKnown = USB_HUB_FIELDS_ALL;
        p->pHubInfo = &hubInfos.back();
        p->pHubName = reinterpret_cast<const UsbWChar *>(kHubName.utf16());
        p->pConnectionInfo = nKind == UsbNodeExternalHub ? &connections.back() : nullptr;
        return p;
    }
    UsbDeviceNodeInfo *device(quint32 uStatus)
    {
        connections.push_back(UsbPortConnectionInfo {});
        connections.back().ConnectionStatus = uStatus;
        devices.push_back(UsbDeviceNodeInfo {});
        devices.back().Kind = UsbNodeDevice;
        devices.back().pConnectionInfo = &connections.back();
        return &devices.back();
    }

    UsbRootItem root {};

private:
    void link(UsbListNode **ppList, UsbTreeItem *pItem)
    {
        cells.push_back(UsbListNode {pItem, nullptr});
        while (*ppList)
            ppList = &(*ppList)->pNext;
        *ppList = &cells.back();
    }

    const QString kDriverKey = QStringLiteral("0000:00:1d.7");
    const QString kHubName = QStringLiteral("usb9");
    std::deque<QString> names;
    std::deque<UsbTreeItem> items;
    std::deque<UsbListNode> cells;
    std::deque<UsbControllerInfo> controllers;
    std::deque<UsbHubNodeInfo> hubs;
    std::deque<UsbHubInformationBlock> hubInfos;
    std::deque<UsbDeviceNodeInfo> devices;
    std::deque<UsbPortConnectionInfo> connections;
};

// The tree's item texts in tree order.
void collectNames(QTreeWidgetItem *pItem, QStringList &listNames)
{
    for (int i = 0; i < pItem->childCount(); ++i) {
        listNames << pItem->child(i)->text(0);
        collectNames(pItem->child(i), listNames);
    }
}

QTreeWidgetItem *findItem(QTreeWidget *pTree, const QString &strName)
{
    const QList<QTreeWidgetItem *> listFound = pTree->findItems(strName, Qt::MatchExactly | Qt::MatchRecursive);
    return listFound.value(0);
}

// The table's rows as the decoder wrote them (the inserted breaks removed).
Lines tableLines(const QTableWidget *pTable)
{
    Lines lines;
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
        const QTableWidgetItem *pLabel = pTable->item(nRow, 0);
        const QTableWidgetItem *pValue = pTable->item(nRow, 1);
        lines.append(qMakePair(pLabel ? pLabel->text().remove(kBreak) : QStringLiteral("<none>"),
            pValue ? pValue->text().remove(kBreak) : QStringLiteral("<none>")));
    }
    return lines;
}

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

QString textOfWidth(const QFontMetrics &metrics, int nPixels)
{
    QString strText;
    while (metrics.boundingRect(strText).width() < nPixels)
        strText += QLatin1Char('m');
    return strText;
}

// Paints one cell with the delegate; returns the leftmost column with ink
// and the ink's darkest colour.
QImage paintCell(int nColumn, const QString &strText)
{
    QTableWidget table(1, 2);
    table.setItem(0, nColumn, new QTableWidgetItem(strText));
    VxUsbBasicDelegate delegate;
    QStyleOptionViewItem option;
    option.initFrom(&table);
    option.widget = &table;
    option.rect = QRect(0, 0, 200, 36);
    option.state |= QStyle::State_Selected; // no selection is painted
    option.palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
    QImage image(200, 36, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    delegate.paint(&painter, option, table.model()->index(0, nColumn));
    painter.end();
    return image;
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

class TstVxUsbBasicInfoDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
        QVERIFY(QFile::exists(VX_BIN_DIR "/libprobekit.so") || QFile::exists(VX_BIN_DIR "/Probekit.dll"));
    }

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

    void noControllerIsSaid_data()
    {
        QTest::addColumn<bool>("bFromSysroot");
        QTest::addRow("a root with no children") << false;
        QTest::addRow("a system root without USB") << true;
    }

    void noControllerIsSaid()
    {
        // The machine was looked at and has no USB host controller: the
        // viewer says so instead of showing two blank panes.
        QFETCH(bool, bFromSysroot);
        TreeBuilder builder;
        CUsbBasicDetectInfo info;
        QTemporaryDir dir;
        if (bFromSysroot) {
            QVERIFY(dir.isValid());
            QDir().mkpath(dir.path() + "/sys/bus/pci/devices");
            qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
            VxUsbProbe::setLibraryPath(kLibrary);
            VxUsbProbe::usbTreeCheck(info);
            QVERIFY(info.pRootItem);
            QVERIFY(!info.pRootItem->pChildren);
        } else {
            info.pRootItem = &builder.root;
        }
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.tree()->topLevelItemCount(), 0);
        QCOMPARE(tableLines(dialog.table()), Lines({{"No USB host controller was found.", ""}}));
        QCOMPARE(dialog.table()->columnSpan(0, 0), 2);
        VxUsbBasicInfoDlg text(&info, true);
        text.printTree();
        QCOMPARE(text.textLines(), QStringList({"No USB host controller was found.    "}));
        if (bFromSysroot)
            VxUsbProbe::destroyTree(info.pRootItem);
        info.pRootItem = nullptr; // not the record's to free
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

    void handMadeHubLines()
    {
        // A hub whose descriptor is known in full, with no capabilities at all.
        TreeBuilder builder;
        UsbTreeItem *pController
            = builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        builder.add(pController, QStringLiteral("Root Hub"), builder.hub(UsbNodeRootHub, 0));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        dialog.tree()->setCurrentItem(findItem(dialog.tree(), QStringLiteral("Root Hub")));
        const Lines expected = {{"Root Hub:", "usb9"}, {"Hub Power:", "Bus Power"}, {"Number of Ports:", "2"},
            {"Power switching:", "Individual"}, {"Compound device:", "No"}, {"Over-current Protection:", "Individual"},
            {"Extended Hub Capabilities UNAVAILABLE", ""}, {"Hub Capabilities UNAVAILABLE", ""}};
        QCOMPARE(tableLines(dialog.table()), expected);
        QCOMPARE(dialog.table()->columnSpan(6, 0), 2);
        QCOMPARE(dialog.table()->columnSpan(7, 0), 2);
        info.pRootItem = nullptr;
    }

    void debugPort_data()
    {
        QTest::addColumn<uint>("uVendor");
        QTest::addColumn<uint>("uDevice");
        QTest::addColumn<bool>("bDebugPort");
        QTest::addRow("Intel 0x27CC") << 0x8086u << 0x27CCu << true;
        QTest::addRow("Intel 0x24CD") << 0x8086u << 0x24CDu << true;
        QTest::addRow("Intel 0x24DD") << 0x8086u << 0x24DDu << true;
        QTest::addRow("Intel 0x265C") << 0x8086u << 0x265Cu << true;
        QTest::addRow("NVIDIA 0x00D8") << 0x10DEu << 0x00D8u << true;
        QTest::addRow("Intel xHCI not in the table") << 0x8086u << 0x1E31u << false;
        QTest::addRow("device id of another vendor") << 0x10DEu << 0x27CCu << false;
        QTest::addRow("vendor 0") << 0u << 0u << false;
    }

    void debugPort()
    {
        QFETCH(uint, uVendor);
        QFETCH(uint, uDevice);
        QFETCH(bool, bDebugPort);
        TreeBuilder builder;
        builder.add(nullptr, QStringLiteral("EHCI"), builder.controller(uVendor, uDevice));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        const Lines lines = tableLines(dialog.table());
        QCOMPARE(lines.size(), bDebugPort ? 6 : 5);
        QCOMPARE(lines.value(0), qMakePair(QStringLiteral("DriverKey:"), QStringLiteral("0000:00:1d.7")));
        QCOMPARE(lines.value(1).second, QStringLiteral("0x") + QString::number(uVendor, 16).toUpper());
        QCOMPARE(lines.value(4), qMakePair(QStringLiteral("Revision:"), QStringLiteral("0x10")));
        if (bDebugPort)
            QCOMPARE(lines.value(5), qMakePair(QStringLiteral("DebugPort:"), QStringLiteral("1")));
        info.pRootItem = nullptr;
    }

    void emptyPortsAndMissingPartsAreLeftOut()
    {
        TreeBuilder builder;
        builder.addEmptyCell(nullptr);
        builder.add(nullptr, QStringLiteral("No information"), nullptr);
        UsbTreeItem *pController
            = builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        UsbTreeItem *pRootHub = builder.add(pController, QStringLiteral("Root Hub"), builder.hub(UsbNodeRootHub, 0));
        UsbTreeItem *pHub = builder.add(
            pRootHub, QStringLiteral("Hub, ports empty"), builder.hub(UsbNodeExternalHub, UsbDeviceConnected));
        builder.add(pHub, QStringLiteral("[Port1] NoDeviceConnected"), builder.device(UsbNoDeviceConnected));
        builder.add(pHub, QStringLiteral("[Port2] NoDeviceConnected"), builder.device(UsbNoDeviceConnected));
        builder.addEmptyCell(pHub);
        builder.add(
            pRootHub, QStringLiteral("Hub, not connected"), builder.hub(UsbNodeExternalHub, UsbNoDeviceConnected));
        builder.add(
            pRootHub, QStringLiteral("[Port3] DeviceFailedEnumeration"), builder.device(UsbDeviceFailedEnumeration));
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        QStringList listNames;
        collectNames(dialog.tree()->invisibleRootItem(), listNames);
        QCOMPARE(
            listNames, QStringList({"Controller", "Root Hub", "Hub, ports empty", "[Port3] DeviceFailedEnumeration"}));
        QTreeWidgetItem *pHubItem = findItem(dialog.tree(), QStringLiteral("Hub, ports empty"));
        QCOMPARE(pHubItem->childCount(), 0);
        // A failed port still shows its connection line.
        dialog.tree()->setCurrentItem(findItem(dialog.tree(), QStringLiteral("[Port3] DeviceFailedEnumeration")));
        QCOMPARE(tableLines(dialog.table()).value(0),
            qMakePair(QStringLiteral("ConnectionStatus:"), QStringLiteral("DeviceFailedEnumeration")));
        info.pRootItem = nullptr;
    }

    void unknownKindShowsNothing()
    {
        TreeBuilder builder;
        qint32 nOddKind[4] = {7, 0, 0, 0};
        builder.add(nullptr, QStringLiteral("Controller"), builder.controller(0x8086, 0x1E31));
        builder.add(nullptr, QStringLiteral("Odd"), nOddKind);
        CUsbBasicDetectInfo info;
        info.pRootItem = &builder.root;
        VxUsbBasicInfoDlg dialog(&info);
        QCOMPARE(dialog.table()->rowCount(), 5);
        dialog.tree()->setCurrentItem(dialog.tree()->topLevelItem(1));
        QCOMPARE(dialog.table()->rowCount(), 0);
        // An item without a node leaves the table as it is.
        dialog.showNode(dialog.tree()->topLevelItem(0));
        QTreeWidgetItem bare(QStringList {QStringLiteral("bare")});
        dialog.showNode(&bare);
        QCOMPARE(dialog.table()->rowCount(), 5);
        info.pRootItem = nullptr;
    }

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

QTEST_MAIN(TstVxUsbBasicInfoDlg)
#include "tst_vxusbbasicinfodlg.moc"
