#include "vxjournal.h"

#include "luinterface.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char kJournalName[] = "journal.jsonl";
const char kQuarantineName[] = "quarantine";
constexpr qint64 kMaxJournalBytes = 64 * 1024 * 1024;

QString errnoText(const QString &strWhat)
{
    return strWhat + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

// Creates one folder level with the given mode; an existing folder is kept.
bool makeFolder(const QString &strPath, mode_t mode, QString *pError)
{
    const QByteArray path = QFile::encodeName(strPath);
    // A new folder gets its mode whatever the umask.
    if ((::mkdir(path.constData(), mode) == 0 && ::chmod(path.constData(), mode) == 0) || errno == EEXIST) {
        struct stat st;
        if (::stat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode))
            return true;
        errno = ENOTDIR;
    }
    *pError = errnoText(strPath);
    return false;
}

void syncFolder(const QString &strPath)
{
    const int nFd = ::open(QFile::encodeName(strPath).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nFd >= 0) {
        ::fsync(nFd);
        ::close(nFd);
    }
}

} // namespace

VxJournal::VxJournal(const QString &strFolder)
    : m_strFolder(strFolder)
{
}

VxJournal::~VxJournal()
{
    if (m_nFd >= 0)
        ::close(m_nFd); // also drops the lock
}

QString VxJournal::defaultFolder()
{
    return LuInterface::sysPath(QStringLiteral("/var/lib/vetrix-tool"));
}

QString VxJournal::filePath() const
{
    return m_strFolder + QLatin1Char('/') + QLatin1String(kJournalName);
}

QString VxJournal::quarantineFolder() const
{
    return m_strFolder + QLatin1Char('/') + QLatin1String(kQuarantineName);
}

