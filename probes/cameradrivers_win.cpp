#include "cameradrivers.h"

#include "cameradrivers_win_p.h"
#include "cdetectinfo.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMutex>

#include <string>
#include <vector>

#include <windows.h>
#include <setupapi.h>
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

namespace Detail {

namespace {

QString g_strFrameworkLibrary;

// The SDK's driver package.
QString usb3Inf()
{
    return sdkFolder() + QStringLiteral("/Drivers/Usb3.0/luu3v.inf");
}

// The original file name of a published INF ("luu3v.inf" for oem12.inf),
// empty when SetupAPI cannot tell.
QString originalInfName(const QString &strPublished)
{
    const std::wstring path = QDir::toNativeSeparators(strPublished).toStdWString();
    DWORD dwNeeded = 0;
    if (!SetupGetInfInformationW(path.c_str(), INFINFO_INF_NAME_IS_ABSOLUTE, nullptr, 0, &dwNeeded) || dwNeeded == 0)
        return QString();
    std::vector<BYTE> buffer(dwNeeded, 0);
    auto *pInfo = reinterpret_cast<SP_INF_INFORMATION *>(buffer.data());
    if (!SetupGetInfInformationW(path.c_str(), INFINFO_INF_NAME_IS_ABSOLUTE, pInfo, dwNeeded, nullptr))
        return QString();
    SP_ORIGINAL_FILE_INFO_W original = {};
    original.cbSize = sizeof original;
    if (!SetupQueryInfOriginalFileInformationW(pInfo, 0, nullptr, &original))
        return QString();
    return QString::fromWCharArray(original.OriginalInfName);
}

} // namespace

void setDriverFrameworkLibrary(const QString &strLibrary)
{
    g_strFrameworkLibrary = strLibrary;
}

// difxapi.dll is loaded at run time: mingw has no import library for it,
// current Windows no longer ships it, and where a stand-in exists it may not
// support the call.
FrameworkAnswer askDriverFramework(const QString &strInf)
{
    using GetPathFn = DWORD(WINAPI *)(PCWSTR, PWSTR, DWORD *);
    const QString strLibrary = g_strFrameworkLibrary.isEmpty() ? QStringLiteral("difxapi.dll") : g_strFrameworkLibrary;
    HMODULE hDifx = LoadLibraryW(reinterpret_cast<const wchar_t *>(strLibrary.utf16()));
    if (!hDifx)
        return FrameworkAnswer::Unavailable;
    FrameworkAnswer answer = FrameworkAnswer::Unavailable;
    auto pGetPath = reinterpret_cast<GetPathFn>(reinterpret_cast<void *>(GetProcAddress(hDifx, "DriverPackageGetPathW")));
    if (pGetPath) {
        wchar_t infPath[256] = {};
        wchar_t destination[256] = {};
        QDir::toNativeSeparators(strInf).left(255).toWCharArray(infPath);
        DWORD dwLength = 256;
        const DWORD dwResult = pGetPath(infPath, destination, &dwLength);
        if (dwResult == ERROR_SUCCESS)
            answer = dwLength > 0 ? FrameworkAnswer::InStore : FrameworkAnswer::NotInStore;
        else if (dwResult != ERROR_UNSUPPORTED_TYPE && dwResult != ERROR_CALL_NOT_IMPLEMENTED
                 && dwResult != ERROR_NOT_SUPPORTED && dwResult != ERROR_PROC_NOT_FOUND)
            answer = FrameworkAnswer::NotInStore;
    }
    FreeLibrary(hDifx);
    return answer;
}

// Windows publishes a third-party INF as %windir%\INF\oem<N>.inf and keeps
// its original name; some set-ups keep the package's own name there.
bool publishedInfFound(const QString &strInf)
{
    const QString strName = QFileInfo(strInf).fileName();
    wchar_t windows[MAX_PATH] = {};
    const UINT uLength = GetWindowsDirectoryW(windows, MAX_PATH);
    if (strName.isEmpty() || uLength == 0 || uLength >= MAX_PATH)
        return false;
    const QDir infFolder(QDir::fromNativeSeparators(QString::fromWCharArray(windows)) + QStringLiteral("/INF"));
    QFileInfoList listCandidates = infFolder.entryInfoList({QStringLiteral("oem*.inf")}, QDir::Files, QDir::Name);
    if (infFolder.exists(strName))
        listCandidates.prepend(QFileInfo(infFolder.filePath(strName)));

    // The driver poll after an install asks again and again: the INFs are
    // parsed again only when the published set has changed.
    static QMutex mutex;
    static QString strLastKey;
    static bool bLastFound = false;
    QString strKey = strName.toLower();
    for (const QFileInfo &candidate : listCandidates)
        strKey += QStringLiteral("|%1:%2:%3").arg(candidate.fileName()).arg(candidate.size()).arg(candidate.lastModified().toMSecsSinceEpoch());
    QMutexLocker locker(&mutex);
    if (strKey == strLastKey)
        return bLastFound;
    bool bFound = false;
    for (const QFileInfo &candidate : listCandidates) {
        if (originalInfName(candidate.filePath()).compare(strName, Qt::CaseInsensitive) == 0) {
            bFound = true;
            break;
        }
    }
    strLastKey = strKey;
    bLastFound = bFound;
    return bFound;
}

} // namespace Detail

// Installed when the driver store holds the SDK's package: the driver
// install framework says so (success and a non-empty path), or, where that
// framework is missing or unsupported, SetupAPI finds the package published.
void usb3Check(CDetectInfo &info)
{
    const QString strInf = Detail::usb3Inf();
    switch (Detail::askDriverFramework(strInf)) {
    case Detail::FrameworkAnswer::InStore:
        info.bNormal = 1;
        break;
    case Detail::FrameworkAnswer::NotInStore:
        info.bNormal = 0;
        break;
    case Detail::FrameworkAnswer::Unavailable:
        info.bNormal = Detail::publishedInfFound(strInf) ? 1 : 0;
        break;
    }
}

// The script runs hidden; ShellExecuteW's answer is not examined.
VxRepairOutcome startInstaller(const QString &strScript, const VxPrivileges &)
{
    wchar_t path[256] = {};
    strScript.left(255).toWCharArray(path);
    ShellExecuteW(nullptr, L"open", path, nullptr, nullptr, SW_HIDE);
    qCInfo(lcVxRepair).noquote() << "started driver installer" << strScript;
    return VxRepairOutcome();
}

} // namespace CameraDrivers
