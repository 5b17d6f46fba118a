#include "fixturetree.h"
#include "luinterface.h"

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

// Logging set-up from log4j-style properties: what is accepted, how levels
// map onto Qt's category rules, where the file goes, and that a missing or
// broken file changes nothing.
class TstLuLogConfig : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void rejected_data();
    void rejected();
    void levels_data();
    void levels();
    void fileSink();
    void placeholders_data();
    void placeholders();
    void shippedConfig();

private:
    QString writeConf(const QString &strName, const QByteArray &content);
    QTemporaryDir tempDir;
};

namespace {

// Which of debug/info/warning/critical a category lets through, e.g. "0011".
QString enabledMask(const char *pCategory)
{
    const QLoggingCategory category(pCategory);
    return QStringLiteral("%1%2%3%4")
        .arg(int(category.isDebugEnabled()))
        .arg(int(category.isInfoEnabled()))
        .arg(int(category.isWarningEnabled()))
        .arg(int(category.isCriticalEnabled()));
}

QByteArray readAll(const QString &strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString TstLuLogConfig::writeConf(const QString &strName, const QByteArray &content)
{
    return writeFixtureFile(tempDir.path(), strName, content) ? tempDir.filePath(strName) : QString();
}

void TstLuLogConfig::initTestCase()
{
    QVERIFY(tempDir.isValid());
    qputenv("XDG_DATA_HOME", QFile::encodeName(tempDir.filePath(QStringLiteral("data"))));
}

void TstLuLogConfig::rejected_data()
{
    QTest::addColumn<QByteArray>("content"); // empty: the file does not exist

    QTest::addRow("missing file") << QByteArray();
    QTest::addRow("empty file") << QByteArray("\n");
    QTest::addRow("only comments") << QByteArray("# nothing\n! here\n");
    QTest::addRow("no root logger") << QByteArray("log4j.logger.vx=DEBUG\n");
    QTest::addRow("unknown root level") << QByteArray("log4j.rootLogger=VERBOSE\n");
    QTest::addRow("unknown category level") << QByteArray("log4j.rootLogger=INFO\nlog4j.logger.vx=LOUD\n");
    QTest::addRow("empty category name") << QByteArray("log4j.rootLogger=INFO\nlog4j.logger.=DEBUG\n");
    QTest::addRow("line without equals") << QByteArray("log4j.rootLogger=INFO\nthis is not a property\n");
    QTest::addRow("undefined appender") << QByteArray("log4j.rootLogger=INFO, nowhere\n");
    QTest::addRow("file appender without file") << QByteArray("log4j.rootLogger=INFO, f\nlog4j.appender.f=org.apache.log4j.FileAppender\n");
    QTest::addRow("log file cannot be created")
        << QByteArray("log4j.rootLogger=INFO, f\nlog4j.appender.f=org.apache.log4j.FileAppender\n"
                      "log4j.appender.f.File=${XDG_DATA_HOME}/blocker/x.log\n");
    QTest::addRow("binary garbage") << QByteArray("\x00\x01\x02\xff\xfe", 5);
}

// Nothing changes: the rules in force stay as they were.
void TstLuLogConfig::rejected()
{
    QFETCH(QByteArray, content);

    // A plain file where the "blocker" folder would have to be.
    QVERIFY(writeFixtureFile(tempDir.filePath(QStringLiteral("data")), QStringLiteral("blocker"), "file"));
    QLoggingCategory::setFilterRules(QStringLiteral("vx.reject.debug=false\nvx.reject.info=true"));
    const QString strBefore = enabledMask("vx.reject");
    QCOMPARE(strBefore, QStringLiteral("0111"));

    const QString strFile = content.isEmpty() ? tempDir.filePath(QStringLiteral("absent.conf"))
                                              : writeConf(QStringLiteral("rejected.conf"), content);
    QVERIFY(!strFile.isEmpty());
    QVERIFY(!LuInterface::initLog4qtConfig(strFile));
    QCOMPARE(enabledMask("vx.reject"), strBefore);
}

void TstLuLogConfig::levels_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("strCategory");
    QTest::addColumn<QString>("strMask");

    const QByteArray console = ", con\nlog4j.appender.con=org.apache.log4j.ConsoleAppender\n";
    QTest::addRow("root debug") << "log4j.rootLogger=DEBUG" + console << "vx.a" << "1111";
    QTest::addRow("root all") << "log4j.rootLogger=ALL" + console << "vx.a" << "1111";
    QTest::addRow("root info") << "log4j.rootLogger=INFO" + console << "vx.a" << "0111";
    QTest::addRow("root warn lower case") << "log4j.rootLogger=warn" + console << "vx.a" << "0011";
    QTest::addRow("root error") << "log4j.rootLogger=ERROR" + console << "vx.a" << "0001";
    QTest::addRow("root fatal") << "log4j.rootLogger=FATAL" + console << "vx.a" << "0001";
    QTest::addRow("root off") << "log4j.rootLogger=OFF" + console << "vx.a" << "0000";
    QTest::addRow("category over root") << "log4j.rootLogger=ERROR" + console + "log4j.logger.vx.a=DEBUG\n" << "vx.a" << "1111";
    QTest::addRow("parent covers child") << "log4j.rootLogger=ERROR" + console + "log4j.logger.vx=INFO\n" << "vx.a.b" << "0111";
    QTest::addRow("child beats parent") << "log4j.rootLogger=ERROR" + console + "log4j.logger.vx=INFO\nlog4j.logger.vx.a=OFF\n"
                                        << "vx.a" << "0000";
    QTest::addRow("sibling untouched") << "log4j.rootLogger=WARN" + console + "log4j.logger.vx.a=DEBUG\n" << "vx.b" << "0011";
    QTest::addRow("qt internals keep debug and info off") << "log4j.rootLogger=DEBUG" + console << "qt.qpa.test" << "0011";
    QTest::addRow("qt internals when named") << "log4j.rootLogger=DEBUG" + console + "log4j.logger.qt.qpa=DEBUG\n"
                                             << "qt.qpa.test" << "1111";
    QTest::addRow("unsupported appender class skipped")
        << QByteArray("log4j.rootLogger=INFO, sys\nlog4j.appender.sys=org.apache.log4j.SyslogAppender\n") << "vx.a" << "0111";
}

void TstLuLogConfig::levels()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, strCategory);
    QFETCH(QString, strMask);

    QVERIFY(LuInterface::initLog4qtConfig(writeConf(QStringLiteral("levels.conf"), content)));
    QCOMPARE(enabledMask(strCategory.toUtf8().constData()), strMask);
}

