#include "cdetectinfo.h"
#include "vxitems.h"

#include <QtTest>

#include <memory>
#include <typeinfo>

class TestVxItems : public QObject
{
    Q_OBJECT
private slots:
    void buttonText_data();
    void buttonText();
    void groupOf_data();
    void groupOf();
    void names();
    void orders();
    void recordFactory_data();
    void recordFactory();
    void states_data();
    void states();
    void severity_data();
    void severity();
};

void TestVxItems::buttonText_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("normal");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enabled");

    QTest::addRow("sdk files normal") << 1 << true << "Normal" << false;
    QTest::addRow("sdk files exceptional") << 1 << false << "Check and Clear" << true;
    QTest::addRow("env normal") << 2 << true << "Check" << true;
    QTest::addRow("env exceptional") << 2 << false << "Check and Repair" << true;
    QTest::addRow("gige installed") << 4 << true << "Installed" << false;
    QTest::addRow("gige missing") << 4 << false << "Install Driver" << true;
    QTest::addRow("usb3 installed") << 8 << true << "Installed" << false;
    QTest::addRow("usb3 missing") << 8 << false << "Install Driver" << true;
    QTest::addRow("controller driver new") << 32 << true << "Check" << true;
    QTest::addRow("controller driver old") << 32 << false << "Check and Upgrade" << true;
    QTest::addRow("line rate fast") << 128 << true << "Normal" << false;
    QTest::addRow("line rate slow") << 128 << false << "View Solution" << true;
    QTest::addRow("jumbo on") << 256 << true << "Check" << true;
    QTest::addRow("jumbo off") << 256 << false << "Check and Repair" << true;
    QTest::addRow("usb tree normal") << 512 << true << "Check" << true;
    QTest::addRow("usb tree exceptional") << 512 << false << "Check" << true;
    QTest::addRow("firewall off is disabled") << 1024 << true << "Disabled" << false;
    QTest::addRow("firewall on") << 1024 << false << "Enabled" << false;
    QTest::addRow("system normal") << 2048 << true << "Check" << true;
    QTest::addRow("system exceptional") << 2048 << false << "Check" << true;
    QTest::addRow("16 normal") << 16 << true << "Normal" << false;
    QTest::addRow("16 exceptional") << 16 << false << "Normal" << true;
    QTest::addRow("64 normal") << 64 << true << "Normal" << false;
    QTest::addRow("64 exceptional") << 64 << false << "Normal" << true;
    QTest::addRow("unknown id") << 131072 << false << "Normal" << true;
}

void TestVxItems::buttonText()
{
    QFETCH(int, item);
    QFETCH(bool, normal);
    QFETCH(QString, text);
    QFETCH(bool, enabled);
    bool bEnabled = !enabled;
    QCOMPARE(VxItems::buttonText(normal, item, bEnabled), text);
    QCOMPARE(bEnabled, enabled);
}

void TestVxItems::groupOf_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<int>("group");
    for (int n : {1, 2})
        QTest::addRow("item %d", n) << n << 1;
    for (int n : {4, 8, 16, 32, 64})
        QTest::addRow("item %d", n) << n << 2;
    for (int n : {128, 256, 512, 1024, 2048})
        QTest::addRow("item %d", n) << n << 4;
    for (int n : {0, 3, 131072, -1})
        QTest::addRow("not an item %d", n) << n << 0;
}

void TestVxItems::groupOf()
{
    QFETCH(int, item);
    QFETCH(int, group);
    QCOMPARE(VxItems::groupOf(item), group);
}

void TestVxItems::names()
{
    QCOMPARE(VxItems::itemName(2048), QStringLiteral("Systm Info"));
    QCOMPARE(VxItems::itemName(16), QStringLiteral("GigE Driver Check in Network"));
    QCOMPARE(VxItems::itemName(64), QStringLiteral("The num of Driver"));
    QCOMPARE(VxItems::itemName(512), QStringLiteral("USB Controller Info"));
    QVERIFY(VxItems::itemName(131072).isEmpty());
    QCOMPARE(VxItems::itemName(4096), QStringLiteral("USB Buffer Memory"));
    QCOMPARE(VxItems::groupName(1), QStringLiteral("SDK Diagnosis"));
    QCOMPARE(VxItems::groupName(2), QStringLiteral("Driver Diagnosis"));
    QCOMPARE(VxItems::groupName(4), QStringLiteral("PC System Diagnosis"));
    QCOMPARE(VxItems::groupName(8), QStringLiteral("Camera Host Tuning"));
    QCOMPARE(VxItems::itemName(65536), QStringLiteral("USB3 Vision Link"));
    QVERIFY(VxItems::groupName(16).isEmpty());
}

