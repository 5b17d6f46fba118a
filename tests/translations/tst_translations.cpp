#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

const QString g_strQmDir = QStringLiteral(VX_BIN_DIR "/Translation");
const QString g_strTsDir = QStringLiteral(VX_SOURCE_DIR "/resources/translations");

struct TsMessage {
    QString strContext;
    QString strSource;
    QString strComment;
    QString strTranslation; // first numerus form for plural messages
    bool bUnfinished = false;
    bool bNumerus = false;
};

// Reads every message of a .ts file. Obsolete/vanished entries are skipped:
// they are no longer in the code.
bool readTs(const QString &strFile, QList<TsMessage> &listMessages, QString &strError)
{
    QFile file(strFile);
    if (!file.open(QIODevice::ReadOnly)) {
        strError = file.errorString();
        return false;
    }
    QXmlStreamReader xml(&file);
    QString strContext;
    TsMessage message;
    bool bInMessage = false;
    bool bSkip = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QStringRef name = xml.name();
            if (name == QLatin1String("context")) {
                strContext.clear();
            } else if (name == QLatin1String("name") && !bInMessage) {
                strContext = xml.readElementText();
            } else if (name == QLatin1String("message")) {
                message = TsMessage();
                message.strContext = strContext;
                message.bNumerus = xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
                bInMessage = true;
                bSkip = false;
            } else if (bInMessage && name == QLatin1String("source")) {
                message.strSource = xml.readElementText();
            } else if (bInMessage && name == QLatin1String("comment")) {
                message.strComment = xml.readElementText();
            } else if (bInMessage && name == QLatin1String("translation")) {
                const QStringRef type = xml.attributes().value(QLatin1String("type"));
                message.bUnfinished = type == QLatin1String("unfinished");
                bSkip = type == QLatin1String("obsolete") || type == QLatin1String("vanished");
                if (!message.bNumerus)
                    message.strTranslation = xml.readElementText();
            } else if (bInMessage && name == QLatin1String("numerusform") && message.strTranslation.isEmpty()) {
                message.strTranslation = xml.readElementText();
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            if (!bSkip)
                listMessages << message;
            bInMessage = false;
        }
    }
    if (xml.hasError()) {
        strError = xml.errorString();
        return false;
    }
    return true;
}

} // namespace

class TstTranslations : public QObject
{
    Q_OBJECT

private slots:
    void sampleTranslations_data();
    void sampleTranslations();
    void compiledMatchesSources_data();
    void compiledMatchesSources();
    void everyTextTranslated_data();
    void everyTextTranslated();
};

void TstTranslations::sampleTranslations_data()
{
    QTest::addColumn<QString>("strQm");
    QTest::addColumn<QString>("strContext");
    QTest::addColumn<QString>("strSource");
    QTest::addColumn<QString>("strExpected");

    QTest::addRow("item name Systm Info") << "Vetrix_zh.qm" << "VxOneKeyResult" << "Systm Info" << QString::fromUtf8("系统信息");
    QTest::addRow("button Check and Repair") << "Vetrix_zh.qm" << "VxOneKeyResult" << "Check and Repair"
                                             << QString::fromUtf8("检查并修复");
    QTest::addRow("group PC System Diagnosis") << "Vetrix_zh.qm" << "VxOneKeyResult" << "PC System Diagnosis"
                                               << QString::fromUtf8("PC系统诊断");
    QTest::addRow("report label keeps its colon") << "Vetrix_zh.qm" << "VxOneKeyResult" << "Screen Resolution : "
                                                  << QString::fromUtf8("屏幕分辨率        : ");
    QTest::addRow("base unknown fact") << "Basekit_zh_CN.qm" << "LuInterface" << "Unknown" << QString::fromUtf8("未知");
    QTest::addRow("base byte order") << "Basekit_zh_CN.qm" << "LuInterface" << "Little Endian" << QString::fromUtf8("小端序");
    // qt_zh_CN.qm only loads when its dependencies (qtbase_zh_CN.qm...) were
    // copied beside it.
    QTest::addRow("qt catalogue with dependencies") << "qt_zh_CN.qm" << "QPlatformTheme" << "Cancel" << QString::fromUtf8("取消");
}

