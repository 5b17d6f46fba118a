#include "envvars.h"

#include "envvars_win_p.h"
#include "luinterface.h"

#include <windows.h>

namespace EnvVars {

namespace {

LONG setRegistryValue(HKEY hKey, const char *pName, DWORD dwType, const BYTE *pData, DWORD dwSize)
{
    return RegSetValueExA(hKey, pName, 0, dwType, pData, dwSize);
}

// The machine-wide environment in the registry. Each value is written
// through one fixed 1024-byte buffer (the whole buffer is passed); a failed
// single write is skipped and left out of pWritten. Returns false only when
// the key cannot be opened.
bool writeRegistry(const Detail::ValueWriter &setValue, const QList<QPair<QString, QString>> &listWrites,
                          QStringList *pWritten)
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, Detail::kEnvironmentKey, 0, KEY_READ | KEY_WRITE, &hKey) != ERROR_SUCCESS)
        return false;
    unsigned char buffer[1024];
    for (const auto &write : listWrites) {
        const DWORD dwType = isPathLike(write.first) ? REG_EXPAND_SZ : REG_SZ;
        memset(buffer, 0, sizeof buffer);
        LuInterface::string2UcharLocale(write.second, buffer, int(sizeof buffer));
        const QByteArray name = write.first.toLatin1();
        if (setValue(hKey, name.constData(), dwType, buffer, sizeof buffer) != ERROR_SUCCESS)
            continue;
        pWritten->append(write.first);
        qCInfo(lcVxRepair).noquote() << "HKLM environment" << write.first << "new:" << write.second;
    }
    RegCloseKey(hKey);
    // Tell every top-level window; sent twice on purpose.
    for (int i = 0; i < 2; ++i)
        SendMessageTimeoutA(HWND_BROADCAST, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>("Environment"), SMTO_ABORTIFHUNG,
                            5000, nullptr);
    return true;
}

} // namespace

Layout layout()
{
    return {QStringLiteral("path"), QLatin1Char(';'), QStringLiteral("Runtime/Win32_i86"), QStringLiteral("Runtime/Win64_x64")};
}

MachineWriter Detail::registryWriter(ValueWriter setValue)
{
    return [setValue](const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten) {
        return writeRegistry(setValue ? setValue : ValueWriter(setRegistryValue), listWrites, pWritten);
    };
}

bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten)
{
    return writeRegistry(setRegistryValue, listWrites, pWritten);
}

} // namespace EnvVars
