#include "vxmainwindow.h"

#include "custom.h"
#include "custommenu.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customtitlebar.h"
#include "luinterface.h"
#include "qaboutdlg.h"
#include "resourcesampler.h"
#include "vxgrabdumptool.h"
#include "vxonekeywidget.h"
#include "vxoperatethread.h"

#include <QAction>
#include <QActionGroup>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QLoggingCategory>
#include <QPointer>
#include <QThread>
#include <QTranslator>
#include <QtConcurrent>

#include <exception>
#include <memory>
#include <new>

namespace {
Q_LOGGING_CATEGORY(lcMainWindow, "vetrix.app.mainwindow")

// The four Chinese translators, process-wide.
struct Translators
{
    QTranslator vetrix, panekit, basekit, qt;
    QTranslator *all[4] = {&vetrix, &panekit, &basekit, &qt};
};

Translators &translators()
{
    static Translators t;
    return t;
}
} // namespace

// The worker's warnings (a missing driver installer, an installation that
// timed out) appear as the kit's message box over the thread's page, one at
// a time: a warning that arrives while a box is open (the worker goes on
// meanwhile, e.g. to the second driver) waits until that box is closed.
void VxMainWindow::showWorkerWarning(QObject *pParentObject, const QString &strInfo)
{
    struct Pending
    {
        QPointer<QWidget> pParent;
        QString strText;
    };
    static QList<Pending> listPending;
    static bool bShowing = false;
    listPending.append({qobject_cast<QWidget *>(pParentObject), strInfo});
    if (bShowing)
        return;
    bShowing = true;
    while (!listPending.isEmpty()) {
        const Pending next = listPending.takeFirst();
        CustomMessageBox::warning(next.pParent.data(), next.strText,
                                  QCoreApplication::translate("VxOperateThread", "Prompt"), 1, QString());
    }
    bShowing = false;
}

VxMainWindow::VxMainWindow(QWidget *pParent, const VxProbeTable &table)
    : CustomMainWindow(pParent)
{
    VxOperateThread::setWarningHandler(showWorkerWarning);
    if (!init(table))
        throw std::bad_alloc();
    setLanguageMarks(Custom::language() == 1);
    m_bRunning = true;
    m_resourceLoop = QtConcurrent::run(this, &VxMainWindow::ResourceUsageLoop);
    setWindowFlags(windowFlags() | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint);
}

VxMainWindow::~VxMainWindow()
{
    // The loop reads the flag between short sleeps; wait for it so it never
    // touches a freed window.
    {
        std::lock_guard<std::mutex> lock(m_loopMutex);
        m_bRunning = false;
    }
    m_loopWake.notify_all();
    m_resourceLoop.waitForFinished();
}

bool VxMainWindow::init(const VxProbeTable &table)
{
    m_pPage = new (std::nothrow) VxOneKeyWidget(this, table);
    if (!m_pPage || !buildMenus())
        return false;
    if (!connect(m_pActionGroup, &QActionGroup::triggered, this, &VxMainWindow::OnMenuActionTriggered)
        || !connect(m_pPage, &VxOneKeyWidget::sigExportEnable, this, &VxMainWindow::onSigExportEnable)
        || !connect(this, &VxMainWindow::SigUpdateMemoryUsage, this, &VxMainWindow::onSigUpdateMemoryUsage,
                    Qt::QueuedConnection)
        || !connect(this, &VxMainWindow::SigUpdateCPUUsage, this, &VxMainWindow::onSigUpdateCPUUsage,
                    Qt::QueuedConnection)
        || !connect(m_pResourceButton, &QPushButton::clicked, this, &VxMainWindow::OnShowMemCpuDlg)
        || !connect(m_pPage->worker(), &VxOperateThread::sigStartOperate, this, [this] { updateUndoAction(false); })
        || !connect(m_pPage->worker(), &VxOperateThread::sigEndOperate, this, [this] { updateUndoAction(true); }))
        return false;
    cSetCentralWidget(m_pPage);
    CustomTitleBar *pTitleBar = cTitleBar();
    if (!pTitleBar)
        return false;
    pTitleBar->cSetTitleControls(7);
    pTitleBar->cSetTitleText(QStringLiteral("Vetrix Tool"));
    pTitleBar->cSetTitleText(tr("Vetrix Tool"));
    pTitleBar->cSetTitleIcon(QStringLiteral(":/Vetrix/Vetrix/Logo.png"));
    setWindowTitle(tr("Vetrix Tool"));
    cSetMinStrechSize(QSize(1200, 500));
    cEnableDefualtShadow();
    cSetStrechEdges(203);
    resize(1366, 768);
    return true;
}

