#include "vxcurrentreport.h"

#include "vxcheckreport.h"
#include "vxitems.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"
#include "vxversion.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSaveFile>

namespace VxCurrentReport {

QString notReadyReason(const VxOneKeyWidget &page)
{
    if (!page.isWorkerIdle())
        return QCoreApplication::translate(
            "VxMainWindow", "The diagnosis is still running. Wait until it has finished.");
    if (page.state() < VxOneKeyWidget::DetectFinished || !page.resultArea() || !page.resultArea()->isRunFinished())
        return QCoreApplication::translate("VxMainWindow", "No diagnosis has run yet. Start the diagnosis first.");
    return QString();
}

QJsonObject json(const VxOneKeyWidget &page)
{
    const VxOneKeyResultTree *pTree = page.resultArea() ? page.resultArea()->tree() : nullptr;
    const VxOperateThread *pThread = page.worker();
    quint32 uMask = 0;
    for (int nGroup : VxItems::groups()) {
        if (VxOneKeyWidget::selectedGroups() & nGroup)
            uMask |= VxOneKeyWidget::groupMask(nGroup);
    }
    QVector<VxCheckItem> items;
    for (int nItem : VxCheckReport::reportableItems()) {
        if (!(uMask & quint32(nItem)))
            continue;
        VxCheckItem item;
        item.nItem = nItem;
        item.pInfo = pTree ? pTree->record(nItem) : nullptr;
        item.bUnreadable = !item.pInfo && pThread && pThread->probeTable().isUnreadable(nItem);
        items << item;
    }
    QJsonObject report = VxCheckReport::json(items, false);
    // The window does not set the application's version; the report names
    // the program's own.
    report.insert(QStringLiteral("version"), VxVersion::defaultVersion());
    return report;
}

bool write(const QString &strPath, const QJsonObject &report)
{
    if (strPath.isEmpty())
        return false;
    QSaveFile file(strPath);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = QJsonDocument(report).toJson();
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace VxCurrentReport
