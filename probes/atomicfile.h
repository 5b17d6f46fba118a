#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// Replaces a file's content without ever leaving it half-written or missing:
// the new bytes go to a temporary file in the same folder, which is flushed
// to disk and then renamed over the old one; the folder is synced last. The
// old file's permission bits and owner are kept (0644 for a new file).
//
// Where the file system offers unnamed temporary files (O_TMPFILE) the new
// content has no name until it is complete: it is linked to a temporary name
// and renamed over the target at once, so a process killed while writing
// leaves nothing behind. Elsewhere, and for the short moment between that
// link and the rename, a killed writer leaves a temporary file named
// "<file>.vetrix-XXXXXX"; the next write removes such files when they are
// ours (same owner) and older than that write.
namespace AtomicFile {

// Called after the temporary file is complete, synced and named, just
// before the rename, with the temporary file's path. Returning false stops
// there, as a crash would: the old file is untouched and the temporary file
// is left behind.
using FaultHook = std::function<bool(const QString &strTempPath)>;

// How write() goes about it. The defaults are what every real write uses;
// tests stop a write before its rename or take the named-file way.
struct Options
{
    FaultHook beforeRename;
    // False: a named temporary file from the start, as on a file system
    // without O_TMPFILE.
    bool bUnnamedTemporary = true;
};

bool write(const QString &strPath, const QByteArray &data, const Options &options = Options());

// True when strName (a file name without folder) is a temporary file name
// that write() uses for the file named strTarget.
bool isTemporaryName(const QString &strTarget, const QString &strName);

} // namespace AtomicFile
