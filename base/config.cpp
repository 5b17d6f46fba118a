#include "luinterface.h"
#include "luinterface_p.h"

#include <QFileInfo>
#include <QLocale>
#include <QMutex>
#include <QMutexLocker>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

// Configuration sources, highest priority first:
//   1. the machine's OEM file (Detail::oemConfigFile(), optional), group [OEM];
//   2. the application ini file given to setAppIniFile(), group [OEM] for the
//      maker values and [Software] for the software texts;
//   3. the caller's default (GetOEMCfgValue) or a built-in text
//      (softwareConfigInfor).
// Every look-up opens the files afresh, so a file changed on disk is seen at
// the next call and no QSettings object is shared between threads.

namespace LuInterface {
namespace {

QMutex g_mutex;
QString g_strAppIniFile;

QString appIniFile()
{
    QMutexLocker locker(&g_mutex);
    return g_strAppIniFile;
}

// Reads one key of one group of an ini file; invalid when absent.
QVariant iniValue(const QString &strFile, const QString &strGroup, const QString &strKey)
{
    if (strFile.isEmpty() || !QFileInfo::exists(strFile))
        return QVariant();
    QSettings settings(strFile, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    if (settings.status() != QSettings::NoError)
        return QVariant();
    settings.beginGroup(strGroup);
    return settings.value(strKey);
}

// An unquoted comma makes QSettings split a value into a list; the texts
// are meant as one line, so put the pieces back together.
QString valueText(const QVariant &value)
{
    if (value.type() == QVariant::StringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

// Built-in texts used when no configuration file names the key.
QString builtInSoftwareText(const QString &strKey)
{
    if (strKey == QLatin1String("Copyright_EN"))
        return QStringLiteral("Copyright %1 2025 Orvex Imaging. All rights reserved.");
    if (strKey == QLatin1String("Copyright_CN"))
        return QString::fromUtf8("版权所有 %1 2025 Orvex Imaging。保留所有权利。");
    return QString();
}

QString defaultLanguage()
{
    return QLocale::system().language() == QLocale::Chinese ? QStringLiteral("CH") : QStringLiteral("ENG");
}

} // namespace

void setAppIniFile(const QString &strFile)
{
    QMutexLocker locker(&g_mutex);
    g_strAppIniFile = strFile;
}

QVariant GetOEMCfgValue(const QString &strKey, const QVariant &defaultValue)
{
    if (strKey.isEmpty())
        return defaultValue;
    const QString strGroup = QStringLiteral("OEM");
    QVariant value = iniValue(Detail::oemConfigFile(), strGroup, strKey);
    if (!value.isValid())
        value = iniValue(appIniFile(), strGroup, strKey);
    if (!value.isValid())
        return defaultValue;
    if (value.type() == QVariant::StringList)
        value = valueText(value);
    // Ini values are text: hand them back in the type of the default so a
    // caller asking with `true` gets a bool ("false", "0" become false).
    if (defaultValue.isValid() && value.type() != defaultValue.type()) {
        QVariant converted = value;
        if (converted.convert(defaultValue.userType()))
            return converted;
        return defaultValue;
    }
    return value;
}

QString softwareConfigInfor(const QString &strKey)
{
    if (strKey.isEmpty())
        return QString();
    const QString strGroup = QStringLiteral("Software");
    QVariant value = iniValue(Detail::oemConfigFile(), strGroup, strKey);
    if (!value.isValid())
        value = iniValue(appIniFile(), strGroup, strKey);
    if (!value.isValid())
        return builtInSoftwareText(strKey);
    return valueText(value);
}

QString language(int /*nReserved*/)
{
    const QString strFile = Detail::userConfigFile();
    QMutexLocker locker(&g_mutex);
    if (!strFile.isEmpty() && QFileInfo::exists(strFile)) {
        QSettings settings(strFile, QSettings::IniFormat);
        const QString strValue = settings.value(QStringLiteral("Language")).toString();
        if (strValue == QLatin1String("CH") || strValue == QLatin1String("ENG"))
            return strValue;
    }
    return defaultLanguage();
}

void setLanguage(const QString &strLanguage)
{
    if (strLanguage != QLatin1String("CH") && strLanguage != QLatin1String("ENG"))
        return;
    const QString strFile = Detail::userConfigFile();
    if (strFile.isEmpty())
        return;
    QMutexLocker locker(&g_mutex);
    // QSettings writes through QSaveFile: a temporary file, synced, then
    // renamed over the old one, so a crash never leaves half a file.
    QSettings settings(strFile, QSettings::IniFormat);
    settings.setAtomicSyncRequired(true);
    settings.setValue(QStringLiteral("Language"), strLanguage);
    settings.sync();
}

} // namespace LuInterface
