#include "dumpgrabber.h"

#include "luinterface.h"

#include <QDir>
#include <QFileInfo>

namespace DumpGrabber {

namespace {

// The directories below strFolder (not descending) holding a file strName.
QStringList foldersWith(const QString &strFolder, const QString &strName)
{
    QStringList listDirs;
    const QFileInfoList listEntries = QDir(strFolder, strName).entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : listEntries) {
        if (entry.isFile())
            listDirs << entry.absolutePath();
    }
    return listDirs;
}

} // namespace

QStringList watchedNames()
{
    static const QStringList listNames = {programName() + QStringLiteral(".exe"), QStringLiteral("Tamsel_Panel.exe"),
                                          QStringLiteral("Brindle_Setter.exe"), QStringLiteral("Quillscope.exe"),
                                          QStringLiteral("Halden_Address.exe"), QStringLiteral("Tiverton_Transfer.exe"),
                                          QStringLiteral("Marlow_Flash.exe"), QStringLiteral("Pellwick_Setup.exe"),
                                          QStringLiteral("Sorrel_Check.exe")};
    return listNames;
}

bool isWatchedDump(const QString &strFileName)
{
    for (const QString &strName : watchedNames()) {
        if (strFileName.startsWith(strName, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void collect(QMap<QString, QString> &mapFiles)
{
    mapFiles.clear();
    // The system dump: the Windows folder, then its Minidump folder (which wins).
    const QString strRoot = QDir::rootPath();
    const QString strMemory = QStringLiteral("MEMORY.DMP");
    const QStringList listDirs = foldersWith(strRoot + QStringLiteral("Windows"), strMemory)
                                 + foldersWith(strRoot + QStringLiteral("Windows/Minidump"), strMemory);
    for (const QString &strDir : listDirs)
        mapFiles[strMemory] = strDir;
    // The programs' crash dumps.
    const QFileInfoList listEntries = QDir(LuInterface::localPath() + QStringLiteral("/CrashDumps")).entryInfoList(QDir::Files);
    for (const QFileInfo &entry : listEntries) {
        if (entry.isFile() && isWatchedDump(entry.fileName()))
            mapFiles[entry.fileName()] = entry.absolutePath();
    }
}

} // namespace DumpGrabber
