#include "luinterface.h"
#include "luinterface_p.h"
#include "winversion_p.h"

#include <QDir>

#include <windows.h>
#include <shlobj.h>

namespace LuInterface {
namespace {

// A shell folder by CSIDL number, '/'-separated and without a trailing
// separator; empty when the system has no such folder.
QString shellFolder(int nCsidl)
{
    wchar_t szPath[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, nCsidl, nullptr, SHGFP_TYPE_CURRENT, szPath)))
        return QString();
    QString strPath = QDir::fromNativeSeparators(QString::fromWCharArray(szPath));
    while (strPath.size() > 3 && strPath.endsWith(QLatin1Char('/')))
        strPath.chop(1);
    return strPath;
}

} // namespace

// C:/Program Files/Common Files: the SDK installs below <this>/Orvex.
QString commonFilesPath()
{
    return shellFolder(CSIDL_PROGRAM_FILES_COMMON);
}

QString appName()
{
    return QStringLiteral("Orvex");
}

// Per-user data of the maker's tools: %APPDATA%/Orvex.
QString userDataPath()
{
    return shellFolder(CSIDL_APPDATA) + QStringLiteral("/") + appName();
}

// %LOCALAPPDATA% (holds CrashDumps).
QString localPath()
{
    return shellFolder(CSIDL_LOCAL_APPDATA);
}

QString systemDir(int nCsidl)
{
    return shellFolder(nCsidl);
}

// 1 XP / Server 2003 (5.x), 2 Vista (6.0), 3 Windows 7 (6.1), 4 Windows 8
// (6.2), 5 Windows 8.1 (6.3), 6 Windows 10 (10.0, build < 22000),
// 7 Windows 11 (10.0, build >= 22000); 0 when unknown.
int systemName()
{
    const Detail::WinVersion version = Detail::winVersion();
    if (version.uMajor == 5)
        return 1;
    if (version.uMajor == 6)
        return version.uMinor <= 3 ? int(version.uMinor) + 2 : 5;
    if (version.uMajor >= 10)
        return version.uBuild >= 22000 ? 7 : 6;
    return 0;
}

namespace Detail {

WinVersion winVersion()
{
    using RtlGetNtVersionNumbersFn = void(WINAPI *)(DWORD *, DWORD *, DWORD *);
    WinVersion version;
    HMODULE hNtdll = GetModuleHandleW(L"ntdll.dll");
    if (!hNtdll)
        return version;
    const auto pFunction = reinterpret_cast<RtlGetNtVersionNumbersFn>(
        reinterpret_cast<void *>(GetProcAddress(hNtdll, "RtlGetNtVersionNumbers")));
    if (!pFunction)
        return version;
    DWORD uMajor = 0;
    DWORD uMinor = 0;
    DWORD uBuild = 0;
    pFunction(&uMajor, &uMinor, &uBuild);
    version.uMajor = uMajor;
    version.uMinor = uMinor;
    version.uBuild = uBuild & 0x0FFFFFFFu;
    return version;
}

// The maker's machine-wide values: %ProgramData%/Orvex/oem.ini.
QString oemConfigFile()
{
    const QString strDir = shellFolder(CSIDL_COMMON_APPDATA);
    return strDir.isEmpty() ? QString() : strDir + QStringLiteral("/") + appName() + QStringLiteral("/oem.ini");
}

// Per-user settings: %LOCALAPPDATA%/Orvex/Basekit.ini.
QString userConfigFile()
{
    const QString strDir = shellFolder(CSIDL_LOCAL_APPDATA);
    return strDir.isEmpty() ? QString() : strDir + QStringLiteral("/") + appName() + QStringLiteral("/Basekit.ini");
}

} // namespace Detail
} // namespace LuInterface
