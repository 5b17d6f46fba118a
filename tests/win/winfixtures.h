#pragma once

// Fixtures made the way Windows makes them: registry values through the
// registry API, network devices through SetupAPI (a device info set, a
// registered device, its driver key created with DIREG_DRV). Every fixture
// has a unique name and is removed by the test that made it.
#include <QByteArray>
#include <QString>
#include <QUuid>

#include <windows.h>
#include <setupapi.h>

#include <string>

namespace WinFixtures {

// {4D36E972-E325-11CE-BFC1-08002BE10318}: the network adapter device class.
inline const GUID &netClass()
{
    static const GUID guid = {0x4D36E972, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
    return guid;
}

constexpr const char *kClassRoot = "System\\CurrentControlSet\\Control\\Class";

inline std::wstring wide(const QString &strText)
{
    return strText.toStdWString();
}

// A short unique tag for fixture names.
inline QString uniqueTag()
{
    return QUuid::createUuid().toString(QUuid::Id128).left(12).toUpper();
}

// Creates (or opens) HKLM\strPath with full access; null on failure.
inline HKEY createKey(const QString &strPath)
{
    HKEY hKey = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strPath.utf16()), 0, nullptr, 0, KEY_ALL_ACCESS,
                        nullptr, &hKey, nullptr) != ERROR_SUCCESS)
        return nullptr;
    return hKey;
}

inline LONG setString(HKEY hKey, const QString &strName, const QString &strValue, DWORD dwType = REG_SZ)
{
    const std::wstring value = wide(strValue);
    return RegSetValueExW(hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), 0, dwType,
                          reinterpret_cast<const BYTE *>(value.c_str()), DWORD((value.size() + 1) * sizeof(wchar_t)));
}

inline LONG setDword(HKEY hKey, const QString &strName, DWORD dwValue)
{
    return RegSetValueExW(hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), 0, REG_DWORD,
                          reinterpret_cast<const BYTE *>(&dwValue), sizeof dwValue);
}

inline LONG setRaw(HKEY hKey, const QString &strName, DWORD dwType, const QByteArray &data)
{
    return RegSetValueExW(hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), 0, dwType,
                          reinterpret_cast<const BYTE *>(data.constData()), DWORD(data.size()));
}

// Deletes HKLM\strPath and everything below it.
inline void deleteTree(const QString &strPath)
{
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strPath.utf16()));
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strPath.utf16()));
}

// One network class device registered under a full instance ID
// ("PCI\VEN_8086&DEV_15B8\...", "USB\VID_...\...", "ROOT\NET\..."). With
// bDriverKey its driver key is created (DIREG_DRV) and driverKey() names it
// relative to the class root ("{4D36E972-...}\0003").
class NetDevice
{
public:
    NetDevice(const QString &strInstanceId, bool bDriverKey, const QString &strFriendlyName = QString())
        : m_strInstanceId(strInstanceId)
    {
        m_hSet = SetupDiCreateDeviceInfoList(&netClass(), nullptr);
        if (m_hSet == INVALID_HANDLE_VALUE)
            return;
        m_data.cbSize = sizeof m_data;
        if (!SetupDiCreateDeviceInfoW(m_hSet, reinterpret_cast<const wchar_t *>(strInstanceId.utf16()), &netClass(),
                                      L"Vetrix test adapter", nullptr, 0, &m_data))
            return;
        if (!strFriendlyName.isEmpty()) {
            const std::wstring name = wide(strFriendlyName);
            SetupDiSetDeviceRegistryPropertyW(m_hSet, &m_data, SPDRP_FRIENDLYNAME, reinterpret_cast<const BYTE *>(name.c_str()),
                                              DWORD((name.size() + 1) * sizeof(wchar_t)));
        }
        if (!SetupDiRegisterDeviceInfo(m_hSet, &m_data, 0, nullptr, nullptr, nullptr))
            return;
        m_bRegistered = true;
        if (!bDriverKey)
            return;
        HKEY hKey = SetupDiCreateDevRegKeyW(m_hSet, &m_data, DICS_FLAG_GLOBAL, 0, DIREG_DRV, nullptr, nullptr);
        if (hKey == INVALID_HANDLE_VALUE)
            return;
        RegCloseKey(hKey);
        wchar_t driver[256] = {};
        if (SetupDiGetDeviceRegistryPropertyW(m_hSet, &m_data, SPDRP_DRIVER, nullptr, reinterpret_cast<BYTE *>(driver),
                                              sizeof driver - sizeof(wchar_t), nullptr))
            m_strDriverKey = QString::fromWCharArray(driver);
    }
    ~NetDevice()
    {
        if (!m_strDriverKey.isEmpty())
            deleteTree(QString::fromLatin1(kClassRoot) + QLatin1Char('\\') + m_strDriverKey);
        if (m_bRegistered)
            SetupDiRemoveDevice(m_hSet, &m_data);
        if (m_hSet != INVALID_HANDLE_VALUE)
            SetupDiDestroyDeviceInfoList(m_hSet);
    }
    NetDevice(const NetDevice &) = delete;
    NetDevice &operator=(const NetDevice &) = delete;

    bool isRegistered() const { return m_bRegistered; }
    QString instanceId() const { return m_strInstanceId; }
    QString driverKey() const { return m_strDriverKey; }
    // The driver key below HKLM, for writing fixture values.
    QString driverKeyPath() const { return QString::fromLatin1(kClassRoot) + QLatin1Char('\\') + m_strDriverKey; }

private:
    QString m_strInstanceId;
    QString m_strDriverKey;
    HDEVINFO m_hSet = INVALID_HANDLE_VALUE;
    SP_DEVINFO_DATA m_data = {};
    bool m_bRegistered = false;
};

// Closes a key when it goes out of scope.
struct KeyCloser
{
    HKEY hKey = nullptr;
    ~KeyCloser()
    {
        if (hKey)
            RegCloseKey(hKey);
    }
};

} // namespace WinFixtures
