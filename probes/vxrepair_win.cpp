#include "vxrepair.h"

#include <QCoreApplication>

#include <atomic>

#include <windows.h>

namespace VxPrivileged {

// The program asks for administrator rights in its manifest, so repairs run
// in the process; a process without them simply fails the write.
extern std::atomic<int> g_rootOverride;

bool isRoot()
{
    if (g_rootOverride.load() >= 0)
        return g_rootOverride.load() != 0;
    HANDLE hToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &hToken))
        return false;
    TOKEN_ELEVATION elevation = {};
    DWORD dwSize = 0;
    const BOOL bOk = GetTokenInformation(hToken, TokenElevation, &elevation, sizeof elevation, &dwSize);
    CloseHandle(hToken);
    return bOk && elevation.TokenIsElevated;
}

bool failedRepairStaysExceptional()
{
    return false;
}

QString helperPath()
{
    return QString();
}

// There is no separate helper on Windows.
VxRepairStatus runHelper(const QString &, const QStringList &)
{
    return VxRepairStatus::HelperMissing;
}

} // namespace VxPrivileged
