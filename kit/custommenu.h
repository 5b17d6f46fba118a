#pragma once

#include "customobject.h"

#include <QMenu>

// A pop-up menu in the house style (white, thin border, accent highlight).
class CustomMenu : public QMenu, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomMenu(QWidget *pParent = nullptr);
    explicit CustomMenu(const QString &strTitle, QWidget *pParent = nullptr);

protected:
    QString cDefaultStyleSheet() const override;
};
