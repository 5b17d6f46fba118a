#include "netadapters.h"

#include "luinterface.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <libmnl/libmnl.h>

#include <algorithm>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <ctime>
#include <memory>

namespace NetAdapters {

namespace {

// Owns a netlink socket for the life of one request.
struct MnlSocketDeleter
{
    void operator()(mnl_socket *pSocket) const { mnl_socket_close(pSocket); }
};
using MnlSocket = std::unique_ptr<mnl_socket, MnlSocketDeleter>;

MnlSocket openRoute()
{
    MnlSocket socket(mnl_socket_open(NETLINK_ROUTE));
    if (socket && mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) < 0)
        socket.reset();
    return socket;
}

int linkAttribute(const nlattr *pAttr, void *pData)
{
    const nlattr **ppTable = static_cast<const nlattr **>(pData);
    const int nType = mnl_attr_get_type(pAttr);
    if (mnl_attr_type_valid(pAttr, IFLA_MAX) < 0)
        return MNL_CB_OK;
    switch (nType) {
    case IFLA_IFNAME:
        if (mnl_attr_validate(pAttr, MNL_TYPE_NUL_STRING) < 0)
            return MNL_CB_OK;
        break;
    case IFLA_MTU:
    case IFLA_MAX_MTU:
        if (mnl_attr_validate(pAttr, MNL_TYPE_U32) < 0)
            return MNL_CB_OK;
        break;
    case IFLA_OPERSTATE:
        if (mnl_attr_validate(pAttr, MNL_TYPE_U8) < 0)
            return MNL_CB_OK;
        break;
    default:
        return MNL_CB_OK;
    }
    ppTable[nType] = pAttr;
    return MNL_CB_OK;
}

int linkMessage(const nlmsghdr *pHeader, void *pData)
{
    auto *pLinks = static_cast<QList<CLinkFacts> *>(pData);
    if (pHeader->nlmsg_type != RTM_NEWLINK)
        return MNL_CB_OK;
    const auto *pInfo = static_cast<const ifinfomsg *>(mnl_nlmsg_get_payload(pHeader));
    const nlattr *table[IFLA_MAX + 1] = {};
    if (mnl_attr_parse(pHeader, sizeof(*pInfo), linkAttribute, table) < 0 || !table[IFLA_IFNAME])
        return MNL_CB_OK;
    CLinkFacts link;
    link.strName = QString::fromLocal8Bit(mnl_attr_get_str(table[IFLA_IFNAME]));
    link.nIndex = pInfo->ifi_index;
    link.nMtu = table[IFLA_MTU] ? int(mnl_attr_get_u32(table[IFLA_MTU])) : 0;
    link.nMaxMtu = table[IFLA_MAX_MTU] ? int(mnl_attr_get_u32(table[IFLA_MAX_MTU])) : 0;
    const int nOper = table[IFLA_OPERSTATE] ? mnl_attr_get_u8(table[IFLA_OPERSTATE]) : int(IF_OPER_UNKNOWN);
    link.bConnected = nOper == IF_OPER_UP || (nOper == IF_OPER_UNKNOWN && (pInfo->ifi_flags & IFF_LOWER_UP));
    pLinks->append(link);
    return MNL_CB_OK;
}

// A sysfs attribute is a regular file; anything else planted in a system
// image (a FIFO, a device node) could block the read and is not read.
QString readLine(const QString &strPath)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLatin1(file.read(64)).trimmed();
}

// Another system root: the interfaces its sys/class/net describes, read
// from their attributes. This machine's kernel is never asked; sysfs holds
// no maximum MTU, so none is known.
QList<CLinkFacts> readRootLinks()
{
    QList<CLinkFacts> listLinks;
    const QDir net(LuInterface::sysPath(QStringLiteral("/sys/class/net")));
    for (const QString &strName : net.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name)) {
        const QString strDir = net.filePath(strName);
        CLinkFacts link;
        link.strName = strName;
        link.nIndex = readLine(strDir + QStringLiteral("/ifindex")).toInt();
        link.nMtu = qMax(0, readLine(strDir + QStringLiteral("/mtu")).toInt());
        const QString strOper = readLine(strDir + QStringLiteral("/operstate"));
        const bool bCarrier = readLine(strDir + QStringLiteral("/carrier")) == QLatin1String("1");
        link.bConnected = strOper == QLatin1String("up") || (strOper == QLatin1String("unknown") && bCarrier);
        listLinks << link;
    }
    return listLinks;
}

} // namespace

