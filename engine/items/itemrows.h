#pragma once

#include "vxitemregistry.h"

#include <QCoreApplication>

// The rows of each group, defined beside the texts and facts of their items.
QVector<VxItemRow> sdkItemRows();
QVector<VxItemRow> driverItemRows();
QVector<VxItemRow> systemItemRows();
// The camera host tuning rows (items 4096 to 32768, group 8) and the
// group's name; not yet listed in the registry.
QVector<VxItemRow> tuningItemRows();
const char *tuningGroupSourceName();

namespace VxItemText {
// A text of the result view (context "VxOneKeyResult").
inline QString translated(const char *pSource)
{
    return QCoreApplication::translate("VxOneKeyResult", pSource);
}
// The line "    <dir>/<name>" for each directory of each name.
void appendDirectoryLines(QStringList &lines, const QMap<QString, QStringList> &mapFound);
} // namespace VxItemText

namespace VxItemFacts {
QJsonObject stringMap(const QMap<QString, QString> &map);
QJsonObject listMap(const QMap<QString, QStringList> &map);
QJsonObject intMap(const QMap<QString, int> &map);
// For items whose outcome is all there is.
inline QJsonObject none(const CDetectInfo &)
{
    return QJsonObject();
}
} // namespace VxItemFacts
