#pragma once

#include <QAbstractNativeEventFilter>
#include <QPointer>

class QObject;

// Native event filter installed by the program on its application object.
// It forwards the suite's native messages to the main window as Qt events:
// a request to re-read the language arrives at the window as a custom event
// of type LuNativeEventFilter::LanguageChangedEvent (1100).
//  - Windows: WM_COPYDATA with dwData == CopyDataLanguage, and the
//    registered window message "Orvex.LanguageChanged" broadcast by the
//    other tools of the suite.
//  - Linux (xcb): the suite sends no native messages; every event passes on.
// The filter never consumes events it does not handle.
class LuNativeEventFilter : public QAbstractNativeEventFilter
{
public:
    enum : int { LanguageChangedEvent = 1100 };
    enum : unsigned { CopyDataLanguage = 0x4C550001u };

    explicit LuNativeEventFilter(QObject *pMainWindow);
    ~LuNativeEventFilter() override;

    bool nativeEventFilter(const QByteArray &eventType, void *pMessage, long *pResult) override;

    QObject *mainWindow() const { return pMainWindow.data(); }

private:
    // Posts the language-changed event to the main window if it still exists.
    void postLanguageChanged() const;

    QPointer<QObject> pMainWindow;
};
