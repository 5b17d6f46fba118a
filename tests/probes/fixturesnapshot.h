#pragma once

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

#include <sys/stat.h>
#include <unistd.h>

// Every entry below a fixture root as one text line (path, type, mode,
// owner, and the content's hash or the link's target), sorted, so that two
// snapshots compare byte for byte and a failure shows the entry that
// differs. Entries below one of listSkipped (relative paths) are left out.
inline QStringList fixtureSnapshot(const QString &strRoot, const QStringList &listSkipped = {})
{
    QStringList listLines;
    QDirIterator it(
        strRoot, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString strPath = it.next();
        const QString strRel = strPath.mid(strRoot.size());
        bool bSkip = false;
        for (const QString &strSkipped : listSkipped)
            bSkip = bSkip || strRel == strSkipped || strRel.startsWith(strSkipped + '/');
        if (bSkip)
            continue;
        struct stat st;
        if (::lstat(QFile::encodeName(strPath).constData(), &st) != 0) {
            listLines << strRel + " <unreadable>";
            continue;
        }
        QString strLine = QStringLiteral("%1 mode=%2 uid=%3 gid=%4")
                              .arg(strRel)
                              .arg(st.st_mode, 0, 8)
                              .arg(st.st_uid)
                              .arg(st.st_gid);
        if (S_ISLNK(st.st_mode)) {
            QByteArray target(4096, '\0');
            const ssize_t nLength
                = ::readlink(QFile::encodeName(strPath).constData(), target.data(), size_t(target.size()));
            strLine += " -> " + QString::fromUtf8(target.left(int(qMax<ssize_t>(nLength, 0))));
        } else if (S_ISREG(st.st_mode)) {
            QFile file(strPath);
            const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
            strLine += " sha256=" + QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        }
        listLines << strLine;
    }
    listLines.sort();
    return listLines;
}
