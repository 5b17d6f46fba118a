// The camera driver checks and installers, the filter-driver client and the
// firewall query against what Wine really provides. Wine's difxapi.dll is
// a stub that answers every path query with ERROR_UNSUPPORTED_TYPE, and its
// firewall policy object answers E_NOTIMPL: those tests run the error paths.
#include "cameradrivers.h"
#include "cameradrivers_win_p.h"
#include "cdetectinfo.h"
#include "firewallstatus.h"
#include "gevfilterclient.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <QtTest>

#include <windows.h>
#include <setupapi.h>

namespace {

const char kInf[] = "[Version]\r\n"
                    "Signature=\"$Windows NT$\"\r\n"
                    "Class=USB\r\n"
                    "ClassGuid={36FC9E60-C465-11CF-8056-444553540000}\r\n"
                    "Provider=%Mfg%\r\n"
                    "DriverVer=01/01/2024,1.0.0.0\r\n"
                    "[Strings]\r\n"
                    "Mfg=\"Vetrix test\"\r\n";

bool writeFile(const QString &strPath, const QByteArray &data)
{
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()))
        return false;
    QFile file(strPath);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

// Publishes an INF into the driver store the way an installer does; the
// published file name, or empty.
QString publishInf(const QString &strInf)
{
    wchar_t published[MAX_PATH] = {};
    wchar_t *pFilePart = nullptr;
    const std::wstring path = QDir::toNativeSeparators(strInf).toStdWString();
    if (!SetupCopyOEMInfW(path.c_str(), nullptr, SPOST_PATH, 0, published, MAX_PATH, nullptr, &pFilePart) || !pFilePart)
        return QString();
    return QString::fromWCharArray(pFilePart);
}

void unpublishInf(const QString &strPublished)
{
    if (!strPublished.isEmpty())
        SetupUninstallOEMInfW(reinterpret_cast<const wchar_t *>(strPublished.utf16()), SUOI_FORCEDELETE, nullptr);
}

QString usb3Inf()
{
    return CameraDrivers::sdkFolder() + QStringLiteral("/Drivers/Usb3.0/luu3v.inf");
}

} // namespace

class TstWinDrivers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("vetrix.repair.info=false"));
    }
    void cleanup()
    {
        CameraDrivers::Detail::setDriverFrameworkLibrary(QString());
        QDir(CameraDrivers::sdkFolder() + QStringLiteral("/Drivers")).removeRecursively();
    }

    void driverFrameworkIsUnsupported_wineStub();
    void usb3FallsBackToPublishedInf_data();
    void usb3FallsBackToPublishedInf();
    void usb3WithoutFrameworkLibrary();
    void usb3FrameworkAnswers_data();
    void usb3FrameworkAnswers();
    void usb3OtherPublishedInfDoesNotCount();
    void gigeProbeReportsAbsentDevice();
    void filterClientErrorPaths();
    void filterDeviceEventsAreAutoReset();
    void installerStartsBatchFile();
    void installerWithoutScriptStartsNothing();
    void firewallStubReportsOff_wineStub();
    void firewallQueryKeepsCallersApartment_wineStub();
};

void TstWinDrivers::driverFrameworkIsUnsupported_wineStub()
{
    QVERIFY(writeFile(usb3Inf(), kInf));
    QCOMPARE(CameraDrivers::Detail::askDriverFramework(usb3Inf()), CameraDrivers::Detail::FrameworkAnswer::Unavailable);
}

// The framework cannot answer, so the check asks the driver store through
// SetupAPI: installed exactly while the package is published.
void TstWinDrivers::usb3FallsBackToPublishedInf_data()
{
    QTest::addColumn<bool>("published");
    QTest::newRow("not published") << false;
    QTest::newRow("published") << true;
}

void TstWinDrivers::usb3FallsBackToPublishedInf()
{
    QFETCH(bool, published);
    QVERIFY(writeFile(usb3Inf(), kInf));
    QString strPublished;
    if (published) {
        strPublished = publishInf(usb3Inf());
        QVERIFY(!strPublished.isEmpty());
    }
    CDetectInfo info;
    info.bNormal = published ? 0 : 1;
    CameraDrivers::usb3Check(info);
    const int nNormal = info.bNormal;
    const bool bFound = CameraDrivers::Detail::publishedInfFound(usb3Inf());
    unpublishInf(strPublished);
    QCOMPARE(nNormal, published ? 1 : 0);
    QCOMPARE(bFound, published);
    if (published) {
        CameraDrivers::usb3Check(info);
        QCOMPARE(info.bNormal, 0);
    }
}

