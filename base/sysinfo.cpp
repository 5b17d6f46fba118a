#include "luinterface.h"
#include "luinterface_p.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QSysInfo>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

// The platform-independent system facts and helpers; the rest lives in
// sysinfo_<platform>.cpp.

namespace LuInterface {
namespace Detail {

QByteArray readSmallFile(const QString &strPath, qint64 nMaxBytes)
{
    // Only regular files: a FIFO or device node planted in a system tree
    // must not block the caller.
    const QFileInfo info(strPath);
    if (!info.isFile())
        return QByteArray();
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.read(nMaxBytes);
}

QString unknownText()
{
    return QCoreApplication::translate("LuInterface", "Unknown");
}

QString memoryText(quint64 uBytes)
{
    if (uBytes == 0)
        return unknownText();
    const double dMb = double(uBytes) / (1024.0 * 1024.0);
    if (dMb < 1024.0)
        return QStringLiteral("%1 MB").arg(dMb, 0, 'f', 0);
    return QStringLiteral("%1 GB").arg(dMb / 1024.0, 0, 'f', 1);
}

} // namespace Detail

namespace {

// The running GUI application, or null under a plain QCoreApplication
// (qGuiApp would cast blindly).
QGuiApplication *guiApp()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}

// Physical pixels of the primary screen, e.g. "1920 x 1080".
QString primaryScreenText()
{
    const QScreen *pScreen = QGuiApplication::primaryScreen();
    if (!pScreen)
        return QString();
    const QSize size = pScreen->size() * pScreen->devicePixelRatio();
    if (size.isEmpty())
        return QString();
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

// Screens belong to the GUI thread. A caller on another thread (the
// diagnosis worker) asks the GUI thread and waits a bounded time, so a GUI
// thread that is itself waiting for the worker cannot deadlock it.
QString primaryScreenTextFromGuiThread()
{
    // Standard primitives rather than QMutex/QWaitCondition: the thread
    // sanitizer sees through them.
    struct Reply {
        std::mutex mutex;
        std::condition_variable done;
        bool bDone = false;
        QString strText;
    };
    auto pReply = std::make_shared<Reply>();
    const bool bPosted = QMetaObject::invokeMethod(guiApp(), [pReply] {
        const QString strText = primaryScreenText();
        std::lock_guard<std::mutex> lock(pReply->mutex);
        pReply->strText = strText;
        pReply->bDone = true;
        pReply->done.notify_all();
    }, Qt::QueuedConnection);
    if (!bPosted)
        return QString();
    std::unique_lock<std::mutex> lock(pReply->mutex);
    pReply->done.wait_for(lock, std::chrono::milliseconds(2000), [&pReply] { return pReply->bDone; });
    return pReply->bDone ? pReply->strText : QString();
}

} // namespace

namespace {

// The byte order of a system image: EI_DATA of the ELF header of one of its
// programs (1 little, 2 big endian); 0 when none can be read. A link as the
// last part of the path is not followed: an absolute target would lead to
// the running machine's file.
int imageByteOrder()
{
    for (const char *pProgram : {"/usr/bin/env", "/usr/bin/true", "/bin/true", "/usr/bin/ls", "/bin/ls"}) {
        const QString strPath = sysPath(QString::fromLatin1(pProgram));
        if (QFileInfo(strPath).isSymLink())
            continue;
        const QByteArray header = Detail::readSmallFile(strPath, 16);
        if (header.size() >= 6 && header.startsWith("\x7f" "ELF") && (header.at(5) == 1 || header.at(5) == 2))
            return header.at(5);
    }
    return 0;
}

} // namespace

QString byteOrder()
{
    if (!isLiveRoot()) {
        switch (imageByteOrder()) {
        case 1:
            return QCoreApplication::translate("LuInterface", "Little Endian");
        case 2:
            return QCoreApplication::translate("LuInterface", "Big Endian");
        default:
            return Detail::unknownText();
        }
    }
    if (QSysInfo::ByteOrder == QSysInfo::LittleEndian)
        return QCoreApplication::translate("LuInterface", "Little Endian");
    return QCoreApplication::translate("LuInterface", "Big Endian");
}

QString resolution()
{
    QString strText;
    // The screen belongs to the running machine, not to another system root.
    const QGuiApplication *pApp = isLiveRoot() ? guiApp() : nullptr;
    if (pApp) {
        if (QThread::currentThread() == pApp->thread())
            strText = primaryScreenText();
        else
            strText = primaryScreenTextFromGuiThread();
    }
    if (strText.isEmpty())
        strText = Detail::platformResolution();
    return strText.isEmpty() ? Detail::unknownText() : strText;
}

} // namespace LuInterface
