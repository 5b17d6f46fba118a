#include "vxsysteminfolauncher.h"

// Desktop system information viewers. The desktop's own comes first; then
// the dedicated hardware viewers, then the general system monitors.
QList<VxSystemInfoLauncher::CViewer> VxSystemInfoLauncher::candidates(const QString &strDesktop)
{
    const CViewer kde{QStringLiteral("kinfocenter"), {}};
    const CViewer gnome{QStringLiteral("gnome-system-monitor"), {QStringLiteral("--show-resources-tab")}};
    const CViewer hardinfo2{QStringLiteral("hardinfo2"), {}};
    const CViewer hardinfo{QStringLiteral("hardinfo"), {}};
    const QStringList listDesktops = strDesktop.toUpper().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    if (listDesktops.contains(QLatin1String("KDE")))
        return {kde, hardinfo2, hardinfo, gnome};
    for (const char *pName : {"GNOME", "UNITY", "CINNAMON", "BUDGIE", "PANTHEON"}) {
        if (listDesktops.contains(QLatin1String(pName)))
            return {gnome, hardinfo2, hardinfo, kde};
    }
    return {hardinfo2, hardinfo, kde, gnome};
}
