#pragma once

#include "customobject.h"

#include <QWidget>

class QLineEdit;
class CustomPushButton;

// A folder field: a line edit with a browse button at its right end. With
// automatic selection on, the button opens a folder chooser and puts the
// chosen folder into the field; otherwise it only emits cSigSearchClicked.
class CustomFolderSelectWidget : public QWidget, public CustomObject
{
    Q_OBJECT
public:
    explicit CustomFolderSelectWidget(QWidget *pParent = nullptr);

    void cSetEnableSearchButton(bool bEnable);
    void cSetAutoSelectFolder(bool bAuto);
    bool cAutoSelectFolder() const { return m_bAutoSelect; }

    QString text() const;
    void setText(const QString &strText);
    void setReadOnly(bool bReadOnly);
    bool isReadOnly() const;
    QLineEdit *cLineEdit() const { return m_pEdit; }
    CustomPushButton *cSearchButton() const { return m_pButton; }

signals:
    void cSigSearchClicked();
    // The field's folder changed (typed or chosen).
    void cSigFolderChanged(const QString &strFolder);

protected:
    QString cDefaultStyleSheet() const override;
    void changeEvent(QEvent *pEvent) override;

private:
    void onSearchClicked();

    QLineEdit *m_pEdit = nullptr;
    CustomPushButton *m_pButton = nullptr;
    bool m_bAutoSelect = false;
};