void TstWinDrivers::usb3WithoutFrameworkLibrary()
{
    CameraDrivers::Detail::setDriverFrameworkLibrary(QStringLiteral("vetrix-no-such-difxapi.dll"));
    QVERIFY(writeFile(usb3Inf(), kInf));
    QCOMPARE(CameraDrivers::Detail::askDriverFramework(usb3Inf()), CameraDrivers::Detail::FrameworkAnswer::Unavailable);
    const QString strPublished = publishInf(usb3Inf());
    QVERIFY(!strPublished.isEmpty());
    CDetectInfo info;
    CameraDrivers::usb3Check(info);
    unpublishInf(strPublished);
    QCOMPARE(info.bNormal, 1);
}

// Each answer a framework library may give (a stand-in DLL gives them):
// its own answers count, only an unsupported call or a library without the
// function falls back to the published INFs.
void TstWinDrivers::usb3FrameworkAnswers_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("published");
    QTest::addColumn<int>("framework");
    QTest::addColumn<int>("normal");
    using A = CameraDrivers::Detail::FrameworkAnswer;
    const QString strFake = QStringLiteral("fakedifx.dll");
    QTest::newRow("path found") << strFake << QByteArray("path") << false << int(A::InStore) << 1;
    QTest::newRow("success with zero length") << strFake << QByteArray("empty") << true << int(A::NotInStore) << 0;
    QTest::newRow("package not in store") << strFake << QByteArray("0xE0000302") << true << int(A::NotInStore) << 0;
    QTest::newRow("call not implemented") << strFake << QByteArray("120") << true << int(A::Unavailable) << 1;
    QTest::newRow("unsupported, nothing published") << strFake << QByteArray("1630") << false << int(A::Unavailable) << 0;
    QTest::newRow("library without the function") << QStringLiteral("kernel32.dll") << QByteArray("path") << true
                                                  << int(A::Unavailable) << 1;
}

void TstWinDrivers::usb3FrameworkAnswers()
{
    QFETCH(QString, library);
    QFETCH(QByteArray, answer);
    QFETCH(bool, published);
    QFETCH(int, framework);
    QFETCH(int, normal);
    const QString strLibrary = library.startsWith(QLatin1String("fake"))
                                   ? QDir::toNativeSeparators(QCoreApplication::applicationDirPath() + "/" + library)
                                   : library;
    CameraDrivers::Detail::setDriverFrameworkLibrary(strLibrary);
    qputenv("VX_FAKE_DIFX", answer);
    QVERIFY(writeFile(usb3Inf(), kInf));
    const QString strPublished = published ? publishInf(usb3Inf()) : QString();
    QCOMPARE(strPublished.isEmpty(), !published);
    const int nFramework = int(CameraDrivers::Detail::askDriverFramework(usb3Inf()));
    CDetectInfo info;
    info.bNormal = normal ? 0 : 1;
    CameraDrivers::usb3Check(info);
    unpublishInf(strPublished);
    qunsetenv("VX_FAKE_DIFX");
    QCOMPARE(nFramework, framework);
    QCOMPARE(info.bNormal, normal);
}

// Another package published under another name is not the SDK's driver.
void TstWinDrivers::usb3OtherPublishedInfDoesNotCount()
{
    const QString strOther = QDir::tempPath() + QStringLiteral("/vx") + QUuid::createUuid().toString(QUuid::Id128).left(8)
                             + QStringLiteral(".inf");
    QVERIFY(writeFile(strOther, kInf));
    QVERIFY(writeFile(usb3Inf(), kInf));
    const QString strPublished = publishInf(strOther);
    QVERIFY(!strPublished.isEmpty());
    CDetectInfo info;
    info.bNormal = 1;
    CameraDrivers::usb3Check(info);
    unpublishInf(strPublished);
    QFile::remove(strOther);
    QCOMPARE(info.bNormal, 0);
}

// No filter driver: CreateFileA fails with ERROR_FILE_NOT_FOUND.
void TstWinDrivers::gigeProbeReportsAbsentDevice()
{
    QCOMPARE(GevFilter::openProbe(), GevFilter::kNotAvailable);
    CDetectInfo info;
    info.bNormal = 1;
    CameraDrivers::gigeCheck(info);
    QCOMPARE(info.bNormal, 0);
}

