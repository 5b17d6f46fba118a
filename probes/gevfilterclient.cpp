#include "gevfilterclient.h"

#include <QtEndian>

#include <chrono>

namespace GevFilter {

namespace {

void putLe32(QByteArray &block, int nOffset, quint32 uValue)
{
    qToLittleEndian<quint32>(uValue, block.data() + nOffset);
}

qint64 failure(quint32 uCode)
{
    return -qint64(uCode);
}

} // namespace

Device::~Device() = default;

quint32 requestCode(Request request, bool bRestricted)
{
    switch (request) {
    case Request::Start:
        return bRestricted ? 0x120C08u : 0x12C808u;
    case Request::Info48:
        return bRestricted ? 0x120C1Cu : 0x12C81Cu;
    case Request::Info64:
        return bRestricted ? 0x120C20u : 0x12C820u;
    case Request::DriverValue:
        return bRestricted ? 0x120C24u : 0x12C824u;
    case Request::ReadA:
        return 0x120C28u; // the same code in both modes
    case Request::ReadB:
        return bRestricted ? 0x120C2Cu : 0x12C82Cu;
    case Request::ReadC:
        return bRestricted ? 0x120C30u : 0x12C830u;
    case Request::Stop:
        return bRestricted ? 0x120C34u : 0x12C834u;
    case Request::KeepAlive:
        return bRestricted ? 0x120C38u : 0x12C838u;
    }
    return 0;
}

QByteArray addressBlock(quint32 uIp, quint16 uPort)
{
    QByteArray block(kAddressSize, '\0');
    qToBigEndian<quint32>(uIp, block.data());
    qToBigEndian<quint16>(uPort, block.data() + 4);
    return block;
}

QByteArray startBlock(quint32 uPacketSize, quint32 uIp, quint16 uPort, quint32 uParam1, quint32 uParam2,
                      const quint32 events[3])
{
    QByteArray block(kStartBlockSize, '\0');
    putLe32(block, 0, uPacketSize);
    qToBigEndian<quint32>(uIp, block.data() + 4);
    qToBigEndian<quint16>(uPort, block.data() + 8);
    block[10] = 3;
    block[11] = 0;
    putLe32(block, 12, uParam1);
    putLe32(block, 16, uParam2);
    for (int i = 0; i < 3; ++i)
        putLe32(block, 20 + 4 * i, events[i]);
    putLe32(block, 32, 0);
    return block;
}

Client::Client(std::unique_ptr<Device> pDevice)
    : m_pDevice(std::move(pDevice))
{
}

Client::~Client()
{
    stop();
    if (m_pDevice) {
        m_pDevice->close();
        m_pDevice->closeEvents();
    }
}

quint32 Client::create()
{
    if (!m_pDevice)
        return kNoClient;
    if (!m_pDevice->createEvents()) {
        m_pDevice->closeEvents();
        return kNotAvailable;
    }
    return kOk;
}

bool Client::openDevice()
{
    if (!m_pDevice)
        return false;
    if (m_pDevice->isOpen())
        return true;
    Device::OpenResult result = m_pDevice->open(false);
    if (result == Device::OpenResult::AccessDenied && !m_bRestricted) {
        m_bRestricted = true;
        result = m_pDevice->open(true);
    }
    return result == Device::OpenResult::Opened;
}

void Client::closeDevice()
{
    if (m_pDevice)
        m_pDevice->close();
    m_bRestricted = false;
}

void Client::setAddress(quint32 uIp, quint16 uPort)
{
    m_uIp = uIp;
    m_uPort = uPort;
}

void Client::setPacketSize(quint32 uPacketSize)
{
    m_uPacketSize = uPacketSize;
}

void Client::setParameters(quint32 uParam1, quint32 uParam2)
{
    m_uParam1 = uParam1;
    m_uParam2 = uParam2;
}

void Client::setKeepAliveTiming(int nTickMs, int nTicks)
{
    m_nTickMs = nTickMs;
    m_nTicks = nTicks;
}

quint32 Client::start()
{
    if (!m_pDevice)
        return kNoClient;
    if (m_uPacketSize < kMinPacketSize || m_uPacketSize > kMaxPacketSize)
        return kInvalidArgument;
    if (!openDevice())
        return kNotAvailable;
    const quint32 events[3] = {m_pDevice->eventHandle(0), m_pDevice->eventHandle(1), m_pDevice->eventHandle(2)};
    const QByteArray block = startBlock(m_uPacketSize, m_uIp, m_uPort, m_uParam1, m_uParam2, events);
    QByteArray out;
    if (!m_pDevice->request(requestCode(Request::Start, m_bRestricted), block, 0, &out))
        return kRequestFailed;
    m_bRunning = true;
    if (!m_keepAliveThread.joinable()) {
        try {
            m_keepAliveThread = std::thread(&Client::keepAlive, this);
        } catch (...) {
            m_bRunning = false;
            return kNotAvailable;
        }
    }
    return kOk;
}

void Client::keepAlive()
{
    while (m_bRunning.load()) {
        for (int i = 0; i < m_nTicks && m_bRunning.load(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(m_nTickMs));
        if (!m_bRunning.load())
            break;
        QByteArray out;
        m_pDevice->request(requestCode(Request::KeepAlive, m_bRestricted), addressBlock(m_uIp, m_uPort), 0, &out);
    }
}

quint32 Client::stop()
{
    if (!m_pDevice)
        return kNoClient;
    m_bRunning = false;
    if (m_keepAliveThread.joinable())
        m_keepAliveThread.join();
    if (m_pDevice->isOpen()) {
        QByteArray out;
        m_pDevice->request(requestCode(Request::Stop, m_bRestricted), addressBlock(m_uIp, m_uPort), 0, &out);
        m_pDevice->close();
        m_bRestricted = false;
    }
    return kOk;
}

quint32 Client::waitForEvents(int nTimeoutMs)
{
    if (!m_pDevice)
        return kNoClient;
    if (!m_pDevice->hasEvents())
        return kNoEvents;
    const int nFirst = m_pDevice->waitAny(nTimeoutMs);
    if (nFirst == -2)
        return kRequestFailed;
    if (nFirst < 0)
        return 0;
    quint32 uMask = 1u << nFirst;
    for (int i = nFirst + 1; i < 3 && m_pDevice->poll(i); ++i)
        uMask |= 1u << i;
    return uMask;
}

qint64 Client::read(char *pBuffer, qint64 nLength)
{
    if (!m_pDevice || !pBuffer || nLength < kAddressSize)
        return 0;
    const QByteArray address = addressBlock(m_uIp, m_uPort);
    memcpy(pBuffer, address.constData(), kAddressSize);
    const qint64 nRead = m_pDevice->read(pBuffer, nLength);
    return nRead > 0 ? nRead : 0;
}

// An information request answers with exactly nSize bytes.
qint64 Client::infoRequest(Request request, int nSize, QByteArray *pOut)
{
    if (!m_pDevice)
        return failure(kNoClient);
    if (!pOut)
        return failure(kInvalidArgument);
    if (!openDevice())
        return failure(kNotAvailable);
    if (!m_pDevice->request(requestCode(request, m_bRestricted), addressBlock(m_uIp, m_uPort), nSize, pOut)
        || pOut->size() != nSize)
        return failure(kRequestFailed);
    return nSize;
}

qint64 Client::info48(QByteArray *pOut)
{
    return infoRequest(Request::Info48, 48, pOut);
}

qint64 Client::info64(QByteArray *pOut)
{
    return infoRequest(Request::Info64, 64, pOut);
}

qint64 Client::driverValue(quint32 *pValue)
{
    if (!m_pDevice)
        return failure(kNoClient);
    if (!pValue)
        return failure(kInvalidArgument);
    if (!openDevice())
        return failure(kNotAvailable);
    QByteArray out;
    if (!m_pDevice->request(requestCode(Request::DriverValue, m_bRestricted), QByteArray(), 4, &out) || out.size() != 4)
        return failure(kRequestFailed);
    *pValue = qFromLittleEndian<quint32>(out.constData());
    return 4;
}

qint64 Client::readData(Request request, char *pBuffer, int nLength)
{
    if (!m_pDevice)
        return failure(kNoClient);
    if (!pBuffer || nLength <= 0 || (request != Request::ReadA && request != Request::ReadB && request != Request::ReadC))
        return failure(kInvalidArgument);
    if (!openDevice())
        return failure(kNotAvailable);
    QByteArray out;
    if (!m_pDevice->request(requestCode(request, m_bRestricted), addressBlock(m_uIp, m_uPort), nLength, &out) || out.size() > nLength)
        return failure(kRequestFailed);
    memcpy(pBuffer, out.constData(), size_t(out.size()));
    return out.size();
}

quint32 openProbe(std::unique_ptr<Device> pDevice)
{
    Client client(std::move(pDevice));
    if (client.create() != kOk || !client.openDevice())
        return kNotAvailable;
    client.closeDevice(); // no stream was registered: nothing to stop
    return kOk;
}

} // namespace GevFilter
