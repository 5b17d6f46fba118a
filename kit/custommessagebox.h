#pragma once

#include "custommainwindow.h"

class QLabel;

// A modal message box in the house frame: an icon, the message, an optional
// smaller second text, and a row of buttons.
//
// Button values (combinable in the nButtons argument, returned by the static
// functions and cClickedButton): 1 OK, 2 Cancel, 4 Yes, 8 No. Buttons show
// in the order Yes, No, OK, Cancel. A box closed without a button (title-bar
// close, Escape) returns 0.
class CustomMessageBox : public CustomMainWindow
{
    Q_OBJECT
public:
    enum Icon { NoIcon = 0, Information = 1, Warning = 2, Critical = 3, Question = 4, Success = 5 };
    enum StandardButton { NoButton = 0x0, Ok = 0x1, Cancel = 0x2, Yes = 0x4, No = 0x8 };

    CustomMessageBox(Icon eIcon, const QString &strText, const QString &strTitle, int nButtons = Ok,
                     QWidget *pParent = nullptr, const QString &strInformativeText = QString());

    // The value of the clicked button, 0 while none was clicked.
    int cClickedButton() const { return m_nClicked; }
    // The button values shown, left to right.
    QList<int> cButtonValues() const { return m_listValues; }
    QString cText() const;
    QString cInformativeText() const;

    // Each shows a box modally and returns the clicked button's value.
    // Arguments: parent, message, title, buttons, optional second text.
    static int information(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons = Ok,
                           const QString &strInformativeText = QString());
    static int warning(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons = Ok,
                       const QString &strInformativeText = QString());
    static int critical(QWidget *pParent, const QString &strText, const QString &strTitle, int nButtons = Ok,
                        const QString &strInformativeText = QString());
    static int question(QWidget *pParent, const QString &strText, const QString &strTitle,
                        int nButtons = Yes | No, const QString &strInformativeText = QString());

protected:
    void changeEvent(QEvent *pEvent) override;

private:
    void onButtonClicked(int nIndex);
    void retranslate();

    QLabel *m_pText = nullptr;
    QLabel *m_pInformative = nullptr;
    QList<int> m_listValues;
    int m_nClicked = 0;
};
