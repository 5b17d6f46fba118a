#include "fixturetree.h"
#include "luinterface.h"
#include "luinterface_p.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>
#include <QtTest>

// Opening the manual: which URLs are refused, how the default browser is
// found from the XDG files, and that the topic URL reaches it whole.
class TstLuBrowser : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void refused_data();
    void refused();
    void browserCommand_data();
    void browserCommand();
    void opensTopicInDefaultBrowser();

private:
    std::unique_ptr<QTemporaryDir> pTempDir;
    QString strManual;
};

using FileMap = QMap<QString, QByteArray>;
Q_DECLARE_METATYPE(FileMap)

// Every XDG folder points into a fresh temporary tree, so no live desktop
// configuration is read.
void TstLuBrowser::init()
{
    pTempDir = std::make_unique<QTemporaryDir>();
    QVERIFY(pTempDir->isValid());
    const QString strRoot = pTempDir->path();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(strRoot + QStringLiteral("/config")));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(strRoot + QStringLiteral("/etc-xdg")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(strRoot + QStringLiteral("/data")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(strRoot + QStringLiteral("/usr-share")));
    qputenv("XDG_CURRENT_DESKTOP", "TestDesk");
    QVERIFY(writeFixtureFile(strRoot, QStringLiteral("doc/index.html"), "<html></html>\n"));
    strManual = strRoot + QStringLiteral("/doc/index.html");
}

void TstLuBrowser::refused_data()
{
    QTest::addColumn<QString>("strUrl");
    QTest::addRow("empty") << QString();
    QTest::addRow("no scheme") << "just some words";
    QTest::addRow("missing local file") << "file:///nonexistent/vetrix/index.html";
    QTest::addRow("missing local file with topic") << "file:///nonexistent/vetrix/index.html?guid=GUID-1.html";
    QTest::addRow("topic without default browser") << QString(); // filled in refused()
    QTest::addRow("web url without gui application") << "https://example.invalid/manual";
}

void TstLuBrowser::refused()
{
    QFETCH(QString, strUrl);
    if (QByteArray(QTest::currentDataTag()) == "topic without default browser")
        strUrl = QUrl::fromLocalFile(strManual).toString() + QStringLiteral("?guid=GUID-1.html");
    QVERIFY(!LuInterface::OpenHtmlByDefBrowser(strUrl));
}

void TstLuBrowser::browserCommand_data()
{
    QTest::addColumn<FileMap>("mapFiles");
    QTest::addColumn<QStringList>("listExpected");

    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Web\nExec=webby --new-window %u\n";
    QTest::addRow("user choice and data entry")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=webby.desktop;\n"},
                   {"data/applications/webby.desktop", entry}}
        << QStringList{"webby", "--new-window", "URL"};
    QTest::addRow("system config and system entry")
        << FileMap{{"etc-xdg/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=webby.desktop\n"},
                   {"usr-share/applications/webby.desktop", entry}}
        << QStringList{"webby", "--new-window", "URL"};
    QTest::addRow("desktop specific list first")
        << FileMap{{"config/testdesk-mimeapps.list", "[Default Applications]\nx-scheme-handler/http=other.desktop\n"},
                   {"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=webby.desktop\n"},
                   {"usr-share/applications/webby.desktop", entry},
                   {"usr-share/applications/other.desktop", "[Desktop Entry]\nExec=other %U\n"}}
        << QStringList{"other", "URL"};
    QTest::addRow("first listed id")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=;webby.desktop;other.desktop;\n"},
                   {"usr-share/applications/webby.desktop", entry}}
        << QStringList{"webby", "--new-window", "URL"};
    QTest::addRow("other groups ignored")
        << FileMap{{"config/mimeapps.list", "[Added Associations]\nx-scheme-handler/http=webby.desktop\n"},
                   {"usr-share/applications/webby.desktop", entry}}
        << QStringList{};
    QTest::addRow("quoted program and dropped field codes")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=q.desktop\n"},
                   {"usr-share/applications/q.desktop",
                    "[Desktop Action new]\nExec=wrong\n[Desktop Entry]\nExec=\"/opt/My Browser/run\" --name \"a \\\"b\\\"\" %i %f 100%%\n"}}
        << QStringList{"/opt/My Browser/run", "--name", "a \"b\"", "URL", "100%"};
    QTest::addRow("url appended without field code")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=n.desktop\n"},
                   {"usr-share/applications/n.desktop", "[Desktop Entry]\nExec=nocode\n"}}
        << QStringList{"nocode", "URL"};
    QTest::addRow("entry file missing")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=gone.desktop\n"}}
        << QStringList{};
    QTest::addRow("id with path refused")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=../evil.desktop\n"}}
        << QStringList{};
    QTest::addRow("empty exec")
        << FileMap{{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=e.desktop\n"},
                   {"usr-share/applications/e.desktop", "[Desktop Entry]\nExec=\n"}}
        << QStringList{};
}

void TstLuBrowser::browserCommand()
{
    QFETCH(FileMap, mapFiles);
    QFETCH(QStringList, listExpected);
    for (auto it = mapFiles.constBegin(); it != mapFiles.constEnd(); ++it)
        QVERIFY(writeFixtureFile(pTempDir->path(), it.key(), it.value()));
    QCOMPARE(LuInterface::Detail::defaultBrowserCommand(QStringLiteral("URL")), listExpected);
}

// A fake browser records its arguments: the topic query arrives intact.
void TstLuBrowser::opensTopicInDefaultBrowser()
{
    const QString strRoot = pTempDir->path();
    const QString strScript = strRoot + QStringLiteral("/bin/fake-browser");
    const QString strOut = strRoot + QStringLiteral("/browser-args.txt");
    QVERIFY(writeFixtureFile(strRoot, QStringLiteral("bin/fake-browser"),
                             "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" + strOut.toUtf8() + ".tmp\"\nmv \"" + strOut.toUtf8()
                                 + ".tmp\" \"" + strOut.toUtf8() + "\"\n"));
    QVERIFY(QFile::setPermissions(strScript, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(writeFixtureFile(strRoot, QStringLiteral("config/mimeapps.list"),
                             "[Default Applications]\nx-scheme-handler/http=fake.desktop\n"));
    QVERIFY(writeFixtureFile(strRoot, QStringLiteral("data/applications/fake.desktop"),
                             "[Desktop Entry]\nType=Application\nExec=" + strScript.toUtf8() + " --new-window %u\n"));

    const QString strUrl = QUrl::fromLocalFile(strManual).toString() + QStringLiteral("?guid=GUID-CAB2338A.html");
    QVERIFY(LuInterface::OpenHtmlByDefBrowser(strUrl));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(strOut), 10000);
    QFile file(strOut);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), QStringLiteral("--new-window\n") + strUrl + QLatin1Char('\n'));
}

QTEST_GUILESS_MAIN(TstLuBrowser)
#include "tst_lubrowser.moc"
