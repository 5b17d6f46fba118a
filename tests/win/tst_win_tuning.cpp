// The Windows side of the host tuning items against Wine's real registry:
// the adapters' *ReceiveBuffers and *InterruptModeration with their Ndi
// parameter entries, the keyword writer, and the power plan's USB selective
// suspend setting.
#include "gentlproducers.h"
#include "rxbuffers.h"
#include "rxbuffers_win_p.h"
#include "usbbuffers.h"
#include "winfixtures.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

using namespace WinFixtures;

namespace {

QString pciId(const QString &strTag)
{
    return QStringLiteral("PCI\\VEN_8086&DEV_1533&SUBSYS_00008086&REV_03\\3&11583659&0&") + strTag;
}

QString readString(const QString &strKey, const QString &strName)
{
    KeyCloser key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, reinterpret_cast<const wchar_t *>(strKey.utf16()), 0, KEY_READ, &key.hKey)
        != ERROR_SUCCESS)
        return QStringLiteral("<no key>");
    wchar_t data[256] = {};
    DWORD dwSize = sizeof data - sizeof(wchar_t);
    DWORD dwType = 0;
    if (RegQueryValueExW(key.hKey, reinterpret_cast<const wchar_t *>(strName.utf16()), nullptr, &dwType,
            reinterpret_cast<BYTE *>(data), &dwSize)
            != ERROR_SUCCESS
        || dwType != REG_SZ)
        return QStringLiteral("<no text>");
    return QString::fromWCharArray(data);
}

} // namespace

class TstWinTuning : public QObject
{
    Q_OBJECT

private slots:
    void receiveBuffersAreRead_data();
    void receiveBuffersAreRead();
    void interruptModerationIsRead_data();
    void interruptModerationIsRead();
    void missingClassKeyHasNoSettings();
    void keywordWriterStoresText();
    void selectiveSuspendHasAnOutcome_wineStub();
    void genTLProducersArePeLibraries();
};

// Columns: the driver key's value (empty: none; "dword:N": a DWORD), the
// Ndi\params entry ("enum:a,b,c", "range:min-max", "default:N;range:..."),
// and the values read.
void TstWinTuning::receiveBuffersAreRead_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("params");
    QTest::addColumn<qint64>("rx");
    QTest::addColumn<qint64>("rxMax");
    QTest::newRow("text below the enum's largest") << "512"
                                                   << "enum:256,512,1024,4096,2048" << qint64(512) << qint64(4096);
    QTest::newRow("at the enum's largest") << "4096"
                                           << "enum:256,4096" << qint64(4096) << qint64(4096);
    QTest::newRow("enum with a word") << "256"
                                      << "enum:256,lots,1024" << qint64(256) << qint64(1024);
    QTest::newRow("DWORD and a numeric range") << "dword:512"
                                               << "range:80-2048" << qint64(512) << qint64(2048);
    QTest::newRow("no value: the default") << ""
                                           << "default:1024;range:80-4096" << qint64(1024) << qint64(4096);
    QTest::newRow("not a number") << "abc"
                                  << "range:80-4096" << qint64(-1) << qint64(4096);
    QTest::newRow("no parameter entry") << "512"
                                        << "" << qint64(512) << qint64(-1);
    QTest::newRow("range max not a number") << "512"
                                            << "range:80-many" << qint64(512) << qint64(-1);
}

