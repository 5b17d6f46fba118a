#include "vxitems.h"

#include "cdetectinfo.h"
#include "vxitemregistry.h"

#include <QCoreApplication>
#include <QMap>

namespace VxItems {

namespace {
// Names and button texts are translated in the result view's context, where
// they are shown. The maps hold source texts; translation happens at look-up
// so a language switch takes effect without rebuilding them.
constexpr char kContext[] = "VxOneKeyResult";

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
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    return pRow ? QCoreApplication::translate(kContext, pRow->pName) : QString();
}

QString groupName(int nGroup)
{
    const char *pSource = groupSourceNames().value(nGroup, nullptr);
    return pSource ? QCoreApplication::translate(kContext, pSource) : QString();
}

int groupOf(int nItem)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    return pRow ? pRow->group : 0;
}

QVector<int> groups()
{
    return VxItemRegistry::groups();
}

QVector<int> displayOrder(int nGroup)
{
    return VxItemRegistry::displayOrder(nGroup);
}

QVector<int> detectOrder()
{
    return VxItemRegistry::detectOrder();
}

QVector<int> optimizeOrder()
{
    return VxItemRegistry::optimizeOrder();
}

quint32 groupMask(int nGroup)
{
    return VxItemRegistry::groupMask(nGroup);
}

const char *buttonSourceText(int nIndex)
{
    return (nIndex >= 0 && nIndex < kButtonTextCount) ? kButtonTexts[nIndex] : "";
}

int buttonIndex(bool bNormal, int nItem, bool *pEnabled)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    // An unknown item shows "Normal", clickable only when exceptional.
    const VxButtonRule rule = pRow ? pRow->button : VxButtonRule{BtnNormal, false, BtnNormal, true};
    if (pEnabled)
        *pEnabled = bNormal ? rule.bEnabledWhenNormal : rule.bEnabledWhenExceptional;
    return bNormal ? rule.normalText : rule.exceptionText;
}

QString buttonText(bool bNormal, int nItem, bool &bEnabled)
{
    return QCoreApplication::translate(kContext, kButtonTexts[buttonIndex(bNormal, nItem, &bEnabled)]);
}

Severity severity(bool bNormal, int nItem)
{
    if (bNormal)
        return SeverityNormal;
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    return pRow ? pRow->exceptionSeverity : SeverityMedium;
}

QString severityIconPath(int nSeverity)
{
    switch (nSeverity) {
    case SeverityNormal:
        return QStringLiteral(":/Vetrix/Vetrix/ResultNormal.png");
    case SeverityMedium:
        return QStringLiteral(":/Vetrix/Vetrix/ResultMedium.png");
    case SeveritySerious:
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

CDetectInfo *createDetectInfo(int nItem)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    CDetectInfo *pInfo = nullptr;
    if (pRow && pRow->create)
        pInfo = pRow->create();
    if (!pInfo)
        pInfo = new CDetectInfo; // ids without a record class, or no memory for one
    pInfo->nItem = nItem;
    pInfo->bNormal = 1;
    return pInfo;
}
