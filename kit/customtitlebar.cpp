#include "customtitlebar.h"

#include "custom.h"
#include "custompushbutton.h"
#include "kitstyle.h"

#include <QAbstractButton>
#include <QApplication>
#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

namespace {

const int kTitleHeight = 40;

// One window control (minimise, maximise/restore, close), drawn as a thin
// glyph so it stays sharp at every scale.
class TitleControlButton : public QAbstractButton
{
public:
    TitleControlButton(CustomTitleBar::TitleControl eKind, QWidget *pParent)
        : QAbstractButton(pParent)
        , m_eKind(eKind)
    {
        setFixedSize(46, kTitleHeight);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const bool bClose = m_eKind == CustomTitleBar::CloseControl;
        const bool bHot = underMouse() || hasFocus();
        if (bHot || isDown()) {
            QColor fill = bClose ? QColor(0xE8, 0x11, 0x23) : KitStyle::color("Panekit_Hover", "#EEF2F7");
            if (isDown())
                fill = bClose ? QColor(0xC5, 0x0F, 0x1F) : fill.darker(106);
            painter.fillRect(rect(), fill);
        }
        QColor glyph = KitStyle::color("Panekit_TextSecondary", "#5C6370");
        if (bClose && (bHot || isDown()))
            glyph = Qt::white;
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(glyph, 1.2);
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        const QPointF c = QRectF(rect()).center();
        const qreal r = 5.0;
        switch (m_eKind) {
        case CustomTitleBar::MinimizeControl:
            painter.drawLine(QPointF(c.x() - r, c.y()), QPointF(c.x() + r, c.y()));
            break;
        case CustomTitleBar::MaximizeControl:
            if (window()->isMaximized()) {
                painter.drawRect(QRectF(c.x() - r, c.y() - r + 2, 2 * r - 2, 2 * r - 2));
                QPainterPath path;
                path.moveTo(c.x() - r + 2, c.y() - r);
                path.lineTo(c.x() + r, c.y() - r);
                path.lineTo(c.x() + r, c.y() + r - 2);
                painter.drawPath(path);
            } else {
                painter.drawRect(QRectF(c.x() - r, c.y() - r, 2 * r, 2 * r));
            }
            break;
        default:
            painter.drawLine(QPointF(c.x() - r, c.y() - r), QPointF(c.x() + r, c.y() + r));
            painter.drawLine(QPointF(c.x() - r, c.y() + r), QPointF(c.x() + r, c.y() - r));
            break;
        }
    }

private:
    CustomTitleBar::TitleControl m_eKind;
};

bool canMaximize(const QWidget *pWindow)
{
    return pWindow->minimumSize() != pWindow->maximumSize();
}

} // namespace

CustomTitleBar::CustomTitleBar(QWidget *pParent)
    : QWidget(pParent)
    , CustomObject(this)
{
    setFixedHeight(kTitleHeight);
    setAttribute(Qt::WA_StyledBackground);
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(14, 0, 0, 0);
    pLayout->setSpacing(0);

    m_pIcon = new QLabel(this);
    m_pIcon->setFixedSize(20, 20);
    m_pIcon->setScaledContents(false);
    m_pIcon->hide();
    pLayout->addWidget(m_pIcon);
    pLayout->addSpacing(8);

    m_pTitle = new QLabel(this);
    m_pTitle->setObjectName(QStringLiteral("cTitleLabel"));
    QFont titleFont = m_pTitle->font();
    titleFont.setPixelSize(14);
    titleFont.setWeight(QFont::DemiBold);
    m_pTitle->setFont(titleFont);
    pLayout->addWidget(m_pTitle);
    pLayout->addSpacing(18);

    m_pMenuLayout = new QHBoxLayout;
    m_pMenuLayout->setContentsMargins(0, 0, 8, 0);
    m_pMenuLayout->setSpacing(2);
    m_pTailStretch = new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum);
    m_pMenuLayout->addSpacerItem(m_pTailStretch);
    pLayout->addLayout(m_pMenuLayout, 1);

    m_pMinButton = new TitleControlButton(MinimizeControl, this);
    m_pMaxButton = new TitleControlButton(MaximizeControl, this);
    m_pCloseButton = new TitleControlButton(CloseControl, this);
    pLayout->addWidget(m_pMinButton);
    pLayout->addWidget(m_pMaxButton);
    pLayout->addWidget(m_pCloseButton);

    connect(m_pMinButton, &QAbstractButton::clicked, this, [this] {
        emit cSigMinimizeClicked();
        window()->showMinimized();
    });
    connect(m_pMaxButton, &QAbstractButton::clicked, this, [this] {
        emit cSigMaximizeClicked();
        toggleMaximized();
    });
    connect(m_pCloseButton, &QAbstractButton::clicked, this, [this] {
        emit cSigCloseClicked();
        window()->close();
    });

    retranslate();
    updateControls();
    cUpdateStyle();
}

QString CustomTitleBar::cDefaultStyleSheet() const
{
    return QStringLiteral("%1 { background-color: %2; border-bottom: 1px solid %3; }"
                          "QLabel#cTitleLabel { color: %4; background: transparent; }")
        .arg(cSelector(), KitStyle::window(), KitStyle::divider(), KitStyle::text());
}

void CustomTitleBar::cSetTitleControls(TitleControls controls)
{
    m_controls = controls;
    updateControls();
}

void CustomTitleBar::cSetTitleControls(int nControls)
{
    cSetTitleControls(TitleControls(nControls & AllControls));
}

void CustomTitleBar::cSetTitleText(const QString &strText)
{
    m_pTitle->setText(strText);
}

