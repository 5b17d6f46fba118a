#pragma once

#include "customobject.h"

#include <QWidget>

// A separator line filled with its background colour (cSetBackgroundColor,
// default the house divider colour). Line type 0 is vertical, 1 horizontal;
// the type only sets the size policy, the line fills the widget.
class CustomLineWidget : public QWidget, public CustomObject
{
    Q_OBJECT
public:
    enum LineType { VerticalLine = 0, HorizontalLine = 1 };

    explicit CustomLineWidget(QWidget *pParent = nullptr);
    explicit CustomLineWidget(int nLineType, QWidget *pParent = nullptr);

    void cSetLineType(int nLineType);
    int cLineType() const { return m_nLineType; }

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void cStyleChanged() override { update(); }
    QSize sizeHint() const override;

private:
    int m_nLineType = HorizontalLine;
};
