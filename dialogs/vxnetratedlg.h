#pragma once

#include "custommainwindow.h"

#include <QMap>

class CNetworkSpeedDetectInfo;
class CustomTableWidget;
class VxTipsWidget;

// Lists each connected network adapter with its line rate in Gbit/s and
// always shows the warning that a rate below 1 Gbit/s needs a look at the
// NIC, the network or the switch. Display only; its one button closes it.
//
// Open it modally with the item's record (not owned; read at construction).
// Nothing to do after exec(). Throws std::bad_alloc when pItem is null or
// the dialog cannot be built.
class VxNetRateDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit VxNetRateDlg(CNetworkSpeedDetectInfo *pItem, QWidget *pParent = nullptr);
    ~VxNetRateDlg() override;

    CustomTableWidget *table() const { return pTable; }
    VxTipsWidget *tips() const { return pTips; }

    // Mbit/s as shown: Mbit/s / 1000 with two decimals and "Gbps" ("2.50Gbps");
    // a rate the driver does not report (negative) reads "Unknown".
    static QString rateText(int nMbps);

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    void retranslateTexts();

    QMap<QString, int> mapAdapterSpeeds;
    CustomTableWidget *pTable = nullptr;
    VxTipsWidget *pTips = nullptr;
};
