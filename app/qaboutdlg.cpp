#include "qaboutdlg.h"

#include "custom.h"
#include "customtitlebar.h"
#include "luinterface.h"
#include "vxversion.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

#include <new>

QAboutDlg::QAboutDlg(QWidget *pParent)
    : CustomMainWindow(pParent)
{
    cEnableDefualtShadow();
    if (!init())
        throw std::bad_alloc();
    if (Custom::language() != 0)
        setFixedSize(400, 400);
    else
        setFixedSize(340, 400);
    setSizeGripEnabled(false);
    if (CustomTitleBar *pTitleBar = cTitleBar()) {
        pTitleBar->cSetTitleText(tr("About"));
        pTitleBar->cSetTitleControls(4);
    }
}

namespace {
QLabel *styledLabel(QWidget *pParent, int nPixelSize, int nWeight, const char *pColor, const QString &strFamily = {})
{
    auto *pLabel = new (std::nothrow) QLabel(pParent);
    if (!pLabel)
        return nullptr;
    QFont font = pLabel->font();
    font.setPixelSize(nPixelSize);
    font.setWeight(nWeight);
    if (!strFamily.isEmpty())
        font.setFamily(strFamily);
    pLabel->setFont(font);
    QPalette palette = pLabel->palette();
    palette.setColor(QPalette::WindowText, QColor(QString::fromLatin1(pColor)));
    pLabel->setPalette(palette);
    pLabel->setAlignment(Qt::AlignCenter);
    return pLabel;
}
} // namespace

bool QAboutDlg::init()
{
    auto *pBody = new (std::nothrow) QWidget(this);
    if (!pBody)
        return false;
    m_pLogo = new (std::nothrow) QLabel(pBody);
    m_pTitle = styledLabel(pBody, 23, QFont::Bold, "#383B43", QStringLiteral("Arial"));
    m_pVersion = styledLabel(pBody, 16, QFont::Normal, "#585B67");
    m_pCopyright = styledLabel(pBody, 11, QFont::Normal, "#798098");
    m_pLayout = new (std::nothrow) QVBoxLayout(pBody);
    if (!m_pLogo || !m_pTitle || !m_pVersion || !m_pCopyright || !m_pLayout)
        return false;
    m_pLogo->setFixedSize(338, 120);
    m_pLogo->setPixmap(QIcon(QStringLiteral(":/Vetrix/Vetrix/logo_big.png")).pixmap(QSize(338, 120)));
    m_pLogo->setScaledContents(true);
    m_pVersion->setText(VxVersion::versionText());
    m_pVersion->setVisible(LuInterface::GetOEMCfgValue(QStringLiteral("ShowAboutVersion"), true).toBool());
    m_pCopyright->setWordWrap(true);

    m_pLayout->setContentsMargins(0, 0, 0, 0);
    m_pLayout->setSpacing(0);
    auto addRow = [this](QWidget *pWidget) {
        auto *pRow = new QHBoxLayout;
        pRow->addWidget(pWidget, 0, Qt::AlignCenter);
        m_pLayout->addLayout(pRow);
    };
    m_pLayout->addSpacing(52);
    addRow(m_pLogo);
    addRow(m_pTitle);
    m_pLayout->addSpacing(2);
    addRow(m_pVersion);
    m_pLayout->addSpacing(10);
    addRow(m_pCopyright);
    m_pLayout->addSpacing(5);
    m_pLayout->addStretch();
    cSetCentralWidget(pBody);
    retranslate();
    return true;
}

QString QAboutDlg::copyrightText()
{
    const QString strKey = Custom::language() != 0 ? QStringLiteral("Copyright_EN") : QStringLiteral("Copyright_CN");
    QString strText = LuInterface::softwareConfigInfor(strKey);
    return strText.replace(QStringLiteral("%1"), QString(QChar(0x00A9)));
}

void QAboutDlg::retranslate()
{
    if (m_pTitle)
        m_pTitle->setText(tr("Vetrix Tool"));
    if (m_pCopyright)
        m_pCopyright->setText(copyrightText());
    if (CustomTitleBar *pTitleBar = cTitleBar())
        pTitleBar->cSetTitleText(tr("About"));
}

void QAboutDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    CustomMainWindow::changeEvent(pEvent);
}
