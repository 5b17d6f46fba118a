#include "idsfile.h"

#include "fssource.h"
#include "pciidsdb.h"

#include <cstdlib>

namespace probekit {

namespace {

const char *const kPciIdsPaths[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};
constexpr size_t kMaxIdsBytes = 16u * 1024 * 1024;

void fillNames(const pciids::Database &db, std::map<uint32_t, std::string> &mapNames)
{
    for (auto &entry : mapNames) {
        std::string strVendor, strDevice;
        if (!db.vendorName(uint16_t(entry.first >> 16), strVendor))
            continue;
        entry.second = db.deviceName(uint16_t(entry.first >> 16), uint16_t(entry.first & 0xFFFF), strDevice)
                           ? strVendor + " " + strDevice
                           : strVendor;
    }
}

} // namespace

void lookupPciNamesInText(const std::string &strText, std::map<uint32_t, std::string> &mapNames)
{
    if (mapNames.empty())
        return;
    fillNames(pciids::Database(strText), mapNames);
}

void lookupPciNames(FsSource &fs, std::map<uint32_t, std::string> &mapNames)
{
    if (mapNames.empty())
        return;
    // A file on disk is read and indexed once per process; a tree that is
    // no file system (tests, fuzzing) hands its text over each time.
    for (const char *pPath : kPciIdsPaths) {
        std::string strLocal;
        if (fs.localPath(pPath, strLocal)) {
            if (const auto pDb = pciids::databaseOfFile(strLocal))
                return fillNames(*pDb, mapNames);
            continue;
        }
        std::string strText;
        if (fs.readFile(pPath, strText, kMaxIdsBytes) && !strText.empty())
            return lookupPciNamesInText(strText, mapNames);
    }
    if (const char *pRoot = std::getenv("VETRIX_SYSROOT"); pRoot && *pRoot) {
        for (const char *pPath : kPciIdsPaths)
            if (const auto pDb = pciids::databaseOfFile(pPath))
                return fillNames(*pDb, mapNames);
    }
}

} // namespace probekit
