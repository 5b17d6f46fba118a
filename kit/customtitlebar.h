#pragma once

#include "customobject.h"

#include <QFlags>
#include <QPoint>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QMenu;
class QSpacerItem;
class QAbstractButton;
class CustomPushButton;

// The title bar of the kit's frameless windows: icon, caption, a row of
// menu buttons and the window controls. Dragging it moves the window (the
// window system's move where it offers one); a double click maximises or
// restores windows that have the maximise control.
class CustomTitleBar : public QWidget, public CustomObject
{
    Q_OBJECT
public:
    enum TitleControl {
        NoControl = 0x0,
        MinimizeControl = 0x1,
        MaximizeControl = 0x2,
        CloseControl = 0x4,
        AllControls = MinimizeControl | MaximizeControl | CloseControl
    };
    Q_DECLARE_FLAGS(TitleControls, TitleControl)

    explicit CustomTitleBar(QWidget *pParent = nullptr);

    // Chooses the window controls: 7 gives minimise, maximise and close,
    // 4 the close control alone.
    void cSetTitleControls(TitleControls controls);
    void cSetTitleControls(int nControls);
    TitleControls cTitleControls() const { return m_controls; }

    void cSetTitleText(const QString &strText);
    QString cTitleText() const;
    // Icon at the left end (resource or file path); empty hides it.
    void cSetTitleIcon(const QString &strPath);

    // Adds a button to the menu row that pops up pMenu; its text follows the
    // menu's title. An empty title and a null menu give a plain button
    // (clicked is the caller's) that can be styled with background images.
    CustomPushButton *cAddMenu(const QString &strTitle, QMenu *pMenu);
    // Adds a stretch to the menu row: buttons added afterwards sit at the
    // right end, next to the window controls.
    void cAddMenuLayoutStretch();

    // The button of a window control, null when it is not shown.
    QAbstractButton *cControlButton(TitleControl eControl) const;

signals:
    void cSigMinimizeClicked();
    void cSigMaximizeClicked();
    void cSigCloseClicked();

protected:
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;
    bool eventFilter(QObject *pObject, QEvent *pEvent) override;
    QString cDefaultStyleSheet() const override;

private:
    void retranslate();
    void updateControls();
    void toggleMaximized();

    TitleControls m_controls = AllControls;
    QLabel *m_pIcon = nullptr;
    QLabel *m_pTitle = nullptr;
    QHBoxLayout *m_pMenuLayout = nullptr;
    QSpacerItem *m_pTailStretch = nullptr;
    QAbstractButton *m_pMinButton = nullptr;
    QAbstractButton *m_pMaxButton = nullptr;
    QAbstractButton *m_pCloseButton = nullptr;
    QString m_strIconPath;
    bool m_bPressed = false;
    bool m_bDragging = false;
    QPoint m_ptPress;
    QPoint m_ptDragOffset;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CustomTitleBar::TitleControls)
