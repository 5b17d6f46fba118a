// What each state of the one-key page shows, as one row per state, and the
// queries that read the rows.
#include "vxonekeystate.h"

#include <QCoreApplication>

namespace {
constexpr char kContext[] = "VxOneKeyWidget";

const char *const kAnimation = ":/Vetrix/Vetrix/Detecting.gif";

enum class TitleRule { Fixed, DetectProgress, OptimizeProgress };
enum class DetailRule { Keep, Clear, Fixed, Elapsed, Exceptions };
enum class Shown { Keep, Yes, No };
enum class GroupNumbers { Keep, Zero, Grades };

struct Look
{
    const char *pImage; // null: kept
    const char *pTitle;
    TitleRule title;
    bool bTitleBold;
    const char *pDetail;     // Fixed, Elapsed, Exceptions
    const char *pDetailNone; // Exceptions when none is left
    DetailRule detail;
    bool bDetailShown;
    bool bProgressShown;
    Shown button1Shown;
    const char *pButton1; // null: unchanged
    bool bButton1NeedsExceptions;
    const char *pButton2;
    bool bCounters; // the counters of the grades that have rows
    bool bExport;
    GroupNumbers groupNumbers; // on entering
};

// clang-format off
const Look kLooks[] = {
    // Idle
    {":/Vetrix/Vetrix/DetectNothing.png",
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Vetrix Tool"), TitleRule::Fixed, true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Check the PC system, driver, and software running environment."), nullptr,
     DetailRule::Fixed, true, false,
     Shown::Keep, nullptr, false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Start Diagnosis"), false, false, GroupNumbers::Keep},
    // Detecting
    {kAnimation,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnosis: %1(%2/%3)"), TitleRule::DetectProgress, true,
     nullptr, nullptr, DetailRule::Keep, false, true,
     Shown::No, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Pause Diagnosis"), false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Stop Diagnosis"), false, false, GroupNumbers::Zero},
    // DetectPaused
    {nullptr,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnosis paused"), TitleRule::Fixed, true,
     nullptr, nullptr, DetailRule::Keep, true, false,
     Shown::Yes, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Continue Diagnosis"), false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Stop Diagnosis"), false, false, GroupNumbers::Keep},
    // DetectAborted
    {":/Vetrix/Vetrix/DetectStop.png",
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnosis aborted."), TitleRule::Fixed, true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnosis process aborted. Please restart diagnosis."), nullptr,
     DetailRule::Fixed, true, false,
     Shown::No, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimize Diagnosis"), true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnose Again"), false, false, GroupNumbers::Grades},
    // DetectFinished
    {":/Vetrix/Vetrix/DetectFinish.png",
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnosis completed."), TitleRule::Fixed, true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "%1 items were diagnosed in %2 second(s)."), nullptr,
     DetailRule::Elapsed, true, false,
     Shown::Yes, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimize Diagnosis"), false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnose Again"), false, true, GroupNumbers::Keep},
    // Optimizing: the only state whose title is not bold
    {kAnimation,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimization: %1(%2/%3)"), TitleRule::OptimizeProgress, false,
     nullptr, nullptr, DetailRule::Clear, false, true,
     Shown::No, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Pause Optimization"), false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Stop Optimization"), false, false, GroupNumbers::Zero},
    // OptimizePaused
    {nullptr,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimization paused"), TitleRule::Fixed, true,
     nullptr, nullptr, DetailRule::Keep, true, false,
     Shown::Yes, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Resume Optimization"), false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Stop Optimization"), false, false, GroupNumbers::Keep},
    // OptimizeStopped
    {":/Vetrix/Vetrix/DetectStop.png",
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimization stopped."), TitleRule::Fixed, true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "%1 exception(s) are detected. Please optimize the system."),
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "No exception."),
     DetailRule::Exceptions, true, false,
     Shown::No, nullptr, false,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnose Again"), false, false, GroupNumbers::Keep},
    // OptimizeFinished
    {":/Vetrix/Vetrix/DetectFinish.png",
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Complete"), TitleRule::Fixed, true,
     nullptr, nullptr, DetailRule::Keep, false, false,
     Shown::Yes, QT_TRANSLATE_NOOP("VxOneKeyWidget", "Optimize Diagnosis"), true,
     QT_TRANSLATE_NOOP("VxOneKeyWidget", "Diagnose Again"), true, true, GroupNumbers::Grades},
};
// clang-format on
static_assert(sizeof(kLooks) / sizeof(kLooks[0]) == VxOneKeyState::OptimizeFinished + 1, "one row per state");

