#include "lunativeeventfilter.h"

#include <QCoreApplication>
#include <QEvent>

LuNativeEventFilter::LuNativeEventFilter(QObject *pMainWindow)
    : pMainWindow(pMainWindow)
{
}

LuNativeEventFilter::~LuNativeEventFilter() = default;

void LuNativeEventFilter::postLanguageChanged() const
{
    if (pMainWindow)
        QCoreApplication::postEvent(pMainWindow.data(), new QEvent(QEvent::Type(LanguageChangedEvent)));
}
