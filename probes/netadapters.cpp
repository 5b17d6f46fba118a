#include "netadapters.h"

#include <algorithm>

namespace NetAdapters {

namespace {
std::function<QList<CLinkFacts>()> &linkReader()
{
    static std::function<QList<CLinkFacts>()> reader;
    return reader;
}
std::function<bool(const QString &)> &physicalTest()
{
    static std::function<bool(const QString &)> test;
    return test;
}
} // namespace

// Defined in the platform file.
QList<CLinkFacts> readKernelLinks();
bool isPhysicalDevice(const QString &strName);

QList<CNetAdapter> &adapterList()
{
    static QList<CNetAdapter> list;
    return list;
}

int jumboStateOf(int nMtu, int nMaxMtu)
{
    if (nMtu + kEthernetHeader > kStandardFrame)
        return 1;
    if (nMaxMtu + kEthernetHeader > kStandardFrame)
        return 0;
    return 2;
}

QList<CLinkFacts> readLinks()
{
    if (linkReader())
        return linkReader()();
    return readKernelLinks();
}

void setLinkReader(std::function<QList<CLinkFacts>()> reader)
{
    linkReader() = std::move(reader);
}

bool isPhysical(const QString &strName)
{
    if (physicalTest())
        return physicalTest()(strName);
    const QStringList listExtra = qEnvironmentVariable("VETRIX_PHYSICAL_IFACES").split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (listExtra.contains(strName))
        return true;
    return isPhysicalDevice(strName);
}

void setPhysicalTest(std::function<bool(const QString &)> test)
{
    physicalTest() = std::move(test);
}

QList<CLinkFacts> connectedPhysicalLinks()
{
    QList<CLinkFacts> listLinks;
    for (const CLinkFacts &link : readLinks()) {
        if (link.bConnected && isPhysical(link.strName))
            listLinks << link;
    }
    std::stable_sort(listLinks.begin(), listLinks.end(),
                     [](const CLinkFacts &a, const CLinkFacts &b) { return a.nIndex < b.nIndex; });
    return listLinks;
}

void buildAdapterList()
{
    QList<CNetAdapter> listAdapters;
    for (const CLinkFacts &link : connectedPhysicalLinks()) {
        CNetAdapter adapter;
        adapter.description = link.strName;
        adapter.driverKey = link.strName;
        adapter.instanceId = deviceOf(link.strName);
        adapter.nMtu = link.nMtu;
        adapter.nMaxMtu = link.nMaxMtu;
        adapter.jumboValue = link.nMtu + kEthernetHeader;
        adapter.jumboState = jumboStateOf(link.nMtu, link.nMaxMtu);
        listAdapters << adapter;
    }
    adapterList() = listAdapters;
}

VxRepairStatus setMtu(const QString &strName, int nMtu)
{
    VxRepairStatus status;
    if (VxPrivileged::isRoot())
        status = setLinkMtu(strName, nMtu) ? VxRepairStatus::Done : VxRepairStatus::Failed;
    else
        status = VxPrivileged::runHelper(QStringLiteral("set-mtu"), {strName, QString::number(nMtu)});
    if (status == VxRepairStatus::Done)
        updateNetworkManagerMtu(strName, nMtu);
    return status;
}

} // namespace NetAdapters
