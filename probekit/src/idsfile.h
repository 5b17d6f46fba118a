#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace probekit {

class FsSource;

// Fills the names of the PCI devices whose keys (vendor << 16 | device) are
// in mapNames from the pci.ids database: "Vendor Device", or "Vendor" when
// only the vendor is listed. Unknown ids keep an empty name. The database is
// read below the system root, else from the machine's own copy.
void lookupPciNames(FsSource &fs, std::map<uint32_t, std::string> &mapNames);

// The same over the text of a pci.ids file (exposed for tests).
void lookupPciNamesInText(const std::string &strText, std::map<uint32_t, std::string> &mapNames);

} // namespace probekit
