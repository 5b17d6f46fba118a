// The adapter list, the jumbo setting and the line rate against Wine's real
// registry and device set-up. Network devices are registered through
// SetupAPI (Wine treats every registered device as present); the IP
// helper's adapters are the host's interfaces as Wine reports them.
#include "cdetectinfo.h"
#include "jumboframe.h"
#include "linerate.h"
#include "netadapters.h"
#include "netadapters_win_p.h"
#include "winfixtures.h"

#include <QtTest>

#include <iphlpapi.h>

#include <memory>
#include <vector>

using namespace WinFixtures;

namespace {

// The IP helper's adapter names (GUID strings) and whether each is
// connected (operational status 3, 4 or 5).
QList<QPair<QString, bool>> ipHelperAdapters()
{
    QList<QPair<QString, bool>> listAdapters;
    ULONG ulSize = 0;
    GetAdaptersInfo(nullptr, &ulSize);
    if (ulSize == 0)
        return listAdapters;
    std::vector<BYTE> buffer(ulSize);
    auto *pFirst = reinterpret_cast<IP_ADAPTER_INFO *>(buffer.data());
    if (GetAdaptersInfo(pFirst, &ulSize) != ERROR_SUCCESS)
        return listAdapters;
    for (auto *pAdapter = pFirst; pAdapter; pAdapter = pAdapter->Next) {
        MIB_IFROW row = {};
        row.dwIndex = pAdapter->Index;
        const bool bUp = GetIfEntry(&row) == NO_ERROR && row.dwOperStatus >= 3 && row.dwOperStatus <= 5;
        listAdapters << qMakePair(QString::fromLatin1(pAdapter->AdapterName), bUp);
    }
    return listAdapters;
}

QString connectedAdapterName()
{
    for (const auto &adapter : ipHelperAdapters()) {
        if (adapter.second)
            return adapter.first;
    }
    return QString();
}

QString pciId(const QString &strTag)
{
    return QStringLiteral("PCI\\VEN_8086&DEV_15B8&SUBSYS_00008086&REV_00\\3&11583659&0&") + strTag;
}

// A registry value as the test reads it back: type and raw bytes.
bool queryValue(const QString &strKey, const QString &strName, DWORD *pType, QByteArray *pData)
{
    KeyCloser key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strKey.utf16()), 0, KEY_READ, &key.hKey) != ERROR_SUCCESS)
        return false;
    BYTE data[2048] = {};
    DWORD dwSize = sizeof data;
    if (RegQueryValueExW(key.hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), nullptr, pType, data, &dwSize) != ERROR_SUCCESS)
        return false;
    *pData = QByteArray(reinterpret_cast<const char *>(data), int(dwSize));
    return true;
}

} // namespace

class TstWinNetAdapters : public QObject
{
    Q_OBJECT

private slots:
    void jumboSettingIsRead_data();
    void jumboSettingIsRead();
    void missingDriverOrClassKeyHasNoSetting();
    void devicesAreFoundByEnumerator_data();
    void devicesAreFoundByEnumerator();
    void deviceWithoutDriverKeyIsNotListed();
    void connectedAdapterIsListed();
    void setJumboWritesLastEnumerated_wineSortsByName_data();
    void setJumboWritesLastEnumerated_wineSortsByName();
    void setJumboWithoutEnumKeyFails();
    void repairEnablesConnectedAdapter();
    void restartIsRefused_wineStub();
    void lineRateZeroSpeedIsSlow_wineStub();
    void lineRateSkipsCharacteristicsOfWrongType();
};

