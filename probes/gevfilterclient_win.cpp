#include "gevfilterclient.h"

#include <windows.h>

#include <vector>

namespace GevFilter {

namespace {

const char *const kDevicePath = "\\\\.\\QelGEVFilter";

class WinDevice : public Device
{
public:
    ~WinDevice() override
    {
        close();
        closeEvents();
    }

    OpenResult open(bool bQueryOnly) override
    {
        close();
        m_hDevice = CreateFileA(kDevicePath, bQueryOnly ? 0 : (GENERIC_READ | GENERIC_WRITE), FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (m_hDevice != INVALID_HANDLE_VALUE)
            return OpenResult::Opened;
        return GetLastError() == ERROR_ACCESS_DENIED ? OpenResult::AccessDenied : OpenResult::Failed;
    }

    void close() override
    {
        if (m_hDevice != INVALID_HANDLE_VALUE)
            CloseHandle(m_hDevice);
        m_hDevice = INVALID_HANDLE_VALUE;
    }

    bool isOpen() const override { return m_hDevice != INVALID_HANDLE_VALUE; }

    bool request(quint32 uCode, const QByteArray &input, int nOutSize, QByteArray *pOut) override
    {
        std::vector<char> out(size_t(qMax(nOutSize, 1)));
        DWORD dwReturned = 0;
        QByteArray in = input;
        if (!DeviceIoControl(m_hDevice, uCode, in.isEmpty() ? nullptr : in.data(), DWORD(in.size()),
                             nOutSize > 0 ? out.data() : nullptr, DWORD(nOutSize), &dwReturned, nullptr))
            return false;
        if (pOut)
            *pOut = QByteArray(out.data(), int(qMin<DWORD>(dwReturned, DWORD(nOutSize))));
        return true;
    }

    qint64 read(char *pBuffer, qint64 nLength) override
    {
        DWORD dwRead = 0;
        if (!ReadFile(m_hDevice, pBuffer, DWORD(nLength), &dwRead, nullptr))
            return -1;
        return qint64(dwRead);
    }

    bool createEvents() override
    {
        for (HANDLE &hEvent : m_events) {
            hEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr);
            if (!hEvent)
                return false;
        }
        return true;
    }

    void closeEvents() override
    {
        for (HANDLE &hEvent : m_events) {
            if (hEvent)
                CloseHandle(hEvent);
            hEvent = nullptr;
        }
    }

    bool hasEvents() const override { return m_events[0] && m_events[1] && m_events[2]; }

    // Kernel handles fit in 32 bits; the driver takes them so.
    quint32 eventHandle(int nIndex) const override { return quint32(reinterpret_cast<quintptr>(m_events[nIndex])); }

    int waitAny(int nTimeoutMs) override
    {
        const DWORD dwResult = WaitForMultipleObjects(3, m_events, FALSE, DWORD(nTimeoutMs));
        if (dwResult == WAIT_FAILED)
            return -2;
        if (dwResult == WAIT_TIMEOUT)
            return -1;
        if (dwResult >= WAIT_OBJECT_0 && dwResult < WAIT_OBJECT_0 + 3)
            return int(dwResult - WAIT_OBJECT_0);
        return -2;
    }

    bool poll(int nIndex) override { return WaitForSingleObject(m_events[nIndex], 0) == WAIT_OBJECT_0; }

private:
    HANDLE m_hDevice = INVALID_HANDLE_VALUE;
    HANDLE m_events[3] = {nullptr, nullptr, nullptr};
};

} // namespace

std::unique_ptr<Device> createPlatformDevice()
{
    return std::make_unique<WinDevice>();
}

} // namespace GevFilter