const char *const kCounters[VxOneKeyState::kGrades] = {
    QT_TRANSLATE_NOOP("VxOneKeyWidget", "Normal: %1 Item(s)"),
    QT_TRANSLATE_NOOP("VxOneKeyWidget", "Serious: %1 Item(s)"),
    QT_TRANSLATE_NOOP("VxOneKeyWidget", "Fatal: %1 Item(s)"),
};

const Look &lookOf(VxOneKeyState::State state)
{
    return kLooks[int(state)];
}

QString translated(const char *pSource)
{
    return pSource ? QCoreApplication::translate(kContext, pSource) : QString();
}
} // namespace

QString VxOneKeyState::Text::toString() const
{
    QString str = translated(pSource);
    for (int i = 0; i < nArgs; ++i)
        str = str.arg(args[i]);
    return str;
}

// The part of entering a state that the rows decide: what stays shown until
// another state changes it.
void VxOneKeyState::enter(State state)
{
    m_state = state;
    const Look &look = lookOf(state);
    if (look.pImage)
        m_pImage = look.pImage;
    switch (look.detail) {
    case DetailRule::Keep:
        break;
    case DetailRule::Clear:
        m_detail = Text();
        break;
    case DetailRule::Fixed:
        m_detail = Text{look.pDetail, 0, {0, 0}};
        break;
    case DetailRule::Elapsed:
        m_detail = Text{look.pDetail, 2, {m_nTotal, elapsedSeconds()}};
        break;
    case DetailRule::Exceptions:
        m_detail = m_nExceptionCount > 0 ? Text{look.pDetail, 1, {m_nExceptionCount, 0}}
                                         : Text{look.pDetailNone, 0, {0, 0}};
        break;
    }
    if (look.button1Shown != Shown::Keep)
        m_bButton1Shown = look.button1Shown == Shown::Yes;
    if (look.pButton1)
        m_pButton1 = look.pButton1;
    if (look.groupNumbers == GroupNumbers::Zero)
        m_groupNumbers.fill(0);
    else if (look.groupNumbers == GroupNumbers::Grades)
        takeGroupNumbers();
    if (state == Detecting)
        m_bResultShown = true;
}

QString VxOneKeyState::imagePath() const
{
    return QString::fromLatin1(m_pImage);
}

bool VxOneKeyState::isAnimated() const
{
    return m_pImage == kAnimation;
}

QString VxOneKeyState::titleText() const
{
    const Look &look = lookOf(m_state);
    switch (look.title) {
    case TitleRule::DetectProgress:
        return translated(look.pTitle).arg(currentItemName()).arg(m_nDetectedCount).arg(m_nTotal);
    case TitleRule::OptimizeProgress:
        return translated(look.pTitle).arg(currentItemName()).arg(m_nOptimizedCount).arg(m_nExceptionCount);
    case TitleRule::Fixed:
        break;
    }
    return translated(look.pTitle);
}

bool VxOneKeyState::isTitleBold() const
{
    return lookOf(m_state).bTitleBold;
}

QString VxOneKeyState::detailText() const
{
    return m_detail.toString();
}

bool VxOneKeyState::isDetailShown() const
{
    return lookOf(m_state).bDetailShown;
}

bool VxOneKeyState::isProgressShown() const
{
    return lookOf(m_state).bProgressShown;
}

QString VxOneKeyState::button1Text() const
{
    return translated(m_pButton1);
}

bool VxOneKeyState::isButton1Enabled() const
{
    return !lookOf(m_state).bButton1NeedsExceptions || m_nExceptionCount > 0;
}

QString VxOneKeyState::button2Text() const
{
    return translated(lookOf(m_state).pButton2);
}

QString VxOneKeyState::counterText(int nGrade) const
{
    if (nGrade < 0 || nGrade >= kGrades)
        return QString();
    return translated(kCounters[nGrade]).arg(gradeCount(nGrade));
}

bool VxOneKeyState::isCounterShown(int nGrade) const
{
    return lookOf(m_state).bCounters && gradeCount(nGrade) >= 1;
}

int VxOneKeyState::groupNumber(int nGrade) const
{
    return (nGrade >= 0 && nGrade < kGrades) ? m_groupNumbers[size_t(nGrade)] : 0;
}

bool VxOneKeyState::isExportEnabled() const
{
    return lookOf(m_state).bExport;
}
