// Fuzz target for the report comparison: the input is cut at a line "%%"
// into two reports; each is checked as a file given to --compare would be,
// and when both pass they are compared and the comparison is written as text
// and as JSON. Any crash, hang or sanitizer report is a bug; a report that
// fails the check must say why.
#include "vxreportdiff.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    static int nArgc = 1;
    static char szName[] = "fuzz_reportdiff";
    static char *argv[] = {szName, nullptr};
    static QCoreApplication *s_pApp = new QCoreApplication(nArgc, argv);
    (void)s_pApp;

    const QByteArray input(reinterpret_cast<const char *>(pData), int(nSize));
    const int nCut = input.indexOf("\n%%\n");
    const QByteArray first = nCut < 0 ? input : input.left(nCut);
    const QByteArray second = nCut < 0 ? input : input.mid(nCut + 4);

    QJsonObject before;
    QJsonObject after;
    QString strError;
    if (!VxReportDiff::parseReport(first, QStringLiteral("a"), &before, &strError)) {
        if (strError.isEmpty())
            std::abort();
        return 0;
    }
    strError.clear();
    if (!VxReportDiff::parseReport(second, QStringLiteral("b"), &after, &strError)) {
        if (strError.isEmpty())
            std::abort();
        return 0;
    }
    const VxReportDiff::Result result = VxReportDiff::compare(before, after);
    const QString strText = VxReportDiff::text(result, QStringLiteral("a"), QStringLiteral("b"));
    const QByteArray json = QJsonDocument(VxReportDiff::json(result, QStringLiteral("a"), QStringLiteral("b"))).toJson();
    // Comparing a report with itself finds nothing.
    if (strText.isEmpty() || json.isEmpty() || !VxReportDiff::compare(before, before).isEmpty())
        std::abort();
    return 0;
}
