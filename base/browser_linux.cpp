#include "luinterface.h"
#include "luinterface_p.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QUrl>

namespace LuInterface {

// Opens the URL in the default browser and returns whether it was started.
//  - A local file URL with a query or fragment (the manual's
//    "index.html?guid=<topic>.html") is given to the desktop's default web
//    browser directly (Detail::defaultBrowserCommand): the generic opener
//    (xdg-open) turns file URLs into paths and would look for a file whose
//    name includes the query. With no default browser configured it returns
//    false and the caller opens the plain page instead.
//  - Any other URL goes through QDesktopServices (xdg-open, portals), which
//    needs a running GUI application.
//  - An invalid URL or a local file that does not exist gives false.
bool OpenHtmlByDefBrowser(const QString &strUrl)
{
    const QUrl url(strUrl, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return false;
    if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile())
        return false;
    if (url.isLocalFile() && (url.hasQuery() || url.hasFragment())) {
        QStringList listCommand = Detail::defaultBrowserCommand(url.toString(QUrl::FullyEncoded));
        if (listCommand.isEmpty())
            return false;
        const QString strProgram = listCommand.takeFirst();
        return QProcess::startDetached(strProgram, listCommand);
    }
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return false;
    return QDesktopServices::openUrl(url);
}

} // namespace LuInterface