// Messages that pass the rules are appended to the file, one line each.
void TstLuLogConfig::fileSink()
{
    const QString strLog = tempDir.filePath(QStringLiteral("sink/deeper/vetrix.log"));
    QVERIFY(writeFixtureFile(tempDir.path(), QStringLiteral("sink/deeper/vetrix.log"), "earlier line\n"));
    const QByteArray content = "log4j.rootLogger=WARN, f\n"
                               "log4j.appender.f=org.apache.log4j.RollingFileAppender\n"
                               "log4j.appender.f.File=" + tempDir.filePath(QStringLiteral("sink/deeper/vetrix.log")).toUtf8() + "\n"
                               "log4j.appender.f.layout=org.apache.log4j.PatternLayout\n"
                               "log4j.logger.vx.sink=INFO\n";
    QVERIFY(LuInterface::initLog4qtConfig(writeConf(QStringLiteral("sink.conf"), content)));

    const QLoggingCategory sinkCategory("vx.sink");
    const QLoggingCategory otherCategory("vx.other");
    qCInfo(sinkCategory) << "info passes";
    qCDebug(sinkCategory) << "debug filtered";
    qCInfo(otherCategory) << "other info filtered";
    qCWarning(otherCategory) << "other warning passes" << QString::fromUtf8("中文");

    const QList<QByteArray> lines = readAll(strLog).split('\n');
    QCOMPARE(lines.size(), 4); // earlier line, two messages, final newline
    QCOMPARE(lines.at(0), QByteArray("earlier line"));
    QVERIFY2(lines.at(1).contains("[INFO] vx.sink - info passes"), lines.at(1).constData());
    QVERIFY2(lines.at(2).contains("[WARN] vx.other - other warning passes"), lines.at(2).constData());
    QVERIFY(lines.at(2).contains("\xe4\xb8\xad\xe6\x96\x87"));
    QVERIFY(lines.at(3).isEmpty());
}

void TstLuLogConfig::placeholders_data()
{
    QTest::addColumn<QByteArray>("filePattern");
    QTest::addColumn<QString>("strExpectedRelative"); // below the temporary folder

    QTest::addRow("xdg data home") << QByteArray("${XDG_DATA_HOME}/Log/a.log") << "data/Log/a.log";
    QTest::addRow("user data folder") << QByteArray("${USERDATA}/Log/b.log") << "data/Orvex/Log/b.log";
    QTest::addRow("environment variable") << QByteArray("${VX_TEST_LOGDIR}/c.log") << "envdir/c.log";
    QTest::addRow("unset variable is empty") << QByteArray("${XDG_DATA_HOME}${VX_TEST_UNSET}/d.log") << "data/d.log";
}

void TstLuLogConfig::placeholders()
{
    QFETCH(QByteArray, filePattern);
    QFETCH(QString, strExpectedRelative);

    qputenv("VX_TEST_LOGDIR", QFile::encodeName(tempDir.filePath(QStringLiteral("envdir"))));
    qunsetenv("VX_TEST_UNSET");
    const QByteArray content = "log4j.rootLogger=INFO, f\nlog4j.appender.f=org.apache.log4j.FileAppender\n"
                               "log4j.appender.f.File=" + filePattern + "\n";
    QVERIFY(LuInterface::initLog4qtConfig(writeConf(QStringLiteral("placeholders.conf"), content)));
    const QString strExpected = tempDir.filePath(strExpectedRelative);
    QVERIFY2(QFileInfo(strExpected).isFile(), qPrintable(strExpected));
    qInfo("placeholder line");
    QVERIFY(readAll(strExpected).contains("placeholder line"));
}

// The configuration the program ships is accepted and logs into the user's
// data folder.
void TstLuLogConfig::shippedConfig()
{
    QVERIFY(LuInterface::initLog4qtConfig(QStringLiteral(VX_SOURCE_DIR "/resources/config/log4qt_Orvex.conf")));
    const QString strLog = tempDir.filePath(QStringLiteral("data/Orvex/Log/VetrixTool.log"));
    QVERIFY2(QFileInfo(strLog).isFile(), qPrintable(strLog));
    QCOMPARE(enabledMask("vetrix.repair"), QStringLiteral("0111"));
    QCOMPARE(enabledMask("vx.any"), QStringLiteral("0111"));
}

QTEST_GUILESS_MAIN(TstLuLogConfig)
#include "tst_lulogconfig.moc"
