#pragma once

#include <QColor>
#include <QFont>
#include <QMap>
#include <QString>

class QWidget;

// Styling mix-in of the kit's widgets. The setters record colours, images
// and fonts per interaction state and turn them into a style sheet for the
// host widget (after the widget's house defaults and the named style chosen
// with cSetStyleSelector). Widgets that paint themselves read the recorded
// values instead (cBackgroundImage, cBackgroundColor).
class CustomObject
{
public:
    // Interaction states, used as the "state index" of the setters.
    enum State {
        StateNormal = 0,
        StateHover = 1,
        StatePressed = 2,
        StateDisabled = 3,
        StateChecked = 4,
        StateCount
    };

    explicit CustomObject(QWidget *pHost);
    virtual ~CustomObject();
    CustomObject(const CustomObject &) = delete;
    CustomObject &operator=(const CustomObject &) = delete;

    // Image drawn over the whole widget in a state (resource or file path;
    // an "@2x" file beside it is used on high-density screens). A state
    // without image falls back to the normal image.
    void cSetBackgroundImage(const QString &strPath, int nState = StateNormal);
    QString cBackgroundImage(int nState = StateNormal) const;
    // Background colour in a state: "#RRGGBB", a colour name or a colour key
    // of the database (Custom::getDataBaseColor); a gradient key fills the
    // widget with the gradient.
    void cSetBackgroundColor(const QString &strColorOrKey, int nState = StateNormal);
    void cSetBackgroundColor(const QColor &color, int nState = StateNormal);
    void cSetBackgroundColor(const char *pColorOrKey, int nState = StateNormal);
    QColor cBackgroundColor(int nState = StateNormal) const;
    // Text colour in a state, same forms as the background colour.
    void cSetFontColor(const QString &strColorOrKey, int nState = StateNormal);
    void cSetFontColor(const QColor &color, int nState = StateNormal);
    void cSetFontColor(const char *pColorOrKey, int nState = StateNormal);
    QColor cFontColor(int nState = StateNormal) const;
    // Border: width in pixels, colour, corner radius in pixels.
    void cSetBorder(int nWidth, const QColor &color, int nRadius = 0);
    // Fonts: the whole font, or one aspect of the widget's current font.
    // cSetFontSize takes a pixel size.
    void cSetFont(const QFont &font);
    void cSetFontSize(int nPixelSize);
    void cSetFontFamily(const QString &strFamily);
    void cSetFontWeight(int nWeight);
    // Picks a named style of the style-sheet description (for example
    // "VxResultTable"); its text is added to the widget's style sheet. The
    // name is also set as the widget's "styleSelector" property so style
    // sheets can match it.
    void cSetStyleSelector(const QString &strSelector);
    QString cStyleSelector() const;

    // Rebuilds and applies the style sheet from the recorded values.
    void cUpdateStyle();

protected:
    // The widget's house look, written against cSelector().
    virtual QString cDefaultStyleSheet() const;
    // The type selector the generated rules use (the host's class name).
    QString cSelector() const;
    // Called after a recorded value changed; the default rebuilds the style
    // sheet, self-painting widgets may repaint instead.
    virtual void cStyleChanged();
    // True for widgets that draw their state images themselves; the others
    // get them as style-sheet border images.
    virtual bool cPaintsImages() const { return false; }
    QWidget *cHost() const { return m_pHost; }

private:
    QWidget *m_pHost;
    QString m_strSelector;
    QMap<int, QString> m_mapImage;
    QMap<int, QColor> m_mapBackground;
    QMap<int, QString> m_mapBackgroundCss;
    QMap<int, QColor> m_mapFontColor;
    int m_nBorderWidth = -1;
    QColor m_borderColor;
    int m_nBorderRadius = 0;
};
