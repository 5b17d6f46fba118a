#include "customobject.h"

#include "custom.h"

#include <QMetaObject>
#include <QVariant>
#include <QWidget>

namespace {

QString pseudoState(int nState)
{
    switch (nState) {
    case CustomObject::StateHover: return QStringLiteral(":hover");
    case CustomObject::StatePressed: return QStringLiteral(":pressed");
    case CustomObject::StateDisabled: return QStringLiteral(":disabled");
    case CustomObject::StateChecked: return QStringLiteral(":checked");
    default: return QString();
    }
}

QString cssColor(const QColor &color)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(color.red()).arg(color.green()).arg(color.blue()).arg(color.alpha());
}

bool validState(int nState)
{
    return nState >= CustomObject::StateNormal && nState < CustomObject::StateCount;
}

} // namespace

CustomObject::CustomObject(QWidget *pHost)
    : m_pHost(pHost)
{
}

CustomObject::~CustomObject() = default;

void CustomObject::cSetBackgroundImage(const QString &strPath, int nState)
{
    if (!validState(nState))
        return;
    if (strPath.isEmpty())
        m_mapImage.remove(nState);
    else
        m_mapImage.insert(nState, strPath);
    cStyleChanged();
}

QString CustomObject::cBackgroundImage(int nState) const
{
    return m_mapImage.value(nState, m_mapImage.value(StateNormal));
}

void CustomObject::cSetBackgroundColor(const QString &strColorOrKey, int nState)
{
    const QString strBrush = Custom::styleSheetBrush(strColorOrKey);
    cSetBackgroundColor(Custom::resolveColor(strColorOrKey), nState);
    if (!strBrush.isEmpty() && validState(nState)) {
        m_mapBackgroundCss.insert(nState, strBrush);
        cStyleChanged();
    }
}

void CustomObject::cSetBackgroundColor(const char *pColorOrKey, int nState)
{
    cSetBackgroundColor(QString::fromUtf8(pColorOrKey), nState);
}

void CustomObject::cSetBackgroundColor(const QColor &color, int nState)
{
    if (!validState(nState))
        return;
    m_mapBackgroundCss.remove(nState);
    if (color.isValid())
        m_mapBackground.insert(nState, color);
    else
        m_mapBackground.remove(nState);
    cStyleChanged();
}

QColor CustomObject::cBackgroundColor(int nState) const
{
    return m_mapBackground.value(nState, m_mapBackground.value(StateNormal));
}

void CustomObject::cSetFontColor(const QString &strColorOrKey, int nState)
{
    cSetFontColor(Custom::resolveColor(strColorOrKey), nState);
}

void CustomObject::cSetFontColor(const char *pColorOrKey, int nState)
{
    cSetFontColor(QString::fromUtf8(pColorOrKey), nState);
}

void CustomObject::cSetFontColor(const QColor &color, int nState)
{
    if (!validState(nState))
        return;
    if (color.isValid())
        m_mapFontColor.insert(nState, color);
    else
        m_mapFontColor.remove(nState);
    cStyleChanged();
}

QColor CustomObject::cFontColor(int nState) const
{
    return m_mapFontColor.value(nState, m_mapFontColor.value(StateNormal));
}

void CustomObject::cSetBorder(int nWidth, const QColor &color, int nRadius)
{
    m_nBorderWidth = qMax(0, nWidth);
    m_borderColor = color;
    m_nBorderRadius = qMax(0, nRadius);
    cStyleChanged();
}

void CustomObject::cSetFont(const QFont &font)
{
    if (m_pHost)
        m_pHost->setFont(font);
}

void CustomObject::cSetFontSize(int nPixelSize)
{
    if (!m_pHost || nPixelSize <= 0)
        return;
    QFont font = m_pHost->font();
    font.setPixelSize(nPixelSize);
    m_pHost->setFont(font);
}

void CustomObject::cSetFontFamily(const QString &strFamily)
{
    if (!m_pHost || strFamily.isEmpty())
        return;
    QFont font = m_pHost->font();
    font.setFamily(strFamily);
    m_pHost->setFont(font);
}

void CustomObject::cSetFontWeight(int nWeight)
{
    if (!m_pHost)
        return;
    QFont font = m_pHost->font();
    font.setWeight(qBound(0, nWeight, 99));
    m_pHost->setFont(font);
}

void CustomObject::cSetStyleSelector(const QString &strSelector)
{
    m_strSelector = strSelector;
    if (m_pHost)
        m_pHost->setProperty("styleSelector", strSelector);
    cUpdateStyle();
}

QString CustomObject::cStyleSelector() const
{
    return m_strSelector;
}

QString CustomObject::cDefaultStyleSheet() const
{
    return QString();
}

QString CustomObject::cSelector() const
{
    return m_pHost ? QString::fromLatin1(m_pHost->metaObject()->className()) : QString();
}

void CustomObject::cStyleChanged()
{
    cUpdateStyle();
}

void CustomObject::cUpdateStyle()
{
    if (!m_pHost)
        return;
    QString strSheet = cDefaultStyleSheet();
    if (!m_strSelector.isEmpty())
        strSheet += QLatin1Char('\n') + Custom::styleSheetForSelector(m_strSelector);
    const QString strSelf = cSelector();
    for (int nState = StateNormal; nState < StateCount; ++nState) {
        QString strRule;
        if (m_mapBackgroundCss.contains(nState))
            strRule += QStringLiteral("background: %1;").arg(m_mapBackgroundCss.value(nState));
        else if (m_mapBackground.contains(nState))
            strRule += QStringLiteral("background-color: %1;").arg(cssColor(m_mapBackground.value(nState)));
        if (m_mapImage.contains(nState) && !cPaintsImages())
            strRule += QStringLiteral("border-image: url(%1) 0 0 0 0 stretch stretch;").arg(m_mapImage.value(nState));
        if (m_mapFontColor.contains(nState))
            strRule += QStringLiteral("color: %1;").arg(cssColor(m_mapFontColor.value(nState)));
        if (nState == StateNormal && m_nBorderWidth >= 0) {
            strRule += m_nBorderWidth == 0
                ? QStringLiteral("border: none;")
                : QStringLiteral("border: %1px solid %2;").arg(m_nBorderWidth).arg(cssColor(m_borderColor));
            strRule += QStringLiteral("border-radius: %1px;").arg(m_nBorderRadius);
        }
        if (!strRule.isEmpty())
            strSheet += QStringLiteral("\n%1%2 { %3 }").arg(strSelf, pseudoState(nState), strRule);
    }
    m_pHost->setStyleSheet(strSheet);
}
