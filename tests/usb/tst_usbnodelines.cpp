// The lines of the tree's nodes: a port's connection facts with its device
// descriptor and strings, hub and controller lines, the text sink, and the
// usb.ids vendor list.
#include "usbdecodertestutil.h"

#include "cusbids.h"
#include "cusbtreedecoder.h"
#include "probekit.h"

#include <QtTest>

#include <cstring>

using namespace UsbDecoderTest;

class TestUsbNodeLines : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_vendors.install()); }
    void connectionLines_data();
    void connectionLines();
    void stringLines();
    void hubLines_data();
    void hubLines();
    void controllerLines_data();
    void controllerLines();
    void textSink();
    void usbIdsParser();

private:
    VendorListRoot m_vendors;
};

void TestUsbNodeLines::connectionLines_data()
{
    QTest::addColumn<quint32>("status");
    QTest::addColumn<quint8>("speed");
    QTest::addColumn<QString>("statusText");
    QTest::addColumn<QString>("speedText");
    QTest::addRow("empty port") << 0u << quint8(0) << "NoDeviceConnected" << "Low";
    QTest::addRow("full speed") << 1u << quint8(1) << "DeviceConnected" << "Full";
    QTest::addRow("high speed") << 1u << quint8(2) << "DeviceConnected" << "High";
    QTest::addRow("super speed") << 1u << quint8(3) << "DeviceConnected" << "Unknown";
    QTest::addRow("over-current") << 4u << quint8(1) << "DeviceCausedOvercurrent" << "Full";
    QTest::addRow("status out of range") << 99u << quint8(200) << "Unknown" << "Unknown";
}

void TestUsbNodeLines::connectionLines()
{
    QFETCH(quint32, status);
    QFETCH(quint8, speed);
    QFETCH(QString, statusText);
    QFETCH(QString, speedText);
    UsbPortConnectionInfo info{};
    info.ConnectionIndex = 2;
    const QByteArray dd = QByteArray::fromHex("12010002000000406d0477c01001010200 01");
    std::memcpy(&info.DeviceDescriptor, dd.constData(), 18);
    info.CurrentConfigurationValue = 1;
    info.Speed = speed;
    info.DeviceAddress = 0x1A;
    info.NumberOfOpenPipes = 3;
    info.ConnectionStatus = status;
    CUsbPairSink sink;
    CUsbDescriptorDecoder(sink).printConnection(&info);
    QCOMPARE(sink.vecLines,
             Lines({{"ConnectionStatus:", statusText}, {"Current Config Value:", "0x01"}, {"Device Bus Speed:", speedText},
                    {"Device Address:", "0x1A"}, {"Open Pipes:", "3"}, {"", ""}, {"Device Descriptor:", ""},
                    {"bcdUSB:", "0x0200"}, {"bDeviceClass:", "0x00"}, {"bDeviceSubClass:", "0x00"},
                    {"bDeviceProtocol:", "0x00"}, {"bMaxPacketSize0:", "0x40"}, {"idVendor:", "0x046D(Logitech, Inc.)"},
                    {"idProduct:", "0xC077"}, {"bcdDevice:", "0x0110"}, {"iManufacturer:", "0x01"}, {"iProduct:", "0x02"},
                    {"iSerialNumber:", "0x00"}, {"bNumConfigurations:", "0x01"}}));
}

void TestUsbNodeLines::stringLines()
{
    // Index 1 "QEMU", index 2 with an odd length and a bLength larger than
    // the bytes held (cut to what is there), index 3 empty.
    const QByteArray s1 = QByteArray::fromHex("0a0351004500 4d005500");
    const QByteArray s2 = QByteArray::fromHex("ff034100 42");
    const QByteArray s3 = QByteArray::fromHex("0203");
    UsbStringDescriptorNode n3{nullptr, 3, 0x409, 2, reinterpret_cast<const uint8_t *>(s3.constData())};
    UsbStringDescriptorNode n2{&n3, 2, 0x409, 5, reinterpret_cast<const uint8_t *>(s2.constData())};
    UsbStringDescriptorNode n1{&n2, 1, 0x409, 10, reinterpret_cast<const uint8_t *>(s1.constData())};
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink, &n1);
    QCOMPARE(decoder.stringText(1), QString("QEMU"));
    QCOMPARE(decoder.stringText(2), QString("A"));
    QCOMPARE(decoder.stringText(3), QString(""));
    QVERIFY(decoder.stringText(4).isNull());
    const QByteArray dd = QByteArray::fromHex("12010002000000406d0477c0100101020401");
    decoder.printMember(EUsbMember::Device, reinterpret_cast<const quint8 *>(dd.constData()), 18);
    const QStringList l = labels(sink.vecLines);
    const int at = l.indexOf("iManufacturer:");
    QCOMPARE(sink.vecLines.mid(at, 6), Lines({{"iManufacturer:", "0x01"}, {"", "\"QEMU\""}, {"iProduct:", "0x02"},
                                              {"", "\"A\""}, {"iSerialNumber:", "0x04"}, {"bNumConfigurations:", "0x01"}}));
}

