#include "vxstateitem.h"

#include "custom.h"
#include "vxtitle.h"

#include <QGridLayout>
#include <QLabel>

#include <new>

VxStateItem::VxStateItem(const QString &strIconPath, QWidget *pParent)
    : QWidget(pParent)
{
    setFixedWidth(90);
    m_pIcon = new QLabel(this);
    m_pNumber = new QLabel(QStringLiteral("0"), this);
    m_pCaption = new QLabel(this);
    auto *pLayout = new QGridLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setHorizontalSpacing(6);
    pLayout->setVerticalSpacing(0);
    pLayout->addWidget(m_pIcon, 0, 0, 2, 1, Qt::AlignVCenter);
    pLayout->addWidget(m_pNumber, 0, 1);
    pLayout->addWidget(m_pCaption, 1, 1);

    m_pIcon->setFixedSize(24, 24);
    m_pIcon->setScaledContents(true);
    m_pIcon->setPixmap(Custom::loadPixmap(strIconPath, devicePixelRatioF()));

    QFont numberFont = font();
    numberFont.setPixelSize(20);
    numberFont.setWeight(QFont::Bold);
    m_pNumber->setFont(numberFont);
    QPalette numberPalette = m_pNumber->palette();
    numberPalette.setColor(QPalette::WindowText, VxTitle::strongTextColor());
    m_pNumber->setPalette(numberPalette);

    QFont captionFont = font();
    captionFont.setPixelSize(12);
    m_pCaption->setFont(captionFont);
    QPalette captionPalette = m_pCaption->palette();
    captionPalette.setColor(QPalette::WindowText, VxTitle::textColor());
    m_pCaption->setPalette(captionPalette);
}

void VxStateItem::setNumber(int nCount)
{
    m_pNumber->setText(QString::number(qMax(0, nCount)));
}

QString VxStateItem::numberText() const
{
    return m_pNumber->text();
}

void VxStateItem::setCaption(const QString &strCaption)
{
    m_pCaption->setText(strCaption);
}
