#include "vxversion.h"

#include "luinterface.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace VxVersion {

QString defaultVersion()
{
    return QStringLiteral(VX_DEFAULT_VERSION);
}

QString buildDate()
{
    return QStringLiteral(VX_BUILD_DATE);
}

QString convertBuildDate(const QString &strDate)
{
    static const QStringList months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const QStringList parts = strDate.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() < 3)
        return QString();
    const int nMonth = months.indexOf(parts.first());
    if (nMonth < 0)
        return QString();
    QString strDay = parts.at(parts.size() - 2);
    if (strDay.size() == 1)
        strDay.prepend(QLatin1Char('0'));
    return parts.last() + QStringLiteral("%1").arg(nMonth + 1, 2, 10, QLatin1Char('0')) + strDay;
}

QString versionText()
{
    QString strVersion = defaultVersion();
    const QString strIni = QStringLiteral(":/Orvex/config/app.ini");
    if (QFileInfo::exists(strIni)) {
        QSettings settings(strIni, QSettings::IniFormat);
        strVersion = settings.value(QStringLiteral("ToolSoftwareVersion"), defaultVersion()).toString();
    }
    QString strDate = convertBuildDate(buildDate());
    strDate = LuInterface::GetOEMCfgValue(QStringLiteral("SoftwareBuildDate"), strDate).toString();
    strVersion = LuInterface::GetOEMCfgValue(QStringLiteral("ToolSoftwareVersion"), strVersion).toString();
    return QStringLiteral("V%1 build%2").arg(strVersion, strDate);
}

} // namespace VxVersion
