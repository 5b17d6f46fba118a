#pragma once

#include "custommainwindow.h"
#include "vxprobetable.h"

#include <QFuture>

#include <atomic>
#include <condition_variable>
#include <mutex>

class CustomMenu;
class CustomPushButton;
class QAction;
class QActionGroup;
class VxOneKeyWidget;
class VxReportCompareDlg;

// The program's only top-level window: the title bar with the File and Help
// menus and the resource-usage button, and the one-key page as its body.
// Owns the language switch and refuses to close while a run is in progress.
class VxMainWindow : public CustomMainWindow
{
    Q_OBJECT
public:
    // Action data values the menu dispatcher switches on.
    enum ActionData {
        ActExport = 0,
        ActClose = 1,
        ActEnglish = 2,
        ActChinese = 3,
        ActUserManual = 4,
        ActAbout = 5,
        ActDumpTool = 6,
        ActCompareReport = 7,
        ActExportJson = 8,
        ActUndoOptimization = 9,
    };

    // Throws std::bad_alloc when the window cannot be built.
    // The page runs the probes of table (the platform's by default).
    explicit VxMainWindow(QWidget *pParent = nullptr, const VxProbeTable &table = defaultProbeTable());
    ~VxMainWindow() override;

    // Installs ("CH") or removes ("ENG") the four Chinese translators, read
    // from strDir (default: the program's folder) + "/Translation". False when
    // a translation file cannot be loaded: then nothing changes.
    static bool switchLanguage(const QString &strLanguage, const QString &strDir = QString());
    // The language the command line asks for: "CH" or "ENG" as the first
    // argument, compared exactly; empty otherwise.
    static QString commandLineLanguage(int argc, char *argv[]);

    VxOneKeyWidget *page() const { return m_pPage; }
    QAction *action(int nData) const;
    QAction *memoryAction() const { return m_pMemoryAction; }
    QAction *cpuAction() const { return m_pCpuAction; }
    CustomPushButton *resourceButton() const { return m_pResourceButton; }
    // The user manual's URL text for the current language, with its topic.
    static QString userManualUrl(QString *pStartPage = nullptr);
    // Shows a worker's warning over its page; warnings that come while one
    // is shown follow one after another.
    static void showWorkerWarning(QObject *pParentObject, const QString &strInfo);
    // The resource-usage loop's period: one second; tests lengthen it.
    static void setSamplePeriod(int nMs);

signals:
    void SigUpdateMemoryUsage(float fMem);
    void SigUpdateCPUUsage(float fCpu);

public slots:
    void OnMenuActionTriggered(QAction *pAction);
    void onSigExportEnable(bool bEnable);
    void onSigUpdateMemoryUsage(float fMem);
    void onSigUpdateCPUUsage(float fCPU);
    void OnShowMemCpuDlg();

protected:
    bool eventFilter(QObject *pObject, QEvent *pEvent) override;
    void customEvent(QEvent *pEvent) override;
    void closeEvent(QCloseEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;
    // Opens the About box and the dump tool; virtual so tests can stand in.
    virtual void openAbout();
    virtual void openDumpTool();
    // The saved report to compare with, and where to save the JSON report;
    // empty when cancelled. Virtual so tests can stand in for file dialogs.
    virtual QString askReportPath(const QString &strDir);
    virtual QString askJsonReportPath(const QString &strDir, const QString &strName);
    // Shows how the undo ended; virtual so tests can read it without exec().
    virtual void showUndoOutcome(const QString &strText, const QString &strDetails);
    // Shows the comparison; virtual so tests can look at it without exec().
    virtual void showComparison(VxReportCompareDlg &dialog);

private:
    bool init(const VxProbeTable &table);
    bool buildMenus();
    void retranslate();
    void setLanguageMarks(bool bEnglish);
    void openUserManual();
    void ResourceUsageLoop();
    // File > Compare with Report and File > Export JSON Report
    // (vxmainwindow_report.cpp).
    void compareWithReport();
    void exportJsonReport();
    // File > Undo Last Optimization (vxmainwindow_undo.cpp).
    void undoLastOptimization();
    void updateUndoAction(bool bWorkerIdle);

    VxOneKeyWidget *m_pPage = nullptr;
    CustomMenu *m_pFileMenu = nullptr;
    CustomMenu *m_pHelpMenu = nullptr;
    CustomMenu *m_pLangMenu = nullptr;
    CustomMenu *m_pResourceMenu = nullptr;
    QActionGroup *m_pActionGroup = nullptr;
    CustomPushButton *m_pResourceButton = nullptr;
    CustomPushButton *m_pFileButton = nullptr;
    CustomPushButton *m_pHelpButton = nullptr;
    QAction *m_pExportAction = nullptr;
    QAction *m_pEngAction = nullptr;
    QAction *m_pChAction = nullptr;
    QAction *m_pUserDocAction = nullptr;
    QAction *m_pAboutAction = nullptr;
    QAction *m_pDumpAction = nullptr;
    QAction *m_pCompareAction = nullptr;
    QAction *m_pExportJsonAction = nullptr;
    QAction *m_pUndoAction = nullptr;
    QAction *m_pMemoryAction = nullptr;
    QAction *m_pCpuAction = nullptr;
    std::atomic<bool> m_bRunning{false};
    QFuture<void> m_resourceLoop;
    // The loop sleeps on this between samples; closing wakes it at once.
    std::mutex m_loopMutex;
    std::condition_variable m_loopWake;
    QString m_strMemoryValue = QStringLiteral("--");
    QString m_strCpuValue = QStringLiteral("--");
};