void TstWinTuning::receiveBuffersAreRead()
{
    QFETCH(QString, value);
    QFETCH(QString, params);
    QFETCH(qint64, rx);
    QFETCH(qint64, rxMax);
    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(device.isRegistered());
    QVERIFY(!device.driverKey().isEmpty());
    {
        KeyCloser key {createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        if (value.startsWith("dword:"))
            QCOMPARE(setDword(key.hKey, "*ReceiveBuffers", value.mid(6).toUInt()), LONG(ERROR_SUCCESS));
        else if (!value.isEmpty())
            QCOMPARE(setString(key.hKey, "*ReceiveBuffers", value), LONG(ERROR_SUCCESS));
    }
    const QString strParams = device.driverKeyPath() + "\\Ndi\\params\\*ReceiveBuffers";
    for (const QString &strPart : params.split(';', Qt::SkipEmptyParts)) {
        KeyCloser key {createKey(strParams)};
        QVERIFY(key.hKey);
        if (strPart.startsWith("enum:")) {
            KeyCloser values {createKey(strParams + "\\enum")};
            QVERIFY(values.hKey);
            for (const QString &strName : strPart.mid(5).split(','))
                QCOMPARE(setString(values.hKey, strName, strName + " buffers"), LONG(ERROR_SUCCESS));
        } else if (strPart.startsWith("range:")) {
            QCOMPARE(setString(key.hKey, "type", "int"), LONG(ERROR_SUCCESS));
            QCOMPARE(setString(key.hKey, "min", strPart.mid(6).section('-', 0, 0)), LONG(ERROR_SUCCESS));
            QCOMPARE(setString(key.hKey, "max", strPart.mid(6).section('-', 1, 1)), LONG(ERROR_SUCCESS));
        } else if (strPart.startsWith("default:")) {
            QCOMPARE(setString(key.hKey, "default", strPart.mid(8)), LONG(ERROR_SUCCESS));
        }
    }
    CRxAdapter adapter;
    RxBuffers::Detail::readDriverSettings(device.driverKey(), &adapter);
    QCOMPARE(adapter.strDriverKey, device.driverKey());
    QCOMPARE(adapter.nRx, rx);
    QCOMPARE(adapter.nRxMax, rxMax);
    CRxBufferDetectInfo info;
    adapter.strName = "Test adapter";
    info.adapters << adapter;
    QCOMPARE(RxBuffers::isExceptional(info), rx >= 0 && rxMax > 0 && rx < rxMax);
}

void TstWinTuning::interruptModerationIsRead_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("paramDefault"); // "-": no parameter entry
    QTest::addColumn<int>("moderation");
    QTest::newRow("off") << "0"
                         << "-" << 0;
    QTest::newRow("on") << "1"
                        << "-" << 1;
    QTest::newRow("no value, default on") << ""
                                          << "1" << 1;
    QTest::newRow("no value, default off") << ""
                                           << "0" << 0;
    QTest::newRow("the driver has none") << ""
                                         << "-" << -1;
}

void TstWinTuning::interruptModerationIsRead()
{
    QFETCH(QString, value);
    QFETCH(QString, paramDefault);
    QFETCH(int, moderation);
    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(!device.driverKey().isEmpty());
    if (!value.isEmpty()) {
        KeyCloser key {createKey(device.driverKeyPath())};
        QCOMPARE(setString(key.hKey, "*InterruptModeration", value), LONG(ERROR_SUCCESS));
    }
    if (paramDefault != "-") {
        KeyCloser key {createKey(device.driverKeyPath() + "\\Ndi\\params\\*InterruptModeration")};
        QCOMPARE(setString(key.hKey, "default", paramDefault), LONG(ERROR_SUCCESS));
    }
    CRxAdapter adapter;
    RxBuffers::Detail::readDriverSettings(device.driverKey(), &adapter);
    QCOMPARE(adapter.nInterruptModeration, moderation);
    CRxBufferDetectInfo info;
    info.adapters << adapter;
    QCOMPARE(RxBuffers::plan(info).size(), moderation == 0 ? 1 : 0);
}

void TstWinTuning::missingClassKeyHasNoSettings()
{
    const QString strKey = QStringLiteral("{0BADC1A5-0000-0000-0000-%1}\\0000").arg(uniqueTag());
    CRxAdapter adapter;
    RxBuffers::Detail::readDriverSettings(strKey, &adapter);
    QCOMPARE(adapter.nRx, qint64(-1));
    QCOMPARE(adapter.nRxMax, qint64(-1));
    QCOMPARE(adapter.nInterruptModeration, -1);
    QVERIFY(!RxBuffers::Detail::writeKeyword(strKey, "*ReceiveBuffers", "4096"));
    QVERIFY(!RxBuffers::Detail::writeKeyword(QString(), "*ReceiveBuffers", "4096"));
}

void TstWinTuning::keywordWriterStoresText()
{
    NetDevice device(pciId(uniqueTag()), true);
    QVERIFY(!device.driverKey().isEmpty());
    {
        KeyCloser key {createKey(device.driverKeyPath())};
        QCOMPARE(setDword(key.hKey, "*ReceiveBuffers", 256), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "*InterruptModeration", "0"), LONG(ERROR_SUCCESS));
        KeyCloser params {createKey(device.driverKeyPath() + "\\Ndi\\params\\*ReceiveBuffers")};
        QCOMPARE(setString(params.hKey, "max", "4096"), LONG(ERROR_SUCCESS));
    }
    CRxBufferDetectInfo info;
    CRxAdapter adapter;
    RxBuffers::Detail::readDriverSettings(device.driverKey(), &adapter);
    info.adapters << adapter;
    for (const VxChange &change : RxBuffers::plan(info)) {
        const QString strName = change.strKind == QLatin1String(RxBuffers::kReceiveBuffersKind)
            ? "*ReceiveBuffers"
            : "*InterruptModeration";
        QVERIFY(RxBuffers::Detail::writeKeyword(change.strTarget, strName, change.strNew));
    }
    QCOMPARE(readString(device.driverKeyPath(), "*ReceiveBuffers"), QString("4096"));
    QCOMPARE(readString(device.driverKeyPath(), "*InterruptModeration"), QString("1"));
    RxBuffers::Detail::readDriverSettings(device.driverKey(), &adapter);
    QCOMPARE(adapter.nRx, qint64(4096));
    QCOMPARE(adapter.nInterruptModeration, 1);
}

