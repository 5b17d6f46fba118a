#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QVector>

#include "vxitemid.h"

class CDetectInfo;

// The diagnosis items as the pages and the report see them: names, groups,
// run orders, the action-button rule and the visual states. Everything
// about an item comes from its row (vxitemregistry.h).
namespace VxItems {

enum VisualState : int {
    StateNotDiagnosed = 0,
    StateDiagnosing = 1,
    StateNormal = 2,
    StateError = 3,
    StateWarning = 4,
};

// The masks of the three groups every product has, for code that needs them
// as constants (a test holds them to the rows). Code that runs items uses
// groupMask(), which also covers groups added later.
constexpr quint32 kSdkGroupMask = SdkFiles | EnvVariables;
constexpr quint32 kDriverGroupMask = GigeDriver | Usb3Driver | UsbControllerDriver;
constexpr quint32 kSystemGroupMask = LineRate | JumboFrame | UsbControllerInfo | Firewall | SystemInfo;
constexpr quint32 kAllItemsMask = kSdkGroupMask | kDriverGroupMask | kSystemGroupMask;

QString itemName(int nItem);   // translated; empty for an unknown id
QString groupName(int nGroup); // translated; empty for an unknown group
int groupOf(int nItem);        // 1, 2, 4, or 0 for an unknown id

QVector<int> groups();                // 1, 2, 4
QVector<int> displayOrder(int nGroup); // items shown as rows of the group
QVector<int> detectOrder();           // 1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048
QVector<int> optimizeOrder();         // 1, 2, 4, 8, 256
quint32 groupMask(int nGroup);

// The untranslated source text of button-text index 0..10 (empty otherwise).
const char *buttonSourceText(int nIndex);
int buttonIndex(bool bNormal, int nItem, bool *pEnabled);
QString buttonText(bool bNormal, int nItem, bool &bEnabled);

// The grade of an outcome: normal, or the item's exception severity (only
// stray SDK files count as serious).
Severity severity(bool bNormal, int nItem);
QString severityIconPath(int nSeverity);

QColor stateColor(int nState);
QImage stateIcon(int nState);
QString stateIconPath(int nState);

} // namespace VxItems

// Creates the record class that belongs to the item id (a plain CDetectInfo
// for ids without one), with nItem set and bNormal 1.
CDetectInfo *createDetectInfo(int nItem);
