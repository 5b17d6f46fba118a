#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// Replaces a file's content without ever leaving it half-written: the new
// bytes go to a temporary file in the same folder, which is flushed to disk
// and then renamed over the old one; the folder is synced last. The old
// file's permission bits and owner are kept (0644 for a new file).
namespace AtomicFile {

bool write(const QString &strPath, const QByteArray &data);

// Test seam: called after the temporary file is complete and synced, just
// before the rename. Returning false stops there, as a crash would: the old
// file is untouched and the temporary file is left behind.
using FaultHook = std::function<bool(const QString &strTempPath)>;
void setFaultHook(FaultHook hook);

} // namespace AtomicFile
