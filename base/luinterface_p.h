#pragma once

// Internals of the base library shared between its portable and platform
// files. Not installed, not for use outside base/.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace LuInterface {
namespace Detail {

// The maker's machine-wide override of the [OEM] values, or empty when the
// platform has none. Linux: <sysroot>/etc/xdg/Orvex/oem.ini.
QString oemConfigFile();
// The per-user settings file holding the language choice.
QString userConfigFile();

// Reads at most nMaxBytes of a (sysfs/procfs) file; empty when it cannot be
// read. Never blocks on a missing file.
QByteArray readSmallFile(const QString &strPath, qint64 nMaxBytes = 1 << 20);

// Screen size from the platform when no GUI application can answer
// (Linux: connected DRM connectors). Empty when unknown.
QString platformResolution();

// Name of a PCI device from a pci.ids-format database at strIdsFile:
// "<vendor> <device>", with "Vendor xxxx"/"Device xxxx" for ids the
// database does not know. The file is indexed once per process.
QString pciDeviceName(const QString &strIdsFile, unsigned uVendor, unsigned uDevice);

// Linux: the default web browser's command line for strUrl (program first),
// from the XDG mimeapps.list files and the browser's desktop entry; empty
// when none is configured.
QStringList defaultBrowserCommand(const QString &strUrl);

// The text shown for a fact that could not be read.
QString unknownText();

// A memory size as shown to the user: binary gigabytes with one decimal
// ("15.6 GB", the unit Windows uses for the same figure), below 1 GB whole
// megabytes ("512 MB"); "Unknown" for 0.
QString memoryText(quint64 uBytes);

} // namespace Detail
} // namespace LuInterface
