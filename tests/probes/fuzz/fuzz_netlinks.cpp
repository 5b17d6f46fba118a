// Fuzz target: the network adapters' sysfs facts over a tree on disk made
// from the input (fuzztree.h), so the kernel resolves the links: whether an
// interface is physical (its `device` link, not below /sys/devices/virtual),
// the device behind it and its line rate. The names to look at are the lines
// "n NAME". Besides crashes it checks that the device is a plain name and the
// rate a positive number or -1 (unknown).
#include "fuzzsandbox.h"
#include "netadapters.h"

#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 100000)
        return 0;
    FuzzTree::Tree &tree = FuzzTree::sandbox("fuzz_netlinks");
    tree.build(std::string(reinterpret_cast<const char *>(pData), nSize));
    int nNames = 0;
    for (const std::string &strLine : tree.lines()) {
        if (strLine.compare(0, 2, "n ") != 0 || ++nNames > 64)
            continue;
        const QString strName = QString::fromUtf8(FuzzTree::unescape(strLine.substr(2)).c_str());
        NetAdapters::isPhysicalDevice(strName);
        const QString strDevice = NetAdapters::deviceOf(strName);
        FuzzTree::check(!strDevice.contains(QLatin1Char('/')));
        const int nSpeed = NetAdapters::speedMbps(strName);
        FuzzTree::check(nSpeed == -1 || nSpeed > 0);
    }
    tree.clear();
    return 0;
}
