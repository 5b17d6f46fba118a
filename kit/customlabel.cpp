#include "customlabel.h"

CustomLabel::CustomLabel(QWidget *pParent)
    : QLabel(pParent)
    , CustomObject(this)
{
    cUpdateStyle();
}

CustomLabel::CustomLabel(const QString &strText, QWidget *pParent)
    : CustomLabel(pParent)
{
    setText(strText);
}
