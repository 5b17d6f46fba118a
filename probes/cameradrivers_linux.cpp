#include "cameradrivers.h"

#include "cdetectinfo.h"
#include "luinterface.h"

#include <QFileInfo>
#include <QProcess>

namespace CameraDrivers {

namespace {

// The SDK ships its USB3 Vision device rules as Drivers/Usb3.0/99-orvex-u3v.rules;
// the installer puts them where udev reads them.
const char *const kRulesName = "99-orvex-u3v.rules";

} // namespace

QString gigeInstallScript()
{
    return sdkFolder() + QStringLiteral("/Drivers/GigE/install.sh");
}

QString usb3InstallScript()
{
    return sdkFolder() + QStringLiteral("/Drivers/Usb3.0/install.sh");
}

// Installed when udev has the rules file: an administrator's copy in
// /etc/udev/rules.d or the packaged one in /usr/lib/udev/rules.d (or
// /lib/udev/rules.d on systems whose /lib is not merged into /usr). An empty
// file does not count, as an empty driver store path does not.
void usb3Check(CDetectInfo &info)
{
    info.bNormal = 0;
    for (const char *pFolder : {"/etc/udev/rules.d/", "/usr/lib/udev/rules.d/", "/lib/udev/rules.d/"}) {
        const QFileInfo rules(LuInterface::sysPath(QLatin1String(pFolder) + QLatin1String(kRulesName)));
        if (rules.isFile() && rules.size() > 0) {
            info.bNormal = 1;
            return;
        }
    }
}

// The script runs detached with /bin/sh in its own folder. Without root,
// vetrix-helper under pkexec validates the request, starts the script and
// ends at once, so its exit status tells whether the rights were granted and
// the script started.
VxRepairOutcome startInstaller(const QString &strScript, const VxPrivileges &rights)
{
    VxRepairStatus status;
    if (rights.isRoot()) {
        const QString strFolder = QFileInfo(strScript).absolutePath();
        status = QProcess::startDetached(QStringLiteral("/bin/sh"), {strScript}, strFolder) ? VxRepairStatus::Done
                                                                                              : VxRepairStatus::Failed;
    } else {
        const QString strKind = strScript == gigeInstallScript() ? QStringLiteral("gige") : QStringLiteral("usb3");
        status = rights.runHelper(QStringLiteral("run-installer"), {strKind});
    }
    if (status == VxRepairStatus::Done)
        qCInfo(lcVxRepair).noquote() << "started driver installer" << strScript;
    else
        qCWarning(lcVxRepair).noquote() << "driver installer not started" << strScript << "status" << int(status);
    return VxRepairOutcome(status, strScript);
}

} // namespace CameraDrivers
