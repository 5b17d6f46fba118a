#include "gevfilterclient.h"

#include <mutex>
#include <QtTest>

#include <thread>

using namespace GevFilter;

namespace {

// A driver stand-in that records every request.
class FakeDevice : public Device
{
public:
    struct Call
    {
        quint32 uCode;
        QByteArray input;
    };
    QList<OpenResult> listOpenAnswers; // consumed per open, then Opened
    QList<bool> listOpenModes;         // query-only flag of each open
    bool bOpen = false;
    bool bEventsOk = true;
    bool bEvents = false;
    bool bRequestsFail = false;
    QByteArray answer;
    QList<int> listSignalled; // events signalled before a wait
    mutable std::mutex mutex; // a pthread mutex, which ThreadSanitizer sees
    QList<Call> listCalls;

    OpenResult open(bool bQueryOnly) override
    {
        listOpenModes << bQueryOnly;
        const OpenResult result = listOpenAnswers.isEmpty() ? OpenResult::Opened : listOpenAnswers.takeFirst();
        bOpen = result == OpenResult::Opened;
        return result;
    }
    void close() override { bOpen = false; }
    bool isOpen() const override { return bOpen; }
    bool request(quint32 uCode, const QByteArray &input, int nOutSize, QByteArray *pOut) override
    {
        std::lock_guard<std::mutex> locker(mutex);
        listCalls << Call{uCode, input};
        if (bRequestsFail)
            return false;
        *pOut = answer.left(nOutSize);
        return true;
    }
    qint64 read(char *pBuffer, qint64 nLength) override
    {
        if (nLength < 8)
            return -1;
        pBuffer[6] = 'o';
        pBuffer[7] = 'k';
        return 8;
    }
    bool createEvents() override { return bEvents = bEventsOk; }
    void closeEvents() override { bEvents = false; }
    bool hasEvents() const override { return bEvents; }
    quint32 eventHandle(int nIndex) const override { return 0x100u + quint32(nIndex); }
    int waitAny(int) override { return listSignalled.isEmpty() ? -1 : listSignalled.takeFirst(); }
    bool poll(int nIndex) override { return listSignalled.removeOne(nIndex); }
    QList<quint32> codes() const
    {
        std::lock_guard<std::mutex> locker(mutex);
        QList<quint32> list;
        for (const Call &call : listCalls)
            list << call.uCode;
        return list;
    }
};

} // namespace

class TstGevFilterClient : public QObject
{
    Q_OBJECT

private slots:
    void codes_data()
    {
        QTest::addColumn<int>("request");
        QTest::addColumn<uint>("restricted");
        QTest::addColumn<uint>("normal");
        QTest::newRow("start") << int(Request::Start) << 0x120C08u << 0x12C808u;
        QTest::newRow("info48") << int(Request::Info48) << 0x120C1Cu << 0x12C81Cu;
        QTest::newRow("info64") << int(Request::Info64) << 0x120C20u << 0x12C820u;
        QTest::newRow("driver value") << int(Request::DriverValue) << 0x120C24u << 0x12C824u;
        QTest::newRow("read A same in both") << int(Request::ReadA) << 0x120C28u << 0x120C28u;
        QTest::newRow("read B") << int(Request::ReadB) << 0x120C2Cu << 0x12C82Cu;
        QTest::newRow("read C") << int(Request::ReadC) << 0x120C30u << 0x12C830u;
        QTest::newRow("stop") << int(Request::Stop) << 0x120C34u << 0x12C834u;
        QTest::newRow("keep alive") << int(Request::KeepAlive) << 0x120C38u << 0x12C838u;
    }
    void codes()
    {
        QFETCH(int, request);
        QFETCH(uint, restricted);
        QFETCH(uint, normal);
        QCOMPARE(requestCode(Request(request), true), restricted);
        QCOMPARE(requestCode(Request(request), false), normal);
    }

