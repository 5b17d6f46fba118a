// The rules for the oldest supported Windows (XP), run in a helper program
// to which Wine reports Windows XP x64 (its per-program version setting,
// HKCU\Software\Wine\AppDefaults\xpcheck.exe\Version): the firewall's
// standard-profile switch in the registry and the "Jumboframe" value name.
#include "childprocess.h"
#include "netadapters_win_p.h"
#include "winfixtures.h"

#include <QCoreApplication>
#include <QtTest>

using namespace WinFixtures;

namespace {

const wchar_t kAppDefaults[] = L"Software\\Wine\\AppDefaults\\xpcheck.exe";
const QString kStandardProfile =
    QStringLiteral("SYSTEM\\ControlSet001\\services\\SharedAccess\\Parameters\\FirewallPolicy\\StandardProfile");

QByteArray runXpCheck(const QStringList &listArgs, int *pExit)
{
    const WinChild::Result result =
        WinChild::run(QCoreApplication::applicationDirPath() + QStringLiteral("/xpcheck.exe"), listArgs);
    if (!result.bFinished) {
        *pExit = -1;
        return QByteArray();
    }
    *pExit = result.nExitCode;
    return result.stdOut;
}

} // namespace

class TstWinOldWindows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        HKEY hKey = nullptr;
        QCOMPARE(RegCreateKeyExW(HKEY_CURRENT_USER, kAppDefaults, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &hKey, nullptr),
                 LONG(ERROR_SUCCESS));
        QCOMPARE(setString(hKey, "Version", "winxp64"), LONG(ERROR_SUCCESS));
        RegCloseKey(hKey);
    }
    void cleanupTestCase()
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, kAppDefaults);
        RegDeleteKeyW(HKEY_CURRENT_USER, kAppDefaults);
    }
    void cleanup() { deleteTree(kStandardProfile); }

    void helperSeesWindowsXp();
    void firewallStandardProfile_data();
    void firewallStandardProfile();
    void jumboValueNameOfWindowsXp();
};

void TstWinOldWindows::helperSeesWindowsXp()
{
    int nExit = 0;
    QCOMPARE(runXpCheck({"system"}, &nExit), QByteArray("1"));
    QCOMPARE(nExit, 0);
}

// "EnableFirewall" of the standard profile decides; the policy object of
// Wine answers E_NOTIMPL and adds nothing.
void TstWinOldWindows::firewallStandardProfile_data()
{
    QTest::addColumn<int>("type"); // REG_NONE: no key at all
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("enabled");
    QTest::newRow("switched on") << int(REG_DWORD) << QByteArray("\x01\0\0\0", 4) << QByteArray("1");
    QTest::newRow("switched off") << int(REG_DWORD) << QByteArray("\0\0\0\0", 4) << QByteArray("0");
    QTest::newRow("no profile key") << int(REG_NONE) << QByteArray() << QByteArray("0");
    QTest::newRow("value too large for a DWORD") << int(REG_BINARY) << QByteArray("\x01\0\0\0\0\0\0\0", 8) << QByteArray("0");
}

void TstWinOldWindows::firewallStandardProfile()
{
    QFETCH(int, type);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, enabled);
    if (type != REG_NONE) {
        KeyCloser key{createKey(kStandardProfile)};
        QVERIFY(key.hKey);
        QCOMPARE(setRaw(key.hKey, "EnableFirewall", DWORD(type), data), LONG(ERROR_SUCCESS));
    }
    int nExit = 0;
    QCOMPARE(runXpCheck({"firewall"}, &nExit), enabled);
    QCOMPARE(nExit, 0);
}

// Windows XP drivers keep the setting in "Jumboframe"; later ones in
// "JumboPacket" and the like, which XP does not look at.
void TstWinOldWindows::jumboValueNameOfWindowsXp()
{
    NetDevice device(QStringLiteral("PCI\\VEN_8086&DEV_100E\\3&267A616A&0&") + uniqueTag(), true);
    QVERIFY(device.isRegistered());
    {
        KeyCloser key{createKey(device.driverKeyPath())};
        QVERIFY(key.hKey);
        QCOMPARE(setString(key.hKey, "Jumboframe", "9014"), LONG(ERROR_SUCCESS));
        QCOMPARE(setString(key.hKey, "JumboPacket", "1514"), LONG(ERROR_SUCCESS));
    }
    int nExit = 0;
    QCOMPARE(runXpCheck({"jumbo", device.driverKey()}, &nExit), QByteArray("1 9014 Jumboframe"));
    QCOMPARE(nExit, 0);
    // This process is not Windows XP: it reads the later name.
    int nValue = 0;
    QCOMPARE(NetAdapters::Detail::readJumbo(device.driverKey(), &nValue), 0);
    QCOMPARE(nValue, 1514);
}

QTEST_GUILESS_MAIN(TstWinOldWindows)
#include "tst_win_oldwindows.moc"
