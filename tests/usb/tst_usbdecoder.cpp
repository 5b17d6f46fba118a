// The descriptor decoder's configuration walk: its stride and bounds, the
// dispatch by type and length, the configuration, interface and endpoint
// lines, and bad input that must never be read past.
#include "usbdecodertestutil.h"

#include <QtTest>

#include <cstring>
#include <vector>

using namespace UsbDecoderTest;

class TestUsbDecoder : public QObject
{
    Q_OBJECT

private slots:
    // The bad-input test prints device descriptors, which name their vendor.
    void initTestCase() { QVERIFY(m_vendors.install()); }
    void walkStride();
    void walkBounds_data();
    void walkBounds();
    void dispatchByLength_data();
    void dispatchByLength();
    void configurationLines_data();
    void configurationLines();
    void endpointLines();
    void interfaceAnnotations_data();
    void interfaceAnnotations();
    void garbageNeverReadsOutside();

private:
    VendorListRoot m_vendors;
};

void TestUsbDecoder::walkStride()
{
    // Seven 9-byte descriptors: the walk advances by twice bLength and so
    // decodes the 1st, 3rd, 5th and 7th.
    QByteArray block = config(63);
    for (int i = 1; i <= 6; ++i)
        block += interfaceDesc(quint8(i));
    const Lines lines = walk(block);
    QCOMPARE(headings(lines), QStringList({"Configuration Descriptor:", "Interface Descriptor:",
                                           "Interface Descriptor:", "Interface Descriptor:"}));
    QCOMPARE(valuesOf(lines, "bInterfaceNumber:"), QStringList({"0x02", "0x04", "0x06"}));
}

void TestUsbDecoder::walkBounds_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<int>("nBytes");
    QTest::addColumn<QStringList>("expected");

    const QStringList cfg = {"Configuration Descriptor:"};
    QTest::addRow("descriptor past wTotalLength ends the walk")
        << (config(25) + QByteArray(9, '\x11') + interfaceDesc(1)) << -1 << cfg;
    QTest::addRow("descriptor ending at wTotalLength is printed")
        << (config(27) + QByteArray(9, '\x11') + interfaceDesc(1)) << -1
        << QStringList({"Configuration Descriptor:", "Interface Descriptor:"});
    QTest::addRow("wTotalLength larger than the data") << (config(4000) + QByteArray(9, '\x11') + interfaceDesc(1))
                                                       << -1
                                                       << QStringList({"Configuration Descriptor:", "Interface Descriptor:"});
    QTest::addRow("truncated block") << (config(36) + QByteArray(9, '\x11') + interfaceDesc(1)) << 24 << cfg;
    QTest::addRow("bLength 0 stops") << (config(40) + QByteArray(9, '\x11') + QByteArray(13, '\0')) << -1 << cfg;
    QTest::addRow("bLength 0 first") << QByteArray::fromHex("00020a000000000000000000") << -1 << QStringList();
    QTest::addRow("three bytes") << QByteArray::fromHex("090200") << -1 << QStringList();
    QTest::addRow("no bytes") << QByteArray() << -1 << QStringList();
    QTest::addRow("wTotalLength 2") << QByteArray::fromHex("090202000101008032") << -1 << QStringList();
    QTest::addRow("wTotalLength 3 with bLength 3 is unknown")
        << QByteArray::fromHex("0302030009") << -1 << QStringList({"Unknown Descriptor:"});
    QTest::addRow("fewer than four bytes") << QByteArray::fromHex("090200") << -1 << QStringList();
    QTest::addRow("bLength 1 is unknown") << (config(30) + QByteArray(9, '\0') + QByteArray::fromHex("01") + QByteArray(11, '\0'))
                                          << -1 << QStringList({"Configuration Descriptor:", "Unknown Descriptor:"});
}

