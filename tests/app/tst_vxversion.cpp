#include "luinterface.h"
#include "vxversion.h"

#include <QtTest>

class TestVxVersion : public QObject
{
    Q_OBJECT
private slots:
    void convertBuildDate_data();
    void convertBuildDate();
    void defaultVersionText();
    void makerConfigurationWins();
};

void TestVxVersion::convertBuildDate_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("converted");
    QTest::addRow("built-in date") << "Feb 25 2025" << "20250225";
    QTest::addRow("one-digit day as the compiler writes it") << "Jan  5 2024" << "20240105";
    QTest::addRow("december") << "Dec 1 2023" << "20231201";
    QTest::addRow("unknown month") << "Foo 1 2020" << "";
    QTest::addRow("too few parts") << "Feb 2025" << "";
    QTest::addRow("empty") << "" << "";
}

void TestVxVersion::convertBuildDate()
{
    QFETCH(QString, date);
    QFETCH(QString, converted);
    QCOMPARE(VxVersion::convertBuildDate(date), converted);
}

void TestVxVersion::defaultVersionText()
{
    // No app.ini in a resource package, no maker configuration.
    QTemporaryDir root;
    qputenv("VETRIX_SYSROOT", root.path().toUtf8());
    LuInterface::setAppIniFile(QString());
    QVERIFY(!QFileInfo::exists(":/Orvex/config/app.ini"));
    QCOMPARE(VxVersion::defaultVersion(), QStringLiteral("4.1.0"));
    QCOMPARE(VxVersion::buildDate(), QStringLiteral("Feb 25 2025"));
    QCOMPARE(VxVersion::versionText(), QStringLiteral("V4.1.0 build20250225"));
    qunsetenv("VETRIX_SYSROOT");
}

void TestVxVersion::makerConfigurationWins()
{
    QTemporaryDir root;
    qputenv("VETRIX_SYSROOT", root.path().toUtf8());
    QFile ini(root.filePath("app.ini"));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[OEM]\nSoftwareBuildDate=20260101\nToolSoftwareVersion=5.0.1\n");
    ini.close();
    LuInterface::setAppIniFile(ini.fileName());
    QCOMPARE(VxVersion::versionText(), QStringLiteral("V5.0.1 build20260101"));
    LuInterface::setAppIniFile(QString());
    qunsetenv("VETRIX_SYSROOT");
}

QTEST_GUILESS_MAIN(TestVxVersion)
#include "tst_vxversion.moc"
