#include "luinterface.h"

#include <QDir>
#include <QFileInfo>

namespace LuInterface {

QString sysRoot()
{
    const QString strRoot = qEnvironmentVariable("VETRIX_SYSROOT");
    if (strRoot.isEmpty())
        return QStringLiteral("/");
    return QDir::cleanPath(strRoot);
}

bool isLiveRoot()
{
    const QString strRoot = sysRoot();
    if (strRoot == QLatin1String("/"))
        return true;
    // A root that is "/" under another spelling (a link to it) is the live system.
    return QFileInfo(strRoot).canonicalFilePath() == QLatin1String("/");
}

QString sysPath(const QString &strAbsolutePath)
{
    const QString strRoot = sysRoot();
    if (strRoot == QLatin1String("/"))
        return strAbsolutePath;
    return QDir::cleanPath(strRoot + QLatin1Char('/') + strAbsolutePath);
}

} // namespace LuInterface
