#pragma once

#include <QString>
#include <QTime>
#include <QVector>

#include <array>
#include <functional>

// What a one-key run needs to know about the diagnosis items. The page hands
// in one that reads the item tables and the worker's probes; tests hand in
// their own.
class VxOneKeyItems
{
public:
    virtual ~VxOneKeyItems() = default;
    // The items every run covers, and the number of result rows they fill.
    virtual quint32 runMask() const = 0;
    virtual int runRowCount() const = 0;
    // Items of uMask a run does not probe (they report at once and count as
    // done), in detection order.
    virtual QVector<int> leftOutItems(quint32 uMask) const = 0;
    // An exception of the item is something an optimisation pass repairs.
    virtual bool canOptimize(int nItem) const = 0;
    virtual QString itemName(int nItem) const = 0; // translated
};

// What the page asks of the worker after a transition.
enum class VxWorkerCommand {
    None,
    StartDetect,    // detect the step's mask
    ResumeDetect,   // detect what the paused pass left
    PauseDetect,    // stop the pass, keeping what it left
    StopDetect,     // stop the pass for good
    StartOptimize,  // optimise the step's mask
    ResumeOptimize, // optimise what the paused pass left
    PauseOptimize,  // stop the pass, keeping what it left
    StopOptimize,   // stop the pass for good
};

struct VxOneKeyStep
{
    VxWorkerCommand command = VxWorkerCommand::None;
    quint32 uMask = 0;     // StartDetect, StartOptimize
    bool bTaken = false;   // the event changed the run (else it was ignored)
    bool bEntered = false; // a state was entered: the page shows it anew
};

// The run state of the one-key page, without widgets: the nine states, the
// counters and masks of a run, the transitions, and what each state shows.
// Texts are translated in the page's context ("VxOneKeyWidget").
class VxOneKeyState
{
public:
    enum State {
        Idle = 0,
        Detecting = 1,
        DetectPaused = 2,
        DetectAborted = 3,
        DetectFinished = 4,
        Optimizing = 5,
        OptimizePaused = 6,
        OptimizeStopped = 7,
        OptimizeFinished = 8,
    };
    static constexpr int kGrades = 3; // normal, serious, fatal

    using Clock = std::function<QTime()>;
    using GradeCount = std::function<int(int nGrade)>; // result rows of a grade

    // Enters Idle. The items must outlive the state.
    explicit VxOneKeyState(const VxOneKeyItems &items);

    void setClock(Clock clock);
    void setGradeCount(GradeCount gradeCount);

    // Transitions
    VxOneKeyStep clickButton1();
    // Whether clickButton1() would start an optimisation pass (so the page
    // can ask first).
    bool button1StartsOptimization() const;
    VxOneKeyStep clickButton2();
    VxOneKeyStep endOperate(bool bWorkerRunning);
    VxOneKeyStep startDetectItem(int nItem);
    VxOneKeyStep endDetectItem(int nItem, bool bNormal);
    VxOneKeyStep startOptimizeItem(int nItem);
    VxOneKeyStep endOptimizeItem(int nItem, bool bNormal);
    VxOneKeyStep removeOptimizeItem(int nItem);
    // The result rows changed: while detecting, the group numbers follow.
    void resultChanged();

    // The run
    State state() const { return m_state; }
    State pendingState() const { return m_pendingState; }
    quint32 itemMask() const { return m_uItemMask; }
    quint32 exceptionMask() const { return m_uExceptionMask; }
    quint32 repairedMask() const { return m_uRepairedMask; }
    int total() const { return m_nTotal; }
    int detectedCount() const { return m_nDetectedCount; }
    int exceptionCount() const { return m_nExceptionCount; }
    int optimizedCount() const { return m_nOptimizedCount; }
    int currentItem() const { return m_nCurrentItem; }
    QTime startTime() const { return m_startTime; }
    QTime endTime() const { return m_endTime; }
    int elapsedSeconds() const;
    const QVector<int> &leftOutItems() const { return m_listLeftOut; }
    // A pause or stop of the optimisation waits for the worker: the page
    // takes no input until it ends.
    bool isAwaitingWorker() const { return m_bAwaitingWorker; }

    // What the state shows
    QString imagePath() const; // a still image, or the animation
    bool isAnimated() const;
    QString titleText() const;
    bool isTitleBold() const;
    QString detailText() const;
    bool isDetailShown() const;
    bool isProgressShown() const;
    int progressMaximum() const { return m_nProgressMax; }
    int progressValue() const { return m_nProgressValue; }
    QString button1Text() const;
    bool isButton1Shown() const { return m_bButton1Shown; }
    bool isButton1Enabled() const;
    QString button2Text() const;
    QString counterText(int nGrade) const;
    bool isCounterShown(int nGrade) const;
    int groupNumber(int nGrade) const;
    bool isExportEnabled() const;
    bool isResultShown() const { return m_bResultShown; } // once a detection started

private:
    // A text shown by a state: its source and up to two numbers.
    struct Text
    {
        const char *pSource = nullptr;
        int nArgs = 0;
        int args[2] = {0, 0};
        QString toString() const;
    };

    void enter(State state);
    VxOneKeyStep restart();
    VxOneKeyStep startOptimization();
    void settleRepairedItems();
    void takeGroupNumbers();
    int gradeCount(int nGrade) const;
    QString currentItemName() const;

    const VxOneKeyItems &m_items;
    Clock m_clock;
    GradeCount m_gradeCount;

    State m_state = Idle;
    State m_pendingState = Idle;
    quint32 m_uItemMask = 0;
    quint32 m_uExceptionMask = 0;
    quint32 m_uRepairedMask = 0; // exceptions the running optimisation repaired
    int m_nCurrentItem = 0;      // the item of the progress title, 0 before the first
    int m_nTotal = 0;
    int m_nDetectedCount = 0;
    int m_nExceptionCount = 0;
    int m_nOptimizedCount = 0;
    int m_nProgressMax = 0;
    int m_nProgressValue = 0;
    QTime m_startTime;
    QTime m_endTime;
    QVector<int> m_listLeftOut;
    bool m_bAwaitingWorker = false;

    // what entering the states left behind
    const char *m_pImage = nullptr;
    Text m_detail;
    const char *m_pButton1 = nullptr;
    bool m_bButton1Shown = false;
    bool m_bResultShown = false;
    std::array<int, kGrades> m_groupNumbers{};
};