bool VxJournal::openForWriting(QString *pError)
{
    if (m_nFd >= 0)
        return true;
    // The parents (/var/lib) exist on every system; in a fixture root they
    // are made as needed.
    const QString strParent = QFileInfo(m_strFolder).absolutePath();
    if (!QFileInfo(strParent).isDir() && !QDir().mkpath(strParent)) {
        *pError = QStringLiteral("cannot create ") + strParent;
        return false;
    }
    const bool bNew = !QFileInfo::exists(filePath());
    if (!makeFolder(m_strFolder, 0755, pError) || !makeFolder(quarantineFolder(), 0700, pError))
        return false;
    const int nFd = ::open(
        QFile::encodeName(filePath()).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (nFd < 0) {
        *pError = errnoText(filePath());
        return false;
    }
    if (::flock(nFd, LOCK_EX) != 0) {
        *pError = errnoText(filePath());
        ::close(nFd);
        return false;
    }
    m_nFd = nFd;
    if (bNew) {
        ::fchmod(nFd, 0644); // readable by all whatever the umask: vetrix-check lists it as the user
        syncFolder(m_strFolder);
    }
    // A line torn by a killed writer has no end: the next line starts on its own.
    struct stat st;
    if (::fstat(nFd, &st) == 0 && st.st_size > 0) {
        const int nRead = ::open(QFile::encodeName(filePath()).constData(), O_RDONLY | O_CLOEXEC);
        char cLast = '\n';
        if (nRead >= 0) {
            if (::pread(nRead, &cLast, 1, st.st_size - 1) != 1)
                cLast = '\n';
            ::close(nRead);
        }
        if (cLast != '\n' && (::write(nFd, "\n", 1) != 1 || ::fsync(nFd) != 0)) {
            *pError = errnoText(filePath());
            return false;
        }
    }
    return true;
}

bool VxJournal::append(const VxJournalEntry &entry, QString *pError)
{
    if (m_nFd < 0) {
        *pError = QStringLiteral("journal not open");
        return false;
    }
    const QByteArray line = lineOf(entry) + '\n';
    // One write for the whole line: a kill leaves it whole or torn at its end.
    const ssize_t nWritten = ::write(m_nFd, line.constData(), size_t(line.size()));
    if (nWritten != ssize_t(line.size()) || ::fsync(m_nFd) != 0) {
        *pError = errnoText(filePath());
        return false;
    }
    return true;
}

QByteArray VxJournal::lineOf(const VxJournalEntry &entry)
{
    QJsonObject object;
    object.insert(QStringLiteral("time"), entry.time.toUTC().toString(Qt::ISODate));
    object.insert(QStringLiteral("opt"), entry.strOpt);
    if (!entry.strUndoes.isEmpty())
        object.insert(QStringLiteral("undoes"), entry.strUndoes);
    object.insert(QStringLiteral("seq"), entry.nSeq);
    object.insert(QStringLiteral("item"), qint64(entry.change.uItem));
    object.insert(QStringLiteral("kind"), entry.change.strKind);
    object.insert(QStringLiteral("target"), entry.change.strTarget);
    object.insert(QStringLiteral("old"), entry.change.strOld);
    object.insert(QStringLiteral("new"), entry.change.strNew);
    object.insert(QStringLiteral("result"), entry.strResult);
    if (!entry.strReason.isEmpty())
        object.insert(QStringLiteral("reason"), entry.strReason);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool VxJournal::parseLine(const QByteArray &line, VxJournalEntry *pEntry)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    const QJsonObject object = document.object();
    for (const char *pKey : {"time", "opt", "kind", "target", "old", "new", "result"}) {
        if (!object.value(QLatin1String(pKey)).isString())
            return false;
    }
    if (!object.value(QStringLiteral("seq")).isDouble() || !object.value(QStringLiteral("item")).isDouble())
        return false;
    VxJournalEntry entry;
    entry.time = QDateTime::fromString(object.value(QStringLiteral("time")).toString(), Qt::ISODate);
    entry.strOpt = object.value(QStringLiteral("opt")).toString();
    entry.strUndoes = object.value(QStringLiteral("undoes")).toString();
    entry.nSeq = object.value(QStringLiteral("seq")).toInt(-1);
    const double dItem = object.value(QStringLiteral("item")).toDouble();
    if (entry.strOpt.isEmpty() || entry.nSeq < 0 || dItem < 0 || dItem > 4294967295.0)
        return false;
    entry.change.uItem = quint32(dItem);
    entry.change.strKind = object.value(QStringLiteral("kind")).toString();
    entry.change.strTarget = object.value(QStringLiteral("target")).toString();
    entry.change.strOld = object.value(QStringLiteral("old")).toString();
    entry.change.strNew = object.value(QStringLiteral("new")).toString();
    entry.strResult = object.value(QStringLiteral("result")).toString();
    entry.strReason = object.value(QStringLiteral("reason")).toString();
    *pEntry = entry;
    return true;
}

QVector<VxJournalEntry> VxJournal::lines() const
{
    QVector<VxJournalEntry> vecLines;
    QFile file(filePath());
    if (!file.open(QIODevice::ReadOnly))
        return vecLines;
    const QByteArray content = file.read(kMaxJournalBytes);
    int nPos = 0;
    while (nPos < content.size()) {
        const int nEnd = content.indexOf('\n', nPos);
        if (nEnd < 0)
            break; // torn last line
        VxJournalEntry entry;
        if (parseLine(content.mid(nPos, nEnd - nPos), &entry))
            vecLines << entry;
        nPos = nEnd + 1;
    }
    return vecLines;
}

QVector<VxOptimisation> VxJournal::optimisations() const
{
    QVector<VxOptimisation> vecOpts;
    QMap<QString, int> mapIndex;
    for (const VxJournalEntry &entry : lines()) {
        auto it = mapIndex.find(entry.strOpt);
        if (it == mapIndex.end()) {
            VxOptimisation opt;
            opt.strOpt = entry.strOpt;
            opt.strUndoes = entry.strUndoes;
            opt.time = entry.time;
            vecOpts << opt;
            it = mapIndex.insert(entry.strOpt, vecOpts.size() - 1);
        }
        QVector<VxJournalEntry> &vecChanges = vecOpts[*it].vecChanges;
        bool bFound = false;
        for (VxJournalEntry &known : vecChanges) {
            if (known.nSeq == entry.nSeq) {
                known = entry; // a later line gives the result
                bFound = true;
            }
        }
        if (!bFound)
            vecChanges << entry;
    }
    for (VxOptimisation &opt : vecOpts) {
        for (VxJournalEntry &entry : opt.vecChanges) {
            if (entry.strResult == QLatin1String(VxJournalResult::Pending))
                entry.strResult = QLatin1String(VxJournalResult::Interrupted);
        }
    }
    for (const VxOptimisation &undo : vecOpts) {
        if (undo.strUndoes.isEmpty() || !mapIndex.contains(undo.strUndoes))
            continue;
        VxOptimisation &target = vecOpts[mapIndex.value(undo.strUndoes)];
        target.listUndoneBy << undo.strOpt;
        bool bComplete = true;
        for (const VxJournalEntry &entry : undo.vecChanges) {
            if (entry.strResult != QLatin1String(VxJournalResult::Done)
                && entry.strResult != QLatin1String(VxJournalResult::Unchanged))
                bComplete = false;
        }
        if (bComplete)
            target.bUndone = true;
    }
    return vecOpts;
}
