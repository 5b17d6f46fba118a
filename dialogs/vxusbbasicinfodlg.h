#pragma once

#include "custommainwindow.h"

#include <QStringList>

class CUsbBasicDetectInfo;
class CustomTableWidget;
class CustomTreeWidget;
class QFontMetrics;
class QTreeWidgetItem;
struct UsbListNode;

// The USB tree viewer: the probe library's tree of host controllers, hubs
// and connected devices on the left (empty ports left out), and on the right
// the label / value lines of the selected node as the USB decoders write
// them (controller ids, hub descriptor and capabilities, port connection,
// device descriptors). A line with no value is a heading across both columns.
//
// In text mode the lines are collected as text instead of shown; printTree()
// collects the whole tree that way for the report.
//
// Open it modally with the item's record (not owned; neither is its tree,
// which the record's owner frees). Throws std::bad_alloc when the record is
// null or the dialog cannot be built.
class VxUsbBasicInfoDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit VxUsbBasicInfoDlg(CUsbBasicDetectInfo *pInfo, bool bTextMode = false, QWidget *pParent = nullptr);
    ~VxUsbBasicInfoDlg() override;

    // The one output of the decoders: a table row, or a text line in text mode.
    void appendLine(const QString &strLabel, const QString &strValue);
    // Fills the table with the lines of one tree item's node.
    void showNode(QTreeWidgetItem *pTreeItem);
    // Text mode: replaces the collected lines with those of every listed
    // node in tree order, each under a heading of its name.
    void printTree();

    bool isTextMode() const { return bTextMode; }
    // The line shown instead of a tree when the machine has no USB host controller.
    static QString noControllerText();
    QStringList textLines() const { return listTextLines; }
    CustomTreeWidget *tree() const { return pTree; }
    CustomTableWidget *table() const { return pTable; }

    // Tree items keep their node's information record under this role.
    static constexpr int kNodeRole = Qt::UserRole + 1;
    static constexpr int kRowHeight = 36;
    static constexpr int kBrokenRowHeight = 52;
    static constexpr int kLabelBreak = 170;
    static constexpr int kValueBreak = 245;
    // The text with "\r\n" inserted where nLimit pixels fall when it is
    // nLimit pixels wide or wider; *pBroken tells whether it was.
    static QString breakText(const QString &strText, int nLimit, const QFontMetrics &metrics, bool *pBroken);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    void fillTree(const UsbListNode *pList, QTreeWidgetItem *pParent, int nDepth, int &nBudget);
    void onItemSelectionChanged();

    bool bTextMode = false;
    QStringList listTextLines;
    CUsbBasicDetectInfo *pItem = nullptr;
    CustomTreeWidget *pTree = nullptr;
    CustomTableWidget *pTable = nullptr;
};