// One row per stored form of the jumbo setting: value name, type, data.
void TstWinNetAdapters::jumboSettingIsRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("value");

    auto text = [](const char *p) { return QByteArray(p) + '\0'; };
    const QByteArray nine = text("9");
    QTest::newRow("kilobytes minus one: 9") << "JumboPacket" << int(REG_SZ) << nine << 1 << 10240;
    QTest::newRow("standard frame 1514 is off") << "JumboPacket" << int(REG_SZ) << text("1514") << 0 << 1514;
    QTest::newRow("1515 is on") << "JumboPacket" << int(REG_SZ) << text("1515") << 1 << 1515;
    QTest::newRow("*JumboPacket 9014") << "*JumboPacket" << int(REG_SZ) << text("9014") << 1 << 9014;
    QTest::newRow("MaxPacketSize 4088") << "MaxPacketSize" << int(REG_SZ) << text("4088") << 1 << 4088;
    QTest::newRow("no known name") << "JumboFrames" << int(REG_SZ) << text("9014") << 2 << 0;
    QTest::newRow("not a number") << "JumboPacket" << int(REG_SZ) << text("abc") << 0 << 0;
    QTest::newRow("DWORD taken as a number") << "JumboPacket" << int(REG_DWORD) << QByteArray("\x36\x23\0\0", 4) << 1 << 9014;
    QTest::newRow("binary is unreadable") << "JumboPacket" << int(REG_BINARY) << QByteArray("9014", 4) << 2 << 0;
    QTest::newRow("DWORD of wrong size") << "JumboPacket" << int(REG_DWORD) << QByteArray("\x36\x23", 2) << 2 << 0;
    QTest::newRow("text too long for the buffer") << "JumboPacket" << int(REG_SZ) << (QByteArray(600, '9') + '\0') << 2 << 0;
    QTest::newRow("text without terminator") << "JumboPacket" << int(REG_SZ) << QByteArray("9014") << 1 << 9014;
}

void TstWinNetAdapters::jumboSettingIsRead()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    QFETCH(QByteArray, data);
    QFETCH(int, state);
    QFETCH(int, value);

    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(device.isRegistered());
    QVERIFY(!device.driverKey().isEmpty());
    {
        KeyCloser key{createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        // Written through the 8-bit API, as drivers' INF files store it.
        QCOMPARE(RegSetValueExA(key.hKey, name.toLatin1().constData(), 0, DWORD(type),
                                reinterpret_cast<const BYTE *>(data.constData()), DWORD(data.size())),
                 LONG(ERROR_SUCCESS));
    }
    int nValue = -1;
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), state);
    QCOMPARE(nValue, value);
    if (state != 2)
        QCOMPARE(NetAdapters::jumboValueNames().value(device.driverKey()), name);
}

void TstWinNetAdapters::missingDriverOrClassKeyHasNoSetting()
{
    int nValue = -1;
    const QString strKey = QStringLiteral("{4D36E972-E325-11CE-BFC1-08002BE10318}\\9") + uniqueTag().left(3);
    QCOMPARE(NetAdapters::Detail::readJumbo(strKey, &nValue), 2);
    QCOMPARE(nValue, 0);
    QCOMPARE(NetAdapters::Detail::readJumbo(QString(), &nValue), 2);
    // A class that has no key at all.
    const QString strNoClass = QStringLiteral("{0BADC1A5-0000-0000-0000-%1}\\0000").arg(uniqueTag());
    QCOMPARE(NetAdapters::Detail::readJumbo(strNoClass, &nValue), 2);
    QCOMPARE(NetAdapters::Detail::connectedDescription(strNoClass), QString());
    QCOMPARE(NetAdapters::setJumbo(strNoClass, true), VxRepairStatus::Failed);
}

void TstWinNetAdapters::devicesAreFoundByEnumerator_data()
{
    QTest::addColumn<QString>("instanceId");
    QTest::addColumn<bool>("pci");
    QTest::addColumn<bool>("usb");
    const QString strTag = uniqueTag();
    QTest::newRow("PCI adapter") << pciId(strTag) << true << false;
    QTest::newRow("USB adapter") << QStringLiteral("USB\\VID_0B95&PID_1790\\") + strTag << false << true;
    QTest::newRow("ROOT adapter") << QStringLiteral("ROOT\\NET\\") + strTag << false << false;
}

void TstWinNetAdapters::devicesAreFoundByEnumerator()
{
    QFETCH(QString, instanceId);
    QFETCH(bool, pci);
    QFETCH(bool, usb);
    NetDevice device(instanceId, true);
    QVERIFY(device.isRegistered());
    QVERIFY(!device.driverKey().isEmpty());
    auto find = [&](const QString &strEnumerator) {
        for (const NetAdapters::Detail::CNetDevice &found : NetAdapters::Detail::networkDevices(strEnumerator)) {
            if (found.instanceId.compare(instanceId, Qt::CaseInsensitive) == 0)
                return found.driverKey;
        }
        return QString();
    };
    QCOMPARE(find(QStringLiteral("PCI")), pci ? device.driverKey() : QString());
    QCOMPARE(find(QStringLiteral("USB")), usb ? device.driverKey() : QString());
}