// The client on the real platform device: the events exist, a wait with
// none signalled ends with 0, a bad packet size is refused before the
// device is touched, and a start without the driver reports it absent.
void TstWinDrivers::filterClientErrorPaths()
{
    GevFilter::Client client(GevFilter::createPlatformDevice());
    QCOMPARE(client.create(), GevFilter::kOk);
    QCOMPARE(client.waitForEvents(20), 0u);
    client.setAddress(0xC0A80102u, 50010);
    client.setPacketSize(63);
    QCOMPARE(client.start(), GevFilter::kInvalidArgument);
    client.setPacketSize(10241);
    QCOMPARE(client.start(), GevFilter::kInvalidArgument);
    client.setPacketSize(8192);
    QCOMPARE(client.start(), GevFilter::kNotAvailable);
    QVERIFY(!client.isRunning());
    QVERIFY(!client.openDevice());
}

// The three events shared with the driver: a signalled one wakes the wait,
// a later one is picked up by the poll, and each resets when seen.
void TstWinDrivers::filterDeviceEventsAreAutoReset()
{
    std::unique_ptr<GevFilter::Device> pDevice = GevFilter::createPlatformDevice();
    QVERIFY(pDevice->createEvents());
    QVERIFY(pDevice->hasEvents());
    for (int i : {1, 2})
        QVERIFY(SetEvent(reinterpret_cast<HANDLE>(quintptr(pDevice->eventHandle(i)))));
    QCOMPARE(pDevice->waitAny(5000), 1);
    QVERIFY(pDevice->poll(2));
    QVERIFY(!pDevice->poll(2));
    QVERIFY(!pDevice->poll(0));
    QCOMPARE(pDevice->waitAny(10), -1);
    pDevice->closeEvents();
    QVERIFY(!pDevice->hasEvents());
}

// The installer script is started through the shell, hidden, without
// waiting; the batch file runs under cmd.exe and leaves its mark.
void TstWinDrivers::installerStartsBatchFile()
{
    const QString strMark = QDir::tempPath() + QStringLiteral("/vx-install-") + QUuid::createUuid().toString(QUuid::Id128).left(8)
                            + QStringLiteral(".txt");
    const QByteArray script = "@echo off\r\necho installed> \"" + QDir::toNativeSeparators(strMark).toLocal8Bit() + "\"\r\n";
    QVERIFY(writeFile(CameraDrivers::gigeInstallScript(), script));
    QVERIFY(CameraDrivers::installGige());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(strMark).size() > 0, 60000);
    QFile mark(strMark);
    QVERIFY(mark.open(QIODevice::ReadOnly));
    QCOMPARE(mark.readAll().trimmed(), QByteArray("installed"));
    mark.close();
    QFile::remove(strMark);
}

void TstWinDrivers::installerWithoutScriptStartsNothing()
{
    QVERIFY(!QFileInfo::exists(CameraDrivers::sdkFolder() + QStringLiteral("/Drivers")));
    QVERIFY(!CameraDrivers::installGige());
    QVERIFY(!CameraDrivers::installUsb3());
    // A folder where the script should be is not a script.
    QVERIFY(QDir().mkpath(CameraDrivers::usb3InstallScript()));
    QVERIFY(!CameraDrivers::installUsb3());
}

// get_FirewallEnabled answers E_NOTIMPL for every profile under Wine: no
// profile reports on, so the firewall counts as off and the item normal.
void TstWinDrivers::firewallStubReportsOff_wineStub()
{
    QVERIFY(!FirewallStatus().isEnabled());
    CDetectInfo info;
    info.bNormal = 0;
    Firewall::check(info);
    QCOMPARE(info.bNormal, 1);
}

// A thread already in the multithreaded apartment: the query still runs and
// leaves the caller's COM initialisation in place.
void TstWinDrivers::firewallQueryKeepsCallersApartment_wineStub()
{
    QVERIFY(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
    QVERIFY(!FirewallStatus().isEnabled());
    // Still initialised as before: a second call only counts up (S_FALSE).
    const HRESULT hr = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    QCOMPARE(hr, S_FALSE);
    CoUninitialize();
    CoUninitialize();
}

QTEST_GUILESS_MAIN(TstWinDrivers)
#include "tst_win_drivers.moc"
