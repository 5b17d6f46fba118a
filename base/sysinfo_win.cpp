#include "luinterface.h"
#include "luinterface_p.h"
#include "winversion_p.h"

#include <QCoreApplication>
#include <QStringList>

#include <windows.h>

// System facts from the registry, the memory status and the display driver
// list. Every fact is a ready-to-show text; anything unreadable becomes
// "Unknown".

namespace LuInterface {
namespace {

// A REG_SZ value below HKEY_LOCAL_MACHINE, trimmed; empty when absent.
QString machineString(const wchar_t *pKey, const wchar_t *pValue)
{
    wchar_t szData[512] = {};
    DWORD uSize = sizeof(szData) - sizeof(wchar_t);
    const LSTATUS nStatus = RegGetValueW(HKEY_LOCAL_MACHINE, pKey, pValue, RRF_RT_REG_SZ, nullptr, szData, &uSize);
    if (nStatus != ERROR_SUCCESS)
        return QString();
    return QString::fromWCharArray(szData).simplified();
}

} // namespace

QString cpu()
{
    const QString strName = machineString(L"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", L"ProcessorNameString");
    return strName.isEmpty() ? Detail::unknownText() : strName;
}

// Logical processors of all processor groups.
QString numOfCpu()
{
    const DWORD uCount = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
    return uCount > 0 ? QString::number(uCount) : Detail::unknownText();
}

QString availbleMmeory()
{
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof(status);
    if (!GlobalMemoryStatusEx(&status))
        return Detail::unknownText();
    return Detail::memoryText(status.ullTotalPhys);
}

// "<product> <release> (<major>.<minor>.<build>)", e.g.
// "Windows 11 Pro 23H2 (10.0.22631)". The registry keeps calling Windows 11
// "Windows 10"; the build number tells them apart.
QString operatingSys()
{
    const wchar_t *pKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
    const Detail::WinVersion version = Detail::winVersion();
    QString strProduct = machineString(pKey, L"ProductName");
    if (strProduct.isEmpty())
        strProduct = QStringLiteral("Windows");
    if (version.uMajor == 10 && version.uBuild >= 22000 && strProduct.startsWith(QLatin1String("Windows 10")))
        strProduct.replace(0, 10, QStringLiteral("Windows 11"));
    QString strRelease = machineString(pKey, L"DisplayVersion");
    if (strRelease.isEmpty())
        strRelease = machineString(pKey, L"ReleaseId");
    if (strRelease.isEmpty())
        strRelease = machineString(pKey, L"CSDVersion");
    QString strText = strProduct;
    if (!strRelease.isEmpty())
        strText += QLatin1Char(' ') + strRelease;
    if (version.uMajor > 0)
        strText += QStringLiteral(" (%1.%2.%3)").arg(version.uMajor).arg(version.uMinor).arg(version.uBuild);
    return strText;
}

// Display adapters as the display driver names them, each once, joined
// with "; ". Mirroring (remote desktop) drivers are left out.
QString graphicsChips()
{
    QStringList listNames;
    for (DWORD uIndex = 0; uIndex < 64; ++uIndex) {
        DISPLAY_DEVICEW device = {};
        device.cb = sizeof(device);
        if (!EnumDisplayDevicesW(nullptr, uIndex, &device, 0))
            break;
        if (device.StateFlags & DISPLAY_DEVICE_MIRRORING_DRIVER)
            continue;
        const QString strName = QString::fromWCharArray(device.DeviceString).simplified();
        if (!strName.isEmpty() && !listNames.contains(strName))
            listNames << strName;
    }
    if (listNames.isEmpty())
        return QCoreApplication::translate("LuInterface", "None");
    return listNames.join(QStringLiteral("; "));
}

namespace Detail {

// The primary display's current mode in physical pixels.
QString platformResolution()
{
    DEVMODEW mode = {};
    mode.dmSize = sizeof(mode);
    if (!EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode) || mode.dmPelsWidth == 0 || mode.dmPelsHeight == 0)
        return QString();
    return QStringLiteral("%1 x %2").arg(mode.dmPelsWidth).arg(mode.dmPelsHeight);
}

} // namespace Detail
} // namespace LuInterface
