#pragma once

#include <QString>
#include <QWidget>

class QFontMetrics;

// A hint line for the detail dialogs: an icon at the left and a block of
// text beside it. Lines are separated by "\r\n"; the widget inserts further
// "\r\n" when it wraps the text to its width.
//
// Use: setText(), setIcon() (information icon by default), fix the width,
// then adjustHeight(), which wraps the text and fixes the widget's size.
class VxTipsWidget : public QWidget
{
    Q_OBJECT
public:
    static constexpr const char *kInformationIcon = ":/Lu/Hint/information.png";
    static constexpr const char *kWarningIcon = ":/Lu/Hint/warning.png";

    // Throws std::bad_alloc when the widget cannot be built.
    explicit VxTipsWidget(QWidget *pParent = nullptr);
    ~VxTipsWidget() override;

    void setText(const QString &strText);
    QString text() const { return strText; }
    void setIcon(const QString &strResourcePath);
    QString icon() const { return strIconPath; }

    // Wraps the text to the current width (at least 64) less the icon
    // column, and fixes the height: text height + 4, or 34 for text of at
    // most 30 pixels, centred by topMargin.
    void adjustHeight();

    int topMargin() const { return nTopMargin; }
    int lineHeight() const { return nLineHeight; }
    // The lines paintEvent draws, in order: the text split at "\r\n"
    // without empty parts.
    QStringList paintedLines() const;
    // The rectangle the icon is drawn into.
    QRect iconRect() const;

    // Wraps strText by characters (not words) so that no line is wider than
    // nWidth pixels, inserting "\r\n" between the lines. Text that already
    // fits is returned unchanged; existing line breaks count as characters.
    static QString wrapText(const QString &strText, int nWidth, const QFontMetrics &metrics);
    // lineHeight + (number of "\r\n") x (lineHeight + 5).
    static int textHeight(const QString &strWrapped, int nLineHeight);

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    bool init();

    QString strText;
    QString strIconPath;
    int nTopMargin = 0;
    int nLineHeight = 0;
};
