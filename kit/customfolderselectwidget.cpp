#include "customfolderselectwidget.h"

#include "custompushbutton.h"
#include "kitstyle.h"

#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>

CustomFolderSelectWidget::CustomFolderSelectWidget(QWidget *pParent)
    : QWidget(pParent)
    , CustomObject(this)
{
    setAttribute(Qt::WA_StyledBackground);
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(1, 1, 1, 1);
    pLayout->setSpacing(0);
    m_pEdit = new QLineEdit(this);
    m_pEdit->setFrame(false);
    pLayout->addWidget(m_pEdit, 1);
    m_pButton = new CustomPushButton(QStringLiteral("···"), this);
    m_pButton->cSetButtonStyle(CustomPushButton::Flat);
    m_pButton->setFixedWidth(36);
    m_pButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_pButton->setToolTip(tr("Browse"));
    pLayout->addWidget(m_pButton);
    connect(m_pButton, &QPushButton::clicked, this, &CustomFolderSelectWidget::onSearchClicked);
    connect(m_pEdit, &QLineEdit::textChanged, this, &CustomFolderSelectWidget::cSigFolderChanged);
    cUpdateStyle();
}

QString CustomFolderSelectWidget::cDefaultStyleSheet() const
{
    return QStringLiteral("%1 { background-color: %2; border: 1px solid %3; border-radius: 4px; }"
                          "%1 QLineEdit { background: transparent; color: %4; padding: 0 8px; }")
        .arg(cSelector(), KitStyle::window(), KitStyle::border(), KitStyle::text());
}

void CustomFolderSelectWidget::cSetEnableSearchButton(bool bEnable)
{
    m_pButton->setVisible(bEnable);
    m_pButton->setEnabled(bEnable);
}

void CustomFolderSelectWidget::cSetAutoSelectFolder(bool bAuto)
{
    m_bAutoSelect = bAuto;
}

QString CustomFolderSelectWidget::text() const
{
    return m_pEdit->text();
}

void CustomFolderSelectWidget::setText(const QString &strText)
{
    m_pEdit->setText(strText);
    m_pEdit->setToolTip(QDir::toNativeSeparators(strText));
}

void CustomFolderSelectWidget::setReadOnly(bool bReadOnly)
{
    m_pEdit->setReadOnly(bReadOnly);
}

bool CustomFolderSelectWidget::isReadOnly() const
{
    return m_pEdit->isReadOnly();
}

void CustomFolderSelectWidget::onSearchClicked()
{
    emit cSigSearchClicked();
    if (!m_bAutoSelect)
        return;
    const QString strFolder = QFileDialog::getExistingDirectory(this, tr("Select Folder"), text());
    if (!strFolder.isEmpty())
        setText(QDir::fromNativeSeparators(strFolder));
}

void CustomFolderSelectWidget::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        m_pButton->setToolTip(tr("Browse"));
    QWidget::changeEvent(pEvent);
}