void TestUsbDecoder::walkBounds()
{
    QFETCH(QByteArray, block);
    QFETCH(int, nBytes);
    QFETCH(QStringList, expected);
    // Copy into a buffer of exactly the given size so a sanitizer sees any read past it.
    const int n = nBytes < 0 ? block.size() : nBytes;
    QScopedArrayPointer<quint8> exact(new quint8[size_t(qMax(n, 1))]);
    std::memcpy(exact.data(), block.constData(), size_t(n));
    CUsbPairSink sink;
    CUsbDescriptorDecoder(sink).walkConfiguration(exact.data(), n);
    QCOMPARE(headings(sink.vecLines), expected);
}

void TestUsbDecoder::dispatchByLength_data()
{
    QTest::addColumn<QByteArray>("descriptor");
    QTest::addColumn<QString>("heading");

    QTest::addRow("endpoint of 7") << QByteArray::fromHex("0705810308000a") << "Endpoint Descriptor:";
    QTest::addRow("endpoint of 10") << QByteArray::fromHex("0a05010940000100 0200") << "Endpoint Descriptor:";
    QTest::addRow("endpoint of 9 is unknown") << QByteArray::fromHex("090501094000010000") << "Unknown Descriptor:";
    QTest::addRow("interface of 12") << QByteArray::fromHex("0c0400000003000000 010000") << "Interface Descriptor:";
    QTest::addRow("interface of 10 is unknown") << QByteArray::fromHex("0a040000000300000000") << "Unknown Descriptor:";
    QTest::addRow("configuration of 10 is unknown") << QByteArray::fromHex("0a020000010100800000") << "Unknown Descriptor:";
    QTest::addRow("HID of 9 is unknown") << QByteArray::fromHex("092111010001223400") << "Unknown Descriptor:";
    QTest::addRow("HID of 10") << QByteArray::fromHex("0a211101000122340000") << "HID Descriptor:";
    QTest::addRow("other type is unknown") << QByteArray::fromHex("0730000000000000") << "Unknown Descriptor:";
}

void TestUsbDecoder::dispatchByLength()
{
    QFETCH(QByteArray, descriptor);
    QFETCH(QString, heading);
    // Behind a configuration header and 9 filler bytes (the stride skips them).
    const QByteArray block = config(18 + descriptor.size()) + QByteArray(9, '\x11') + descriptor;
    const Lines lines = walk(block);
    QCOMPARE(headings(lines), QStringList({"Configuration Descriptor:", heading}));
    if (heading == "Unknown Descriptor:") {
        const int at = labels(lines).lastIndexOf("Unknown Descriptor:");
        QCOMPARE(lines.mid(at + 1), Lines({{"bDescriptorType:", QStringLiteral("0x%1").arg(quint8(descriptor[1]), 2, 16, QChar('0')).toUpper().replace("0X", "0x")},
                                           {"bLength:", QStringLiteral("0x%1").arg(quint8(descriptor[0]), 2, 16, QChar('0')).toUpper().replace("0X", "0x")}}));
    }
}

void TestUsbDecoder::configurationLines_data()
{
    QTest::addColumn<quint8>("attributes");
    QTest::addColumn<quint8>("power");
    QTest::addColumn<Lines>("expected");

    QTest::addRow("bmAttributes 0xA0, MaxPower 0xFA")
        << quint8(0xA0) << quint8(0xFA)
        << Lines({{"", ""}, {"Configuration Descriptor:", ""}, {"wTotalLength:", "0x0009"}, {"bNumInterfaces:", "0x01"},
                  {"bConfigurationValue:", "0x01"}, {"iConfiguration:", "0x00"}, {"bmAttributes:", "0xA0"},
                  {"Bus Powered", ""}, {"Remote Wakeup", ""}, {"MaxPower:", "0xFA(500 mA)"}});
    QTest::addRow("self powered, 0 mA")
        << quint8(0xC0) << quint8(0)
        << Lines({{"", ""}, {"Configuration Descriptor:", ""}, {"wTotalLength:", "0x0009"}, {"bNumInterfaces:", "0x01"},
                  {"bConfigurationValue:", "0x01"}, {"iConfiguration:", "0x00"}, {"bmAttributes:", "0xC0"},
                  {"Bus Powered", ""}, {"Self Powered", ""}, {"MaxPower:", "0x00(0 mA)"}});
    QTest::addRow("all three") << quint8(0xE0) << quint8(1)
                               << Lines({{"", ""}, {"Configuration Descriptor:", ""}, {"wTotalLength:", "0x0009"},
                                         {"bNumInterfaces:", "0x01"}, {"bConfigurationValue:", "0x01"},
                                         {"iConfiguration:", "0x00"}, {"bmAttributes:", "0xE0"}, {"Bus Powered", ""},
                                         {"Self Powered", ""}, {"Remote Wakeup", ""}, {"MaxPower:", "0x01(2 mA)"}});
}

