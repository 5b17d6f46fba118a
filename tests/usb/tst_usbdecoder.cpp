// The descriptor decoder and the node lines: the configuration walk with its
// stride and bounds, every member's formats, the hub, controller and port
// lines, and bad input.
#include "cusbdescriptordecoder.h"
#include "cusbids.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "probekit.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cstring>

using Lines = QVector<QPair<QString, QString>>;

namespace {

Lines walk(const QByteArray &block, int nBytes = -1)
{
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    decoder.walkConfiguration(reinterpret_cast<const quint8 *>(block.constData()), nBytes < 0 ? block.size() : nBytes);
    return sink.vecLines;
}

Lines member(EUsbMember eMember, const QByteArray &bytes)
{
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    decoder.printMember(eMember, reinterpret_cast<const quint8 *>(bytes.constData()), bytes.size());
    return sink.vecLines;
}

QStringList headings(const Lines &lines)
{
    QStringList list;
    for (int i = 1; i < lines.size(); ++i)
        if (lines[i - 1].first.isEmpty() && lines[i - 1].second.isEmpty() && !lines[i].first.isEmpty())
            list << lines[i].first;
    return list;
}

QStringList valuesOf(const Lines &lines, const QString &label)
{
    QStringList list;
    for (const auto &line : lines)
        if (line.first == label)
            list << line.second;
    return list;
}

QStringList labels(const Lines &lines)
{
    QStringList list;
    for (const auto &line : lines)
        list << line.first;
    return list;
}

// A configuration header with the given wTotalLength, attributes and power.
QByteArray config(int nTotal, quint8 attributes = 0x80, quint8 power = 0x32)
{
    QByteArray c = QByteArray::fromHex("0902000001010000");
    c[2] = char(nTotal & 0xFF);
    c[3] = char(nTotal >> 8);
    c[7] = char(attributes);
    c += char(power);
    return c;
}

QByteArray interfaceDesc(quint8 number, quint8 cls = 3, quint8 subclass = 0, quint8 protocol = 0)
{
    QByteArray d = QByteArray::fromHex("090400000100000000");
    d[2] = char(number);
    d[5] = char(cls);
    d[6] = char(subclass);
    d[7] = char(protocol);
    return d;
}

// A walk over a configuration holding one interface and one class-specific
// descriptor after it (filler after the 9-byte descriptors, as the walk
// steps by twice bLength).
Lines walkInterfaceAnd(const QByteArray &iface, const QByteArray &descriptor)
{
    QByteArray block = config(0);
    block += QByteArray(9, '\x11');
    block += iface;
    block += QByteArray(9, '\x11');
    block += descriptor;
    block[2] = char(block.size());
    return walk(block);
}

} // namespace

class TestUsbDecoder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
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
    void audioMembers_data();
    void audioMembers();
    void audioDispatch();
    void audioDeclinesOtherLayouts_data();
    void audioDeclinesOtherLayouts();
    void connectionLines_data();
    void connectionLines();
    void stringLines();
    void hubLines_data();
    void hubLines();
    void controllerLines_data();
    void controllerLines();
    void textSink();
    void usbIdsParser();
    void garbageNeverReadsOutside();

private:
    QTemporaryDir m_dir;
};

void TestUsbDecoder::initTestCase()
{
    // A vendor list of our own, so vendor names do not depend on the machine.
    QVERIFY(m_dir.isValid());
    QDir().mkpath(m_dir.path() + "/usr/share/misc");
    QFile ids(m_dir.path() + "/usr/share/misc/usb.ids");
    QVERIFY(ids.open(QIODevice::WriteOnly));
    ids.write("# test list\n046d  Logitech, Inc.\n\tc077  M105 Optical Mouse\n0627  Adomax Technology Co., Ltd\n"
              "C 03  Human Interface Device\n0999  not a vendor\n");
    ids.close();
    qputenv("VETRIX_SYSROOT", m_dir.path().toLocal8Bit());
}

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

