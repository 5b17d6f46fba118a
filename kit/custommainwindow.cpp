#include "custommainwindow.h"

#include "custompushbutton.h"
#include "customtitlebar.h"
#include "kitstyle.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>
#include <QWindow>

namespace {

const int kShadowMargin = 12;
const int kGripMargin = 4;
const int kCornerReach = 16;

// The window system's edges for a set of allowed stretch flags at a point.
Qt::Edges edgesFor(bool bLeft, bool bRight, bool bTop, bool bBottom, int nAllowed)
{
    using W = CustomMainWindow;
    if (bTop && bLeft && (nAllowed & W::TopLeftCorner))
        return Qt::TopEdge | Qt::LeftEdge;
    if (bTop && bRight && (nAllowed & W::TopRightCorner))
        return Qt::TopEdge | Qt::RightEdge;
    if (bBottom && bLeft && (nAllowed & W::BottomLeftCorner))
        return Qt::BottomEdge | Qt::LeftEdge;
    if (bBottom && bRight && (nAllowed & W::BottomRightCorner))
        return Qt::BottomEdge | Qt::RightEdge;
    return {};
}

} // namespace

CustomMainWindow::CustomMainWindow(QWidget *pParent)
    : QDialog(pParent)
    , CustomObject(this)
{
    setWindowFlags((pParent ? Qt::Dialog : Qt::Window) | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinMaxButtonsHint);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);

    auto *pOuter = new QVBoxLayout(this);
    pOuter->setContentsMargins(m_nMargin, m_nMargin, m_nMargin, m_nMargin);
    pOuter->setSpacing(0);

    m_pFace = new QWidget(this);
    m_pFace->setObjectName(QStringLiteral("cWindowFace"));
    m_pFace->setAutoFillBackground(true);
    pOuter->addWidget(m_pFace);

    m_pFaceLayout = new QVBoxLayout(m_pFace);
    m_pFaceLayout->setContentsMargins(0, 0, 0, 0);
    m_pFaceLayout->setSpacing(0);

    m_pTitleBar = new CustomTitleBar(m_pFace);
    m_pFaceLayout->addWidget(m_pTitleBar);
    installEventFilter(m_pTitleBar);

    m_pButtonRow = new QWidget(m_pFace);
    m_pButtonLayout = new QHBoxLayout(m_pButtonRow);
    m_pButtonLayout->setContentsMargins(20, 10, 20, 16);
    m_pButtonLayout->setSpacing(12);
    m_pButtonLayout->addStretch(1);
    m_pButtonRow->hide();
    m_pFaceLayout->addStretch(1);
    m_pFaceLayout->addWidget(m_pButtonRow);

    updateFrame();
}

CustomMainWindow::~CustomMainWindow() = default;

void CustomMainWindow::cSetCentralWidget(QWidget *pWidget)
{
    if (pWidget == m_pCentral)
        return;
    if (m_pCentral) {
        m_pFaceLayout->removeWidget(m_pCentral);
        delete m_pCentral;
        m_pCentral = nullptr;
    }
    // Index 1: after the title bar, in place of the stretch that keeps the
    // button row at the bottom while there is no body.
    QLayoutItem *pStretch = m_pFaceLayout->itemAt(1);
    if (pStretch && pStretch->spacerItem()) {
        m_pFaceLayout->removeItem(pStretch);
        delete pStretch;
    }
    m_pCentral = pWidget;
    if (pWidget)
        m_pFaceLayout->insertWidget(1, pWidget, 1);
    else
        m_pFaceLayout->insertStretch(1, 1);
}

void CustomMainWindow::cEnableDefualtShadow(bool bEnable)
{
    m_bShadow = bEnable;
    // Translucency only takes effect before the native window exists; a
    // window that is already shown keeps its plain border.
    if (bEnable && KitStyle::compositingActive() && !testAttribute(Qt::WA_WState_Created))
        setAttribute(Qt::WA_TranslucentBackground);
    updateFrame();
}

void CustomMainWindow::cStyleChanged()
{
    updateFrame();
}

void CustomMainWindow::cSetStrechEdges(int nEdges)
{
    m_nEdges = nEdges & AllEdges;
    updateFrame();
}

