#include "luinterface.h"

#include <QDir>

namespace LuInterface {

QString sysRoot()
{
    const QString strRoot = qEnvironmentVariable("VETRIX_SYSROOT");
    if (strRoot.isEmpty())
        return QStringLiteral("/");
    return QDir::cleanPath(strRoot);
}

QString sysPath(const QString &strAbsolutePath)
{
    const QString strRoot = sysRoot();
    if (strRoot == QLatin1String("/"))
        return strAbsolutePath;
    return QDir::cleanPath(strRoot + QLatin1Char('/') + strAbsolutePath);
}

} // namespace LuInterface
