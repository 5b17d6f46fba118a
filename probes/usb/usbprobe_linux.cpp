// Linux driver facts of a USB host controller. The host controller drivers
// are part of the kernel and carry no version of their own, so the kernel's
// release and build date stand for them; the controller's driver is the one
// bound to its PCI device.
#include "usbprobe.h"

#include "cusbtreedecoder.h"
#include "luinterface.h"
#include "probekit.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace VxUsbProbe {

namespace {

// Only regular files: a FIFO planted in a system image would block the read.
QString readTrimmed(const QString &strPath)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.read(4096)).trimmed();
}

} // namespace

// The kernel build date as month-day-year from the kernel version text:
// Debian writes "(2026-11-16)", plain kernels end in "Thu Nov 20 12:00:00 UTC 2025".
QString kernelBuildDate(const QString &strVersion)
{
    static const QRegularExpression reIso(QStringLiteral("\\((\\d{4})-(\\d{1,2})-(\\d{1,2})\\)"));
    QRegularExpressionMatch m = reIso.match(strVersion);
    if (m.hasMatch())
        return QStringLiteral("%1-%2-%3").arg(m.captured(2).toInt()).arg(m.captured(3).toInt()).arg(m.captured(1));
    static const QRegularExpression reDate(QStringLiteral(
        "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)\\s+(\\d{1,2})\\s+\\d{1,2}:\\d{2}:\\d{2}\\s+(?:\\S+\\s+)?(\\d{4})"));
    m = reDate.match(strVersion);
    if (m.hasMatch()) {
        static const QStringList listMonths = {QStringLiteral("Jan"), QStringLiteral("Feb"), QStringLiteral("Mar"),
                                               QStringLiteral("Apr"), QStringLiteral("May"), QStringLiteral("Jun"),
                                               QStringLiteral("Jul"), QStringLiteral("Aug"), QStringLiteral("Sep"),
                                               QStringLiteral("Oct"), QStringLiteral("Nov"), QStringLiteral("Dec")};
        return QStringLiteral("%1-%2-%3").arg(listMonths.indexOf(m.captured(1)) + 1).arg(m.captured(2).toInt()).arg(m.captured(3));
    }
    return QString();
}

CControllerDriverFacts readControllerDriver(const UsbControllerInfo &controller)
{
    CControllerDriverFacts facts;
    // The key is a PCI address ("0000:00:14.0") or, for a controller that
    // is not a PCI device, its path below /sys/devices ("platform/xhci-hcd.0").
    const QString strKey = CUsbTreeDecoder::wideText(controller.pDriverKey);
    if (strKey.isEmpty() || strKey.split(QLatin1Char('/')).contains(QStringLiteral("..")))
        return facts;
    const QString strDevice = LuInterface::sysPath(strKey.contains(QLatin1Char('/'))
                                                       ? QStringLiteral("/sys/devices/") + strKey
                                                       : QStringLiteral("/sys/bus/pci/devices/") + strKey);
    const QString strTarget = QFileInfo(strDevice + QStringLiteral("/driver")).symLinkTarget();
    if (strTarget.isEmpty())
        return facts; // no driver bound
    const QString strDriver = QFileInfo(strTarget).fileName();
    if (strDriver.isEmpty())
        return facts;
    facts.bOpened = true;
    const QString strName = CUsbTreeDecoder::wideText(controller.pDeviceDesc);
    facts.strDriverDesc = strName.isEmpty() ? strDriver : strName + QStringLiteral(" (") + strDriver + QLatin1Char(')');
    facts.strProviderName = QStringLiteral("The Linux Kernel");
    const QString strRelease = readTrimmed(LuInterface::sysPath(QStringLiteral("/proc/sys/kernel/osrelease")));
    if (!strRelease.isEmpty())
        facts.strDriverVersion = strRelease;
    const QString strDate = kernelBuildDate(readTrimmed(LuInterface::sysPath(QStringLiteral("/proc/sys/kernel/version"))));
    if (!strDate.isEmpty())
        facts.strDriverDate = strDate;
    return facts;
}

} // namespace VxUsbProbe
