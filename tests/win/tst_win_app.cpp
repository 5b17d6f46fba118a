// The application shell's Windows parts under Wine: the single-instance
// mutex seen from a second process, the version text with the maker's
// configuration in %ProgramData%, and the resource sampler.
#include "childprocess.h"
#include "resourcesampler.h"
#include "singleinstance.h"
#include "vxversion.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QtTest>

#include <windows.h>
#include <shlobj.h>

namespace {

// The mutex name as the system sees it: the bytes of "VetrixTool" read as
// five little-endian UTF-16 units.
const wchar_t kSeenName[] = {0x6556, 0x7274, 0x7869, 0x6F54, 0x6C6F, 0};

QString secondStart()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/singleinstance_second.exe");
}

QString oemIni()
{
    wchar_t data[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, data)))
        return QString();
    return QDir::fromNativeSeparators(QString::fromWCharArray(data)) + QStringLiteral("/Orvex/oem.ini");
}

} // namespace

class TstWinApp : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        VxSingleInstance::release();
        QFile::remove(oemIni());
    }

    void secondStartFindsTheMutexAndExitsZero();
    void startAfterReleaseIsFirst();
    void platformCheckPasses();
    void versionTextWithoutConfiguration();
    void versionTextFromMakerConfiguration();
    void memoryLoadIsTheSystemsReading();
    void cpuLoadReadsZero_wineStub();
};

// The first instance holds the odd-named mutex; another process finds it,
// raises no window (there is none with either title) and exits with 0.
void TstWinApp::secondStartFindsTheMutexAndExitsZero()
{
    QVERIFY(!VxSingleInstance::anotherInstanceRuns());
    HANDLE hSeen = OpenMutexW(SYNCHRONIZE, FALSE, kSeenName);
    QVERIFY(hSeen != nullptr);
    CloseHandle(hSeen);

    const WinChild::Result second = WinChild::run(secondStart(), QStringList());
    QVERIFY2(second.bFinished, qPrintable(second.strError));
    QCOMPARE(second.exitStatus, QProcess::NormalExit);
    QCOMPARE(second.nExitCode, 0);
    QCOMPARE(second.stdOut, QByteArray("another"));
}

void TstWinApp::startAfterReleaseIsFirst()
{
    QVERIFY(!VxSingleInstance::anotherInstanceRuns());
    VxSingleInstance::release();
    QVERIFY(OpenMutexW(SYNCHRONIZE, FALSE, kSeenName) == nullptr);
    const WinChild::Result second = WinChild::run(secondStart(), QStringList());
    QVERIFY2(second.bFinished, qPrintable(second.strError));
    QCOMPARE(second.nExitCode, 3);
    QCOMPARE(second.stdOut, QByteArray("first"));
}

// GetNativeSystemInfo is found in kernel32 and called; the check passes.
void TstWinApp::platformCheckPasses()
{
    QVERIFY(GetProcAddress(GetModuleHandleW(L"kernel32"), "GetNativeSystemInfo") != nullptr);
    QVERIFY(vxPlatformCheck());
}

void TstWinApp::versionTextWithoutConfiguration()
{
    QVERIFY(!QFileInfo::exists(oemIni()));
    QCOMPARE(VxVersion::versionText(), QStringLiteral("V4.1.0 build20250225"));
}

// The maker's machine-wide values live in %ProgramData%\Orvex\oem.ini.
void TstWinApp::versionTextFromMakerConfiguration()
{
    QVERIFY(QDir().mkpath(QFileInfo(oemIni()).absolutePath()));
    QFile ini(oemIni());
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[OEM]\r\nSoftwareBuildDate=20260101\r\nToolSoftwareVersion=5.0.1\r\n");
    ini.close();
    QCOMPARE(VxVersion::versionText(), QStringLiteral("V5.0.1 build20260101"));
}

// Percent of physical memory in use, as GlobalMemoryStatusEx reports it
// (its own rounded figure may differ by a point).
void TstWinApp::memoryLoadIsTheSystemsReading()
{
    VxResourceSampler sampler;
    const float fLoad = sampler.memoryLoad();
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    QVERIFY(GlobalMemoryStatusEx(&status));
    QVERIFY2(fLoad > 0.0f && fLoad < 100.0f, qPrintable(QString::number(fLoad)));
    QVERIFY2(qAbs(fLoad - float(status.dwMemoryLoad)) <= 2.0f, qPrintable(QStringLiteral("%1 vs %2").arg(fLoad).arg(status.dwMemoryLoad)));
}

// Wine has no "Processor Information" counters (PDH_CSTATUS_NO_COUNTER):
// the first sample is 0 by definition and later ones read 0 without
// failing.
void TstWinApp::cpuLoadReadsZero_wineStub()
{
    VxResourceSampler sampler;
    QCOMPARE(sampler.cpuLoad(), 0.0f);
    Sleep(50);
    QCOMPARE(sampler.cpuLoad(), 0.0f);
}

QTEST_GUILESS_MAIN(TstWinApp)
#include "tst_win_app.moc"