QString CustomTitleBar::cTitleText() const
{
    return m_pTitle->text();
}

void CustomTitleBar::cSetTitleIcon(const QString &strPath)
{
    m_strIconPath = strPath;
    const QPixmap pixmap = strPath.isEmpty() ? QPixmap() : Custom::loadPixmap(strPath, devicePixelRatioF());
    if (pixmap.isNull()) {
        m_pIcon->clear();
        m_pIcon->hide();
        return;
    }
    const qreal dRatio = pixmap.devicePixelRatio();
    QPixmap scaled = pixmap.scaled(QSize(20, 20) * dRatio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(dRatio);
    m_pIcon->setPixmap(scaled);
    m_pIcon->show();
}

CustomPushButton *CustomTitleBar::cAddMenu(const QString &strTitle, QMenu *pMenu)
{
    auto *pButton = new CustomPushButton(strTitle, this);
    pButton->cSetButtonStyle(CustomPushButton::Flat);
    pButton->setFocusPolicy(Qt::TabFocus);
    if (pMenu) {
        pButton->setFixedHeight(28);
        pButton->setMenu(pMenu);
        QAction *pMenuAction = pMenu->menuAction();
        connect(pMenuAction, &QAction::changed, pButton, [pButton, pMenuAction] {
            if (!pMenuAction->text().isEmpty())
                pButton->setText(pMenuAction->text());
        });
        if (strTitle.isEmpty())
            pButton->setText(pMenu->title());
    }
    m_pMenuLayout->insertWidget(m_pMenuLayout->indexOf(m_pTailStretch) >= 0
                                    ? m_pMenuLayout->indexOf(m_pTailStretch)
                                    : m_pMenuLayout->count(),
                                pButton, 0, Qt::AlignVCenter);
    return pButton;
}

void CustomTitleBar::cAddMenuLayoutStretch()
{
    if (m_pTailStretch) {
        // The trailing stretch becomes this stretch; later buttons go after it.
        m_pTailStretch = nullptr;
        return;
    }
    m_pMenuLayout->addStretch(1);
}

QAbstractButton *CustomTitleBar::cControlButton(TitleControl eControl) const
{
    QAbstractButton *pButton = nullptr;
    switch (eControl) {
    case MinimizeControl: pButton = m_pMinButton; break;
    case MaximizeControl: pButton = m_pMaxButton; break;
    case CloseControl: pButton = m_pCloseButton; break;
    default: break;
    }
    return pButton && m_controls.testFlag(eControl) ? pButton : nullptr;
}

void CustomTitleBar::updateControls()
{
    m_pMinButton->setVisible(m_controls.testFlag(MinimizeControl));
    m_pMaxButton->setVisible(m_controls.testFlag(MaximizeControl));
    m_pCloseButton->setVisible(m_controls.testFlag(CloseControl));
    m_pMaxButton->setToolTip(window()->isMaximized() ? tr("Restore") : tr("Maximize"));
    m_pMaxButton->update();
}

void CustomTitleBar::retranslate()
{
    m_pMinButton->setToolTip(tr("Minimize"));
    m_pCloseButton->setToolTip(tr("Close"));
    m_pMaxButton->setToolTip(window()->isMaximized() ? tr("Restore") : tr("Maximize"));
}

void CustomTitleBar::toggleMaximized()
{
    QWidget *pWindow = window();
    if (!m_controls.testFlag(MaximizeControl) || !canMaximize(pWindow))
        return;
    if (pWindow->isMaximized())
        pWindow->showNormal();
    else
        pWindow->showMaximized();
}

void CustomTitleBar::mousePressEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(pEvent);
        return;
    }
    pEvent->accept();
    m_bPressed = true;
    m_bDragging = false;
    m_ptPress = pEvent->globalPos();
    m_ptDragOffset = pEvent->globalPos() - window()->frameGeometry().topLeft();
}

void CustomTitleBar::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (!m_bPressed) {
        QWidget::mouseMoveEvent(pEvent);
        return;
    }
    pEvent->accept();
    QWidget *pWindow = window();
    if (!m_bDragging) {
        // The move starts once the pointer really travels, so clicks and
        // double clicks on the bar stay clicks.
        if ((pEvent->globalPos() - m_ptPress).manhattanLength() < QApplication::startDragDistance())
            return;
        // The window system's move works everywhere, also on Wayland where a
        // client cannot place its own windows.
        if (pWindow->windowHandle() && pWindow->windowHandle()->startSystemMove()) {
            m_bPressed = false;
            return;
        }
        if (pWindow->isMaximized()) {
            m_bPressed = false;
            return;
        }
        m_bDragging = true;
    }
    pWindow->move(pEvent->globalPos() - m_ptDragOffset);
}

void CustomTitleBar::mouseReleaseEvent(QMouseEvent *pEvent)
{
    m_bPressed = false;
    m_bDragging = false;
    QWidget::mouseReleaseEvent(pEvent);
}

void CustomTitleBar::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() == Qt::LeftButton) {
        toggleMaximized();
        pEvent->accept();
        return;
    }
    QWidget::mouseDoubleClickEvent(pEvent);
}

void CustomTitleBar::paintEvent(QPaintEvent *pEvent)
{
    QWidget::paintEvent(pEvent);
}

void CustomTitleBar::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(pEvent);
}

bool CustomTitleBar::eventFilter(QObject *pObject, QEvent *pEvent)
{
    if (pObject == window() && pEvent->type() == QEvent::WindowStateChange)
        updateControls();
    return QWidget::eventFilter(pObject, pEvent);
}
