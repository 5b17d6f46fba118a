#include "luinterface.h"
#include "luinterface_p.h"

#include <QDir>
#include <QStandardPaths>

namespace LuInterface {

// The SDK installs below /opt/<appName>: drivers, runtime and tools.
QString commonFilesPath()
{
    return sysPath(QStringLiteral("/opt"));
}

QString appName()
{
    return QStringLiteral("Orvex");
}

// Per-user data of the maker's tools: $XDG_DATA_HOME/Orvex.
QString userDataPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') + appName();
}

// The per-user local application data folder: $XDG_DATA_HOME.
QString localPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

// 37 (native system folder) is the system library folder; 41 (32-bit system
// folder) is /usr/lib32. Any other number has no Linux counterpart.
QString systemDir(int nCsidl)
{
    switch (nCsidl) {
    case 37:
        return sysPath(QStringLiteral("/usr/lib"));
    case 41:
        return sysPath(QStringLiteral("/usr/lib32"));
    default:
        return QString();
    }
}

// Only Windows has numbered system generations; 1 is the oldest Windows, so
// Linux answers a value no Windows-only branch reacts to.
int systemName()
{
    return 100;
}

namespace Detail {

// The maker's machine-wide values, following the XDG system configuration
// folder convention: /etc/xdg/Orvex/oem.ini (below the system root).
QString oemConfigFile()
{
    return sysPath(QStringLiteral("/etc/xdg/") + appName() + QStringLiteral("/oem.ini"));
}

// Per-user settings: $XDG_CONFIG_HOME/Orvex/Basekit.ini.
QString userConfigFile()
{
    const QString strDir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (strDir.isEmpty())
        return QString();
    return strDir + QLatin1Char('/') + appName() + QStringLiteral("/Basekit.ini");
}

} // namespace Detail

} // namespace LuInterface