// A registered device that never got a driver key is enumerated with an
// empty key and left out of the adapter list.
void TstWinNetAdapters::deviceWithoutDriverKeyIsNotListed()
{
    NetDevice device(pciId(uniqueTag()), false);
    QVERIFY(device.isRegistered());
    bool bFound = false;
    for (const NetAdapters::Detail::CNetDevice &found : NetAdapters::Detail::networkDevices(QStringLiteral("PCI"))) {
        if (found.instanceId.compare(device.instanceId(), Qt::CaseInsensitive) == 0) {
            bFound = true;
            QCOMPARE(found.driverKey, QString());
        }
    }
    QVERIFY(bFound);
    QCOMPARE(NetAdapters::Detail::connectedDescription(QString()), QString());
    NetAdapters::buildAdapterList();
    for (const CNetAdapter &adapter : NetAdapters::adapterList())
        QVERIFY(adapter.instanceId.compare(device.instanceId(), Qt::CaseInsensitive) != 0);
}

// A device whose driver key names a connected IP helper adapter is listed
// with that adapter's description; one naming an unknown GUID is not.
void TstWinNetAdapters::connectedAdapterIsListed()
{
    const QString strConnected = connectedAdapterName();
    NetDevice unknown(pciId(uniqueTag()), true);
    QVERIFY(unknown.isRegistered());
    {
        KeyCloser key{createKey(unknown.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "NetCfgInstanceId", "{DEADBEEF-0000-0000-0000-000000000000}"), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "JumboPacket", "1514"), LONG(ERROR_SUCCESS));
    }
    QCOMPARE(NetAdapters::Detail::connectedDescription(unknown.driverKey()), QString());

    // The host's interfaces are what Wine reports; with no connected one
    // only the negative half can be shown.
    if (strConnected.isEmpty()) {
        qInfo("Wine reports no connected interface of the host: only the negative half runs");
        CJumboPacketDetectInfo info;
        JumboFrame::check(info);
        QCOMPARE(info.bNormal, 0);
        QVERIFY(info.jumboStates.isEmpty());
        return;
    }
    NetDevice connected(QStringLiteral("USB\\VID_0B95&PID_1790\\") + uniqueTag(), true);
    QVERIFY(connected.isRegistered());
    {
        KeyCloser key{createKey(connected.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "NetCfgInstanceId", strConnected), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "JumboPacket", "9"), LONG(ERROR_SUCCESS));
    }
    const QString strDescription = NetAdapters::Detail::connectedDescription(connected.driverKey());
    QVERIFY(!strDescription.isEmpty());
    CJumboPacketDetectInfo info;
    JumboFrame::check(info);
    QCOMPARE(info.jumboStates.value(strDescription, -1), 1);
    QCOMPARE(info.jumboValues.value(strDescription, -1), 10240);
    bool bListed = false;
    for (const CNetAdapter &adapter : NetAdapters::adapterList()) {
        if (adapter.driverKey == connected.driverKey()) {
            bListed = true;
            QCOMPARE(adapter.instanceId.toUpper(), connected.instanceId().toUpper());
        }
        QVERIFY(adapter.driverKey != unknown.driverKey());
    }
    QVERIFY(bListed);
}

// The allowed settings are the value names of the enum key; the last one
// enumerated is written, without sorting by number. Wine enumerates value
// names sorted by name (Windows in creation order), so the rows name the
// outcome of Wine's order.
void TstWinNetAdapters::setJumboWritesLastEnumerated_wineSortsByName_data()
{
    QTest::addColumn<QStringList>("allowed");
    QTest::addColumn<bool>("enable");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("1514, 9014, 4088: enable") << QStringList{"1514", "9014", "4088"} << true << QByteArray("9014");
    QTest::newRow("1514, 9014, 16128: not the largest number") << QStringList{"1514", "9014", "16128"} << true << QByteArray("9014");
    QTest::newRow("1514, 9014, 4088: disable") << QStringList{"1514", "9014", "4088"} << false << QByteArray("1514");
}