void TestUsbDecoder::audioMembers_data()
{
    QTest::addColumn<int>("subclass");
    QTest::addColumn<QByteArray>("descriptor");
    QTest::addColumn<Lines>("expected");

    const auto common = [](const char *heading, const char *len, const char *type, const char *subtype) {
        return Lines({{"", ""}, {heading, ""}, {"bLength:", len}, {"bDescriptorType:", type}, {"bDescriptorSubtype:", subtype}});
    };
    QTest::addRow("header with two interfaces")
        << 1 << QByteArray::fromHex("0a24010001380002 0102")
        << common("Audio Control Interface Header Descriptor:", "0x0A", "0x24", "0x01")
               + Lines({{"bcdADC:", "0x0100"}, {"wTotalLength:", "0x0038"}, {"bInCollection:", "0x02"},
                        {"bInCollection[1]:", "0x01"}, {"bInCollection[2]:", "0x02"}});
    QTest::addRow("input terminal, USB streaming")
        << 1 << QByteArray::fromHex("0c240201010100083f060006")
        << common("Audio Control Input Terminal Descriptor:", "0x0C", "0x24", "0x02")
               + Lines({{"bTerminalID:", "0x01"}, {"wTerminalType:", "0x0101(USB streaming)"}, {"bAssocTerminal:", "0x00"},
                        {"bNrChannels:", "0x08"}, {"wChannelConfig:", "0x063F"}, {"iChannelNames:", "0x00"},
                        {"iTerminal:", "0x06"}});
    QTest::addRow("output terminal, unlisted type")
        << 1 << QByteArray::fromHex("09240303ff7f000200")
        << common("Audio Control Output Terminal Descriptor:", "0x09", "0x24", "0x03")
               + Lines({{"bTerminalID:", "0x03"}, {"wTerminalType:", "0x7FFF"}, {"bAssocTerminal:", "0x00"},
                        {"bSoruceID:", "0x02"}, {"iTerminal:", "0x00"}});
    QTest::addRow("mixer unit")
        << 1 << QByteArray::fromHex("0d2404050201020203000001ff 00")
        << common("Audio Control Mixer Unit Descriptor:", "0x0D", "0x24", "0x04")
               + Lines({{"bUnitID:", "0x05"}, {"bNrInPins:", "0x02"}, {"baSourceID[1]:", "0x01"}, {"baSourceID[2]:", "0x02"},
                        {"bNrChannels:", "0x02"}, {"wChannelConfig:", "0x0003"}, {"iChannelNames:", "0x00"},
                        {"bmControls:", "0xFF01"}, {"iMixer:", "0x00"}});
    QTest::addRow("selector unit")
        << 1 << QByteArray::fromHex("0724050601 0300")
        << common("Audio Control Selector Unit Descriptor:", "0x07", "0x24", "0x05")
               + Lines({{"bUnitID:", "0x06"}, {"bNrInPins:", "0x01"}, {"baSourceID[1]:", "0x03"}, {"iSelector:", "0x00"}});
    QTest::addRow("feature unit, two-byte controls")
        << 1 << QByteArray::fromHex("0d24060201020100020002 0000")
        << common("Audio Control Feature Unit Descriptor:", "0x0D", "0x24", "0x06")
               + Lines({{"bUnitID:", "0x02"}, {"bSourceID:", "0x01"}, {"bControlSize:", "0x02"},
                        {"bmaControls[1]:", "0x0001"}, {"bmaControls[2]:", "0x0002"}, {"bmaControls[3]:", "0x0002"},
                        {"iFeature:", "0x00"}});
    QTest::addRow("processing unit, 3D stereo")
        << 1 << QByteArray::fromHex("10240707030001040203000001 0100aa")
        << common("Audio Control Processing Unit Descriptor:", "0x10", "0x24", "0x07")
               + Lines({{"bUnitID:", "0x07"}, {"wProcessType:", "0x0003(3D-Stereo Extender Process)"},
                        {"bNrInPins:", "0x01"}, {"baSourceID[1]:", "0x04"}, {"bNrChannels:", "0x02"},
                        {"wChannelConfig:", "0x0003"}, {"iChannelNames:", "0x00"}, {"bControlSize:", "0x01"},
                        {"bmControls:", "0x01"}, {"iProcessing:", "0x00"}, {"Process Specific:", "0xAA"}});
    QTest::addRow("processing unit, unknown process, nothing specific")
        << 1 << QByteArray::fromHex("0f240707090001040203000001 0100")
        << common("Audio Control Processing Unit Descriptor:", "0x0F", "0x24", "0x07")
               + Lines({{"bUnitID:", "0x07"}, {"wProcessType:", "0x0009"}, {"bNrInPins:", "0x01"},
                        {"baSourceID[1]:", "0x04"}, {"bNrChannels:", "0x02"}, {"wChannelConfig:", "0x0003"},
                        {"iChannelNames:", "0x00"}, {"bControlSize:", "0x01"}, {"bmControls:", "0x01"},
                        {"iProcessing:", "0x00"}, {"Process Specific:", "None"}});
    QTest::addRow("extension unit")
        << 1 << QByteArray::fromHex("0f24080934120105 020300000100 05")
        << common("Audio Control Extension Unit Descriptor:", "0x0F", "0x24", "0x08")
               + Lines({{"bUnitID:", "0x09"}, {"wExtensionCode:", "0x1234"}, {"bNrInPins:", "0x01"},
                        {"baSourceID[1]:", "0x05"}, {"bNrChannels:", "0x02"}, {"wChannelConfig:", "0x0003"},
                        {"iChannelNames:", "0x00"}, {"bControlSize:", "0x01"}, {"bmControls:", "0x00"},
                        {"iExtension:", "0x05"}});
    QTest::addRow("streaming general, PCM")
        << 2 << QByteArray::fromHex("07240101000100")
        << common("Audio Streaming Class Specific Interface Descriptor:", "0x07", "0x24", "0x01")
               + Lines({{"bTerminalLink:", "0x01"}, {"bDelay:", "0x00"}, {"wFormatTag:", "0x0001(PCM)"}});
    QTest::addRow("streaming general, AC-3")
        << 2 << QByteArray::fromHex("07240101010210")
        << common("Audio Streaming Class Specific Interface Descriptor:", "0x07", "0x24", "0x01")
               + Lines({{"bTerminalLink:", "0x01"}, {"bDelay:", "0x01"}, {"wFormatTag:", "0x1002(AC-3)"}});
    QTest::addRow("format type I, one discrete frequency")
        << 2 << QByteArray::fromHex("0b2402010202100180bb00")
        << common("Audio Streaming Format Type Descriptor:", "0x0B", "0x24", "0x02")
               + Lines({{"bFormatType:", "0x01"}, {"bNrChannels:", "0x02"}, {"bSubframeSize:", "0x02"},
                        {"bBitResolution:", "0x10"}, {"bSamFreqType:", "0x01"}, {"tSamFreq[1]:", "0x00BB80(48000 Hz)"}});
    QTest::addRow("format type I, continuous")
        << 2 << QByteArray::fromHex("0e24020101021000401f0080bb00")
        << common("Audio Streaming Format Type Descriptor:", "0x0E", "0x24", "0x02")
               + Lines({{"bFormatType:", "0x01"}, {"bNrChannels:", "0x01"}, {"bSubframeSize:", "0x02"},
                        {"bBitResolution:", "0x10"}, {"bSamFreqType:", "0x00"}, {"tLowerSamFreq:", "0x001F40(8000 Hz)"},
                        {"tUpperSamFreq:", "0x00BB80(48000 Hz)"}});
    QTest::addRow("format type II")
        << 2 << QByteArray::fromHex("0c240202 8000 0006 01 44ac00")
        << common("Audio Streaming Format Type Descriptor:", "0x0C", "0x24", "0x02")
               + Lines({{"bFormatType:", "0x02"}, {"wMaxBitRate:", "0x0080"}, {"wSamplesPerFrame:", "0x0600"},
                        {"bSamFreqType:", "0x01"}, {"tSamFreq[1]:", "0x00AC44(44100 Hz)"}});
    QTest::addRow("format type I, frequencies cut short")
        << 2 << QByteArray::fromHex("0d2402010202100280bb0044")
        << common("Audio Streaming Format Type Descriptor:", "0x0D", "0x24", "0x02")
               + Lines({{"bFormatType:", "0x01"}, {"bNrChannels:", "0x02"}, {"bSubframeSize:", "0x02"},
                        {"bBitResolution:", "0x10"}, {"bSamFreqType:", "0x02"}, {"tSamFreq[1]:", "0x00BB80(48000 Hz)"}});
    QTest::addRow("format specific") << 2 << QByteArray::fromHex("0524030110")
                                     << common("Audio Streaming Format Specific Descriptor:", "0x05", "0x24", "0x03");
    QTest::addRow("audio data endpoint")
        << 2 << QByteArray::fromHex("07250101020300")
        << common("Audio Streaming Class Specific Audio Data Endpoint Descriptor:", "0x07", "0x25", "0x01")
               + Lines({{"bmAttributes:", "0x01"}, {"bLockDelayUnits:", "0x02"}, {"wLockDelay:", "0x0003"}});
    QTest::addRow("header cut short prints what fits")
        << 1 << QByteArray::fromHex("0924010001380003 01")
        << common("Audio Control Interface Header Descriptor:", "0x09", "0x24", "0x01")
               + Lines({{"bcdADC:", "0x0100"}, {"wTotalLength:", "0x0038"}, {"bInCollection:", "0x03"},
                        {"bInCollection[1]:", "0x01"}});
}

