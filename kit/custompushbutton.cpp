#include "custompushbutton.h"

#include "custom.h"
#include "kitstyle.h"

#include <QPainter>
#include <QStyleOptionButton>

CustomPushButton::CustomPushButton(QWidget *pParent)
    : QPushButton(pParent)
    , CustomObject(this)
{
    setCursor(Qt::PointingHandCursor);
    cUpdateStyle();
}

CustomPushButton::CustomPushButton(const QString &strText, QWidget *pParent)
    : CustomPushButton(pParent)
{
    setText(strText);
}

void CustomPushButton::cSetButtonStyle(ButtonStyle eStyle)
{
    m_eStyle = eStyle;
    cUpdateStyle();
}

int CustomPushButton::cCurrentState() const
{
    if (!isEnabled())
        return StateDisabled;
    if (isDown())
        return StatePressed;
    if (isCheckable() && isChecked())
        return StateChecked;
    if (underMouse())
        return StateHover;
    return StateNormal;
}

bool CustomPushButton::hasImages() const
{
    return !cBackgroundImage(StateNormal).isEmpty();
}

QString CustomPushButton::cDefaultStyleSheet() const
{
    const QString s = cSelector();
    if (hasImages()) {
        return QStringLiteral("%1 { background: transparent; border: none; color: %2; }"
                              "%1::menu-indicator { image: none; width: 0px; }")
            .arg(s, KitStyle::text());
    }
    switch (m_eStyle) {
    case Secondary:
        return QStringLiteral(
                   "%1 { background-color: %2; color: %3; border: 1px solid %4; border-radius: 4px; padding: 0 14px; }"
                   "%1:hover { color: %5; border-color: %5; }"
                   "%1:pressed { background-color: %6; color: %7; border-color: %7; }"
                   "%1:disabled { color: %8; border-color: %4; }"
                   "%1::menu-indicator { image: none; width: 0px; }")
            .arg(s, KitStyle::window(), KitStyle::text(), KitStyle::border(), KitStyle::accentHover(),
                 KitStyle::accentLight(), KitStyle::accentPressed(), KitStyle::textDisabled());
    case Flat:
        return QStringLiteral(
                   "%1 { background: transparent; color: %2; border: none; border-radius: 4px; padding: 0 10px; }"
                   "%1:hover { background-color: %3; }"
                   "%1:pressed, %1:open { background-color: %4; color: %5; }"
                   "%1:disabled { color: %6; }"
                   "%1::menu-indicator { image: none; width: 0px; }")
            .arg(s, KitStyle::text(), KitStyle::hover(), KitStyle::accentLight(), KitStyle::accent(),
                 KitStyle::textDisabled());
    case Primary:
        break;
    }
    return QStringLiteral(
               "%1 { background-color: %2; color: #FFFFFF; border: none; border-radius: 4px; padding: 0 14px; }"
               "%1:hover { background-color: %3; }"
               "%1:pressed { background-color: %4; }"
               "%1:disabled { background-color: %5; color: #F5F7FA; }"
               "%1::menu-indicator { image: none; width: 0px; }")
        .arg(s, KitStyle::accent(), KitStyle::accentHover(), KitStyle::accentPressed(), KitStyle::disabledFill());
}

void CustomPushButton::cStyleChanged()
{
    cUpdateStyle();
    update();
}

void CustomPushButton::enterEvent(QEvent *pEvent)
{
    QPushButton::enterEvent(pEvent);
    update();
}

void CustomPushButton::leaveEvent(QEvent *pEvent)
{
    QPushButton::leaveEvent(pEvent);
    update();
}

void CustomPushButton::paintEvent(QPaintEvent *pEvent)
{
    if (!hasImages()) {
        QPushButton::paintEvent(pEvent);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int nState = cCurrentState();
    QString strImage = cBackgroundImage(nState);
    // A pressed button without its own image shows the hover image if any.
    if (nState == StatePressed && cBackgroundImage(StatePressed) == cBackgroundImage(StateNormal))
        strImage = cBackgroundImage(StateHover);
    const QPixmap pixmap = Custom::loadPixmap(strImage, devicePixelRatioF());
    if (!pixmap.isNull()) {
        // Natural size, centred; scaled down (keeping its shape) when larger
        // than the button, so a small icon in a wide table cell stays square.
        QSizeF size = QSizeF(pixmap.size()) / pixmap.devicePixelRatio();
        if (size.width() > width() || size.height() > height())
            size.scale(QSizeF(width(), height()), Qt::KeepAspectRatio);
        QRectF target(QPointF(0, 0), size);
        target.moveCenter(QRectF(rect()).center());
        painter.drawPixmap(target, pixmap, QRectF(pixmap.rect()));
    }
    if (!text().isEmpty()) {
        QColor textColor = cFontColor(nState);
        if (!textColor.isValid())
            textColor = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
        painter.setPen(textColor);
        painter.setFont(font());
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
    if (hasFocus() && focusPolicy() != Qt::NoFocus) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(1, 1, -1, -1);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
