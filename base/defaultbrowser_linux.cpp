#include "luinterface.h"
#include "luinterface_p.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

// The desktop's default web browser, found by the freedesktop.org rules for
// default applications (mimeapps.list): the first "x-scheme-handler/http"
// entry of [Default Applications] in the mimeapps.list files (user config,
// system config, user data, system data; a desktop-specific
// "<desktop>-mimeapps.list" before the plain one in each folder), then the
// desktop entry of that id in the applications folders, and its Exec line.

namespace LuInterface {
namespace Detail {
namespace {

QStringList envDirs(const char *pName, const QStringList &listDefaults)
{
    const QString strValue = qEnvironmentVariable(pName);
    if (strValue.isEmpty())
        return listDefaults;
    QStringList listDirs;
    for (const QString &strDir : strValue.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(strDir))
            listDirs << strDir;
    }
    return listDirs;
}

QString homeDir(const char *pName, const QString &strFallback)
{
    const QString strValue = qEnvironmentVariable(pName);
    return QDir::isAbsolutePath(strValue) ? strValue : QDir::homePath() + strFallback;
}

QStringList dataDirs()
{
    return envDirs("XDG_DATA_DIRS", {sysPath(QStringLiteral("/usr/local/share")), sysPath(QStringLiteral("/usr/share"))});
}

// The first id listed for the key in the [Default Applications] groups.
QString defaultDesktopId(const QString &strMimeType)
{
    QStringList listFolders;
    listFolders << homeDir("XDG_CONFIG_HOME", QStringLiteral("/.config"));
    listFolders << envDirs("XDG_CONFIG_DIRS", {sysPath(QStringLiteral("/etc/xdg"))});
    listFolders << homeDir("XDG_DATA_HOME", QStringLiteral("/.local/share")) + QStringLiteral("/applications");
    for (const QString &strDir : dataDirs())
        listFolders << strDir + QStringLiteral("/applications");

    QStringList listNames;
    for (const QString &strDesktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts))
        listNames << strDesktop.toLower() + QStringLiteral("-mimeapps.list");
    listNames << QStringLiteral("mimeapps.list");

    for (const QString &strFolder : qAsConst(listFolders)) {
        for (const QString &strName : qAsConst(listNames)) {
            const QString strFile = strFolder + QLatin1Char('/') + strName;
            if (!QFileInfo(strFile).isFile())
                continue;
            // Values are ';'-separated lists; read the raw text of the line.
            const QList<QByteArray> lines = readSmallFile(strFile).split('\n');
            bool bInGroup = false;
            for (const QByteArray &rawLine : lines) {
                const QByteArray line = rawLine.trimmed();
                if (line.startsWith('[')) {
                    bInGroup = line == "[Default Applications]";
                    continue;
                }
                const int nEq = line.indexOf('=');
                if (!bInGroup || nEq <= 0 || line.left(nEq).trimmed() != strMimeType.toUtf8())
                    continue;
                for (const QByteArray &id : line.mid(nEq + 1).split(';')) {
                    if (!id.trimmed().isEmpty())
                        return QString::fromUtf8(id.trimmed());
                }
            }
        }
    }
    return QString();
}

// Splits an Exec value into arguments (double quotes group; inside them a
// backslash escapes the next character).
QStringList splitExec(const QString &strExec)
{
    QStringList listArgs;
    QString strCurrent;
    bool bQuoted = false;
    bool bHaveArg = false;
    for (int i = 0; i < strExec.size(); ++i) {
        const QChar ch = strExec.at(i);
        if (bQuoted) {
            if (ch == QLatin1Char('\\') && i + 1 < strExec.size())
                strCurrent += strExec.at(++i);
            else if (ch == QLatin1Char('"'))
                bQuoted = false;
            else
                strCurrent += ch;
        } else if (ch == QLatin1Char('"')) {
            bQuoted = true;
            bHaveArg = true;
        } else if (ch.isSpace()) {
            if (bHaveArg)
                listArgs << strCurrent;
            strCurrent.clear();
            bHaveArg = false;
        } else {
            strCurrent += ch;
            bHaveArg = true;
        }
    }
    if (bHaveArg)
        listArgs << strCurrent;
    return listArgs;
}

} // namespace

QStringList defaultBrowserCommand(const QString &strUrl)
{
    const QString strId = defaultDesktopId(QStringLiteral("x-scheme-handler/http"));
    if (strId.isEmpty() || strId.contains(QLatin1Char('/')) || !strId.endsWith(QLatin1String(".desktop")))
        return QStringList();
    QStringList listApplications;
    listApplications << homeDir("XDG_DATA_HOME", QStringLiteral("/.local/share")) + QStringLiteral("/applications");
    for (const QString &strDir : dataDirs())
        listApplications << strDir + QStringLiteral("/applications");

    for (const QString &strFolder : qAsConst(listApplications)) {
        const QString strFile = strFolder + QLatin1Char('/') + strId;
        if (!QFileInfo(strFile).isFile())
            continue;
        QString strExec;
        bool bInEntry = false;
        for (const QByteArray &rawLine : readSmallFile(strFile).split('\n')) {
            const QByteArray line = rawLine.trimmed();
            if (line.startsWith('[')) {
                bInEntry = line == "[Desktop Entry]";
                continue;
            }
            if (bInEntry && line.startsWith("Exec=")) {
                strExec = QString::fromUtf8(line.mid(5));
                break;
            }
        }
        QStringList listArgs;
        bool bUrlPlaced = false;
        for (const QString &strArg : splitExec(strExec)) {
            if (strArg == QLatin1String("%u") || strArg == QLatin1String("%U") || strArg == QLatin1String("%f")
                || strArg == QLatin1String("%F")) {
                if (!bUrlPlaced)
                    listArgs << strUrl;
                bUrlPlaced = true;
            } else if (strArg.size() == 2 && strArg.startsWith(QLatin1Char('%'))) {
                if (strArg == QLatin1String("%%"))
                    listArgs << QStringLiteral("%");
                // other field codes (%i, %c, %k...) are dropped
            } else {
                listArgs << QString(strArg).replace(QLatin1String("%%"), QLatin1String("%"));
            }
        }
        if (listArgs.isEmpty())
            return QStringList();
        if (!bUrlPlaced)
            listArgs << strUrl;
        return listArgs;
    }
    return QStringList();
}

} // namespace Detail
} // namespace LuInterface