void CustomMainWindow::cSetMinStrechSize(const QSize &size)
{
    m_minStretch = size;
    setMinimumSize(size.expandedTo(QSize(0, 0)));
}

void CustomMainWindow::cAddCustomButtons(const QStringList &listNames)
{
    for (const QString &strName : listNames) {
        auto *pButton = new CustomPushButton(strName, m_pButtonRow);
        m_listButtons.insert(m_nCustomCount++, pButton);
        connect(pButton, &QPushButton::clicked, this, [this, pButton] { onBottomButtonClicked(pButton); });
    }
    rebuildButtonRow();
}

void CustomMainWindow::cResetCustomButtonNames(const QStringList &listNames)
{
    for (int i = 0; i < m_nCustomCount && i < listNames.size(); ++i)
        m_listButtons.at(i)->setText(listNames.at(i));
}

void CustomMainWindow::cSetButtons(int nButtons)
{
    while (m_listButtons.size() > m_nCustomCount)
        delete m_listButtons.takeLast();
    m_nStandard = nButtons & (OkButton | CancelButton);
    const int aOrder[] = {OkButton, CancelButton};
    for (int nButton : aOrder) {
        if (!(m_nStandard & nButton))
            continue;
        auto *pButton = new CustomPushButton(m_pButtonRow);
        pButton->setProperty("cStandardButton", nButton);
        if (nButton == CancelButton)
            pButton->cSetButtonStyle(CustomPushButton::Secondary);
        else
            pButton->setDefault(true);
        m_listButtons.append(pButton);
        connect(pButton, &QPushButton::clicked, this, [this, pButton] { onBottomButtonClicked(pButton); });
    }
    retranslate();
    rebuildButtonRow();
}

void CustomMainWindow::rebuildButtonRow()
{
    for (CustomPushButton *pButton : qAsConst(m_listButtons)) {
        m_pButtonLayout->removeWidget(pButton);
        pButton->setMinimumWidth(96);
        pButton->setFixedHeight(32);
    }
    for (CustomPushButton *pButton : qAsConst(m_listButtons))
        m_pButtonLayout->addWidget(pButton);
    m_pButtonRow->setVisible(!m_listButtons.isEmpty());
}

void CustomMainWindow::onBottomButtonClicked(CustomPushButton *pButton)
{
    const int nIndex = m_listButtons.indexOf(pButton);
    if (nIndex < 0)
        return;
    const int nStandard = pButton->property("cStandardButton").toInt();
    QPointer<CustomMainWindow> guard(this);
    emit cSigButtonClick(nIndex);
    if (!guard)
        return;
    if (nStandard == OkButton)
        cOnOKClicked();
    else if (nStandard == CancelButton)
        cOnCancelClicked();
}

void CustomMainWindow::cOnButtonClicked(int nIndex)
{
    const CustomPushButton *pButton = m_listButtons.value(nIndex);
    if (pButton && pButton->property("cStandardButton").toInt() == CancelButton)
        reject();
    else
        accept();
}

void CustomMainWindow::cOnOKClicked()
{
    accept();
}

void CustomMainWindow::cOnCancelClicked()
{
    reject();
}

void CustomMainWindow::retranslate()
{
    for (CustomPushButton *pButton : qAsConst(m_listButtons)) {
        const int nStandard = pButton->property("cStandardButton").toInt();
        if (nStandard == OkButton)
            pButton->setText(tr("OK"));
        else if (nStandard == CancelButton)
            pButton->setText(tr("Cancel"));
    }
}

void CustomMainWindow::updateFrame()
{
    const bool bFull = isMaximized() || isFullScreen();
    if (bFull)
        m_nMargin = 0;
    else if (m_bShadow && testAttribute(Qt::WA_TranslucentBackground))
        m_nMargin = kShadowMargin;
    else if (m_nEdges != NoEdge)
        m_nMargin = kGripMargin;
    else
        m_nMargin = 1;
    layout()->setContentsMargins(m_nMargin, m_nMargin, m_nMargin, m_nMargin);
    QPalette palette = m_pFace->palette();
    const QColor face = cBackgroundColor(StateNormal).isValid() ? cBackgroundColor(StateNormal)
                                                                 : KitStyle::color("Panekit_Window", "#FFFFFF");
    palette.setColor(QPalette::Window, face);
    m_pFace->setPalette(palette);
    update();
}

