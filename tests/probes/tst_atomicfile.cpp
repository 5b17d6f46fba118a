#include "atomicfile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

#include <csignal>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// Replacing a file atomically: what a writer that dies half-way leaves
// behind, and that the next write clears it.
class TstAtomicFile : public QObject
{
    Q_OBJECT

private:
    static QByteArray readFile(const QString &strPath)
    {
        QFile file(strPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
    static void writePlain(const QString &strPath, const QByteArray &data)
    {
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(data), qint64(data.size()));
    }
    static QStringList entries(const QString &strDir)
    {
        return QDir(strDir).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }
    // Generation n of the content: a header and a large body, so a write
    // takes long enough to be interrupted.
    static QByteArray generation(int n)
    {
        QByteArray data = "generation " + QByteArray::number(n) + "\n";
        data += QByteArray(1024 * 1024, char('a' + n % 26));
        data += "end " + QByteArray::number(n) + "\n";
        return data;
    }
    // Runs one write in a child process. The child writes one byte to
    // nReadyFd just before it starts the write and, when it finishes, the
    // write's duration in microseconds as a qint64 to nDoneFd (-1: none).
    static pid_t forkWriter(const QString &strPath, const QByteArray &data, int nReadyFd, int nDoneFd,
        const AtomicFile::Options &options)
    {
        const pid_t pid = ::fork();
        if (pid == 0) {
            const char c = 'w';
            if (::write(nReadyFd, &c, 1) != 1)
                ::_exit(4);
            QElapsedTimer timer;
            timer.start();
            const bool bOk = AtomicFile::write(strPath, data, options);
            const qint64 nUs = timer.nsecsElapsed() / 1000;
            if (nDoneFd >= 0 && ::write(nDoneFd, &nUs, sizeof nUs) != sizeof nUs)
                ::_exit(4);
            ::_exit(bOk ? 0 : 3);
        }
        return pid;
    }
    static bool readExactly(int nFd, void *pData, size_t nSize)
    {
        auto *p = static_cast<char *>(pData);
        while (nSize > 0) {
            const ssize_t n = ::read(nFd, p, nSize);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                return false;
            p += n;
            nSize -= size_t(n);
        }
        return true;
    }
    static AtomicFile::Options unnamedOptions(bool bUnnamed)
    {
        AtomicFile::Options options;
        options.bUnnamedTemporary = bUnnamed;
        return options;
    }
    static void sleepMicroseconds(quint64 nUs)
    {
        timespec ts {time_t(nUs / 1000000), long(nUs % 1000000) * 1000};
        while (::nanosleep(&ts, &ts) != 0 && errno == EINTR) { }
    }

private slots:
    void temporaryNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("ours");
        QTest::newRow("six letters and digits") << "environment.vetrix-aZ09xY" << true;
        QTest::newRow("five") << "environment.vetrix-aZ09x" << false;
        QTest::newRow("seven") << "environment.vetrix-aZ09xYz" << false;
        QTest::newRow("punctuation") << "environment.vetrix-aZ0.xY" << false;
        QTest::newRow("other file") << "environmentx.vetrix-aZ09xY" << false;
        QTest::newRow("target itself") << "environment" << false;
    }
    void temporaryNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, ours);
        QCOMPARE(AtomicFile::isTemporaryName("/etc/environment", name), ours);
    }

    void replacesContentAndKeepsMode_data()
    {
        QTest::addColumn<bool>("unnamed");
        QTest::newRow("unnamed temporary") << true;
        QTest::newRow("named temporary") << false;
    }
    void replacesContentAndKeepsMode()
    {
        QFETCH(bool, unnamed);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString strPath = dir.filePath("environment");
        writePlain(strPath, "old\n");
        QVERIFY(::chmod(QFile::encodeName(strPath).constData(), 0640) == 0);
        QVERIFY(AtomicFile::write(strPath, "new\n", unnamedOptions(unnamed)));
        QCOMPARE(readFile(strPath), QByteArray("new\n"));
        struct stat st;
        QVERIFY(::stat(QFile::encodeName(strPath).constData(), &st) == 0);
        QCOMPARE(int(st.st_mode & 07777), 0640);
        QCOMPARE(entries(dir.path()), QStringList {"environment"});
    }

    void crashedWriteIsClearedByTheNext_data() { replacesContentAndKeepsMode_data(); }
    void crashedWriteIsClearedByTheNext()
    {
        QFETCH(bool, unnamed);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString strPath = dir.filePath("environment");
        writePlain(strPath, "old\n");
        QString strTemp;
        AtomicFile::Options crashing = unnamedOptions(unnamed);
        crashing.beforeRename = [&strTemp](const QString &strName) {
            strTemp = strName;
            return false;
        };
        QVERIFY(!AtomicFile::write(strPath, "new\n", crashing));
        QCOMPARE(readFile(strPath), QByteArray("old\n"));
        QVERIFY(QFile::exists(strTemp));
        QCOMPARE(readFile(strTemp), QByteArray("new\n"));
        QVERIFY(AtomicFile::isTemporaryName(strPath, QFileInfo(strTemp).fileName()));

        QVERIFY(AtomicFile::write(strPath, "newer\n", unnamedOptions(unnamed)));
        QCOMPARE(readFile(strPath), QByteArray("newer\n"));
        QCOMPARE(entries(dir.path()), QStringList {"environment"});
    }

    void foreignFilesAreKept()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString strPath = dir.filePath("environment");
        writePlain(strPath, "old\n");
        // Not our pattern, or not a regular file, or changed after the write began.
        const QStringList listKept
            = {"environment.vetrix-abc", "environment.bak", "hosts.vetrix-ABCDEF", "environment.vetrix-Future"};
        for (const QString &strName : listKept)
            writePlain(dir.filePath(strName), "x");
        QVERIFY(QDir(dir.path()).mkdir("environment.vetrix-Folder"));
        timespec future[2];
        ::clock_gettime(CLOCK_REALTIME, &future[0]);
        future[0].tv_sec += 3600;
        future[1] = future[0];
        QVERIFY(
            ::utimensat(AT_FDCWD, QFile::encodeName(dir.filePath("environment.vetrix-Future")).constData(), future, 0)
            == 0);
        bool bOtherOwner = false;
        if (::geteuid() == 0) {
            writePlain(dir.filePath("environment.vetrix-Nobody"), "x");
            QVERIFY(
                ::chown(QFile::encodeName(dir.filePath("environment.vetrix-Nobody")).constData(), 65534, 65534) == 0);
            bOtherOwner = true;
        }
        writePlain(dir.filePath("environment.vetrix-Stale1"), "x"); // ours: removed

        QVERIFY(AtomicFile::write(strPath, "new\n"));
        QStringList listExpected = listKept;
        listExpected << "environment";
        if (bOtherOwner)
            listExpected << "environment.vetrix-Nobody";
        listExpected.sort();
        QCOMPARE(entries(dir.path()), listExpected);
        QVERIFY(QFileInfo(dir.filePath("environment.vetrix-Folder")).isDir());
    }

    // A writer killed at a random moment leaves either the whole old or the
    // whole new content, never a missing or partial file, and the next
    // complete write leaves no temporary file behind.
    void killedWriterLeavesOldOrNew_data() { replacesContentAndKeepsMode_data(); }
    void killedWriterLeavesOldOrNew()
    {
        QFETCH(bool, unnamed);
        const AtomicFile::Options options = unnamedOptions(unnamed);
        // In memory where the machine has it: a kill ends the process, not
        // the machine, and without disk syncs 200 writes take little time.
        const QString strShm = QStringLiteral("/dev/shm");
        QTemporaryDir dir((QFileInfo(strShm).isWritable() ? strShm : QDir::tempPath()) + "/tst_atomicfile-XXXXXX");
        QVERIFY(dir.isValid());
        const QString strPath = dir.filePath("environment");
        writePlain(strPath, generation(0));

        int ready[2];
        int done[2];
        QVERIFY(::pipe(ready) == 0 && ::pipe(done) == 0);
        auto closePipes = qScopeGuard([&] {
            for (int nFd : {ready[0], ready[1], done[0], done[1]})
                ::close(nFd);
        });

        // How long one write takes here, so the kills spread over all of it.
        QList<qint64> listUs;
        for (int i = 0; i < 3; ++i) {
            const pid_t pid = forkWriter(strPath, generation(0), ready[1], done[1], options);
            QVERIFY(pid > 0);
            char c = 0;
            qint64 nUs = 0;
            QVERIFY(readExactly(ready[0], &c, 1));
            QVERIFY(readExactly(done[0], &nUs, sizeof nUs));
            int nStatus = 0;
            QCOMPARE(::waitpid(pid, &nStatus, 0), pid);
            QVERIFY(WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0);
            listUs << nUs;
        }
        std::sort(listUs.begin(), listUs.end());
        const quint32 uSpreadUs = quint32(qBound<qint64>(50, listUs.at(1) * 5 / 4, 1000000));

        int nCurrent = 0;
        int nKilled = 0;
        for (int n = 1; n <= 100; ++n) { // 200 kills over the two data rows
            const pid_t pid = forkWriter(strPath, generation(n), ready[1], -1, options);
            QVERIFY(pid > 0);
            char c = 0;
            QVERIFY(readExactly(ready[0], &c, 1));
            sleepMicroseconds(QRandomGenerator::global()->bounded(uSpreadUs));
            ::kill(pid, SIGKILL);
            int nStatus = 0;
            QCOMPARE(::waitpid(pid, &nStatus, 0), pid);
            if (WIFSIGNALED(nStatus))
                ++nKilled;
            else
                QCOMPARE(WEXITSTATUS(nStatus), 0);
            const QByteArray content = readFile(strPath);
            if (content == generation(n))
                nCurrent = n;
            else
                QVERIFY2(content == generation(nCurrent),
                    qPrintable(QStringLiteral("kill %1: %2 bytes, starting %3")
                                   .arg(n)
                                   .arg(content.size())
                                   .arg(QString::fromLatin1(content.left(20)))));
        }
        QVERIFY(nKilled > 0); // some kills did land inside a write
        qDebug("%d of 100 writers killed before they finished (spread %u us)", nKilled, uSpreadUs);

        QVERIFY(AtomicFile::write(strPath, generation(1000), options));
        QCOMPARE(readFile(strPath), generation(1000));
        QCOMPARE(entries(dir.path()), QStringList {"environment"});
    }
};

QTEST_GUILESS_MAIN(TstAtomicFile)
#include "tst_atomicfile.moc"
