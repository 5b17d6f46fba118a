#include "vxquarantine.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace VxQuarantine {

namespace {

const char kFilePrefix[] = "sha256:";
const char kLinkPrefix[] = "link:";

QString errnoText(const QString &strWhat)
{
    return strWhat + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

void syncFolderOf(const QByteArray &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(QFile::decodeName(path)).absolutePath());
    const int nFd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nFd >= 0) {
        ::fsync(nFd);
        ::close(nFd);
    }
}

// Renames without replacing an existing file where the file system allows.
int renameNoReplace(const char *pFrom, const char *pTo)
{
    const int nResult = ::renameat2(AT_FDCWD, pFrom, AT_FDCWD, pTo, RENAME_NOREPLACE);
    if (nResult != 0 && errno == EINVAL) {
        if (::access(pTo, F_OK) == 0) {
            errno = EEXIST;
            return -1;
        }
        return ::rename(pFrom, pTo);
    }
    return nResult;
}

bool copyBytes(int nFrom, int nTo)
{
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t nRead = ::read(nFrom, buffer, sizeof buffer);
        if (nRead == 0)
            return true;
        if (nRead < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        ssize_t nDone = 0;
        while (nDone < nRead) {
            const ssize_t nWritten = ::write(nTo, buffer + nDone, size_t(nRead - nDone));
            if (nWritten < 0 && errno != EINTR)
                return false;
            nDone += nWritten < 0 ? 0 : nWritten;
        }
    }
}

// The copy for moving across file systems: a temporary file beside the
// destination with the source's bytes, mode and owner (or the same link),
// synced and renamed into place; the source is removed last.
bool copyAcross(const QByteArray &from, const QByteArray &to, bool bReplace, QString *pError)
{
    struct stat st;
    if (::lstat(from.constData(), &st) != 0) {
        *pError = errnoText(QFile::decodeName(from));
        return false;
    }
    const QByteArray temp = to + ".vetrix-move";
    ::unlink(temp.constData());
    bool bOk = false;
    if (S_ISLNK(st.st_mode)) {
        QByteArray target(int(st.st_size) + 1, '\0');
        const ssize_t nLength = ::readlink(from.constData(), target.data(), size_t(target.size()));
        bOk = nLength >= 0 && ::symlink(target.left(int(nLength)).constData(), temp.constData()) == 0;
        if (bOk && ::lchown(temp.constData(), st.st_uid, st.st_gid) != 0 && ::geteuid() == 0)
            bOk = false;
    } else {
        const int nFrom = ::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        const int nTo = ::open(temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        bOk = nFrom >= 0 && nTo >= 0 && copyBytes(nFrom, nTo) && ::fchmod(nTo, st.st_mode & 07777) == 0
            && (::fchown(nTo, st.st_uid, st.st_gid) == 0 || ::geteuid() != 0) && ::fsync(nTo) == 0;
        if (nFrom >= 0)
            ::close(nFrom);
        if (nTo >= 0)
            ::close(nTo);
    }
    if (bOk)
        bOk = (bReplace ? ::rename(temp.constData(), to.constData())
                        : renameNoReplace(temp.constData(), to.constData()))
            == 0;
    if (!bOk) {
        *pError = errnoText(QFile::decodeName(to));
        ::unlink(temp.constData());
        return false;
    }
    syncFolderOf(to);
    if (::unlink(from.constData()) != 0) {
        *pError = errnoText(QFile::decodeName(from));
        return false;
    }
    syncFolderOf(from);
    return true;
}

bool moveFile(const QString &strFrom, const QString &strTo, bool bReplace, QString *pError)
{
    const QByteArray from = QFile::encodeName(strFrom);
    const QByteArray to = QFile::encodeName(strTo);
    const int nResult
        = bReplace ? ::rename(from.constData(), to.constData()) : renameNoReplace(from.constData(), to.constData());
    if (nResult == 0) {
        syncFolderOf(to);
        syncFolderOf(from);
        return true;
    }
    if (errno == EXDEV)
        return copyAcross(from, to, bReplace, pError);
    *pError = errnoText(strTo);
    return false;
}

} // namespace

bool identityOf(const QString &strPath, QString *pIdentity)
{
    const QByteArray path = QFile::encodeName(strPath);
    struct stat st;
    if (::lstat(path.constData(), &st) != 0) {
        if (errno != ENOENT)
            return false;
        *pIdentity = QString(QLatin1String(""));
        return true;
    }
    if (S_ISLNK(st.st_mode)) {
        QByteArray target(int(st.st_size) + 1, '\0');
        const ssize_t nLength = ::readlink(path.constData(), target.data(), size_t(target.size()));
        if (nLength < 0 || nLength > st.st_size)
            return false;
        *pIdentity = QLatin1String(kLinkPrefix) + QFile::decodeName(target.left(int(nLength)));
        return true;
    }
    if (!S_ISREG(st.st_mode))
        return false;
    QFile file(strPath);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return false;
    *pIdentity = QLatin1String(kFilePrefix) + QString::fromLatin1(hash.result().toHex());
    return true;
}

bool isValidIdentity(const QString &strIdentity)
{
    static const QRegularExpression reFile(QStringLiteral("^sha256:[0-9a-f]{64}$"));
    if (reFile.match(strIdentity).hasMatch())
        return true;
    return strIdentity.startsWith(QLatin1String(kLinkPrefix)) && strIdentity.size() > int(sizeof kLinkPrefix) - 1
        && strIdentity.size() < 4096 && !strIdentity.contains(QChar(0)) && !strIdentity.contains(QLatin1Char('\n'));
}

QString storedPath(const QString &strFolder, const QString &strPath, const QString &strIdentity)
{
    const QByteArray key = QFile::encodeName(strPath) + '\n' + strIdentity.toUtf8();
    return strFolder + QLatin1Char('/')
        + QString::fromLatin1(QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex());
}

bool moveIn(const QString &strFolder, const QString &strPath, const QString &strIdentity, QString *pError)
{
    QString strNow;
    if (!identityOf(strPath, &strNow) || strNow != strIdentity) {
        *pError = QStringLiteral("file changed: ") + strPath;
        return false;
    }
    // The same file removed again (after an undo) replaces its earlier copy,
    // which has the same content.
    return moveFile(strPath, storedPath(strFolder, strPath, strIdentity), true, pError);
}

bool restore(const QString &strFolder, const QString &strPath, const QString &strIdentity, QString *pError)
{
    const QString strStored = storedPath(strFolder, strPath, strIdentity);
    QString strStoredIdentity;
    if (!identityOf(strStored, &strStoredIdentity) || strStoredIdentity != strIdentity) {
        *pError = QStringLiteral("no stored copy of ") + strPath;
        return false;
    }
    return moveFile(strStored, strPath, false, pError);
}

} // namespace VxQuarantine
