#pragma once

#include "vxchange.h"

#include <QDateTime>
#include <QString>
#include <QVector>

// The record of every change the repairs made to the machine, so that an
// optimisation can be listed and undone. One JSON object per line in
// <folder>/journal.jsonl; removed SDK files are kept in <folder>/quarantine.
//
// Each change is written twice: a "pending" line before the change is made
// and a "done" or "failed" line after it. Every line is appended with one
// write and synced before the program goes on, so whatever moment a repair
// is killed at, the journal holds every change that may have been made: a
// change with a pending line and no result is "interrupted" (made or not;
// undo compares the current value with both), and a change with no line was
// never started. A torn last line (no line end) is ignored when read.
namespace VxJournalResult {
inline constexpr char Pending[] = "pending";
inline constexpr char Done[] = "done";
inline constexpr char Failed[] = "failed";
inline constexpr char Unchanged[] = "unchanged"; // the value was already the new one
inline constexpr char Interrupted[] = "interrupted"; // pending with no result (read only)
} // namespace VxJournalResult

struct VxJournalEntry
{
    QDateTime time; // UTC
    QString strOpt; // the optimisation (one repair or undo run)
    QString strUndoes; // the optimisation this run undoes; empty for a repair
    int nSeq = 0; // the change's place in its optimisation
    VxChange change;
    QString strResult; // one of VxJournalResult
    QString strReason; // why a change failed
};

// The changes of one optimisation, each in its final state.
struct VxOptimisation
{
    QString strOpt;
    QString strUndoes;
    QDateTime time; // of its first line
    QStringList listUndoneBy; // the undo runs that name it
    QVector<VxJournalEntry> vecChanges; // in order

    // True when some undo of it left every change restored.
    bool bUndone = false;
};

class VxJournal
{
public:
    // strFolder: where the journal and the quarantine live.
    explicit VxJournal(const QString &strFolder = defaultFolder());
    ~VxJournal();
    VxJournal(const VxJournal &) = delete;
    VxJournal &operator=(const VxJournal &) = delete;

    // /var/lib/vetrix-tool below the system root.
    static QString defaultFolder();

    QString folder() const { return m_strFolder; }
    QString filePath() const;
    QString quarantineFolder() const;

    // Creates the folders (0755, quarantine 0700) and opens the journal for
    // appending (0644), holding an exclusive lock until destroyed so that two
    // repairs never interleave. False with *pError when it cannot.
    bool openForWriting(QString *pError);
    // Appends one line and syncs it to disk (openForWriting first).
    bool append(const VxJournalEntry &entry, QString *pError);

    // Every readable line in file order; a missing journal is empty.
    QVector<VxJournalEntry> lines() const;
    // The optimisations in journal order, each change in its final state.
    QVector<VxOptimisation> optimisations() const;

    static QByteArray lineOf(const VxJournalEntry &entry);
    // False for a line that is not a journal line.
    static bool parseLine(const QByteArray &line, VxJournalEntry *pEntry);

private:
    QString m_strFolder;
    int m_nFd = -1;
};
