#include "vxrepair.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <atomic>

#include <unistd.h>

namespace VxPrivileged {

extern std::atomic<int> g_rootOverride;

bool isRoot()
{
    const int nOverride = g_rootOverride.load();
    return nOverride >= 0 ? nOverride != 0 : ::geteuid() == 0;
}

bool failedRepairStaysExceptional()
{
    return true;
}

QString helperPath()
{
    const QString strOverride = qEnvironmentVariable("VETRIX_HELPER");
    if (!strOverride.isEmpty())
        return strOverride;
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vetrix-helper");
}

VxRepairStatus runHelper(const QString &strVerb, const QStringList &listArgs)
{
    const QString strHelper = helperPath();
    if (!QFileInfo(strHelper).isExecutable())
        return VxRepairStatus::HelperMissing;

    QString strProgram = strHelper;
    QStringList listAll = QStringList{strVerb} + listArgs;
    if (!isRoot()) {
        const QString strPkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
        if (strPkexec.isEmpty())
            return VxRepairStatus::HelperMissing;
        listAll.prepend(strHelper);
        strProgram = strPkexec;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(strProgram, listAll, QIODevice::ReadOnly);
    if (!process.waitForStarted(10000))
        return VxRepairStatus::HelperMissing;
    // The user may take a while to answer the password prompt.
    if (!process.waitForFinished(5 * 60 * 1000)) {
        process.kill();
        process.waitForFinished(1000);
        return VxRepairStatus::Failed;
    }
    if (process.exitStatus() != QProcess::NormalExit)
        return VxRepairStatus::Failed;
    switch (process.exitCode()) {
    case ExitDone:
        return VxRepairStatus::Done;
    case ExitRefused:
        return VxRepairStatus::Refused;
    case 126: // pkexec: the user dismissed the dialog or was not authorised
    case 127: // pkexec: not authorised / could not obtain authorisation
        return VxRepairStatus::NotAuthorized;
    default:
        return VxRepairStatus::Failed;
    }
}

} // namespace VxPrivileged
