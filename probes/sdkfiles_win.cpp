#include "sdkfiles.h"

#include "luinterface.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace SdkFiles {

QString fileName(const QString &strBaseName)
{
    return strBaseName + QStringLiteral(".dll");
}

// The native system folder, then the 32-bit one when it is another folder
// (on a 32-bit Windows both are the same and only one tree is searched).
QStringList searchFolders()
{
    const QString strSystem = LuInterface::systemDir(37);
    const QString strSystemX86 = LuInterface::systemDir(41);
    QStringList listFolders{strSystem};
    if (strSystemX86.compare(strSystem, Qt::CaseInsensitive) != 0)
        listFolders << strSystemX86;
    return listFolders;
}

// One QDirIterator walk for all names: every regular file matching one of
// them adds its directory under the name as listed (file names compare
// without case on Windows).
void searchFolder(const QString &strFolder, const QStringList &listNames, QMap<QString, QStringList> &mapFound)
{
    QDir dir(strFolder);
    dir.setNameFilters(listNames);
    QDirIterator it(dir, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (!info.isFile())
            continue;
        for (const QString &strName : listNames) {
            if (info.fileName().compare(strName, Qt::CaseInsensitive) == 0) {
                mapFound[strName].append(info.absolutePath());
                break;
            }
        }
    }
}

} // namespace SdkFiles
