#include "custom.h"
#include "luinterface.h"
#include "qaboutdlg.h"

#include <QLabel>
#include <QtTest>

class TestQAboutDlg : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void contents();
    void sizeFollowsLanguage();
    void versionHiddenByMaker();
    void copyrightWithoutPlaceholderUnchanged();
    void languageSwitchRereadsCopyrightKeepsSize();

private:
    void writeIni(const QByteArray &bytes);
    QTemporaryDir m_root;
};

void TestQAboutDlg::initTestCase()
{
    QVERIFY(QResource::registerResource(QStringLiteral(VX_BIN_DIR "/rcc/Orvex.rcc")));
    qputenv("VETRIX_SYSROOT", m_root.path().toUtf8());
}

void TestQAboutDlg::cleanup()
{
    LuInterface::setAppIniFile(QString());
    Custom::setLanguage(1);
}

void TestQAboutDlg::writeIni(const QByteArray &bytes)
{
    QFile ini(m_root.filePath("app.ini"));
    QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write(bytes);
    ini.close();
    LuInterface::setAppIniFile(ini.fileName());
}

void TestQAboutDlg::contents()
{
    writeIni("[Software]\nCopyright_EN=\"Copyright %1 2025 Orvex\"\n");
    QAboutDlg dialog;
    QCOMPARE(dialog.titleLabel()->text(), QStringLiteral("Vetrix Tool"));
    QCOMPARE(dialog.titleLabel()->font().pixelSize(), 23);
    QVERIFY(dialog.titleLabel()->font().bold());
    QCOMPARE(dialog.versionLabel()->text(), QStringLiteral("V4.1.0 build20250225"));
    QCOMPARE(dialog.copyrightLabel()->text(), QString::fromUtf8("Copyright © 2025 Orvex"));
    QVERIFY(!dialog.versionLabel()->isHidden());
}

void TestQAboutDlg::sizeFollowsLanguage()
{
    Custom::setLanguage(1);
    {
        QAboutDlg dialog;
        QCOMPARE(dialog.size(), QSize(400, 400));
    }
    Custom::setLanguage(0);
    {
        QAboutDlg dialog;
        QCOMPARE(dialog.size(), QSize(340, 400));
    }
}

void TestQAboutDlg::versionHiddenByMaker()
{
    writeIni("[OEM]\nShowAboutVersion=false\n");
    QAboutDlg dialog;
    dialog.show();
    QVERIFY(!dialog.versionLabel()->isVisible());
    QVERIFY(dialog.copyrightLabel()->isVisible());
}

void TestQAboutDlg::copyrightWithoutPlaceholderUnchanged()
{
    writeIni("[Software]\nCopyright_EN=\"Made by Orvex\"\n");
    QAboutDlg dialog;
    QCOMPARE(dialog.copyrightLabel()->text(), QStringLiteral("Made by Orvex"));
}

void TestQAboutDlg::languageSwitchRereadsCopyrightKeepsSize()
{
    writeIni("[Software]\nCopyright_EN=\"EN %1\"\nCopyright_CN=\"CN %1\"\n");
    Custom::setLanguage(1);
    QAboutDlg dialog;
    QCOMPARE(dialog.copyrightLabel()->text(), QString::fromUtf8("EN ©"));
    Custom::setLanguage(0);
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&dialog, &event);
    QCOMPARE(dialog.copyrightLabel()->text(), QString::fromUtf8("CN ©"));
    QCOMPARE(dialog.size(), QSize(400, 400));
}

QTEST_MAIN(TestQAboutDlg)
#include "tst_qaboutdlg.moc"
