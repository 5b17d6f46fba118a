#include "luinterface.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <windows.h>
#include <shellapi.h>
#include <shlwapi.h>

namespace LuInterface {

// Opens the URL in the default web browser. A local file URL with a query
// (the manual's "index.html?guid=<topic>.html") cannot go through the file
// association, which drops the query; it is handed to the browser registered
// for http instead. Returns false when the URL is invalid, a local file does
// not exist, no browser is registered or the start fails.
bool OpenHtmlByDefBrowser(const QString &strUrl)
{
    const QUrl url(strUrl, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return false;
    const std::wstring url16 = url.toString(QUrl::FullyEncoded).toStdWString();
    if (!url.isLocalFile() || (!url.hasQuery() && !url.hasFragment())) {
        if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile())
            return false;
        const HINSTANCE hResult = ShellExecuteW(nullptr, L"open", url16.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
        return reinterpret_cast<INT_PTR>(hResult) > 32;
    }
    if (!QFileInfo(url.toLocalFile()).isFile())
        return false;
    wchar_t szBrowser[MAX_PATH] = {};
    DWORD uLength = MAX_PATH;
    // ASSOCF_IS_PROTOCOL (0x1000, Windows 8+; declared only for Windows 8
    // targets) follows the user's choice of browser for the http protocol;
    // older systems answer without the flag.
    const ASSOCF uIsProtocol = static_cast<ASSOCF>(0x00001000);
    if (FAILED(AssocQueryStringW(uIsProtocol, ASSOCSTR_EXECUTABLE, L"http", L"open", szBrowser, &uLength))) {
        uLength = MAX_PATH;
        if (FAILED(AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, L"http", L"open", szBrowser, &uLength)))
            return false;
    }
    const std::wstring arguments = L"\"" + url16 + L"\"";
    const HINSTANCE hResult = ShellExecuteW(nullptr, L"open", szBrowser, arguments.c_str(), nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(hResult) > 32;
}

} // namespace LuInterface
