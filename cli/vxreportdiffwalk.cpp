// The fact walk of the report comparison: two JSON values compared key by
// key and element by element, each difference written with the path where
// it stands. Arrays of objects are matched by an identifying key when their
// elements have one, lists of plain values as sets with repeats.
#include "vxreportdiff_p.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

namespace VxReportDiff {

namespace {
// Keys that name an element of an array of objects, tried in this order: the
// first that every element of both arrays has, with a value unique in each
// array, matches the elements; otherwise they are matched by position.
const char *const kIdentityKeys[]
    = {"portPath", "port", "path", "pciAddress", "address", "busNumber", "number", "id", "name", "serial"};

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

QString keyPath(const QString &strPath, const QString &strKey)
{
    if (isIdentifier(strKey))
        return strPath.isEmpty() ? strKey : strPath + QLatin1Char('.') + strKey;
    return strPath + QLatin1Char('[') + Detail::compactJson(strKey) + QLatin1Char(']');
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

} // namespace

namespace Detail {

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

void compareObjects(const QJsonObject &before, const QJsonObject &after, QVector<Change> &changes)
{
    Walker(changes).object(Step(), before, after);
}

void compareArrays(const QString &strPath, const QJsonArray &before, const QJsonArray &after, QVector<Change> &changes)
{
    Walker(changes).array(Step {nullptr, Step::Root, strPath}, before, after);
}

} // namespace Detail

} // namespace VxReportDiff
