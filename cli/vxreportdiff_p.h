#pragma once

// Shared by the parts of the report comparison: vxreportdiff.cpp reads and
// matches the reports, vxreportdiffwalk.cpp compares facts path by path,
// vxreportdifftext.cpp writes the result out.
#include "vxreportdiff.h"

#include <QJsonArray>

namespace VxReportDiff {
namespace Detail {

// Every difference between two objects as FactAdded, FactRemoved or
// FactChanged, appended to changes; paths start at the objects' own keys.
void compareObjects(const QJsonObject &before, const QJsonObject &after, QVector<Change> &changes);
// The same for two arrays that stand at strPath.
void compareArrays(const QString &strPath, const QJsonArray &before, const QJsonArray &after, QVector<Change> &changes);

// A value as compact JSON; a scalar as its JSON literal (strings quoted and
// escaped).
QString compactJson(const QJsonValue &value);

} // namespace Detail
} // namespace VxReportDiff
