#pragma once

#include <QTime>
#include <QWidget>

class CDetectInfo;
class CustomLoadingDialog;
class CustomPushButton;
class QHBoxLayout;
class QLabel;
class QMovie;
class QStackedWidget;
class VxInterProgressBar;
class VxOneKeyResult;
class VxOperateThread;
class VxStateItem;

// The main window's page: the state of a one-key run (image, title, detail,
// progress, counters, two operate buttons) above the result area. Owns the
// operate thread and drives it through a nine-state machine.
class VxOneKeyWidget : public QWidget
{
    Q_OBJECT
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

    // Throws std::bad_alloc when the page cannot be built.
    explicit VxOneKeyWidget(QWidget *pParent = nullptr);
    ~VxOneKeyWidget() override;

    // File > Export: asks for a path and writes the log there.
    void exportLog();
    // True while the worker does not run (the window may close).
    bool isWorkerIdle() const;

    int state() const { return m_nState; }
    VxOperateThread *worker() const { return m_pThread; }
    VxOneKeyResult *resultArea() const { return m_pResult; }
    CustomPushButton *operateButton1() const { return m_pButton1; }
    CustomPushButton *operateButton2() const { return m_pButton2; }
    QString titleText() const;
    QString detailText() const;
    bool isDetailShown() const;
    QString groupNumberText(int nIndex) const;

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
    bool init();
    bool buildTopStrip(QWidget *pStrip);
    bool connectWorker();
    // bEntering is false when a language change re-applies the state.
    void applyState(int nState, bool bEntering = true);
    void applyFonts();
    void rebuildBottomBar();
    void startRun();
    void restartRun();
    void startOptimization();
    void setGroupNumbers();
    void showLoading(const QString &strText);
    void hideLoading();
    QString currentItemName() const;
    QString detectTitle() const;
    QString optimizeTitle() const;
    void setBusyItems(quint32 uMask);
    void settleRepairedItems();
    bool allWidgetsPresent() const;

    // run state
    int m_nState = Idle;
    int m_nPendingState = Idle;
    quint32 m_uItemMask = 0;
    quint32 m_uExceptionMask = 0;
    quint32 m_uRepairedMask = 0; // exceptions the running optimisation repaired
    int m_nCurrentItem = 0;      // the item of the progress title, 0 before the first
    int m_nTotal = 0;
    int m_nDetectedCount = 0;
    int m_nExceptionCount = 0;
    int m_nOptimizedCount = 0;
    QString m_strCurrentTitle;
    QTime m_startTime;
    QTime m_endTime;
    bool m_bDetailShown = false;
    bool m_bButton1Shown = false;
    bool m_bProgressShown = false;
    bool m_bCounterShown[3] = {false, false, false};

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
