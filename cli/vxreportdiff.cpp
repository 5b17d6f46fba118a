#include "vxreportdiff.h"

#include "vxcheckreport.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
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

// Keys that name an element of an array of objects, tried in this order: the
// first that every element of both arrays has, with a value unique in each
// array, matches the elements; otherwise they are matched by position.
const char *const kIdentityKeys[]
    = {"portPath", "port", "path", "pciAddress", "address", "busNumber", "number", "id", "name", "serial"};

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

bool isIdentifier(const QString &strKey)
{
    if (strKey.isEmpty())
        return false;
    for (int i = 0; i < strKey.size(); ++i) {
        const QChar c = strKey.at(i);
        const bool bLetter = (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
            || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || c == QLatin1Char('_');
        if (!bLetter && !(i > 0 && c >= QLatin1Char('0') && c <= QLatin1Char('9')))
            return false;
    }
    return true;
}

QString compactJson(const QJsonValue &value)
{
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    if (value.isArray())
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    // A scalar: wrapped in an array to let QJsonDocument quote and escape it.
    const QByteArray bytes = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(bytes.mid(1, bytes.size() - 2));
}

QString keyPath(const QString &strPath, const QString &strKey)
{
    if (isIdentifier(strKey))
        return strPath.isEmpty() ? strKey : strPath + QLatin1Char('.') + strKey;
    return strPath + QLatin1Char('[') + compactJson(strKey) + QLatin1Char(']');
}

QString scalarKey(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return QStringLiteral("s") + value.toString();
    case QJsonValue::Double: {
        // The number's bytes: as exact as its text and much cheaper to make.
        const double d = value.toDouble() + 0.0; // -0 and 0 alike
        return QStringLiteral("n") + QString::fromLatin1(reinterpret_cast<const char *>(&d), int(sizeof d));
    }
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("t") : QStringLiteral("f");
    default:
        return QStringLiteral("z");
    }
}

bool isScalar(const QJsonValue &value)
{
    return !value.isObject() && !value.isArray();
}

// The text an element's identity value shows in a path.
QString identityText(const QJsonValue &value)
{
    return value.isString() ? value.toString() : QString::number(value.toDouble(), 'g', 17);
}

// Where the walk stands: a chain of steps on the caller's stack, turned into
// the path text only for a value that differs (most values do not).
struct Step
{
    enum Type { Root, Key, Index, Identity };

    Step() = default;
    Step(const Step *pUp, Type t, const QString &strName, const QJsonValue &value = QJsonValue(), int n = 0)
        : pParent(pUp)
        , type(t)
        , strKey(strName)
        , id(value)
        , nIndex(n)
    {
    }

    const Step *pParent = nullptr;
    Type type = Root;
    QString strKey; // Key: the key; Identity: the identifying key
    QJsonValue id; // Identity: its value
    int nIndex = 0; // Index

    QString text() const
    {
        QString strPath = pParent ? pParent->text() : QString();
        switch (type) {
        case Root:
            return strKey;
        case Key:
            return keyPath(strPath, strKey);
        case Index:
            return strPath + QStringLiteral("[%1]").arg(nIndex);
        case Identity:
            return strPath + QLatin1Char('[') + strKey + QLatin1Char('=') + identityText(id) + QLatin1Char(']');
        }
        return strPath;
    }
};

class Walker
{
public:
    explicit Walker(QVector<Change> &changes)
        : m_changes(changes)
    {
    }

    void value(const Step &at, const QJsonValue &before, const QJsonValue &after)
    {
        if (before.isObject() && after.isObject())
            object(at, before.toObject(), after.toObject());
        else if (before.isArray() && after.isArray())
            array(at, before.toArray(), after.toArray());
        else if (before != after)
            m_changes.append({Kind::FactChanged, at.text(), before, after});
    }

