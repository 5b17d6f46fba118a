#include "vxrepaircli.h"

#include "cdetectinfo.h"
#include "journaledrepairs.h"
#include "systemroot.h"
#include "vxapply.h"
#include "vxitems.h"
#include "vxprobetable.h"
#include "vxrepair.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace {

enum Exit { ExitDone = 0, ExitChanges = 1, ExitUsage = 2 };

QJsonObject changeJson(const VxChange &change)
{
    return QJsonObject {{QStringLiteral("item"), qint64(change.uItem)}, {QStringLiteral("kind"), change.strKind},
        {QStringLiteral("target"), change.strTarget}, {QStringLiteral("old"), change.strOld},
        {QStringLiteral("new"), change.strNew}};
}

QJsonObject resultJson(const VxChangeResult &result)
{
    QJsonObject object = changeJson(result.change);
    object.insert(QStringLiteral("result"), result.strResult);
    if (!result.strReason.isEmpty())
        object.insert(QStringLiteral("reason"), result.strReason);
    return object;
}

QString valueText(const QString &strValue)
{
    return strValue.isEmpty() ? QCoreApplication::translate("VxCheck", "(absent)")
                              : QLatin1Char('"') + strValue + QLatin1Char('"');
}

QString changeText(const VxChange &change)
{
    return QStringLiteral("  [%1] %2 %3: %4 -> %5\n")
        .arg(change.uItem)
        .arg(change.strKind, change.strTarget, valueText(change.strOld), valueText(change.strNew));
}

QString planText(const VxPlan &plan)
{
    if (plan.isEmpty())
        return QCoreApplication::translate("VxCheck", "Nothing to change.") + QLatin1Char('\n');
    QString strText
        = QCoreApplication::translate("VxCheck", "Planned changes: %1").arg(plan.size()) + QLatin1Char('\n');
    for (const VxChange &change : plan)
        strText += changeText(change);
    return strText;
}

bool isMade(const VxChangeResult &result)
{
    return result.strResult == QLatin1String(VxJournalResult::Done)
        || result.strResult == QLatin1String(VxJournalResult::Unchanged);
}

bool wanted(quint32 uItem, const QString &strIds)
{
    if (SystemRoot::unreadableItems() & uItem)
        return false;
    if (strIds.isEmpty())
        return true;
    for (const QString &strId : strIds.split(QLatin1Char(','))) {
        if (strId.trimmed().toUInt() == uItem)
            return true;
    }
    return false;
}

} // namespace

VxPlan VxRepairCli::plannedRepairs() const
{
    // Each item checked afresh, then planned from what its check found.
    VxPlan plan;
    const VxProbeTable table = defaultProbeTable();
    for (quint32 uItem : repairableItems()) {
        const VxItemProbes probes = table.probes(uItem);
        if (!wanted(uItem, m_strRepairIds) || !table.canDetect(int(uItem)))
            continue;
        const std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(int(uItem)));
        probes.check(*pInfo);
        plan += probes.plan(*pInfo);
    }
    return plan;
}

int VxRepairCli::report(bool bJson, const QString &strOpt, const QString &strUndoes, const VxPlan &plan,
    const QVector<VxChangeResult> &vecResults, const Printer &printOut)
{
    int nMade = 0;
    int nFailed = 0;
    QJsonArray applied;
    QJsonArray failed;
    QString strFailed;
    for (const VxChangeResult &result : vecResults) {
        if (isMade(result)) {
            ++nMade;
            applied << resultJson(result);
        } else {
            ++nFailed;
            failed << resultJson(result);
            strFailed += changeText(result.change) + QStringLiteral("    ")
                + QCoreApplication::translate("VxCheck", "failed: %1").arg(result.strReason) + QLatin1Char('\n');
        }
    }
    if (bJson) {
        QJsonArray planned;
        for (const VxChange &change : plan)
            planned << changeJson(change);
        QJsonObject object {{QStringLiteral("dryRun"), m_bDryRun}, {QStringLiteral("plan"), planned},
            {QStringLiteral("applied"), applied}, {QStringLiteral("failed"), failed}};
        if (!strOpt.isEmpty())
            object.insert(QStringLiteral("optimisation"), strOpt);
        if (!strUndoes.isEmpty())
            object.insert(QStringLiteral("undoes"), strUndoes);
        printOut(QString::fromUtf8(QJsonDocument(object).toJson()));
    } else {
        QString strText = planText(plan);
        if (!m_bDryRun && !plan.isEmpty()) {
            strText += QCoreApplication::translate("VxCheck", "Made: %1, failed: %2.").arg(nMade).arg(nFailed)
                + QLatin1Char('\n') + strFailed;
            if (nMade > 0 && strUndoes.isEmpty())
                strText += QCoreApplication::translate(
                               "VxCheck", "Optimisation %1 is journaled; undo it with: vetrix-check --undo=%1")
                               .arg(strOpt)
                    + QLatin1Char('\n');
        }
        printOut(strText);
    }
    if (m_bDryRun)
        return plan.isEmpty() ? ExitDone : ExitChanges;
    return nFailed > 0 ? ExitChanges : ExitDone;
}

