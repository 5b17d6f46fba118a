#pragma once

#include <QWidget>

class QLabel;

// One of the page's three count tiles: a grade icon, a number and a caption.
class VxStateItem : public QWidget
{
    Q_OBJECT
public:
    VxStateItem(const QString &strIconPath, QWidget *pParent = nullptr);

    void setNumber(int nCount); // below 1 shows "0"
    QString numberText() const;
    void setCaption(const QString &strCaption);

private:
    QLabel *m_pIcon = nullptr;
    QLabel *m_pNumber = nullptr;
    QLabel *m_pCaption = nullptr;
};
