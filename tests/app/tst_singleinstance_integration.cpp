// Starts the built program twice on the offscreen platform: the second start
// must ask the first to raise its window and leave with exit code 0.
#include <QtTest>

class TestSingleInstanceIntegration : public QObject
{
    Q_OBJECT
private slots:
    void secondStartRaisesFirstAndExits();
    void simultaneousStartsLeaveOneInstance();
};

namespace {
// The environment of one run of the program: its own runtime, data and
// system-root folders, offscreen.
struct ProgramEnv
{
    QTemporaryDir runtime;
    QTemporaryDir root;
    QTemporaryDir data;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();

    ProgramEnv()
    {
        QFile::setPermissions(runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("XDG_RUNTIME_DIR", runtime.path());
        env.insert("VETRIX_SYSROOT", root.path());
        // The program logs (INFO and up) to its data folder.
        env.insert("XDG_DATA_HOME", data.path());
    }
    QByteArray logText() const
    {
        QFile file(data.filePath("Orvex/Log/VetrixTool.log"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

void endProcess(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished();
    }
}
} // namespace

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

// Two starts at the same instant: exactly one keeps running, and it reached
// its event loop (it answered the other's request to raise its window). The
// survivor is ended with SIGTERM, which leaves its socket file behind, so
// later tries also start over a stale socket. Both starts are slowed down
// where they create their socket, so they decide at the same time.
void TestSingleInstanceIntegration::simultaneousStartsLeaveOneInstance()
{
    ProgramEnv program;
    program.env.insert("LD_PRELOAD", QStringLiteral(VX_SLOWBIND));
    // A sanitizer runtime wants to be loaded first; the shim needs none.
    program.env.insert("ASAN_OPTIONS", program.env.value("ASAN_OPTIONS") + QStringLiteral(":verify_asan_link_order=0"));
    const QString strProgram = QStringLiteral(VX_BIN_DIR "/VetrixTool");
    for (int nTry = 0; nTry < 20; ++nTry) {
        const int nRaisedBefore = program.logText().count("asked to raise the window");
        QProcess first;
        QProcess second;
        for (QProcess *pProcess : {&first, &second}) {
            pProcess->setProcessEnvironment(program.env);
            pProcess->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        }
        first.start(strProgram, {"ENG"});
        second.start(strProgram, {"ENG"});
        QVERIFY(first.waitForStarted());
        QVERIFY(second.waitForStarted());
        auto finished = [&] {
            return int(first.state() == QProcess::NotRunning) + int(second.state() == QProcess::NotRunning);
        };
        // One of them leaves; the other must stay.
        QTRY_VERIFY2_WITH_TIMEOUT(finished() >= 1, qPrintable(QStringLiteral("try %1: both still run").arg(nTry)),
                                  20000);
        QProcess &leaver = first.state() == QProcess::NotRunning ? first : second;
        QProcess &survivor = &leaver == &first ? second : first;
        QCOMPARE(leaver.exitStatus(), QProcess::NormalExit);
        QCOMPARE(leaver.exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(program.logText().count("asked to raise the window"), nRaisedBefore + 1, 10000);
        QVERIFY2(survivor.state() == QProcess::Running, qPrintable(QStringLiteral("try %1: no instance left").arg(nTry)));
        endProcess(survivor);
        endProcess(leaver);
    }
}

QTEST_GUILESS_MAIN(TestSingleInstanceIntegration)
#include "tst_singleinstance_integration.moc"
