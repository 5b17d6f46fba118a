#include "vxrepair.h"

#include <QCoreApplication>

#include <windows.h>

namespace VxPrivileged {

// The program asks for administrator rights in its manifest, so repairs run
// in the process; a process without them simply fails the write.
bool isRoot()
{
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

} // namespace VxPrivileged

QString VxPrivileges::helperPath() const
{
    return m_strHelper;
}

// There is no separate helper on Windows.
VxRepairStatus VxPrivileges::runHelper(const QString &, const QStringList &) const
{
    return VxRepairStatus::HelperMissing;
}
