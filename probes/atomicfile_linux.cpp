#include "atomicfile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace AtomicFile {

namespace {

FaultHook &faultHook()
{
    static FaultHook hook;
    return hook;
}

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

} // namespace

void setFaultHook(FaultHook hook)
{
    faultHook() = std::move(hook);
}

bool write(const QString &strPath, const QByteArray &data)
{
    const QByteArray path = QFile::encodeName(strPath);
    const QByteArray dir = QFile::encodeName(QFileInfo(strPath).absolutePath());
    QByteArray temp = path + ".vetrix-XXXXXX";

    struct stat stOld;
    const bool bHadOld = ::stat(path.constData(), &stOld) == 0;
    if (bHadOld && !S_ISREG(stOld.st_mode))
        return false;

    const int nFd = ::mkostemp(temp.data(), O_CLOEXEC);
    if (nFd < 0)
        return false;
    bool bOk = writeAll(nFd, data.constData(), data.size());
    if (bOk) {
        if (bHadOld) {
            bOk = ::fchmod(nFd, stOld.st_mode & 07777) == 0;
            if (bOk && ::geteuid() == 0)
                bOk = ::fchown(nFd, stOld.st_uid, stOld.st_gid) == 0;
        } else {
            bOk = ::fchmod(nFd, 0644) == 0;
        }
    }
    bOk = bOk && ::fsync(nFd) == 0;
    bOk = (::close(nFd) == 0) && bOk;
    const QString strTemp = QFile::decodeName(temp);
    if (bOk && faultHook() && !faultHook()(strTemp))
        return false; // simulated crash: the temporary file stays, the old file too
    if (!bOk || ::rename(temp.constData(), path.constData()) != 0) {
        ::unlink(temp.constData());
        return false;
    }
    const int nDirFd = ::open(dir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nDirFd >= 0) {
        ::fsync(nDirFd);
        ::close(nDirFd);
    }
    return true;
}

} // namespace AtomicFile