void TestUsbDecoder::audioMembers()
{
    QFETCH(int, subclass);
    QFETCH(QByteArray, descriptor);
    QFETCH(Lines, expected);
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    QVERIFY(decoder.printAudio(subclass, reinterpret_cast<const quint8 *>(descriptor.constData()), descriptor.size()));
    QCOMPARE(sink.vecLines, expected);
}

void TestUsbDecoder::audioDispatch()
{
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    const QByteArray header = QByteArray::fromHex("0924010001090001 01");
    const auto *p = reinterpret_cast<const quint8 *>(header.constData());
    QVERIFY(!decoder.printAudio(3, p, header.size()));     // MIDI streaming: declined
    QVERIFY(!decoder.printAudio(1, p, 2));                  // no subtype byte
    const QByteArray unknownSubtype = QByteArray::fromHex("0524 0900 00");
    QVERIFY(!decoder.printAudio(1, reinterpret_cast<const quint8 *>(unknownSubtype.constData()), 5));
    QVERIFY(sink.vecLines.isEmpty());

    // In a walk: audio class-specific descriptors after an Audio Control
    // interface decode as audio; after a HID interface they are unknown.
    for (const quint8 cls : {quint8(1), quint8(3)}) {
        QByteArray block = config(0);
        block += QByteArray(9, '\x11');
        block += interfaceDesc(0, cls, 1); // at 18
        block += QByteArray(9, '\x11');
        block += QByteArray::fromHex("0924010001090001 01"); // at 36
        block[2] = char(block.size());
        const QStringList h = headings(walk(block));
        QCOMPARE(h.value(2), cls == 1 ? QString("Audio Control Interface Header Descriptor:") : QString("Unknown Descriptor:"));
    }
}

