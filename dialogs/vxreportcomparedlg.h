#pragma once

#include "custommainwindow.h"
#include "vxreportdiff.h"

class CustomTreeWidget;
class QLabel;
class VxTipsWidget;

// Shows what differs between a saved JSON report and the diagnosis on
// screen: one row per item that differs (marked when its grade changed), one
// row per change below it with the fact's path and its value in the report
// and now. "Copy" puts the text form (as vetrix-check --compare prints it) on
// the clipboard.
//
// Construct it with the comparison and the report's path and exec() it;
// nothing to do afterwards. Throws std::bad_alloc when it cannot be built.
class VxReportCompareDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    enum Column { ColChange = 0, ColFact = 1, ColReport = 2, ColNow = 3 };

    VxReportCompareDlg(const VxReportDiff::Result &result, const QString &strReportPath, QWidget *pParent = nullptr);
    ~VxReportCompareDlg() override;

    CustomTreeWidget *tree() const { return m_pTree; }
    VxTipsWidget *tips() const { return m_pTips; }
    // The text "Copy" puts on the clipboard.
    QString clipboardText() const;

public slots:
    void onButtonClicked(int nIndex);

protected:
    void changeEvent(QEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    bool init();
    void fillTree();
    void retranslateTexts();
    void updateTips();

    VxReportDiff::Result m_result;
    QString m_strReportPath;
    VxTipsWidget *m_pTips = nullptr;
    CustomTreeWidget *m_pTree = nullptr;
};