void CustomMainWindow::paintEvent(QPaintEvent *)
{
    if (m_nMargin == 0)
        return;
    QPainter painter(this);
    const QRect face = rect().adjusted(m_nMargin, m_nMargin, -m_nMargin, -m_nMargin);
    if (m_nMargin == kShadowMargin) {
        // Rings of falling opacity give a soft shadow, a little deeper below.
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (int i = 0; i < m_nMargin; ++i) {
            const qreal dWeight = qreal(m_nMargin - i) / m_nMargin;
            QColor shade(16, 32, 64, int(3 + 4 * dWeight * dWeight));
            painter.setBrush(shade);
            const QRectF ring = QRectF(face).adjusted(-m_nMargin + i, -m_nMargin + i + 2, m_nMargin - i,
                                                      m_nMargin - i);
            painter.drawRoundedRect(ring, m_nMargin - i + 2, m_nMargin - i + 2);
        }
        painter.setRenderHint(QPainter::Antialiasing, false);
    } else {
        painter.fillRect(rect(), m_pFace->palette().color(QPalette::Window));
    }
    painter.setPen(KitStyle::color("Panekit_Border", "#D9DEE6"));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(m_nMargin == kShadowMargin ? face.adjusted(-1, -1, 0, 0) : rect().adjusted(0, 0, -1, -1));
}

int CustomMainWindow::edgesAt(const QPoint &pos) const
{
    if (m_nEdges == NoEdge || isMaximized() || isFullScreen() || minimumSize() == maximumSize())
        return 0;
    const int nZone = qMax(m_nMargin, kGripMargin);
    const bool bLeft = pos.x() < nZone, bRight = pos.x() >= width() - nZone;
    const bool bTop = pos.y() < nZone, bBottom = pos.y() >= height() - nZone;
    // Corners reach a little further along each edge so they are easy to hit.
    const bool bNearLeft = pos.x() < kCornerReach, bNearRight = pos.x() >= width() - kCornerReach;
    const bool bNearTop = pos.y() < kCornerReach, bNearBottom = pos.y() >= height() - kCornerReach;
    if (!(bLeft || bRight || bTop || bBottom))
        return 0;
    if (const Qt::Edges corner = edgesFor(bNearLeft, bNearRight, bNearTop, bNearBottom, m_nEdges))
        return int(corner);
    Qt::Edges edges;
    if (bLeft && (m_nEdges & LeftEdge))
        edges |= Qt::LeftEdge;
    else if (bRight && (m_nEdges & RightEdge))
        edges |= Qt::RightEdge;
    if (bTop && (m_nEdges & TopEdge))
        edges |= Qt::TopEdge;
    else if (bBottom && (m_nEdges & BottomEdge))
        edges |= Qt::BottomEdge;
    return int(edges);
}

void CustomMainWindow::updateCursor(int nEdges)
{
    const Qt::Edges edges(nEdges);
    if ((edges & Qt::LeftEdge && edges & Qt::TopEdge) || (edges & Qt::RightEdge && edges & Qt::BottomEdge))
        setCursor(Qt::SizeFDiagCursor);
    else if ((edges & Qt::RightEdge && edges & Qt::TopEdge) || (edges & Qt::LeftEdge && edges & Qt::BottomEdge))
        setCursor(Qt::SizeBDiagCursor);
    else if (edges & (Qt::LeftEdge | Qt::RightEdge))
        setCursor(Qt::SizeHorCursor);
    else if (edges & (Qt::TopEdge | Qt::BottomEdge))
        setCursor(Qt::SizeVerCursor);
    else
        unsetCursor();
}

void CustomMainWindow::mousePressEvent(QMouseEvent *pEvent)
{
    const int nEdges = pEvent->button() == Qt::LeftButton ? edgesAt(pEvent->pos()) : 0;
    if (!nEdges) {
        QDialog::mousePressEvent(pEvent);
        return;
    }
    pEvent->accept();
    if (windowHandle() && windowHandle()->startSystemResize(Qt::Edges(nEdges)))
        return;
    m_nDragEdges = nEdges;
    m_rectDragStart = geometry();
    m_ptDragStart = pEvent->globalPos();
}

