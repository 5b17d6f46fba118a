// Times probekit over a synthetic sysfs tree: 8 PCI xHCI controllers, each
// with a root hub, 8 hubs and 119 devices (127 devices per bus), and a small
// PC with one controller and four devices; both with the machine's pci.ids.
// Prints the median time per build and per device, the report text's cost
// and the small PC's build time (where per-build costs show).
#include "probekit.h"
#include "usbprobe.h"
#include "usbsysroot.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kControllers = 8;
constexpr int kDevicesPerBus = 127;
constexpr double kTargetMicros = 50.0;

// A small PC: one controller with four devices on its root hub.
int buildSmallSysroot(const QString &strRoot)
{
    UsbSysroot::writeMachinePciIds(strRoot);
    const QByteArray device = UsbSysroot::deviceDescriptor(0x0200, 0, 0, 0x046d, 0xc077) + UsbSysroot::simpleConfiguration(3);
    const QString ctrl = UsbSysroot::addController(strRoot, QStringLiteral("0000:00:14.0"), 0x8086, 0xa36d, "xhci_hcd");
    const QString rootHub = UsbSysroot::addRootHub(ctrl, 1, 4);
    for (int port = 1; port <= 4; ++port)
        UsbSysroot::addUsbDevice(rootHub, QStringLiteral("1-%1").arg(port), device, "12", port + 1, 0, "Bench Mouse");
    return 4;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    if (!dir.isValid())
        return 2;
    const int nDevices = UsbSysroot::addBenchTree(dir.path(), kControllers, kDevicesPerBus);
    qputenv("VETRIX_SYSROOT", dir.path().toLocal8Bit());
    if (argc > 1)
        VxUsbProbe::setLibraryPath(QString::fromLocal8Bit(argv[1]));
    QElapsedTimer first;
    first.start();
    UsbRootItem *pWarm = VxUsbProbe::buildTree(); // loads the library and warms the file cache
    const double firstMicros = first.nsecsElapsed() / 1000.0;
    if (!pWarm) {
        std::fprintf(stderr, "probe library not found at %s\n", qPrintable(VxUsbProbe::libraryPath()));
        return 2;
    }
    VxUsbProbe::destroyTree(pWarm);

    std::vector<double> build, report;
    double userMicros = 0, systemMicros = 0;
    int nLines = 0;
    const int nRuns = 15;
    for (int i = 0; i < nRuns; ++i) {
        QElapsedTimer t;
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        t.start();
        UsbRootItem *pRoot = VxUsbProbe::buildTree();
        build.push_back(t.nsecsElapsed() / 1000.0);
        getrusage(RUSAGE_SELF, &after);
        userMicros += (after.ru_utime.tv_sec - before.ru_utime.tv_sec) * 1e6 + (after.ru_utime.tv_usec - before.ru_utime.tv_usec);
        systemMicros += (after.ru_stime.tv_sec - before.ru_stime.tv_sec) * 1e6 + (after.ru_stime.tv_usec - before.ru_stime.tv_usec);
        t.restart();
        nLines = VxUsbProbe::treeReportLines(pRoot).size();
        report.push_back(t.nsecsElapsed() / 1000.0);
        VxUsbProbe::destroyTree(pRoot);
    }
    const double perDevice = median(build) / nDevices;
    std::printf("devices: %d (%d controllers)\n", nDevices, kControllers);
    std::printf("first build (loads the library, reads the id database): %.0f us\n", firstMicros);
    std::printf("tree build: median %.0f us, %.1f us per device (target < %.0f us): %s\n", median(build), perDevice,
                kTargetMicros, perDevice < kTargetMicros ? "ok" : "OVER TARGET");
    std::printf("tree build CPU per device: %.1f us user, %.1f us system (wall time includes waiting for a CPU)\n",
                userMicros / nRuns / nDevices, systemMicros / nRuns / nDevices);
    std::printf("report text: median %.0f us, %.1f us per device, %d lines\n", median(report), median(report) / nDevices,
                nLines);

    // The small PC: here the per-build costs (such as the PCI id database)
    // are not spread over a thousand devices.
    QTemporaryDir small;
    if (!small.isValid())
        return 2;
    const int nSmall = buildSmallSysroot(small.path());
    qputenv("VETRIX_SYSROOT", small.path().toLocal8Bit());
    VxUsbProbe::destroyTree(VxUsbProbe::buildTree());
    std::vector<double> smallBuild;
    for (int i = 0; i < 51; ++i) {
        QElapsedTimer t;
        t.start();
        UsbRootItem *pRoot = VxUsbProbe::buildTree();
        smallBuild.push_back(t.nsecsElapsed() / 1000.0);
        VxUsbProbe::destroyTree(pRoot);
    }
    std::printf("small PC (1 controller, %d devices): tree build median %.0f us\n", nSmall, median(smallBuild));
    return 0;
}
