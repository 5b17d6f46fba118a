// The one-key page's run: the two operate buttons and the worker's reports
// move it from state to state, and each transition names the worker command
// the page issues.
#include "vxonekeystate.h"

namespace {
constexpr int kMsPerDay = 24 * 60 * 60 * 1000;

VxOneKeyStep taken(VxWorkerCommand command = VxWorkerCommand::None, quint32 uMask = 0)
{
    VxOneKeyStep step;
    step.command = command;
    step.uMask = uMask;
    step.bTaken = true;
    return step;
}

VxOneKeyStep entered(VxWorkerCommand command = VxWorkerCommand::None, quint32 uMask = 0)
{
    VxOneKeyStep step = taken(command, uMask);
    step.bEntered = true;
    return step;
}
} // namespace

VxOneKeyState::VxOneKeyState(const VxOneKeyItems &items)
    : m_items(items)
    , m_clock([] { return QTime::currentTime(); })
{
    enter(Idle);
}

void VxOneKeyState::setClock(Clock clock)
{
    m_clock = clock ? std::move(clock) : Clock([] { return QTime::currentTime(); });
}

void VxOneKeyState::setGradeCount(GradeCount gradeCount)
{
    m_gradeCount = std::move(gradeCount);
}

int VxOneKeyState::gradeCount(int nGrade) const
{
    return m_gradeCount ? m_gradeCount(nGrade) : 0;
}

// Whole seconds from the start of the detection to its end; a run that goes
// past midnight still counts forward.
int VxOneKeyState::elapsedSeconds() const
{
    int nMs = m_startTime.msecsTo(m_endTime);
    if (nMs < 0)
        nMs += kMsPerDay;
    return nMs / 1000;
}

QString VxOneKeyState::currentItemName() const
{
    return m_nCurrentItem ? m_items.itemName(m_nCurrentItem) : QString();
}

void VxOneKeyState::takeGroupNumbers()
{
    for (int i = 0; i < kGrades; ++i)
        m_groupNumbers[size_t(i)] = gradeCount(i);
}

void VxOneKeyState::resultChanged()
{
    if (m_state == Detecting)
        takeGroupNumbers();
}

bool VxOneKeyState::button1StartsOptimization() const
{
    return m_state == DetectAborted || m_state == DetectFinished || m_state == OptimizeFinished;
}

VxOneKeyStep VxOneKeyState::clickButton1()
{
    switch (m_state) {
    case Detecting:
        m_pendingState = Idle;
        enter(DetectPaused);
        return entered(VxWorkerCommand::PauseDetect);
    case DetectPaused:
        m_pendingState = DetectFinished;
        enter(Detecting);
        return entered(VxWorkerCommand::ResumeDetect);
    case DetectAborted:
    case DetectFinished:
    case OptimizeFinished:
        Q_ASSERT(button1StartsOptimization());
        return startOptimization();
    case Optimizing:
        // The state changes when the worker reports the end of the pass.
        m_bAwaitingWorker = true;
        m_pendingState = OptimizePaused;
        return taken(VxWorkerCommand::PauseOptimize);
    case OptimizePaused:
        m_pendingState = OptimizeFinished;
        enter(Optimizing);
        return entered(VxWorkerCommand::ResumeOptimize);
    case Idle:
    case OptimizeStopped:
        break;
    }
    return VxOneKeyStep();
}

VxOneKeyStep VxOneKeyState::clickButton2()
{
    switch (m_state) {
    case Idle:
        m_nTotal = m_items.runRowCount();
        m_uItemMask = m_items.runMask();
        return restart();
    case Detecting:
        m_pendingState = Idle;
        enter(DetectAborted);
        return entered(VxWorkerCommand::StopDetect);
    case DetectPaused:
        enter(DetectAborted);
        return entered();
    case DetectAborted:
    case DetectFinished:
    case OptimizeStopped:
    case OptimizeFinished:
        return restart();
    case Optimizing:
        m_bAwaitingWorker = true;
        m_pendingState = OptimizeStopped;
        return taken(VxWorkerCommand::StopOptimize);
    case OptimizePaused:
        settleRepairedItems();
        enter(OptimizeStopped);
        return entered();
    }
    return VxOneKeyStep();
}

