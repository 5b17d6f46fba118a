// The question before an optimisation pass: what each repair would change.
#include "vxonekeywidget.h"

#include "custommessagebox.h"
#include "vxitems.h"
#include "vxoperatethread.h"

namespace {
VxOneKeyWidget::ConfirmOptimization &confirmHook()
{
    static VxOneKeyWidget::ConfirmOptimization confirm;
    return confirm;
}

bool askWithMessageBox(QWidget *pParent, const QStringList &listChanges)
{
    const int nClicked = CustomMessageBox::question(pParent,
        VxOneKeyWidget::tr("Optimization will make the following changes. Continue?"),
        VxOneKeyWidget::tr("Optimize Diagnosis"), CustomMessageBox::Ok | CustomMessageBox::Cancel,
        listChanges.join(QLatin1Char('\n')));
    return nClicked == CustomMessageBox::Ok;
}
} // namespace

void VxOneKeyWidget::setConfirmOptimization(ConfirmOptimization confirm)
{
    confirmHook() = std::move(confirm);
}

QStringList VxOneKeyWidget::optimizationPlanLines() const
{
    QStringList listChanges;
    QStringList listUnplanned;
    if (!m_pRun || !m_pThread)
        return listChanges;
    const quint32 uExceptions = m_pRun->exceptionMask();
    const VxProbeTable &table = m_pThread->probeTable();
    const QMap<int, CDetectInfo *> mapRecords = m_pThread->allRecords();
    const auto value
        = [](const QString &strValue, const char *pAbsent) { return strValue.isEmpty() ? tr(pAbsent) : strValue; };
    for (auto it = mapRecords.cbegin(); it != mapRecords.cend(); ++it) {
        const int nItem = it.key();
        if (!(uExceptions & quint32(nItem)) || !it.value() || !table.canOptimize(nItem))
            continue;
        const VxItemProbes probes = table.probes(quint32(nItem));
        const VxPlan plan = probes.plan ? probes.plan(*it.value()) : VxPlan();
        if (plan.isEmpty()) {
            listUnplanned << tr("%1: will be repaired").arg(VxItems::itemName(nItem));
            continue;
        }
        for (const VxChange &change : plan) {
            listChanges << tr("%1: %2: %3 → %4")
                               .arg(VxItems::itemName(nItem), change.strTarget,
                                   value(change.strOld, QT_TR_NOOP("(not set)")),
                                   value(change.strNew, QT_TR_NOOP("(removed)")));
        }
    }
    return listChanges + listUnplanned;
}

bool VxOneKeyWidget::confirmOptimization() const
{
    const QStringList listChanges = optimizationPlanLines();
    QWidget *pParent = const_cast<VxOneKeyWidget *>(this);
    if (confirmHook())
        return confirmHook()(pParent, listChanges);
    return askWithMessageBox(pParent, listChanges);
}
