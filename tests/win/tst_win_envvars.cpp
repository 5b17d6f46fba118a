// The environment repair against Wine's real registry: what lands in the
// machine-wide environment key (type, the fixed 1024-byte size, the text)
// and in this process.
#include "cdetectinfo.h"
#include "envvars.h"
#include "envvars_win_p.h"
#include "winfixtures.h"

#include <QtTest>

#include <aclapi.h>

using namespace WinFixtures;

namespace {

const QStringList kNames = {"path", "LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
                            "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"};

struct RawValue
{
    bool bPresent = false;
    DWORD dwType = 0;
    QByteArray data;
};

// A value of the environment key as the 8-bit API returns it.
RawValue readValue(const QString &strName)
{
    RawValue value;
    KeyCloser key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, EnvVars::Detail::kEnvironmentKey, 0, KEY_READ, &key.hKey) != ERROR_SUCCESS)
        return value;
    QByteArray data(4096, '\0');
    DWORD dwSize = DWORD(data.size());
    if (RegQueryValueExA(key.hKey, strName.toLatin1().constData(), nullptr, &value.dwType, reinterpret_cast<BYTE *>(data.data()),
                         &dwSize) != ERROR_SUCCESS)
        return value;
    value.bPresent = true;
    value.data = data.left(int(dwSize));
    return value;
}

void writeValue(const QString &strName, const RawValue &value)
{
    KeyCloser key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, EnvVars::Detail::kEnvironmentKey, 0, KEY_ALL_ACCESS, &key.hKey) != ERROR_SUCCESS)
        return;
    if (value.bPresent)
        RegSetValueExA(key.hKey, strName.toLatin1().constData(), 0, value.dwType,
                       reinterpret_cast<const BYTE *>(value.data.constData()), DWORD(value.data.size()));
    else
        RegDeleteValueA(key.hKey, strName.toLatin1().constData());
}

} // namespace

class TstWinEnvVars : public QObject
{
    Q_OBJECT

private:
    QMap<QString, RawValue> m_savedRegistry;
    QMap<QString, QByteArray> m_savedProcess;
    QByteArray m_savedPath;

private slots:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("vetrix.repair.info=false"));
    }
    // The machine environment and this process are put back after each test.
    void init()
    {
        m_savedRegistry.clear();
        m_savedProcess.clear();
        for (const QString &strName : kNames) {
            m_savedRegistry[strName] = readValue(strName);
            m_savedProcess[strName] = qgetenv(strName.toLatin1().constData());
        }
        for (const QString &strName : kNames.mid(1))
            qunsetenv(strName.toLatin1().constData());
    }
    void cleanup()
    {
        for (const QString &strName : kNames) {
            writeValue(strName, m_savedRegistry.value(strName));
            const QByteArray value = m_savedProcess.value(strName);
            if (value.isNull())
                qunsetenv(strName.toLatin1().constData());
            else
                qputenv(strName.toLatin1().constData(), value);
        }
    }

    void repairWritesEachValue_data();
    void repairWritesEachValue();
    void failedWriteStaysOutOfProcess();
    void tooLongValueIsCut();
    void deniedKeyWritesNothing();
};

void TstWinEnvVars::repairWritesEachValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::newRow("path") << "path" << int(REG_EXPAND_SZ);
    QTest::newRow("GENICAM_GENTL32_PATH") << "GENICAM_GENTL32_PATH" << int(REG_EXPAND_SZ);
    QTest::newRow("GENICAM_GENTL64_PATH") << "GENICAM_GENTL64_PATH" << int(REG_EXPAND_SZ);
    QTest::newRow("LUCAM_COMMON_RUNENV") << "LUCAM_COMMON_RUNENV" << int(REG_SZ);
    QTest::newRow("LUCAM_GIGE_DEBUG_HEARTBEAT") << "LUCAM_GIGE_DEBUG_HEARTBEAT" << int(REG_SZ);
    QTest::newRow("LUCAM_GENICAM_CLPROTOCOL") << "LUCAM_GENICAM_CLPROTOCOL" << int(REG_SZ);
}

// Every variable fails with nothing set; the repair writes each through the
// whole 1024-byte buffer with its type, and the process sees the value.
void TstWinEnvVars::repairWritesEachValue()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    CEnvDetectInfo info;
    EnvVars::check(info);
    QCOMPARE(info.bNormal, 0);
    QVERIFY(info.missingValues.contains(name));
    QString strExpected;
    for (const auto &write : EnvVars::plannedWrites(info)) {
        if (write.first == name)
            strExpected = write.second;
    }
    QVERIFY(!strExpected.isEmpty());

    QCOMPARE(EnvVars::repair(info), VxRepairStatus::Done);
    QCOMPARE(info.bNormal, 1);
    QVERIFY(info.missingValues.isEmpty());

    const RawValue value = readValue(name);
    QVERIFY(value.bPresent);
    QCOMPARE(int(value.dwType), type);
    QCOMPARE(value.data.size(), 1024);
    QCOMPARE(QString::fromLocal8Bit(value.data.constData()), strExpected);
    QCOMPARE(QString::fromLocal8Bit(qgetenv(name.toLatin1().constData())), strExpected);

    CEnvDetectInfo again;
    EnvVars::check(again);
    QVERIFY2(!again.missingValues.contains(name), qPrintable(again.missingValues.value(name).join('|')));
}

