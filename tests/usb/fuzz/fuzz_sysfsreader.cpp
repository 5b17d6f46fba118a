// Fuzz target: the sysfs reader of the probe library and the report text of
// the tree it builds. The input gives the contents of a fixed set of files of
// a small USB tree (one controller, a root hub, a hub with two devices);
// chunks are separated by the bytes FF FE.
#include "arena.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "fssource.h"
#include "treebuilder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

const char *const kFiles[] = {
    "/sys/devices/pci0000:00/0000:00:14.0/class",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/descriptors",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/maxchild",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/speed",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/descriptors",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/maxchild",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/bConfigurationValue",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/product",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.1/descriptors",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.1/speed",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.1/manufacturer",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.1/1-1.1:1.0/bAlternateSetting",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.1/1-1.1:1.0/interface",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.2/descriptors",
    "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1.2/configuration",
    "/usr/share/misc/pci.ids",
};

// A read-only tree held in memory; directories are the prefixes of the files.
class CMemorySource : public probekit::FsSource
{
public:
    std::map<std::string, std::string> mapFiles;

    bool readFile(const std::string &strPath, std::string &strOut, size_t nMax) override
    {
        const auto it = mapFiles.find(strPath);
        if (it == mapFiles.end())
            return false;
        strOut = it->second.substr(0, nMax);
        return true;
    }
    bool isDir(const std::string &strPath, bool) override
    {
        const std::string prefix = strPath + "/";
        const auto it = mapFiles.lower_bound(prefix);
        return it != mapFiles.end() && it->first.compare(0, prefix.size(), prefix) == 0;
    }
    bool listDir(const std::string &strPath, std::vector<std::string> &vecOut) override
    {
        vecOut.clear();
        if (strPath == "/sys/bus/pci/devices") {
            vecOut.push_back("0000:00:14.0");
            return true;
        }
        std::string pathReal = strPath;
        if (pathReal == "/sys/bus/pci/devices/0000:00:14.0")
            pathReal = "/sys/devices/pci0000:00/0000:00:14.0";
        const std::string prefix = pathReal + "/";
        for (auto it = mapFiles.lower_bound(prefix); it != mapFiles.end() && it->first.compare(0, prefix.size(), prefix) == 0; ++it) {
            const std::string rest = it->first.substr(prefix.size());
            const std::string name = rest.substr(0, rest.find('/'));
            if (vecOut.empty() || vecOut.back() != name)
                vecOut.push_back(name);
        }
        return !vecOut.empty();
    }
    bool readLink(const std::string &, std::string &) override { return false; }
};

// The PCI device link: reads below /sys/bus/pci/devices/<addr> go to the device.
class CLinkedSource : public CMemorySource
{
public:
    static std::string resolve(const std::string &strPath)
    {
        static const std::string link = "/sys/bus/pci/devices/0000:00:14.0";
        if (strPath.compare(0, link.size(), link) == 0)
            return "/sys/devices/pci0000:00/0000:00:14.0" + strPath.substr(link.size());
        return strPath;
    }
    bool readFile(const std::string &p, std::string &o, size_t n) override { return CMemorySource::readFile(resolve(p), o, n); }
    bool isDir(const std::string &p, bool b) override { return CMemorySource::isDir(resolve(p), b); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 200000)
        return 0;
    CLinkedSource fs;
    const std::string input(reinterpret_cast<const char *>(pData), nSize);
    size_t start = 0;
    for (const char *pFile : kFiles) {
        const size_t end = input.find("\xff\xfe", start);
        fs.mapFiles[pFile] = input.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (end == std::string::npos)
            break;
        start = end + 2;
    }
    UsbRootItem root{};
    probekit::Arena arena;
    probekit::buildSysfsTree(fs, &root, arena);
    CUsbTextSink sink;
    CUsbTreeDecoder(sink).printTree(&root);
    return 0;
}