void TstWinNetAdapters::setJumboWritesLastEnumerated_wineSortsByName()
{
    QFETCH(QStringList, allowed);
    QFETCH(bool, enable);
    QFETCH(QByteArray, written);

    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(device.isRegistered());
    {
        KeyCloser key{createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "*JumboPacket", enable ? "1514" : "9014"), LONG(ERROR_SUCCESS));
        KeyCloser values{createKey(device.driverKeyPath() + "\\Ndi\\params\\*JumboPacket\\enum")};
        QVERIFY(values.hKey);
        for (const QString &strValue : allowed)
            QCOMPARE(setString(values.hKey, strValue, strValue + " Bytes"), LONG(ERROR_SUCCESS));
    }
    int nValue = 0;
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), enable ? 0 : 1);
    QCOMPARE(NetAdapters::setJumbo(device.driverKey(), enable), VxRepairStatus::Done);

    // Stored as text of the digits only, without a terminating NUL.
    DWORD dwType = 0;
    QByteArray data;
    QVERIFY(queryValue(device.driverKeyPath(), "*JumboPacket", &dwType, &data));
    QCOMPARE(dwType, DWORD(REG_SZ));
    QCOMPARE(QString::fromUtf16(reinterpret_cast<const ushort *>(data.constData()), data.size() / 2).remove(QChar(0)),
             QString::fromLatin1(written));
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), enable ? 1 : 0);
    QCOMPARE(nValue, written.toInt());
}

void TstWinNetAdapters::setJumboWithoutEnumKeyFails()
{
    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(device.isRegistered());
    {
        KeyCloser key{createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "JumboPacket", "1514"), LONG(ERROR_SUCCESS));
    }
    int nValue = 0;
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), 0);
    QCOMPARE(NetAdapters::setJumbo(device.driverKey(), true), VxRepairStatus::Failed);
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), 0);
    QCOMPARE(nValue, 1514);
}

// The item's repair on a connected adapter that is off: the largest allowed
// value is written and the new check shows the adapter on.
void TstWinNetAdapters::repairEnablesConnectedAdapter()
{
    const QString strConnected = connectedAdapterName();
    if (strConnected.isEmpty()) {
        qInfo("Wine reports no connected interface of the host: nothing to repair");
        CJumboPacketDetectInfo info;
        JumboFrame::check(info);
        QCOMPARE(JumboFrame::repair(info), VxRepairStatus::Done);
        QCOMPARE(info.bNormal, 0);
        return;
    }
    NetDevice device(pciId(uniqueTag()), true, QStringLiteral("Vetrix Repair NIC ") + uniqueTag());
    QVERIFY(device.isRegistered());
    {
        KeyCloser key{createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "NetCfgInstanceId", strConnected), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "JumboPacket", "1514"), LONG(ERROR_SUCCESS));
        KeyCloser values{createKey(device.driverKeyPath() + "\\Ndi\\params\\JumboPacket\\enum")};
        QVERIFY(values.hKey);
        QCOMPARE(setString(values.hKey, "1514", "Disabled"), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(values.hKey, "9014", "9KB MTU"), LONG(ERROR_SUCCESS));
    }
    const QString strDescription = NetAdapters::Detail::connectedDescription(device.driverKey());
    QVERIFY(!strDescription.isEmpty());
    CJumboPacketDetectInfo info;
    JumboFrame::check(info);
    QCOMPARE(info.jumboStates.value(strDescription, -1), 0);
    QCOMPARE(info.bNormal, 0);

    QCOMPARE(JumboFrame::repair(info), VxRepairStatus::Done);
    QCOMPARE(info.jumboStates.value(strDescription, -1), 1);
    QCOMPARE(info.jumboValues.value(strDescription, -1), 9014);
    QCOMPARE(info.bNormal, 1);
    DWORD dwType = 0;
    QByteArray data;
    QVERIFY(queryValue(device.driverKeyPath(), "JumboPacket", &dwType, &data));
    QCOMPARE(QString::fromUtf16(reinterpret_cast<const ushort *>(data.constData()), data.size() / 2).remove(QChar(0)),
             QStringLiteral("9014"));
}

