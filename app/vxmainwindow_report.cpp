// File > Compare with Report and File > Export JSON Report: the page's
// diagnosis as a JSON report, saved or compared with a saved one.
#include "vxmainwindow.h"

#include "custom.h"
#include "custommessagebox.h"
#include "customsavedonehintdlg.h"
#include "luinterface.h"
#include "vxcurrentreport.h"
#include "vxonekeywidget.h"
#include "vxreportcomparedlg.h"
#include "vxreportdiff.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QLoggingCategory>

#include <exception>

namespace {
Q_LOGGING_CATEGORY(lcReport, "vetrix.app.report")

// Where the exports go: the folder File > Export proposes for the log.
QString exportFolder()
{
    return LuInterface::userDataPath() + QStringLiteral("/Data/VetrixTool/");
}
} // namespace

QString VxMainWindow::askReportPath(const QString &strDir)
{
    return QFileDialog::getOpenFileName(this, tr("Open Report"), strDir,
        tr("JSON Report") + QStringLiteral("(*.json);;") + tr("All Files") + QStringLiteral("(*)"));
}

QString VxMainWindow::askJsonReportPath(const QString &strDir, const QString &strName)
{
    return Custom::getSaveFileName(this, tr("Export JSON Report"), strDir, strName, QStringLiteral("json"),
        tr("JSON Report") + QStringLiteral("(*.json)"));
}

void VxMainWindow::showComparison(VxReportCompareDlg &dialog)
{
    dialog.exec();
}

void VxMainWindow::compareWithReport()
{
    if (!m_pPage)
        return;
    const QString strWhyNot = VxCurrentReport::notReadyReason(*m_pPage);
    if (!strWhyNot.isEmpty()) {
        CustomMessageBox::information(this, strWhyNot, tr("Prompt"));
        return;
    }
    const QString strPath = askReportPath(exportFolder());
    if (strPath.isEmpty())
        return;
    QJsonObject saved;
    QString strError;
    if (!VxReportDiff::readReport(strPath, &saved, &strError)) {
        CustomMessageBox::warning(this, strError, tr("Prompt"));
        return;
    }
    // The worker is idle (checked above) and a modal file dialog kept the
    // page from starting a new run meanwhile.
    const VxReportDiff::Result result = VxReportDiff::compare(saved, VxCurrentReport::json(*m_pPage));
    try {
        VxReportCompareDlg dialog(result, strPath, this);
        showComparison(dialog);
    } catch (const std::exception &error) {
        qCWarning(lcReport) << "cannot build the comparison dialog:" << error.what();
    }
}

void VxMainWindow::exportJsonReport()
{
    if (!m_pPage)
        return;
    const QString strWhyNot = VxCurrentReport::notReadyReason(*m_pPage);
    if (!strWhyNot.isEmpty()) {
        CustomMessageBox::information(this, strWhyNot, tr("Prompt"));
        return;
    }
    const QString strDir = exportFolder();
    QDir().mkpath(strDir);
    // The same name File > Export proposes for the log, so that the two
    // files of one diagnosis sit side by side.
    const QString strName
        = QStringLiteral("Log_") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_hhmmss"));
    const QString strPath = askJsonReportPath(strDir, strName);
    if (strPath.isEmpty())
        return;
    if (!VxCurrentReport::write(strPath, VxCurrentReport::json(*m_pPage))) {
        CustomMessageBox::warning(this, tr("The file cannot be written."), tr("Prompt"));
        return;
    }
    CustomSaveDoneHintDlg hint(strPath, tr("The JSON report is exported."), this);
    hint.exec();
}
