#include "lunativeeventfilter.h"

#include <QByteArray>

#include <windows.h>

// The other tools of the suite tell a running program to re-read the
// language in two ways: WM_COPYDATA with dwData == CopyDataLanguage sent to
// its window, or the registered message "Orvex.LanguageChanged" broadcast to
// all top-level windows. Both become a LanguageChangedEvent for the main
// window. The broadcast is not consumed, so other filters still see it.
bool LuNativeEventFilter::nativeEventFilter(const QByteArray &eventType, void *pMessage, long *pResult)
{
    if (!pMessage || (eventType != "windows_generic_MSG" && eventType != "windows_dispatcher_MSG"))
        return false;
    const MSG *pMsg = static_cast<const MSG *>(pMessage);
    static const UINT s_uLanguageMessage = RegisterWindowMessageW(L"Orvex.LanguageChanged");

    if (pMsg->message == WM_COPYDATA) {
        const auto *pData = reinterpret_cast<const COPYDATASTRUCT *>(pMsg->lParam);
        if (!pData || pData->dwData != ULONG_PTR(CopyDataLanguage))
            return false;
        postLanguageChanged();
        if (pResult)
            *pResult = TRUE;
        return true;
    }
    if (s_uLanguageMessage != 0 && pMsg->message == s_uLanguageMessage)
        postLanguageChanged();
    return false;
}
