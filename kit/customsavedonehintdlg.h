#pragma once

#include "custommainwindow.h"

class QLabel;
class CustomPushButton;

// Tells the user that a file was written: a confirmation text, the file's
// path, and the buttons "Open Folder" (shows the folder that holds the file
// in the desktop's file manager, then closes) and "OK". Run it with exec().
class CustomSaveDoneHintDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    explicit CustomSaveDoneHintDlg(const QString &strFilePath, const QString &strText = QString(),
                                   QWidget *pParent = nullptr);

    QString cFilePath() const { return m_strFilePath; }
    // The URL "Open Folder" opens: the folder of the file.
    QUrl cFolderUrl() const;

protected:
    void changeEvent(QEvent *pEvent) override;
    // Opens the folder; returns whether the desktop accepted it.
    virtual bool cOpenFolder();

private:
    void onButtonClicked(int nIndex);
    void retranslate();

    QString m_strFilePath;
    QString m_strText;
    QLabel *m_pText = nullptr;
    QLabel *m_pPath = nullptr;
};
