#include "helperverbs.h"

#include "cameradrivers.h"
#include "changeverbs.h"
#include "envvars.h"
#include "etcenvironment.h"
#include "netadapters.h"
#include "sdkfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

namespace HelperVerbs {

namespace {

constexpr int kMinMtu = 68;
constexpr int kMaxMtu = 65535;

bool refuse(QString *pReason, const QString &strReason)
{
    if (pReason)
        *pReason = strReason;
    return false;
}

bool validateSetEnv(const QStringList &listArgs, QString *pReason)
{
    if (listArgs.size() < 2 || listArgs.size() % 2 != 0)
        return refuse(pReason, QStringLiteral("set-env takes NAME VALUE pairs"));
    const QStringList listNames = EnvVars::variableNames();
    for (int i = 0; i < listArgs.size(); i += 2) {
        if (!listNames.contains(listArgs.at(i)))
            return refuse(pReason, QStringLiteral("not an SDK variable: ") + listArgs.at(i));
        if (!EtcEnvironment::isValidValue(listArgs.at(i + 1)))
            return refuse(pReason, QStringLiteral("value holds a line break, NUL or quote"));
    }
    return true;
}

bool validateSetMtu(const QStringList &listArgs, QString *pReason, const NetAdapters::LinkSource &links)
{
    if (listArgs.size() != 2)
        return refuse(pReason, QStringLiteral("set-mtu takes IFACE MTU"));
    bool bNumber = false;
    const int nMtu = listArgs.at(1).toInt(&bNumber, 10);
    if (!bNumber || nMtu < kMinMtu || nMtu > kMaxMtu)
        return refuse(pReason, QStringLiteral("MTU out of range"));
    CLinkFacts link;
    if (!NetAdapters::findLink(links, listArgs.at(0), &link))
        return refuse(pReason, QStringLiteral("no such interface"));
    if (link.nMaxMtu > 0 && nMtu > link.nMaxMtu)
        return refuse(pReason, QStringLiteral("MTU above the driver's maximum"));
    return true;
}

bool validateRemove(const QStringList &listArgs, QString *pReason)
{
    if (listArgs.isEmpty())
        return refuse(pReason, QStringLiteral("remove-sdk-file takes paths"));
    for (const QString &strPath : listArgs) {
        if (strPath.contains(QChar(0)) || !SdkFiles::isRemovablePath(strPath))
            return refuse(pReason, QStringLiteral("not an SDK library in a system library folder: ") + strPath);
        struct stat st;
        if (::lstat(QFile::encodeName(strPath).constData(), &st) != 0 || !(S_ISREG(st.st_mode) || S_ISLNK(st.st_mode)))
            return refuse(pReason, QStringLiteral("not a file: ") + strPath);
    }
    return true;
}

QString installerOf(const QString &strKind)
{
    if (strKind == QLatin1String("gige"))
        return CameraDrivers::gigeInstallScript();
    if (strKind == QLatin1String("usb3"))
        return CameraDrivers::usb3InstallScript();
    return QString();
}

bool validateInstaller(const QStringList &listArgs, QString *pReason)
{
    if (listArgs.size() != 1 || installerOf(listArgs.at(0)).isEmpty())
        return refuse(pReason, QStringLiteral("run-installer takes gige or usb3"));
    const QFileInfo script(installerOf(listArgs.at(0)));
    if (!script.isFile() || !script.isReadable())
        return refuse(pReason, QStringLiteral("installer not found: ") + script.filePath());
    return true;
}

} // namespace

bool validate(const QStringList &listArgs, QString *pReason, const NetAdapters::LinkSource &links)
{
    if (listArgs.isEmpty())
        return refuse(pReason, QStringLiteral("no verb"));
    const QString strVerb = listArgs.first();
    const QStringList listRest = listArgs.mid(1);
    if (strVerb == QLatin1String("set-env"))
        return validateSetEnv(listRest, pReason);
    if (strVerb == QLatin1String("set-mtu"))
        return validateSetMtu(listRest, pReason, links);
    if (strVerb == QLatin1String("remove-sdk-file"))
        return validateRemove(listRest, pReason);
    if (strVerb == QLatin1String("run-installer"))
        return validateInstaller(listRest, pReason);
    if (strVerb == QLatin1String("apply"))
        return ChangeVerbs::validateApply(listRest, pReason, links);
    if (strVerb == QLatin1String("undo"))
        return ChangeVerbs::validateUndo(listRest, pReason);
    return refuse(pReason, QStringLiteral("unknown verb: ") + strVerb);
}

int run(const QStringList &listArgs, const NetAdapters::LinkSource &links)
{
    QString strReason;
    if (!validate(listArgs, &strReason, links)) {
        qWarning("vetrix-helper: refused: %s", qPrintable(strReason));
        return ExitRefused;
    }
    const QString strVerb = listArgs.first();
    const QStringList listRest = listArgs.mid(1);
    if (strVerb == QLatin1String("apply") || strVerb == QLatin1String("undo")) {
        VxJournal journal;
        const VxAppliers appliers = VxApply::systemAppliers(journal.quarantineFolder(), links);
        return strVerb == QLatin1String("apply")
            ? ChangeVerbs::runApply(listRest, appliers, journal, VxApply::StageHook(), links)
            : ChangeVerbs::runUndo(listRest, appliers, journal, VxApply::StageHook(), links);
    }
    if (strVerb == QLatin1String("set-env")) {
        EtcEnvironment::Assignments assignments;
        for (int i = 0; i < listRest.size(); i += 2)
            assignments.append({listRest.at(i), listRest.at(i + 1)});
        return EtcEnvironment::apply(assignments) ? ExitDone : ExitFailed;
    }
    if (strVerb == QLatin1String("set-mtu")) {
        const bool bOk = NetAdapters::setLinkMtu(listRest.at(0), listRest.at(1).toInt());
        if (bOk)
            qCInfo(lcVxRepair).noquote() << listRest.at(0) << "mtu new:" << listRest.at(1);
        return bOk ? ExitDone : ExitFailed;
    }
    if (strVerb == QLatin1String("remove-sdk-file")) {
        int nExit = ExitDone;
        for (const QString &strPath : listRest) {
            if (!SdkFiles::removeFile(strPath))
                nExit = ExitFailed;
        }
        return nExit;
    }
    // run-installer: the script runs detached in its own folder, so the
    // caller learns at once whether it started and then polls the driver.
    const QString strScript = installerOf(listRest.at(0));
    const QString strFolder = QFileInfo(strScript).absolutePath();
    if (!QProcess::startDetached(QStringLiteral("/bin/sh"), {strScript}, strFolder))
        return ExitFailed;
    qCInfo(lcVxRepair).noquote() << "started driver installer" << strScript;
    return ExitDone;
}

} // namespace HelperVerbs
