#pragma once

// Runs a second program of the test build and waits for it. Under Wine a new
// process can die while its loader sets up the address space, before it runs
// any of its own code; CreateProcess then fails with STATUS_INTERNAL_ERROR
// ("Internal error"). That is the emulator's, not the program's, so a start
// that failed is tried again a few times. A program that started and then
// failed is never run again: its exit code is the answer.
#include <QProcess>
#include <QString>
#include <QStringList>

namespace WinChild {

struct Result
{
    bool bFinished = false;
    int nExitCode = -1;
    QProcess::ExitStatus exitStatus = QProcess::CrashExit;
    QByteArray stdOut;
    QString strError;
};

inline Result run(const QString &strProgram, const QStringList &listArgs, int nTimeoutMs = 60000)
{
    constexpr int kStarts = 4;
    Result result;
    for (int nTry = 0; nTry < kStarts; ++nTry) {
        QProcess process;
        process.start(strProgram, listArgs);
        if (!process.waitForStarted(nTimeoutMs)) {
            result.strError = process.errorString();
            if (process.error() == QProcess::FailedToStart)
                continue;
            return result;
        }
        result.bFinished = process.waitForFinished(nTimeoutMs);
        if (!result.bFinished) {
            result.strError = process.errorString();
            process.kill();
            process.waitForFinished(5000);
            return result;
        }
        result.nExitCode = process.exitCode();
        result.exitStatus = process.exitStatus();
        result.stdOut = process.readAllStandardOutput().trimmed();
        return result;
    }
    return result;
}

} // namespace WinChild
