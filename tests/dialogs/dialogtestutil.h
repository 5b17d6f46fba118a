#pragma once

// Shared pieces of the dialog tests: the resource packages, a catcher for
// the message boxes the dialogs open, and a translator that marks every text
// of one context so language changes can be seen.
#include "custom.h"
#include "custommessagebox.h"

#include <QApplication>
#include <QResource>
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

} // namespace DialogTest
