#include "rxbuffers.h"

#include "netadapters.h"
#include "netadapters_win_p.h"
#include "rxbuffers_win_p.h"

#include <windows.h>

#include <climits>
#include <cstring>

namespace RxBuffers {

namespace {

const char kClassRoot[] = "System\\CurrentControlSet\\Control\\Class";
const char kReceiveBuffers[] = "*ReceiveBuffers";
const char kInterruptModeration[] = "*InterruptModeration";

struct RegKey
{
    HKEY hKey = nullptr;
    ~RegKey()
    {
        if (hKey)
            RegCloseKey(hKey);
    }
    bool open(const QString &strPath, REGSAM access)
    {
        const QString strFull = QLatin1String(kClassRoot) + QLatin1Char('\\') + strPath;
        return RegOpenKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strFull.utf16()), 0, access, &hKey)
            == ERROR_SUCCESS;
    }
};

// A value stored as text (REG_SZ) or as a DWORD, as text; null when absent
// or of another type.
QString readText(HKEY hKey, const QString &strName)
{
    wchar_t data[130] = {};
    DWORD dwSize = sizeof data - sizeof(wchar_t);
    DWORD dwType = REG_NONE;
    if (RegQueryValueExW(hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), nullptr, &dwType,
            reinterpret_cast<LPBYTE>(data), &dwSize)
        != ERROR_SUCCESS)
        return QString();
    if (dwType == REG_DWORD && dwSize == sizeof(DWORD)) {
        DWORD dwValue = 0;
        memcpy(&dwValue, data, sizeof dwValue);
        return QString::number(dwValue);
    }
    if (dwType != REG_SZ)
        return QString();
    return QString::fromWCharArray(data).trimmed();
}

// A whole decimal number >= 0, else -1.
qint64 number(const QString &strText)
{
    bool bOk = false;
    const qint64 nValue = strText.toLongLong(&bOk);
    return bOk && nValue >= 0 && nValue <= INT_MAX ? nValue : -1;
}

// The current value of a keyword: the driver key's own value, else the
// default its Ndi\params entry gives. Null when neither exists.
QString keywordValue(const QString &strDriverKey, const QString &strName)
{
    RegKey driver;
    if (!driver.open(strDriverKey, KEY_READ))
        return QString();
    const QString strValue = readText(driver.hKey, strName);
    if (!strValue.isNull())
        return strValue;
    RegKey params;
    if (!params.open(strDriverKey + QStringLiteral("\\Ndi\\params\\") + strName, KEY_READ))
        return QString();
    return readText(params.hKey, QStringLiteral("default"));
}

// The most a keyword's Ndi\params entry offers: the largest numeric enum
// value name, or the numeric range's "max". -1 when it offers none.
qint64 keywordMaximum(const QString &strDriverKey, const QString &strName)
{
    const QString strParams = strDriverKey + QStringLiteral("\\Ndi\\params\\") + strName;
    qint64 nMax = -1;
    RegKey values;
    if (values.open(strParams + QStringLiteral("\\enum"), KEY_READ)) {
        for (DWORD dwIndex = 0; dwIndex < 4096; ++dwIndex) {
            wchar_t name[260] = {};
            DWORD dwName = 259;
            const LONG nResult = RegEnumValueW(values.hKey, dwIndex, name, &dwName, nullptr, nullptr, nullptr, nullptr);
            if (nResult == ERROR_NO_MORE_ITEMS)
                break;
            if (nResult == ERROR_SUCCESS)
                nMax = qMax(nMax, number(QString::fromWCharArray(name)));
        }
        if (nMax >= 0)
            return nMax;
    }
    RegKey params;
    if (!params.open(strParams, KEY_READ))
        return -1;
    return number(readText(params.hKey, QStringLiteral("max")));
}

} // namespace

namespace Detail {

void readDriverSettings(const QString &strDriverKey, CRxAdapter *pAdapter)
{
    pAdapter->strDriverKey = strDriverKey;
    pAdapter->nRx = number(keywordValue(strDriverKey, QLatin1String(kReceiveBuffers)));
    pAdapter->nRxMax = keywordMaximum(strDriverKey, QLatin1String(kReceiveBuffers));
    const QString strModeration = keywordValue(strDriverKey, QLatin1String(kInterruptModeration));
    pAdapter->nInterruptModeration = strModeration.isNull() ? -1 : (number(strModeration) > 0 ? 1 : 0);
}

bool writeKeyword(const QString &strDriverKey, const QString &strName, const QString &strValue)
{
    RegKey driver;
    if (strDriverKey.isEmpty() || !driver.open(strDriverKey, KEY_WRITE))
        return false;
    const QString strData = strValue;
    const DWORD dwBytes = DWORD((strData.size() + 1) * sizeof(wchar_t));
    if (RegSetValueExW(driver.hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), 0, REG_SZ,
            reinterpret_cast<const BYTE *>(strData.utf16()), dwBytes)
        != ERROR_SUCCESS)
        return false;
    qCInfo(lcVxRepair).noquote() << strDriverKey << strName << "new:" << strValue;
    return true;
}

} // namespace Detail

void check(CRxBufferDetectInfo &info, const NetAdapters::LinkSource &, const RingReader &)
{
    info.sysctls.clear();
    info.adapters.clear();
    info.bRingsReadable = true;
    for (const QString &strEnumerator : {QStringLiteral("PCI"), QStringLiteral("USB")}) {
        for (const NetAdapters::Detail::CNetDevice &device : NetAdapters::Detail::networkDevices(strEnumerator)) {
            if (device.driverKey.isEmpty())
                continue;
            CRxAdapter adapter;
            adapter.strName = NetAdapters::Detail::connectedDescription(device.driverKey);
            if (adapter.strName.isEmpty())
                continue;
            Detail::readDriverSettings(device.driverKey, &adapter);
            info.adapters << adapter;
        }
    }
    info.bNormal = isExceptional(info) ? 0 : 1;
}

VxRepairOutcome repair(
    CRxBufferDetectInfo &info, const VxPrivileges &, const NetAdapters::LinkSource &, const RingReader &)
{
    VxRepairStatus status = VxRepairStatus::Done;
    QList<CNetAdapter> listRestart;
    for (const VxChange &change : plan(info)) {
        const bool bBuffers = change.strKind == QLatin1String(kReceiveBuffersKind);
        const QString strName = QLatin1String(bBuffers ? kReceiveBuffers : kInterruptModeration);
        if (!Detail::writeKeyword(change.strTarget, strName, change.strNew)) {
            status = VxRepairStatus::Failed;
            continue;
        }
        // The adapter takes the new setting when it restarts; the restart
        // picks adapters whose jumbo state is 0.
        for (const CRxAdapter &adapter : info.adapters) {
            if (adapter.strDriverKey == change.strTarget) {
                CNetAdapter restart;
                restart.description = adapter.strName;
                restart.driverKey = adapter.strDriverKey;
                restart.jumboState = 0;
                listRestart << restart;
            }
        }
    }
    if (!listRestart.isEmpty())
        NetAdapters::restartAdapters(listRestart);
    check(info);
    return VxRepairOutcome(status);
}

} // namespace RxBuffers
