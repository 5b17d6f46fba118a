#pragma once

#include "custommainwindow.h"
#include "vxprobetable.h"
#include "vxrepair.h"

class CJumboPacketDetectInfo;
class CustomTableWidget;

// Lists each network interface with its jumbo-frame state ("Enabled. Value:
// <frame bytes> " or "Disabled") and enables jumbo frames on all of them
// with one button; the button reads "OK" once the item is normal.
//
// Open it modally with the item's record (not owned). The repair updates
// the record in place; after exec() the caller refreshes the row and drops
// the item from the pending optimization when pItem->bNormal is set. Throws
// std::bad_alloc when pItem is null or the dialog cannot be built.
class VxJumbPacketDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    // The repairs and checks come from probes (the platform's by default).
    explicit VxJumbPacketDlg(CJumboPacketDetectInfo *pItem, QWidget *pParent = nullptr,
                    const VxProbeTable &probes = defaultProbeTable());
    ~VxJumbPacketDlg() override;

    CustomTableWidget *table() const { return pTable; }

public slots:
    void onButtonClicked(int nIndex);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    // Writes the record's interfaces into the rows from the top; rows below
    // the last interface are left as they are (the table is never cleared).
    void fillTable();
    QString stateText(const QString &strInterface) const;
    QString buttonText() const;
    QString repairFailureText(VxRepairStatus status) const;

    CJumboPacketDetectInfo *pItem = nullptr;
    CustomTableWidget *pTable = nullptr;
    VxProbeTable m_probes;
};