void TstTranslations::sampleTranslations()
{
    QFETCH(QString, strQm);
    QFETCH(QString, strContext);
    QFETCH(QString, strSource);
    QFETCH(QString, strExpected);

    QTranslator translator;
    QVERIFY2(translator.load(strQm, g_strQmDir), qPrintable(g_strQmDir + QLatin1Char('/') + strQm));
    QCOMPARE(translator.translate(strContext.toUtf8().constData(), strSource.toUtf8().constData()), strExpected);
}

void TstTranslations::compiledMatchesSources_data()
{
    QTest::addColumn<QString>("strTs");
    QTest::addColumn<QString>("strQm");
    QTest::addRow("program") << "Vetrix_zh.ts" << "Vetrix_zh.qm";
    QTest::addRow("widget kit") << "Panekit_zh_CN.ts" << "Panekit_zh_CN.qm";
    QTest::addRow("common tools") << "Basekit_zh_CN.ts" << "Basekit_zh_CN.qm";
}

// Every finished message of the .ts is answered by the compiled .qm.
void TstTranslations::compiledMatchesSources()
{
    QFETCH(QString, strTs);
    QFETCH(QString, strQm);

    QList<TsMessage> listMessages;
    QString strError;
    QVERIFY2(readTs(g_strTsDir + QLatin1Char('/') + strTs, listMessages, strError), qPrintable(strError));
    QTranslator translator;
    QVERIFY2(translator.load(strQm, g_strQmDir), qPrintable(strQm));
    int nChecked = 0;
    for (const TsMessage &message : qAsConst(listMessages)) {
        if (message.bUnfinished)
            continue;
        const QString strGot = translator.translate(message.strContext.toUtf8().constData(),
            message.strSource.toUtf8().constData(),
            message.strComment.isEmpty() ? nullptr : message.strComment.toUtf8().constData(),
            message.bNumerus ? 1 : -1);
        QVERIFY2(strGot == message.strTranslation,
                 qPrintable(QStringLiteral("%1 / \"%2\": got \"%3\", expected \"%4\"")
                                .arg(message.strContext, message.strSource, strGot, message.strTranslation)));
        ++nChecked;
    }
    QCOMPARE(nChecked, listMessages.size());
}

void TstTranslations::everyTextTranslated_data()
{
    QTest::addColumn<QString>("strTs");
    QTest::addRow("program") << "Vetrix_zh.ts";
    QTest::addRow("widget kit") << "Panekit_zh_CN.ts";
    QTest::addRow("common tools") << "Basekit_zh_CN.ts";
}

// Runs tools/update-translations (lupdate over the code) on copies of the
// .ts files: a text added to the code without a translation shows up as
// unfinished there and fails this test.
void TstTranslations::everyTextTranslated()
{
    QFETCH(QString, strTs);

    QTemporaryDir tempDir;
    QVERIFY(tempDir.isValid());
    const QStringList listTs = {QStringLiteral("Vetrix_zh.ts"), QStringLiteral("Panekit_zh_CN.ts"),
                                QStringLiteral("Basekit_zh_CN.ts")};
    for (const QString &strName : listTs)
        QVERIFY(QFile::copy(g_strTsDir + QLatin1Char('/') + strName, tempDir.filePath(strName)));

    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LUPDATE"), QStringLiteral(VX_LUPDATE));
    env.insert(QStringLiteral("VX_TS_DIR"), tempDir.path());
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(VX_SOURCE_DIR "/tools/update-translations"), QStringList());
    QVERIFY2(process.waitForFinished(120000), "lupdate did not finish");
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    // lupdate's warnings about the code are only shown when it fails.
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());

    QList<TsMessage> listMessages;
    QString strError;
    QVERIFY2(readTs(tempDir.filePath(strTs), listMessages, strError), qPrintable(strError));
    QStringList listMissing;
    for (const TsMessage &message : qAsConst(listMessages)) {
        if (message.bUnfinished || message.strTranslation.trimmed().isEmpty())
            listMissing << message.strContext + QStringLiteral(" / \"") + message.strSource + QLatin1Char('"');
    }
    QVERIFY2(listMissing.isEmpty(),
             qPrintable(QStringLiteral("untranslated (run tools/update-translations and translate):\n  ")
                        + listMissing.join(QStringLiteral("\n  "))));
}

QTEST_GUILESS_MAIN(TstTranslations)
#include "tst_translations.moc"