QList<CLinkFacts> readKernelLinks()
{
    QList<CLinkFacts> listLinks;
    MnlSocket socket = openRoute();
    if (!socket)
        return listLinks;
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    nlmsghdr *pHeader = mnl_nlmsg_put_header(buffer);
    pHeader->nlmsg_type = RTM_GETLINK;
    pHeader->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    const unsigned int uSeq = unsigned(time(nullptr));
    pHeader->nlmsg_seq = uSeq;
    auto *pInfo = static_cast<rtgenmsg *>(mnl_nlmsg_put_extra_header(pHeader, sizeof(rtgenmsg)));
    pInfo->rtgen_family = AF_PACKET;
    if (mnl_socket_sendto(socket.get(), pHeader, pHeader->nlmsg_len) < 0)
        return listLinks;
    const unsigned int uPortId = mnl_socket_get_portid(socket.get());
    for (;;) {
        const ssize_t nRead = mnl_socket_recvfrom(socket.get(), buffer, sizeof buffer);
        if (nRead <= 0)
            break;
        const int nResult = mnl_cb_run(buffer, size_t(nRead), uSeq, uPortId, linkMessage, &listLinks);
        if (nResult <= MNL_CB_STOP)
            break;
    }
    return listLinks;
}

bool setLinkMtu(const QString &strName, int nMtu)
{
    unsigned int uIndex = 0;
    for (const CLinkFacts &link : readKernelLinks()) {
        if (link.strName == strName)
            uIndex = unsigned(link.nIndex);
    }
    if (uIndex == 0 || nMtu <= 0)
        return false;
    MnlSocket socket = openRoute();
    if (!socket)
        return false;
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    nlmsghdr *pHeader = mnl_nlmsg_put_header(buffer);
    pHeader->nlmsg_type = RTM_NEWLINK;
    pHeader->nlmsg_flags = NLM_F_REQUEST | NLM_F_ACK;
    const unsigned int uSeq = unsigned(time(nullptr));
    pHeader->nlmsg_seq = uSeq;
    auto *pInfo = static_cast<ifinfomsg *>(mnl_nlmsg_put_extra_header(pHeader, sizeof(ifinfomsg)));
    pInfo->ifi_family = AF_UNSPEC;
    pInfo->ifi_index = int(uIndex);
    mnl_attr_put_u32(pHeader, IFLA_MTU, uint32_t(nMtu));
    if (mnl_socket_sendto(socket.get(), pHeader, pHeader->nlmsg_len) < 0)
        return false;
    const ssize_t nRead = mnl_socket_recvfrom(socket.get(), buffer, sizeof buffer);
    if (nRead <= 0)
        return false;
    // The acknowledgement is an error message with code 0.
    return mnl_cb_run(buffer, size_t(nRead), uSeq, mnl_socket_get_portid(socket.get()), nullptr, nullptr) >= MNL_CB_STOP;
}

// A physical adapter's sysfs entry has a "device" link and does not lie
// below /sys/devices/virtual.
bool isPhysicalDevice(const QString &strName)
{
    if (strName.isEmpty() || strName.contains(QLatin1Char('/')) || strName.startsWith(QLatin1Char('.')))
        return false;
    const QString strEntry = LuInterface::sysPath(QStringLiteral("/sys/class/net/") + strName);
    if (!QFileInfo::exists(strEntry + QStringLiteral("/device")))
        return false;
    const QString strTarget = QFileInfo(strEntry).canonicalFilePath();
    return !strTarget.isEmpty() && !strTarget.contains(QLatin1String("/devices/virtual/"));
}

