#include "sdkfiles.h"

#include "cdetectinfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace SdkFiles {

QStringList libraryBaseNames()
{
    return {QStringLiteral("LuCameraControl"), QStringLiteral("LUGigEVisionSDK"),
            QStringLiteral("LuUsb3vTL"), QStringLiteral("LuCamLVision")};
}

QStringList libraryNames()
{
    QStringList listNames;
    for (const QString &strBase : libraryBaseNames())
        listNames << fileName(strBase);
    return listNames;
}

void check(CSDKPathDetectInfo &info)
{
    info.foundFiles.clear();
    const QStringList listNames = libraryNames();
    for (const QString &strFolder : searchFolders())
        searchFolder(strFolder, listNames, info.foundFiles);
    info.bNormal = info.foundFiles.isEmpty() ? 1 : 0;
}

bool isRemovablePath(const QString &strPath)
{
    const QFileInfo fileInfo(strPath);
    if (!fileInfo.isAbsolute() || !libraryNames().contains(fileInfo.fileName()))
        return false;
    const QString strDir = fileInfo.dir().canonicalPath();
    if (strDir.isEmpty())
        return false;
    for (const QString &strFolder : searchFolders()) {
        const QString strRoot = QDir(strFolder).canonicalPath();
        if (!strRoot.isEmpty() && (strDir == strRoot || strDir.startsWith(strRoot + QLatin1Char('/'))))
            return true;
    }
    return false;
}

bool removeFile(const QString &strPath)
{
    const bool bRemoved = QFile::remove(strPath);
    if (bRemoved)
        qCInfo(lcVxRepair).noquote() << "removed SDK file" << strPath << "(old: present, new: absent)";
    return bRemoved;
}

VxRepairOutcome clear(CSDKPathDetectInfo &info, const VxPrivileges &rights)
{
    QStringList listLeft;
    for (auto it = info.foundFiles.cbegin(); it != info.foundFiles.cend(); ++it) {
        for (const QString &strDir : it.value()) {
            if (strDir.isEmpty())
                continue;
            const QString strPath = strDir + QLatin1Char('/') + it.key();
            if (!removeFile(strPath) && QFileInfo::exists(strPath) && !rights.isRoot())
                listLeft << strPath;
        }
    }
    VxRepairStatus status = VxRepairStatus::Done;
    if (!listLeft.isEmpty()) {
        status = rights.runHelper(QStringLiteral("remove-sdk-file"), listLeft);
        if (status == VxRepairStatus::Done)
            qCInfo(lcVxRepair).noquote() << "vetrix-helper removed" << listLeft.join(QLatin1String(", "));
    }
    // A file that could not be removed shows again only at the next check.
    info.foundFiles.clear();
    info.bNormal = 1;
    if (status != VxRepairStatus::Done)
        return VxRepairOutcome(status, QStringLiteral("removing %1").arg(listLeft.join(QLatin1String(", "))));
    return VxRepairOutcome();
}

} // namespace SdkFiles
