#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <atomic>
#include <memory>
#include <thread>

// Client of the SDK's GigE Vision filter driver: opens its device, registers
// a stream for a camera address, reads data and events, keeps the
// registration alive and tears it down. The diagnosis uses only the open
// probe. Requests follow the driver's buffered convention: one buffer holds
// the input and receives the output.
namespace GevFilter {

// Result codes of the client's operations.
constexpr quint32 kOk = 0;
constexpr quint32 kNoClient = 0x80000000u;
constexpr quint32 kInvalidArgument = 0x80000001u;
constexpr quint32 kNotAvailable = 0x80000002u;
constexpr quint32 kNoEvents = 0x80000003u;
constexpr quint32 kRequestFailed = 0x800000FFu;

constexpr quint32 kMinPacketSize = 64;
constexpr quint32 kMaxPacketSize = 10240;
constexpr int kStartBlockSize = 36;
constexpr int kAddressSize = 6;

enum class Request { Start, Info48, Info64, DriverValue, ReadA, ReadB, ReadC, Stop, KeepAlive };

// The request code: device type 0x12, buffered; FILE_ANY_ACCESS when the
// device was opened without access rights, read and write access otherwise.
quint32 requestCode(Request request, bool bRestricted);

// The camera address as every request carries it: IP then port, network order.
QByteArray addressBlock(quint32 uIp, quint16 uPort);

// The 36-byte start block (little-endian unless noted): packet size, IP
// (network order), port (network order), the bytes 3 and 0, param1, param2,
// the three event handles as 32 bits, and a zero word.
QByteArray startBlock(quint32 uPacketSize, quint32 uIp, quint16 uPort, quint32 uParam1, quint32 uParam2,
                      const quint32 events[3]);

// The platform side: the device and the three events shared with the driver.
class Device
{
public:
    enum class OpenResult { Opened, AccessDenied, Failed };
    virtual ~Device();
    // Read and write, or (bQueryOnly) the restricted open.
    virtual OpenResult open(bool bQueryOnly) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    // Sends a request; on success *pOut holds the bytes the driver returned.
    virtual bool request(quint32 uCode, const QByteArray &input, int nOutSize, QByteArray *pOut) = 0;
    virtual qint64 read(char *pBuffer, qint64 nLength) = 0;

    virtual bool createEvents() = 0; // three auto-reset events, not signalled
    virtual void closeEvents() = 0;
    virtual bool hasEvents() const = 0;
    virtual quint32 eventHandle(int nIndex) const = 0;
    // Waits for any event: its index, -1 on time-out, -2 on failure. The
    // returned event is reset.
    virtual int waitAny(int nTimeoutMs) = 0;
    // Whether event nIndex is signalled now (and resets it).
    virtual bool poll(int nIndex) = 0;
};

// The device of this platform ("\\.\QelGEVFilter", or /dev/QelGEVFilter below
// the system root on Linux).
std::unique_ptr<Device> createPlatformDevice();

class Client
{
public:
    // A client of pDevice; the platform's device unless one is handed in.
    explicit Client(std::unique_ptr<Device> pDevice = createPlatformDevice());
    ~Client(); // stops, then closes the device and the events

    quint32 create(); // the three events; kNotAvailable when they cannot be made
    bool openDevice(); // read/write, then once query-only on access denied
    void closeDevice(); // closes without a request and clears the restricted mode
    void setAddress(quint32 uIp, quint16 uPort);
    void setPacketSize(quint32 uPacketSize);
    void setParameters(quint32 uParam1, quint32 uParam2);
    bool isRestricted() const { return m_bRestricted; }
    bool isRunning() const { return m_bRunning.load(); }

    quint32 start();
    quint32 stop();
    // Bit i set for each signalled event i; 0 on time-out.
    quint32 waitForEvents(int nTimeoutMs);
    // Bytes read into the buffer (its first 6 bytes carry the address).
    qint64 read(char *pBuffer, qint64 nLength);
    // The information and read-data requests: bytes delivered (into pOut), or
    // a result code (as a negative number, -qint64(code)).
    qint64 info48(QByteArray *pOut);
    qint64 info64(QByteArray *pOut);
    qint64 driverValue(quint32 *pValue);
    qint64 readData(Request request, char *pBuffer, int nLength);

    // Keep-alive period parts (test seam): sleeps of nTickMs, nTicks times.
    void setKeepAliveTiming(int nTickMs, int nTicks);

private:
    void keepAlive();
    qint64 infoRequest(Request request, int nSize, QByteArray *pOut);

    quint32 m_uIp = 0;
    quint16 m_uPort = 0;
    quint32 m_uPacketSize = 0;
    std::unique_ptr<Device> m_pDevice;
    bool m_bRestricted = false;
    quint32 m_uParam1 = 0;
    quint32 m_uParam2 = 0;
    std::thread m_keepAliveThread;
    std::atomic<bool> m_bRunning{false};
    int m_nTickMs = 100;
    int m_nTicks = 10;
};

// Opens the device (the platform's unless one is handed in) and closes it
// again: kOk when it could be opened, kNotAvailable when not.
quint32 openProbe(std::unique_ptr<Device> pDevice = createPlatformDevice());

} // namespace GevFilter
