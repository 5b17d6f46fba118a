#include "sdkfiles.h"

#include "luinterface.h"

#include <QDir>
#include <QFileInfo>

#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SdkFiles {

QString fileName(const QString &strBaseName)
{
    return QStringLiteral("lib") + strBaseName + QStringLiteral(".so");
}

// /usr/lib holds the multiarch folder (x86_64-linux-gnu); /usr/lib64 and
// /usr/lib32 exist on some distributions only. systemDir(37) and (41) give
// the native and the 32-bit folder, as on Windows.
QStringList searchFolders()
{
    const QStringList listCandidates = {LuInterface::systemDir(37), LuInterface::sysPath(QStringLiteral("/usr/lib64")),
                                        LuInterface::systemDir(41)};
    QStringList listFolders;
    QStringList listCanonical;
    for (const QString &strFolder : listCandidates) {
        if (strFolder.isEmpty())
            continue;
        const QString strCanonical = QDir(strFolder).canonicalPath();
        if (strCanonical.isEmpty() || !QFileInfo(strCanonical).isDir())
            continue;
        bool bCovered = false;
        for (const QString &strSeen : listCanonical) {
            if (strCanonical == strSeen || strCanonical.startsWith(strSeen + QLatin1Char('/')) || strSeen == QLatin1String("/"))
                bCovered = true;
        }
        if (bCovered)
            continue;
        listCanonical << strCanonical;
        listFolders << QDir::cleanPath(strFolder);
    }
    return listFolders;
}

namespace {

struct Walker
{
    std::vector<std::string> vecNames;
    std::vector<std::vector<std::string>> vecHits; // per name, directories

    int matchOf(const char *pName) const
    {
        for (size_t i = 0; i < vecNames.size(); ++i) {
            if (vecNames[i] == pName)
                return int(i);
        }
        return -1;
    }

    // Depth first, descending into a subfolder where the listing meets it
    // (the order QDirIterator::Subdirectories reports). Links to folders are
    // not followed; a link to a regular file counts as a file.
    void walk(int nDirFd, const std::string &strPath, int nDepth)
    {
        DIR *pDir = ::fdopendir(nDirFd);
        if (!pDir) {
            ::close(nDirFd);
            return;
        }
        while (dirent *pEntry = ::readdir(pDir)) {
            const char *pName = pEntry->d_name;
            if (pName[0] == '.' && (pName[1] == 0 || (pName[1] == '.' && pName[2] == 0)))
                continue;
            unsigned char uType = pEntry->d_type;
            if (uType == DT_UNKNOWN) {
                struct stat st;
                if (::fstatat(::dirfd(pDir), pName, &st, AT_SYMLINK_NOFOLLOW) != 0)
                    continue;
                uType = S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : S_ISLNK(st.st_mode) ? DT_LNK : DT_UNKNOWN;
            }
            if (uType == DT_DIR) {
                if (nDepth >= 64)
                    continue;
                const int nSub = ::openat(::dirfd(pDir), pName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
                if (nSub >= 0)
                    walk(nSub, strPath + '/' + pName, nDepth + 1);
                continue;
            }
            if (uType != DT_REG && uType != DT_LNK)
                continue;
            const int nMatch = matchOf(pName);
            if (nMatch < 0)
                continue;
            if (uType == DT_LNK) {
                struct stat st;
                if (::fstatat(::dirfd(pDir), pName, &st, 0) != 0 || !S_ISREG(st.st_mode))
                    continue;
            }
            vecHits[size_t(nMatch)].push_back(strPath);
        }
        ::closedir(pDir);
    }
};

} // namespace

void searchFolder(const QString &strFolder, const QStringList &listNames, QMap<QString, QStringList> &mapFound)
{
    Walker walker;
    for (const QString &strName : listNames)
        walker.vecNames.push_back(QFile::encodeName(strName).toStdString());
    walker.vecHits.resize(walker.vecNames.size());

    const QString strClean = QDir::cleanPath(QDir(strFolder).absolutePath());
    const std::string strRoot = QFile::encodeName(strClean).toStdString();
    const int nFd = ::open(strRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nFd < 0)
        return;
    walker.walk(nFd, strRoot == "/" ? std::string() : strRoot, 0);

    for (size_t i = 0; i < walker.vecNames.size(); ++i) {
        if (walker.vecHits[i].empty())
            continue;
        QStringList &listDirs = mapFound[listNames[int(i)]];
        for (const std::string &strDir : walker.vecHits[i])
            listDirs << QFile::decodeName(strDir.empty() ? std::string("/").c_str() : strDir.c_str());
    }
}

} // namespace SdkFiles
