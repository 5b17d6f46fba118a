#pragma once

#include "vxrepair.h"

#include <QList>
#include <QPair>
#include <QStringList>

class CEnvDetectInfo;

// Item 2: the environment variables the SDK's runtime needs.
namespace EnvVars {

// The platform's spelling of the layout the check expects.
struct Layout
{
    QString strPathName;   // the executable search path variable ("PATH")
    QChar cSeparator;      // list separator (":")
    QString strRuntime32;  // runtime folder of 32-bit programs, below the SDK folder
    QString strRuntime64;  // runtime folder of 64-bit programs
};
Layout layout();

// commonFilesPath() + "/" + appName(), in native separators.
QString sdkFolder();

// The six variables in check order.
QStringList variableNames();
// The variables whose repair puts the missing part in front of the value.
bool isPathLike(const QString &strName);

// Rebuilds currentValues and missingValues from this process's environment
// and sets bNormal.
void check(CEnvDetectInfo &info);

// The final value of each variable the repair writes, in key order: the
// queued parts put in front of the value seen (path-like variables) or
// alone, each cut to 1023 bytes of local 8-bit text.
QList<QPair<QString, QString>> plannedWrites(const CEnvDetectInfo &info);

// Writes plannedWrites() into the machine-wide environment (through
// vetrix-helper when not root) and into this process, then marks the item
// normal. Only a value the machine environment took is put into this
// process: when nothing can be written nothing changes, and when single
// values fail they stay queued, the item stays exceptional and the status
// is Failed.
VxRepairStatus repair(CEnvDetectInfo &info);

// The platform write of the machine-wide environment (root only). False
// when nothing could be written; otherwise pWritten receives the names of
// the values written.
bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten);

} // namespace EnvVars