    void object(const Step &at, const QJsonObject &before, const QJsonObject &after)
    {
        // Qt keeps an object's keys sorted: walk both lists side by side.
        auto itB = before.constBegin();
        auto itA = after.constBegin();
        while (itB != before.constEnd() || itA != after.constEnd()) {
            const QString strB = itB != before.constEnd() ? itB.key() : QString();
            const QString strA = itA != after.constEnd() ? itA.key() : QString();
            if (itA == after.constEnd() || (itB != before.constEnd() && strB < strA)) {
                removed(Step {&at, Step::Key, strB}, itB.value());
                ++itB;
            } else if (itB == before.constEnd() || strA < strB) {
                added(Step {&at, Step::Key, strA}, itA.value());
                ++itA;
            } else {
                value(Step {&at, Step::Key, strB}, itB.value(), itA.value());
                ++itB;
                ++itA;
            }
        }
    }

    void array(const Step &at, const QJsonArray &before, const QJsonArray &after)
    {
        if (allScalar(before) && allScalar(after)) {
            scalarArray(at, before, after);
            return;
        }
        const QString strKey = identityKey(before, after);
        if (!strKey.isEmpty())
            keyedArray(at, strKey, before, after);
        else
            positionalArray(at, before, after);
    }

private:
    void added(const Step &at, const QJsonValue &value)
    {
        m_changes.append({Kind::FactAdded, at.text(), QJsonValue(QJsonValue::Undefined), value});
    }

    void removed(const Step &at, const QJsonValue &value)
    {
        m_changes.append({Kind::FactRemoved, at.text(), value, QJsonValue(QJsonValue::Undefined)});
    }

    static bool allScalar(const QJsonArray &array)
    {
        for (const QJsonValue &value : array) {
            if (!isScalar(value))
                return false;
        }
        return true;
    }

    static bool hasUniqueKey(const QJsonArray &array, const QString &strKey)
    {
        QSet<QString> seen;
        seen.reserve(array.size());
        for (const QJsonValue &element : array) {
            if (!element.isObject())
                return false;
            const QJsonValue id = element.toObject().value(strKey);
            if (!id.isString() && !id.isDouble())
                return false;
            const QString strId = scalarKey(id);
            if (seen.contains(strId))
                return false;
            seen.insert(strId);
        }
        return true;
    }

    static QString identityKey(const QJsonArray &before, const QJsonArray &after)
    {
        if (before.isEmpty() && after.isEmpty())
            return QString();
        for (const char *pKey : kIdentityKeys) {
            const QString strKey = QString::fromLatin1(pKey);
            if (hasUniqueKey(before, strKey) && hasUniqueKey(after, strKey))
                return strKey;
        }
        return QString();
    }

    // Lists of plain values are compared as sets with repeats: order does
    // not count (folders, names), each value missing on one side does.
    void scalarArray(const Step &at, const QJsonArray &before, const QJsonArray &after)
    {
        if (before == after)
            return;
        QHash<QString, int> counts;
        for (const QJsonValue &value : after)
            ++counts[scalarKey(value)];
        for (const QJsonValue &value : before) {
            int &nCount = counts[scalarKey(value)];
            if (nCount > 0)
                --nCount;
            else
                removed(at, value);
        }
        QHash<QString, int> beforeCounts;
        for (const QJsonValue &value : before)
            ++beforeCounts[scalarKey(value)];
        for (const QJsonValue &value : after) {
            int &nCount = beforeCounts[scalarKey(value)];
            if (nCount > 0)
                --nCount;
            else
                added(at, value);
        }
    }

    void keyedArray(const Step &at, const QString &strKey, const QJsonArray &before, const QJsonArray &after)
    {
        QHash<QString, int> afterIndex;
        afterIndex.reserve(after.size());
        for (int i = 0; i < after.size(); ++i)
            afterIndex.insert(scalarKey(after.at(i).toObject().value(strKey)), i);
        QVector<bool> matched(after.size(), false);
        for (const QJsonValue &value : before) {
            const QJsonObject element = value.toObject();
            const QJsonValue id = element.value(strKey);
            const Step step {&at, Step::Identity, strKey, id};
            const auto it = afterIndex.constFind(scalarKey(id));
            if (it == afterIndex.constEnd()) {
                removed(step, element);
                continue;
            }
            matched[it.value()] = true;
            object(step, element, after.at(it.value()).toObject());
        }
        for (int i = 0; i < after.size(); ++i) {
            if (!matched.at(i)) {
                const QJsonObject element = after.at(i).toObject();
                added(Step {&at, Step::Identity, strKey, element.value(strKey)}, element);
            }
        }
    }

