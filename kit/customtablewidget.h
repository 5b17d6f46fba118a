#pragma once

#include "customobject.h"

#include <QTableWidget>

// A table in the house style: light header, row dividers instead of a grid,
// no row numbers, whole-row selection and no in-place editing.
class CustomTableWidget : public QTableWidget, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomTableWidget(QWidget *pParent = nullptr);
    CustomTableWidget(int nRows, int nColumns, QWidget *pParent = nullptr);

protected:
    QString cDefaultStyleSheet() const override;
};
