#pragma once

#include "customobject.h"

#include <QLabel>

// A label in the house style: the house text colour, styled through the
// CustomObject setters.
class CustomLabel : public QLabel, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomLabel(QWidget *pParent = nullptr);
    explicit CustomLabel(const QString &strText, QWidget *pParent = nullptr);
};
