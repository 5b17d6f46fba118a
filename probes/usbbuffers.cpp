#include "usbbuffers.h"

#include <QCoreApplication>
#include <QJsonArray>

CUsbBufferDetectInfo::~CUsbBufferDetectInfo() = default;

namespace {

bool usb3Present(const CUsbBufferDetectInfo &info)
{
    return !info.usb3Controllers.isEmpty() || !info.usb3Cameras.isEmpty();
}

} // namespace

namespace UsbBuffers {

bool isExceptional(const CUsbBufferDetectInfo &info)
{
    if (info.nSelectiveSuspend == 1)
        return true;
    return info.nUsbfsMemoryMb > 0 && info.nUsbfsMemoryMb < kRecommendedMb && usb3Present(info);
}

VxPlan plan(const CUsbBufferDetectInfo &info)
{
    VxPlan changes;
    if (!isExceptional(info))
        return changes;
    VxChange change;
    change.uItem = kItemId;
    if (info.nSelectiveSuspend == 1) {
        change.strKind = QLatin1String(kSelectiveSuspendKind);
        change.strTarget = info.strPowerScheme;
        change.strOld = QStringLiteral("1");
        change.strNew = QStringLiteral("0");
    } else {
        change.strKind = QLatin1String(VxChangeKind::UsbfsMemory);
        change.strTarget = QStringLiteral("usbfs_memory_mb");
        change.strOld = QString::number(info.nUsbfsMemoryMb);
        change.strNew = QString::number(kRecommendedMb);
    }
    changes << change;
    return changes;
}

} // namespace UsbBuffers

QStringList usbBufferLines(const CUsbBufferDetectInfo &info)
{
    QStringList listLines;
    if (info.bPowerPlan) {
        const QString strPlan = info.strPowerSchemeName.isEmpty() ? info.strPowerScheme : info.strPowerSchemeName;
        if (info.nSelectiveSuspend == 1)
            listLines << QCoreApplication::translate("VxOneKeyResult",
                "USB selective suspend is enabled in the power plan %1: Windows may suspend a camera between frames.")
                             .arg(strPlan);
        else if (info.nSelectiveSuspend == 0)
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "USB selective suspend is disabled in the power plan %1.")
                             .arg(strPlan);
        else
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "The USB selective suspend setting of the active power plan cannot be read.");
        return listLines;
    }
    if (info.nUsbfsMemoryMb == -1)
        listLines << QCoreApplication::translate(
            "VxOneKeyResult", "The USB buffer memory cannot be read (the usbcore module is not loaded).");
    else if (info.nUsbfsMemoryMb == 0)
        listLines << QCoreApplication::translate("VxOneKeyResult", "USB buffer memory (usbfs_memory_mb): unlimited.");
    else if (UsbBuffers::isExceptional(info))
        listLines << QCoreApplication::translate(
            "VxOneKeyResult", "USB buffer memory (usbfs_memory_mb) is %1 MB; USB3 Vision cameras need at least %2 MB.")
                         .arg(info.nUsbfsMemoryMb)
                         .arg(UsbBuffers::kRecommendedMb);
    else
        listLines << QCoreApplication::translate("VxOneKeyResult", "USB buffer memory (usbfs_memory_mb): %1 MB.")
                         .arg(info.nUsbfsMemoryMb);
    for (const QString &strCamera : info.usb3Cameras)
        listLines << QCoreApplication::translate("VxOneKeyResult", "USB3 Vision camera found: %1.").arg(strCamera);
    for (const QString &strController : info.usb3Controllers)
        listLines << QCoreApplication::translate("VxOneKeyResult", "USB 3 root hub found: %1.").arg(strController);
    if (!usb3Present(info))
        listLines << QCoreApplication::translate("VxOneKeyResult", "No USB 3 controller or USB3 Vision camera found.");
    return listLines;
}

QJsonObject usbBufferFacts(const CUsbBufferDetectInfo &info)
{
    QJsonObject facts;
    if (info.bPowerPlan) {
        facts.insert(QStringLiteral("powerScheme"), info.strPowerScheme);
        facts.insert(QStringLiteral("powerSchemeName"), info.strPowerSchemeName);
        facts.insert(QStringLiteral("selectiveSuspend"),
            info.nSelectiveSuspend == -1 ? QJsonValue() : QJsonValue(info.nSelectiveSuspend == 1));
        return facts;
    }
    facts.insert(
        QStringLiteral("usbfsMemoryMb"), info.nUsbfsMemoryMb == -1 ? QJsonValue() : QJsonValue(info.nUsbfsMemoryMb));
    facts.insert(QStringLiteral("recommendedMb"), UsbBuffers::kRecommendedMb);
    facts.insert(QStringLiteral("usb3Controllers"), QJsonArray::fromStringList(info.usb3Controllers));
    facts.insert(QStringLiteral("usb3VisionCameras"), QJsonArray::fromStringList(info.usb3Cameras));
    return facts;
}
