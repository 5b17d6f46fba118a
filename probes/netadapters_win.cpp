#include "netadapters.h"

#include "luinterface.h"
#include "netadapters_win_p.h"

#include <QByteArray>
#include <QStringList>

#include <windows.h>
#include <setupapi.h>
#include <iphlpapi.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace NetAdapters {

namespace {

// {4D36E972-E325-11CE-BFC1-08002BE10318}: the network adapter device class.
const GUID kNetClass = {0x4D36E972, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
const char *const kClassRoot = "System\\CurrentControlSet\\Control\\Class";

// Closes a registry key when it goes out of scope.
struct RegKey
{
    HKEY hKey = nullptr;
    ~RegKey()
    {
        if (hKey)
            RegCloseKey(hKey);
    }
    bool open(HKEY hParent, const QByteArray &path, REGSAM access)
    {
        return RegOpenKeyExA(hParent, path.constData(), 0, access, &hKey) == ERROR_SUCCESS;
    }
};

// Destroys a device information set when it goes out of scope.
struct DevInfoSet
{
    HDEVINFO hSet = INVALID_HANDLE_VALUE;
    explicit DevInfoSet(const wchar_t *pEnumerator)
        : hSet(SetupDiGetClassDevsW(&kNetClass, pEnumerator, nullptr, DIGCF_PRESENT))
    {
    }
    ~DevInfoSet()
    {
        if (hSet != INVALID_HANDLE_VALUE)
            SetupDiDestroyDeviceInfoList(hSet);
    }
};

QByteArray local8(const QString &strText)
{
    return strText.toLocal8Bit();
}

// A device registry property as text; the buffer grows while the call asks
// for more. False when no buffer could be had.
bool deviceProperty(HDEVINFO hSet, SP_DEVINFO_DATA *pData, DWORD dwProperty, QString *pText)
{
    DWORD dwSize = 0;
    std::vector<BYTE> buffer;
    while (!SetupDiGetDeviceRegistryPropertyW(hSet, pData, dwProperty, nullptr, buffer.empty() ? nullptr : buffer.data(),
                                              DWORD(buffer.size()), &dwSize)) {
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
            *pText = QString();
            return true; // the property is absent: an empty text
        }
        try {
            buffer.assign(dwSize + 2, 0);
        } catch (...) {
            return false;
        }
    }
    char narrow[1024] = {};
    wcstombs(narrow, reinterpret_cast<const wchar_t *>(buffer.data()), sizeof narrow - 1);
    *pText = LuInterface::char2QStringLocale(narrow, -1);
    return true;
}

// The IP helper's adapter list (704 bytes first, one retry with the size asked for).
std::unique_ptr<BYTE[]> adaptersInfo()
{
    ULONG ulSize = 704;
    std::unique_ptr<BYTE[]> buffer(new BYTE[ulSize]);
    DWORD dwResult = GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()), &ulSize);
    if (dwResult == ERROR_BUFFER_OVERFLOW) {
        buffer.reset(new BYTE[ulSize]);
        dwResult = GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()), &ulSize);
    }
    if (dwResult != ERROR_SUCCESS)
        buffer.reset();
    return buffer;
}

QStringList valueNames()
{
    if (LuInterface::systemName() == 1)
        return {QStringLiteral("Jumboframe")};
    return {QStringLiteral("JumboPacket"), QStringLiteral("*JumboPacket"), QStringLiteral("MaxPacketSize")};
}

void writeJumboValue(const QString &strDriverKey, int nValue, bool *pOk)
{
    char buffer[261] = {};
    const int n = snprintf(buffer, sizeof buffer, "%d", nValue);
    if (n < 1)
        return;
    RegKey root;
    RegKey driver;
    if (!root.open(HKEY_LOCAL_MACHINE, kClassRoot, KEY_WRITE) || !driver.open(root.hKey, local8(strDriverKey), KEY_WRITE))
        return;
    const QByteArray name = jumboValueNames().value(strDriverKey).toLatin1();
    if (RegSetValueExA(driver.hKey, name.constData(), 0, REG_SZ, reinterpret_cast<const BYTE *>(buffer), DWORD(n)) == ERROR_SUCCESS) {
        *pOk = true;
        qCInfo(lcVxRepair).noquote() << strDriverKey << name << "new:" << nValue;
    }
}

} // namespace