QString deviceOf(const QString &strName)
{
    if (strName.contains(QLatin1Char('/')))
        return QString();
    const QString strDevice = QFileInfo(LuInterface::sysPath(QStringLiteral("/sys/class/net/") + strName + QStringLiteral("/device"))).canonicalFilePath();
    return strDevice.isEmpty() ? QString() : QFileInfo(strDevice).fileName();
}

int speedMbps(const QString &strName)
{
    if (strName.contains(QLatin1Char('/')))
        return -1;
    bool bOk = false;
    const int nSpeed = readLine(LuInterface::sysPath(QStringLiteral("/sys/class/net/") + strName + QStringLiteral("/speed"))).toInt(&bOk);
    return bOk && nSpeed > 0 ? nSpeed : -1;
}

int jumboStateOf(int nMtu, int nMaxMtu)
{
    if (nMtu + kEthernetHeader > kStandardFrame)
        return 1;
    if (nMaxMtu + kEthernetHeader > kStandardFrame)
        return 0;
    return 2;
}

QList<CLinkFacts> systemLinks()
{
    if (!LuInterface::isLiveRoot())
        return readRootLinks();
    return readKernelLinks();
}

bool linksReadable()
{
    return LuInterface::isLiveRoot() || QFileInfo(LuInterface::sysPath(QStringLiteral("/sys/class/net"))).isDir();
}

LinkSource LinkSource::system()
{
    return LinkSource {systemLinks, isPhysicalDevice};
}

QList<CLinkFacts> physicalLinks(const LinkSource &links)
{
    QList<CLinkFacts> listLinks;
    for (const CLinkFacts &link : links.allLinks()) {
        if (links.physical(link.strName))
            listLinks << link;
    }
    return listLinks;
}

bool findLink(const LinkSource &links, const QString &strName, CLinkFacts *pLink)
{
    for (const CLinkFacts &link : links.allLinks()) {
        if (link.strName == strName) {
            *pLink = link;
            return true;
        }
    }
    return false;
}

QList<CLinkFacts> connectedPhysicalLinks(const LinkSource &links)
{
    QList<CLinkFacts> listLinks;
    for (const CLinkFacts &link : physicalLinks(links)) {
        if (link.bConnected)
            listLinks << link;
    }
    std::stable_sort(listLinks.begin(), listLinks.end(),
                     [](const CLinkFacts &a, const CLinkFacts &b) { return a.nIndex < b.nIndex; });
    return listLinks;
}

void buildAdapterList(const LinkSource &links)
{
    QList<CNetAdapter> listAdapters;
    for (const CLinkFacts &link : connectedPhysicalLinks(links)) {
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

VxRepairStatus setMtu(const QString &strName, int nMtu, const VxPrivileges &rights)
{
    // An interface of another system root is not this machine's to change.
    if (!LuInterface::isLiveRoot())
        return VxRepairStatus::Failed;
    VxRepairStatus status;
    if (rights.isRoot())
        status = setLinkMtu(strName, nMtu) ? VxRepairStatus::Done : VxRepairStatus::Failed;
    else
        status = rights.runHelper(QStringLiteral("set-mtu"), {strName, QString::number(nMtu)});
    if (status == VxRepairStatus::Done)
        updateNetworkManagerMtu(strName, nMtu);
    return status;
}

VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable, const VxPrivileges &rights)
{
    for (const CNetAdapter &adapter : adapterList()) {
        if (adapter.driverKey != strDriverKey)
            continue;
        const int nMtu = bEnable ? adapter.nMaxMtu : kStandardFrame - kEthernetHeader;
        if (nMtu <= 0 || nMtu == adapter.nMtu)
            return VxRepairStatus::Done;
        const VxRepairStatus status = setMtu(strDriverKey, nMtu, rights);
        if (status == VxRepairStatus::Done)
            qCInfo(lcVxRepair).noquote() << strDriverKey << "mtu old:" << adapter.nMtu << "new:" << nMtu;
        return status;
    }
    return VxRepairStatus::Failed;
}

// The kernel applies a new MTU at once; no link bounce is needed.
void restartAdapters(const QList<CNetAdapter> &)
{
}

} // namespace NetAdapters
