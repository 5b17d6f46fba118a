// The link facts of the probe library: port paths, speeds and the decoding
// of the hub's V2 connection information from byte fixtures (the I/O control
// itself needs a real hub). Runs on Linux and, cross-built, under Wine.
#include "portlink.h"

#include <QtTest>

namespace {

// A V2 reply: ConnectionIndex, Length, SupportedUsbProtocols, Flags (little-endian).
QByteArray reply(quint32 nPort, quint32 nLength, quint32 uProtocols, quint32 uFlags)
{
    QByteArray b;
    for (quint32 v : {nPort, nLength, uProtocols, uFlags})
        for (int i = 0; i < 4; ++i)
            b += char((v >> (8 * i)) & 0xFF);
    return b;
}

bool decode(const QByteArray &b, quint32 nPort, UsbPortLinkInfo &link)
{
    return probekit::decodeConnectionInfoV2(reinterpret_cast<const uint8_t *>(b.constData()), size_t(b.size()), nPort, link);
}

} // namespace

class TestUsbPortLink : public QObject
{
    Q_OBJECT

private slots:
    void portPaths();
    void speedAttribute_data();
    void speedAttribute();
    void superSpeedPlusReply();
    void fallbackReply();
    void badReplies_data();
    void badReplies();
    void withoutReply();
};

void TestUsbPortLink::portPaths()
{
    QCOMPARE(QString::fromStdString(probekit::childPortPath("3", 2, true)), QString("3-2"));
    QCOMPARE(QString::fromStdString(probekit::childPortPath("3-2", 4, false)), QString("3-2.4"));
}

void TestUsbPortLink::speedAttribute_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("kbps");
    QTest::addRow("low") << "1.5\n" << quint32(1500);
    QTest::addRow("full") << "12" << quint32(12000);
    QTest::addRow("high") << "480\n" << quint32(480000);
    QTest::addRow("super") << "5000" << quint32(5000000);
    QTest::addRow("gen 2x2") << "20000\n" << quint32(20000000);
    QTest::addRow("empty") << "" << quint32(0);
    QTest::addRow("words") << "fast" << quint32(0);
    QTest::addRow("negative") << "-480" << quint32(0);
    QTest::addRow("huge") << "99999999999" << quint32(0);
}

void TestUsbPortLink::speedAttribute()
{
    QFETCH(QString, text);
    QFETCH(quint32, kbps);
    QCOMPARE(probekit::speedAttributeKbps(text.toStdString()), kbps);
}

void TestUsbPortLink::superSpeedPlusReply()
{
    UsbPortLinkInfo link{};
    QVERIFY(decode(reply(3, 16, 0x7, 0xF), 3, link));
    QCOMPARE(link.SupportedProtocols, quint32(UsbLinkProtocolUsb110 | UsbLinkProtocolUsb200 | UsbLinkProtocolUsb300));
    QCOMPARE(link.Flags, quint32(0xF));
    UsbPortConnectionInfo connection{};
    connection.Speed = UsbSpeedSuper;
    probekit::completeLinkFromConnection(connection, link);
    QCOMPARE(link.SpeedKbps, quint32(10000000));
}

void TestUsbPortLink::fallbackReply()
{
    // A SuperSpeed-capable device on a USB 3 port that runs at High Speed.
    UsbPortLinkInfo link{};
    QVERIFY(decode(reply(1, 16, 0x7, UsbLinkSuperSpeedCapable), 1, link));
    UsbPortConnectionInfo connection{};
    connection.Speed = UsbSpeedHigh;
    probekit::completeLinkFromConnection(connection, link);
    QCOMPARE(link.SpeedKbps, quint32(480000));
    QCOMPARE(link.Flags & UsbLinkOperatingAtSuperSpeed, quint32(0));
    QCOMPARE(link.Flags & UsbLinkSuperSpeedCapable, quint32(UsbLinkSuperSpeedCapable));
}

void TestUsbPortLink::badReplies_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addRow("empty") << QByteArray();
    QTest::addRow("one byte short") << reply(2, 16, 7, 3).left(15);
    QTest::addRow("another port") << reply(5, 16, 7, 3);
    QTest::addRow("wrong length") << reply(2, 12, 7, 3);
}

void TestUsbPortLink::badReplies()
{
    QFETCH(QByteArray, bytes);
    UsbPortLinkInfo link{};
    link.SpeedKbps = 42;
    QVERIFY(!decode(bytes, 2, link));
    QCOMPARE(link.FlagsKnown, quint32(0));
    QCOMPARE(link.Flags, quint32(0));
    QCOMPARE(link.SpeedKbps, quint32(42));
    QVERIFY(!probekit::decodeConnectionInfoV2(nullptr, 16, 2, link));
}

void TestUsbPortLink::withoutReply()
{
    // Older systems: the speed code alone; the operating flags follow from it.
    UsbPortLinkInfo link{};
    UsbPortConnectionInfo connection{};
    connection.Speed = UsbSpeedSuper;
    probekit::completeLinkFromConnection(connection, link);
    QCOMPARE(link.SpeedKbps, quint32(5000000));
    QCOMPARE(link.Flags, quint32(UsbLinkOperatingAtSuperSpeed));
    UsbPortLinkInfo unknown{};
    connection.Speed = UsbSpeedUnknown;
    probekit::completeLinkFromConnection(connection, unknown);
    QCOMPARE(unknown.SpeedKbps, quint32(0));
    QCOMPARE(unknown.FlagsKnown, quint32(0));
}

QTEST_GUILESS_MAIN(TestUsbPortLink)
#include "tst_usbportlink.moc"
