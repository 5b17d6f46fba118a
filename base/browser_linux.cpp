#include "luinterface.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

namespace LuInterface {

// Opens the URL with the desktop's default handler (xdg-open and the
// portals behind QDesktopServices). Returns false without opening anything
// when:
//  - the text is not a valid URL, or no GUI application runs;
//  - it is a local file URL that carries a query or fragment (the manual's
//    "index.html?guid=<topic>.html"): the desktop handlers resolve file URLs
//    to a path and would look for a file named with the query, so the caller
//    opens the plain page instead;
//  - it is a local file URL whose file does not exist.
bool OpenHtmlByDefBrowser(const QString &strUrl)
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return false;
    const QUrl url(strUrl, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return false;
    if (url.isLocalFile()) {
        if (url.hasQuery() || url.hasFragment())
            return false;
        if (!QFileInfo(url.toLocalFile()).isFile())
            return false;
    }
    return QDesktopServices::openUrl(url);
}

} // namespace LuInterface
