// kitdemo: shows the widget kit's windows side by side so they can be
// looked at and captured (tools/screenshot). Options:
//   --lang zh|en     language of the kit (and of the demo's own texts)
//   --only main      show only the main window
//   --menu           open the Help menu and its Language submenu
//   --maximized      show the main window maximised
#include "custom.h"
#include "customfolderselectwidget.h"
#include "customlabel.h"
#include "customlinewidget.h"
#include "customloadingdialog.h"
#include "custommainwindow.h"
#include "custommenu.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customsavedonehintdlg.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "customtreewidget.h"

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QResource>
#include <QStyleFactory>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>

namespace {

bool g_bChinese = false;

QString t(const char *pEnglish, const char *pChinese)
{
    return g_bChinese ? QString::fromUtf8(pChinese) : QString::fromUtf8(pEnglish);
}

QWidget *buildPage(QWidget *pParent)
{
    auto *pPage = new QWidget(pParent);
    pPage->setAutoFillBackground(true);
    QPalette palette = pPage->palette();
    palette.setColor(QPalette::Window, QColor("#F2F3F5"));
    pPage->setPalette(palette);
    auto *pLayout = new QVBoxLayout(pPage);
    pLayout->setContentsMargins(24, 20, 24, 20);
    pLayout->setSpacing(14);

    auto *pHead = new QHBoxLayout;
    auto *pImage = new QLabel(pPage);
    pImage->setFixedSize(102, 102);
    pImage->setPixmap(Custom::loadPixmap(QStringLiteral(":/Vetrix/Vetrix/DetectNothing.png"), pPage->devicePixelRatioF()));
    pHead->addWidget(pImage);
    auto *pTexts = new QVBoxLayout;
    auto *pTitle = new CustomLabel(t("Vetrix Tool", "Vetrix工具"), pPage);
    pTitle->cSetFontSize(18);
    pTitle->cSetFontWeight(75);
    pTitle->cSetFontColor(QStringLiteral("#23262B"));
    pTexts->addWidget(pTitle);
    auto *pDetail = new CustomLabel(t("Check the PC system, driver, and software running environment.",
                                      "检测电脑系统、驱动及软件运行环境。"), pPage);
    pDetail->cSetFontColor(QStringLiteral("#5C6370"));
    pTexts->addWidget(pDetail);
    pHead->addLayout(pTexts, 1);
    auto *pStart = new CustomPushButton(t("Start Diagnosis", "开始诊断"), pPage);
    pStart->setFixedSize(135, 44);
    pHead->addWidget(pStart);
    pLayout->addLayout(pHead);

    auto *pLine = new CustomLineWidget(1, pPage);
    pLine->setFixedHeight(1);
    pLayout->addWidget(pLine);

    auto *pTree = new CustomTreeWidget(pPage);
    pTree->setColumnCount(2);
    pTree->header()->hide();
    pTree->setIconSize(QSize(30, 30));
    pTree->header()->setSectionResizeMode(QHeaderView::Stretch);
    const char *aGroups[][2] = {{"SDK Diagnosis", "SDK诊断"}, {"Driver Diagnosis", "驱动诊断"}};
    const char *aIcons[] = {":/Vetrix/Vetrix/ResultNormal.png", ":/Vetrix/Vetrix/ResultMedium.png",
                            ":/Vetrix/Vetrix/ResultSerious.png"};
    int nIcon = 0;
    for (const auto &group : aGroups) {
        auto *pGroup = new QTreeWidgetItem(pTree, {t(group[0], group[1])});
        for (int i = 0; i < 2; ++i) {
            auto *pItem = new QTreeWidgetItem(pGroup, {t("SDK Environment Variables", "SDK环境变量")});
            pItem->setIcon(0, QIcon(QString::fromLatin1(aIcons[nIcon++ % 3])));
            auto *pButton = new CustomPushButton(nIcon % 3 == 1 ? t("Normal", "正常") : t("Repair", "修复"), pTree);
            pButton->setFixedSize(g_bChinese ? 86 : 120, 24);
            pButton->setEnabled(nIcon % 3 != 1);
            auto *pCell = new QWidget(pTree);
            auto *pCellLayout = new QHBoxLayout(pCell);
            pCellLayout->setContentsMargins(0, 0, 12, 0);
            pCellLayout->addStretch(1);
            pCellLayout->addWidget(pButton);
            pTree->setItemWidget(pItem, 1, pCell);
        }
    }
    pTree->expandAll();
    pLayout->addWidget(pTree, 1);
    return pPage;
}

CustomMainWindow *buildMainWindow()
{
    auto *pWindow = new CustomMainWindow;
    CustomTitleBar *pBar = pWindow->cTitleBar();
    pBar->cSetTitleControls(7);
    pBar->cSetTitleText(t("Vetrix Tool", "Vetrix工具"));
    pBar->cSetTitleIcon(QStringLiteral(":/Vetrix/Vetrix/Logo.png"));
    pWindow->setWindowTitle(pBar->cTitleText());

    auto *pFile = new CustomMenu(t("File", "文件"), pWindow);
    pBar->cAddMenu(pFile->title(), pFile);
    pFile->addAction(t("Export", "导出"))->setEnabled(false);
    auto *pHelp = new CustomMenu(t("Help", "帮助"), pWindow);
    pBar->cAddMenu(pHelp->title(), pHelp);
    auto *pLang = new CustomMenu(t("Language", "语言"), pHelp);
    pHelp->addMenu(pLang);
    QAction *pEng = pLang->addAction(QStringLiteral("English"));
    QAction *pCh = pLang->addAction(QString::fromUtf8("简体中文"));
    pEng->setCheckable(true);
    pCh->setCheckable(true);
    (g_bChinese ? pCh : pEng)->setChecked(true);
    pHelp->addAction(t("User Manual", "用户手册"));
    pHelp->addAction(t("About", "关于"));
    pBar->cAddMenuLayoutStretch();
    CustomPushButton *pUsage = pBar->cAddMenu(QString(), nullptr);
    pUsage->setFixedSize(24, 24);
    pUsage->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_normal.png"), CustomObject::StateNormal);
    pUsage->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_click.png"), CustomObject::StatePressed);
    pUsage->cSetBackgroundImage(QStringLiteral(":/Corvane/Corvane/Button/icon_pc_data_disable.png"), CustomObject::StateDisabled);

    pWindow->cSetCentralWidget(buildPage(pWindow));
    pWindow->cSetMinStrechSize(QSize(800, 500));
    pWindow->cEnableDefualtShadow();
    pWindow->cSetStrechEdges(203);
    pWindow->resize(1040, 640);
    return pWindow;
}

CustomMainWindow *buildDialog(QWidget *pParent)
{
    auto *pDialog = new CustomMainWindow(pParent);
    pDialog->cTitleBar()->cSetTitleControls(4);
    pDialog->cTitleBar()->cSetTitleText(t("Environment Variables", "环境变量"));
    pDialog->cAddCustomButtons({t("Repair", "修复")});
    pDialog->cSetButtons(CustomMainWindow::CancelButton);
    auto *pBody = new QWidget(pDialog);
    auto *pLayout = new QVBoxLayout(pBody);
    pLayout->setContentsMargins(18, 18, 18, 0);
    auto *pTable = new CustomTableWidget(3, 3, pBody);
    pTable->setHorizontalHeaderLabels({t("Variable Name", "变量名"), t("Variable Value", "变量值"), t("Status", "状态")});
    pTable->horizontalHeader()->setFixedHeight(34);
    const char *aRows[][3] = {{"MVCAM_COMMON_RUNENV", "/opt/Orvex/Runtime", "Normal"},
                              {"MVCAM_GENICAM_CLPROTOCOL", "/opt/Orvex/Runtime/CLProtocol", "Normal"},
                              {"path", "/usr/local/bin:/usr/bin", "Abnormal"}};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            pTable->setItem(r, c, new QTableWidgetItem(QString::fromLatin1(aRows[r][c])));
        pTable->setRowHeight(r, 38);
    }
    pTable->item(2, 2)->setForeground(QColor("#E81123"));
    pTable->setColumnWidth(0, 200);
    pTable->setColumnWidth(1, 250);
    pTable->setColumnWidth(2, 80);
    pTable->setFixedSize(534, 3 * 38 + 36);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    pDialog->cSetCentralWidget(pBody);
    pDialog->setFixedSize(570, 330);
    return pDialog;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("lang"), QStringLiteral("zh or en"), QStringLiteral("lang"), QStringLiteral("en")});
    parser.addOption({QStringLiteral("only"), QStringLiteral("main: only the main window"), QStringLiteral("what")});
    parser.addOption({QStringLiteral("menu"), QStringLiteral("open the Help menu")});
    parser.addOption({QStringLiteral("maximized"), QStringLiteral("maximise the main window")});
    parser.process(app);
    g_bChinese = parser.value(QStringLiteral("lang")) == QLatin1String("zh");

    const QString strDir = QCoreApplication::applicationDirPath();
    QResource::registerResource(strDir + QStringLiteral("/rcc/Panekit_Default.rcc"));
    QResource::registerResource(strDir + QStringLiteral("/rcc/Orvex.rcc"));
    Custom::addXmlPath(QStringLiteral(":/Orvex/QSS/CustomStyleSheet_ox.xml"));
    Custom::setGlobalFontFamily(Custom::Chinese, QStringLiteral("Microsoft YaHei"));
    QTranslator translator;
    if (g_bChinese) {
        Custom::setLanguage(Custom::Chinese);
        if (translator.load(QStringLiteral("./Translation/Panekit_zh_CN.qm"), strDir))
            QCoreApplication::installTranslator(&translator);
    } else {
        Custom::setLanguage(Custom::English);
    }
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Vetrix/Vetrix/Client.ico")));

    CustomMainWindow *pMain = buildMainWindow();
    pMain->move(10, 10);
    if (parser.isSet(QStringLiteral("maximized")))
        pMain->showMaximized();
    else
        pMain->show();
    if (parser.isSet(QStringLiteral("menu"))) {
        QTimer::singleShot(800, pMain, [pMain] {
            for (auto *pButton : pMain->cTitleBar()->findChildren<CustomPushButton *>()) {
                if (pButton->menu() && pButton->menu()->actions().size() > 1) {
                    QMenu *pHelp = pButton->menu();
                    QTimer::singleShot(300, pHelp, [pHelp] {
                        if (QAction *pLang = pHelp->actions().value(0))
                            pHelp->setActiveAction(pLang);
                        if (QMenu *pSub = pHelp->actions().value(0)->menu())
                            pSub->popup(pHelp->geometry().topRight());
                    });
                    pButton->showMenu();
                    return;
                }
            }
        });
    }
    if (parser.value(QStringLiteral("only")) == QLatin1String("main"))
        return app.exec();

    CustomMainWindow *pDialog = buildDialog(pMain);
    pDialog->move(1040, 20);
    pDialog->show();

    auto *pBox = new CustomMessageBox(CustomMessageBox::Warning,
                                      t("The file path is too long.", "文件路径过长。"),
                                      t("Prompt", "提示"), CustomMessageBox::Ok | CustomMessageBox::Cancel, pMain);
    pBox->setModal(false);
    pBox->move(1060, 380);
    pBox->show();

    auto *pSaved = new CustomSaveDoneHintDlg(QStringLiteral("/home/user/.local/share/Data/VetrixTool/Log_20250225_101500.log"),
                                             t("Diagnosis result is exported.", "诊断结果已导出。"), pMain);
    pSaved->setModal(false);
    pSaved->move(1060, 600);
    pSaved->show();

    auto *pLoading = new CustomLoadingDialog(pMain);
    pLoading->SetLabelText(t("Repairing environment variables...", "正在修复环境变量..."));
    pLoading->show();
    pLoading->move(1100, 820);

    auto *pFolder = new CustomMainWindow(pMain);
    pFolder->cTitleBar()->cSetTitleControls(4);
    pFolder->cTitleBar()->cSetTitleText(t("Acquire Dump Files", "获取Dump文件"));
    pFolder->cSetButtons(CustomMainWindow::OkButton);
    auto *pFolderBody = new QWidget(pFolder);
    auto *pFolderLayout = new QVBoxLayout(pFolderBody);
    pFolderLayout->setContentsMargins(20, 16, 20, 0);
    pFolderLayout->addWidget(new QLabel(t("Dump File Saving Path:", "Dump文件保存路径："), pFolderBody));
    auto *pField = new CustomFolderSelectWidget(pFolderBody);
    pField->cSetEnableSearchButton(true);
    pField->cSetAutoSelectFolder(true);
    pField->setFixedHeight(32);
    pField->setReadOnly(true);
    pField->setText(QStringLiteral("/home/user/.local/share/VetrixTool/Dump"));
    pFolderLayout->addWidget(pField);
    pFolderLayout->addStretch(1);
    pFolder->cSetCentralWidget(pFolderBody);
    pFolder->setFixedSize(430, 230);
    pFolder->move(20, 700);
    pFolder->show();
    return app.exec();
}