// A value the registry refuses is not put into this process: the item
// stays exceptional, that variable stays queued and a new check finds it
// missing again. The others are written and pass.
void TstWinEnvVars::failedWriteStaysOutOfProcess()
{
    const QString strRefused = QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT");
    const EnvVars::MachineWriter refusing = EnvVars::Detail::registryWriter(
        [&](HKEY hKey, const char *pName, DWORD dwType, const BYTE *pData, DWORD dwSize) -> LONG {
            if (strRefused == QLatin1String(pName))
                return ERROR_ACCESS_DENIED;
            return RegSetValueExA(hKey, pName, 0, dwType, pData, dwSize);
        });
    writeValue(strRefused, RawValue());
    CEnvDetectInfo info;
    EnvVars::check(info);
    QVERIFY(info.missingValues.contains(strRefused));

    QCOMPARE(EnvVars::repair(info, VxPrivileges::system(), refusing), VxRepairStatus::Failed);
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(info.missingValues.keys(), QStringList{strRefused});
    QVERIFY(qgetenv(strRefused.toLatin1().constData()).isEmpty());
    QVERIFY(!readValue(strRefused).bPresent);
    QCOMPARE(qgetenv("GENICAM_GENTL64_PATH").isEmpty(), false);
    QVERIFY(readValue(QStringLiteral("GENICAM_GENTL64_PATH")).bPresent);

    CEnvDetectInfo again;
    EnvVars::check(again);
    QCOMPARE(again.bNormal, 0);
    QCOMPARE(again.missingValues.keys(), QStringList{strRefused});
}

// A value longer than the 1024-byte buffer is cut to 1023 bytes and a
// terminating zero.
void TstWinEnvVars::tooLongValueIsCut()
{
    const QByteArray longValue = "C:\\" + QByteArray(2000, 'x');
    qputenv("GENICAM_GENTL64_PATH", longValue);
    CEnvDetectInfo info;
    EnvVars::check(info);
    QVERIFY(info.missingValues.contains("GENICAM_GENTL64_PATH"));
    QCOMPARE(EnvVars::repair(info), VxRepairStatus::Done);
    const RawValue value = readValue(QStringLiteral("GENICAM_GENTL64_PATH"));
    QVERIFY(value.bPresent);
    QCOMPARE(value.data.size(), 1024);
    const QByteArray text(value.data.constData());
    QCOMPARE(text.size(), 1023);
    QVERIFY(text.startsWith(EnvVars::sdkFolder().toLocal8Bit()));
    QVERIFY(text.endsWith(QByteArray(8, 'x')));
    QCOMPARE(qgetenv("GENICAM_GENTL64_PATH"), text);
}

// The key refuses write access (its security denies setting values):
// nothing is written, the process is unchanged and the item stays
// exceptional with its queue.
void TstWinEnvVars::deniedKeyWritesNothing()
{
    KeyCloser key;
    QCOMPARE(RegOpenKeyExA(HKEY_LOCAL_MACHINE, EnvVars::Detail::kEnvironmentKey, 0, READ_CONTROL | WRITE_DAC, &key.hKey),
             LONG(ERROR_SUCCESS));
    PSECURITY_DESCRIPTOR pSaved = nullptr;
    PACL pDacl = nullptr;
    QCOMPARE(GetSecurityInfo(key.hKey, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, &pDacl, nullptr, &pSaved),
             DWORD(ERROR_SUCCESS));
    // Deny everyone the right to set values, in front of the existing entries.
    EXPLICIT_ACCESSW deny = {};
    deny.grfAccessPermissions = KEY_SET_VALUE;
    deny.grfAccessMode = DENY_ACCESS;
    deny.grfInheritance = NO_INHERITANCE;
    wchar_t everyone[] = L"EVERYONE";
    BuildTrusteeWithNameW(&deny.Trustee, everyone);
    PACL pDenied = nullptr;
    QCOMPARE(SetEntriesInAclW(1, &deny, pDacl, &pDenied), DWORD(ERROR_SUCCESS));
    QCOMPARE(SetSecurityInfo(key.hKey, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, pDenied, nullptr),
             DWORD(ERROR_SUCCESS));

    CEnvDetectInfo info;
    EnvVars::check(info);
    const QMap<QString, QStringList> queued = info.missingValues;
    const VxRepairStatus status = EnvVars::repair(info);

    SetSecurityInfo(key.hKey, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, pDacl, nullptr);
    LocalFree(pDenied);
    LocalFree(pSaved);

    QCOMPARE(status, VxRepairStatus::Failed);
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(info.missingValues, queued);
    QVERIFY(qgetenv("LUCAM_GIGE_DEBUG_HEARTBEAT").isEmpty());
    QVERIFY(!readValue(QStringLiteral("LUCAM_GIGE_DEBUG_HEARTBEAT")).bPresent);
}

QTEST_GUILESS_MAIN(TstWinEnvVars)
#include "tst_win_envvars.moc"
