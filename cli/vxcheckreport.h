#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

class CDetectInfo;

// One item of a headless diagnosis: its record (null when the item was not
// diagnosed) and how long its probe took. An item without a record has no
// probe on this platform, or (bUnreadable) cannot read the system root.
struct VxCheckItem
{
    int nItem = 0;
    const CDetectInfo *pInfo = nullptr;
    double dTimeMs = 0.0;
    bool bUnreadable = false;
};

namespace VxCheckReport {

// The ids a report can hold, in display order (items 16 and 64 have no row).
QVector<int> reportableItems();

// Parses "1,2,128" into a mask of reportable ids; false on anything else.
bool parseItems(const QString &strList, quint32 *pMask, QString *pError);

bool isExceptional(const VxCheckItem &item);

// The export log text (CR LF) for the items.
QString logText(const QVector<VxCheckItem> &items);
// The per-item probe times, one line each, and the total.
QString timingsText(const QVector<VxCheckItem> &items);
// {"tool", "version", "items": [...]}; timings only when asked for.
QJsonObject json(const QVector<VxCheckItem> &items, bool bTimings);

} // namespace VxCheckReport
