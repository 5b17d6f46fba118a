#include "vxusbdescriptorscli.h"

#include "cusbfulldump.h"
#include "cusbidsdb.h"
#include "cusbsysfsdevices.h"

#include <QCoreApplication>

#include <cstdio>

namespace VxUsbDescriptorsCli {

Result run(const QString &strPort, QString &strOut, QString &strError)
{
    QStringList listNames;
    if (strPort.isEmpty()) {
        listNames = CUsbSysfsDevices::deviceNames();
        if (listNames.isEmpty()) {
            strError = QCoreApplication::translate("VxUsbDescriptorsCli", "No USB device was found.");
            return NotFound;
        }
    } else if (!CUsbSysfsDevices::isDeviceName(strPort)) {
        strError = QCoreApplication::translate(
            "VxUsbDescriptorsCli", "\"%1\" is not a USB port path: use a name such as 1-1.4 or usb1.")
                       .arg(strPort);
        return BadArgument;
    } else {
        listNames << strPort;
    }
    const CUsbIdsDb &names = CUsbIdsDb::system();
    QStringList listLines;
    for (const QString &strName : listNames) {
        CUsbDumpDevice device;
        if (!CUsbSysfsDevices::read(strName, device)) {
            if (!strPort.isEmpty()) {
                strError = QCoreApplication::translate("VxUsbDescriptorsCli", "No USB device at %1.").arg(strPort);
                return NotFound;
            }
            continue; // a device that went away while listing
        }
        if (!listLines.isEmpty())
            listLines << QString();
        listLines << CUsbFullDump::dump(device, names);
    }
    strOut = listLines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    return Printed;
}

int exec(const QStringList &listArguments)
{
    QString strOut;
    QString strError;
    Result result = BadArgument;
    if (listArguments.size() > 1)
        strError = QCoreApplication::translate("VxUsbDescriptorsCli", "Give at most one USB port path.");
    else
        result = run(listArguments.value(0), strOut, strError);
    if (result != Printed) {
        std::fputs(qPrintable(strError + QLatin1Char('\n')), stderr);
        return result;
    }
    const QByteArray bytes = strOut.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    return Printed;
}

QString optionHelp()
{
    return QCoreApplication::translate("VxUsbDescriptorsCli",
        "Print every descriptor of the USB device at the port path given as argument (e.g. 1-1.4 or usb1), "
        "or of all USB devices, in the layout of lsusb -v, from sysfs.");
}

} // namespace VxUsbDescriptorsCli