    void blocks()
    {
        QCOMPARE(addressBlock(0xC0A80102u, 3956).toHex(), QByteArray("c0a801020f74"));
        const quint32 events[3] = {0x11223344u, 5, 6};
        const QByteArray block = startBlock(9000, 0xC0A80102u, 3956, 0xAABBCCDDu, 2, events);
        QCOMPARE(block.size(), 36);
        QCOMPARE(block.toHex(), QByteArray("28230000" "c0a80102" "0f74" "03" "00" "ddccbbaa" "02000000"
                                           "44332211" "05000000" "06000000" "00000000"));
    }

    void startPacketSize_data()
    {
        QTest::addColumn<uint>("size");
        QTest::addColumn<uint>("result");
        QTest::newRow("63 too small") << 63u << kInvalidArgument;
        QTest::newRow("64 smallest") << 64u << kOk;
        QTest::newRow("10240 largest") << 10240u << kOk;
        QTest::newRow("10241 too large") << 10241u << kInvalidArgument;
    }
    void startPacketSize()
    {
        QFETCH(uint, size);
        QFETCH(uint, result);
        auto pOwned = std::make_unique<FakeDevice>();
        FakeDevice *pDevice = pOwned.get();
        Client client(std::move(pOwned));
        QCOMPARE(client.create(), kOk);
        client.setPacketSize(size);
        client.setKeepAliveTiming(1, 1);
        QCOMPARE(client.start(), quint32(result));
        client.stop(); // the keep-alive thread has ended before the calls are read
        if (result != kOk) {
            QVERIFY(pDevice->codes().isEmpty()); // no request sent
            QVERIFY(pDevice->listOpenModes.isEmpty());
        } else {
            QCOMPARE(pDevice->codes().value(0), 0x12C808u);
            QCOMPARE(pDevice->listCalls.value(0).input.size(), 36);
        }
    }

    void restrictedModeUsesFirstColumn()
    {
        auto pOwned = std::make_unique<FakeDevice>();
        FakeDevice *pDevice = pOwned.get();
        pDevice->listOpenAnswers = {Device::OpenResult::AccessDenied};
        Client client(std::move(pOwned));
        QCOMPARE(client.create(), kOk);
        client.setAddress(0x0A000001u, 50000);
        client.setPacketSize(1500);
        client.setKeepAliveTiming(2, 2);
        QCOMPARE(client.start(), kOk);
        QVERIFY(client.isRestricted());
        QCOMPARE(pDevice->listOpenModes, (QList<bool>{false, true}));
        QTRY_VERIFY_WITH_TIMEOUT(pDevice->codes().contains(0x120C38u), 2000); // keep-alive, restricted code
        QCOMPARE(client.stop(), kOk);
        QVERIFY(!client.isRunning());
        QCOMPARE(pDevice->codes().first(), 0x120C08u);
        QCOMPARE(pDevice->codes().last(), 0x120C34u);
        QCOMPARE(pDevice->listCalls.last().input, addressBlock(0x0A000001u, 50000));
        QVERIFY(!client.isRestricted()); // cleared on stop
        QVERIFY(!pDevice->bOpen);
    }

    void openFailures_data()
    {
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<uint>("result");
        QTest::addColumn<int>("opens");
        QTest::newRow("opens") << QList<int>{int(Device::OpenResult::Opened)} << kOk << 1;
        QTest::newRow("denied then query-only opens") << QList<int>{int(Device::OpenResult::AccessDenied)} << kOk << 2;
        QTest::newRow("denied twice") << QList<int>{int(Device::OpenResult::AccessDenied), int(Device::OpenResult::AccessDenied)}
                                      << kNotAvailable << 2;
        QTest::newRow("missing: no second try") << QList<int>{int(Device::OpenResult::Failed)} << kNotAvailable << 1;
    }
    void openFailures()
    {
        QFETCH(QList<int>, answers);
        QFETCH(uint, result);
        QFETCH(int, opens);
        // Reports, when destroyed, how many requests the probe sent.
        struct Counted : FakeDevice
        {
            int *pCount = nullptr;
            ~Counted() override { *pCount = listCalls.size(); }
        };
        int nCalls = -1;
        auto pCounted = std::make_unique<Counted>();
        pCounted->pCount = &nCalls;
        for (int nAnswer : answers)
            pCounted->listOpenAnswers << Device::OpenResult(nAnswer);
        QCOMPARE(openProbe(std::move(pCounted)), quint32(result));
        QCOMPARE(nCalls, 0); // the probe only opens and closes, and frees the device
        auto pOwned = std::make_unique<FakeDevice>();
        for (int nAnswer : answers)
            pOwned->listOpenAnswers << Device::OpenResult(nAnswer);
        FakeDevice *pDevice = pOwned.get();
        Client client(std::move(pOwned));
        QCOMPARE(client.openDevice(), result == kOk);
        QCOMPARE(pDevice->listOpenModes.size(), opens);
    }

