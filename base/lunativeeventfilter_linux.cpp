#include "lunativeeventfilter.h"

// On X11 and Wayland the other tools of the suite send no native messages;
// every event passes on to Qt untouched.
bool LuNativeEventFilter::nativeEventFilter(const QByteArray &eventType, void *pMessage, long *pResult)
{
    Q_UNUSED(eventType)
    Q_UNUSED(pMessage)
    Q_UNUSED(pResult)
    return false;
}