void CustomMainWindow::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (!m_nDragEdges) {
        updateCursor(edgesAt(pEvent->pos()));
        QDialog::mouseMoveEvent(pEvent);
        return;
    }
    const QPoint delta = pEvent->globalPos() - m_ptDragStart;
    const QSize minSize = minimumSize().expandedTo(m_minStretch).expandedTo(QSize(120, 80));
    QRect g = m_rectDragStart;
    const Qt::Edges edges(m_nDragEdges);
    if (edges & Qt::LeftEdge)
        g.setLeft(qMin(g.left() + delta.x(), g.right() + 1 - minSize.width()));
    if (edges & Qt::RightEdge)
        g.setRight(qMax(g.right() + delta.x(), g.left() + minSize.width() - 1));
    if (edges & Qt::TopEdge)
        g.setTop(qMin(g.top() + delta.y(), g.bottom() + 1 - minSize.height()));
    if (edges & Qt::BottomEdge)
        g.setBottom(qMax(g.bottom() + delta.y(), g.top() + minSize.height() - 1));
    setGeometry(g);
    pEvent->accept();
}

void CustomMainWindow::mouseReleaseEvent(QMouseEvent *pEvent)
{
    m_nDragEdges = 0;
    QDialog::mouseReleaseEvent(pEvent);
}

void CustomMainWindow::leaveEvent(QEvent *pEvent)
{
    if (!m_nDragEdges)
        unsetCursor();
    QDialog::leaveEvent(pEvent);
}

void CustomMainWindow::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::WindowStateChange)
        updateFrame();
    else if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    QDialog::changeEvent(pEvent);
}

void CustomMainWindow::keyPressEvent(QKeyEvent *pEvent)
{
    const bool bAlt = pEvent->modifiers() == Qt::AltModifier;
    const CustomTitleBar::TitleControls controls = m_pTitleBar->cTitleControls();
    // Keyboard move and resize mode (Alt+F7 / Alt+F8): arrows move or size
    // the window by 10 pixels (1 with Ctrl); Enter or Escape ends the mode.
    if (m_nKeyMode != 0) {
        const int nStep = pEvent->modifiers() & Qt::ControlModifier ? 1 : 10;
        QPoint delta;
        switch (pEvent->key()) {
        case Qt::Key_Left: delta = QPoint(-nStep, 0); break;
        case Qt::Key_Right: delta = QPoint(nStep, 0); break;
        case Qt::Key_Up: delta = QPoint(0, -nStep); break;
        case Qt::Key_Down: delta = QPoint(0, nStep); break;
        case Qt::Key_Return: case Qt::Key_Enter: case Qt::Key_Escape:
            m_nKeyMode = 0;
            pEvent->accept();
            return;
        default: break;
        }
        if (!delta.isNull()) {
            if (m_nKeyMode == 1) {
                move(pos() + delta);
            } else {
                const QSize minSize = minimumSize().expandedTo(m_minStretch);
                resize(QSize(width() + delta.x(), height() + delta.y()).expandedTo(minSize));
            }
            pEvent->accept();
            return;
        }
    }
    if (bAlt && pEvent->key() == Qt::Key_F4 && controls.testFlag(CustomTitleBar::CloseControl)) {
        close();
    } else if (bAlt && pEvent->key() == Qt::Key_F7 && !isMaximized()) {
        m_nKeyMode = 1;
    } else if (bAlt && pEvent->key() == Qt::Key_F8 && m_nEdges != NoEdge && !isMaximized()
               && minimumSize() != maximumSize()) {
        m_nKeyMode = 2;
    } else if (bAlt && pEvent->key() == Qt::Key_F9 && controls.testFlag(CustomTitleBar::MinimizeControl)) {
        showMinimized();
    } else if (bAlt && pEvent->key() == Qt::Key_F10 && controls.testFlag(CustomTitleBar::MaximizeControl)
               && minimumSize() != maximumSize()) {
        isMaximized() ? showNormal() : showMaximized();
    } else if (pEvent->key() == Qt::Key_Escape && pEvent->modifiers() == Qt::NoModifier) {
        // Escape closes dialog-like windows (close control only) through the
        // close event, so subclasses can refuse; main windows ignore it.
        if (controls == CustomTitleBar::CloseControl)
            close();
    } else {
        QDialog::keyPressEvent(pEvent);
        return;
    }
    pEvent->accept();
}
