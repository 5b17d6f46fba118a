#include "dumpgrabber.h"

#include "luinterface.h"

#include <QDir>
#include <QFileInfo>

// Linux keeps crash dumps in two places:
// - systemd-coredump: /var/lib/systemd/coredump/core.<comm>.<uid>.<boot id>.<pid>.<time>[.zst],
//   where <comm> is the executable name cut to 15 characters by the kernel;
// - apport: /var/crash/<path with "/" as "_">.<uid>.crash.
// The system dump is kdump's vmcore: directly in /var/crash, or in one
// folder per crash below it (named by date, so the last in name order is the
// newest); like the Minidump folder on Windows, the per-crash folders win.

namespace DumpGrabber {

namespace {

const char *const kSystemDump = "vmcore";
constexpr int kCommLength = 15; // TASK_COMM_LEN - 1

QString crashFolder()
{
    return LuInterface::sysPath(QStringLiteral("/var/crash"));
}

QString coredumpFolder()
{
    return LuInterface::sysPath(QStringLiteral("/var/lib/systemd/coredump"));
}

bool coredumpMatches(const QString &strFileName)
{
    if (!strFileName.startsWith(QLatin1String("core."), Qt::CaseInsensitive))
        return false;
    const QString strRest = strFileName.mid(5);
    for (const QString &strName : watchedNames()) {
        if (strRest.startsWith(strName.left(kCommLength), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

bool apportMatches(const QString &strFileName)
{
    if (!strFileName.endsWith(QLatin1String(".crash"), Qt::CaseInsensitive))
        return false;
    QString strPath = strFileName.left(strFileName.size() - 6);
    const int nDot = strPath.lastIndexOf(QLatin1Char('.'));
    if (nDot > 0)
        strPath.truncate(nDot); // the user id
    for (const QString &strName : watchedNames()) {
        if (strPath.endsWith(QLatin1Char('_') + strName, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void addSystemDump(QMap<QString, QString> &mapFiles)
{
    const QString strName = QLatin1String(kSystemDump);
    QStringList listDirs;
    const QString strCrash = crashFolder();
    if (QFileInfo(strCrash + QLatin1Char('/') + strName).isFile())
        listDirs << strCrash;
    const QStringList listSub = QDir(strCrash).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name);
    for (const QString &strSub : listSub) {
        const QString strDir = strCrash + QLatin1Char('/') + strSub;
        if (QFileInfo(strDir + QLatin1Char('/') + strName).isFile())
            listDirs << strDir;
    }
    for (const QString &strDir : listDirs)
        mapFiles[strName] = strDir;
}

void addProgramDumps(const QString &strFolder, bool (*pMatches)(const QString &), QMap<QString, QString> &mapFiles)
{
    const QFileInfoList listEntries = QDir(strFolder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QFileInfo &entry : listEntries) {
        if (entry.isFile() && pMatches(entry.fileName()))
            mapFiles[entry.fileName()] = entry.absolutePath();
    }
}

} // namespace

QStringList watchedNames()
{
    static const QStringList listNames = {programName(),                   QStringLiteral("Tamsel_Panel"),
                                          QStringLiteral("Brindle_Setter"), QStringLiteral("Quillscope"),
                                          QStringLiteral("Halden_Address"), QStringLiteral("Tiverton_Transfer"),
                                          QStringLiteral("Marlow_Flash"),   QStringLiteral("Pellwick_Setup"),
                                          QStringLiteral("Sorrel_Check")};
    return listNames;
}

bool isWatchedDump(const QString &strFileName)
{
    return coredumpMatches(strFileName) || apportMatches(strFileName);
}

void collect(QMap<QString, QString> &mapFiles)
{
    mapFiles.clear();
    addSystemDump(mapFiles);
    addProgramDumps(coredumpFolder(), coredumpMatches, mapFiles);
    addProgramDumps(crashFolder(), apportMatches, mapFiles);
}

} // namespace DumpGrabber
