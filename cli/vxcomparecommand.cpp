#include "vxcomparecommand.h"

#include "vxreportdiff.h"
#include "vxresulttext.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>

namespace VxCompareCommand {

namespace {
enum ExitCode { ExitSame = 0, ExitGradeDiffers = 1, ExitUsage = 2 };

void printErr(const QString &strText)
{
    std::fputs(qPrintable(strText + QLatin1Char('\n')), stderr);
}

// Reads one side: a report file, or "-" for a diagnosis run now.
bool load(const QString &strSource, const std::function<QJsonObject()> &freshReport, QJsonObject *pReport)
{
    if (strSource == QLatin1String("-")) {
        *pReport = freshReport();
        return true;
    }
    QString strError;
    if (VxReportDiff::readReport(strSource, pReport, &strError))
        return true;
    printErr(strError);
    return false;
}

QString sideName(const QString &strSource)
{
    return strSource == QLatin1String("-") ? QCoreApplication::translate("VxCheck", "a diagnosis run now") : strSource;
}
} // namespace

int run(const Options &options, const std::function<QJsonObject()> &freshReport)
{
    if (options.reports.size() != 2) {
        printErr(QCoreApplication::translate("VxCheck",
            "--compare needs two reports: A.json B.json (- for a "
            "diagnosis run now)."));
        return ExitUsage;
    }
    // Both files are read before a diagnosis runs, so that a wrong name
    // fails at once.
    QJsonObject before;
    QJsonObject after;
    for (int i = 0; i < 2; ++i) {
        const QString &strSource = options.reports.at(i);
        if (strSource != QLatin1String("-") && !load(strSource, freshReport, i == 0 ? &before : &after))
            return ExitUsage;
    }
    for (int i = 0; i < 2; ++i) {
        const QString &strSource = options.reports.at(i);
        if (strSource == QLatin1String("-"))
            load(strSource, freshReport, i == 0 ? &before : &after);
    }

    const VxReportDiff::Result result = VxReportDiff::compare(before, after, options.uMask);
    const QString strBefore = options.reports.at(0);
    const QString strAfter = options.reports.at(1);
    QString strText;
    if (options.bJson)
        strText = QString::fromUtf8(QJsonDocument(VxReportDiff::json(result, strBefore, strAfter)).toJson());
    else
        strText = VxReportDiff::text(result, sideName(strBefore), sideName(strAfter));

    if (!options.strOutput.isEmpty()) {
        // Files get the export's line ends, CR LF, like the report itself.
        if (!options.bJson)
            strText.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
        if (!VxResultText::writeLog(options.strOutput, strText)) {
            printErr(QCoreApplication::translate("VxCheck", "Cannot write \"%1\".").arg(options.strOutput));
            return ExitUsage;
        }
    } else {
        const QByteArray bytes = strText.toUtf8();
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    }
    return result.gradesDiffer() ? ExitGradeDiffers : ExitSame;
}

} // namespace VxCompareCommand
