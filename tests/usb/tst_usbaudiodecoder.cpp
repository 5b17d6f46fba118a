// The descriptor decoder's USB Audio 1.0 members: every control and
// streaming descriptor's lines, the dispatch by interface subclass, and the
// layouts of other audio and MIDI versions, which are declined.
#include "usbdecodertestutil.h"

#include <QtTest>

using namespace UsbDecoderTest;

class TestUsbAudioDecoder : public QObject
{
    Q_OBJECT

private slots:
    void audioMembers_data();
    void audioMembers();
    void audioDispatch();
    void audioDeclinesOtherLayouts_data();
    void audioDeclinesOtherLayouts();
};

void TestUsbAudioDecoder::audioMembers_data()
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

void TestUsbAudioDecoder::audioMembers()
{
    QFETCH(int, subclass);
    QFETCH(QByteArray, descriptor);
    QFETCH(Lines, expected);
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    QVERIFY(decoder.printAudio(subclass, reinterpret_cast<const quint8 *>(descriptor.constData()), descriptor.size()));
    QCOMPARE(sink.vecLines, expected);
}

void TestUsbAudioDecoder::audioDispatch()
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

void TestUsbAudioDecoder::audioDeclinesOtherLayouts_data()
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

void TestUsbAudioDecoder::audioDeclinesOtherLayouts()
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

QTEST_GUILESS_MAIN(TestUsbAudioDecoder)
#include "tst_usbaudiodecoder.moc"
