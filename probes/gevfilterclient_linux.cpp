#include "gevfilterclient.h"

#include "luinterface.h"

#include <QFile>

#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace GevFilter {

namespace {

// The filter driver's character device. Requests are ioctl calls with the
// driver's request codes; the argument is one buffer that holds the input
// and receives the output (the driver returns the output's length). Events
// are eventfds whose numbers go to the driver in the start block.
class LinuxDevice : public Device
{
public:
    ~LinuxDevice() override
    {
        close();
        closeEvents();
    }

    // Read/write, as the client works with the driver. Query-only asks for
    // no access to the device itself, as Windows' desired access 0 does: it
    // tries read access (enough for the driver's unrestricted requests) and
    // otherwise holds the node by path, which needs no permission on it. So
    // a node the user may not read still shows the driver as installed.
    OpenResult open(bool bQueryOnly) override
    {
        close();
        const QByteArray path = QFile::encodeName(LuInterface::sysPath(QStringLiteral("/dev/QelGEVFilter")));
        m_nFd = ::open(path.constData(), (bQueryOnly ? O_RDONLY : O_RDWR) | O_CLOEXEC | O_NOCTTY);
        if (m_nFd < 0 && bQueryOnly && (errno == EACCES || errno == EPERM || errno == EBUSY))
            m_nFd = ::open(path.constData(), O_PATH | O_CLOEXEC);
        if (m_nFd >= 0)
            return OpenResult::Opened;
        // Access denied, or held exclusively by another process.
        return (errno == EACCES || errno == EPERM || errno == EBUSY) ? OpenResult::AccessDenied : OpenResult::Failed;
    }

    void close() override
    {
        if (m_nFd >= 0)
            ::close(m_nFd);
        m_nFd = -1;
    }

    bool isOpen() const override { return m_nFd >= 0; }

    bool request(quint32 uCode, const QByteArray &input, int nOutSize, QByteArray *pOut) override
    {
        if (m_nFd < 0)
            return false;
        std::vector<char> buffer(size_t(qMax(qMax(input.size(), nOutSize), 1)), 0);
        memcpy(buffer.data(), input.constData(), size_t(input.size()));
        const int nResult = ::ioctl(m_nFd, (unsigned long)uCode, buffer.data());
        if (nResult < 0)
            return false;
        const int nOut = qMin(nResult, nOutSize);
        if (pOut)
            *pOut = QByteArray(buffer.data(), nOut);
        return true;
    }

    qint64 read(char *pBuffer, qint64 nLength) override
    {
        if (m_nFd < 0)
            return -1;
        ssize_t nRead;
        do {
            nRead = ::read(m_nFd, pBuffer, size_t(nLength));
        } while (nRead < 0 && errno == EINTR);
        return nRead;
    }

    bool createEvents() override
    {
        for (int &nFd : m_events) {
            nFd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
            if (nFd < 0)
                return false;
        }
        return true;
    }

    void closeEvents() override
    {
        for (int &nFd : m_events) {
            if (nFd >= 0)
                ::close(nFd);
            nFd = -1;
        }
    }

    bool hasEvents() const override { return m_events[0] >= 0 && m_events[1] >= 0 && m_events[2] >= 0; }

    quint32 eventHandle(int nIndex) const override { return quint32(m_events[nIndex]); }

    int waitAny(int nTimeoutMs) override
    {
        pollfd fds[3];
        for (int i = 0; i < 3; ++i)
            fds[i] = {m_events[i], POLLIN, 0};
        int nReady;
        do {
            nReady = ::poll(fds, 3, nTimeoutMs);
        } while (nReady < 0 && errno == EINTR);
        if (nReady < 0)
            return -2;
        for (int i = 0; i < 3; ++i) {
            if (fds[i].revents & (POLLERR | POLLNVAL))
                return -2;
            if (fds[i].revents & POLLIN) {
                reset(i);
                return i;
            }
        }
        return -1;
    }

    bool poll(int nIndex) override
    {
        pollfd fd = {m_events[nIndex], POLLIN, 0};
        if (::poll(&fd, 1, 0) != 1 || !(fd.revents & POLLIN))
            return false;
        reset(nIndex);
        return true;
    }

private:
    void reset(int nIndex)
    {
        eventfd_t value;
        eventfd_read(m_events[nIndex], &value);
    }

    int m_nFd = -1;
    int m_events[3] = {-1, -1, -1};
};

} // namespace

std::unique_ptr<Device> createPlatformDevice()
{
    return std::make_unique<LinuxDevice>();
}

} // namespace GevFilter
