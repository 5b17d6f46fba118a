#pragma once

#include <QString>

// Where a repair puts the SDK files it removes, so that undo can put them
// back as they were. A file is identified by its content (or, for a link, by
// what it points to); the stored copy is named after its path and that
// identity, keeps its bytes, permission bits and owner, and is moved back on
// undo.
namespace VxQuarantine {

// The identity of the file at strPath (not following a last link):
// "sha256:<64 hex digits>" for a regular file, "link:<target>" for a
// symbolic link, an empty string when nothing is there. False when the
// path holds something else or cannot be read.
bool identityOf(const QString &strPath, QString *pIdentity);

// Whether strIdentity has the form identityOf() gives a file or link.
bool isValidIdentity(const QString &strIdentity);

// The stored copy of the file strPath that had strIdentity.
QString storedPath(const QString &strFolder, const QString &strPath, const QString &strIdentity);

// Moves the file into the quarantine folder (which must exist); it must
// still have strIdentity.
bool moveIn(const QString &strFolder, const QString &strPath, const QString &strIdentity, QString *pError);

// Moves the stored copy back to strPath, which must not exist.
bool restore(const QString &strFolder, const QString &strPath, const QString &strIdentity, QString *pError);

} // namespace VxQuarantine