    void startFailures()
    {
        auto pOwned = std::make_unique<FakeDevice>();
        pOwned->bRequestsFail = true;
        Client client(std::move(pOwned));
        client.setPacketSize(1500);
        QCOMPARE(client.start(), kRequestFailed);
        QVERIFY(!client.isRunning());

        auto pMissing = std::make_unique<FakeDevice>();
        pMissing->listOpenAnswers = {Device::OpenResult::Failed};
        Client missing(std::move(pMissing));
        missing.setPacketSize(1500);
        QCOMPARE(missing.start(), kNotAvailable);

        Client none(nullptr);
        QCOMPARE(none.start(), kNoClient);
    }

    void events()
    {
        auto pOwned = std::make_unique<FakeDevice>();
        FakeDevice *pDevice = pOwned.get();
        Client client(std::move(pOwned));
        QCOMPARE(client.waitForEvents(10), kNoEvents);
        QCOMPARE(client.create(), kOk);
        QCOMPARE(client.waitForEvents(10), 0u); // nothing signalled: 0 after the time-out
        pDevice->listSignalled = {1, 2};
        QCOMPARE(client.waitForEvents(10), 6u);
        pDevice->listSignalled = {0, 2}; // 1 not signalled: the scan stops there
        QCOMPARE(client.waitForEvents(10), 1u);
        pDevice->listSignalled = {-2};
        QCOMPARE(client.waitForEvents(10), kRequestFailed);

        auto pNoEvents = std::make_unique<FakeDevice>();
        pNoEvents->bEventsOk = false;
        Client broken(std::move(pNoEvents));
        QCOMPARE(broken.create(), kNotAvailable);
    }

    void readsAndInformation()
    {
        auto pOwned = std::make_unique<FakeDevice>();
        FakeDevice *pDevice = pOwned.get();
        pDevice->answer = QByteArray(64, 'i');
        Client client(std::move(pOwned));
        client.setAddress(0x01020304u, 0x0506);
        char buffer[16] = {};
        QCOMPARE(client.read(buffer, 5), qint64(0));
        QCOMPARE(client.read(buffer, 16), qint64(8));
        QCOMPARE(QByteArray(buffer, 8), QByteArray("\x01\x02\x03\x04\x05\x06ok", 8));
        QByteArray info;
        QCOMPARE(client.info48(&info), qint64(48));
        QCOMPARE(client.info64(&info), qint64(64));
        QCOMPARE(client.info48(nullptr), -qint64(kInvalidArgument));
        pDevice->answer = QByteArray(10, 'i');
        QCOMPARE(client.info48(&info), -qint64(kRequestFailed)); // wrong length
        quint32 uValue = 0;
        pDevice->answer = QByteArray("\x2a\0\0\0", 4);
        QCOMPARE(client.driverValue(&uValue), qint64(4));
        QCOMPARE(uValue, 42u);
        char data[4];
        QCOMPARE(client.readData(Request::ReadB, data, 4), qint64(4));
        QCOMPARE(pDevice->codes().last(), 0x12C82Cu);
        QCOMPARE(client.readData(Request::Stop, data, 4), -qint64(kInvalidArgument));
    }
};

QTEST_GUILESS_MAIN(TstGevFilterClient)
#include "tst_gevfilterclient.moc"
