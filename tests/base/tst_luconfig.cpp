#include "fixturetree.h"
#include "luinterface.h"

#include <QLocale>
#include <QTemporaryDir>
#include <QtTest>

// Configuration look-ups (application ini, machine OEM file below the system
// root, defaults) and the per-user language setting.
class TstLuConfig : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void oemValue_data();
    void oemValue();
    void softwareText_data();
    void softwareText();
    void shippedAppIni_data();
    void shippedAppIni();
    void resourceAppIni();
    void languageRoundTrip_data();
    void languageRoundTrip();
    void languageDefaults_data();
    void languageDefaults();

private:
    QTemporaryDir tempDir;
    QString strAppIni;
    QString strSysRoot;
};

namespace {

const QByteArray g_appIni =
    "[General]\n"
    "ToolSoftwareVersion=9.9.9\n"
    "[OEM]\n"
    "ShowUserManuel=false\n"
    "ShowAboutVersion=true\n"
    "Retries=7\n"
    "Word=abc\n"
    "[Software]\n"
    "Copyright_EN=\"Copyright %1 Test Maker\"\n"
    "Copyright_CN=\"\xe7\x89\x88\xe6\x9d\x83\xe6\x89\x80\xe6\x9c\x89 %1 \xe6\xb5\x8b\xe8\xaf\x95\"\n"
    "Unquoted=one, two\n";

const QByteArray g_oemIni =
    "[OEM]\n"
    "ShowAboutVersion=false\n"
    "SoftwareBuildDate=20260101\n"
    "[Software]\n"
    "Copyright_EN=\"Copyright %1 OEM\"\n";

QString expectedSystemLanguage()
{
    return QLocale::system().language() == QLocale::Chinese ? QStringLiteral("CH") : QStringLiteral("ENG");
}

} // namespace

void TstLuConfig::initTestCase()
{
    QVERIFY(tempDir.isValid());
    strAppIni = tempDir.filePath(QStringLiteral("app.ini"));
    QVERIFY(writeFixtureFile(tempDir.path(), QStringLiteral("app.ini"), g_appIni));
    strSysRoot = tempDir.filePath(QStringLiteral("root"));
    QVERIFY(writeFixtureFile(strSysRoot, QStringLiteral("etc/xdg/Orvex/oem.ini"), g_oemIni));
}

