#include "envvars.h"

#include "luinterface.h"

#include <windows.h>

namespace EnvVars {

Layout layout()
{
    return {QStringLiteral("path"), QLatin1Char(';'), QStringLiteral("Runtime/Win32_i86"), QStringLiteral("Runtime/Win64_x64")};
}

// The machine-wide environment in the registry. Each value is written
// through one fixed 1024-byte buffer (the whole buffer is passed); a failed
// single write is skipped. Returns false only when the key cannot be opened.
bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites)
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Control\\Session Manager\\Environment", 0,
                      KEY_READ | KEY_WRITE, &hKey) != ERROR_SUCCESS)
        return false;
    unsigned char buffer[1024];
    for (const auto &write : listWrites) {
        const DWORD dwType = isPathLike(write.first) ? REG_EXPAND_SZ : REG_SZ;
        memset(buffer, 0, sizeof buffer);
        LuInterface::string2UcharLocale(write.second, buffer, int(sizeof buffer));
        const LONG lResult = RegSetValueExA(hKey, write.first.toLatin1().constData(), 0, dwType, buffer, sizeof buffer);
        if (lResult == ERROR_SUCCESS)
            qCInfo(lcVxRepair).noquote() << "HKLM environment" << write.first << "new:" << write.second;
    }
    RegCloseKey(hKey);
    // Tell every top-level window; sent twice on purpose.
    for (int i = 0; i < 2; ++i)
        SendMessageTimeoutA(HWND_BROADCAST, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>("Environment"), SMTO_ABORTIFHUNG,
                            5000, nullptr);
    return true;
}

} // namespace EnvVars