bool VxMainWindow::buildMenus()
{
    CustomTitleBar *pTitleBar = cTitleBar();
    m_pActionGroup = new (std::nothrow) QActionGroup(this);
    if (!pTitleBar || !m_pActionGroup)
        return false;
    m_pActionGroup->setExclusive(false);

    auto addAction = [this](QMenu *pMenu, const QString &strText, int nData, const char *pName) {
        auto *pAction = new QAction(strText, pMenu);
        pAction->setData(nData);
        pAction->setObjectName(QString::fromLatin1(pName));
        pMenu->addAction(pAction);
        m_pActionGroup->addAction(pAction);
        return pAction;
    };

    m_pFileMenu = new CustomMenu(tr("File"), this);
    m_pFileMenu->setObjectName(QStringLiteral("FileMenu"));
    m_pFileButton = pTitleBar->cAddMenu(tr("File"), m_pFileMenu);
    m_pExportAction = addAction(m_pFileMenu, tr("Export"), ActExport, "FileExportAction");
    m_pExportAction->setEnabled(false);
    m_pExportJsonAction = addAction(m_pFileMenu, tr("Export JSON Report…"), ActExportJson, "FileExportJsonAction");
    m_pExportJsonAction->setEnabled(false);
    m_pCompareAction = addAction(m_pFileMenu, tr("Compare with Report…"), ActCompareReport, "CompareReportAction");
    m_pUndoAction
        = addAction(m_pFileMenu, tr("Undo Last Optimization"), ActUndoOptimization, "UndoOptimizationAction");
    updateUndoAction(true);
    m_pDumpAction = addAction(m_pFileMenu, tr("Acquire Dump Files"), ActDumpTool, "DumpToolAction");

    m_pHelpMenu = new CustomMenu(tr("Help"), this);
    m_pHelpMenu->setObjectName(QStringLiteral("HelpMenu"));
    m_pHelpButton = pTitleBar->cAddMenu(tr("Help"), m_pHelpMenu);
    m_pLangMenu = new CustomMenu(tr("Language"), m_pHelpMenu);
    m_pLangMenu->setObjectName(QStringLiteral("LangMenu"));
    m_pHelpMenu->addMenu(m_pLangMenu);
    m_pEngAction = addAction(m_pLangMenu, QStringLiteral("English"), ActEnglish, "EngAction");
    m_pEngAction->setCheckable(true);
    m_pChAction = addAction(m_pLangMenu, QString::fromUtf8("简体中文"), ActChinese, "ChAction");
    m_pChAction->setCheckable(true);
    m_pUserDocAction = addAction(m_pHelpMenu, tr("User Manual"), ActUserManual, "UserDocAction");
    m_pUserDocAction->setVisible(
        LuInterface::GetOEMCfgValue(QStringLiteral("ShowUserManuel"), true).toBool());
    m_pAboutAction = addAction(m_pHelpMenu, tr("About"), ActAbout, "AboutAction");

    pTitleBar->cAddMenuLayoutStretch();
    m_pResourceButton = pTitleBar->cAddMenu(QString(), nullptr);
    if (!m_pResourceButton)
        return false;
    m_pResourceButton->setObjectName(QStringLiteral("ResourceUsageMenu"));
    m_pResourceButton->setFixedSize(24, 24);
    m_pResourceButton->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_normal.png"),
                                           CustomObject::StateNormal);
    m_pResourceButton->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_click.png"),
                                           CustomObject::StatePressed);
    m_pResourceButton->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_disable.png"),
                                           CustomObject::StateDisabled);
    m_pResourceButton->installEventFilter(this);

    m_pResourceMenu = new CustomMenu(this);
    m_pMemoryAction = new QAction(tr("Memory: %1%").arg(m_strMemoryValue), m_pResourceMenu);
    m_pMemoryAction->setObjectName(QStringLiteral("MemoryUsageAction"));
    m_pCpuAction = new QAction(tr("CPU: %1%").arg(m_strCpuValue), m_pResourceMenu);
    m_pCpuAction->setObjectName(QStringLiteral("CPUUsageAction"));
    m_pResourceMenu->addAction(m_pMemoryAction);
    m_pResourceMenu->addAction(m_pCpuAction);
    return true;
}

QAction *VxMainWindow::action(int nData) const
{
    if (!m_pActionGroup)
        return nullptr;
    for (QAction *pAction : m_pActionGroup->actions()) {
        if (pAction->data().toInt() == nData)
            return pAction;
    }
    return nullptr;
}