VxOneKeyStep VxOneKeyState::restart()
{
    m_nExceptionCount = 0;
    m_nOptimizedCount = 0;
    m_uExceptionMask = 0;
    m_uRepairedMask = 0;
    m_nCurrentItem = 0;
    // Items the run leaves out say why at once, and count as done.
    m_listLeftOut = m_items.leftOutItems(m_uItemMask);
    m_nDetectedCount = m_listLeftOut.size();
    m_nProgressMax = m_nTotal;
    m_nProgressValue = m_nDetectedCount;
    enter(Detecting);
    m_pendingState = DetectFinished;
    m_startTime = m_clock();
    return entered(VxWorkerCommand::StartDetect, m_uItemMask);
}

VxOneKeyStep VxOneKeyState::startOptimization()
{
    m_nOptimizedCount = 0;
    m_uRepairedMask = 0;
    m_nCurrentItem = 0;
    m_nProgressMax = m_nExceptionCount;
    m_nProgressValue = 0;
    enter(Optimizing);
    m_pendingState = OptimizeFinished;
    return entered(VxWorkerCommand::StartOptimize, m_uExceptionMask);
}

// Once an optimisation is over, the items it repaired no longer count as
// exceptions: "Optimize Diagnosis" then works on what is left, and the
// stopped state names how many are left. During the pass the count stays as
// it was at the start, so the title's two numbers always belong together.
void VxOneKeyState::settleRepairedItems()
{
    const quint32 uRepaired = m_uExceptionMask & m_uRepairedMask;
    m_uRepairedMask = 0;
    m_uExceptionMask &= ~uRepaired;
    m_nExceptionCount -= qPopulationCount(uRepaired);
}

VxOneKeyStep VxOneKeyState::endOperate(bool bWorkerRunning)
{
    if (m_pendingState == Idle)
        return VxOneKeyStep(); // a pause or stop already entered its state
    if ((m_pendingState == DetectPaused || m_pendingState == DetectAborted) && !bWorkerRunning)
        m_pendingState = DetectFinished;
    if (m_pendingState == DetectFinished)
        m_endTime = m_clock();
    if ((m_pendingState == OptimizePaused || m_pendingState == OptimizeStopped) && !bWorkerRunning)
        m_pendingState = OptimizeFinished;
    if (m_pendingState == OptimizeStopped || m_pendingState == OptimizeFinished)
        settleRepairedItems();
    m_bAwaitingWorker = false;
    enter(m_pendingState);
    return entered();
}

VxOneKeyStep VxOneKeyState::startDetectItem(int nItem)
{
    if (m_state != Detecting)
        return VxOneKeyStep();
    m_nCurrentItem = nItem;
    return taken();
}

VxOneKeyStep VxOneKeyState::endDetectItem(int nItem, bool bNormal)
{
    if (m_state != Detecting)
        return VxOneKeyStep();
    ++m_nDetectedCount;
    m_nCurrentItem = nItem;
    m_nProgressValue = m_nDetectedCount;
    const quint32 uBit = quint32(nItem);
    if (!bNormal && m_items.canOptimize(nItem) && !(m_uExceptionMask & uBit)) {
        m_uExceptionMask |= uBit;
        ++m_nExceptionCount;
    }
    return taken();
}

// The optimisation title counts the items the pass has finished, out of the
// exceptions it set out to repair: (0/3) while the first runs, (3/3) at the
// end.
VxOneKeyStep VxOneKeyState::startOptimizeItem(int nItem)
{
    if (m_state != Optimizing)
        return VxOneKeyStep();
    m_nCurrentItem = nItem;
    return taken();
}

VxOneKeyStep VxOneKeyState::endOptimizeItem(int nItem, bool bNormal)
{
    if (m_state != Optimizing)
        return VxOneKeyStep();
    ++m_nOptimizedCount;
    m_nCurrentItem = nItem;
    m_nProgressValue = m_nOptimizedCount;
    if (bNormal)
        m_uRepairedMask |= quint32(nItem);
    else
        m_uRepairedMask &= ~quint32(nItem);
    return taken();
}

// An item repaired from its own row leaves the pending optimisation, and the
// page shows the finished detection again, whatever state it was in.
VxOneKeyStep VxOneKeyState::removeOptimizeItem(int nItem)
{
    const quint32 uBit = quint32(nItem);
    if (!(m_uExceptionMask & uBit))
        return VxOneKeyStep();
    --m_nExceptionCount;
    m_uExceptionMask &= ~uBit;
    m_uRepairedMask &= ~uBit;
    enter(DetectFinished);
    return entered();
}