void TestUsbDecoder::audioDeclinesOtherLayouts_data()
{
    QTest::addColumn<int>("subclass");
    QTest::addColumn<int>("protocol");
    QTest::addColumn<QByteArray>("descriptor");
    // USB MIDI 1.0: the class-specific MS bulk data endpoint (bLength 5,
    // CS_ENDPOINT, MS_GENERAL, one embedded jack with id 1).
    QTest::addRow("midi streaming endpoint") << 3 << 0 << QByteArray::fromHex("0525010101");
    // USB MIDI 1.0: the class-specific MS interface header (bcdMSC 1.00).
    QTest::addRow("midi streaming header") << 3 << 0 << QByteArray::fromHex("07240100014100");
    // USB Audio 2.0 (protocol IP_VERSION_02_00): the AC interface header
    // (bcdADC 2.00, bCategory, wTotalLength, bmControls).
    QTest::addRow("audio 2.0 control header") << 1 << 0x20 << QByteArray::fromHex("092401000208400000");
    // USB Audio 2.0: the AS interface (bTerminalLink, bmControls,
    // bFormatType, bmFormats, bNrChannels, bmChannelConfig, iChannelNames).
    QTest::addRow("audio 2.0 streaming interface")
        << 2 << 0x20 << QByteArray::fromHex("1024010200010100000002030000 0000");
    // USB Audio 2.0: the class-specific isochronous data endpoint (bmAttributes,
    // bmControls, bLockDelayUnits, wLockDelay).
    QTest::addRow("audio 2.0 data endpoint") << 2 << 0x20 << QByteArray::fromHex("0825010000000000");
    // USB Audio 3.0 (protocol IP_VERSION_03_00): a class-specific AC header.
    QTest::addRow("audio 3.0 control header") << 1 << 0x30 << QByteArray::fromHex("0a2401030c00000000 00");
}

