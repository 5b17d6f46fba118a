// Starts the built program with --quit-after-show on the offscreen platform:
// it shows its window and ends by itself with exit code 0 (the start-up
// benchmark relies on it). Without the option it keeps running.
#include <QtTest>

class TestQuitAfterShowIntegration : public QObject
{
    Q_OBJECT
private slots:
    void quitsOnceTheWindowIsShown();
    void keepsRunningWithoutTheOption();

private:
    void prepare(QProcess &process);
    QTemporaryDir m_runtime;
    QTemporaryDir m_root;
    QTemporaryDir m_data;
};

void TestQuitAfterShowIntegration::prepare(QProcess &process)
{
    QFile::setPermissions(m_runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_RUNTIME_DIR", m_runtime.path());
    env.insert("VETRIX_SYSROOT", m_root.path());
    env.insert("XDG_DATA_HOME", m_data.path());
    process.setProcessEnvironment(env);
    process.setProcessChannelMode(QProcess::MergedChannels);
}

void TestQuitAfterShowIntegration::quitsOnceTheWindowIsShown()
{
    QProcess process;
    prepare(process);
    process.start(QStringLiteral(VX_BIN_DIR "/VetrixTool"), {"ENG", "--quit-after-show"});
    QVERIFY(process.waitForStarted());
    const bool bEnded = process.waitForFinished(60000);
    if (!bEnded) {
        process.kill();
        process.waitForFinished();
    }
    QVERIFY2(bEnded, process.readAll().constData());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    // The window was there: the instance socket was opened and released.
    QVERIFY(!QFileInfo::exists(m_runtime.filePath("VetrixTool.instance")));
}

void TestQuitAfterShowIntegration::keepsRunningWithoutTheOption()
{
    QProcess process;
    prepare(process);
    process.start(QStringLiteral(VX_BIN_DIR "/VetrixTool"), {"ENG"});
    QVERIFY(process.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(m_runtime.filePath("VetrixTool.instance")), 30000);
    QCOMPARE(process.state(), QProcess::Running);
    process.terminate();
    if (!process.waitForFinished(10000)) {
        process.kill();
        process.waitForFinished();
    }
}

QTEST_GUILESS_MAIN(TestQuitAfterShowIntegration)
#include "tst_quitaftershow_integration.moc"