void TestUsbNodeLines::hubLines_data()
{
    QTest::addColumn<quint32>("known");
    QTest::addColumn<quint16>("characteristics");
    QTest::addColumn<bool>("busPowered");
    QTest::addColumn<int>("capsEx");   // -1: missing
    QTest::addColumn<int>("caps");     // -1: missing
    QTest::addColumn<Lines>("expected");

    const Lines head = {{"Root Hub:", "usb1"}};
    QTest::addRow("all known, extended capabilities")
        << quint32(USB_HUB_FIELDS_ALL) << quint16(0x0009) << true << 0x13 << 1
        << head + Lines({{"Hub Power:", "Bus Power"}, {"Number of Ports:", "4"}, {"Power switching:", "Individual"},
                         {"Compound device:", "No"}, {"Over-current Protection:", "Individual"},
                         {"Extended Hub Capability Flags:", "0x000013"}, {"High speed Capable:", "Yes"},
                         {"High speed:", "Yes"}, {"Mulit-transaction Capable:", "No"}, {"Mulit-transaction ON:", "No"},
                         {"Root hub:", "Yes"}, {"Armed for wake on connect:", "No"}, {"Reserved (26 bits):", "0x000000"}});
    QTest::addRow("ganged, compound, bus power only, no extended, plain caps")
        << quint32(USB_HUB_FIELDS_ALL) << quint16(0x0014) << false << -1 << 1
        << head + Lines({{"Hub Power:", "Self Power"}, {"Number of Ports:", "4"}, {"Power switching:", "Ganged"},
                         {"Compound device:", "Yes"}, {"Over-current Protection:", "No Over-current Protection (Bus Power Only)"},
                         {"Extended Hub Capabilities UNAVAILABLE", ""}, {"Hub Capabilities:", "0x000001(High speed)"}});
    QTest::addRow("no capabilities at all")
        << quint32(USB_HUB_FIELDS_ALL) << quint16(0x0002) << false << -1 << -1
        << head + Lines({{"Hub Power:", "Self Power"}, {"Number of Ports:", "4"}, {"Power switching:", "None"},
                         {"Compound device:", "No"}, {"Over-current Protection:", "Global"},
                         {"Extended Hub Capabilities UNAVAILABLE", ""}, {"Hub Capabilities UNAVAILABLE", ""}});
    QTest::addRow("not high speed, reserved bits")
        << quint32(USB_HUB_FIELDS_ALL) << quint16(0x0018) << false << 0x3FFF << 0
        << head + Lines({{"Hub Power:", "Self Power"}, {"Number of Ports:", "4"}, {"Power switching:", "Ganged"},
                         {"Compound device:", "No"}, {"Over-current Protection:", "No Over-current Protection (Bus Power Only)"},
                         {"Extended Hub Capability Flags:", "0x003FFF"}, {"High speed Capable:", "Yes"},
                         {"High speed:", "Yes"}, {"Mulit-transaction Capable:", "Yes"}, {"Mulit-transaction ON:", "Yes"},
                         {"Root hub:", "Yes"}, {"Armed for wake on connect:", "Yes"}, {"Reserved (26 bits):", "0x00007F"}});
    QTest::addRow("descriptor not readable (ports and power known)")
        << quint32(UsbHubFieldPorts | UsbHubFieldBusPowered) << quint16(0) << false << -1 << 0
        << head + Lines({{"Hub Power:", "Self Power"}, {"Number of Ports:", "4"}, {"Power switching:", "UNAVAILABLE"},
                         {"Compound device:", "UNAVAILABLE"}, {"Over-current Protection:", "UNAVAILABLE"},
                         {"Extended Hub Capabilities UNAVAILABLE", ""}, {"Hub Capabilities:", "0x000000(Not high speed)"}});
}

