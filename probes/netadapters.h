#pragma once

#include "vxrepair.h"

#include <QList>
#include <QMap>
#include <QString>

#include <functional>

// One connected physical network adapter, as the jumbo-frame item, its
// repair and the jumbo frame dialog share it.
struct CNetAdapter
{
    QString description; // the interface name ("eth0"): the key of the records' maps
    QString driverKey;   // what the setter addresses: the interface name on Linux
    QString instanceId;  // the device behind the interface (sysfs device name)
    int jumboState = 2;  // 0 off, 1 on, 2 the driver offers no jumbo setting
    int jumboValue = 0;  // frame size in bytes: MTU + 14
    int nMtu = 0;
    int nMaxMtu = 0;     // 0: the driver reports no maximum
};

// Facts of one network interface as the kernel reports them.
struct CLinkFacts
{
    QString strName;
    int nIndex = 0;
    int nMtu = 0;
    int nMaxMtu = 0;        // 0 when not reported
    bool bConnected = false; // operational state up (or unknown with carrier)
};

namespace NetAdapters {

// Where the network interfaces come from: every interface with its kernel
// facts, and the test that tells a physical adapter from a virtual one.
// The checks, the jumbo plan and the validation of a change take one;
// system() is the system being diagnosed, tests hand in their own.
struct LinkSource
{
    std::function<QList<CLinkFacts>()> links;
    std::function<bool(const QString &strName)> isPhysical;

    // Linux: systemLinks() and isPhysicalDevice(). Windows lists its
    // adapters through SetupAPI and the IP helper, not through a source:
    // there it lists nothing.
    static LinkSource system();

    // The interfaces (none when links is empty) and whether one is a
    // physical adapter (false when isPhysical is empty).
    QList<CLinkFacts> allLinks() const;
    bool physical(const QString &strName) const;
};

// The process-wide adapter list, rebuilt by each jumbo check.
QList<CNetAdapter> &adapterList();
// For each driverKey, the name of the driver setting that held its jumbo
// value (Windows registry value name; unused on Linux).
QMap<QString, QString> &jumboValueNames();

// --- platform entry points ------------------------------------------------
// Rebuilds adapterList() from the connected adapters (Linux: those of
// links; Windows lists its own).
void buildAdapterList(const LinkSource &links = LinkSource::system());
// Switches an adapter's jumbo frames on (the largest setting its driver
// offers) or off (the smallest / the standard frame).
VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable, const VxPrivileges &rights = VxPrivileges::system());
// Restarts the adapters that are off in listKept so a new setting applies
// (Windows: disable and enable the PCI adapters; Linux: nothing, an MTU
// applies at once).
void restartAdapters(const QList<CNetAdapter> &listKept);

// --- Linux ----------------------------------------------------------------

// The Ethernet header a frame carries on top of the MTU.
constexpr int kEthernetHeader = 14;
// A standard Ethernet frame; a larger one is a jumbo frame.
constexpr int kStandardFrame = 1514;

// Jumbo state of a link: 1 when the frame (MTU + 14) exceeds 1514 bytes,
// else 0 when the driver offers a larger MTU, else 2.
int jumboStateOf(int nMtu, int nMaxMtu);

// Every interface of the system: a netlink RTM_GETLINK dump of the running
// kernel, or with another system root the attributes (operstate, carrier,
// mtu, ifindex) below its sys/class/net, with no maximum MTU.
QList<CLinkFacts> systemLinks();
// Whether the interfaces can be read at all: the live system, or another
// system root that has a sys/class/net folder.
bool linksReadable();

// Whether an interface of the system is a physical adapter: it has a device
// behind it and is not a virtual one.
bool isPhysicalDevice(const QString &strName);

// The device behind an interface (sysfs device name), empty when none.
QString deviceOf(const QString &strName);

// Line rate of an interface in Mbit/s, -1 when the driver does not know it.
int speedMbps(const QString &strName);

// The physical adapters of links, in the order links lists them.
QList<CLinkFacts> physicalLinks(const LinkSource &links);
// The connected physical adapters, in interface index order.
QList<CLinkFacts> connectedPhysicalLinks(const LinkSource &links = LinkSource::system());
// The interface named strName in links, if there is one.
bool findLink(const LinkSource &links, const QString &strName, CLinkFacts *pLink);

// Sets an interface's MTU (through vetrix-helper when not root); when
// NetworkManager manages the interface its profile gets the MTU too. Fails
// with another system root: its interfaces are not this machine's.
VxRepairStatus setMtu(const QString &strName, int nMtu, const VxPrivileges &rights = VxPrivileges::system());
// The kernel call itself (root only).
bool setLinkMtu(const QString &strName, int nMtu);
// Updates the NetworkManager profile of the interface, if it has one.
void updateNetworkManagerMtu(const QString &strName, int nMtu);

} // namespace NetAdapters
