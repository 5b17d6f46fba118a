#pragma once

#include <QDateTime>
#include <QMap>
#include <QStringList>

class CDetectInfo;

// Turns diagnosis records into the text lines shown under each item and into
// the exported log. Texts are translated in the result view's context.
namespace VxResultText {

// The lines of one item, by its id. Item 512 takes the USB tree's lines.
QStringList itemLines(const CDetectInfo &info);

// The line of an item that was not diagnosed: it has no probe on this
// platform, or (bUnreadable) the system root being diagnosed lacks what its
// probe reads (a mounted image without sys/class/net).
QString unavailableLine(bool bUnreadable);

// "|", then "    |" per level below the first, then "----" for a branch,
// "    |" for a continued line or five blanks otherwise.
QString treePrefix(int nLevel, bool bBranch, bool bContinued);

// The whole log, every line ending in CR LF. mapItemLines holds the rows to
// report (item id -> the item's text lines); groups and items come in display
// order and ids not in the map are left out.
QString logText(const QMap<int, QStringList> &mapItemLines);
// The same for records: each record's own lines.
QString logText(const QList<const CDetectInfo *> &listRecords);

// "Log_yyyyMMdd_hhmmss.log" for the given local time.
QString proposedLogName(const QDateTime &time);

// Writes the log text as UTF-8 to the file, replacing it as a whole: either
// the new text is there afterwards or the old file is untouched.
bool writeLog(const QString &strPath, const QString &strText);

} // namespace VxResultText
