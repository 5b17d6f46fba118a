#include "custommessagebox.h"

#include "custom.h"
#include "custompushbutton.h"
#include "customtitlebar.h"
#include "kitstyle.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QString iconPath(CustomMessageBox::Icon eIcon)
{
    switch (eIcon) {
    case CustomMessageBox::Information: return QStringLiteral(":/Panekit/MessageBox/information.png");
    case CustomMessageBox::Warning: return QStringLiteral(":/Panekit/MessageBox/warning.png");
    case CustomMessageBox::Critical: return QStringLiteral(":/Panekit/MessageBox/critical.png");
    case CustomMessageBox::Question: return QStringLiteral(":/Panekit/MessageBox/question.png");
    case CustomMessageBox::Success: return QStringLiteral(":/Panekit/MessageBox/success.png");
    default: return QString();
    }
}

QStyle::StandardPixmap fallbackIcon(CustomMessageBox::Icon eIcon)
{
    switch (eIcon) {
    case CustomMessageBox::Warning: return QStyle::SP_MessageBoxWarning;
    case CustomMessageBox::Critical: return QStyle::SP_MessageBoxCritical;
    case CustomMessageBox::Question: return QStyle::SP_MessageBoxQuestion;
    default: return QStyle::SP_MessageBoxInformation;
    }
}

int runBox(CustomMessageBox::Icon eIcon, QWidget *pParent, const QString &strText, const QString &strTitle,
         int nButtons, const QString &strInformativeText)
{
    CustomMessageBox box(eIcon, strText, strTitle, nButtons, pParent, strInformativeText);
    box.exec();
    return box.cClickedButton();
}

} // namespace

CustomMessageBox::CustomMessageBox(Icon eIcon, const QString &strText, const QString &strTitle, int nButtons,
                                   QWidget *pParent, const QString &strInformativeText)
    : CustomMainWindow(pParent)
{
    setModal(true);
    cTitleBar()->cSetTitleControls(CustomTitleBar::CloseControl);
    cTitleBar()->cSetTitleText(strTitle);
    setWindowTitle(strTitle);

    auto *pBody = new QWidget(this);
    auto *pRow = new QHBoxLayout(pBody);
    pRow->setContentsMargins(24, 22, 24, 6);
    pRow->setSpacing(14);

    if (eIcon != NoIcon) {
        auto *pIcon = new QLabel(pBody);
        pIcon->setFixedSize(32, 32);
        QPixmap pixmap = Custom::loadPixmap(iconPath(eIcon), devicePixelRatioF());
        if (pixmap.isNull())
            pixmap = style()->standardIcon(fallbackIcon(eIcon)).pixmap(32, 32);
        else if (pixmap.devicePixelRatio() <= 1.0 && pixmap.width() != 32)
            pixmap = pixmap.scaled(32, 32, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        pIcon->setPixmap(pixmap);
        pRow->addWidget(pIcon, 0, Qt::AlignTop);
    }

    auto *pTexts = new QVBoxLayout;
    pTexts->setSpacing(6);
    m_pText = new QLabel(strText, pBody);
    m_pText->setWordWrap(true);
    m_pText->setMinimumWidth(260);
    m_pText->setMaximumWidth(440);
    m_pText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pText->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::text()));
    QFont textFont = m_pText->font();
    textFont.setPixelSize(14);
    m_pText->setFont(textFont);
    pTexts->addWidget(m_pText);
    m_pInformative = new QLabel(strInformativeText, pBody);
    m_pInformative->setWordWrap(true);
    m_pInformative->setMaximumWidth(440);
    m_pInformative->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::textSecondary()));
    m_pInformative->setVisible(!strInformativeText.isEmpty());
    pTexts->addWidget(m_pInformative);
    pTexts->addStretch(1);
    pRow->addLayout(pTexts, 1);
    cSetCentralWidget(pBody);

    const int aOrder[] = {Yes, No, Ok, Cancel};
    for (int nValue : aOrder) {
        if (nButtons & nValue)
            m_listValues.append(nValue);
    }
    if (m_listValues.isEmpty())
        m_listValues.append(Ok);
    QStringList listNames;
    for (int i = 0; i < m_listValues.size(); ++i)
        listNames.append(QString());
    cAddCustomButtons(listNames);
    for (int i = 0; i < m_listValues.size(); ++i) {
        const int nValue = m_listValues.at(i);
        if (nValue == Cancel || nValue == No)
            cButton(i)->cSetButtonStyle(CustomPushButton::Secondary);
    }
    cButton(0)->setDefault(true);
    retranslate();
    connect(this, &CustomMainWindow::cSigButtonClick, this, &CustomMessageBox::onButtonClicked);
    adjustSize();
    setFixedSize(sizeHint().expandedTo(QSize(360, 160)));
}

QString CustomMessageBox::cText() const
{
    return m_pText->text();
}

QString CustomMessageBox::cInformativeText() const
{
    return m_pInformative->text();
}

void CustomMessageBox::onButtonClicked(int nIndex)
{
    m_nClicked = m_listValues.value(nIndex);
    done(m_nClicked);
}

void CustomMessageBox::retranslate()
{
    QStringList listNames;
    for (int nValue : qAsConst(m_listValues)) {
        switch (nValue) {
        case Yes: listNames.append(tr("Yes")); break;
        case No: listNames.append(tr("No")); break;
        case Cancel: listNames.append(tr("Cancel")); break;
        default: listNames.append(tr("OK")); break;
        }
    }
    cResetCustomButtonNames(listNames);
}

void CustomMessageBox::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    CustomMainWindow::changeEvent(pEvent);
}

int CustomMessageBox::information(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons,
                                  const QString &strInformativeText)
{
    return runBox(Information, pParent, strText, strTitle, nButtons, strInformativeText);
}

int CustomMessageBox::warning(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons,
                              const QString &strInformativeText)
{
    return runBox(Warning, pParent, strText, strTitle, nButtons, strInformativeText);
}

int CustomMessageBox::critical(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons,
                               const QString &strInformativeText)
{
    return runBox(Critical, pParent, strText, strTitle, nButtons, strInformativeText);
}

int CustomMessageBox::question(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons,
                               const QString &strInformativeText)
{
    return runBox(Question, pParent, strText, strTitle, nButtons, strInformativeText);
}
