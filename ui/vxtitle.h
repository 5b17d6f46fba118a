#pragma once

#include <QWidget>

// The page's top strip: paints the title background images (the left one at
// its own width, the right one stretched over the rest) behind its children.
class VxTitle : public QWidget
{
    Q_OBJECT
public:
    explicit VxTitle(QWidget *pParent = nullptr);

    static QColor textColor();       // "#414752"
    static QColor strongTextColor(); // "#23262B"

protected:
    void paintEvent(QPaintEvent *pEvent) override;
};
