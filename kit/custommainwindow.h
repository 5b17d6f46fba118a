#pragma once

#include "customobject.h"

#include <QDialog>
#include <QList>
#include <QRect>

class QVBoxLayout;
class QHBoxLayout;
class CustomPushButton;
class CustomTitleBar;

// The kit's frameless window: a QDialog with the house title bar, a central
// widget, an optional row of bottom buttons, an optional drop shadow and
// edges the user can drag to resize it. Modal use goes through exec().
//
// Bottom buttons: cAddCustomButtons() adds buttons that only report their
// click through cSigButtonClick(index); cSetButtons() chooses the standard
// buttons, which report their click and then run cOnOKClicked() or
// cOnCancelClicked(). Indices run over the whole row, left to right: the
// custom buttons first, then the standard ones.
class CustomMainWindow : public QDialog, public CustomObject
{
    Q_OBJECT
public:
    // Standard bottom buttons for cSetButtons (combinable).
    enum Button { NoButton = 0x0, OkButton = 0x1, CancelButton = 0x2 };
    // Edges for cSetStrechEdges (combinable). 203 = left, right, bottom and
    // the two bottom corners: everything but the title-bar side.
    enum StrechEdge {
        NoEdge = 0x00,
        LeftEdge = 0x01,
        RightEdge = 0x02,
        TopEdge = 0x04,
        BottomEdge = 0x08,
        TopLeftCorner = 0x10,
        TopRightCorner = 0x20,
        BottomLeftCorner = 0x40,
        BottomRightCorner = 0x80,
        AllEdges = 0xFF
    };

    explicit CustomMainWindow(QWidget *pParent = nullptr);
    ~CustomMainWindow() override;

    CustomTitleBar *cTitleBar() const { return m_pTitleBar; }
    // Places the body; the previous body is deleted.
    void cSetCentralWidget(QWidget *pWidget);
    QWidget *cCentralWidget() const { return m_pCentral; }

    // Draws a soft shadow around the window where the window system
    // composites (it needs a transparent margin); a plain border elsewhere.
    void cEnableDefualtShadow(bool bEnable = true);
    bool cShadowEnabled() const { return m_bShadow; }
    // Which edges and corners the user can drag (StrechEdge flags).
    void cSetStrechEdges(int nEdges);
    int cStrechEdges() const { return m_nEdges; }
    // The smallest size the user can drag the window to.
    void cSetMinStrechSize(const QSize &size);
    QSize cMinStrechSize() const { return m_minStretch; }

    void cAddCustomButtons(const QStringList &listNames);
    // Renames the custom buttons in order; extra names are ignored, buttons
    // without a name keep theirs.
    void cResetCustomButtonNames(const QStringList &listNames);
    void cSetButtons(int nButtons);
    // The bottom buttons, left to right.
    QList<CustomPushButton *> cButtons() const { return m_listButtons; }
    CustomPushButton *cButton(int nIndex) const { return m_listButtons.value(nIndex); }

    // The width of the transparent margin around the window's face.
    int cFrameMargin() const { return m_nMargin; }

signals:
    // A bottom button was clicked; nIndex counts from 0, left to right.
    void cSigButtonClick(int nIndex);

public slots:
    // The handler for clicks a subclass does not consume: closes the window
    // (reject for the Cancel button, accept otherwise).
    virtual void cOnButtonClicked(int nIndex);

protected:
    // Run after the OK / Cancel standard button reported its click.
    virtual void cOnOKClicked();
    virtual void cOnCancelClicked();

    void paintEvent(QPaintEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    // The face colour comes from cSetBackgroundColor (normal state).
    void cStyleChanged() override;

private:
    int edgesAt(const QPoint &pos) const;
    void updateFrame();
    void updateCursor(int nEdges);
    void onBottomButtonClicked(CustomPushButton *pButton);
    void rebuildButtonRow();
    void retranslate();

    CustomTitleBar *m_pTitleBar = nullptr;
    QWidget *m_pFace = nullptr;
    QVBoxLayout *m_pFaceLayout = nullptr;
    QWidget *m_pCentral = nullptr;
    QWidget *m_pButtonRow = nullptr;
    QHBoxLayout *m_pButtonLayout = nullptr;
    QList<CustomPushButton *> m_listButtons;
    int m_nCustomCount = 0;
    int m_nStandard = NoButton;
    bool m_bShadow = false;
    int m_nEdges = NoEdge;
    int m_nMargin = 1;
    QSize m_minStretch;
    int m_nDragEdges = NoEdge;
    QRect m_rectDragStart;
    QPoint m_ptDragStart;
    int m_nKeyMode = 0; // 1 keyboard move, 2 keyboard resize
};
