#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

// Writes strRelative (e.g. "proc/cpuinfo") below strRoot, creating folders.
inline bool writeFixtureFile(const QString &strRoot, const QString &strRelative, const QByteArray &content)
{
    const QString strPath = strRoot + QLatin1Char('/') + strRelative;
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()))
        return false;
    QFile file(strPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(content) == content.size();
}