void VxMainWindow::setLanguageMarks(bool bEnglish)
{
    if (QAction *pEng = action(ActEnglish))
        pEng->setChecked(bEnglish);
    if (QAction *pCh = action(ActChinese))
        pCh->setChecked(!bEnglish);
}

void VxMainWindow::OnMenuActionTriggered(QAction *pAction)
{
    if (!pAction)
        return;
    const int nData = pAction->data().toInt();
    switch (nData) {
    case ActExport:
        if (m_pPage)
            m_pPage->exportLog();
        break;
    case ActClose:
        close();
        break;
    case ActEnglish:
        switchLanguage(QStringLiteral("ENG"));
        break;
    case ActChinese:
        switchLanguage(QStringLiteral("CH"));
        break;
    case ActUserManual:
        openUserManual();
        break;
    case ActAbout:
        openAbout();
        break;
    case ActDumpTool:
        openDumpTool();
        break;
    case ActCompareReport:
        compareWithReport();
        break;
    case ActExportJson:
        exportJsonReport();
        break;
    case ActUndoOptimization:
        undoLastOptimization();
        break;
    default:
        break;
    }
    if (nData == ActEnglish)
        setLanguageMarks(true);
    else if (nData == ActChinese)
        setLanguageMarks(false);
}

QString VxMainWindow::commandLineLanguage(int argc, char *argv[])
{
    if (argc <= 1 || !argv || !argv[1])
        return QString();
    const QByteArray argument(argv[1]);
    if (argument == "CH")
        return QStringLiteral("CH");
    if (argument == "ENG")
        return QStringLiteral("ENG");
    return QString();
}

bool VxMainWindow::switchLanguage(const QString &strLanguage, const QString &strFolder)
{
    Translators &t = translators();
    const QString strDir = strFolder.isEmpty() ? QCoreApplication::applicationDirPath() : strFolder;
    // The files lie in "./Translation" below the folder. They are loaded
    // from that subfolder itself: qt_zh_CN.qm pulls in Qt's module
    // catalogues (qtbase_zh_CN.qm, ...) from the folder it is loaded from.
    const char *const files[4] = {"Vetrix_zh.qm", "Panekit_zh_CN.qm", "Basekit_zh_CN.qm", "qt_zh_CN.qm"};
    const QString strTranslations = strDir + QStringLiteral("/Translation");
    for (int i = 0; i < 4; ++i) {
        if (!t.all[i]->load(QString::fromLatin1(files[i]), strTranslations))
            return false;
    }
    if (strLanguage == QLatin1String("CH")) {
        Custom::setLanguage(0);
        LuInterface::setLanguage(QStringLiteral("CH"));
        for (QTranslator *pTranslator : t.all)
            QCoreApplication::installTranslator(pTranslator);
    } else if (strLanguage == QLatin1String("ENG")) {
        Custom::setLanguage(1);
        LuInterface::setLanguage(QStringLiteral("ENG"));
        for (QTranslator *pTranslator : t.all)
            QCoreApplication::removeTranslator(pTranslator);
    }
    return true;
}

void VxMainWindow::onSigExportEnable(bool bEnable)
{
    if (m_pExportAction)
        m_pExportAction->setEnabled(bEnable);
    if (m_pExportJsonAction)
        m_pExportJsonAction->setEnabled(bEnable);
}

void VxMainWindow::onSigUpdateMemoryUsage(float fMem)
{
    if (!m_pMemoryAction || !(fMem > 0))
        return;
    m_strMemoryValue = QString::number(double(fMem), 'g', 6);
    m_pMemoryAction->setText(tr("Memory: %1%").arg(double(fMem), 0, 'g', -1, QLatin1Char(' ')));
}

void VxMainWindow::onSigUpdateCPUUsage(float fCPU)
{
    if (!m_pCpuAction || !(fCPU > 0))
        return;
    m_strCpuValue = QString::number(double(fCPU), 'g', 6);
    m_pCpuAction->setText(tr("CPU: %1%").arg(double(fCPU), 0, 'g', -1, QLatin1Char(' ')));
}

void VxMainWindow::OnShowMemCpuDlg()
{
    if (!m_pResourceMenu || !m_pResourceButton)
        return;
    m_pResourceMenu->exec(QCursor::pos() + QPoint(-15, 20));
    m_pResourceButton->update();
}

