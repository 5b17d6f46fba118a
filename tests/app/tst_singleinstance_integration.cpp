// Starts the built program twice on the offscreen platform: the second start
// must ask the first to raise its window and leave with exit code 0.
#include <QtTest>

class TestSingleInstanceIntegration : public QObject
{
    Q_OBJECT
private slots:
    void secondStartRaisesFirstAndExits();
};

void TestSingleInstanceIntegration::secondStartRaisesFirstAndExits()
{
    QTemporaryDir runtime;
    QFile::setPermissions(runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QTemporaryDir root;
    QTemporaryDir data;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    env.insert("VETRIX_SYSROOT", root.path());
    // The program logs (INFO and up) to its data folder.
    env.insert("XDG_DATA_HOME", data.path());
    const QString strLog = data.filePath("Orvex/Log/VetrixTool.log");
    const QString strProgram = QStringLiteral(VX_BIN_DIR "/VetrixTool");
    QVERIFY(QFileInfo(strProgram).isExecutable());

    QProcess first;
    first.setProcessEnvironment(env);
    first.setProcessChannelMode(QProcess::MergedChannels);
    first.start(strProgram, {"ENG"});
    QVERIFY(first.waitForStarted());
    // The first instance listens once its start-up is done.
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(runtime.filePath("VetrixTool.instance")), 15000);

    QProcess second;
    second.setProcessEnvironment(env);
    second.start(strProgram, {"ENG"});
    QVERIFY(second.waitForFinished(15000));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);

    auto logText = [&strLog] {
        QFile file(strLog);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_VERIFY_WITH_TIMEOUT(logText().contains("asked to raise the window"), 5000);
    QCOMPARE(first.state(), QProcess::Running);
    first.terminate();
    if (!first.waitForFinished(5000)) {
        first.kill();
        first.waitForFinished();
    }
}

QTEST_GUILESS_MAIN(TestSingleInstanceIntegration)
#include "tst_singleinstance_integration.moc"
