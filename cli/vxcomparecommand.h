#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>

// vetrix-check --compare A.json B.json: reads both reports ("-" runs the
// diagnosis now instead), prints what differs as text or JSON and tells by its
// exit status whether a grade differs.
namespace VxCompareCommand {

struct Options
{
    QStringList reports; // the two positional arguments
    bool bJson = false; // --format json
    quint32 uMask = 0xFFFFFFFFu; // --items, or every item
    QString strOutput; // --output, or empty for stdout
};

// Runs the comparison; returns the exit status: 0 no grade differs, 1 a
// grade differs, 2 usage error or a report that cannot be read (with the
// reason on stderr). freshReport runs a diagnosis and returns its report.
int run(const Options &options, const std::function<QJsonObject()> &freshReport);

} // namespace VxCompareCommand
