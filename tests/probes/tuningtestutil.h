#pragma once

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>

// Helpers of the host tuning tests: fixture files below a system root and a
// byte-for-byte picture of the whole root.
namespace TuningTest {

inline bool write(const QString &strRoot, const QString &strRelative, const QByteArray &content)
{
    const QString strPath = strRoot + QLatin1Char('/') + strRelative;
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()))
        return false;
    QFile file(strPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(content) == content.size();
}

inline QByteArray read(const QString &strRoot, const QString &strRelative)
{
    QFile file(strRoot + QLatin1Char('/') + strRelative);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Every file below the root (relative path -> content) and every folder.
inline QMap<QString, QByteArray> snapshot(const QString &strRoot)
{
    QMap<QString, QByteArray> map;
    QDirIterator it(
        strRoot, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString strPath = it.next();
        const QString strRelative = QDir(strRoot).relativeFilePath(strPath);
        if (it.fileInfo().isDir()) {
            map.insert(strRelative + QLatin1Char('/'), QByteArray());
        } else {
            QFile file(strPath);
            map.insert(strRelative, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>"));
        }
    }
    return map;
}

} // namespace TuningTest
