#pragma once

#include "custommainwindow.h"
#include "vxprobetable.h"
#include "vxrepair.h"

class CEnvDetectInfo;
class CustomTableWidget;

// Shows the SDK's environment variables as the check found them (name,
// value, Normal / Exception / Next login) and repairs them: the bottom button reads
// "Repair" while the item is exceptional and "OK" once it is normal.
//
// Open it modally with the item's record (not owned; it must outlive the
// dialog). A repair updates the record in place; after exec() the caller
// refreshes the item's row and drops the item from the pending optimization
// when pItem->bNormal is set. Throws std::bad_alloc when pItem is null or
// the dialog cannot be built.
class VxEnvCheckDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    // The repairs and checks come from probes (the platform's by default).
    explicit VxEnvCheckDlg(CEnvDetectInfo *pItem, QWidget *pParent = nullptr,
                    const VxProbeTable &probes = defaultProbeTable());
    ~VxEnvCheckDlg() override;

    CustomTableWidget *table() const { return pTable; }

    // The tool-tip of a value: with more than one non-empty part (split at
    // cSeparator), the parts sorted, each followed by the separator, one per
    // line ("\r\n" between them); otherwise the value itself.
    static QString valueToolTip(const QString &strValue, QChar cSeparator);

public slots:
    void onButtonClicked(int nIndex);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    void fillTable();
    void retranslateTexts();
    QString buttonText() const;
    // "Exception", "Next login" (set machine-wide, not yet in this login) or
    // "Normal", and the tool-tip that explains the second.
    QString statusText(const QString &strName) const;
    QString statusToolTip(const QString &strName) const;
    QString repairFailureText(VxRepairStatus status) const;

    CEnvDetectInfo *pItem = nullptr;
    CustomTableWidget *pTable = nullptr;
    VxProbeTable m_probes;
};