    void positionalArray(const Step &at, const QJsonArray &before, const QJsonArray &after)
    {
        const int nCommon = qMin(before.size(), after.size());
        for (int i = 0; i < nCommon; ++i)
            value(Step {&at, Step::Index, QString(), QJsonValue(), i}, before.at(i), after.at(i));
        for (int i = nCommon; i < before.size(); ++i)
            removed(Step {&at, Step::Index, QString(), QJsonValue(), i}, before.at(i));
        for (int i = nCommon; i < after.size(); ++i)
            added(Step {&at, Step::Index, QString(), QJsonValue(), i}, after.at(i));
    }

    QVector<Change> &m_changes;
};

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
    Walker(lineChanges).array(Step {nullptr, Step::Root, QStringLiteral("lines")}, linesBefore, linesAfter);
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
    Walker(diff.changes).object(Step(), factsBefore, factsAfter);
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

QString kindKey(Kind kind)
{
    switch (kind) {
    case Kind::ItemAdded:
        return QStringLiteral("itemAdded");
    case Kind::ItemRemoved:
        return QStringLiteral("itemRemoved");
    case Kind::GradeChanged:
        return QStringLiteral("gradeChanged");
    case Kind::FactAdded:
        return QStringLiteral("factAdded");
    case Kind::FactRemoved:
        return QStringLiteral("factRemoved");
    case Kind::FactChanged:
        return QStringLiteral("factChanged");
    case Kind::LineAdded:
        return QStringLiteral("lineAdded");
    case Kind::LineRemoved:
        return QStringLiteral("lineRemoved");
    }
    return QString();
}

QString kindText(Kind kind)
{
    switch (kind) {
    case Kind::ItemAdded:
        return QCoreApplication::translate("VxReportDiff", "item added");
    case Kind::ItemRemoved:
        return QCoreApplication::translate("VxReportDiff", "item removed");
    case Kind::GradeChanged:
        return QCoreApplication::translate("VxReportDiff", "grade changed");
    case Kind::FactAdded:
        return QCoreApplication::translate("VxReportDiff", "added");
    case Kind::FactRemoved:
        return QCoreApplication::translate("VxReportDiff", "removed");
    case Kind::FactChanged:
        return QCoreApplication::translate("VxReportDiff", "changed");
    case Kind::LineAdded:
        return QCoreApplication::translate("VxReportDiff", "line added");
    case Kind::LineRemoved:
        return QCoreApplication::translate("VxReportDiff", "line removed");
    }
    return QString();
}

QString valueText(const QString &strPath, const QJsonValue &value, int nMaxChars)
{
    QString strText;
    if (strPath == QLatin1String("normal") && !value.isUndefined())
        strText = value.isNull() ? QCoreApplication::translate("VxReportDiff", "no grade")
            : value.toBool()     ? QCoreApplication::translate("VxReportDiff", "normal")
                                 : QCoreApplication::translate("VxReportDiff", "exceptional");
    else if (strPath == QLatin1String("available") && value.isBool())
        strText = value.toBool() ? QCoreApplication::translate("VxReportDiff", "available")
                                 : QCoreApplication::translate("VxReportDiff", "not available");
    else if (strPath == QLatin1String("severity") && value.isNull())
        strText = QCoreApplication::translate("VxReportDiff", "no grade");
    else if (strPath.isEmpty() && value.isObject()) {
        // An item's grade, for an item only one report has.
        const QJsonObject grade = value.toObject();
        if (!grade.value(QStringLiteral("available")).toBool())
            strText = QCoreApplication::translate("VxReportDiff", "not available");
        else if (grade.value(QStringLiteral("normal")).toBool())
            strText = QCoreApplication::translate("VxReportDiff", "normal");
        else
            strText = QCoreApplication::translate("VxReportDiff", "exceptional, severity %1")
                          .arg(grade.value(QStringLiteral("severity")).toInt());
    } else if (!value.isUndefined())
        strText = compactJson(value);
    if (nMaxChars > 0 && strText.size() > nMaxChars)
        strText = strText.left(nMaxChars - 1) + QChar(0x2026);
    return strText;
}

