#include "vxitems.h"

#include <QCoreApplication>
#include <QMap>

namespace VxItems {

namespace {
// Names and button texts are translated in the result view's context, where
// they are shown. The maps hold source texts; translation happens at look-up
// so a language switch takes effect without rebuilding them.
constexpr char kContext[] = "VxOneKeyResult";

const QMap<int, const char *> &itemSourceNames()
{
    static const QMap<int, const char *> names = {
        {SdkFiles, QT_TRANSLATE_NOOP("VxOneKeyResult", "SDK File Saving Path")},
        {EnvVariables, QT_TRANSLATE_NOOP("VxOneKeyResult", "SDK Environment Variables")},
        {GigeDriver, QT_TRANSLATE_NOOP("VxOneKeyResult", "GigE Vision Driver Status")},
        {Usb3Driver, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3 Vision Driver Status")},
        {GigeDriverInNetwork, QT_TRANSLATE_NOOP("VxOneKeyResult", "GigE Driver Check in Network")},
        {UsbControllerDriver, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB3.0 Controller Driver Version")},
        {DriverCount, QT_TRANSLATE_NOOP("VxOneKeyResult", "The num of Driver")},
        {LineRate, QT_TRANSLATE_NOOP("VxOneKeyResult", "Network Line Rate")},
        {JumboFrame, QT_TRANSLATE_NOOP("VxOneKeyResult", "Jumbo Frame")},
        {UsbControllerInfo, QT_TRANSLATE_NOOP("VxOneKeyResult", "USB Controller Info")},
        {Firewall, QT_TRANSLATE_NOOP("VxOneKeyResult", "PC Firewall Status")},
        {SystemInfo, QT_TRANSLATE_NOOP("VxOneKeyResult", "Systm Info")},
    };
    return names;
}

const QMap<int, const char *> &groupSourceNames()
{
    static const QMap<int, const char *> names = {
        {SdkGroup, QT_TRANSLATE_NOOP("VxOneKeyResult", "SDK Diagnosis")},
        {DriverGroup, QT_TRANSLATE_NOOP("VxOneKeyResult", "Driver Diagnosis")},
        {SystemGroup, QT_TRANSLATE_NOOP("VxOneKeyResult", "PC System Diagnosis")},
    };
    return names;
}

const char *const kButtonTexts[] = {
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Normal"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Check and Clear"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Check and Upgrade"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "View Solution"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Repair"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Install Driver"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Check and Repair"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Check"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Disabled"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Enabled"),
    QT_TRANSLATE_NOOP("VxOneKeyResult", "Installed"),
};
constexpr int kButtonTextCount = int(sizeof kButtonTexts / sizeof kButtonTexts[0]);
} // namespace

QString itemName(int nItem)
{
    const char *pSource = itemSourceNames().value(nItem, nullptr);
    return pSource ? QCoreApplication::translate(kContext, pSource) : QString();
}

QString groupName(int nGroup)
{
    const char *pSource = groupSourceNames().value(nGroup, nullptr);
    return pSource ? QCoreApplication::translate(kContext, pSource) : QString();
}

int groupOf(int nItem)
{
    switch (nItem) {
    case SdkFiles:
    case EnvVariables:
        return SdkGroup;
    case GigeDriver:
    case Usb3Driver:
    case GigeDriverInNetwork:
    case UsbControllerDriver:
    case DriverCount:
        return DriverGroup;
    case LineRate:
    case JumboFrame:
    case UsbControllerInfo:
    case Firewall:
    case SystemInfo:
        return SystemGroup;
    default:
        return 0;
    }
}

const QVector<int> &groups()
{
    static const QVector<int> list = {SdkGroup, DriverGroup, SystemGroup};
    return list;
}

const QVector<int> &displayOrder(int nGroup)
{
    static const QVector<int> sdk = {SdkFiles, EnvVariables};
    static const QVector<int> driver = {GigeDriver, Usb3Driver, UsbControllerDriver};
    static const QVector<int> system = {UsbControllerInfo, Firewall, JumboFrame, LineRate, SystemInfo};
    static const QVector<int> none;
    switch (nGroup) {
    case SdkGroup:
        return sdk;
    case DriverGroup:
        return driver;
    case SystemGroup:
        return system;
    default:
        return none;
    }
}

const QVector<int> &detectOrder()
{
    static const QVector<int> order = {SdkFiles,          EnvVariables, GigeDriver, Usb3Driver,
                                       UsbControllerDriver, UsbControllerInfo, Firewall, JumboFrame,
                                       LineRate,          SystemInfo};
    return order;
}

const QVector<int> &optimizeOrder()
{
    static const QVector<int> order = {SdkFiles, EnvVariables, GigeDriver, Usb3Driver, JumboFrame};
    return order;
}

const char *buttonSourceText(int nIndex)
{
    return (nIndex >= 0 && nIndex < kButtonTextCount) ? kButtonTexts[nIndex] : "";
}

int buttonIndex(bool bNormal, int nItem, bool *pEnabled)
{
    int nIndex = BtnNormal;
    bool bEnabled = !bNormal;
    switch (nItem) {
    case SdkFiles:
        nIndex = bNormal ? BtnNormal : BtnCheckAndClear;
        break;
    case EnvVariables:
    case JumboFrame:
        nIndex = bNormal ? BtnCheck : BtnCheckAndRepair;
        bEnabled = true;
        break;
    case GigeDriver:
    case Usb3Driver:
        nIndex = bNormal ? BtnInstalled : BtnInstallDriver;
        break;
    case UsbControllerDriver:
        nIndex = bNormal ? BtnCheck : BtnCheckAndUpgrade;
        bEnabled = true;
        break;
    case LineRate:
        nIndex = bNormal ? BtnNormal : BtnViewSolution;
        break;
    case UsbControllerInfo:
    case SystemInfo:
        nIndex = BtnCheck;
        bEnabled = true;
        break;
    case Firewall:
        // Normal means the firewall is off; the button only states it.
        nIndex = bNormal ? BtnDisabled : BtnEnabled;
        bEnabled = false;
        break;
    default:
        break;
    }
    if (pEnabled)
        *pEnabled = bEnabled;
    return nIndex;
}

QString buttonText(bool bNormal, int nItem, bool &bEnabled)
{
    return QCoreApplication::translate(kContext, kButtonTexts[buttonIndex(bNormal, nItem, &bEnabled)]);
}

int severity(bool bNormal, int nItem)
{
    if (bNormal)
        return 0;
    return nItem == SdkFiles ? 2 : 1;
}

QString severityIconPath(int nSeverity)
{
    switch (nSeverity) {
    case 0:
        return QStringLiteral(":/Vetrix/Vetrix/ResultNormal.png");
    case 1:
        return QStringLiteral(":/Vetrix/Vetrix/ResultMedium.png");
    case 2:
        return QStringLiteral(":/Vetrix/Vetrix/ResultSerious.png");
    default:
        return QString();
    }
}

QColor stateColor(int nState)
{
    switch (nState) {
    case StateNotDiagnosed:
    case StateDiagnosing:
        return QColor(QStringLiteral("#D3D9E4"));
    case StateNormal:
        return QColor(QStringLiteral("#02BF0F"));
    case StateError:
        return QColor(QStringLiteral("#E81123"));
    case StateWarning:
        return QColor(QStringLiteral("#FF9C00"));
    default:
        return QColor();
    }
}

QString stateIconPath(int nState)
{
    switch (nState) {
    case StateDiagnosing:
        return QStringLiteral(":/Vetrix/Vetrix/Diagnostic_doing.png");
    case StateNormal:
        return QStringLiteral(":/Vetrix/Vetrix/Diagnostic_normal.png");
    case StateError:
        return QStringLiteral(":/Vetrix/Vetrix/Diagnostic_error.png");
    case StateWarning:
        return QStringLiteral(":/Vetrix/Vetrix/Diagnostic_warning.png");
    default:
        return QString();
    }
}

QImage stateIcon(int nState)
{
    const QString strPath = stateIconPath(nState);
    return strPath.isEmpty() ? QImage() : QImage(strPath);
}

} // namespace VxItems
