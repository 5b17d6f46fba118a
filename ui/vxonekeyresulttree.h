#pragma once

#include "customtreewidget.h"

#include <QMap>

class CDetectInfo;
class CustomPushButton;
class QTreeWidgetItem;

// Lists a one-key detection by group: one row per group with its exception
// counter, one row per item with its grade icon and action button, and the
// item's text lines below it. The records belong to the operate thread.
class VxOneKeyResultTree : public CustomTreeWidget
{
    Q_OBJECT
public:
    enum Role {
        RoleItemId = Qt::UserRole + 1,   // item id on item rows, -1 on group rows
        RoleGroup = Qt::UserRole + 2,    // group bit on group rows, -1 on item rows
        RoleSeverity = Qt::UserRole + 4, // 0 normal, 1 medium, 2 serious
        RoleLine = Qt::UserRole + 5,     // true on an item's text-line rows
    };

    // Throws std::bad_alloc when the tree cannot be built.
    explicit VxOneKeyResultTree(QWidget *pParent = nullptr);

    // Shows the record's outcome on its item's row (the row keeps the record).
    void updateItem(CDetectInfo *pInfo);
    // Re-reads the row's record: button text and state, grade, icon, lines
    // and the group's exception counter.
    void refreshItem(CDetectInfo *pInfo);
    // Back to the undiagnosed look: no records, no grades, no lines, scrolled
    // to the top.
    void clearResults();
    // Marks an item the run leaves out (no probe here, or bUnreadable: the
    // system root lacks what its probe reads) with the "Not available" line.
    void setUnavailable(int nItem, bool bUnreadable);

    // The items a running pass has still to finish. Their buttons stay
    // disabled (and clicks on them are ignored) so that no dialog or
    // installer works on a record the worker is using; each item is released
    // as the worker finishes it, and all of them when the pass ends.
    void setBusyItems(quint32 uMask);
    void releaseBusyItem(int nItem);
    bool isBusy(int nItem) const { return (m_uBusyItems & quint32(nItem)) != 0; }

    int countOfSeverity(int nSeverity) const;
    QTreeWidgetItem *itemRow(int nItem) const;
    QTreeWidgetItem *groupRow(int nGroup) const;
    CustomPushButton *button(int nItem) const;
    CDetectInfo *record(int nItem) const;

    // The export log of the diagnosed rows (CR LF).
    QString logText() const;

signals:
    void sigRemoveOptimizeItem(int nItem);

public slots:
    void onDealWithBtnClicked();

protected:
    void changeEvent(QEvent *pEvent) override;

    // What a row's button does, by item; each returns after its dialog or
    // installation has finished. Virtual so tests can stand in for dialogs.
    virtual void openSdkFileDialog(CDetectInfo *pInfo);
    virtual void openEnvDialog(CDetectInfo *pInfo);
    virtual void installDriver(CDetectInfo *pInfo);
    virtual void openUsbDriverDialog(CDetectInfo *pInfo);
    virtual void openLineRateDialog(CDetectInfo *pInfo);
    virtual void openJumboDialog(CDetectInfo *pInfo);
    virtual void openUsbTreeDialog(CDetectInfo *pInfo);
    virtual void openSystemInfo(CDetectInfo *pInfo);
    // An item without a dialog of its own: its lines in a message box.
    virtual void openDetails(CDetectInfo *pInfo);

public:
    // Items whose row button opens a dialog of their own, and the opener.
    using DialogOpener = void (VxOneKeyResultTree::*)(CDetectInfo *);
    static const QMap<quint32, DialogOpener> &dialogOpeners();

protected:
    // Opens the item's dialog (or its details).
    void openItemDialog(CDetectInfo *pInfo);

private:
    bool init();
    CustomPushButton *buttonFor(int nItem);
    void setItemLines(QTreeWidgetItem *pRow, const QStringList &listLines);
    void updateGroupCounter(int nGroup);
    void retranslate();

    QMap<int, CustomPushButton *> m_mapButtons;
    QMap<int, QTreeWidgetItem *> m_mapItemRows;
    QMap<int, QTreeWidgetItem *> m_mapGroupRows;
    QMap<int, CDetectInfo *> m_mapRecords;
    QMap<int, bool> m_mapUnavailable; // item -> unreadable (else: no probe)
    quint32 m_uBusyItems = 0;
};
