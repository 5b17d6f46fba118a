#include "dumpgrabber.h"

#include "luinterface.h"

#include <QDir>
#include <QFile>
#include <QMutex>

namespace DumpGrabber {

namespace {
QMutex g_folderMutex;
QString g_strSavedFolder;
} // namespace

QString programName()
{
    return QStringLiteral("VetrixTool");
}

QString savedTargetFolder()
{
    QMutexLocker locker(&g_folderMutex);
    return g_strSavedFolder;
}

void setSavedTargetFolder(const QString &strFolder)
{
    QMutexLocker locker(&g_folderMutex);
    g_strSavedFolder = strFolder;
}

QString targetFolder(const QString &strFolder)
{
    return strFolder + QStringLiteral("/%1Dumps/").arg(LuInterface::appName());
}

int grab(const QString &strFolder)
{
    QMap<QString, QString> mapFiles;
    collect(mapFiles);
    const QString strTarget = targetFolder(strFolder);
    QDir().mkdir(strTarget);
    int nCopied = 0;
    for (auto it = mapFiles.cbegin(); it != mapFiles.cend(); ++it) {
        // QFile::copy never replaces an existing file.
        if (QFile::copy(it.value() + QLatin1Char('/') + it.key(), strTarget + it.key()))
            ++nCopied;
    }
    return nCopied;
}

} // namespace DumpGrabber
