#include "ethtoolrings.h"

#include <libmnl/libmnl.h>

#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>

namespace EthtoolRings {

namespace {

struct MnlSocketDeleter
{
    void operator()(mnl_socket *pSocket) const { mnl_socket_close(pSocket); }
};
using MnlSocket = std::unique_ptr<mnl_socket, MnlSocketDeleter>;

void setError(QString *pError, const QString &strText)
{
    if (pError)
        *pError = strText;
}

QString errnoText(int nErrno)
{
    return QString::fromLocal8Bit(std::strerror(nErrno));
}

// An interface name the kernel can hold: 1..15 bytes, no "/" or white space.
bool isValidName(const QString &strName)
{
    const QByteArray name = strName.toLocal8Bit();
    if (name.isEmpty() || name.size() >= IFNAMSIZ || name == "." || name == "..")
        return false;
    for (const char c : name) {
        if (c == '/' || c == ':' || uchar(c) <= ' ')
            return false;
    }
    return true;
}

// One request on a generic netlink socket: sends it and runs the replies
// through the callback until the kernel's acknowledgement or an error.
bool exchange(mnl_socket *pSocket, nlmsghdr *pHeader, mnl_cb_t callback, void *pData, QString *pError)
{
    const unsigned int uSeq = unsigned(time(nullptr));
    pHeader->nlmsg_seq = uSeq;
    if (mnl_socket_sendto(pSocket, pHeader, pHeader->nlmsg_len) < 0) {
        setError(pError, errnoText(errno));
        return false;
    }
    const unsigned int uPortId = mnl_socket_get_portid(pSocket);
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    for (;;) {
        const ssize_t nRead = mnl_socket_recvfrom(pSocket, buffer, sizeof buffer);
        if (nRead <= 0) {
            setError(pError, errnoText(nRead < 0 ? errno : EIO));
            return false;
        }
        const int nResult = mnl_cb_run(buffer, size_t(nRead), uSeq, uPortId, callback, pData);
        if (nResult < 0) {
            setError(pError, errnoText(errno));
            return false;
        }
        if (nResult == MNL_CB_STOP)
            return true;
    }
}

int familyAttribute(const nlattr *pAttr, void *pData)
{
    if (mnl_attr_get_type(pAttr) == CTRL_ATTR_FAMILY_ID && mnl_attr_validate(pAttr, MNL_TYPE_U16) >= 0)
        *static_cast<int *>(pData) = mnl_attr_get_u16(pAttr);
    return MNL_CB_OK;
}

int familyMessage(const nlmsghdr *pHeader, void *pData)
{
    mnl_attr_parse(pHeader, sizeof(genlmsghdr), familyAttribute, pData);
    return MNL_CB_OK;
}

// Opens a generic netlink socket and resolves the ethtool family's id.
MnlSocket openEthtool(int *pFamily, QString *pError)
{
    MnlSocket socket(mnl_socket_open(NETLINK_GENERIC));
    if (!socket || mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) < 0) {
        setError(pError, errnoText(errno));
        return MnlSocket();
    }
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    nlmsghdr *pHeader = mnl_nlmsg_put_header(buffer);
    pHeader->nlmsg_type = GENL_ID_CTRL;
    pHeader->nlmsg_flags = NLM_F_REQUEST | NLM_F_ACK;
    auto *pGenl = static_cast<genlmsghdr *>(mnl_nlmsg_put_extra_header(pHeader, sizeof(genlmsghdr)));
    pGenl->cmd = CTRL_CMD_GETFAMILY;
    pGenl->version = 1;
    mnl_attr_put_strz(pHeader, CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
    *pFamily = 0;
    if (!exchange(socket.get(), pHeader, familyMessage, pFamily, pError) || *pFamily == 0) {
        if (pError && pError->isEmpty())
            *pError = QStringLiteral("no ethtool netlink family");
        return MnlSocket();
    }
    return socket;
}

// Starts an ethtool request for the named interface.
nlmsghdr *putRequest(char *pBuffer, int nFamily, quint8 uCommand, quint16 uFlags, const QByteArray &name)
{
    nlmsghdr *pHeader = mnl_nlmsg_put_header(pBuffer);
    pHeader->nlmsg_type = quint16(nFamily);
    pHeader->nlmsg_flags = NLM_F_REQUEST | uFlags;
    auto *pGenl = static_cast<genlmsghdr *>(mnl_nlmsg_put_extra_header(pHeader, sizeof(genlmsghdr)));
    pGenl->cmd = uCommand;
    pGenl->version = ETHTOOL_GENL_VERSION;
    nlattr *pNest = mnl_attr_nest_start(pHeader, ETHTOOL_A_RINGS_HEADER);
    mnl_attr_put_strz(pHeader, ETHTOOL_A_HEADER_DEV_NAME, name.constData());
    mnl_attr_nest_end(pHeader, pNest);
    return pHeader;
}

struct RingReply
{
    CRxRing ring;
    bool bRx = false;
};

int ringAttribute(const nlattr *pAttr, void *pData)
{
    auto *pReply = static_cast<RingReply *>(pData);
    const int nType = mnl_attr_get_type(pAttr);
    if ((nType != ETHTOOL_A_RINGS_RX && nType != ETHTOOL_A_RINGS_RX_MAX) || mnl_attr_validate(pAttr, MNL_TYPE_U32) < 0)
        return MNL_CB_OK;
    if (nType == ETHTOOL_A_RINGS_RX) {
        pReply->ring.uRx = mnl_attr_get_u32(pAttr);
        pReply->bRx = true;
    } else {
        pReply->ring.uRxMax = mnl_attr_get_u32(pAttr);
    }
    return MNL_CB_OK;
}

int ringMessage(const nlmsghdr *pHeader, void *pData)
{
    mnl_attr_parse(pHeader, sizeof(genlmsghdr), ringAttribute, pData);
    return MNL_CB_OK;
}

} // namespace

bool read(const QString &strName, CRxRing *pRing, QString *pError)
{
    if (!isValidName(strName)) {
        setError(pError, QStringLiteral("invalid interface name"));
        return false;
    }
    int nFamily = 0;
    MnlSocket socket = openEthtool(&nFamily, pError);
    if (!socket)
        return false;
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    nlmsghdr *pHeader = putRequest(buffer, nFamily, ETHTOOL_MSG_RINGS_GET, NLM_F_ACK, strName.toLocal8Bit());
    RingReply reply;
    if (!exchange(socket.get(), pHeader, ringMessage, &reply, pError))
        return false;
    if (!reply.bRx) {
        setError(pError, QStringLiteral("the driver reports no receive ring"));
        return false;
    }
    if (pRing)
        *pRing = reply.ring;
    return true;
}

bool setRx(const QString &strName, quint32 uRx, QString *pError)
{
    if (!isValidName(strName) || uRx == 0) {
        setError(pError, QStringLiteral("invalid interface name or ring size"));
        return false;
    }
    int nFamily = 0;
    MnlSocket socket = openEthtool(&nFamily, pError);
    if (!socket)
        return false;
    char buffer[MNL_SOCKET_BUFFER_SIZE];
    nlmsghdr *pHeader = putRequest(buffer, nFamily, ETHTOOL_MSG_RINGS_SET, NLM_F_ACK, strName.toLocal8Bit());
    mnl_attr_put_u32(pHeader, ETHTOOL_A_RINGS_RX, uRx);
    return exchange(socket.get(), pHeader, nullptr, nullptr, pError);
}

} // namespace EthtoolRings
