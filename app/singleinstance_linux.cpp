// One instance per user session: the first instance listens on a per-user
// local socket; a later start connects, asks it to raise its window, and
// leaves.
#include "singleinstance.h"

#include <QLocalServer>
#include <QLoggingCategory>
#include <QLocalSocket>
#include <QPointer>
#include <QStandardPaths>
#include <QWidget>

#include <unistd.h>

namespace {
Q_LOGGING_CATEGORY(lcInstance, "vetrix.app.instance")

QLocalServer *g_pServer = nullptr;
QPointer<QWidget> g_pWindow;

// In the session's runtime folder when there is one (private to the user
// and the login session), else a per-user name in the temporary folder.
QString socketName()
{
    const QString strRuntime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!strRuntime.isEmpty())
        return strRuntime + QStringLiteral("/VetrixTool.instance");
    return QStringLiteral("VetrixTool-%1").arg(getuid());
}

void raiseWindow()
{
    qCInfo(lcInstance) << "a second start asked to raise the window";
    if (!g_pWindow)
        return;
    if (g_pWindow->isMinimized())
        g_pWindow->showNormal();
    g_pWindow->show();
    g_pWindow->raise();
    g_pWindow->activateWindow();
}
} // namespace

namespace VxSingleInstance {

bool anotherInstanceRuns()
{
    {
        QLocalSocket socket;
        socket.connectToServer(socketName());
        if (socket.waitForConnected(500)) {
            socket.write("raise\n");
            socket.waitForBytesWritten(500);
            socket.disconnectFromServer();
            return true;
        }
    }
    g_pServer = new QLocalServer;
    g_pServer->setSocketOptions(QLocalServer::UserAccessOption);
    if (!g_pServer->listen(socketName())) {
        // A socket file left by a crashed instance: nobody answered above.
        QLocalServer::removeServer(socketName());
        g_pServer->listen(socketName());
    }
    QObject::connect(g_pServer, &QLocalServer::newConnection, g_pServer, [] {
        while (QLocalSocket *pSocket = g_pServer->nextPendingConnection()) {
            QObject::connect(pSocket, &QLocalSocket::readyRead, pSocket, [pSocket] {
                if (pSocket->readAll().startsWith("raise"))
                    raiseWindow();
            });
            QObject::connect(pSocket, &QLocalSocket::disconnected, pSocket, &QObject::deleteLater);
        }
    });
    return false;
}

void setMainWindow(QWidget *pWindow)
{
    g_pWindow = pWindow;
}

void release()
{
    delete g_pServer;
    g_pServer = nullptr;
}

} // namespace VxSingleInstance

bool vxPlatformCheck()
{
    return true;
}
