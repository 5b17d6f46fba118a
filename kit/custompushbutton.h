#pragma once

#include "customobject.h"

#include <QPushButton>

// A push button in the house style. Primary buttons are filled with the
// accent colour, secondary ones are outlined, flat ones (title-bar menus)
// only show a hover tint. With background images set per state
// (cSetBackgroundImage) the button draws the image of its current state,
// centred at its own size (scaled down to fit when larger than the button),
// and its text, if any, on top.
class CustomPushButton : public QPushButton, public CustomObject
{
    Q_OBJECT
public:
    enum ButtonStyle { Primary = 0, Secondary = 1, Flat = 2 };

    explicit CustomPushButton(QWidget *pParent = nullptr);
    explicit CustomPushButton(const QString &strText, QWidget *pParent = nullptr);

    void cSetButtonStyle(ButtonStyle eStyle);
    ButtonStyle cButtonStyle() const { return m_eStyle; }
    // The state whose image and colours apply now.
    int cCurrentState() const;

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void enterEvent(QEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    QString cDefaultStyleSheet() const override;
    bool cPaintsImages() const override { return true; }
    void cStyleChanged() override;

private:
    bool hasImages() const;
    ButtonStyle m_eStyle = Primary;
};