void TestUsbNodeLines::hubLines()
{
    QFETCH(quint32, known);
    QFETCH(quint16, characteristics);
    QFETCH(bool, busPowered);
    QFETCH(int, capsEx);
    QFETCH(int, caps);
    QFETCH(Lines, expected);
    UsbHubInformationBlock block{};
    block.HubDescriptor.bNumberOfPorts = 4;
    block.HubDescriptor.wHubCharacteristics = characteristics;
    block.HubIsBusPowered = busPowered ? 1 : 0;
    UsbHubCapabilitiesEx ex{quint32(capsEx)};
    UsbHubCapabilities plain{quint32(caps)};
    const UsbWChar name[] = {'u', 's', 'b', '1', 0};
    UsbHubNodeInfo hub{};
    hub.Kind = UsbNodeRootHub;
    hub.uHubFieldsKnown = known;
    hub.pHubInfo = &block;
    hub.pHubName = name;
    hub.pHubCapsEx = capsEx < 0 ? nullptr : &ex;
    hub.pHubCaps = caps < 0 ? nullptr : &plain;
    CUsbPairSink sink;
    CUsbTreeDecoder(sink).printNode(&hub);
    QCOMPARE(sink.vecLines, expected);

    // Without the information block only the name line remains.
    hub.pHubInfo = nullptr;
    CUsbPairSink bare;
    CUsbTreeDecoder(bare).printNode(&hub);
    QCOMPARE(bare.vecLines, Lines({{"Root Hub:", "usb1"}}));
}

void TestUsbNodeLines::controllerLines_data()
{
    QTest::addColumn<quint32>("vendor");
    QTest::addColumn<quint32>("device");
    QTest::addColumn<QStringList>("debugPort");
    QTest::addRow("8086:27CC has debug port 1") << 0x8086u << 0x27CCu << QStringList({"1"});
    QTest::addRow("10DE:00D8 has debug port 1") << 0x10DEu << 0x00D8u << QStringList({"1"});
    QTest::addRow("8086:27CD is not listed") << 0x8086u << 0x27CDu << QStringList();
    QTest::addRow("QEMU xHCI is not listed") << 0x1B36u << 0x000Du << QStringList();
}

void TestUsbNodeLines::controllerLines()
{
    QFETCH(quint32, vendor);
    QFETCH(quint32, device);
    QFETCH(QStringList, debugPort);
    const UsbWChar key[] = {'0', '0', '0', '0', ':', '0', '0', ':', '1', 'd', '.', '7', 0};
    UsbControllerInfo info{};
    info.pDriverKey = key;
    info.VendorID = vendor;
    info.DeviceID = device;
    info.SubSysID = 0x11001AF4;
    info.Revision = 0x01;
    CUsbPairSink sink;
    CUsbTreeDecoder(sink).printNode(&info);
    Lines expected = {{"DriverKey:", "0000:00:1d.7"},
                      {"VendorID:", "0x" + QString::number(vendor, 16).toUpper()},
                      {"DeviceID:", "0x" + QString::number(device, 16).toUpper()},
                      {"SubSysID:", "0x11001AF4"},
                      {"Revision:", "0x1"}};
    for (const QString &port : debugPort)
        expected.append({"DebugPort:", port});
    QCOMPARE(sink.vecLines, expected);
}

void TestUsbNodeLines::textSink()
{
    CUsbTextSink sink;
    sink.addLine("bLength:", "0x09");
    sink.addHeading("Endpoint Descriptor:");
    sink.addLine("", "\"QEMU\"");
    QCOMPARE(sink.listLines, QStringList({"bLength:    0x09", "  ", "Endpoint Descriptor:    ", "    \"QEMU\""}));
}

void TestUsbNodeLines::usbIdsParser()
{
    const QHash<quint16, QString> map = CUsbIds::parseVendors(
        "# comment\n0001  Fry's Electronics\n\t7778  Counterfeit flash drive\n1d6b  Linux Foundation\r\n"
        "zzzz  junk\n12\n\t0002  orphan\nC 09  Hub\n1234  after the classes\n");
    QCOMPARE(map.value(0x0001), QString("Fry's Electronics"));
    QCOMPARE(map.value(0x1d6b), QString("Linux Foundation"));
    QVERIFY(!map.contains(0x7778));
    QVERIFY(!map.contains(0x1234));
    QCOMPARE(map.size(), 2);
    QCOMPARE(CUsbIds::vendorName(0x0627), QString("Adomax Technology Co., Ltd"));
    QVERIFY(CUsbIds::vendorName(0x0999).isEmpty());
    QVERIFY(CUsbIds::sourceFile().startsWith(m_vendors.path()));
}

QTEST_GUILESS_MAIN(TestUsbNodeLines)
#include "tst_usbnodelines.moc"
