#include "pciidsdb.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdio>

namespace pciids {

namespace {

constexpr size_t kMaxFileBytes = 16u * 1024 * 1024;

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

// Four hex digits at p followed by blanks and a non-empty name, all before
// pEnd: "8086  Intel Corporation".
bool parseIdLine(const char *p, const char *pEnd, uint16_t &uId, std::string *pName)
{
    if (pEnd - p < 6)
        return false;
    unsigned v = 0;
    for (int i = 0; i < 4; ++i) {
        const int d = hexDigit(p[i]);
        if (d < 0)
            return false;
        v = (v << 4) | unsigned(d);
    }
    p += 4;
    if (*p != ' ' && *p != '\t')
        return false;
    while (p < pEnd && (*p == ' ' || *p == '\t'))
        ++p;
    while (pEnd > p && (pEnd[-1] == '\r' || pEnd[-1] == ' ' || pEnd[-1] == '\t'))
        --pEnd;
    if (p == pEnd)
        return false;
    uId = uint16_t(v);
    if (pName)
        pName->assign(p, size_t(pEnd - p));
    return true;
}

const char *lineEnd(const char *p, const char *pEnd)
{
    while (p < pEnd && *p != '\n')
        ++p;
    return p;
}

std::atomic<unsigned> g_nLoads{0};

} // namespace

Database::Database(std::string strText)
    : m_strText(std::move(strText))
{
    const char *const pBegin = m_strText.data();
    const char *const pEnd = pBegin + m_strText.size();
    for (const char *p = pBegin; p < pEnd;) {
        const char *pLineEnd = lineEnd(p, pEnd);
        if (pLineEnd - p > 1 && p[0] == 'C' && p[1] == ' ')
            break; // the device class section follows the vendors
        uint16_t uId = 0;
        if (p < pLineEnd && *p != '\t' && *p != '#') {
            if (!m_vecVendors.empty() && m_vecVendors.back().nEnd == 0)
                m_vecVendors.back().nEnd = size_t(p - pBegin);
            if (parseIdLine(p, pLineEnd, uId, nullptr))
                m_vecVendors.push_back({uId, size_t(p - pBegin), 0});
        }
        p = pLineEnd < pEnd ? pLineEnd + 1 : pEnd;
    }
    if (!m_vecVendors.empty() && m_vecVendors.back().nEnd == 0)
        m_vecVendors.back().nEnd = m_strText.size();
    // A stable sort keeps the first of two blocks with one id first.
    std::stable_sort(m_vecVendors.begin(), m_vecVendors.end(),
                     [](const Vendor &a, const Vendor &b) { return a.uId < b.uId; });
}

const Database::Vendor *Database::findVendor(uint16_t uVendor) const
{
    auto it = std::lower_bound(m_vecVendors.begin(), m_vecVendors.end(), uVendor,
                               [](const Vendor &v, uint16_t uId) { return v.uId < uId; });
    return it != m_vecVendors.end() && it->uId == uVendor ? &*it : nullptr;
}

bool Database::vendorName(uint16_t uVendor, std::string &strOut) const
{
    const Vendor *pVendor = findVendor(uVendor);
    if (!pVendor)
        return false;
    const char *p = m_strText.data() + pVendor->nLine;
    uint16_t uId = 0;
    return parseIdLine(p, lineEnd(p, m_strText.data() + pVendor->nEnd), uId, &strOut);
}

bool Database::deviceName(uint16_t uVendor, uint16_t uDevice, std::string &strOut) const
{
    const Vendor *pVendor = findVendor(uVendor);
    if (!pVendor)
        return false;
    std::lock_guard<std::mutex> lock(m_mutex);
    auto itVendor = m_mapDevices.find(uVendor);
    if (itVendor == m_mapDevices.end()) {
        Devices devices;
        const char *const pEnd = m_strText.data() + pVendor->nEnd;
        const char *p = m_strText.data() + pVendor->nLine;
        p = lineEnd(p, pEnd);
        while (p < pEnd) {
            ++p; // the '\n'
            const char *pLineEnd = lineEnd(p, pEnd);
            uint16_t uId = 0;
            std::string strName;
            if (pLineEnd - p > 1 && p[0] == '\t' && p[1] != '\t' && parseIdLine(p + 1, pLineEnd, uId, &strName))
                devices.emplace_back(uId, std::move(strName));
            p = pLineEnd;
        }
        std::stable_sort(devices.begin(), devices.end(),
                         [](const auto &a, const auto &b) { return a.first < b.first; });
        itVendor = m_mapDevices.emplace(uVendor, std::move(devices)).first;
    }
    const Devices &devices = itVendor->second;
    auto it = std::lower_bound(devices.begin(), devices.end(), uDevice,
                               [](const auto &d, uint16_t uId) { return d.first < uId; });
    if (it == devices.end() || it->first != uDevice)
        return false;
    strOut = it->second;
    return true;
}

std::shared_ptr<const Database> databaseOfFile(const std::string &strPath)
{
    struct Entry
    {
        long long nSize = -1;
        long long nTime = 0;
        unsigned long long uFileId = 0;
        std::shared_ptr<const Database> pDatabase;
    };
    static std::mutex s_mutex;
    static std::map<std::string, Entry> s_mapFiles;

    struct stat st{};
    if (strPath.empty() || ::stat(strPath.c_str(), &st) != 0 || (st.st_mode & S_IFMT) != S_IFREG)
        return nullptr;
    std::lock_guard<std::mutex> lock(s_mutex);
    Entry &entry = s_mapFiles[strPath];
    if (entry.nSize == static_cast<long long>(st.st_size) && entry.nTime == static_cast<long long>(st.st_mtime)
        && entry.uFileId == static_cast<unsigned long long>(st.st_ino))
        return entry.pDatabase;
    entry = Entry();
    std::string strText;
    if (std::FILE *pFile = std::fopen(strPath.c_str(), "rb")) {
        char buf[65536];
        size_t n = 0;
        while (strText.size() < kMaxFileBytes && (n = std::fread(buf, 1, sizeof buf, pFile)) > 0)
            strText.append(buf, std::min(n, kMaxFileBytes - strText.size()));
        std::fclose(pFile);
    } else {
        return nullptr;
    }
    ++g_nLoads;
    const bool bEmpty = strText.empty();
    auto pDatabase = std::make_shared<const Database>(std::move(strText));
    entry.nSize = static_cast<long long>(st.st_size);
    entry.nTime = static_cast<long long>(st.st_mtime);
    entry.uFileId = static_cast<unsigned long long>(st.st_ino);
    if (!bEmpty)
        entry.pDatabase = std::move(pDatabase);
    return entry.pDatabase;
}

unsigned fileLoadCount()
{
    return g_nLoads.load();
}

} // namespace pciids
