#include "vxcheckreport.h"

#include "cdetectinfo.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxresulttext.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace VxCheckReport {

namespace {
// The record's own facts, as its row writes them.
QJsonObject facts(const CDetectInfo &info)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(info.nItem));
    return pRow && pRow->facts ? pRow->facts(info) : QJsonObject();
}

QStringList linesOf(const VxCheckItem &item)
{
    if (!item.pInfo)
        return {VxResultText::unavailableLine(item.bUnreadable)};
    return VxResultText::itemLines(*item.pInfo);
}
} // namespace

QVector<int> reportableItems()
{
    QVector<int> items;
    for (int nGroup : VxItems::groups())
        items += VxItems::displayOrder(nGroup);
    return items;
}

bool parseItems(const QString &strList, quint32 *pMask, QString *pError)
{
    const QVector<int> known = reportableItems();
    quint32 uMask = 0;
    const QStringList parts = strList.split(QLatin1Char(','), Qt::KeepEmptyParts);
    for (const QString &strPart : parts) {
        bool bOk = false;
        const int nItem = strPart.trimmed().toInt(&bOk, 10);
        if (!bOk || !known.contains(nItem)) {
            if (pError)
                *pError = QCoreApplication::translate("VxCheckReport", "Unknown item \"%1\". Items: %2.")
                              .arg(strPart.trimmed(), [&] {
                                  QStringList ids;
                                  for (int n : known)
                                      ids << QString::number(n);
                                  return ids.join(QLatin1Char(','));
                              }());
            return false;
        }
        uMask |= quint32(nItem);
    }
    if (pMask)
        *pMask = uMask;
    return true;
}

bool isExceptional(const VxCheckItem &item)
{
    return item.pInfo && item.pInfo->bNormal == 0;
}

QString logText(const QVector<VxCheckItem> &items)
{
    QMap<int, QStringList> mapLines;
    for (const VxCheckItem &item : items)
        mapLines.insert(item.nItem, linesOf(item));
    return VxResultText::logText(mapLines);
}

QString timingsText(const QVector<VxCheckItem> &items)
{
    QString strText = QCoreApplication::translate("VxCheckReport", "Probe times:") + QLatin1Char('\n');
    double dTotal = 0.0;
    double dSdkWalk = 0.0;
    for (const VxCheckItem &item : items) {
        if (!item.pInfo)
            continue;
        dTotal += item.dTimeMs;
        if (item.nItem == VxItems::SdkFiles)
            dSdkWalk = item.dTimeMs;
        strText += QStringLiteral("  %1  %2 ms\n").arg(VxItems::itemName(item.nItem), -34).arg(item.dTimeMs, 9, 'f', 1);
    }
    strText += QStringLiteral("  %1  %2 ms\n")
                   .arg(QCoreApplication::translate("VxCheckReport", "Total"), -34)
                   .arg(dTotal, 9, 'f', 1);
    // The library folder walk dominates and depends on the disk; the rest is
    // what a diagnosis costs beyond it.
    strText += QStringLiteral("  %1  %2 ms\n")
                   .arg(QCoreApplication::translate("VxCheckReport", "Total without the SDK file walk"), -34)
                   .arg(dTotal - dSdkWalk, 9, 'f', 1);
    return strText;
}

QJsonObject json(const QVector<VxCheckItem> &items, bool bTimings)
{
    QJsonArray array;
    double dTotal = 0.0;
    for (const VxCheckItem &item : items) {
        QJsonObject object;
        object.insert(QStringLiteral("id"), item.nItem);
        object.insert(QStringLiteral("name"), VxItems::itemName(item.nItem));
        object.insert(QStringLiteral("group"), VxItems::groupName(VxItems::groupOf(item.nItem)));
        object.insert(QStringLiteral("available"), item.pInfo != nullptr);
        if (item.pInfo) {
            const bool bNormal = item.pInfo->bNormal != 0;
            object.insert(QStringLiteral("normal"), bNormal);
            object.insert(QStringLiteral("severity"), VxItems::severity(bNormal, item.nItem));
            object.insert(QStringLiteral("facts"), facts(*item.pInfo));
            if (bTimings)
                object.insert(QStringLiteral("timeMs"), item.dTimeMs);
            dTotal += item.dTimeMs;
        } else {
            object.insert(QStringLiteral("normal"), QJsonValue::Null);
            object.insert(QStringLiteral("severity"), QJsonValue::Null);
        }
        object.insert(QStringLiteral("lines"), QJsonArray::fromStringList(linesOf(item)));
        array.append(object);
    }
    QJsonObject root;
    root.insert(QStringLiteral("tool"), QStringLiteral("vetrix-check"));
    root.insert(QStringLiteral("version"), QCoreApplication::applicationVersion());
    root.insert(QStringLiteral("items"), array);
    if (bTimings)
        root.insert(QStringLiteral("totalTimeMs"), dTotal);
    return root;
}

} // namespace VxCheckReport