bool VxMainWindow::eventFilter(QObject *pObject, QEvent *pEvent)
{
    if (pObject == m_pResourceButton && pEvent->type() == QEvent::ToolTip)
        OnShowMemCpuDlg();
    return CustomMainWindow::eventFilter(pObject, pEvent);
}

void VxMainWindow::customEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::Type(1100)) {
        const QString strLanguage = LuInterface::language(1);
        switchLanguage(strLanguage);
        setLanguageMarks(strLanguage == QLatin1String("ENG"));
    }
    pEvent->accept();
}

void VxMainWindow::closeEvent(QCloseEvent *pEvent)
{
    if (!m_pPage || m_pPage->isWorkerIdle())
        CustomMainWindow::closeEvent(pEvent);
    else
        pEvent->ignore(); // a diagnosis or optimization is running
}

void VxMainWindow::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    CustomMainWindow::changeEvent(pEvent);
}

void VxMainWindow::retranslate()
{
    if (!m_pExportAction)
        return;
    if (CustomTitleBar *pTitleBar = cTitleBar())
        pTitleBar->cSetTitleText(tr("Vetrix Tool"));
    setWindowTitle(tr("Vetrix Tool"));
    m_pFileMenu->setTitle(tr("File"));
    m_pHelpMenu->setTitle(tr("Help"));
    m_pLangMenu->setTitle(tr("Language"));
    if (m_pFileButton)
        m_pFileButton->setText(tr("File"));
    if (m_pHelpButton)
        m_pHelpButton->setText(tr("Help"));
    m_pExportAction->setText(tr("Export"));
    m_pUserDocAction->setText(tr("User Manual"));
    m_pDumpAction->setText(tr("Acquire Dump Files"));
    m_pExportJsonAction->setText(tr("Export JSON Report…"));
    m_pCompareAction->setText(tr("Compare with Report…"));
    m_pUndoAction->setText(tr("Undo Last Optimization"));
    updateUndoAction(m_pPage->isWorkerIdle());
    m_pAboutAction->setText(tr("About"));
    m_pMemoryAction->setText(tr("Memory: %1%").arg(m_strMemoryValue));
    m_pCpuAction->setText(tr("CPU: %1%").arg(m_strCpuValue));
}

QString VxMainWindow::userManualUrl(QString *pStartPage)
{
    const QString strDir = QCoreApplication::applicationDirPath();
    QString strPath;
    QString strTopic;
    if (LuInterface::language(0) == QLatin1String("ENG")) {
        strPath = strDir + QStringLiteral("/../doc/User_Manual_Orvex_English/index.html");
        strTopic = QStringLiteral("GUID-CAB2338A-7C22-4FB6-B268-6BC80BF7D6AC");
    } else {
        strPath = strDir + QStringLiteral("/../doc/User_Manual_Orvex_Chinese/index.html");
        strTopic = QStringLiteral("GUID-AAB876F3-D1ED-4664-A94D-56CA4C6FE275");
    }
    if (pStartPage)
        *pStartPage = strPath;
    return QUrl::fromLocalFile(strPath).toString() + QStringLiteral("?guid=%1.html").arg(strTopic);
}

void VxMainWindow::openUserManual()
{
    QString strStartPage;
    const QString strUrl = userManualUrl(&strStartPage);
    if (!LuInterface::OpenHtmlByDefBrowser(strUrl))
        QDesktopServices::openUrl(QUrl::fromLocalFile(strStartPage));
}

namespace {
std::atomic<int> &samplePeriod()
{
    static std::atomic<int> nMs{1000};
    return nMs;
}
} // namespace

void VxMainWindow::setSamplePeriod(int nMs)
{
    samplePeriod() = nMs;
}

void VxMainWindow::ResourceUsageLoop()
{
    VxResourceSampler sampler;
    while (m_bRunning) {
        emit SigUpdateMemoryUsage(sampler.memoryLoad());
        emit SigUpdateCPUUsage(sampler.cpuLoad());
        // One sample a second; a closing window wakes the loop at once.
        std::unique_lock<std::mutex> lock(m_loopMutex);
        m_loopWake.wait_for(lock, std::chrono::milliseconds(samplePeriod().load()), [this] { return !m_bRunning; });
    }
}

void VxMainWindow::openAbout()
{
    QAboutDlg dialog(this);
    dialog.exec();
}

void VxMainWindow::openDumpTool()
{
    try {
        VxGrabDumpTool dialog(this);
        dialog.exec();
    } catch (const std::exception &error) {
        qCWarning(lcMainWindow) << "cannot build the dump tool:" << error.what();
    }
}