namespace Detail {

QList<CNetDevice> networkDevices(const QString &strEnumerator)
{
    QList<CNetDevice> listDevices;
    DevInfoSet devices(reinterpret_cast<const wchar_t *>(strEnumerator.utf16()));
    if (devices.hSet == INVALID_HANDLE_VALUE)
        return listDevices;
    SP_DEVINFO_DATA data = {};
    data.cbSize = sizeof data;
    for (DWORD dwIndex = 0; SetupDiEnumDeviceInfo(devices.hSet, dwIndex, &data); ++dwIndex) {
        CNetDevice device;
        if (!deviceProperty(devices.hSet, &data, SPDRP_DRIVER, &device.driverKey))
            break;
        char instanceId[128] = {};
        SetupDiGetDeviceInstanceIdA(devices.hSet, &data, instanceId, sizeof instanceId, nullptr);
        device.instanceId = QString::fromLatin1(instanceId);
        listDevices.append(device);
    }
    return listDevices;
}

QString connectedDescription(const QString &strDriverKey)
{
    RegKey root;
    RegKey driver;
    if (!root.open(HKEY_LOCAL_MACHINE, kClassRoot, KEY_READ) || !driver.open(root.hKey, local8(strDriverKey), KEY_READ))
        return QString();
    char guid[260] = {};
    DWORD dwSize = sizeof guid - 1;
    if (RegQueryValueExA(driver.hKey, "NetCfgInstanceId", nullptr, nullptr, reinterpret_cast<LPBYTE>(guid), &dwSize) != ERROR_SUCCESS)
        return QString();
    const std::unique_ptr<BYTE[]> buffer = adaptersInfo();
    for (auto *pAdapter = reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()); pAdapter; pAdapter = pAdapter->Next) {
        if (strcmp(pAdapter->AdapterName, guid) != 0)
            continue;
        MIB_IFROW row = {};
        row.dwIndex = pAdapter->Index;
        if (GetIfEntry(&row) != NO_ERROR)
            return QString();
        if (row.dwOperStatus >= 3 && row.dwOperStatus <= 5)
            return LuInterface::char2QStringLocale(pAdapter->Description, -1);
        return QString();
    }
    return QString();
}

int readJumbo(const QString &strDriverKey, int *pValue)
{
    *pValue = 0;
    RegKey root;
    RegKey driver;
    if (!root.open(HKEY_LOCAL_MACHINE, kClassRoot, KEY_READ) || !driver.open(root.hKey, local8(strDriverKey), KEY_READ))
        return 2;
    // The setting is stored as text. A number stored as REG_DWORD is taken as
    // it is; a value of any other type, or one too large for the buffer,
    // counts as unreadable and the next name is tried.
    char data[522];
    QString strFound;
    DWORD dwType = REG_NONE;
    for (const QString &strName : valueNames()) {
        memset(data, 0, sizeof data);
        DWORD dwSize = sizeof data - 2;
        if (RegQueryValueExA(driver.hKey, strName.toLatin1().constData(), nullptr, &dwType, reinterpret_cast<LPBYTE>(data),
                             &dwSize) != ERROR_SUCCESS)
            continue;
        const bool bText = dwType == REG_SZ || dwType == REG_EXPAND_SZ || dwType == REG_MULTI_SZ;
        if (bText || (dwType == REG_DWORD && dwSize == sizeof(DWORD))) {
            strFound = strName;
            break;
        }
    }
    if (strFound.isEmpty())
        return 2;
    jumboValueNames()[strDriverKey] = strFound;
    int nValue = 0;
    if (dwType == REG_DWORD) {
        DWORD dwValue = 0;
        memcpy(&dwValue, data, sizeof dwValue);
        nValue = dwValue > DWORD(INT_MAX) ? INT_MAX : int(dwValue);
    } else {
        nValue = atoi(data);
    }
    if (nValue >= 1 && nValue <= 1023)
        nValue = (nValue + 1) * 1024; // stored in kilobytes minus one
    *pValue = nValue;
    return nValue > kStandardFrame ? 1 : 0;
}

} // namespace Detail