void TestVxItems::orders()
{
    QCOMPARE(VxItems::detectOrder(), (QVector<int>{1, 2, 4, 8, 32, 512, 1024, 256, 128, 2048, 4096, 8192, 16384, 32768, 65536}));
    QCOMPARE(VxItems::optimizeOrder(), (QVector<int>{1, 2, 4, 8, 256, 4096, 8192, 16384}));
    QCOMPARE(VxItems::displayOrder(1), (QVector<int>{1, 2}));
    QCOMPARE(VxItems::displayOrder(2), (QVector<int>{4, 8, 32}));
    QCOMPARE(VxItems::displayOrder(4), (QVector<int>{512, 1024, 256, 128, 2048}));
    QCOMPARE(VxItems::displayOrder(8), (QVector<int>{4096, 8192, 16384, 32768, 65536}));
    // The group masks the page starts hold exactly the shown items.
    quint32 uShown = 0;
    for (int nGroup : VxItems::groups())
        for (int nItem : VxItems::displayOrder(nGroup))
            uShown |= quint32(nItem);
    QCOMPARE(uShown, VxItems::kAllItemsMask | 0x1F000u);
    QCOMPARE(VxItems::kSdkGroupMask | VxItems::kDriverGroupMask | VxItems::kSystemGroupMask, 0xFAFu);
}

void TestVxItems::recordFactory_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<QString>("className");
    QTest::addRow("1") << 1 << typeid(CSDKPathDetectInfo).name();
    QTest::addRow("2") << 2 << typeid(CEnvDetectInfo).name();
    QTest::addRow("4") << 4 << typeid(CDetectInfo).name();
    QTest::addRow("8") << 8 << typeid(CDetectInfo).name();
    QTest::addRow("16") << 16 << typeid(CDetectInfo).name();
    QTest::addRow("32") << 32 << typeid(CUSBControllerDriverInfo).name();
    QTest::addRow("128") << 128 << typeid(CNetworkSpeedDetectInfo).name();
    QTest::addRow("256") << 256 << typeid(CJumboPacketDetectInfo).name();
    QTest::addRow("512") << 512 << typeid(CUsbBasicDetectInfo).name();
    QTest::addRow("1024") << 1024 << typeid(CDetectInfo).name();
    QTest::addRow("2048") << 2048 << typeid(CSystemDetectInfo).name();
    QTest::addRow("unknown") << 77 << typeid(CDetectInfo).name();
}

void TestVxItems::recordFactory()
{
    QFETCH(int, item);
    QFETCH(QString, className);
    std::unique_ptr<CDetectInfo> pInfo(createDetectInfo(item));
    QVERIFY(pInfo);
    QCOMPARE(QString(typeid(*pInfo).name()), className);
    QCOMPARE(pInfo->nItem, item);
    QCOMPARE(pInfo->bNormal, 1);
    if (auto *pUsb = dynamic_cast<CUsbBasicDetectInfo *>(pInfo.get()))
        QVERIFY(!pUsb->pRootItem);
    if (auto *pSys = dynamic_cast<CSystemDetectInfo *>(pInfo.get()))
        QVERIFY(pSys->cpu.isEmpty() && pSys->resolution.isEmpty());
}

void TestVxItems::states_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("color");
    QTest::addColumn<QString>("icon");
    QTest::addRow("not diagnosed") << 0 << "#d3d9e4" << "";
    QTest::addRow("diagnosing") << 1 << "#d3d9e4" << ":/Vetrix/Vetrix/Diagnostic_doing.png";
    QTest::addRow("normal") << 2 << "#02bf0f" << ":/Vetrix/Vetrix/Diagnostic_normal.png";
    QTest::addRow("error") << 3 << "#e81123" << ":/Vetrix/Vetrix/Diagnostic_error.png";
    QTest::addRow("warning") << 4 << "#ff9c00" << ":/Vetrix/Vetrix/Diagnostic_warning.png";
}

void TestVxItems::states()
{
    QFETCH(int, state);
    QFETCH(QString, color);
    QFETCH(QString, icon);
    QCOMPARE(VxItems::stateColor(state).name(), color);
    QCOMPARE(VxItems::stateIconPath(state), icon);
    if (icon.isEmpty())
        QVERIFY(VxItems::stateIcon(state).isNull());
    QVERIFY(!VxItems::stateColor(5).isValid());
    QVERIFY(!VxItems::stateColor(-1).isValid());
    QVERIFY(VxItems::stateIcon(5).isNull());
}

void TestVxItems::severity_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("normal");
    QTest::addColumn<int>("severity");
    QTest::addColumn<QString>("icon");
    QTest::addRow("sdk files exceptional is serious") << 1 << false << 2 << ":/Vetrix/Vetrix/ResultSerious.png";
    QTest::addRow("jumbo exceptional is medium") << 256 << false << 1 << ":/Vetrix/Vetrix/ResultMedium.png";
    QTest::addRow("env exceptional is medium") << 2 << false << 1 << ":/Vetrix/Vetrix/ResultMedium.png";
    QTest::addRow("normal sdk files") << 1 << true << 0 << ":/Vetrix/Vetrix/ResultNormal.png";
    QTest::addRow("normal firewall") << 1024 << true << 0 << ":/Vetrix/Vetrix/ResultNormal.png";
}

void TestVxItems::severity()
{
    QFETCH(int, item);
    QFETCH(bool, normal);
    QFETCH(int, severity);
    QFETCH(QString, icon);
    QCOMPARE(VxItems::severity(normal, item), severity);
    QCOMPARE(VxItems::severityIconPath(severity), icon);
}

QTEST_GUILESS_MAIN(TestVxItems)
#include "tst_vxitems.moc"