namespace {
QStringList g_listMessages;
void collectMessage(QtMsgType, const QMessageLogContext &, const QString &strMessage)
{
    g_listMessages << strMessage;
}
} // namespace

// Wine refuses the class-install parameters of DIF_PROPERTYCHANGE, so the
// restart stops before it disables anything; nothing is reported restarted.
void TstWinNetAdapters::restartIsRefused_wineStub()
{
    const QString strName = QStringLiteral("Vetrix Test NIC ") + uniqueTag();
    NetDevice device(pciId(uniqueTag()), true, strName);
    QVERIFY(device.isRegistered());
    CNetAdapter adapter;
    adapter.description = strName + QStringLiteral(" #2");
    adapter.driverKey = device.driverKey();
    adapter.jumboState = 0;
    QLoggingCategory::setFilterRules(QStringLiteral("vetrix.repair.info=true"));
    g_listMessages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectMessage);
    NetAdapters::restartAdapters({adapter});
    qInstallMessageHandler(previous);
    for (const QString &strMessage : qAsConst(g_listMessages))
        QVERIFY2(!strMessage.contains(QLatin1String("restarted network adapter")), qPrintable(strMessage));
    // The device is still there.
    bool bFound = false;
    for (const NetAdapters::Detail::CNetDevice &found : NetAdapters::Detail::networkDevices(QStringLiteral("PCI")))
        bFound = bFound || found.driverKey == device.driverKey();
    QVERIFY(bFound);
}

// A physical adapter (characteristic 0x4) is listed with its speed; Wine 8
// reports every interface at 0 bit/s, which counts as slow. Without a
// connected host interface the item is normal with an empty map.
void TstWinNetAdapters::lineRateZeroSpeedIsSlow_wineStub()
{
    const QString strConnected = connectedAdapterName();
    const QString strKey = QStringLiteral("%1\\{4D36E972-E325-11CE-BFC1-08002BE10318}\\8%2")
                               .arg(QLatin1String(kClassRoot), uniqueTag().left(3));
    {
        KeyCloser key{createKey(strKey)};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "NetCfgInstanceId", strConnected.isEmpty() ? "{DEADBEEF-0000-0000-0000-000000000001}" : strConnected),
                 LONG(ERROR_SUCCESS));
        QCOMPARE(setDword(key.hKey, "Characteristics", 0x84), LONG(ERROR_SUCCESS));
    }
    CNetworkSpeedDetectInfo info;
    LineRate::check(info);
    deleteTree(strKey);
    if (strConnected.isEmpty()) {
        QCOMPARE(info.bNormal, 1);
        QVERIFY(info.adapterSpeeds.isEmpty());
        return;
    }
    QCOMPARE(info.adapterSpeeds.size(), 1);
    QCOMPARE(info.adapterSpeeds.first(), 0);
    QCOMPARE(info.bNormal, 0);
}

// "Characteristics" stored as text is not a DWORD: the adapter is not
// taken as physical and is not listed.
void TstWinNetAdapters::lineRateSkipsCharacteristicsOfWrongType()
{
    // A connected interface shows the difference (a physical one would be
    // listed); without one the adapter is skipped either way.
    QString strAdapter = connectedAdapterName();
    if (strAdapter.isEmpty())
        strAdapter = QStringLiteral("{DEADBEEF-0000-0000-0000-000000000002}");
    const QString strKey = QStringLiteral("%1\\{4D36E972-E325-11CE-BFC1-08002BE10318}\\8%2")
                               .arg(QLatin1String(kClassRoot), uniqueTag().left(3));
    {
        KeyCloser key{createKey(strKey)};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "NetCfgInstanceId", strAdapter), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "Characteristics", "4"), LONG(ERROR_SUCCESS));
    }
    CNetworkSpeedDetectInfo info;
    LineRate::check(info);
    deleteTree(strKey);
    QVERIFY(info.adapterSpeeds.isEmpty());
    QCOMPARE(info.bNormal, 1);
}

QTEST_GUILESS_MAIN(TstWinNetAdapters)
#include "tst_win_netadapters.moc"
