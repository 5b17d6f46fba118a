#pragma once

#include "custommainwindow.h"

class CUSBControllerDriverInfo;
class CustomLineWidget;
class CustomTableWidget;
class VxTipsWidget;

// Shows the USB 3.0 controller driver's name, provider, latest update time
// and version as label / value rows (wrapped to their columns), and, when
// the item is exceptional, a separator and the warning that the driver is
// too old. When the check found no USB host controller at all, one line says
// so across both columns and the hint says what the cameras need. Display
// only; its one button closes it.
//
// Open it modally with the item's record (not owned). Nothing to do after
// exec(). Throws std::bad_alloc when pItem is null or the dialog cannot be
// built.
class VxUSBDriverDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit VxUSBDriverDlg(CUSBControllerDriverInfo *pItem, QWidget *pParent = nullptr);
    ~VxUSBDriverDlg() override;

    CustomTableWidget *table() const { return pTable; }
    VxTipsWidget *tips() const { return pTips; }
    CustomLineWidget *separator() const { return pLine; }

    static constexpr int kLabelWrap = 150;
    static constexpr int kValueWrap = 160;
    static constexpr int kSpanWrap = 330; // a line across both columns
    // 36 + 26 per extra line of the taller of the two wrapped texts.
    static int rowHeightFor(const QString &strWrappedLabel, const QString &strWrappedValue);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    void addRow(const QString &strLabel, const QString &strValue);
    void fitTable();
    QStringList labels() const;
    QString tipsText() const;
    bool hasNoController() const;
    QString noControllerText() const;
    int labelWrap() const;

    CUSBControllerDriverInfo *pItem = nullptr;
    CustomTableWidget *pTable = nullptr;
    VxTipsWidget *pTips = nullptr;
    CustomLineWidget *pLine = nullptr;
};
