#include "changeverbs.h"

#include "helperverbs.h"

namespace ChangeVerbs {

namespace {

constexpr int kFieldsPerChange = 5;
constexpr int kMaxChanges = 256;

bool refuse(QString *pReason, const QString &strReason)
{
    if (pReason)
        *pReason = strReason;
    return false;
}

bool hasOptimisation(const QVector<VxOptimisation> &vecOpts, const QString &strOpt)
{
    for (const VxOptimisation &opt : vecOpts) {
        if (opt.strOpt == strOpt)
            return true;
    }
    return false;
}

int exitOf(const QVector<VxChangeResult> &vecResults)
{
    for (const VxChangeResult &result : vecResults) {
        if (result.strResult != QLatin1String(VxJournalResult::Done)
            && result.strResult != QLatin1String(VxJournalResult::Unchanged))
            return HelperVerbs::ExitFailed;
    }
    return HelperVerbs::ExitDone;
}

int refused(const QString &strReason)
{
    qWarning("vetrix-helper: refused: %s", qPrintable(strReason));
    return HelperVerbs::ExitRefused;
}

} // namespace

VxPlan planOf(const QStringList &listArgs)
{
    VxPlan plan;
    for (int i = 1; i + kFieldsPerChange <= listArgs.size(); i += kFieldsPerChange) {
        plan << VxChange {
            listArgs.at(i).toUInt(), listArgs.at(i + 1), listArgs.at(i + 2), listArgs.at(i + 3), listArgs.at(i + 4)};
    }
    return plan;
}

bool validateApply(const QStringList &listArgs, QString *pReason, const NetAdapters::LinkSource &links)
{
    if (listArgs.size() < 1 + kFieldsPerChange || (listArgs.size() - 1) % kFieldsPerChange != 0)
        return refuse(pReason, QStringLiteral("apply takes OPT and ITEM KIND TARGET OLD NEW per change"));
    if ((listArgs.size() - 1) / kFieldsPerChange > kMaxChanges)
        return refuse(pReason, QStringLiteral("too many changes"));
    if (!VxApply::isValidOptimisationId(listArgs.first()))
        return refuse(pReason, QStringLiteral("not an optimisation id: ") + listArgs.first());
    for (int i = 1; i < listArgs.size(); i += kFieldsPerChange) {
        bool bNumber = false;
        const QString &strItem = listArgs.at(i);
        strItem.toUInt(&bNumber, 10);
        if (!bNumber || strItem.startsWith(QLatin1Char('+')) || strItem.size() > 10)
            return refuse(pReason, QStringLiteral("not an item id: ") + strItem);
    }
    for (const VxChange &change : planOf(listArgs)) {
        if (!VxApply::isValidChange(change, pReason, links))
            return false;
    }
    return true;
}

bool validateUndo(const QStringList &listArgs, QString *pReason)
{
    if (listArgs.isEmpty() || listArgs.size() > 2)
        return refuse(pReason, QStringLiteral("undo takes OPT [UNDONE]"));
    for (const QString &strOpt : listArgs) {
        if (!VxApply::isValidOptimisationId(strOpt))
            return refuse(pReason, QStringLiteral("not an optimisation id: ") + strOpt);
    }
    if (listArgs.size() == 2 && listArgs.at(0) == listArgs.at(1))
        return refuse(pReason, QStringLiteral("an undo cannot undo itself"));
    return true;
}

int runApply(const QStringList &listArgs, const VxAppliers &appliers, VxJournal &journal,
    const VxApply::StageHook &hook, const NetAdapters::LinkSource &links)
{
    QString strReason;
    if (!validateApply(listArgs, &strReason, links))
        return refused(strReason);
    // Checked before the journal is created and again under its lock.
    if (hasOptimisation(journal.optimisations(), listArgs.first()))
        return refused(QStringLiteral("optimisation id already used: ") + listArgs.first());
    if (!journal.openForWriting(&strReason)) {
        qWarning("vetrix-helper: %s", qPrintable(strReason));
        return HelperVerbs::ExitFailed;
    }
    if (hasOptimisation(journal.optimisations(), listArgs.first()))
        return refused(QStringLiteral("optimisation id already used: ") + listArgs.first());
    return exitOf(VxApply::apply(listArgs.first(), planOf(listArgs), appliers, journal, QString(), hook, links));
}

int runUndo(const QStringList &listArgs, const VxAppliers &appliers, VxJournal &journal, const VxApply::StageHook &hook,
    const NetAdapters::LinkSource &links)
{
    QString strReason;
    if (!validateUndo(listArgs, &strReason))
        return refused(strReason);
    // Checked before the journal is opened for writing and again under its lock.
    VxPlan plan;
    QString strUndone;
    for (bool bLocked : {false, true}) {
        if (bLocked && !journal.openForWriting(&strReason)) {
            qWarning("vetrix-helper: %s", qPrintable(strReason));
            return HelperVerbs::ExitFailed;
        }
        const QVector<VxOptimisation> vecOpts = journal.optimisations();
        if (hasOptimisation(vecOpts, listArgs.first()))
            return refused(QStringLiteral("optimisation id already used: ") + listArgs.first());
        strUndone = listArgs.size() == 2 ? listArgs.at(1) : VxApply::lastUndoable(vecOpts);
        if (strUndone.isEmpty())
            return HelperVerbs::ExitDone; // nothing to undo
        if (!VxApply::undoPlan(vecOpts, strUndone, &plan))
            return refused(QStringLiteral("no such optimisation: ") + strUndone);
    }
    return exitOf(VxApply::apply(listArgs.first(), plan, appliers, journal, strUndone, hook, links));
}

} // namespace ChangeVerbs
