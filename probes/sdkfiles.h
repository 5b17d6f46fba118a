#pragma once

#include "vxrepair.h"

#include <QMap>
#include <QStringList>

class CSDKPathDetectInfo;

// Item 1: stray copies of the SDK's libraries in the system library folders.
namespace SdkFiles {

// The SDK's library base names, in check order.
QStringList libraryBaseNames();
// The file name a library has on this platform ("libLuCameraControl.so").
QString fileName(const QString &strBaseName);
// The file names looked for, in check order.
QStringList libraryNames();

// The folders searched, in order (native first), below the system root; a
// folder that is another one or lies inside one already listed is dropped.
QStringList searchFolders();

// One recursive walk of strFolder for all names at once. For every regular
// file (or link to one) whose name is in listNames, the directory holding it
// is appended to mapFound[name], in the order the walk meets them.
void searchFolder(const QString &strFolder, const QStringList &listNames,
                  QMap<QString, QStringList> &mapFound);

// Rebuilds info.foundFiles and sets bNormal = (nothing found).
void check(CSDKPathDetectInfo &info);

// Deletes every file listed (through vetrix-helper when this process lacks
// the rights), empties foundFiles and marks the item normal whatever the
// removals achieved. Returns how the privileged part went.
VxRepairOutcome clear(CSDKPathDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system());

// True when strPath names a file the clear may delete: its name is one of
// libraryNames() and its directory lies inside one of searchFolders().
bool isRemovablePath(const QString &strPath);

// Deletes one file as this process (no helper). Logged.
bool removeFile(const QString &strPath);

} // namespace SdkFiles