// Wine's power management may answer without a plan or setting; whatever it
// answers, the item's record, lines and plan agree.
void TstWinTuning::selectiveSuspendHasAnOutcome_wineStub()
{
    CUsbBufferDetectInfo info;
    UsbBuffers::check(info);
    QVERIFY(info.bPowerPlan);
    qInfo("active plan %s, selective suspend %d", qPrintable(info.strPowerScheme), info.nSelectiveSuspend);
    const QStringList listLines = usbBufferLines(info);
    QCOMPARE(listLines.size(), 1);
    QCOMPARE(info.bNormal, info.nSelectiveSuspend == 1 ? 0 : 1);
    QCOMPARE(UsbBuffers::plan(info).size(), info.nSelectiveSuspend == 1 ? 1 : 0);
    if (info.nSelectiveSuspend == -1)
        QCOMPARE(
            listLines.first(), QString("The USB selective suspend setting of the active power plan cannot be read."));
    QCOMPARE(usbBufferFacts(info).value("selectiveSuspend").isNull(), info.nSelectiveSuspend == -1);
}

namespace {

// A PE header: magic 0x10b (PE32) or 0x20b (PE32+), machine, and the DLL flag.
QByteArray peHeader(quint16 uMagic, quint16 uMachine, bool bDll)
{
    QByteArray header(512, '\0');
    header.replace(0, 2, "MZ");
    qToLittleEndian<quint32>(0x80, header.data() + 0x3c);
    header.replace(0x80, 4, QByteArray("PE\0\0", 4));
    qToLittleEndian<quint16>(uMachine, header.data() + 0x84);
    qToLittleEndian<quint16>(bDll ? 0x2022 : 0x0022, header.data() + 0x84 + 18);
    qToLittleEndian<quint16>(uMagic, header.data() + 0x84 + 20);
    return header;
}

bool writeFile(const QString &strPath, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(strPath).absolutePath());
    QFile file(strPath);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

} // namespace

// Windows folders are ";"-separated, producers are PE DLLs (AMD64 for the
// 64-bit variable) and file names differ only by case.
void TstWinTuning::genTLProducersArePeLibraries()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString strA = QDir::toNativeSeparators(dir.path() + "/a");
    const QString strB = QDir::toNativeSeparators(dir.path() + "/b");
    QVERIFY(writeFile(dir.path() + "/a/VendorA.cti", peHeader(0x20b, 0x8664, true)));
    QVERIFY(writeFile(dir.path() + "/b/vendora.CTI", peHeader(0x20b, 0x8664, true)));
    QVERIFY(writeFile(dir.path() + "/b/Old32.cti", peHeader(0x10b, 0x14c, true)));
    qputenv("GENICAM_GENTL64_PATH", (strA + ";" + strB).toLocal8Bit());
    qunsetenv("GENICAM_GENTL32_PATH");
    CGenTLDetectInfo info;
    GenTLProducers::check(info);
    qunsetenv("GENICAM_GENTL64_PATH");
    QCOMPARE(info.folders.size(), 2);
    QCOMPARE(info.producers.size(), 3);
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(info.duplicates.size(), 1);
    QCOMPARE(info.duplicates.first().folders, QStringList({strA, strB}));
    const QStringList listLines = genTLLines(info);
    QVERIFY2(
        listLines.contains(QString("GenTL producer: %1 (64-bit PE library for x86-64).").arg(strA + "\\VendorA.cti")),
        qPrintable(listLines.join('\n')));
    QVERIFY2(listLines.contains(QString("%1 is a 32-bit PE library for x86, but GENICAM_GENTL64_PATH needs a 64-bit PE "
                                        "library for x86-64: install the matching producer.")
                                    .arg(strB + "\\Old32.cti")),
        qPrintable(listLines.join('\n')));
}

QTEST_GUILESS_MAIN(TstWinTuning)
#include "tst_win_tuning.moc"
