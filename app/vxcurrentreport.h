#pragma once

#include <QJsonObject>
#include <QString>

class VxOneKeyWidget;

// The page's diagnosis as the JSON report vetrix-check writes (the same
// builder), for saving it and comparing it with a saved one.
namespace VxCurrentReport {

// Empty when the page holds a finished diagnosis that no pass is working on;
// otherwise the sentence that says why there is nothing to report yet.
QString notReadyReason(const VxOneKeyWidget &page);
// The report of the items the page's run covered: their records as they are
// now (after any repairs), unavailable items marked so.
QJsonObject json(const VxOneKeyWidget &page);
// Writes the report as indented UTF-8 JSON; false (nothing written) when the
// file cannot be written.
bool write(const QString &strPath, const QJsonObject &report);

} // namespace VxCurrentReport
