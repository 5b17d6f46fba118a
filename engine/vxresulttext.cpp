#include "vxresulttext.h"

#include "cdetectinfo.h"
#include "usbprobe.h"
#include "luinterface.h"
#include "vxitems.h"
#include "vxrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QTextStream>

namespace VxResultText {

namespace {
void appendDirectoryLines(QStringList &lines, const QMap<QString, QStringList> &mapFound)
{
    for (auto it = mapFound.cbegin(); it != mapFound.cend(); ++it) {
        for (const QString &strDir : it.value()) {
            if (!strDir.isEmpty())
                lines << QStringLiteral("    ") + strDir + QLatin1Char('/') + it.key();
        }
    }
}

// Why an item's repair did not happen, for an item it left exceptional.
QString repairFailureLine(int nStatus)
{
    switch (VxRepairStatus(nStatus)) {
    case VxRepairStatus::NotAuthorized:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: administrator rights were not granted.");
    case VxRepairStatus::HelperMissing:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: administrator rights could not be requested.");
    case VxRepairStatus::Refused:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: the change was not accepted.");
    case VxRepairStatus::Failed:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: the change could not be made.");
    case VxRepairStatus::Done:
        break;
    }
    return QString();
}

QString rateText(int nMbps)
{
    if (nMbps < 0)
        return QCoreApplication::translate("VxOneKeyResult", "Unknown");
    return QString::number(nMbps / 1000.0, 'f', 2) + QStringLiteral("Gbps");
}
} // namespace

QStringList itemLines(const CDetectInfo &info)
{
    QStringList lines;
    const bool bNormal = info.bNormal != 0;
    switch (info.nItem) {
    case VxItems::SdkFiles: {
        lines << (bNormal ? QCoreApplication::translate("VxOneKeyResult", " No other SDK files were found")
                          : QCoreApplication::translate("VxOneKeyResult", "The Other SDK Files :"));
        if (auto *pSdk = dynamic_cast<const CSDKPathDetectInfo *>(&info))
            appendDirectoryLines(lines, pSdk->foundFiles);
        break;
    }
    case VxItems::EnvVariables: {
        auto *pEnv = dynamic_cast<const CEnvDetectInfo *>(&info);
        const bool bPending = pEnv && !pEnv->pendingValues.isEmpty();
        if (!bNormal)
            lines << QCoreApplication::translate("VxOneKeyResult", "The following environment variables are exceptional:");
        else if (!bPending)
            lines << QCoreApplication::translate("VxOneKeyResult", "Environment Variables are correct");
        if (pEnv) {
            for (auto it = pEnv->missingValues.cbegin(); it != pEnv->missingValues.cend(); ++it) {
                for (const QString &strValue : it.value()) {
                    if (!strValue.isEmpty())
                        lines << QStringLiteral("    ") + it.key() + QLatin1Char('=') + strValue;
                }
            }
        }
        // Set machine-wide by an earlier repair, not yet seen by this login.
        if (bPending) {
            lines << QCoreApplication::translate(
                "VxOneKeyResult", "The following environment variables are set and take effect at the next login:");
            for (auto it = pEnv->pendingValues.cbegin(); it != pEnv->pendingValues.cend(); ++it)
                lines << QStringLiteral("    ") + it.key() + QLatin1Char('=') + it.value();
        }
        break;
    }
    case VxItems::GigeDriver:
        lines << (bNormal ? QCoreApplication::translate("VxOneKeyResult", "GigE driver is installed.")
                          : QCoreApplication::translate("VxOneKeyResult", " GigE driver is not installed."));
        break;
    case VxItems::Usb3Driver:
        lines << (bNormal ? QCoreApplication::translate("VxOneKeyResult", "USB driver is installed.")
                          : QCoreApplication::translate("VxOneKeyResult", " USB driver is not installed."));
        break;
    case VxItems::UsbControllerDriver:
        if (auto *pDrv = dynamic_cast<const CUSBControllerDriverInfo *>(&info); pDrv && pDrv->nControllers == 0) {
            lines << QCoreApplication::translate("VxOneKeyResult", "No USB host controller was found.");
        } else if (pDrv) {
            lines << QCoreApplication::translate("VxOneKeyResult", "Name     : ") + pDrv->driverDesc
                  << QCoreApplication::translate("VxOneKeyResult", "Provider : ") + pDrv->providerName
                  << QCoreApplication::translate("VxOneKeyResult", "Date     : ") + pDrv->driverDate
                  << QCoreApplication::translate("VxOneKeyResult", "Version  : ") + pDrv->driverVersion;
        }
        break;
    case VxItems::LineRate:
        if (auto *pNet = dynamic_cast<const CNetworkSpeedDetectInfo *>(&info)) {
            for (auto it = pNet->adapterSpeeds.cbegin(); it != pNet->adapterSpeeds.cend(); ++it)
                lines << it.key() + QStringLiteral(" : ") + rateText(it.value());
        }
        break;
    case VxItems::JumboFrame:
        if (auto *pJumbo = dynamic_cast<const CJumboPacketDetectInfo *>(&info)) {
            for (auto it = pJumbo->jumboStates.cbegin(); it != pJumbo->jumboStates.cend(); ++it) {
                const QString strState = it.value() == 1
                    ? QCoreApplication::translate("VxOneKeyResult", "The Jumbo Packet is enabled(value = %1)")
                          .arg(pJumbo->jumboValues.value(it.key()))
                    : QCoreApplication::translate("VxOneKeyResult", "The Jumbo Packet isn't enabled");
                lines << it.key() + QStringLiteral(" : ") + strState;
            }
        }
        break;
    case VxItems::UsbControllerInfo:
        if (auto *pUsb = dynamic_cast<const CUsbBasicDetectInfo *>(&info)) {
            lines << VxUsbProbe::treeReportLines(pUsb->pRootItem);
            if (VxUsbProbe::controllerCount(pUsb->pRootItem) == 0)
                lines << QCoreApplication::translate("VxOneKeyResult", "No USB host controller was found.");
        }
        break;
    case VxItems::Firewall:
        lines << (bNormal ? QCoreApplication::translate("VxOneKeyResult", "The firewall hasn't been opened")
                          : QCoreApplication::translate("VxOneKeyResult", "The firewall has been opened"));
        break;
    case VxItems::SystemInfo:
        if (auto *pSys = dynamic_cast<const CSystemDetectInfo *>(&info)) {
            lines << QCoreApplication::translate("VxOneKeyResult", "CPU               : ") + pSys->cpu
                  << QCoreApplication::translate("VxOneKeyResult", "CPU Core Number   : ") + pSys->cpuCount
                  << QCoreApplication::translate("VxOneKeyResult", "Available Memory  : ") + pSys->availableMemory
                  << QCoreApplication::translate("VxOneKeyResult", "Endianess         : ") + pSys->byteOrder
                  << QCoreApplication::translate("VxOneKeyResult", "Operating System  : ") + pSys->operatingSystem
                  << QCoreApplication::translate("VxOneKeyResult", "Graphic Chipset   : ") + pSys->graphicsChips
                  << QCoreApplication::translate("VxOneKeyResult", "Screen Resolution : ") + pSys->resolution;
        }
        break;
    default:
        break;
    }
    if (!bNormal && info.nRepairStatus != 0) {
        const QString strWhy = repairFailureLine(info.nRepairStatus);
        if (!strWhy.isEmpty())
            lines << strWhy;
    }
    return lines;
}

QString unavailableLine(bool bUnreadable)
{
    if (bUnreadable)
        return QCoreApplication::translate("VxOneKeyResult", "Not available: this check cannot read the system below %1.")
            .arg(QDir::toNativeSeparators(LuInterface::sysRoot()));
    return QCoreApplication::translate("VxOneKeyResult", "Not available: this check has no probe on this platform.");
}

QString treePrefix(int nLevel, bool bBranch, bool bContinued)
{
    QString strPrefix = QStringLiteral("|");
    for (int i = 1; i < nLevel; ++i)
        strPrefix += QStringLiteral("    |");
    if (bBranch)
        strPrefix += QStringLiteral("----");
    else if (bContinued)
        strPrefix += QStringLiteral("    |");
    else
        strPrefix += QStringLiteral("     ");
    return strPrefix;
}

QString logText(const QMap<int, QStringList> &mapItemLines)
{
    static const QString kEol = QStringLiteral("\r\n");
    QString strText;
    int nGroupNumber = 0;
    for (int nGroup : VxItems::groups()) {
        ++nGroupNumber;
        strText += treePrefix(1, false, false) + kEol;
        strText
            += treePrefix(1, true, true) + QStringLiteral("%1: ").arg(nGroupNumber) + VxItems::groupName(nGroup) + kEol;
        strText += treePrefix(2, false, false) + kEol;
        int nRow = 0;
        for (int nItem : VxItems::displayOrder(nGroup)) {
            auto it = mapItemLines.constFind(nItem);
            if (it == mapItemLines.cend())
                continue;
            ++nRow;
            strText += treePrefix(2, true, true) + QStringLiteral("%1-%2: ").arg(nGroupNumber).arg(nRow)
                + VxItems::itemName(nItem) + kEol;
            for (const QString &strLine : it.value())
                strText += treePrefix(2, false, false) + strLine + kEol;
            strText += treePrefix(2, false, false) + kEol;
        }
        strText += treePrefix(1, false, false) + kEol;
    }
    return strText;
}

QString logText(const QList<const CDetectInfo *> &listRecords)
{
    QMap<int, QStringList> mapItemLines;
    for (const CDetectInfo *pInfo : listRecords) {
        if (pInfo)
            mapItemLines.insert(pInfo->nItem, itemLines(*pInfo));
    }
    return logText(mapItemLines);
}

QString proposedLogName(const QDateTime &time)
{
    return QStringLiteral("Log_") + time.toString(QStringLiteral("yyyyMMdd_hhmmss")) + QStringLiteral(".log");
}

bool writeLog(const QString &strPath, const QString &strText)
{
    if (strPath.isEmpty())
        return false;
    QSaveFile file(strPath);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << strText;
    stream.flush();
    if (stream.status() != QTextStream::Ok) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace VxResultText