void TstLuConfig::init()
{
    qputenv("VETRIX_SYSROOT", QFile::encodeName(tempDir.filePath(QStringLiteral("empty-root"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(tempDir.filePath(QStringLiteral("config"))));
    LuInterface::setAppIniFile(QString());
}

void TstLuConfig::oemValue_data()
{
    QTest::addColumn<bool>("bUseAppIni");
    QTest::addColumn<bool>("bUseOemFile");
    QTest::addColumn<QString>("strKey");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<QVariant>("expected");

    QTest::addRow("no files gives default") << false << false << "ShowUserManuel" << QVariant(true) << QVariant(true);
    QTest::addRow("app ini false as bool") << true << false << "ShowUserManuel" << QVariant(true) << QVariant(false);
    QTest::addRow("app ini value without default") << true << false << "Word" << QVariant() << QVariant(QStringLiteral("abc"));
    QTest::addRow("missing key gives default") << true << false << "NoSuchKey" << QVariant(42) << QVariant(42);
    QTest::addRow("int converted") << true << false << "Retries" << QVariant(1) << QVariant(7);
    QTest::addRow("unconvertible keeps default") << true << false << "Word" << QVariant(5) << QVariant(5);
    QTest::addRow("general group is not OEM") << true << false << "ToolSoftwareVersion" << QVariant(QStringLiteral("4.1.0"))
                                              << QVariant(QStringLiteral("4.1.0"));
    QTest::addRow("oem file overrides app ini") << true << true << "ShowAboutVersion" << QVariant(true) << QVariant(false);
    QTest::addRow("oem file alone") << false << true << "SoftwareBuildDate" << QVariant(QStringLiteral("20250225"))
                                    << QVariant(QStringLiteral("20260101"));
    QTest::addRow("app ini used where oem file is silent") << true << true << "ShowUserManuel" << QVariant(true)
                                                           << QVariant(false);
    QTest::addRow("empty key gives default") << true << true << "" << QVariant(3) << QVariant(3);
}

void TstLuConfig::oemValue()
{
    QFETCH(bool, bUseAppIni);
    QFETCH(bool, bUseOemFile);
    QFETCH(QString, strKey);
    QFETCH(QVariant, defaultValue);
    QFETCH(QVariant, expected);

    if (bUseAppIni)
        LuInterface::setAppIniFile(strAppIni);
    if (bUseOemFile)
        qputenv("VETRIX_SYSROOT", QFile::encodeName(strSysRoot));
    const QVariant value = LuInterface::GetOEMCfgValue(strKey, defaultValue);
    QCOMPARE(value, expected);
}

void TstLuConfig::softwareText_data()
{
    QTest::addColumn<bool>("bUseAppIni");
    QTest::addColumn<bool>("bUseOemFile");
    QTest::addColumn<QString>("strKey");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("built-in english") << false << false << "Copyright_EN"
                                      << "Copyright %1 2025 Orvex Imaging. All rights reserved.";
    QTest::addRow("built-in chinese") << false << false << "Copyright_CN"
                                      << QString::fromUtf8("版权所有 %1 2025 Orvex Imaging。保留所有权利。");
    QTest::addRow("app ini english") << true << false << "Copyright_EN" << "Copyright %1 Test Maker";
    QTest::addRow("app ini chinese utf-8") << true << false << "Copyright_CN" << QString::fromUtf8("版权所有 %1 测试");
    QTest::addRow("oem file wins") << true << true << "Copyright_EN" << "Copyright %1 OEM";
    QTest::addRow("unquoted comma kept as one text") << true << false << "Unquoted" << "one, two";
    QTest::addRow("unknown key is empty") << true << true << "Nothing" << "";
}

void TstLuConfig::softwareText()
{
    QFETCH(bool, bUseAppIni);
    QFETCH(bool, bUseOemFile);
    QFETCH(QString, strKey);
    QFETCH(QString, strExpected);

    if (bUseAppIni)
        LuInterface::setAppIniFile(strAppIni);
    if (bUseOemFile)
        qputenv("VETRIX_SYSROOT", QFile::encodeName(strSysRoot));
    QCOMPARE(LuInterface::softwareConfigInfor(strKey), strExpected);
}

void TstLuConfig::shippedAppIni_data()
{
    QTest::addColumn<QString>("strKey");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<QVariant>("expected");

    QTest::addRow("user manual shown") << "ShowUserManuel" << QVariant(false) << QVariant(true);
    QTest::addRow("about version shown") << "ShowAboutVersion" << QVariant(false) << QVariant(true);
    QTest::addRow("build date left to the program") << "SoftwareBuildDate" << QVariant(QStringLiteral("20250225"))
                                                    << QVariant(QStringLiteral("20250225"));
}

// The app.ini the program ships: every key the program asks is answered.
void TstLuConfig::shippedAppIni()
{
    QFETCH(QString, strKey);
    QFETCH(QVariant, defaultValue);
    QFETCH(QVariant, expected);

    LuInterface::setAppIniFile(QStringLiteral(VX_SOURCE_DIR "/resources/config/app.ini"));
    QCOMPARE(LuInterface::GetOEMCfgValue(strKey, defaultValue), expected);
    for (const char *pKey : {"Copyright_EN", "Copyright_CN"}) {
        const QString strText = LuInterface::softwareConfigInfor(QLatin1String(pKey));
        QVERIFY2(strText.contains(QLatin1String("%1")) && strText.contains(QLatin1String("2025")), qPrintable(strText));
    }
    QVERIFY(LuInterface::softwareConfigInfor(QStringLiteral("Copyright_CN")).contains(QString::fromUtf8("版权所有")));
    QSettings settings(QStringLiteral(VX_SOURCE_DIR "/resources/config/app.ini"), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("ToolSoftwareVersion")).toString(), QStringLiteral("4.1.0"));
}

// The program hands over the file inside its resource package.
void TstLuConfig::resourceAppIni()
{
    LuInterface::setAppIniFile(QStringLiteral(":/Orvex/config/app.ini"));
    QCOMPARE(LuInterface::GetOEMCfgValue(QStringLiteral("ShowUserManuel"), false), QVariant(true));
    QVERIFY(LuInterface::softwareConfigInfor(QStringLiteral("Copyright_CN")).startsWith(QString::fromUtf8("版权所有 %1")));
    LuInterface::setAppIniFile(QStringLiteral(":/Orvex/config/missing.ini"));
    QCOMPARE(LuInterface::GetOEMCfgValue(QStringLiteral("ShowUserManuel"), false), QVariant(false));
}

void TstLuConfig::languageRoundTrip_data()
{
    QTest::addColumn<QStringList>("listSet");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("chinese") << QStringList{"CH"} << "CH";
    QTest::addRow("english") << QStringList{"ENG"} << "ENG";
    QTest::addRow("last one wins") << QStringList{"CH", "ENG", "CH"} << "CH";
    QTest::addRow("lower case ignored") << QStringList{"ENG", "ch"} << "ENG";
    QTest::addRow("unknown code ignored") << QStringList{"CH", "English"} << "CH";
    QTest::addRow("empty ignored") << QStringList{"ENG", ""} << "ENG";
}

void TstLuConfig::languageRoundTrip()
{
    QFETCH(QStringList, listSet);
    QFETCH(QString, strExpected);

    QTemporaryDir configDir;
    QVERIFY(configDir.isValid());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(configDir.path()));
    for (const QString &strCode : listSet)
        LuInterface::setLanguage(strCode);
    QCOMPARE(LuInterface::language(1), strExpected);
    QCOMPARE(LuInterface::language(0), strExpected);
    // Persisted in the user's configuration folder, not only in memory.
    QSettings settings(configDir.filePath(QStringLiteral("Orvex/Basekit.ini")), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("Language")).toString(), strExpected);
}

