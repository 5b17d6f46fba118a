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
    NotFound,       // what the repair runs (an installer) is not there
    OtherSystem,    // the repair would act on this machine, not on the
                    // system root being examined (a mounted image)
};

// How one repair ended: its status and, where it did not happen, why (for
// the log; the caller maps the status to a message of its own).
struct VxRepairOutcome
{
    VxRepairOutcome() = default;
    explicit VxRepairOutcome(VxRepairStatus s, QString strWhy = QString())
        : status(s)
        , strReason(std::move(strWhy))
    {
    }
    static VxRepairOutcome failed(const QString &strWhy) { return VxRepairOutcome(VxRepairStatus::Failed, strWhy); }

    bool ok() const { return status == VxRepairStatus::Done; }
    explicit operator bool() const { return ok(); }
    operator VxRepairStatus() const { return status; }

    VxRepairStatus status = VxRepairStatus::Done;
    QString strReason;
};

// How repairs get system rights: in this process when it already runs as
// root, otherwise through "pkexec vetrix-helper <verb> <args...>". The
// program uses system(); tests pass their own helper or rights.
class VxPrivileges
{
public:
    enum class Rights {
        AskSystem, // whatever the process has
        Root,      // act as if running as root
        User,      // act as if running as a user
    };

    // An empty helper path means vetrix-helper beside the running program.
    explicit VxPrivileges(QString strHelper = QString(), Rights rights = Rights::AskSystem);
    static const VxPrivileges &system();

    bool isRoot() const;
    QString helperPath() const;
    // Runs the helper with a verb and its arguments and maps its exit status.
    VxRepairStatus runHelper(const QString &strVerb, const QStringList &listArgs) const;

private:
    QString m_strHelper;
    Rights m_rights;
};

namespace VxPrivileged {

// Whether this process runs as root (Linux) or elevated (Windows).
bool isRoot();

// Whether a repair whose privileged step did not happen leaves its item
// exceptional. On Linux the program runs as the user and asks for rights per
// repair, so a refused or failed request must show; on Windows the program
// runs elevated and an item is marked normal after its repair.
bool failedRepairStaysExceptional();

// Exit codes of vetrix-helper.
enum HelperExit { ExitDone = 0, ExitFailed = 1, ExitRefused = 2 };

} // namespace VxPrivileged
