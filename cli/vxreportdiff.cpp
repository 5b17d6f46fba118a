// The report comparison: reading and checking the two reports, matching
// their items by id, and comparing each item's grade, facts (through the walk
// in vxreportdiffwalk.cpp) and text lines.
#include "vxreportdiff_p.h"

#include "vxcheckreport.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QSet>

#include <cmath>

namespace VxReportDiff {

namespace {
// Reports larger than this are not read (the biggest real one, a PC with
// a thousand USB devices, stays far below).
constexpr qint64 kMaxReportBytes = 256 * 1024 * 1024;

// Item fields that are not compared: matched on, texts of the report's
// language, times, and the grade and lines, compared on their own.
bool isItemFieldSkipped(const QString &strKey)
{
    static const QSet<QString> skipped
        = {QStringLiteral("id"), QStringLiteral("name"), QStringLiteral("group"), QStringLiteral("available"),
            QStringLiteral("normal"), QStringLiteral("severity"), QStringLiteral("lines"), QStringLiteral("timeMs")};
    return skipped.contains(strKey);
}

const char *const kGradeKeys[] = {"available", "normal", "severity"};

QJsonObject gradeOf(const QJsonObject &item)
{
    QJsonObject grade;
    for (const char *pKey : kGradeKeys)
        grade.insert(QLatin1String(pKey), item.value(QLatin1String(pKey)));
    return grade;
}

// The item's text lines, compared as sets with repeats.
void compareLines(const QJsonObject &before, const QJsonObject &after, QVector<Change> &changes)
{
    const QJsonArray linesBefore = before.value(QStringLiteral("lines")).toArray();
    const QJsonArray linesAfter = after.value(QStringLiteral("lines")).toArray();
    QVector<Change> lineChanges;
    Detail::compareArrays(QStringLiteral("lines"), linesBefore, linesAfter, lineChanges);
    for (Change &change : lineChanges) {
        change.kind = change.kind == Kind::FactAdded ? Kind::LineAdded : Kind::LineRemoved;
        changes.append(change);
    }
}

ItemDiff compareItem(int nItem, const QJsonObject &before, const QJsonObject &after)
{
    ItemDiff diff;
    diff.nItem = nItem;
    diff.strName = (after.isEmpty() ? before : after).value(QStringLiteral("name")).toString();
    if (before.isEmpty() || after.isEmpty()) {
        diff.bGradeChanged = true;
        if (before.isEmpty())
            diff.changes.append({Kind::ItemAdded, QString(), QJsonValue(QJsonValue::Undefined), gradeOf(after)});
        else
            diff.changes.append({Kind::ItemRemoved, QString(), gradeOf(before), QJsonValue(QJsonValue::Undefined)});
        return diff;
    }
    for (const char *pKey : kGradeKeys) {
        const QString strKey = QLatin1String(pKey);
        if (before.value(strKey) != after.value(strKey)) {
            diff.bGradeChanged = true;
            diff.changes.append({Kind::GradeChanged, strKey, before.value(strKey), after.value(strKey)});
        }
    }
    QJsonObject factsBefore;
    QJsonObject factsAfter;
    for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
        if (!isItemFieldSkipped(it.key()))
            factsBefore.insert(it.key(), it.value());
    }
    for (auto it = after.constBegin(); it != after.constEnd(); ++it) {
        if (!isItemFieldSkipped(it.key()))
            factsAfter.insert(it.key(), it.value());
    }
    Detail::compareObjects(factsBefore, factsAfter, diff.changes);
    if (diff.changes.isEmpty())
        compareLines(before, after, diff.changes);
    return diff;
}

QMap<int, QJsonObject> itemsById(const QJsonObject &report)
{
    QMap<int, QJsonObject> items;
    for (const QJsonValue &value : report.value(QStringLiteral("items")).toArray()) {
        const QJsonObject item = value.toObject();
        items.insert(item.value(QStringLiteral("id")).toInt(), item);
    }
    return items;
}

bool isInteger(const QJsonValue &value)
{
    if (!value.isDouble())
        return false;
    const double d = value.toDouble();
    return std::floor(d) == d && d >= 0 && d <= 4294967295.0;
}

QString checkItem(const QJsonValue &value, const QString &strSource, const QVector<int> &known, QSet<int> &seen)
{
    if (!value.isObject() || !isInteger(value.toObject().value(QStringLiteral("id"))))
        return QCoreApplication::translate("VxReportDiff", "%1: an item has no id.").arg(strSource);
    const QJsonObject item = value.toObject();
    const double dId = item.value(QStringLiteral("id")).toDouble();
    const int nItem = dId <= 2147483647.0 ? int(dId) : -1;
    const QString strId = QString::number(dId, 'f', 0);
    if (nItem < 0 || !known.contains(nItem))
        return QCoreApplication::translate("VxReportDiff", "%1: item %2 is unknown.").arg(strSource, strId);
    if (seen.contains(nItem))
        return QCoreApplication::translate("VxReportDiff", "%1: item %2 appears twice.").arg(strSource, strId);
    seen.insert(nItem);
    auto invalid = [&](const char *pField) {
        return QCoreApplication::translate("VxReportDiff", "%1: item %2 has an invalid \"%3\".")
            .arg(strSource, strId, QLatin1String(pField));
    };
    if (!item.value(QStringLiteral("available")).isBool())
        return invalid("available");
    const QJsonValue normal = item.value(QStringLiteral("normal"));
    if (!normal.isBool() && !normal.isNull())
        return invalid("normal");
    const QJsonValue severity = item.value(QStringLiteral("severity"));
    if (!isInteger(severity) && !severity.isNull())
        return invalid("severity");
    const QJsonValue facts = item.value(QStringLiteral("facts"));
    if (!facts.isUndefined() && !facts.isObject())
        return invalid("facts");
    const QJsonValue lines = item.value(QStringLiteral("lines"));
    if (!lines.isUndefined()) {
        if (!lines.isArray())
            return invalid("lines");
        for (const QJsonValue &line : lines.toArray()) {
            if (!line.isString())
                return invalid("lines");
        }
    }
    return QString();
}
} // namespace

