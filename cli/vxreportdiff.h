#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

// What differs between two JSON reports of vetrix-check (or of the program's
// JSON export): item by item, the grade (available, normal, severity) and
// every fact, compared by its JSON path however deeply it is nested.
//
// Items are matched by id; their names and groups are texts of the report's
// language and are not compared. Probe times are not compared. An item's text
// lines are compared only when its grade and facts are the same, so that a
// report whose facts say less (the USB tree lines) still shows what changed.
namespace VxReportDiff {

enum class Kind {
    ItemAdded, // only in the second report
    ItemRemoved, // only in the first report
    GradeChanged, // available, normal or severity
    FactAdded,
    FactRemoved,
    FactChanged,
    LineAdded,
    LineRemoved,
};

// One difference. Values that a side lacks are undefined QJsonValues.
struct Change
{
    Kind kind = Kind::FactChanged;
    // "normal", "facts.cpu", "facts.tree.controllers[pciAddress=0000:00:14.0].devices[2]":
    // keys joined by dots (["key"] for keys that are not plain words), list
    // elements by an identifying key ([key=value]) or by position ([n]).
    // Empty for an item added or removed.
    QString strPath;
    QJsonValue before {QJsonValue::Undefined};
    QJsonValue after {QJsonValue::Undefined};
};

struct ItemDiff
{
    int nItem = 0;
    QString strName; // from the second report, else the first
    bool bGradeChanged = false;
    QVector<Change> changes;
};

struct Result
{
    QVector<ItemDiff> items; // only the items that differ, in display order
    bool isEmpty() const { return items.isEmpty(); }
    // True when an item's grade changed or an item is only in one report.
    bool gradesDiffer() const;
    int gradeChangeCount() const;
};

// A report read and checked: the tool and its major version, every item an
// object with a known, unique id and fields of the right types. pError gets a
// sentence naming strSource when the report cannot be compared.
bool parseReport(const QByteArray &bytes, const QString &strSource, QJsonObject *pReport, QString *pError);
bool readReport(const QString &strPath, QJsonObject *pReport, QString *pError);

// The differences from before to after; with uMask set, only the items in it.
Result compare(const QJsonObject &before, const QJsonObject &after, quint32 uMask = 0xFFFFFFFFu);

// Readable report: a heading per item, one line per change, then a summary.
// strBefore and strAfter name the two sides (file names, "this diagnosis").
QString text(const Result &result, const QString &strBefore, const QString &strAfter);
// {"format": "vetrix-compare", "formatVersion": 1, "before", "after",
//  "gradesDiffer", "items": [{"id", "name", "gradeChanged",
//  "changes": [{"kind", "path", "before", "after"}]}]}
QJsonObject json(const Result &result, const QString &strBefore, const QString &strAfter);

// "factChanged", ... as written in the JSON form.
QString kindKey(Kind kind);
// The translated word of a change kind.
QString kindText(Kind kind);
// A value as one line of text: grades as words ("normal", "exceptional"),
// strings quoted, objects and arrays as compact JSON cut at nMaxChars (0: whole).
QString valueText(const QString &strPath, const QJsonValue &value, int nMaxChars = 160);
// The summary sentence of the result.
QString summaryText(const Result &result);

} // namespace VxReportDiff
