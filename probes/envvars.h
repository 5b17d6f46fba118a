#pragma once

#include "vxrepair.h"

#include <QList>
#include <QPair>
#include <QStringList>

#include <functional>

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
    // Where the machine-wide value lives apart from this session (Linux:
    // /etc/environment, read at the next login): the value the next login
    // will see, a null string when it sets none. Null pointer: this session's
    // values are all there is (Windows).
    QString (*machineValue)(const QString &strName) = nullptr;
};
Layout layout();

// commonFilesPath() + "/" + appName(), in native separators.
QString sdkFolder();

// The six variables in check order.
QStringList variableNames();
// The variables whose repair puts the missing part in front of the value.
bool isPathLike(const QString &strName);

// The values the repair queues for a variable that holds strValue; empty
// when the value passes the variable's test.
QStringList queuedValues(const QString &strName, const QString &strValue);

// Rebuilds currentValues, missingValues and pendingValues from this
// process's environment and sets bNormal. A variable this session lacks but
// whose machine-wide value (Layout::machineValue) passes is pending: the
// repair has nothing left to do, it takes effect at the next login, and it
// does not make the item exceptional.
void check(CEnvDetectInfo &info);
// Below a system root other than the running machine's (a mounted image) the
// check reads the image's machine-wide values, not this process's
// environment. Tests whose fixture root stands for a running machine (this
// process being its session) turn that off.
void setFixtureRootHasProcessSession(bool bYes);

// The final value of each variable the repair writes, in key order: the
// queued parts put in front of the value seen (path-like variables) or
// alone, each cut to 1023 bytes of local 8-bit text. With a machine-wide
// source the parts and the value they go in front of are the machine-wide
// ones, so what only this session holds (a user's own PATH folders) is not
// copied into the machine's file.
QList<QPair<QString, QString>> plannedWrites(const CEnvDetectInfo &info);

// Writes values into the machine-wide environment: false when nothing could
// be written; otherwise pWritten receives the names of the values written.
using MachineWriter = std::function<bool(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten)>;

// The platform write of the machine-wide environment (root only), as a
// MachineWriter.
bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten);

// Writes plannedWrites() into the machine-wide environment (through
// vetrix-helper when not root) and into this process, then marks the item
// normal. Only a value the machine environment took is put into this
// process: when nothing can be written nothing changes, and when single
// values fail they stay queued, the item stays exceptional and the status
// is Failed. writeMachine does the direct write (null: the platform's
// writeMachineEnvironment); tests hand in one whose writes fail.
VxRepairOutcome repair(CEnvDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system(),
                       const MachineWriter &writeMachine = MachineWriter());

} // namespace EnvVars
