// The report comparison written out: the words of the change kinds, values
// as one line of text, and the result as readable text or as JSON.
#include "vxreportdiff_p.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace VxReportDiff {

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
        strText = Detail::compactJson(value);
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