bool Result::gradesDiffer() const
{
    return gradeChangeCount() > 0;
}

int Result::gradeChangeCount() const
{
    int nCount = 0;
    for (const ItemDiff &item : items)
        nCount += item.bGradeChanged ? 1 : 0;
    return nCount;
}

bool parseReport(const QByteArray &bytes, const QString &strSource, QJsonObject *pReport, QString *pError)
{
    auto fail = [pError](const QString &strError) {
        if (pError)
            *pError = strError;
        return false;
    };
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return fail(QCoreApplication::translate("VxReportDiff", "%1 is not a JSON report: %2 at byte %3.")
                        .arg(strSource, error.errorString())
                        .arg(error.offset));
    const QJsonObject report = doc.object();
    if (!doc.isObject() || report.value(QStringLiteral("tool")).toString() != QLatin1String("vetrix-check"))
        return fail(QCoreApplication::translate("VxReportDiff", "%1 is not a vetrix-check report.").arg(strSource));
    const QString strVersion = report.value(QStringLiteral("version")).toString();
    bool bOk = false;
    const int nMajor = strVersion.section(QLatin1Char('.'), 0, 0).toInt(&bOk);
    if (!bOk || nMajor != VX_REPORT_MAJOR)
        return fail(QCoreApplication::translate(
            "VxReportDiff", "%1 comes from vetrix-check version \"%2\"; this version compares reports of version %3.x.")
                        .arg(strSource, strVersion)
                        .arg(VX_REPORT_MAJOR));
    if (!report.value(QStringLiteral("items")).isArray())
        return fail(QCoreApplication::translate("VxReportDiff", "%1 has no item list.").arg(strSource));
    const QVector<int> known = VxCheckReport::reportableItems();
    QSet<int> seen;
    for (const QJsonValue &value : report.value(QStringLiteral("items")).toArray()) {
        const QString strError = checkItem(value, strSource, known, seen);
        if (!strError.isEmpty())
            return fail(strError);
    }
    if (pReport)
        *pReport = report;
    return true;
}

bool readReport(const QString &strPath, QJsonObject *pReport, QString *pError)
{
    QFile file(strPath);
    const QFileInfo info(strPath);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        if (pError)
            *pError = QCoreApplication::translate("VxReportDiff", "Cannot read \"%1\".").arg(strPath);
        return false;
    }
    if (file.size() > kMaxReportBytes) {
        if (pError)
            *pError = QCoreApplication::translate("VxReportDiff", "\"%1\" is too large for a report.").arg(strPath);
        return false;
    }
    return parseReport(file.readAll(), strPath, pReport, pError);
}

Result compare(const QJsonObject &before, const QJsonObject &after, quint32 uMask)
{
    const QMap<int, QJsonObject> mapBefore = itemsById(before);
    const QMap<int, QJsonObject> mapAfter = itemsById(after);
    Result result;
    for (int nItem : VxCheckReport::reportableItems()) {
        if (!(uMask & quint32(nItem)) || (!mapBefore.contains(nItem) && !mapAfter.contains(nItem)))
            continue;
        ItemDiff diff = compareItem(nItem, mapBefore.value(nItem), mapAfter.value(nItem));
        if (!diff.changes.isEmpty())
            result.items.append(diff);
    }
    return result;
}

} // namespace VxReportDiff
