// One instance per user session: the first instance holds a lock on a
// per-user file and listens on a per-user local socket; a later start finds
// the file locked, connects, asks the first to raise its window, and leaves.
#include "singleinstance.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLoggingCategory>
#include <QLocalSocket>
#include <QPointer>
#include <QStandardPaths>
#include <QThread>
#include <QWidget>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
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

namespace {
int g_nLockFd = -1;

// Beside the socket: the instance that holds an exclusive lock on this file
// is the first one. The kernel drops the lock when that process ends, so a
// crash leaves nothing that blocks the next start.
QString lockPath()
{
    const QString strRuntime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!strRuntime.isEmpty())
        return strRuntime + QStringLiteral("/VetrixTool.lock");
    return QDir::tempPath() + QStringLiteral("/VetrixTool-%1.lock").arg(getuid());
}

// Asks the instance listening on the socket to raise its window; false when
// nobody answered before the deadline.
bool askToRaise(int nWaitMs)
{
    QDeadlineTimer deadline(nWaitMs);
    forever {
        QLocalSocket socket;
        socket.connectToServer(socketName());
        if (socket.waitForConnected(500)) {
            socket.write("raise\n");
            socket.waitForBytesWritten(500);
            socket.disconnectFromServer();
            return true;
        }
        if (deadline.hasExpired())
            return false;
        QThread::msleep(20);
    }
}

// Listens for later starts; false when another instance already answers on
// the socket (then this one must leave).
bool listenForLaterStarts()
{
    if (askToRaise(0))
        return false;
    g_pServer = new QLocalServer;
    g_pServer->setSocketOptions(QLocalServer::UserAccessOption);
    if (!g_pServer->listen(socketName())) {
        // The socket is in use or left over. Remove it only when nobody
        // answers on it: then it was left by an instance that ended
        // without closing it.
        if (askToRaise(0)) {
            delete g_pServer;
            g_pServer = nullptr;
            return false;
        }
        QLocalServer::removeServer(socketName());
        if (!g_pServer->listen(socketName()))
            qCWarning(lcInstance) << "cannot listen for later starts:" << g_pServer->errorString();
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
    return true;
}
} // namespace

bool anotherInstanceRuns()
{
    const QByteArray path = QFile::encodeName(lockPath());
    const int nFd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (nFd >= 0 && ::flock(nFd, LOCK_EX | LOCK_NB) == 0) {
        g_nLockFd = nFd;
        return !listenForLaterStarts();
    }
    const bool bLocked = nFd >= 0 && errno == EWOULDBLOCK;
    if (nFd >= 0)
        ::close(nFd);
    if (bLocked) {
        // The first instance may still be on its way to listening; give it
        // time, and leave even if it never answers.
        askToRaise(10000);
        return true;
    }
    // No lock file can be made (an unwritable folder): the socket alone
    // decides.
    qCWarning(lcInstance) << "cannot lock" << lockPath() << "- relying on the socket alone";
    return !listenForLaterStarts();
}

void setMainWindow(QWidget *pWindow)
{
    g_pWindow = pWindow;
}

void release()
{
    delete g_pServer;
    g_pServer = nullptr;
    if (g_nLockFd >= 0) {
        ::close(g_nLockFd);
        g_nLockFd = -1;
    }
}

} // namespace VxSingleInstance

bool vxPlatformCheck()
{
    return true;
}