// The adapters come from SetupAPI and the IP helper below: no link source.
LinkSource LinkSource::system()
{
    return LinkSource();
}

void buildAdapterList(const LinkSource &)
{
    adapterList().clear();
    for (const QString &strEnumerator : {QStringLiteral("PCI"), QStringLiteral("USB")}) {
        for (const Detail::CNetDevice &device : Detail::networkDevices(strEnumerator)) {
            CNetAdapter adapter;
            adapter.driverKey = device.driverKey;
            adapter.description = Detail::connectedDescription(adapter.driverKey);
            if (adapter.description.isEmpty())
                continue;
            adapter.jumboState = Detail::readJumbo(adapter.driverKey, &adapter.jumboValue);
            adapter.instanceId = device.instanceId;
            adapterList().append(adapter);
        }
    }
}

// The allowed settings as their enum key lists them; the last is taken as
// the largest, deliberately without sorting.
VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable, const VxPrivileges &)
{
    RegKey root;
    if (!root.open(HKEY_LOCAL_MACHINE, kClassRoot, KEY_READ))
        return VxRepairStatus::Failed;
    const QString strPath = QStringLiteral("%1\\Ndi\\params\\%2\\enum").arg(strDriverKey, jumboValueNames().value(strDriverKey));
    QList<int> listValues;
    {
        RegKey values;
        if (values.open(root.hKey, local8(strPath), KEY_READ)) {
            for (DWORD dwIndex = 0;; ++dwIndex) {
                char name[260] = {};
                DWORD dwName = sizeof name;
                if (RegEnumValueA(values.hKey, dwIndex, name, &dwName, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
                    break;
                listValues << atoi(name);
            }
        }
    }
    if (listValues.isEmpty())
        return VxRepairStatus::Failed;
    bool bOk = false;
    writeJumboValue(strDriverKey, bEnable ? listValues.last() : listValues.first(), &bOk);
    return bOk ? VxRepairStatus::Done : VxRepairStatus::Failed;
}

// Disables and enables each PCI adapter that was off in the kept list.
void restartAdapters(const QList<CNetAdapter> &listKept)
{
    DevInfoSet devices(L"PCI");
    if (devices.hSet == INVALID_HANDLE_VALUE)
        return;
    SP_DEVINFO_DATA data = {};
    data.cbSize = sizeof data;
    for (DWORD dwIndex = 0; SetupDiEnumDeviceInfo(devices.hSet, dwIndex, &data); ++dwIndex) {
        QString strName;
        if (!deviceProperty(devices.hSet, &data, SPDRP_FRIENDLYNAME, &strName))
            return;
        if (strName.isEmpty() && !deviceProperty(devices.hSet, &data, SPDRP_DEVICEDESC, &strName))
            return;
        bool bRestart = false;
        for (const CNetAdapter &adapter : listKept) {
            if (adapter.jumboState == 0 && !strName.isEmpty() && adapter.description.contains(strName, Qt::CaseInsensitive))
                bRestart = true;
        }
        if (!bRestart)
            continue;
        for (DWORD dwState : {DWORD(DICS_DISABLE), DWORD(DICS_ENABLE)}) {
            SP_PROPCHANGE_PARAMS params = {};
            params.ClassInstallHeader.cbSize = sizeof(SP_CLASSINSTALL_HEADER);
            params.ClassInstallHeader.InstallFunction = DIF_PROPERTYCHANGE;
            params.StateChange = dwState;
            params.Scope = DICS_FLAG_GLOBAL;
            params.HwProfile = 0;
            if (!SetupDiSetClassInstallParamsW(devices.hSet, &data, &params.ClassInstallHeader, sizeof params))
                return;
            SetupDiCallClassInstaller(DIF_PROPERTYCHANGE, devices.hSet, &data);
        }
        qCInfo(lcVxRepair).noquote() << "restarted network adapter" << strName;
    }
}

} // namespace NetAdapters
