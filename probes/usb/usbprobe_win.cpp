// Windows driver facts of a USB host controller: the values of its driver
// key under the device class key, read with the 8-bit registry functions.
#include "usbprobe.h"

#include "cusbtreedecoder.h"
#include "luinterface.h"
#include "probekit.h"

#include <windows.h>

namespace VxUsbProbe {

namespace {

// Closes the key it holds.
class CRegKey
{
public:
    CRegKey() = default;
    ~CRegKey()
    {
        if (m_hKey)
            RegCloseKey(m_hKey);
    }
    CRegKey(const CRegKey &) = delete;
    CRegKey &operator=(const CRegKey &) = delete;
    HKEY *out() { return &m_hKey; }
    HKEY get() const { return m_hKey; }

private:
    HKEY m_hKey = nullptr;
};

// A string value into a 256-byte buffer; null QString when it cannot be read.
QString queryText(HKEY hKey, const char *pName)
{
    char buffer[256] = {};
    DWORD nType = 0;
    DWORD nSize = sizeof buffer;
    if (RegQueryValueExA(hKey, pName, nullptr, &nType, reinterpret_cast<BYTE *>(buffer), &nSize) != ERROR_SUCCESS)
        return QString();
    int nLength = int(nSize < sizeof buffer ? nSize : sizeof buffer - 1);
    while (nLength > 0 && buffer[nLength - 1] == '\0')
        --nLength;
    QString text = LuInterface::char2QStringLocale(buffer, nLength);
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

QString kernelBuildDate(const QString &)
{
    return QString(); // Windows drivers carry their own date
}

CControllerDriverFacts readControllerDriver(const UsbControllerInfo &controller)
{
    CControllerDriverFacts facts;
    const QString strKey = QStringLiteral("SYSTEM\\ControlSet001\\Control\\Class\\")
                           + CUsbTreeDecoder::wideText(controller.pDriverKey);
    CRegKey key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, strKey.toLocal8Bit().constData(), 0, 0x20019 /* KEY_READ */, key.out())
        != ERROR_SUCCESS)
        return facts;
    facts.bOpened = true;
    if (RegQueryValueExA(key.get(), "Controller", nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS) {
        facts.bSkip = true;
        return facts;
    }
    facts.strDriverDesc = queryText(key.get(), "DriverDesc");
    facts.strDriverVersion = queryText(key.get(), "DriverVersion");
    facts.strDriverDate = queryText(key.get(), "DriverDate");
    facts.strProviderName = queryText(key.get(), "ProviderName");
    return facts;
}

} // namespace VxUsbProbe
