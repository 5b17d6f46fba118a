// What one cycle of the resource-usage loop costs: the memory and CPU samples
// it takes once a second. Prints the CPU time per cycle and the share of one
// core that makes at one cycle per second (target: under 0.2 %).
#include "resourcesampler.h"

#include <QCoreApplication>

#include <cstdio>
#include <ctime>

namespace {
double cpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) / 1e9;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    constexpr int kCycles = 2000;
    VxResourceSampler sampler;
    float fSink = 0.0f;
    const double dStart = cpuSeconds();
    for (int i = 0; i < kCycles; ++i)
        fSink += sampler.memoryLoad() + sampler.cpuLoad();
    const double dPerCycle = (cpuSeconds() - dStart) / kCycles;
    std::printf("resource loop: %.1f us CPU per cycle, %.4f %% of one core at one cycle per second "
                "(target < 0.2 %%)%s\n",
                dPerCycle * 1e6, dPerCycle * 100.0, fSink < 0 ? "!" : "");
    return dPerCycle * 100.0 < 0.2 ? 0 : 1;
}
