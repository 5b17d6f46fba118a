#include "vxrepair.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace VxPrivileged {

bool isRoot()
{
    return ::geteuid() == 0;
}

bool failedRepairStaysExceptional()
{
    return true;
}

} // namespace VxPrivileged

QString VxPrivileges::helperPath() const
{
    if (!m_strHelper.isEmpty())
        return m_strHelper;
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vetrix-helper");
}

VxRepairStatus VxPrivileges::runHelper(const QString &strVerb, const QStringList &listArgs) const
{
    using namespace VxPrivileged;
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
