#pragma once

#include "custommainwindow.h"

class CSystemDetectInfo;
class CustomTableWidget;

// Our own view of the "Systm Info" item for machines without a system
// information viewer: the seven facts as label / value rows and a "Copy"
// button that puts them on the clipboard as "label: value" lines.
//
// Construct it with the record (copied at construction) and exec() it;
// nothing to do afterwards. Throws std::bad_alloc when it cannot be built.
class VxSystemInfoDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit VxSystemInfoDlg(const CSystemDetectInfo &info, QWidget *pParent = nullptr);
    ~VxSystemInfoDlg() override;

    CustomTableWidget *table() const { return pTable; }
    // The text "Copy" puts on the clipboard.
    QString clipboardText() const;

public slots:
    void onButtonClicked(int nIndex);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    QStringList labels() const;
    void retranslateTexts();

    QStringList listValues;
    CustomTableWidget *pTable = nullptr;
};
