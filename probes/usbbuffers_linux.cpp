#include "usbbuffers.h"

#include "luinterface.h"
#include "tuningapply.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace UsbBuffers {

namespace {

// A sysfs attribute (regular files only), trimmed; empty when unreadable.
QString attribute(const QString &strPath)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLatin1(file.read(64)).trimmed();
}

// A device name "B-P.P" (not a root hub "usbN", not an interface "B-P:C.I").
bool isDeviceName(const QString &strName)
{
    return !strName.startsWith(QLatin1String("usb")) && !strName.contains(QLatin1Char(':'))
        && strName.contains(QLatin1Char('-'));
}

} // namespace

void check(CUsbBufferDetectInfo &info)
{
    info.nUsbfsMemoryMb = -1;
    info.usb3Controllers.clear();
    info.usb3Cameras.clear();
    bool bOk = false;
    const int nValue
        = attribute(LuInterface::sysPath(QStringLiteral("/sys/module/usbcore/parameters/usbfs_memory_mb"))).toInt(&bOk);
    if (bOk && nValue >= 0)
        info.nUsbfsMemoryMb = nValue;

    // Root hubs report their speed in Mbit/s: 5000 and more is USB 3. A
    // USB3 Vision interface is class 0xEF (miscellaneous), subclass 0x05.
    const QDir devices(LuInterface::sysPath(QStringLiteral("/sys/bus/usb/devices")));
    const QStringList listNames = devices.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
    for (const QString &strName : listNames) {
        const QString strDir = devices.filePath(strName);
        if (strName.startsWith(QLatin1String("usb"))) {
            if (attribute(strDir + QStringLiteral("/speed")).toInt() >= 5000)
                info.usb3Controllers << strName;
            continue;
        }
        if (!strName.contains(QLatin1Char(':')))
            continue;
        const QString strDevice = strName.section(QLatin1Char(':'), 0, 0);
        if (isDeviceName(strDevice) && !info.usb3Cameras.contains(strDevice)
            && attribute(strDir + QStringLiteral("/bInterfaceClass")).compare(QLatin1String("ef"), Qt::CaseInsensitive)
                == 0
            && attribute(strDir + QStringLiteral("/bInterfaceSubClass")) == QLatin1String("05"))
            info.usb3Cameras << strDevice;
    }
    info.bNormal = isExceptional(info) ? 0 : 1;
}

VxRepairOutcome repair(CUsbBufferDetectInfo &info, const VxPrivileges &rights)
{
    const VxRepairOutcome outcome = TuningApply::applyPlan(plan(info), rights);
    check(info);
    return outcome;
}

} // namespace UsbBuffers
