#include "cameradrivers.h"

#include "cdetectinfo.h"

#include <windows.h>
#include <shellapi.h>

namespace CameraDrivers {

QString gigeInstallScript()
{
    return sdkFolder() + QStringLiteral("/Drivers/GigE/install.bat");
}

QString usb3InstallScript()
{
    return sdkFolder() + QStringLiteral("/Drivers/Usb3.0/install.bat");
}

// Installed when the driver store knows the SDK's package: the driver
// install framework (difxapi.dll, loaded at run time as mingw has no import
// library for it) returns success and a non-empty path.
void usb3Check(CDetectInfo &info)
{
    info.bNormal = 0;
    using GetPathFn = DWORD(WINAPI *)(PCWSTR, PWSTR, DWORD *);
    HMODULE hDifx = LoadLibraryW(L"difxapi.dll");
    if (!hDifx)
        return;
    auto pGetPath = reinterpret_cast<GetPathFn>(reinterpret_cast<void *>(GetProcAddress(hDifx, "DriverPackageGetPathW")));
    if (pGetPath) {
        wchar_t infPath[256] = {};
        wchar_t destination[256] = {};
        const QString strInf = sdkFolder() + QStringLiteral("/Drivers/Usb3.0/luu3v.inf");
        strInf.left(255).toWCharArray(infPath);
        DWORD dwLength = 256;
        if (pGetPath(infPath, destination, &dwLength) == ERROR_SUCCESS && dwLength > 0)
            info.bNormal = 1;
    }
    FreeLibrary(hDifx);
}

// The script runs hidden; ShellExecuteW's answer is not examined.
bool startInstaller(const QString &strScript)
{
    wchar_t path[256] = {};
    strScript.left(255).toWCharArray(path);
    ShellExecuteW(nullptr, L"open", path, nullptr, nullptr, SW_HIDE);
    qCInfo(lcVxRepair).noquote() << "started driver installer" << strScript;
    VxPrivileged::setLastStatus(VxRepairStatus::Done);
    return true;
}

} // namespace CameraDrivers
