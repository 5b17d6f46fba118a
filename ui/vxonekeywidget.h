#pragma once

#include "vxonekeystate.h"

#include <QWidget>

#include "vxprobetable.h"

#include <functional>
#include <memory>

class CDetectInfo;
class CustomLoadingDialog;
class CustomPushButton;
class QHBoxLayout;
class QLabel;
class QMovie;
class QStackedWidget;
class VxInterProgressBar;
class VxOneKeyResult;
class VxOneKeyRunItems;
class VxOperateThread;
class VxStateItem;

// The main window's page: the state of a one-key run (image, title, detail,
// progress, counters, two operate buttons) above the result area. Owns the
// operate thread; the run state (VxOneKeyState) decides what the page shows
// and which command the worker gets, the page renders it and forwards them.
class VxOneKeyWidget : public QWidget
{
    Q_OBJECT
public:
    using State = VxOneKeyState::State;
    static constexpr State Idle = VxOneKeyState::Idle;
    static constexpr State Detecting = VxOneKeyState::Detecting;
    static constexpr State DetectPaused = VxOneKeyState::DetectPaused;
    static constexpr State DetectAborted = VxOneKeyState::DetectAborted;
    static constexpr State DetectFinished = VxOneKeyState::DetectFinished;
    static constexpr State Optimizing = VxOneKeyState::Optimizing;
    static constexpr State OptimizePaused = VxOneKeyState::OptimizePaused;
    static constexpr State OptimizeStopped = VxOneKeyState::OptimizeStopped;
    static constexpr State OptimizeFinished = VxOneKeyState::OptimizeFinished;

    // Throws std::bad_alloc when the page cannot be built.
    // Runs the probes of table (the platform's by default).
    explicit VxOneKeyWidget(QWidget *pParent = nullptr, const VxProbeTable &table = defaultProbeTable());
    ~VxOneKeyWidget() override;

    // File > Export: asks for a path and writes the log there.
    void exportLog();
    // True while the worker does not run (the window may close).
    bool isWorkerIdle() const;

    int state() const { return m_pRun ? int(m_pRun->state()) : int(Idle); }
    const VxOneKeyState *runState() const { return m_pRun.get(); }
    VxOperateThread *worker() const { return m_pThread; }
    VxOneKeyResult *resultArea() const { return m_pResult; }
    CustomPushButton *operateButton1() const { return m_pButton1; }
    CustomPushButton *operateButton2() const { return m_pButton2; }
    QString titleText() const;
    QString detailText() const;
    bool isDetailShown() const;
    QString groupNumberText(int nIndex) const;

    // Before an optimisation pass the page lists what it would change and
    // asks; the default asks with a message box. Tests replace it for every
    // page (null restores the box).
    using ConfirmOptimization = std::function<bool(QWidget *pParent, const QStringList &listChanges)>;
    static void setConfirmOptimization(ConfirmOptimization confirm);
    // The lines of that question: each planned change of an exceptional
    // item the pass will work on, then the items that cannot say beforehand.
    QStringList optimizationPlanLines() const;

    // The groups every run covers (group bits), and a group's item mask.
    static int &selectedGroups();
    static quint32 groupMask(int nGroup);

signals:
    void sigExportEnable(bool bEnable);

public slots:
    void onOperateClicked1();
    void onOperateClicked2();
    void onStartOperate(bool bIsDetecting);
    void onEndOperate();
    void onStartDetectItem(CDetectInfo *pInfo);
    void onEndDetectItem(CDetectInfo *pInfo);
    void onStartOptimizeItem(CDetectInfo *pInfo);
    void onEndOptimizeItem(CDetectInfo *pInfo);
    void onRemoveOptimizeItem(int nItem);

protected:
    void changeEvent(QEvent *pEvent) override;
    // Asks where to save the log; empty when cancelled. Virtual for tests.
    virtual QString askExportPath(const QString &strDir, const QString &strName);

private:
    bool init(const VxProbeTable &table);
    bool buildTopStrip(QWidget *pStrip);
    bool connectWorker();
    // Shows the run state; bAnnounce when a state was entered or re-applied
    // (fonts, visibilities, the export signal).
    void render(bool bAnnounce);
    void renderImage();
    void applyFonts();
    void rebuildBottomBar();
    // Renders the step and issues its worker command.
    void follow(const VxOneKeyStep &step);
    void forward(const VxOneKeyStep &step);
    void setBusyItems(quint32 uMask);
    void showLoading(const QString &strText);
    void hideLoading();
    bool allWidgetsPresent() const;
    bool confirmOptimization() const;

    // run state
    std::unique_ptr<VxOneKeyRunItems> m_pItems;
    std::unique_ptr<VxOneKeyState> m_pRun;
    QString m_strShownImage;
    bool m_bBlocked = false; // disabled while the worker ends a pause or stop

    // widgets
    VxOperateThread *m_pThread = nullptr;
    QLabel *m_pImage = nullptr;
    QMovie *m_pMovie = nullptr;
    QLabel *m_pTitle = nullptr;
    QLabel *m_pDetail = nullptr;
    QLabel *m_pCounters[3] = {nullptr, nullptr, nullptr}; // normal, serious, fatal
    VxInterProgressBar *m_pProgress = nullptr;
    CustomPushButton *m_pButton1 = nullptr;
    CustomPushButton *m_pButton2 = nullptr;
    VxStateItem *m_pStateItems[3] = {nullptr, nullptr, nullptr};
    QStackedWidget *m_pStack = nullptr;
    QWidget *m_pEmptyPage = nullptr;
    QLabel *m_pEmptyText = nullptr;
    VxOneKeyResult *m_pResult = nullptr;
    QHBoxLayout *m_pBottomBar = nullptr;
    CustomLoadingDialog *m_pLoading = nullptr;
};
