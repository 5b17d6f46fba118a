#pragma once

#include <QString>
#include <QStringList>

// vetrix-check --usb-descriptors [PORT-PATH]: every descriptor of one USB
// device, or of all devices, in the layout of `lsusb -v`, read from sysfs
// below the system root.
namespace VxUsbDescriptorsCli {
enum Result { Printed = 0, NotFound = 1, BadArgument = 2 };
// The dump text of the named device (all devices when strPort is empty);
// strError says what went wrong when the result is not Printed.
Result run(const QString &strPort, QString &strOut, QString &strError);
// The command: at most one port path among the positional arguments; prints
// the dump to stdout or the error to stderr and returns the exit status
// (0 printed, 1 no such device, 2 usage error).
int exec(const QStringList &listArguments);
// The option's help text.
QString optionHelp();
} // namespace VxUsbDescriptorsCli
