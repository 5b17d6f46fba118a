#pragma once

// Shared pieces of the dialog tests: the resource packages, a catcher for
// the message boxes the dialogs open, and a translator that marks every text
// of one context so language changes can be seen.
#include "custom.h"
#include "custommessagebox.h"

#include <QAbstractItemDelegate>
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QResource>
#include <QTableWidget>
#include <QTimer>
#include <QTranslator>

namespace DialogTest {

// Registers bin/rcc/*.rcc and the house colour keys. Returns false when the
// packages are missing (the build makes them before the tests).
inline bool loadResources()
{
    static bool bLoaded = false;
    if (!bLoaded) {
        bLoaded = QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Panekit_Default.rcc"))
                  && QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc"))
                  && Custom::addXmlPath(QStringLiteral(":/Orvex/QSS/CustomStyleSheet_ox.xml"));
    }
    return bLoaded;
}

// While armed, closes every CustomMessageBox that becomes the active modal
// widget and remembers its texts.
class MessageBoxCatcher : public QObject
{
public:
    MessageBoxCatcher()
    {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, this, [this] {
            auto *pBox = qobject_cast<CustomMessageBox *>(QApplication::activeModalWidget());
            if (!pBox || pBox->isHidden())
                return;
            listTexts << pBox->cText();
            listInformative << pBox->cInformativeText();
            pBox->reject();
        });
        timer.start();
    }

    QStringList listTexts;
    QStringList listInformative;

private:
    QTimer timer;
};

// Translates every text of one context to "T:" + the English text.
class MarkingTranslator : public QTranslator
{
public:
    explicit MarkingTranslator(const char *pContext)
        : pCtx(pContext)
    {
    }
    QString translate(const char *pContext, const char *pSource, const char * = nullptr, int = -1) const override
    {
        if (qstrcmp(pContext, pCtx) != 0)
            return QString();
        return QStringLiteral("T:") + QString::fromUtf8(pSource);
    }
    bool isEmpty() const override { return false; }

private:
    const char *pCtx;
};

// Paints one cell of a one-row table holding strText in column nColumn
// with the delegate, on white, marked selected with a blue highlight the
// delegate must not paint; returns the image of the cell.
inline QImage paintDelegateCell(QAbstractItemDelegate &delegate, int nColumns, int nColumn, const QString &strText,
                                const QSize &size)
{
    QTableWidget table(1, nColumns);
    table.setItem(0, nColumn, new QTableWidgetItem(strText));
    QStyleOptionViewItem option;
    option.initFrom(&table);
    option.widget = &table;
    option.rect = QRect(QPoint(0, 0), size);
    option.state |= QStyle::State_Selected; // no selection is painted
    option.palette.setColor(QPalette::Highlight, QColor(0, 0, 255));
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    delegate.paint(&painter, option, table.model()->index(0, nColumn));
    painter.end();
    return image;
}

} // namespace DialogTest
