#pragma once

// vetrix-check --usb-tree [--format text|json]: the USB tree alone, as
// indented text with names and speeds (like lsusb -t) or as JSON.

#include <QString>
#include <QStringList>

namespace VxUsbTreeCli {

// Whether the arguments ask for the USB tree (then run() handles them).
bool isRequested(const QStringList &listArguments);
// The tree in the format ("text" or "json"); false when the probe library
// gave no tree (the text then says so; JSON still carries its schema version).
bool render(const QString &strFormat, QString &strOut);
// Parses the arguments, prints the tree on stdout; returns the exit status:
// 0 printed, 1 no tree, 2 usage error.
int run(const QStringList &listArguments);

} // namespace VxUsbTreeCli