QString summaryText(const Result &result)
{
    if (result.isEmpty())
        return QCoreApplication::translate("VxReportDiff", "No differences.");
    return QCoreApplication::translate("VxReportDiff", "Items that differ: %1. Grade changes: %2.")
        .arg(result.items.size())
        .arg(result.gradeChangeCount());
}

QString text(const Result &result, const QString &strBefore, const QString &strAfter)
{
    QString strText = QCoreApplication::translate("VxReportDiff", "Before: %1").arg(strBefore) + QLatin1Char('\n')
        + QCoreApplication::translate("VxReportDiff", "After: %1").arg(strAfter) + QStringLiteral("\n\n");
    for (const ItemDiff &item : result.items) {
        strText += QStringLiteral("[%1] %2").arg(item.nItem).arg(item.strName);
        if (item.bGradeChanged)
            strText += QStringLiteral("  (") + QCoreApplication::translate("VxReportDiff", "grade changed")
                + QLatin1Char(')');
        strText += QLatin1Char('\n');
        for (const Change &change : item.changes) {
            strText += QStringLiteral("    ") + kindText(change.kind);
            if (change.kind == Kind::ItemAdded || change.kind == Kind::ItemRemoved) {
                strText += QStringLiteral(": ")
                    + valueText(QString(), change.after.isUndefined() ? change.before : change.after);
            } else {
                strText += QLatin1Char(' ') + change.strPath + QStringLiteral(": ");
                if (change.before.isUndefined())
                    strText += valueText(change.strPath, change.after);
                else if (change.after.isUndefined())
                    strText += valueText(change.strPath, change.before);
                else
                    strText += valueText(change.strPath, change.before) + QStringLiteral(" -> ")
                        + valueText(change.strPath, change.after);
            }
            strText += QLatin1Char('\n');
        }
        strText += QLatin1Char('\n');
    }
    return strText + summaryText(result) + QLatin1Char('\n');
}

QJsonObject json(const Result &result, const QString &strBefore, const QString &strAfter)
{
    QJsonArray items;
    for (const ItemDiff &item : result.items) {
        QJsonArray changes;
        for (const Change &change : item.changes) {
            QJsonObject object;
            object.insert(QStringLiteral("kind"), kindKey(change.kind));
            if (!change.strPath.isEmpty())
                object.insert(QStringLiteral("path"), change.strPath);
            if (!change.before.isUndefined())
                object.insert(QStringLiteral("before"), change.before);
            if (!change.after.isUndefined())
                object.insert(QStringLiteral("after"), change.after);
            changes.append(object);
        }
        QJsonObject object;
        object.insert(QStringLiteral("id"), item.nItem);
        object.insert(QStringLiteral("name"), item.strName);
        object.insert(QStringLiteral("gradeChanged"), item.bGradeChanged);
        object.insert(QStringLiteral("changes"), changes);
        items.append(object);
    }
    QJsonObject root;
    root.insert(QStringLiteral("format"), QStringLiteral("vetrix-compare"));
    root.insert(QStringLiteral("formatVersion"), 1);
    root.insert(QStringLiteral("before"), strBefore);
    root.insert(QStringLiteral("after"), strAfter);
    root.insert(QStringLiteral("gradesDiffer"), result.gradesDiffer());
    root.insert(QStringLiteral("items"), items);
    return root;
}

} // namespace VxReportDiff
