#include "fssource.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace probekit {

namespace {
std::string normaliseRoot(std::string strRoot)
{
    while (!strRoot.empty() && strRoot.back() == '/')
        strRoot.pop_back();
    return strRoot;
}
} // namespace

RealFsSource::RealFsSource()
{
    const char *pRoot = std::getenv("VETRIX_SYSROOT");
    m_strRoot = normaliseRoot(pRoot ? pRoot : "");
}

RealFsSource::RealFsSource(const std::string &strRoot)
    : m_strRoot(normaliseRoot(strRoot))
{
}

bool RealFsSource::isLiveRoot()
{
    if (m_strRoot.empty())
        return true;
    char *pReal = ::realpath(m_strRoot.c_str(), nullptr);
    const bool bLive = pReal && std::strcmp(pReal, "/") == 0;
    std::free(pReal);
    return bLive;
}

std::string RealFsSource::full(const std::string &strPath) const
{
    return m_strRoot + strPath;
}

namespace {

// Reads an open file to its end (at most nMax bytes) and closes it.
bool readAndClose(int fd, std::string &strOut, size_t nMax)
{
    char buf[4096];
    bool ok = true;
    while (strOut.size() < nMax) {
        const size_t want = nMax - strOut.size() < sizeof buf ? nMax - strOut.size() : sizeof buf;
        const ssize_t got = ::read(fd, buf, want);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            ok = false;
            break;
        }
        strOut.append(buf, size_t(got));
        // sysfs hands an attribute over in one read; a short read is the end.
        if (size_t(got) < want)
            break;
    }
    ::close(fd);
    return ok;
}

// O_NONBLOCK: a FIFO or device node planted in a fake tree cannot block;
// reading a directory fails with EISDIR.
constexpr int kOpenFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

} // namespace

RealFsSource::~RealFsSource()
{
    if (m_nDirFd >= 0)
        ::close(m_nDirFd);
}

bool RealFsSource::readFile(const std::string &strPath, std::string &strOut, size_t nMax)
{
    strOut.clear();
    const int fd = ::open(full(strPath).c_str(), kOpenFlags);
    return fd >= 0 && readAndClose(fd, strOut, nMax);
}

bool RealFsSource::readFileIn(const std::string &strDir, const char *pName, std::string &strOut, size_t nMax)
{
    strOut.clear();
    if (!pName || !*pName || pName[0] == '/')
        return false;
    if (m_nDirFd < 0 || strDir != m_strDir) {
        if (m_nDirFd >= 0)
            ::close(m_nDirFd);
        m_strDir = strDir;
        m_nDirFd = ::open(full(strDir).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }
    if (m_nDirFd < 0)
        return false;
    const int fd = ::openat(m_nDirFd, pName, kOpenFlags);
    return fd >= 0 && readAndClose(fd, strOut, nMax);
}

bool RealFsSource::isDir(const std::string &strPath, bool bFollow)
{
    struct stat st;
    const std::string path = full(strPath);
    const int rc = bFollow ? ::stat(path.c_str(), &st) : ::lstat(path.c_str(), &st);
    return rc == 0 && S_ISDIR(st.st_mode);
}

bool RealFsSource::listDir(const std::string &strPath, std::vector<std::string> &vecOut)
{
    vecOut.clear();
    DIR *pDir = ::opendir(full(strPath).c_str());
    if (!pDir)
        return false;
    while (dirent *pEnt = ::readdir(pDir)) {
        const std::string name = pEnt->d_name;
        if (name != "." && name != "..")
            vecOut.push_back(name);
    }
    ::closedir(pDir);
    return true;
}

bool RealFsSource::readLink(const std::string &strPath, std::string &strOut)
{
    char buf[4096];
    const ssize_t n = ::readlink(full(strPath).c_str(), buf, sizeof buf - 1);
    if (n <= 0)
        return false;
    strOut.assign(buf, size_t(n));
    return true;
}

bool RealFsSource::readLanguageDescriptor(unsigned nBus, unsigned nDevNum, std::string &strOut)
{
    strOut.clear();
    if (nBus == 0 || nBus > 999 || nDevNum == 0 || nDevNum > 999)
        return false;
    char path[32];
    std::snprintf(path, sizeof path, "/dev/bus/usb/%03u/%03u", nBus, nDevNum);
    // Without write access usbfs refuses control requests; O_NONBLOCK keeps
    // anything planted in a fake tree from blocking the open.
    const int fd = ::open(full(path).c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return false;
    struct stat st;
    unsigned char buf[255] = {};
    bool ok = ::fstat(fd, &st) == 0 && S_ISCHR(st.st_mode);
    if (ok) {
        usbdevfs_ctrltransfer request{};
        request.bRequestType = 0x80; // device to host, standard, device
        request.bRequest = 6;        // GET_DESCRIPTOR
        request.wValue = 3 << 8;     // string descriptor 0
        request.wIndex = 0;
        request.wLength = sizeof buf;
        request.timeout = 500; // ms
        request.data = buf;
        const int n = ::ioctl(fd, USBDEVFS_CONTROL, &request);
        ok = n >= 2;
        if (ok)
            strOut.assign(reinterpret_cast<const char *>(buf), size_t(n));
    }
    ::close(fd);
    return ok;
}

} // namespace probekit
