#pragma once

#include "customobject.h"

#include <QTreeWidget>

// A tree in the house style: light header, accent selection, no frame
// decoration beyond a thin border.
class CustomTreeWidget : public QTreeWidget, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomTreeWidget(QWidget *pParent = nullptr);

protected:
    QString cDefaultStyleSheet() const override;
};
