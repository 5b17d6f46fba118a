#include "customsavedonehintdlg.h"

#include "custom.h"
#include "custompushbutton.h"
#include "customtitlebar.h"
#include "kitstyle.h"

#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QUrl>
#include <QVBoxLayout>

CustomSaveDoneHintDlg::CustomSaveDoneHintDlg(const QString &strFilePath, const QString &strText, QWidget *pParent)
    : CustomMainWindow(pParent)
    , m_strFilePath(strFilePath)
    , m_strText(strText)
{
    setModal(true);
    cTitleBar()->cSetTitleControls(CustomTitleBar::CloseControl);

    auto *pBody = new QWidget(this);
    auto *pRow = new QHBoxLayout(pBody);
    pRow->setContentsMargins(24, 22, 24, 4);
    pRow->setSpacing(14);
    auto *pIcon = new QLabel(pBody);
    pIcon->setFixedSize(32, 32);
    QPixmap pixmap = Custom::loadPixmap(QStringLiteral(":/Panekit/MessageBox/success.png"), devicePixelRatioF());
    if (!pixmap.isNull())
        pIcon->setPixmap(pixmap);
    pRow->addWidget(pIcon, 0, Qt::AlignTop);

    auto *pTexts = new QVBoxLayout;
    pTexts->setSpacing(8);
    m_pText = new QLabel(pBody);
    m_pText->setWordWrap(true);
    QFont textFont = m_pText->font();
    textFont.setPixelSize(14);
    m_pText->setFont(textFont);
    m_pText->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::text()));
    pTexts->addWidget(m_pText);
    m_pPath = new QLabel(QDir::toNativeSeparators(strFilePath), pBody);
    m_pPath->setWordWrap(true);
    m_pPath->setFixedWidth(380);
    m_pPath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pPath->setToolTip(QDir::toNativeSeparators(strFilePath));
    m_pPath->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::textSecondary()));
    pTexts->addWidget(m_pPath);
    pTexts->addStretch(1);
    pRow->addLayout(pTexts, 1);
    cSetCentralWidget(pBody);

    cAddCustomButtons({QString(), QString()});
    cButton(0)->cSetButtonStyle(CustomPushButton::Secondary);
    cButton(1)->setDefault(true);
    retranslate();
    connect(this, &CustomMainWindow::cSigButtonClick, this, &CustomSaveDoneHintDlg::onButtonClicked);
    adjustSize();
    setFixedSize(sizeHint().expandedTo(QSize(480, 180)));
}

QUrl CustomSaveDoneHintDlg::cFolderUrl() const
{
    return QUrl::fromLocalFile(QFileInfo(m_strFilePath).absolutePath());
}

bool CustomSaveDoneHintDlg::cOpenFolder()
{
    return QDesktopServices::openUrl(cFolderUrl());
}

void CustomSaveDoneHintDlg::onButtonClicked(int nIndex)
{
    if (nIndex == 0)
        cOpenFolder();
    cOnButtonClicked(nIndex);
}

void CustomSaveDoneHintDlg::retranslate()
{
    const QString strTitle = tr("Prompt");
    cTitleBar()->cSetTitleText(strTitle);
    setWindowTitle(strTitle);
    m_pText->setText(m_strText.isEmpty() ? tr("The file is saved.") : m_strText);
    cResetCustomButtonNames({tr("Open Folder"), tr("OK")});
}

void CustomSaveDoneHintDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    CustomMainWindow::changeEvent(pEvent);
}