int VxRepairCli::runRepair(bool bJson, const Printer &printOut)
{
    const VxPlan plan = plannedRepairs();
    if (m_bDryRun || plan.isEmpty())
        return report(bJson, QString(), QString(), plan, {}, printOut);
    VxJournal journal;
    const QString strOpt = VxApply::newOptimisationId();
    const QVector<VxChangeResult> vecResults = VxApply::run(strOpt, plan, VxApply::systemRoute(journal), journal);
    return report(bJson, strOpt, QString(), plan, vecResults, printOut);
}

int VxRepairCli::runUndo(bool bJson, const Printer &printOut, const Printer &printErr)
{
    const QVector<VxOptimisation> vecOpts = VxJournal().optimisations();
    QString strUndone;
    if (m_strUndo.isEmpty()) {
        strUndone = VxApply::lastUndoable(vecOpts);
    } else {
        bool bNumber = false;
        const int nIndex = m_strUndo.toInt(&bNumber, 10);
        if (bNumber && nIndex >= 1 && nIndex <= vecOpts.size())
            strUndone = vecOpts.at(nIndex - 1).strOpt;
        for (const VxOptimisation &opt : vecOpts) {
            if (opt.strOpt == m_strUndo)
                strUndone = opt.strOpt;
        }
        if (strUndone.isEmpty()) {
            printErr(QCoreApplication::translate("VxCheck", "No optimisation \"%1\" in the journal: see --journal.")
                         .arg(m_strUndo));
            return ExitUsage;
        }
    }
    const JournaledRepairs::UndoRun run = JournaledRepairs::undo(strUndone, m_bDryRun);
    if (run.strUndone.isEmpty()) {
        if (!bJson)
            printOut(QCoreApplication::translate("VxCheck", "Nothing to undo.") + QLatin1Char('\n'));
        else
            return report(bJson, QString(), QString(), run.plan, {}, printOut);
        return ExitDone;
    }
    if (!bJson)
        printOut(QCoreApplication::translate("VxCheck", "Undoing optimisation %1.").arg(run.strUndone)
            + QLatin1Char('\n'));
    return report(bJson, run.strOpt, run.strUndone, run.plan, run.vecResults, printOut);
}

int VxRepairCli::runJournal(bool bJson, const Printer &printOut)
{
    const QVector<VxOptimisation> vecOpts = VxJournal().optimisations();
    QJsonArray list;
    QString strText;
    for (int i = 0; i < vecOpts.size(); ++i) {
        const VxOptimisation &opt = vecOpts.at(i);
        QJsonArray changes;
        int nMade = 0;
        for (const VxJournalEntry &entry : opt.vecChanges) {
            changes << resultJson(VxChangeResult {entry.change, entry.strResult, entry.strReason});
            nMade += entry.strResult == QLatin1String(VxJournalResult::Done) ? 1 : 0;
        }
        QJsonObject object {{QStringLiteral("number"), i + 1}, {QStringLiteral("optimisation"), opt.strOpt},
            {QStringLiteral("time"), opt.time.toString(Qt::ISODate)}, {QStringLiteral("undone"), opt.bUndone},
            {QStringLiteral("changes"), changes}};
        if (!opt.strUndoes.isEmpty())
            object.insert(QStringLiteral("undoes"), opt.strUndoes);
        list << object;
        strText += QStringLiteral("%1  %2  %3  ").arg(i + 1).arg(opt.strOpt, opt.time.toString(Qt::ISODate))
            + QCoreApplication::translate("VxCheck", "%1 of %2 changes made").arg(nMade).arg(opt.vecChanges.size());
        if (!opt.strUndoes.isEmpty())
            strText += QStringLiteral("  ") + QCoreApplication::translate("VxCheck", "(undoes %1)").arg(opt.strUndoes);
        else if (opt.bUndone)
            strText += QStringLiteral("  ") + QCoreApplication::translate("VxCheck", "(undone)");
        strText += QLatin1Char('\n');
        for (const VxJournalEntry &entry : opt.vecChanges)
            strText += changeText(entry.change).chopped(1) + QStringLiteral("  ") + entry.strResult + QLatin1Char('\n');
    }
    if (bJson)
        printOut(QString::fromUtf8(QJsonDocument(QJsonObject {{QStringLiteral("journal"), list}}).toJson()));
    else
        printOut(vecOpts.isEmpty() ? QCoreApplication::translate("VxCheck", "The journal is empty.") + QLatin1Char('\n')
                                   : strText);
    return ExitDone;
}

int VxRepairCli::run(bool bJson, const Printer &printOut, const Printer &printErr)
{
    if (m_bJournal)
        return runJournal(bJson, printOut);
    if (m_bUndo)
        return runUndo(bJson, printOut, printErr);
    return runRepair(bJson, printOut);
}
