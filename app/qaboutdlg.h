#pragma once

#include "custommainwindow.h"

class QLabel;
class QVBoxLayout;

// The About box: logo, program title, version text and the configured
// copyright line. Run with exec().
class QAboutDlg : public CustomMainWindow
{
    Q_OBJECT
public:
    // Throws std::bad_alloc when the box cannot be built.
    explicit QAboutDlg(QWidget *pParent = nullptr);

    QLabel *titleLabel() const { return m_pTitle; }
    QLabel *versionLabel() const { return m_pVersion; }
    QLabel *copyrightLabel() const { return m_pCopyright; }

    // The copyright text for the kit's current language, "%1" replaced by "©".
    static QString copyrightText();

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    bool init();
    void retranslate();

    QLabel *m_pLogo = nullptr;
    QLabel *m_pTitle = nullptr;
    QLabel *m_pVersion = nullptr;
    QLabel *m_pCopyright = nullptr;
    QVBoxLayout *m_pLayout = nullptr;
};
