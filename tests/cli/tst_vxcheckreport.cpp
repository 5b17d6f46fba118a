#include "cdetectinfo.h"
#include "vxcheckreport.h"

#include <QDir>
#include <QtTest>

class TestVxCheckReport : public QObject
{
    Q_OBJECT
private slots:
    void parseItems_data();
    void parseItems();
    void jsonCarriesEveryField();
    void jsonCarriesPendingVariables();
    void unavailableItemIsNotPassing();
    void unreadableItemNamesTheRoot();
    void logTextMarksUnavailable();
    void timingsLeaveOutTheSdkWalk();
};

void TestVxCheckReport::parseItems_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<quint32>("mask");
    QTest::addRow("three items") << "1,2,128" << true << quint32(1 | 2 | 128);
    QTest::addRow("blanks around ids") << " 4 , 8 " << true << quint32(12);
    QTest::addRow("repeated id") << "2048,2048" << true << quint32(2048);
    QTest::addRow("named but never shown") << "16" << false << 0u;
    QTest::addRow("not an item") << "3" << false << 0u;
    QTest::addRow("empty part") << "1,,2" << false << 0u;
    QTest::addRow("empty") << "" << false << 0u;
    QTest::addRow("hex") << "0x1" << false << 0u;
    QTest::addRow("words") << "all" << false << 0u;
}

void TestVxCheckReport::parseItems()
{
    QFETCH(QString, list);
    QFETCH(bool, ok);
    QFETCH(quint32, mask);
    quint32 uMask = 0;
    QString strError;
    QCOMPARE(VxCheckReport::parseItems(list, &uMask, &strError), ok);
    if (ok)
        QCOMPARE(uMask, mask);
    else
        QVERIFY(strError.startsWith("Unknown item"));
}

void TestVxCheckReport::jsonCarriesPendingVariables()
{
    CEnvDetectInfo env;
    env.nItem = 2;
    env.pendingValues["LUCAM_GIGE_DEBUG_HEARTBEAT"] = "60000";
    const QJsonObject item = VxCheckReport::json({{2, &env, 0.0}}, false).value("items").toArray().at(0).toObject();
    QCOMPARE(item.value("normal").toBool(false), true);
    const QJsonObject pending = item.value("facts").toObject().value("pendingValues").toObject();
    QCOMPARE(pending.keys(), QStringList{"LUCAM_GIGE_DEBUG_HEARTBEAT"});
    QCOMPARE(pending.value("LUCAM_GIGE_DEBUG_HEARTBEAT").toString(), QStringLiteral("60000"));
}

void TestVxCheckReport::jsonCarriesEveryField()
{
    CNetworkSpeedDetectInfo net;
    net.nItem = 128;
    net.bNormal = 0;
    net.adapterSpeeds["eth0"] = 100;
    CSDKPathDetectInfo sdk;
    sdk.nItem = 1;
    sdk.bNormal = 0;
    sdk.foundFiles["libLuUsb3vTL.so"] = QStringList{"/usr/lib", "/usr/lib32"};
    const QVector<VxCheckItem> items{{1, &sdk, 2.5}, {128, &net, 1.0}};
    const QJsonObject root = VxCheckReport::json(items, true);
    QCOMPARE(root.value("tool").toString(), QStringLiteral("vetrix-check"));
    QVERIFY(root.contains("version"));
    const QJsonArray array = root.value("items").toArray();
    QCOMPARE(array.size(), 2);
    const QJsonObject first = array.at(0).toObject();
    for (const char *pKey : {"id", "name", "group", "available", "normal", "severity", "lines", "facts", "timeMs"})
        QVERIFY2(first.contains(pKey), pKey);
    QCOMPARE(first.value("severity").toInt(), 2);
    QCOMPARE(first.value("facts").toObject().value("foundFiles").toObject().value("libLuUsb3vTL.so").toArray().size(),
             2);
    const QJsonObject second = array.at(1).toObject();
    QCOMPARE(second.value("name").toString(), QStringLiteral("Network Line Rate"));
    QCOMPARE(second.value("group").toString(), QStringLiteral("PC System Diagnosis"));
    QCOMPARE(second.value("severity").toInt(), 1);
    QCOMPARE(second.value("normal").toBool(true), false);
    QCOMPARE(second.value("lines").toArray().first().toString(), QStringLiteral("eth0 : 0.10Gbps"));
    QCOMPARE(second.value("facts").toObject().value("adapterSpeeds").toObject().value("eth0").toInt(), 100);
    QCOMPARE(root.value("totalTimeMs").toDouble(), 3.5);
    QVERIFY(!VxCheckReport::json(items, false).contains("totalTimeMs"));
}

void TestVxCheckReport::unavailableItemIsNotPassing()
{
    const VxCheckItem item{1024, nullptr, 0.0};
    QVERIFY(!VxCheckReport::isExceptional(item));
    const QJsonObject object = VxCheckReport::json({item}, false).value("items").toArray().at(0).toObject();
    QCOMPARE(object.value("available").toBool(true), false);
    QVERIFY(object.value("normal").isNull());
    QVERIFY(object.value("severity").isNull());
    QCOMPARE(object.value("lines").toArray().first().toString(),
             QStringLiteral("Not available: this check has no probe on this platform."));
}

void TestVxCheckReport::unreadableItemNamesTheRoot()
{
    qputenv("VETRIX_SYSROOT", "/mnt/image");
    VxCheckItem item{128, nullptr, 0.0};
    item.bUnreadable = true;
    const QJsonObject object = VxCheckReport::json({item}, false).value("items").toArray().at(0).toObject();
    qunsetenv("VETRIX_SYSROOT");
    QCOMPARE(object.value("available").toBool(true), false);
    QVERIFY(object.value("normal").isNull());
    QCOMPARE(object.value("lines").toArray().first().toString(),
             QStringLiteral("Not available: this check cannot read the system below %1.").arg(QDir::toNativeSeparators(QStringLiteral("/mnt/image"))));
}

void TestVxCheckReport::logTextMarksUnavailable()
{
    CDetectInfo firewall;
    firewall.nItem = 1024;
    const QString strText = VxCheckReport::logText({{1024, &firewall, 0.0}, {2048, nullptr, 0.0}});
    QVERIFY(strText.contains("|    |----3-1: PC Firewall Status\r\n|    |     The firewall hasn't been opened\r\n"));
    QVERIFY(strText.contains("|    |----3-2: Systm Info\r\n|    |     Not available"));
}

void TestVxCheckReport::timingsLeaveOutTheSdkWalk()
{
    CDetectInfo sdk;
    sdk.nItem = 1;
    CDetectInfo firewall;
    firewall.nItem = 1024;
    const QString strText = VxCheckReport::timingsText({{1, &sdk, 80.0}, {1024, &firewall, 2.5}, {2048, nullptr, 0}});
    const QStringList lines = strText.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines.at(1).contains("SDK File Saving Path") && lines.at(1).endsWith("80.0 ms"));
    QVERIFY(lines.at(3).contains("Total") && lines.at(3).endsWith("82.5 ms"));
    QVERIFY(lines.at(4).contains("Total without the SDK file walk") && lines.at(4).endsWith("2.5 ms"));
}

QTEST_GUILESS_MAIN(TestVxCheckReport)
#include "tst_vxcheckreport.moc"
