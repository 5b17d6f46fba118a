#include "vxgrabdumptool.h"

#include "customfolderselectwidget.h"
#include "custommessagebox.h"
#include "customtitlebar.h"
#include "dumpgrabber.h"
#include "kitstyle.h"
#include "luinterface.h"
#include "vxplatformtexts.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QVBoxLayout>

#include <new>

VxGrabDumpTool::VxGrabDumpTool(QWidget *pParent)
    : CustomMainWindow(pParent)
{
    if (!init())
        throw std::bad_alloc();
}

VxGrabDumpTool::~VxGrabDumpTool() = default;

bool VxGrabDumpTool::init()
{
    if (!cTitleBar())
        return false;
    if (DumpGrabber::savedTargetFolder().isEmpty())
        DumpGrabber::setSavedTargetFolder(LuInterface::userDataPath() + QStringLiteral("/Dump"));
    cTitleBar()->cSetTitleControls(4);
    cSetButtons(1);
    setFixedSize(430, 230);

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    pPathLabel = new (std::nothrow) QLabel(pBody);
    pExplain = new (std::nothrow) QLabel(pBody);
    pFolder = new (std::nothrow) CustomFolderSelectWidget(pBody);
    if (!pLayout || !pPathLabel || !pExplain || !pFolder)
        return false;
    pFolder->cSetEnableSearchButton(true);
    pFolder->cSetAutoSelectFolder(true);
    pFolder->setFixedHeight(32);
    pFolder->setReadOnly(true);
    pFolder->setText(QDir::toNativeSeparators(DumpGrabber::savedTargetFolder()));
    pFolder->setToolTip(pFolder->text());
    if (!connect(pFolder, &CustomFolderSelectWidget::cSigFolderChanged, this, [this](const QString &strFolder) {
            pFolder->setToolTip(strFolder);
            DumpGrabber::setSavedTargetFolder(QDir::fromNativeSeparators(strFolder));
        }))
        return false;
    pExplain->setWordWrap(true);
    pExplain->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    pExplain->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::textSecondary()));
    pPathLabel->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::text()));
    pLayout->setContentsMargins(20, 16, 20, 8);
    pLayout->setSpacing(8);
    pLayout->addWidget(pPathLabel);
    pLayout->addWidget(pFolder);
    pLayout->addWidget(pExplain);
    pLayout->addStretch(1);
    retranslateTexts();
    cSetCentralWidget(pBody);
    return true;
}

void VxGrabDumpTool::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("Acquire Dump Files"));
    setWindowTitle(tr("Acquire Dump Files"));
    pPathLabel->setText(tr("Dump File Saving Path:"));
    pExplain->setText(VxPlatformTexts::dumpToolExplanation());
}

VxGrabDumpTool::CGrabResult VxGrabDumpTool::grabInto(const QString &strFolder)
{
    CGrabResult result;
    result.strTarget = DumpGrabber::targetFolder(strFolder);
    QMap<QString, QString> mapFiles;
    DumpGrabber::collect(mapFiles);
    QStringList listBefore;
    for (auto it = mapFiles.cbegin(); it != mapFiles.cend(); ++it) {
        if (QFileInfo::exists(result.strTarget + it.key()))
            listBefore << it.key();
    }
    DumpGrabber::grab(strFolder);
    for (auto it = mapFiles.cbegin(); it != mapFiles.cend(); ++it) {
        if (listBefore.contains(it.key()))
            result.listExisting << it.key();
        else if (QFileInfo::exists(result.strTarget + it.key()))
            result.listCopied << it.key();
        else
            result.listFailed << it.key();
    }
    return result;
}

QString VxGrabDumpTool::resultText(const CGrabResult &result)
{
    const QString strTarget = QDir::toNativeSeparators(QDir::cleanPath(result.strTarget));
    if (result.listCopied.isEmpty() && result.listExisting.isEmpty() && result.listFailed.isEmpty())
        return tr("No dump files were found. Nothing was copied to %1.").arg(strTarget);
    if (result.listCopied.isEmpty())
        return tr("No new dump files were copied to %1.").arg(strTarget);
    return tr("%n dump file(s) copied to %1.", nullptr, result.listCopied.size()).arg(strTarget);
}

QString VxGrabDumpTool::resultDetails(const CGrabResult &result)
{
    QStringList listLines;
    if (!result.listCopied.isEmpty())
        listLines << tr("Copied: %1").arg(result.listCopied.join(QStringLiteral(", ")));
    if (!result.listExisting.isEmpty())
        listLines << tr("Already there, left unchanged: %1").arg(result.listExisting.join(QStringLiteral(", ")));
    if (!result.listFailed.isEmpty())
        listLines << tr("Could not be copied: %1").arg(result.listFailed.join(QStringLiteral(", ")));
    return listLines.join(QLatin1Char('\n'));
}

void VxGrabDumpTool::cOnOKClicked()
{
    const QString strFolder = QDir::fromNativeSeparators(pFolder->text());
    DumpGrabber::setSavedTargetFolder(strFolder);
    // The proposed folder may not exist yet on a first run: make it.
    if (strFolder.isEmpty() || !QDir().mkpath(strFolder)) {
        CustomMessageBox::warning(this, tr("The folder %1 cannot be created. Please choose another saving path.")
                                            .arg(QDir::toNativeSeparators(strFolder)),
                                  tr("Acquire Dump Files"));
        return;
    }
    const CGrabResult result = grabInto(strFolder);
    if (!result.listCopied.isEmpty())
        CustomMessageBox::information(this, resultText(result), tr("Acquire Dump Files"), CustomMessageBox::Ok,
                                      resultDetails(result));
    else
        CustomMessageBox::warning(this, resultText(result), tr("Acquire Dump Files"), CustomMessageBox::Ok,
                                  resultDetails(result));
    accept();
}

void VxGrabDumpTool::hideEvent(QHideEvent *pEvent)
{
    if (pFolder)
        DumpGrabber::setSavedTargetFolder(QDir::fromNativeSeparators(pFolder->text()));
    CustomMainWindow::hideEvent(pEvent);
}

void VxGrabDumpTool::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pPathLabel && pExplain)
        retranslateTexts();
    CustomMainWindow::changeEvent(pEvent);
}
