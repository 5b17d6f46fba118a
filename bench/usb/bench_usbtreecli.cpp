// Times vetrix-check --usb-tree (the probe library's tree, then the text or
// the JSON) on the synthetic PC of 8 controllers x 127 devices, with Google
// Benchmark. Target: under 100 ms per run.
//   bench_usbtreecli [path of the probe library] [benchmark options]
#include "usbprobe.h"
#include "usbsysroot.h"
#include "vxusbtreecli.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

void runTree(benchmark::State &state, const QString &strFormat)
{
    qint64 nBytes = 0;
    for (auto _ : state) {
        QString strOut;
        if (!VxUsbTreeCli::render(strFormat, strOut)) {
            state.SkipWithError("no USB tree: probe library not found");
            return;
        }
        nBytes = strOut.size();
        benchmark::DoNotOptimize(strOut);
    }
    state.counters["chars"] = double(nBytes);
    state.SetLabel("target < 100 ms");
}

void BM_UsbTreeText(benchmark::State &state)
{
    runTree(state, QStringLiteral("text"));
}

void BM_UsbTreeJson(benchmark::State &state)
{
    runTree(state, QStringLiteral("json"));
}

BENCHMARK(BM_UsbTreeText)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_UsbTreeJson)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    if (!dir.isValid())
        return 2;
    const int nDevices = UsbSysroot::addBenchTree(dir.path());
    std::printf("synthetic PC: %d devices on 8 controllers\n", nDevices);
    qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
    if (argc > 1 && argv[1][0] != '-') {
        VxUsbProbe::setLibraryPath(QString::fromLocal8Bit(argv[1]));
        --argc;
        ++argv;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
