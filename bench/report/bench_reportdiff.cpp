// Times the comparison of two JSON reports whose USB item carries a tree of
// 1000 devices (4 controllers x 5 hubs x 50 devices, ~10 fields and two
// interfaces each), the second with 20 devices at another speed, 5 devices
// fewer and 4 others. Target: the whole of vetrix-check --compare on such files, the
// program's start included, under 50 ms.
//
//   BM_Compare          the comparison of the parsed reports
//   BM_CompareIdentical the same on two equal reports (every value visited)
//   BM_ReadAndCompare   reading both files, comparing, the text form
//   BM_CompareProgram   the built vetrix-check --compare A.json B.json
//                       (program_cpu_ms: its processor time per run)
#include "vxreportdiff.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

namespace {

constexpr int kControllers = 4;
constexpr int kHubsPerController = 5;
constexpr int kDevicesPerHub = 50;

QJsonObject device(const QString &strPort, int nIndex, bool bSecond)
{
    // In the second report every 50th device runs at USB 2 speed.
    const bool bChanged = bSecond && nIndex % 50 == 7;
    QJsonArray interfaces;
    for (int n = 0; n < 2; ++n)
        interfaces << QJsonObject {{"number", n}, {"class", 0xEF}, {"subclass", 5}, {"protocol", n}, {"driver", "u3v"}};
    return QJsonObject {{"port", strPort}, {"address", nIndex % 127 + 1}, {"vendorId", "1ab2"},
        {"productId", QStringLiteral("%1").arg(nIndex % 16, 4, 16, QLatin1Char('0'))}, {"vendor", "Orvex Imaging"},
        {"product", "USB3 Vision Camera"}, {"serial", QStringLiteral("SN%1").arg(100000 + nIndex)},
        {"speed", bChanged ? 480 : 5000}, {"bcdUSB", "0320"}, {"configuration", 1}, {"maxPowerMa", 896},
        {"interfaces", interfaces}};
}

QJsonObject report(bool bSecond)
{
    QJsonArray controllers;
    int nIndex = 0;
    for (int c = 0; c < kControllers; ++c) {
        QJsonArray hubs;
        for (int h = 0; h < kHubsPerController; ++h) {
            const QString strHub = QStringLiteral("%1-%2").arg(c + 1).arg(h + 1);
            QJsonArray devices;
            for (int d = 0; d < kDevicesPerHub; ++d, ++nIndex) {
                // The second report lacks five devices and has four others.
                if (bSecond && nIndex % 200 == 3)
                    continue;
                devices << device(QStringLiteral("%1.%2").arg(strHub).arg(d + 1), nIndex, bSecond);
            }
            if (bSecond && h == 0)
                devices << device(QStringLiteral("%1.%2").arg(strHub).arg(kDevicesPerHub + 1), nIndex, bSecond);
            hubs << QJsonObject {
                {"port", strHub}, {"product", "USB 3.0 Hub"}, {"speed", 5000}, {"ports", 7}, {"devices", devices}};
        }
        controllers << QJsonObject {{"pciAddress", QStringLiteral("0000:%1:00.0").arg(c + 1, 2, 10, QLatin1Char('0'))},
            {"name", "xHCI Host Controller"}, {"driver", "xhci_hcd"}, {"hubs", hubs}};
    }
    auto item = [](int nItem, const QJsonObject &facts) {
        return QJsonObject {{"id", nItem}, {"name", "Item"}, {"group", "Group"}, {"available", true}, {"normal", true},
            {"severity", 0}, {"facts", facts}, {"lines", QJsonArray {"line"}}};
    };
    QJsonArray items;
    items << item(32, QJsonObject {{"driverDesc", "xHCI"}, {"driverVersion", "6.1"}});
    items << item(512, QJsonObject {{"hasTree", true}, {"tree", QJsonObject {{"controllers", controllers}}}});
    items << item(2048, QJsonObject {{"cpu", "Cpu"}, {"cpuCount", "8"}});
    return QJsonObject {{"tool", "vetrix-check"}, {"version", "4.1.0"}, {"items", items}};
}

// The two report files, written once.
struct Files
{
    QTemporaryDir dir;
    QString strFirst;
    QString strSecond;
    Files()
    {
        strFirst = dir.filePath(QStringLiteral("first.json"));
        strSecond = dir.filePath(QStringLiteral("second.json"));
        for (const QString &strPath : {strFirst, strSecond}) {
            QFile file(strPath);
            if (file.open(QIODevice::WriteOnly))
                file.write(QJsonDocument(report(strPath == strSecond)).toJson());
        }
    }
};

Files &files()
{
    static Files f;
    return f;
}

void BM_Compare(benchmark::State &state)
{
    const QJsonObject first = report(false);
    const QJsonObject second = report(true);
    int nChanges = 0;
    for (auto _ : state) {
        const VxReportDiff::Result result = VxReportDiff::compare(first, second);
        nChanges = result.items.isEmpty() ? 0 : result.items.first().changes.size();
        benchmark::DoNotOptimize(nChanges);
    }
    state.counters["changes"] = nChanges;
}
BENCHMARK(BM_Compare)->Unit(benchmark::kMillisecond);

void BM_CompareIdentical(benchmark::State &state)
{
    const QJsonObject first = report(false);
    const QJsonObject copy = QJsonDocument::fromJson(QJsonDocument(first).toJson()).object();
    for (auto _ : state) {
        const VxReportDiff::Result result = VxReportDiff::compare(first, copy);
        if (!result.isEmpty())
            state.SkipWithError("equal reports differ");
    }
}
BENCHMARK(BM_CompareIdentical)->Unit(benchmark::kMillisecond);

void BM_ReadAndCompare(benchmark::State &state)
{
    const Files &f = files();
    for (auto _ : state) {
        QJsonObject first;
        QJsonObject second;
        QString strError;
        if (!VxReportDiff::readReport(f.strFirst, &first, &strError)
            || !VxReportDiff::readReport(f.strSecond, &second, &strError)) {
            state.SkipWithError(qPrintable(strError));
            break;
        }
        const QString strText = VxReportDiff::text(VxReportDiff::compare(first, second), f.strFirst, f.strSecond);
        benchmark::DoNotOptimize(strText.size());
    }
}
BENCHMARK(BM_ReadAndCompare)->Unit(benchmark::kMillisecond);

void BM_CompareProgram(benchmark::State &state)
{
    const Files &f = files();
    const QString strProgram = QStringLiteral(VX_BIN_DIR "/vetrix-check" VX_EXE_SUFFIX);
    // The program's own processor time, which a busy machine does not
    // inflate the way it does the wall-clock time.
    auto childCpuMs = [] {
        rusage usage {};
        getrusage(RUSAGE_CHILDREN, &usage);
        return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3
            + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
    };
    const double dStartCpu = childCpuMs();
    for (auto _ : state) {
        QProcess process;
        process.start(strProgram, {QStringLiteral("--compare"), f.strFirst, f.strSecond});
        // Exit 0: the changed facts do not change a grade.
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit
            || process.exitCode() != 0) {
            state.SkipWithError("vetrix-check --compare failed");
            break;
        }
    }
    state.counters["program_cpu_ms"]
        = state.iterations() ? (childCpuMs() - dStartCpu) / double(state.iterations()) : 0.0;
}
BENCHMARK(BM_CompareProgram)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
