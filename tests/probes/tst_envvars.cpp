#include "atomicfile.h"
#include "cdetectinfo.h"
#include "envvars.h"
#include "envvars_linux_p.h"
#include "etcenvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The environment variable check, its repair and the /etc/environment writer.
class TstEnvVars : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;
    QByteArray m_savedPath;

    QString root() const { return m_pRoot->path(); }
    QString sdk() const { return root() + "/opt/Orvex"; }
    static QStringList names()
    {
        return {"PATH", "LUCAM_COMMON_RUNENV", "LUCAM_GIGE_DEBUG_HEARTBEAT", "LUCAM_GENICAM_CLPROTOCOL",
                "GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH"};
    }
    void unsetAll()
    {
        for (const QString &strName : names())
            qunsetenv(strName.toLatin1().constData());
    }
    QString runEnvExpected() const
    {
        const QString strApp = QCoreApplication::applicationFilePath();
        return strApp.left(strApp.lastIndexOf("Applications")) + "Development";
    }
    void setAllGood()
    {
        qputenv("PATH", (sdk() + "/Runtime/Linux32_i86:" + sdk() + "/Runtime/Linux64_x64:/usr/bin").toLocal8Bit());
        qputenv("LUCAM_COMMON_RUNENV", runEnvExpected().toLocal8Bit());
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "60000");
        qputenv("LUCAM_GENICAM_CLPROTOCOL", (sdk() + "/Runtime/CLProtocol").toLocal8Bit());
        qputenv("GENICAM_GENTL32_PATH", (sdk() + "/Runtime/Linux32_i86").toLocal8Bit());
        qputenv("GENICAM_GENTL64_PATH", (sdk() + "/Runtime/Linux64_x64").toLocal8Bit());
    }
    QByteArray readFile(const QString &strPath)
    {
        QFile file(strPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
    void writeFile(const QString &strPath, const QByteArray &data)
    {
        QVERIFY(QDir().mkpath(QFileInfo(strPath).absolutePath()));
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

private slots:
    void initTestCase()
    {
        m_savedPath = qgetenv("PATH");
        // The fixture roots stand for a running machine whose session is this process.
        EnvVars::setFixtureRootHasProcessSession(true);
    }
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
        setAllGood();
    }
    void cleanup()
    {
        delete m_pRoot;
        qunsetenv("VETRIX_SYSROOT");
        unsetAll();
        qputenv("PATH", m_savedPath);
    }

    void allGoodIsNormal()
    {
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.missingValues, (QMap<QString, QStringList>{}));
        QCOMPARE(info.bNormal, 1);
        const QStringList listKeys = info.currentValues.keys();
        const QStringList listNames = names();
        QCOMPARE(QSet<QString>(listKeys.begin(), listKeys.end()), QSet<QString>(listNames.begin(), listNames.end()));
        QCOMPARE(info.currentValues.size(), 6);
    }

    void allUnset()
    {
        unsetAll();
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(info.currentValues.size(), 6);
        QCOMPARE(info.currentValues.value("PATH"), QString());
        QCOMPARE(info.missingValues.value("PATH"),
                 QStringList({sdk() + "/Runtime/Linux32_i86:", sdk() + "/Runtime/Linux64_x64:"}));
        QCOMPARE(info.missingValues.value("LUCAM_GIGE_DEBUG_HEARTBEAT"), QStringList{"60000"});
        QCOMPARE(info.missingValues.value("LUCAM_GENICAM_CLPROTOCOL"), QStringList{sdk() + "/Runtime/CLProtocol"});
        QCOMPARE(info.missingValues.value("LUCAM_COMMON_RUNENV"), QStringList{runEnvExpected()});
        QCOMPARE(info.missingValues.value("GENICAM_GENTL32_PATH"), QStringList{sdk() + "/Runtime/Linux32_i86:"});
        QCOMPARE(info.missingValues.value("GENICAM_GENTL64_PATH"), QStringList{sdk() + "/Runtime/Linux64_x64:"});
    }

    void variable_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value"); // "@" stands for the SDK folder
        QTest::addColumn<QStringList>("missing");
        QTest::newRow("heartbeat 5 passes") << "LUCAM_GIGE_DEBUG_HEARTBEAT" << "5" << QStringList{};
        QTest::newRow("heartbeat -12 passes") << "LUCAM_GIGE_DEBUG_HEARTBEAT" << "-12" << QStringList{};
        QTest::newRow("heartbeat abc fails") << "LUCAM_GIGE_DEBUG_HEARTBEAT" << "abc" << QStringList{"60000"};
        QTest::newRow("heartbeat empty fails") << "LUCAM_GIGE_DEBUG_HEARTBEAT" << "" << QStringList{"60000"};
        QTest::newRow("protocol X, empty, R1, P1 keeps X, P1 last")
            << "LUCAM_GENICAM_CLPROTOCOL" << "/x/y::@/Runtime:@/Runtime/CLProtocol" << QStringList{"/x/y:@/Runtime/CLProtocol"};
        QTest::newRow("protocol with trailing slash and other case passes")
            << "LUCAM_GENICAM_CLPROTOCOL" << "/a:@/runtime/clprotocol/" << QStringList{};
        QTest::newRow("protocol R2 alone fails") << "LUCAM_GENICAM_CLPROTOCOL" << "@/Runtime/" << QStringList{"@/Runtime/CLProtocol"};
        QTest::newRow("path entry last without separator is missing")
            << "PATH" << "/usr/bin:@/Runtime/Linux32_i86:@/Runtime/Linux64_x64" << QStringList{"@/Runtime/Linux64_x64:"};
        QTest::newRow("path entry in another case is missing")
            << "PATH" << "@/runtime/linux32_i86:@/Runtime/Linux64_x64:" << QStringList{"@/Runtime/Linux32_i86:"};
        QTest::newRow("gentl64 as substring passes") << "GENICAM_GENTL64_PATH" << "/a:@/Runtime/Linux64_x64/sub" << QStringList{};
        QTest::newRow("gentl32 other case fails") << "GENICAM_GENTL32_PATH" << "@/RUNTIME/Linux32_i86" << QStringList{"@/Runtime/Linux32_i86:"};
        QTest::newRow("common runtime compared ignoring case")
            << "LUCAM_COMMON_RUNENV" << "<RUNENV-UPPER>" << QStringList{};
    }
    void variable()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QStringList, missing);
        if (value == "<RUNENV-UPPER>")
            value = runEnvExpected().toUpper();
        value.replace("@", sdk());
        missing.replaceInStrings("@", sdk());
        qputenv(name.toLatin1().constData(), value.toLocal8Bit());
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.currentValues.value(name), value);
        QCOMPARE(info.missingValues.value(name), missing);
        QCOMPARE(info.missingValues.size(), missing.isEmpty() ? 0 : 1);
        QCOMPARE(info.bNormal, missing.isEmpty() ? 1 : 0);
    }

    void notBelowApplications()
    {
        // The test program does not lie below a folder named "Applications".
        const QString strApp = QCoreApplication::applicationFilePath();
        QVERIFY(!strApp.contains("Applications"));
        qputenv("LUCAM_COMMON_RUNENV", "/opt/Development");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.missingValues.value("LUCAM_COMMON_RUNENV"), QStringList{strApp + "Development"});
        QCOMPARE(info.bNormal, 0);
    }

    void plannedPathPutsMissingInFront()
    {
        writeFile(root() + "/etc/environment", "PATH=\"/usr/bin\"\n");
        qputenv("PATH", "/usr/bin");
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "abc");
        CEnvDetectInfo info;
        EnvVars::check(info);
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 2);
        QCOMPARE(listWrites.at(0), qMakePair(QString("LUCAM_GIGE_DEBUG_HEARTBEAT"), QString("60000")));
        QCOMPARE(listWrites.at(1), qMakePair(QString("PATH"), sdk() + "/Runtime/Linux64_x64:" + sdk() + "/Runtime/Linux32_i86:/usr/bin"));
    }

    // The machine-wide PATH is the base, not this session's: a user's own
    // folders stay out of the machine file.
    void plannedPathBuildsOnMachinePath()
    {
        writeFile(root() + "/etc/environment", "LANG=C\nPATH=/usr/bin:/bin\n");
        qputenv("PATH", "/home/user/bin:/usr/bin:/bin");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.currentValues.value("PATH"), QString("/home/user/bin:/usr/bin:/bin"));
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 1);
        QCOMPARE(listWrites.at(0).second, sdk() + "/Runtime/Linux64_x64:" + sdk() + "/Runtime/Linux32_i86:/usr/bin:/bin");
    }

    // Without a PATH in /etc/environment (or without the file) the base is
    // the search path systemd gives every session.
    void plannedPathWithoutMachinePathUsesTheDefault()
    {
        writeFile(root() + "/etc/environment", "LANG=C\n");
        qputenv("PATH", "/home/user/bin:/usr/bin");
        CEnvDetectInfo info;
        EnvVars::check(info);
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 1);
        QCOMPARE(listWrites.at(0).second, sdk() + "/Runtime/Linux64_x64:" + sdk() + "/Runtime/Linux32_i86:"
                                              + "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin");
    }

    // A list variable keeps the machine file's own entries, not the session's.
    void plannedProtocolKeepsMachineEntries()
    {
        writeFile(root() + "/etc/environment", "LUCAM_GENICAM_CLPROTOCOL=/m\n");
        qputenv("LUCAM_GENICAM_CLPROTOCOL", "/s");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.missingValues.value("LUCAM_GENICAM_CLPROTOCOL"), QStringList{"/s:" + sdk() + "/Runtime/CLProtocol"});
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 1);
        QCOMPARE(listWrites.at(0), qMakePair(QString("LUCAM_GENICAM_CLPROTOCOL"), "/m:" + sdk() + "/Runtime/CLProtocol"));
    }

    void plannedValueIsCutAt1023Bytes()
    {
        writeFile(root() + "/etc/environment", "GENICAM_GENTL64_PATH=" + QByteArray(2000, 'x') + "\n");
        qunsetenv("GENICAM_GENTL64_PATH");
        CEnvDetectInfo info;
        EnvVars::check(info);
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 1);
        QCOMPARE(listWrites.at(0).second.size(), 1023);
        QVERIFY(listWrites.at(0).second.startsWith(sdk() + "/Runtime/Linux64_x64:xxx"));
    }

    // The machine file already holds a good value this session lacks (a
    // repair in an earlier start, before the next login): the variable is
    // pending, not exceptional, and the repair writes nothing for it.
    void machineValueNotYetInSessionIsPending()
    {
        writeFile(root() + "/etc/environment",
                  "LUCAM_GIGE_DEBUG_HEARTBEAT=60000\nGENICAM_GENTL32_PATH=\"" + (sdk() + "/Runtime/Linux32_i86:").toLocal8Bit() + "\"\n");
        qunsetenv("LUCAM_GIGE_DEBUG_HEARTBEAT");
        qunsetenv("GENICAM_GENTL32_PATH");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.missingValues, (QMap<QString, QStringList>{}));
        QCOMPARE(info.pendingValues, (QMap<QString, QString>{{"LUCAM_GIGE_DEBUG_HEARTBEAT", "60000"},
                                                              {"GENICAM_GENTL32_PATH", sdk() + "/Runtime/Linux32_i86:"}}));
        QCOMPARE(info.currentValues.value("LUCAM_GIGE_DEBUG_HEARTBEAT"), QString());
        QVERIFY(EnvVars::plannedWrites(info).isEmpty());

        // Another variable missing from both: exceptional, and only it is written.
        qunsetenv("GENICAM_GENTL64_PATH");
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(info.missingValues.keys(), QStringList{"GENICAM_GENTL64_PATH"});
        QCOMPARE(info.pendingValues.size(), 2);
        const auto listWrites = EnvVars::plannedWrites(info);
        QCOMPARE(listWrites.size(), 1);
        QCOMPARE(listWrites.at(0).first, QString("GENICAM_GENTL64_PATH"));
    }

    // A machine value that fails its test does not make a variable pending.
    void failingMachineValueIsNotPending()
    {
        writeFile(root() + "/etc/environment", "LUCAM_GIGE_DEBUG_HEARTBEAT=abc\n");
        qunsetenv("LUCAM_GIGE_DEBUG_HEARTBEAT");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(info.pendingValues, (QMap<QString, QString>{}));
        QCOMPARE(info.missingValues.value("LUCAM_GIGE_DEBUG_HEARTBEAT"), QStringList{"60000"});
    }

    // A value only this session has counts even when the machine file lacks it.
    void sessionValueAloneIsNormal()
    {
        writeFile(root() + "/etc/environment", "LANG=C\n");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.pendingValues, (QMap<QString, QString>{}));
    }

    void repairRewritesEtcEnvironment()
    {
        if (::geteuid() != 0)
            QSKIP("writing the machine file directly needs root (the helper path is tested in tst_helperverbs)");
        const QByteArray original = "# system wide\r\nLANG=C.UTF-8\nLUCAM_GIGE_DEBUG_HEARTBEAT=\"abc\"\n  OTHER='x y'";
        writeFile(root() + "/etc/environment", original);
        unsetAll();
        qputenv("PATH", "/usr/bin");
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "abc");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(EnvVars::repair(info), VxRepairStatus::Done);
        QCOMPARE(info.bNormal, 1);
        QVERIFY(info.missingValues.isEmpty());
        const QByteArray content = readFile(root() + "/etc/environment");
        QVERIFY2(content.startsWith("# system wide\r\nLANG=C.UTF-8\nLUCAM_GIGE_DEBUG_HEARTBEAT=\"60000\"\n  OTHER='x y'\n"), content);
        QCOMPARE(EtcEnvironment::valueOf(content, "PATH"), sdk() + "/Runtime/Linux64_x64:" + sdk()
                     + "/Runtime/Linux32_i86:/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin");
        QCOMPARE(EtcEnvironment::valueOf(content, "LUCAM_GENICAM_CLPROTOCOL"), sdk() + "/Runtime/CLProtocol");
        // The running process sees the new values on top of its own: a new check passes.
        QCOMPARE(qgetenv("PATH"), (sdk() + "/Runtime/Linux64_x64:" + sdk() + "/Runtime/Linux32_i86:/usr/bin").toLocal8Bit());
        EnvVars::check(info);
        QCOMPARE(info.missingValues, (QMap<QString, QStringList>{}));
        QCOMPARE(info.pendingValues, (QMap<QString, QString>{}));
        QCOMPARE(info.bNormal, 1);

        // A new start in the same login still has the old session values: the
        // item is normal with the variables pending, and nothing is written again.
        unsetAll();
        qputenv("PATH", "/usr/bin");
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "abc");
        EnvVars::check(info);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.missingValues, (QMap<QString, QStringList>{}));
        const QStringList listPending = {"GENICAM_GENTL32_PATH", "GENICAM_GENTL64_PATH", "LUCAM_COMMON_RUNENV",
                                         "LUCAM_GENICAM_CLPROTOCOL", "LUCAM_GIGE_DEBUG_HEARTBEAT", "PATH"};
        QCOMPARE(info.pendingValues.keys(), listPending);
        const QDateTime modified = QFileInfo(root() + "/etc/environment").lastModified();
        QCOMPARE(EnvVars::repair(info), VxRepairStatus::Done);
        QCOMPARE(readFile(root() + "/etc/environment"), content);
        QCOMPARE(QFileInfo(root() + "/etc/environment").lastModified(), modified);
    }

    // Below another system root the repair writes the file with the user's
    // own rights; the privileged helper (which acts on the running machine)
    // is not started.
    void repairBelowAnotherRootNeedsNoHelper()
    {
        writeFile(root() + "/etc/environment", "LANG=C\n");
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "abc");
        const uid_t uid = ::geteuid() == 0 ? 65534 : ::geteuid();
        if (::geteuid() == 0) {
            // The writer runs as an ordinary user who owns the image's /etc.
            QVERIFY(::chmod(QFile::encodeName(root()).constData(), 0755) == 0);
            for (const QString &strPath : {root() + "/etc", root() + "/etc/environment"})
                QVERIFY(::chown(QFile::encodeName(strPath).constData(), uid, uid) == 0);
        }
        const pid_t pid = ::fork();
        if (pid == 0) {
            if (::geteuid() == 0 && (::setgid(uid) != 0 || ::setuid(uid) != 0))
                ::_exit(2);
            CEnvDetectInfo info;
            EnvVars::check(info);
            // Starting the helper would fail.
            ::_exit(EnvVars::repair(info, VxPrivileges("/nonexistent/vetrix-helper")) == VxRepairStatus::Done ? 0 : 1);
        }
        QVERIFY(pid > 0);
        int nStatus = 0;
        QCOMPARE(::waitpid(pid, &nStatus, 0), pid);
        QVERIFY(WIFEXITED(nStatus));
        QCOMPARE(WEXITSTATUS(nStatus), 0);
        QCOMPARE(EtcEnvironment::valueOf(readFile(root() + "/etc/environment"), "LUCAM_GIGE_DEBUG_HEARTBEAT"), QString("60000"));
    }

    void crashBeforeRenameKeepsOldFile()
    {
        if (::geteuid() != 0)
            QSKIP("writing the machine file directly needs root");
        const QByteArray original = "LANG=C\n";
        writeFile(root() + "/etc/environment", original);
        qputenv("LUCAM_GIGE_DEBUG_HEARTBEAT", "abc");
        CEnvDetectInfo info;
        EnvVars::check(info);
        QString strTemp;
        AtomicFile::Options crashing;
        crashing.beforeRename = [&strTemp](const QString &strPath) {
            strTemp = strPath;
            return false;
        };
        QCOMPARE(EnvVars::repair(info, VxPrivileges::system(), EnvVars::Detail::fileWriter(crashing)),
                 VxRepairStatus::Failed);
        QCOMPARE(readFile(root() + "/etc/environment"), original);
        QVERIFY(QFile::exists(strTemp)); // the half-done work is a separate file
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(info.missingValues.keys(), QStringList{"LUCAM_GIGE_DEBUG_HEARTBEAT"});
        QCOMPARE(qgetenv("LUCAM_GIGE_DEBUG_HEARTBEAT"), QByteArray("abc"));
    }

    void applied_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("empty file") << QByteArray() << "A" << "1" << QByteArray("A=\"1\"\n");
        QTest::newRow("no end on the last line") << QByteArray("B=2") << "A" << "1" << QByteArray("B=2\nA=\"1\"\n");
        QTest::newRow("plain value replaced") << QByteArray("A=0\nB=2\n") << "A" << "1" << QByteArray("A=1\nB=2\n");
        QTest::newRow("quotes kept") << QByteArray("A=\"0\"\r\n") << "A" << "1 2" << QByteArray("A=\"1 2\"\r\n");
        QTest::newRow("single quotes kept") << QByteArray("A='0'") << "A" << "1" << QByteArray("A='1'");
        QTest::newRow("blank gets quotes") << QByteArray("A=0\n") << "A" << "x y" << QByteArray("A=\"x y\"\n");
        QTest::newRow("export and indentation kept") << QByteArray("  export A=0\n") << "A" << "1" << QByteArray("  export A=1\n");
        QTest::newRow("last assignment wins") << QByteArray("A=0\nA=5\n") << "A" << "1" << QByteArray("A=0\nA=1\n");
        QTest::newRow("comment untouched") << QByteArray("#A=0\n") << "A" << "1" << QByteArray("#A=0\nA=\"1\"\n");
        QTest::newRow("prefix name is another variable") << QByteArray("AB=0\n") << "A" << "1" << QByteArray("AB=0\nA=\"1\"\n");
    }
    void applied()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);
        QCOMPARE(EtcEnvironment::applied(before, {{name, value}}), after);
        QCOMPARE(EtcEnvironment::valueOf(after, name), value);
    }

    void invalidValuesAreNotWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::newRow("newline") << "A" << "x\ny";
        QTest::newRow("carriage return") << "A" << "x\ry";
        QTest::newRow("NUL") << "A" << QString("x") + QChar(0) + "y";
        QTest::newRow("quote") << "A" << "x\"y";
        QTest::newRow("bad name") << "A=B" << "x";
        QTest::newRow("name with digit first") << "1A" << "x";
    }
    void invalidValuesAreNotWritten()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        writeFile(root() + "/etc/environment", "LANG=C\n");
        QVERIFY(!EtcEnvironment::apply({{name, value}}));
        QCOMPARE(readFile(root() + "/etc/environment"), QByteArray("LANG=C\n"));
    }

    void newFileGetsMode0644()
    {
        QVERIFY(QDir().mkpath(root() + "/etc"));
        QVERIFY(EtcEnvironment::apply({{"A", "1"}}));
        QCOMPARE(readFile(root() + "/etc/environment"), QByteArray("A=\"1\"\n"));
        QCOMPARE(int(QFileInfo(root() + "/etc/environment").permissions() & 0x7777),
                 int((QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup | QFile::ReadOther) & 0x7777));
    }
};

QTEST_GUILESS_MAIN(TstEnvVars)
#include "tst_envvars.moc"