void TstLuConfig::languageDefaults_data()
{
    QTest::addColumn<QByteArray>("fileContent"); // empty: no file
    QTest::addColumn<bool>("bConfigIsFile");

    QTest::addRow("no settings file") << QByteArray() << false;
    QTest::addRow("unknown stored code") << QByteArray("[General]\nLanguage=FR\n") << false;
    QTest::addRow("garbage file") << QByteArray("\x00\xff\x13garbage[[[\n=\n", 14) << false;
    QTest::addRow("config folder is a file") << QByteArray() << true;
}

// Without a valid stored choice the language follows the system locale; a
// write that cannot happen leaves it so.
void TstLuConfig::languageDefaults()
{
    QFETCH(QByteArray, fileContent);
    QFETCH(bool, bConfigIsFile);

    QTemporaryDir configDir;
    QVERIFY(configDir.isValid());
    QString strConfig = configDir.path();
    if (bConfigIsFile) {
        QVERIFY(writeFixtureFile(configDir.path(), QStringLiteral("plainfile"), "x"));
        strConfig = configDir.filePath(QStringLiteral("plainfile"));
    } else if (!fileContent.isEmpty()) {
        QVERIFY(writeFixtureFile(configDir.path(), QStringLiteral("Orvex/Basekit.ini"), fileContent));
    }
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(strConfig));
    QCOMPARE(LuInterface::language(), expectedSystemLanguage());
    if (bConfigIsFile) {
        const QString strOther = expectedSystemLanguage() == QLatin1String("CH") ? QStringLiteral("ENG") : QStringLiteral("CH");
        LuInterface::setLanguage(strOther);
        QCOMPARE(LuInterface::language(), expectedSystemLanguage());
    }
}

QTEST_GUILESS_MAIN(TstLuConfig)
#include "tst_luconfig.moc"
