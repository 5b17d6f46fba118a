#pragma once

#include "custommainwindow.h"
#include "vxprobetable.h"
#include "vxrepair.h"

class CSDKPathDetectInfo;
class CustomTableWidget;
class VxTipsWidget;

// Lists every stray copy of an SDK library, one row per copy with its own
// clear button, and clears them all with "Clear All" (the button then reads
// "OK"). Whenever the dialog hides it writes the rows that are left back into
// the record: foundFiles is rebuilt from the table and bNormal set when it
// is empty.
//
// Open it modally with the item's record (not owned). After exec() the
// caller refreshes the item's row and drops the item from the pending
// optimization when pItem->bNormal is set. Throws std::bad_alloc when pItem
// is null or the dialog cannot be built.
class VxSDKFileClearDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    // The repairs and checks come from probes (the platform's by default).
    explicit VxSDKFileClearDlg(CSDKPathDetectInfo *pItem, QWidget *pParent = nullptr,
                    const VxProbeTable &probes = defaultProbeTable());
    ~VxSDKFileClearDlg() override;

    CustomTableWidget *table() const { return pTable; }
    VxTipsWidget *tips() const { return pTips; }

public slots:
    void onClearAllClicked(int nIndex);
    void onClearRowClicked();

protected:
    void hideEvent(QHideEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    bool addRow(const QString &strFile, const QString &strDir);
    void retranslateTexts();
    QString tipsText() const;
    QString repairFailureText(VxRepairStatus status) const;
    void showFailure(VxRepairStatus status);

    CSDKPathDetectInfo *pItem = nullptr;
    CustomTableWidget *pTable = nullptr;
    VxTipsWidget *pTips = nullptr;
    bool bClearedAll = false; // "Clear All" emptied the list: the button reads "OK"
    VxProbeTable m_probes;
};
