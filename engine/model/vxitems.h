#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QVector>

// The diagnosis items: ids, groups, names, run orders, the action-button
// text rule and the visual states shown on the pages.
namespace VxItems {

enum ItemId : quint32 {
    SdkFiles = 1,
    EnvVariables = 2,
    GigeDriver = 4,
    Usb3Driver = 8,
    GigeDriverInNetwork = 16, // named, never probed or shown
    UsbControllerDriver = 32,
    DriverCount = 64,         // named, never probed or shown
    LineRate = 128,
    JumboFrame = 256,
    UsbControllerInfo = 512,
    Firewall = 1024,
    SystemInfo = 2048,
};

enum Group : int {
    SdkGroup = 1,
    DriverGroup = 2,
    SystemGroup = 4,
};

// Item masks as the one-key page starts them, per group and in all.
constexpr quint32 kSdkGroupMask = 0x3;
constexpr quint32 kDriverGroupMask = 0x2C;
constexpr quint32 kSystemGroupMask = 0xF80;
constexpr quint32 kAllItemsMask = kSdkGroupMask | kDriverGroupMask | kSystemGroupMask;

enum ButtonText : int {
    BtnNormal = 0,
    BtnCheckAndClear,
    BtnCheckAndUpgrade,
    BtnViewSolution,
    BtnRepair,
    BtnInstallDriver,
    BtnCheckAndRepair,
    BtnCheck,
    BtnDisabled,
    BtnEnabled,
    BtnInstalled,
};

enum VisualState : int {
    StateNotDiagnosed = 0,
    StateDiagnosing = 1,
    StateNormal = 2,
    StateError = 3,
    StateWarning = 4,
};

QString itemName(int nItem);   // translated; empty for an unknown id
QString groupName(int nGroup); // translated; empty for an unknown group
int groupOf(int nItem);        // 1, 2, 4, or 0 for an unknown id

const QVector<int> &groups();                // 1, 2, 4
const QVector<int> &displayOrder(int nGroup); // items shown as rows of the group
const QVector<int> &detectOrder();           // 1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048
const QVector<int> &optimizeOrder();         // 1, 2, 4, 8, 256

// The untranslated source text of button-text index 0..10 (empty otherwise).
const char *buttonSourceText(int nIndex);
int buttonIndex(bool bNormal, int nItem, bool *pEnabled);
QString buttonText(bool bNormal, int nItem, bool &bEnabled);

// Result severity of an outcome: 0 normal, 1 medium, 2 serious. Only stray
// SDK files count as serious.
int severity(bool bNormal, int nItem);
QString severityIconPath(int nSeverity);

QColor stateColor(int nState);
QImage stateIcon(int nState);
QString stateIconPath(int nState);

} // namespace VxItems