void TestUsbDecoder::configurationLines()
{
    QFETCH(quint8, attributes);
    QFETCH(quint8, power);
    QFETCH(Lines, expected);
    QCOMPARE(walk(config(9, attributes, power)), expected);
}

void TestUsbDecoder::endpointLines()
{
    QCOMPARE(member(EUsbMember::Endpoint, QByteArray::fromHex("0705810300020a")),
             Lines({{"", ""}, {"Endpoint Descriptor:", ""}, {"bEndpointAddress:", "0x81  IN"},
                    {"Transfer Type:", "Interrupt"}, {"wMaxPacketSize:", "0x0200(512)"}, {"bInterval:", "0x0A"}}));
    QCOMPARE(member(EUsbMember::Endpoint, QByteArray::fromHex("0a0502020004010203")),
             Lines({{"", ""}, {"Endpoint Descriptor:", ""}, {"bEndpointAddress:", "0x02  OUT"},
                    {"Transfer Type:", "Bulk"}, {"wMaxPacketSize:", "0x0400(1024)"}, {"bInterval:", "0x01"}}))
        ;
    // A true 10-byte form (bLength 10) prints wInterval and bSyncAddress.
    QCOMPARE(member(EUsbMember::Endpoint, QByteArray::fromHex("0a050101c00001000500")),
             Lines({{"", ""}, {"Endpoint Descriptor:", ""}, {"bEndpointAddress:", "0x01  OUT"},
                    {"Transfer Type:", "Isochronous"}, {"wMaxPacketSize:", "0x00C0(192)"}, {"wInterval:", "0x0001"},
                    {"bSyncAddress:", "0x05"}}));
    QCOMPARE(valuesOf(member(EUsbMember::Endpoint, QByteArray::fromHex("07050000400000")), "Transfer Type:"),
             QStringList({"Control"}));
}

void TestUsbDecoder::interfaceAnnotations_data()
{
    QTest::addColumn<quint8>("cls");
    QTest::addColumn<quint8>("subclass");
    QTest::addColumn<QString>("classValue");
    QTest::addColumn<QString>("subclassValue");
    QTest::addRow("audio control") << quint8(1) << quint8(1) << "0x01(Audio)" << "0x01(Audio Control)";
    QTest::addRow("audio streaming") << quint8(1) << quint8(2) << "0x01(Audio)" << "0x02(Audio Streaming)";
    QTest::addRow("audio midi") << quint8(1) << quint8(3) << "0x01(Audio)" << "0x03";
    QTest::addRow("hid") << quint8(3) << quint8(1) << "0x03(HID)" << "0x01";
    QTest::addRow("hub") << quint8(9) << quint8(0) << "0x09(Hub)" << "0x00";
    QTest::addRow("mass storage") << quint8(8) << quint8(6) << "0x08" << "0x06";
}

