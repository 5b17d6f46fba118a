#include "vxapply.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QRegularExpression>

namespace VxApply {

namespace {

VxJournalEntry entryOf(const QString &strOpt, const QString &strUndoes, int nSeq, const VxChange &change)
{
    VxJournalEntry entry;
    entry.time = QDateTime::currentDateTimeUtc();
    entry.strOpt = strOpt;
    entry.strUndoes = strUndoes;
    entry.nSeq = nSeq;
    entry.change = change;
    return entry;
}

QString statusReason(VxRepairStatus status)
{
    switch (status) {
    case VxRepairStatus::Done:
        return QStringLiteral("not reported by vetrix-helper");
    case VxRepairStatus::NotAuthorized:
        return QStringLiteral("not authorised");
    case VxRepairStatus::HelperMissing:
        return QStringLiteral("vetrix-helper or pkexec not found");
    case VxRepairStatus::Refused:
        return QStringLiteral("refused by vetrix-helper");
    case VxRepairStatus::OtherSystem:
        return QStringLiteral("another system root");
    case VxRepairStatus::Failed:
    case VxRepairStatus::NotFound:
        break;
    }
    return QStringLiteral("vetrix-helper failed");
}

} // namespace

QString newOptimisationId()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")) + QLatin1Char('-')
        + QStringLiteral("%1").arg(QRandomGenerator::global()->bounded(0x1000000), 6, 16, QLatin1Char('0'));
}

bool isValidOptimisationId(const QString &strOpt)
{
    static const QRegularExpression re(QStringLiteral("^[0-9]{8}T[0-9]{6}Z-[0-9a-f]{6}$"));
    return re.match(strOpt).hasMatch();
}

QVector<VxChangeResult> apply(const QString &strOpt, const VxPlan &plan, const VxAppliers &appliers, VxJournal &journal,
    const QString &strUndoes, const StageHook &hook, const NetAdapters::LinkSource &links)
{
    QVector<VxChangeResult> vecResults;
    QString strJournalError;
    for (int nSeq = 0; nSeq < plan.size(); ++nSeq) {
        const VxChange &change = plan.at(nSeq);
        VxChangeResult result {change, QLatin1String(VxJournalResult::Failed), QString()};
        if (!strJournalError.isEmpty()) {
            result.strReason = strJournalError;
            vecResults << result;
            continue;
        }
        VxJournalEntry entry = entryOf(strOpt, strUndoes, nSeq, change);
        QString strCurrent;
        const auto itApplier = appliers.constFind(change.strKind);
        if (!isValidChange(change, &result.strReason, links)) {
            // refused: the reason is set
        } else if (itApplier == appliers.constEnd() || !itApplier->read || !itApplier->apply) {
            result.strReason = QStringLiteral("no applier for ") + change.strKind;
        } else if (!itApplier->read(change, &strCurrent)) {
            result.strReason = QStringLiteral("cannot read the current value");
        } else if (strCurrent == change.strNew) {
            result.strResult = QLatin1String(VxJournalResult::Unchanged);
        } else if (strCurrent != change.strOld) {
            result.strReason = QStringLiteral("changed since planned; now: ") + strCurrent;
        } else {
            // The pending line goes to disk before the change is made.
            entry.strResult = QLatin1String(VxJournalResult::Pending);
            if (!journal.append(entry, &strJournalError)) {
                result.strReason = strJournalError;
                vecResults << result;
                continue;
            }
            if (hook)
                hook(nSeq, Stage::Pending);
            QString strError;
            const bool bMade = itApplier->apply(change, &strError);
            if (hook)
                hook(nSeq, Stage::Made);
            result.strResult = QLatin1String(bMade ? VxJournalResult::Done : VxJournalResult::Failed);
            result.strReason = strError;
            if (bMade)
                qCInfo(lcVxRepair).noquote()
                    << change.strKind << change.strTarget << "old:" << change.strOld << "new:" << change.strNew;
        }
        entry.time = QDateTime::currentDateTimeUtc();
        entry.strResult = result.strResult;
        entry.strReason = result.strReason;
        journal.append(entry, &strJournalError);
        vecResults << result;
    }
    return vecResults;
}

QString lastUndoable(const QVector<VxOptimisation> &vecOpts)
{
    for (int i = vecOpts.size() - 1; i >= 0; --i) {
        const VxOptimisation &opt = vecOpts.at(i);
        if (!opt.strUndoes.isEmpty() || opt.bUndone)
            continue;
        for (const VxJournalEntry &entry : opt.vecChanges) {
            if (entry.strResult == QLatin1String(VxJournalResult::Done)
                || entry.strResult == QLatin1String(VxJournalResult::Interrupted))
                return opt.strOpt;
        }
    }
    return QString();
}

bool undoPlan(const QVector<VxOptimisation> &vecOpts, const QString &strOpt, VxPlan *pPlan)
{
    for (const VxOptimisation &opt : vecOpts) {
        if (opt.strOpt != strOpt)
            continue;
        pPlan->clear();
        for (int i = opt.vecChanges.size() - 1; i >= 0; --i) {
            const VxJournalEntry &entry = opt.vecChanges.at(i);
            if (entry.strResult != QLatin1String(VxJournalResult::Done)
                && entry.strResult != QLatin1String(VxJournalResult::Interrupted))
                continue;
            VxChange change = entry.change;
            std::swap(change.strOld, change.strNew);
            pPlan->append(change);
        }
        return true;
    }
    return false;
}

QStringList applyArguments(const QString &strOpt, const VxPlan &plan)
{
    QStringList listArgs {strOpt};
    for (const VxChange &change : plan)
        listArgs << QString::number(change.uItem) << change.strKind << change.strTarget << change.strOld
                 << change.strNew;
    return listArgs;
}

QVector<VxChangeResult> run(const QString &strOpt, const VxPlan &plan, const Route &route, VxJournal &journal,
    const QString &strUndoes, VxRepairStatus *pHelperStatus)
{
    QVector<VxChangeResult> vecResults;
    if (pHelperStatus)
        *pHelperStatus = VxRepairStatus::Done;
    if (route.bInProcess) {
        QString strError;
        if (journal.openForWriting(&strError))
            return apply(strOpt, plan, route.appliers, journal, strUndoes, StageHook(), route.links);
        for (const VxChange &change : plan)
            vecResults << VxChangeResult {change, QLatin1String(VxJournalResult::Failed), strError};
        return vecResults;
    }
    VxRepairStatus status = VxRepairStatus::HelperMissing;
    if (route.runHelper) {
        status = strUndoes.isEmpty() ? route.runHelper(QStringLiteral("apply"), applyArguments(strOpt, plan))
                                     : route.runHelper(QStringLiteral("undo"), {strOpt, strUndoes});
    }
    if (pHelperStatus)
        *pHelperStatus = status;
    // What the helper did is in the journal.
    QVector<VxJournalEntry> vecDone;
    for (const VxOptimisation &opt : journal.optimisations()) {
        if (opt.strOpt == strOpt)
            vecDone = opt.vecChanges;
    }
    for (int nSeq = 0; nSeq < plan.size(); ++nSeq) {
        VxChangeResult result {plan.at(nSeq), QLatin1String(VxJournalResult::Failed), statusReason(status)};
        for (const VxJournalEntry &entry : vecDone) {
            if (entry.nSeq == nSeq) {
                result = VxChangeResult {entry.change, entry.strResult, entry.strReason};
            }
        }
        vecResults << result;
    }
    return vecResults;
}

} // namespace VxApply
