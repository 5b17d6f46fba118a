#include "vxsysteminfolauncher.h"

// Windows' own System Information tool, in the system folder (on PATH).
QList<VxSystemInfoLauncher::CViewer> VxSystemInfoLauncher::candidates(const QString &)
{
    return {{QStringLiteral("msinfo32.exe"), {}}};
}
