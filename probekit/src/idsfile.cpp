#include "idsfile.h"

#include "fssource.h"

#include <cstdlib>

namespace probekit {

namespace {

const char *const kPciIdsPaths[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};
constexpr size_t kMaxIdsBytes = 16u * 1024 * 1024;

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Four hex digits at p (bounded by pEnd) followed by blanks and a name.
bool parseIdLine(const char *p, const char *pEnd, uint32_t &uId, std::string &strName)
{
    if (pEnd - p < 6)
        return false;
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i) {
        const int d = hexDigit(p[i]);
        if (d < 0)
            return false;
        v = (v << 4) | uint32_t(d);
    }
    p += 4;
    if (*p != ' ' && *p != '\t')
        return false;
    while (p < pEnd && (*p == ' ' || *p == '\t'))
        ++p;
    strName.assign(p, size_t(pEnd - p));
    while (!strName.empty() && (strName.back() == '\r' || strName.back() == ' '))
        strName.pop_back();
    uId = v;
    return true;
}

} // namespace

void lookupPciNamesInText(const std::string &strText, std::map<uint32_t, std::string> &mapNames)
{
    if (mapNames.empty())
        return;
    const char *p = strText.data();
    const char *const pEnd = p + strText.size();
    bool bWanted = false; // inside a vendor block we need
    uint32_t uVendor = 0;
    std::string strVendor;
    while (p < pEnd) {
        const char *pLineEnd = p;
        while (pLineEnd < pEnd && *pLineEnd != '\n')
            ++pLineEnd;
        uint32_t uId = 0;
        std::string strName;
        if (p < pLineEnd && *p == 'C' && pLineEnd - p > 1 && p[1] == ' ')
            break; // the device class section follows the vendors
        if (p < pLineEnd && *p != '#' && *p != '\t') {
            bWanted = false;
            if (parseIdLine(p, pLineEnd, uId, strName)) {
                auto it = mapNames.lower_bound(uId << 16);
                bWanted = it != mapNames.end() && (it->first >> 16) == uId;
                uVendor = uId;
                strVendor = strName;
                for (; bWanted && it != mapNames.end() && (it->first >> 16) == uId; ++it)
                    if (it->second.empty())
                        it->second = strVendor;
            }
        } else if (bWanted && pLineEnd - p > 1 && p[0] == '\t' && p[1] != '\t') {
            if (parseIdLine(p + 1, pLineEnd, uId, strName)) {
                auto it = mapNames.find((uVendor << 16) | uId);
                if (it != mapNames.end())
                    it->second = strVendor + " " + strName;
            }
        }
        p = pLineEnd < pEnd ? pLineEnd + 1 : pEnd;
    }
}

void lookupPciNames(FsSource &fs, std::map<uint32_t, std::string> &mapNames)
{
    std::string strText;
    for (const char *pPath : kPciIdsPaths)
        if (fs.readFile(pPath, strText, kMaxIdsBytes) && !strText.empty())
            return lookupPciNamesInText(strText, mapNames);
    if (const char *pRoot = std::getenv("VETRIX_SYSROOT"); pRoot && *pRoot) {
        RealFsSource machine("/");
        for (const char *pPath : kPciIdsPaths)
            if (machine.readFile(pPath, strText, kMaxIdsBytes) && !strText.empty())
                return lookupPciNamesInText(strText, mapNames);
    }
}

} // namespace probekit
