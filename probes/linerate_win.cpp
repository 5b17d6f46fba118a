#include "linerate.h"

#include "cdetectinfo.h"
#include "luinterface.h"

#include <windows.h>
#include <iphlpapi.h>

#include <cstring>
#include <memory>

namespace LineRate {

namespace {

// A physical adapter has the characteristic bit 0x4 in its driver key.
bool isPhysicalAdapter(const char *pAdapterName)
{
    HKEY hClass = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Control\\Class\\{4D36E972-E325-11CE-BFC1-08002BE10318}", 0,
                      KEY_READ, &hClass) != ERROR_SUCCESS)
        return false;
    bool bPhysical = false;
    for (DWORD dwIndex = 0; !bPhysical; ++dwIndex) {
        char subkey[260] = {};
        DWORD dwSubkey = sizeof subkey;
        if (RegEnumKeyExA(hClass, dwIndex, subkey, &dwSubkey, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY hDriver = nullptr;
        if (RegOpenKeyExA(hClass, subkey, 0, KEY_READ, &hDriver) != ERROR_SUCCESS)
            continue;
        unsigned char id[260] = {};
        DWORD dwSize = sizeof id - 1;
        if (RegQueryValueExA(hDriver, "NetCfgInstanceId", nullptr, nullptr, id, &dwSize) == ERROR_SUCCESS
            && LuInterface::GetEncodeQStringFromUnChar(id, int(sizeof id)) == QString::fromLatin1(pAdapterName)) {
            // Only a DWORD counts; a value of another type cannot be read as one.
            DWORD dwCharacteristics = 0;
            DWORD dwValueSize = sizeof dwCharacteristics;
            DWORD dwType = REG_NONE;
            if (RegQueryValueExA(hDriver, "Characteristics", nullptr, &dwType, reinterpret_cast<LPBYTE>(&dwCharacteristics),
                                 &dwValueSize) == ERROR_SUCCESS
                && dwType == REG_DWORD && dwValueSize == sizeof dwCharacteristics && (dwCharacteristics & 0x4))
                bPhysical = true;
        }
        RegCloseKey(hDriver);
    }
    RegCloseKey(hClass);
    return bPhysical;
}

// An adapter whose interface entry cannot be read is asked again, a bounded
// number of times so that a permanent failure cannot stall the diagnosis.
constexpr int kIfEntryTries = 50;

} // namespace

void check(CNetworkSpeedDetectInfo &info, const NetAdapters::LinkSource &)
{
    info.bNormal = 1;
    info.adapterSpeeds.clear();
    ULONG ulSize = 704;
    std::unique_ptr<BYTE[]> buffer(new BYTE[ulSize]);
    DWORD dwResult = GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()), &ulSize);
    if (dwResult == ERROR_BUFFER_OVERFLOW) {
        buffer.reset(new BYTE[ulSize]);
        dwResult = GetAdaptersInfo(reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()), &ulSize);
    }
    if (dwResult != ERROR_SUCCESS) {
        info.bNormal = 0;
        return;
    }
    for (auto *pAdapter = reinterpret_cast<IP_ADAPTER_INFO *>(buffer.get()); pAdapter; pAdapter = pAdapter->Next) {
        if (!isPhysicalAdapter(pAdapter->AdapterName))
            continue;
        MIB_IFROW row = {};
        bool bRead = false;
        for (int nTry = 0; nTry < kIfEntryTries && !bRead; ++nTry) {
            memset(&row, 0, sizeof row);
            row.dwIndex = pAdapter->Index;
            bRead = GetIfEntry(&row) == NO_ERROR;
            if (!bRead)
                info.bNormal = 0;
        }
        if (!bRead || row.dwOperStatus < 3 || row.dwOperStatus > 5)
            continue;
        const int nMbps = int(row.dwSpeed / 1000000u);
        if (nMbps < 1000)
            info.bNormal = 0;
        info.adapterSpeeds[LuInterface::char2QStringLocale(pAdapter->Description, -1)] = nMbps;
    }
}

} // namespace LineRate