void TestUsbDecoder::audioDeclinesOtherLayouts()
{
    QFETCH(int, subclass);
    QFETCH(int, protocol);
    QFETCH(QByteArray, descriptor);
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    QVERIFY(!decoder.printAudio(subclass, reinterpret_cast<const quint8 *>(descriptor.constData()), descriptor.size(),
                                protocol));
    QVERIFY(sink.vecLines.isEmpty());
    // In a walk the descriptor is listed as unknown, with its type and length.
    const Lines lines = walkInterfaceAnd(interfaceDesc(1, 1, quint8(subclass), quint8(protocol)), descriptor);
    QCOMPARE(headings(lines), QStringList({"Configuration Descriptor:", "Interface Descriptor:", "Unknown Descriptor:"}));
    QCOMPARE(lines.mid(lines.size() - 2),
             Lines({{"bDescriptorType:", CUsbDescriptorDecoder::hexByte(quint8(descriptor[1]))},
                    {"bLength:", CUsbDescriptorDecoder::hexByte(quint8(descriptor[0]))}}));
    // The same bytes under a USB Audio 1.0 interface of the subclass that
    // owns that layout are decoded (the decline is not a blanket refusal).
    if (subclass != 3) {
        CUsbPairSink audio1;
        CUsbDescriptorDecoder decoder1(audio1);
        QVERIFY(decoder1.printAudio(subclass, reinterpret_cast<const quint8 *>(descriptor.constData()),
                                    descriptor.size(), 0));
        const QString heading = headings(walkInterfaceAnd(interfaceDesc(1, 1, quint8(subclass), 0), descriptor)).value(2);
        QVERIFY2(heading.startsWith("Audio "), qPrintable(heading));
    }
}

void TestUsbDecoder::connectionLines_data()
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

void TestUsbDecoder::connectionLines()
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

void TestUsbDecoder::stringLines()
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

void TestUsbDecoder::hubLines_data()
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

void TestUsbDecoder::hubLines()
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

void TestUsbDecoder::controllerLines_data()
{
    QTest::addColumn<quint32>("vendor");
    QTest::addColumn<quint32>("device");
    QTest::addColumn<QStringList>("debugPort");
    QTest::addRow("8086:27CC has debug port 1") << 0x8086u << 0x27CCu << QStringList({"1"});
    QTest::addRow("10DE:00D8 has debug port 1") << 0x10DEu << 0x00D8u << QStringList({"1"});
    QTest::addRow("8086:27CD is not listed") << 0x8086u << 0x27CDu << QStringList();
    QTest::addRow("QEMU xHCI is not listed") << 0x1B36u << 0x000Du << QStringList();
}

void TestUsbDecoder::controllerLines()
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

void TestUsbDecoder::textSink()
{
    CUsbTextSink sink;
    sink.addLine("bLength:", "0x09");
    sink.addHeading("Endpoint Descriptor:");
    sink.addLine("", "\"QEMU\"");
    QCOMPARE(sink.listLines, QStringList({"bLength:    0x09", "  ", "Endpoint Descriptor:    ", "    \"QEMU\""}));
}

void TestUsbDecoder::usbIdsParser()
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
    QVERIFY(CUsbIds::sourceFile().startsWith(m_dir.path()));
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
