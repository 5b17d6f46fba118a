// File > Undo Last Optimization: restores what the last journaled
// optimisation changed and says what came back.
#include "vxmainwindow.h"

#include "custommessagebox.h"
#include "journaledrepairs.h"
#include "vxitems.h"
#include "vxjournal.h"
#include "vxonekeywidget.h"

#include <QAction>

void VxMainWindow::updateUndoAction(bool bWorkerIdle)
{
    if (!m_pUndoAction)
        return;
    const bool bJournaled = JournaledRepairs::isJournaled();
    m_pUndoAction->setEnabled(bJournaled && bWorkerIdle);
    m_pUndoAction->setToolTip(
        bJournaled ? QString() : tr("Optimizations are not recorded on this system, so they cannot be undone here."));
}

void VxMainWindow::showUndoOutcome(const QString &strText, const QString &strDetails)
{
    CustomMessageBox::information(this, strText, tr("Undo Last Optimization"), CustomMessageBox::Ok, strDetails);
}

void VxMainWindow::undoLastOptimization()
{
    if (!m_pPage || !m_pPage->isWorkerIdle() || !JournaledRepairs::isJournaled())
        return;
    const JournaledRepairs::UndoRun run = JournaledRepairs::undo(QString(), false);
    if (run.strUndone.isEmpty()) {
        showUndoOutcome(tr("There is no optimization to undo."), QString());
        return;
    }
    QStringList listLines;
    int nFailed = 0;
    for (const VxChangeResult &result : run.vecResults) {
        const QString strWhat = tr("%1: %2").arg(VxItems::itemName(int(result.change.uItem)), result.change.strTarget);
        if (result.strResult == QLatin1String(VxJournalResult::Done)
            || result.strResult == QLatin1String(VxJournalResult::Unchanged)) {
            listLines << tr("%1: restored").arg(strWhat);
        } else {
            ++nFailed;
            listLines << tr("%1: not restored (%2)")
                             .arg(strWhat, result.strReason.isEmpty() ? result.strResult : result.strReason);
        }
    }
    const QString strOutcome
        = nFailed == 0 ? tr("The last optimization was undone.") : tr("The last optimization was undone only in part.");
    showUndoOutcome(strOutcome + QLatin1Char('\n') + tr("Diagnose again to see the current state."),
        listLines.join(QLatin1Char('\n')));
}
