#pragma once

#include <QLoggingCategory>
#include <QStringList>

// Every change a repair makes to the machine is logged here, with the old
// and the new value.
Q_DECLARE_LOGGING_CATEGORY(lcVxRepair)

// How a repair that needs system rights ended. Probes produce no text; the
// caller maps the status to a message of its own.
enum class VxRepairStatus {
    Done,           // the change was made (or nothing needed changing)
    NotAuthorized,  // the user cancelled or polkit refused the rights
    HelperMissing,  // vetrix-helper or pkexec could not be found/started
    Refused,        // the helper rejected the arguments
    Failed,         // the change itself failed (nothing half-written)
};

// Runs privileged changes: in this process when it already runs as root,
// otherwise through "pkexec vetrix-helper <verb> <args...>".
namespace VxPrivileged {

bool isRoot();
// Tests: 1 or 0 makes isRoot() answer so; -1 (the default) asks the system.
void overrideRoot(int nRoot);
// The helper executable: $VETRIX_HELPER, else vetrix-helper beside the
// running program.
QString helperPath();
// Runs the helper with a verb and its arguments and maps its exit status.
VxRepairStatus runHelper(const QString &strVerb, const QStringList &listArgs);
// The status of the last privileged repair of this process (for callers that
// reached the repair through the probe table, which returns nothing).
VxRepairStatus lastStatus();
void setLastStatus(VxRepairStatus status);

// Whether a repair whose privileged step did not happen leaves its item
// exceptional. On Linux the program runs as the user and asks for rights per
// repair, so a refused or failed request must show; on Windows the program
// runs elevated and an item is marked normal after its repair.
bool failedRepairStaysExceptional();

// Exit codes of vetrix-helper.
enum HelperExit { ExitDone = 0, ExitFailed = 1, ExitRefused = 2 };

} // namespace VxPrivileged
