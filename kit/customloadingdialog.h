#pragma once

#include "customobject.h"

#include <QDialog>

class QLabel;
class QTimer;

// A small frameless busy box: a turning ring above a line of text. Callers
// make it modal, show() it while work runs and close() it afterwards. It is
// centred over its parent when shown; Escape does not close it.
class CustomLoadingDialog : public QDialog, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomLoadingDialog(QWidget *pParent = nullptr);

    void SetLabelText(const QString &strText);
    QString LabelText() const;
    // The ring's current angle in degrees (advances while shown).
    int cAngle() const { return m_nAngle; }

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;

private:
    void onTick();

    QLabel *m_pLabel = nullptr;
    QTimer *m_pTimer = nullptr;
    int m_nAngle = 0;
};