void TestUsbDecoder::interfaceAnnotations()
{
    QFETCH(quint8, cls);
    QFETCH(quint8, subclass);
    QFETCH(QString, classValue);
    QFETCH(QString, subclassValue);
    const Lines lines = member(EUsbMember::Interface, interfaceDesc(0, cls, subclass));
    QCOMPARE(valuesOf(lines, "bInterfaceClass:"), QStringList({classValue}));
    QCOMPARE(valuesOf(lines, "bInterfaceSubClass:"), QStringList({subclassValue}));
    QCOMPARE(valuesOf(lines, "wNumClasses:"), QStringList());
    QCOMPARE(valuesOf(member(EUsbMember::Interface, QByteArray::fromHex("0c040000000300000002 0100")), "wNumClasses:"),
             QStringList({"0x0102"}));
}

void TestUsbDecoder::garbageNeverReadsOutside()
{
    // A busy block laid out for the walk's stride (each descriptor followed
    // by filler of its own length), so the whole block decodes.
    const QList<QByteArray> descriptors = {
        config(0), interfaceDesc(0, 1, 1), QByteArray::fromHex("0a24010001380002 0102"),
        QByteArray::fromHex("0c240201010100083f060006"), interfaceDesc(1, 1, 2),
        QByteArray::fromHex("0b2402010202100180bb00"), QByteArray::fromHex("0a211101000122340000"),
        QByteArray::fromHex("0a050101c00001000500")};
    QByteArray block;
    for (const QByteArray &d : descriptors)
        block += d + QByteArray(d.size(), '\x11');
    block[2] = char(block.size());
    const Lines full = walk(block);
    QCOMPARE(headings(full),
             QStringList({"Configuration Descriptor:", "Interface Descriptor:",
                          "Audio Control Interface Header Descriptor:", "Audio Control Input Terminal Descriptor:",
                          "Interface Descriptor:", "Audio Streaming Format Type Descriptor:", "HID Descriptor:",
                          "Endpoint Descriptor:"}));
    QCOMPARE(valuesOf(full, "tSamFreq[1]:"), QStringList({"0x00BB80(48000 Hz)"}));
    QCOMPARE(valuesOf(full, "wMaxPacketSize:"), QStringList({"0x00C0(192)"}));

    // Every prefix, in a heap buffer of exactly that size (a sanitizer build
    // catches any read past its end): the walk prints the descriptors that
    // fit, as the whole block prints them, and nothing else; every member
    // over every tail prints the member's heading first.
    const auto *pFull = reinterpret_cast<const quint8 *>(block.constData());
    for (int n = 0; n <= block.size(); ++n) {
        std::vector<quint8> exact(pFull, pFull + n);
        const quint8 *pData = n > 0 ? exact.data() : nullptr;
        CUsbPairSink sink;
        CUsbDescriptorDecoder(sink).walkConfiguration(pData, n);
        QVERIFY2(sink.vecLines == full.mid(0, sink.vecLines.size()), qPrintable(QString("prefix %1").arg(n)));
        for (int m = 0; m <= int(EUsbMember::AsDataEndpoint); ++m) {
            for (int off = 0; off < n; off += 7) {
                std::vector<quint8> tail(exact.begin() + off, exact.end());
                CUsbPairSink one;
                CUsbDescriptorDecoder(one).printMember(EUsbMember(m), tail.data(), int(tail.size()));
                CUsbPairSink whole;
                CUsbDescriptorDecoder(whole).printMember(EUsbMember(m), pFull + off, block.size() - off);
                QVERIFY(one.vecLines.size() >= 2);
                QCOMPARE(one.vecLines.mid(0, 2), whole.vecLines.mid(0, 2));
            }
        }
    }
    // A prefix that ends inside the last descriptor loses only that one.
    const int nCut = block.size() - 12;
    std::vector<quint8> cut(pFull, pFull + nCut);
    const Lines cutLines = walk(QByteArray(reinterpret_cast<const char *>(cut.data()), nCut));
    QCOMPARE(headings(cutLines), headings(full).mid(0, 7));
}

QTEST_GUILESS_MAIN(TestUsbDecoder)
#include "tst_usbdecoder.moc"
