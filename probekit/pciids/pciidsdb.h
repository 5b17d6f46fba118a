#pragma once

// The PCI id database (pci.ids, as Debian's pci.ids package ships it), read
// by the USB tree builder and by the system facts alike. Plain C++ so both
// the probe library and the program compile the same parser.
//
// Layout: a vendor line is four hex digits at the start of the line, blanks
// and the name; the vendor's device lines follow, each a tab, four hex
// digits, blanks and the name; two tabs start a subsystem line; '#' starts a
// comment; "C " starts the device class section after the vendors.
//
// Building a Database only finds the vendor lines; a vendor's device lines
// are parsed the first time one of its devices is asked for.

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace pciids {

class Database
{
public:
    explicit Database(std::string strText);
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    // The vendor's name; false when the vendor is not listed.
    bool vendorName(uint16_t uVendor, std::string &strOut) const;
    // The device's name (without the vendor); false when it is not listed.
    bool deviceName(uint16_t uVendor, uint16_t uDevice, std::string &strOut) const;
    size_t vendorCount() const { return m_vecVendors.size(); }

private:
    struct Vendor
    {
        uint16_t uId;
        size_t nLine;  // offset of the vendor line
        size_t nEnd;   // end of the vendor's block
    };
    using Devices = std::vector<std::pair<uint16_t, std::string>>; // sorted by id
    const Vendor *findVendor(uint16_t uVendor) const;

    std::string m_strText;
    std::vector<Vendor> m_vecVendors; // sorted by id
    mutable std::mutex m_mutex;
    mutable std::map<uint16_t, Devices> m_mapDevices; // vendors parsed so far
};

// The database in a file, read and indexed once per process and kept while
// the file stays the same (size, modification time, file id); null when the
// file cannot be read or is empty. Safe to call from any thread.
std::shared_ptr<const Database> databaseOfFile(const std::string &strPath);

// How many times a file was read and indexed by databaseOfFile (for tests).
unsigned fileLoadCount();

} // namespace pciids
