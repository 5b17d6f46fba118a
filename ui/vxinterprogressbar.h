#pragma once

#include <QProgressBar>

// The one-key page's progress bar: a dark rounded groove with a green
// gradient fill and the percentage beside it.
class VxInterProgressBar : public QProgressBar
{
    Q_OBJECT
public:
    explicit VxInterProgressBar(QWidget *pParent = nullptr);

    // value × 100 / (maximum − minimum), integer division; 0 for an empty range.
    int percent() const;

protected:
    void paintEvent(QPaintEvent *pEvent) override;
};
