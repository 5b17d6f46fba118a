#include "atomicfile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace AtomicFile {

namespace {

const char kTempInfix[] = ".vetrix-";
constexpr int kTempSuffixLength = 6; // as mkostemp's XXXXXX
constexpr int kLinkAttempts = 16;

// Closes a descriptor when it goes out of scope.
struct Fd
{
    int n = -1;
    explicit Fd(int nFd = -1)
        : n(nFd)
    {
    }
    ~Fd()
    {
        if (n >= 0)
            ::close(n);
    }
    Fd(const Fd &) = delete;
    Fd &operator=(const Fd &) = delete;
    int release()
    {
        const int nOld = n;
        n = -1;
        return nOld;
    }
};

bool writeAll(int nFd, const char *pData, qint64 nSize)
{
    while (nSize > 0) {
        const ssize_t nDone = ::write(nFd, pData, size_t(nSize));
        if (nDone < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        pData += nDone;
        nSize -= nDone;
    }
    return true;
}

bool isSuffixChar(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool isTempName(const QByteArray &base, const char *pName)
{
    const QByteArray name(pName);
    const QByteArray prefix = base + kTempInfix;
    if (name.size() != prefix.size() + kTempSuffixLength || !name.startsWith(prefix))
        return false;
    for (int i = prefix.size(); i < name.size(); ++i) {
        if (!isSuffixChar(name.at(i)))
            return false;
    }
    return true;
}

bool earlier(const timespec &a, const timespec &b)
{
    return a.tv_sec < b.tv_sec || (a.tv_sec == b.tv_sec && a.tv_nsec < b.tv_nsec);
}

// Removes the temporary files an earlier, killed write left in the folder:
// only regular files with our name pattern, owned by this user and last
// changed before this write began (a concurrent writer's fresh file stays).
void removeStaleTemps(int nDirFd, const QByteArray &base, const timespec &start)
{
    const int nListFd = ::openat(nDirFd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nListFd < 0)
        return;
    DIR *pDir = ::fdopendir(nListFd);
    if (!pDir) {
        ::close(nListFd);
        return;
    }
    while (const dirent *pEntry = ::readdir(pDir)) {
        if (!isTempName(base, pEntry->d_name))
            continue;
        struct stat st;
        if (::fstatat(nDirFd, pEntry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        if (!S_ISREG(st.st_mode) || st.st_uid != ::geteuid() || !earlier(st.st_mtim, start))
            continue;
        ::unlinkat(nDirFd, pEntry->d_name, 0);
    }
    ::closedir(pDir);
}

QByteArray randomTempName(const QByteArray &base)
{
    static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QByteArray name = base + kTempInfix;
    for (int i = 0; i < kTempSuffixLength; ++i)
        name += kAlphabet[QRandomGenerator::system()->bounded(int(sizeof kAlphabet) - 1)];
    return name;
}

// Writes the content, the old file's mode and owner and syncs it.
bool fill(int nFd, const QByteArray &data, const struct stat *pOld)
{
    if (!writeAll(nFd, data.constData(), data.size()))
        return false;
    if (pOld) {
        if (::fchmod(nFd, pOld->st_mode & 07777) != 0)
            return false;
        if (::geteuid() == 0 && ::fchown(nFd, pOld->st_uid, pOld->st_gid) != 0)
            return false;
    } else if (::fchmod(nFd, 0644) != 0) {
        return false;
    }
    return ::fsync(nFd) == 0;
}

// Gives an unnamed temporary file a temporary name in the folder. Through
// /proc/self/fd first (any user); AT_EMPTY_PATH needs CAP_DAC_READ_SEARCH.
QByteArray linkUnnamed(int nFd, int nDirFd, const QByteArray &base)
{
    const QByteArray procPath = "/proc/self/fd/" + QByteArray::number(nFd);
    for (int i = 0; i < kLinkAttempts; ++i) {
        const QByteArray name = randomTempName(base);
        if (::linkat(AT_FDCWD, procPath.constData(), nDirFd, name.constData(), AT_SYMLINK_FOLLOW) == 0)
            return name;
        if (errno == EEXIST)
            continue;
        if (::linkat(nFd, "", nDirFd, name.constData(), AT_EMPTY_PATH) == 0)
            return name;
        if (errno != EEXIST)
            return QByteArray();
    }
    return QByteArray();
}

} // namespace

bool isTemporaryName(const QString &strTarget, const QString &strName)
{
    return isTempName(QFile::encodeName(QFileInfo(strTarget).fileName()), QFile::encodeName(strName).constData());
}

bool write(const QString &strPath, const QByteArray &data, const Options &options)
{
    timespec start;
    ::clock_gettime(CLOCK_REALTIME, &start);
    const QFileInfo info(strPath);
    const QByteArray base = QFile::encodeName(info.fileName());
    const QByteArray dir = QFile::encodeName(info.absolutePath());
    if (base.isEmpty())
        return false;

    struct stat stOld;
    const bool bHadOld = ::stat(QFile::encodeName(strPath).constData(), &stOld) == 0;
    if (bHadOld && !S_ISREG(stOld.st_mode))
        return false;

    const Fd dirFd(::open(dir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dirFd.n < 0)
        return false;
    removeStaleTemps(dirFd.n, base, start);

    // The new content, complete and synced, under a temporary name.
    QByteArray temp;
    if (options.bUnnamedTemporary) {
        const Fd fd(::openat(dirFd.n, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
        if (fd.n >= 0) {
            if (!fill(fd.n, data, bHadOld ? &stOld : nullptr))
                return false;
            temp = linkUnnamed(fd.n, dirFd.n, base);
        }
    }
    if (temp.isEmpty()) {
        // No unnamed files here (or they could not be linked): a named one.
        temp = base + kTempInfix + QByteArray(kTempSuffixLength, 'X');
        QByteArray fullTemp = dir + '/' + temp;
        Fd fd(::mkostemp(fullTemp.data(), O_CLOEXEC));
        if (fd.n < 0)
            return false;
        temp = fullTemp.mid(dir.size() + 1);
        const bool bFilled = fill(fd.n, data, bHadOld ? &stOld : nullptr);
        const bool bClosed = ::close(fd.release()) == 0;
        if (!bFilled || !bClosed) {
            ::unlinkat(dirFd.n, temp.constData(), 0);
            return false;
        }
    }

    if (options.beforeRename && !options.beforeRename(QFile::decodeName(dir + '/' + temp)))
        return false; // simulated crash: the temporary file stays, the old file too
    if (::renameat(dirFd.n, temp.constData(), dirFd.n, base.constData()) != 0) {
        ::unlinkat(dirFd.n, temp.constData(), 0);
        return false;
    }
    ::fsync(dirFd.n);
    return true;
}

} // namespace AtomicFile
