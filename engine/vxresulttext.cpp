#include "vxresulttext.h"

#include "cdetectinfo.h"
#include "luinterface.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QTextStream>

namespace VxResultText {

namespace {
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
    case VxRepairStatus::NotFound:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: the change could not be made.");
    case VxRepairStatus::OtherSystem:
        return QCoreApplication::translate("VxOneKeyResult", "Not repaired: the examined system is not the running one.");
    case VxRepairStatus::Done:
        break;
    }
    return QString();
}
} // namespace

QStringList itemLines(const CDetectInfo &info)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(info.nItem));
    QStringList lines = pRow && pRow->lines ? pRow->lines(info) : QStringList();
    const bool bNormal = info.bNormal != 0;
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
