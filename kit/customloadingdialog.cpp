#include "customloadingdialog.h"

#include "kitstyle.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const int kRingSize = 36;
const int kRingTop = 24;
} // namespace

CustomLoadingDialog::CustomLoadingDialog(QWidget *pParent)
    : QDialog(pParent)
    , CustomObject(this)
{
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setMinimumSize(240, 132);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(20, kRingTop + kRingSize + 14, 20, 18);
    m_pLabel = new QLabel(tr("Loading..."), this);
    m_pLabel->setAlignment(Qt::AlignCenter);
    m_pLabel->setWordWrap(true);
    m_pLabel->setMaximumWidth(360);
    m_pLabel->setStyleSheet(QStringLiteral("color: %1;").arg(KitStyle::text()));
    pLayout->addWidget(m_pLabel);
    m_pTimer = new QTimer(this);
    m_pTimer->setInterval(33);
    connect(m_pTimer, &QTimer::timeout, this, &CustomLoadingDialog::onTick);
}

void CustomLoadingDialog::SetLabelText(const QString &strText)
{
    m_pLabel->setText(strText);
    adjustSize();
}

QString CustomLoadingDialog::LabelText() const
{
    return m_pLabel->text();
}

void CustomLoadingDialog::onTick()
{
    m_nAngle = (m_nAngle + 12) % 360;
    update(QRect((width() - kRingSize) / 2 - 2, kRingTop - 2, kRingSize + 4, kRingSize + 4));
}

void CustomLoadingDialog::showEvent(QShowEvent *pEvent)
{
    adjustSize();
    if (QWidget *pParent = parentWidget()) {
        const QRect area = pParent->window()->geometry();
        move(area.center() - QPoint(width() / 2, height() / 2));
    }
    m_pTimer->start();
    QDialog::showEvent(pEvent);
}

void CustomLoadingDialog::hideEvent(QHideEvent *pEvent)
{
    m_pTimer->stop();
    QDialog::hideEvent(pEvent);
}

void CustomLoadingDialog::keyPressEvent(QKeyEvent *pEvent)
{
    if (pEvent->key() == Qt::Key_Escape) {
        pEvent->accept();
        return;
    }
    QDialog::keyPressEvent(pEvent);
}

void CustomLoadingDialog::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), KitStyle::color("Panekit_Window", "#FFFFFF"));
    painter.setPen(KitStyle::color("Panekit_Border", "#D9DEE6"));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring((width() - kRingSize) / 2.0, kRingTop, kRingSize, kRingSize);
    QPen track(KitStyle::color("Panekit_AccentLight", "#EAF2FD"), 4);
    painter.setPen(track);
    painter.drawEllipse(ring.adjusted(2, 2, -2, -2));
    QConicalGradient sweep(ring.center(), -m_nAngle);
    const QColor accent = KitStyle::color("Panekit_Accent", "#1E7BE6");
    QColor faded = accent;
    faded.setAlpha(0);
    sweep.setColorAt(0.0, accent);
    sweep.setColorAt(0.75, faded);
    sweep.setColorAt(1.0, faded);
    QPen arc(QBrush(sweep), 4);
    arc.setCapStyle(Qt::RoundCap);
    painter.setPen(arc);
    painter.drawArc(ring.adjusted(2, 2, -2, -2), -m_nAngle * 16, 270 * 16);
}
