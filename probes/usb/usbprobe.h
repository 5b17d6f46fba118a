#pragma once

#include <QString>
#include <QStringList>

#include <functional>

struct UsbRootItem;
struct UsbControllerInfo;
class CUSBControllerDriverInfo;
class CUsbBasicDetectInfo;

// Items 32 "USB3.0 Controller Driver Version" and 512 "USB Controller Info":
// the program's side of the probe library (probekit), loaded at run time.
namespace VxUsbProbe {

// --- the probe library -----------------------------------------------------
// Where the library is looked for: by default "probekit" in the program's
// folder (QLibrary adds the platform's prefix and suffix). Changing it
// unloads a library loaded from elsewhere.
void setLibraryPath(const QString &strPath);
QString libraryPath();
bool isLibraryLoaded();
// Loads the library when needed and builds a new tree; null when the
// library or its CreateRootItem is missing. The caller owns the tree.
UsbRootItem *buildTree();
// Gives a tree back to the library (ignored when null or not loaded).
void destroyTree(UsbRootItem *pRoot);
void unloadLibrary();

// --- the checks (probe table entries) ----------------------------------------
// Item 512: a new tree into the record; bNormal = a tree was obtained. The
// caller releases the record's previous tree first.
void usbTreeCheck(CUsbBasicDetectInfo &info);
// Item 32: builds a tree (handed to the caller when ppRoot is given, else
// released) and reads every controller's driver facts; the last controller
// wins. Without the library the record is left as it is; a tree without any
// host controller sets nControllers to 0 and makes the item exceptional.
void usbDriverCheck(CUSBControllerDriverInfo &info, UsbRootItem **ppRoot);
// The host controllers (kind-0 entries) of a tree; -1 for no tree.
int controllerCount(const UsbRootItem *pRoot);

// --- the driver facts, platform part and rule --------------------------------
struct CControllerDriverFacts
{
    bool bOpened = false;    // the driver's facts could be read at all
    bool bSkip = false;      // not a controller driver entry of interest
    QString strDriverDesc;   // null: could not be read (field left as it was)
    QString strProviderName;
    QString strDriverDate;   // month-day-year
    QString strDriverVersion;
};
using DriverReader = std::function<CControllerDriverFacts(const UsbControllerInfo &)>;
// The platform's reader (registry on Windows, sysfs and kernel facts on Linux).
CControllerDriverFacts readControllerDriver(const UsbControllerInfo &controller);
// Applies the reader to every controller entry of the tree.
void applyDriverFacts(const UsbRootItem *pRoot, CUSBControllerDriverInfo &info, const DriverReader &reader);
// "Driver date new enough": the last "-"-separated part as a year >= 2012.
bool isDriverDateNew(const QString &strDate);
// Linux: the kernel build date ("M-D-YYYY") from the /proc/sys/kernel/version
// text; empty when the text names no date (and always on Windows).
QString kernelBuildDate(const QString &strVersion);

// --- report --------------------------------------------------------------------
// The "USB Controller Info" report lines: every controller, hub and device of
// the tree in tree order, in the viewer's text mode. Empty for a null tree.
QStringList treeReportLines(const UsbRootItem *pRoot);

} // namespace VxUsbProbe
