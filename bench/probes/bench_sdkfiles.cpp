#include "cdetectinfo.h"
#include "sdkfiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <vector>

// Times the SDK file check (one walk per system library folder for all four
// names) against `find <folders> -type f ( -name A -o -name B ... )` in the
// same run, and prints the ratio of the medians (ours / find). Target: <= 1.2.
// Usage: bench_sdkfiles [rounds]
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int nRounds = argc > 1 ? qMax(1, atoi(argv[1])) : 7;
    const QStringList listFolders = SdkFiles::searchFolders();
    QStringList listFindArgs = listFolders;
    listFindArgs << "-type" << "f" << "(";
    const QStringList listNames = SdkFiles::libraryNames();
    for (int i = 0; i < listNames.size(); ++i) {
        if (i > 0)
            listFindArgs << "-o";
        listFindArgs << "-name" << listNames.at(i);
    }
    listFindArgs << ")";

    auto runOurs = [] {
        CSDKPathDetectInfo info;
        SdkFiles::check(info);
        return info.foundFiles.size();
    };
    auto runFind = [&listFindArgs] {
        QProcess find;
        find.start("find", listFindArgs);
        find.waitForFinished(-1);
        return find.readAllStandardOutput().count('\n');
    };
    // Warm the directory caches for both.
    runOurs();
    runFind();

    std::vector<qint64> vecOurs, vecFind;
    int nOurs = 0, nFind = 0;
    for (int i = 0; i < nRounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        nOurs = runOurs();
        vecOurs.push_back(timer.nsecsElapsed());
        timer.restart();
        nFind = runFind();
        vecFind.push_back(timer.nsecsElapsed());
    }
    std::sort(vecOurs.begin(), vecOurs.end());
    std::sort(vecFind.begin(), vecFind.end());
    const double dOurs = vecOurs[vecOurs.size() / 2] / 1e6;
    const double dFind = vecFind[vecFind.size() / 2] / 1e6;
    QTextStream out(stdout);
    out << "folders: " << listFolders.join(' ') << "\n";
    out << "rounds: " << nRounds << "  found: ours " << nOurs << " names, find " << nFind << " files\n";
    out << QString("median ms: ours %1  find %2\n").arg(dOurs, 0, 'f', 2).arg(dFind, 0, 'f', 2);
    out << QString("ratio (ours/find): %1  (target <= 1.2)\n").arg(dOurs / dFind, 0, 'f', 3);
    return 0;
}
