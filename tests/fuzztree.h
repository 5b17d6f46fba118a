#pragma once

// A small file tree on disk made from a fuzz input, for the targets that
// read through the real file system (the kernel resolves the links). One
// entry a line:
//   d PATH            a directory
//   f PATH CONTENT    a regular file
//   p PATH CONTENT    a FIFO with CONTENT waiting in it (reads come back short)
//   l PATH TARGET     a symbolic link
// CONTENT and TARGET take the escapes \n, \\ and \xHH. Other lines are left
// to the target (FuzzTree::lines()). Entries are made with *at() calls that
// never follow a link, so nothing is written outside the tree. Reads may
// follow links out of it: the tree's root lies at the bottom of a chain of
// kChainDepth empty folders; a link target may start with at most kMaxUp
// ".." (an absolute one is made relative to the root first, as sysfs itself
// would resolve it), and a ".." after a name must undo a real folder, so no
// chain of links climbs more than kMaxUp above the root. Readers that climb
// with ".." of their own must keep below kChainDepth - kMaxUp. The chain is
// not deeper because every path walk pays for it. The sandbox is removed when the process ends normally.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace FuzzTree {

constexpr int kMaxUp = 8;
constexpr int kChainDepth = 6 * kMaxUp;
constexpr size_t kMaxEntries = 512;
constexpr size_t kMaxDepth = 24;
constexpr size_t kMaxFifoBytes = 32768; // below a pipe's capacity: writing never blocks

// A broken property is a finding: abort so libFuzzer keeps the input.
inline void check(bool bOk)
{
    if (!bOk)
        std::abort();
}

inline std::string unescape(const std::string &s)
{
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\' || i + 1 >= s.size()) {
            out += s[i];
            continue;
        }
        const char c = s[++i];
        if (c == 'n') {
            out += '\n';
        } else if (c == 'x' && i + 2 < s.size()) {
            out += char(std::strtol(s.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            out += c;
        }
    }
    return out;
}

// The components of a relative or absolute path; false for "..", ".", empty
// components in the middle, a NUL byte, or too many components.
inline bool split(const std::string &strPath, std::vector<std::string> &vecOut)
{
    vecOut.clear();
    size_t at = strPath.empty() || strPath[0] != '/' ? 0 : 1;
    while (at < strPath.size()) {
        size_t next = strPath.find('/', at);
        if (next == std::string::npos)
            next = strPath.size();
        const std::string part = strPath.substr(at, next - at);
        if (part.empty() || part == "." || part == ".." || part.size() > 200 || part.find('\0') != std::string::npos)
            return false;
        vecOut.push_back(part);
        at = next + 1;
    }
    return !vecOut.empty() && vecOut.size() <= kMaxDepth;
}

// Removes everything inside the open folder (links are removed, not followed).
inline void clearDir(int nDirFd)
{
    const int nListFd = ::dup(nDirFd);
    DIR *pDir = nListFd >= 0 ? ::fdopendir(nListFd) : nullptr;
    if (!pDir) {
        if (nListFd >= 0)
            ::close(nListFd);
        return;
    }
    ::rewinddir(pDir);
    std::vector<std::string> vecNames;
    while (dirent *pEnt = ::readdir(pDir)) {
        const std::string name = pEnt->d_name;
        if (name != "." && name != "..")
            vecNames.push_back(name);
    }
    ::closedir(pDir);
    for (const std::string &name : vecNames) {
        if (::unlinkat(nDirFd, name.c_str(), 0) == 0)
            continue;
        const int nSub = ::openat(nDirFd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (nSub >= 0) {
            clearDir(nSub);
            ::close(nSub);
        }
        ::unlinkat(nDirFd, name.c_str(), AT_REMOVEDIR);
    }
}

class Tree
{
public:
    struct Entry
    {
        char cKind;
        std::string strPath; // absolute ("/a/b"), whether or not the input had the '/'
        std::string strValue;
        int nFifoFd = -1; // a FIFO's writing end, open until clear()
    };

    // Makes the sandbox once per process, below $TMPDIR, else in memory
    // (/dev/shm) when the machine has it, else below /tmp.
    Tree()
    {
        const char *pTmp = std::getenv("TMPDIR");
        const char *pBase = pTmp && *pTmp ? pTmp : ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        std::string strBase = std::string(pBase) + "/vxfuzz-XXXXXX";
        std::vector<char> buf(strBase.begin(), strBase.end());
        buf.push_back('\0');
        if (!::mkdtemp(buf.data()))
            std::abort();
        m_strSandbox = buf.data();
        std::string strPath = m_strSandbox;
        for (int i = 0; i < kChainDepth; ++i) {
            strPath += "/d";
            ::mkdir(strPath.c_str(), 0755);
        }
        m_strRoot = strPath + "/r";
        if (::mkdir(m_strRoot.c_str(), 0755) != 0)
            std::abort();
        m_nRootFd = ::open(m_strRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (m_nRootFd < 0)
            std::abort();
    }
    ~Tree()
    {
        clear();
        ::close(m_nRootFd);
        const int nFd = ::open(m_strSandbox.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (nFd >= 0) {
            clearDir(nFd);
            ::close(nFd);
        }
        ::rmdir(m_strSandbox.c_str());
    }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    const std::string &root() const { return m_strRoot; }
    const std::vector<Entry> &entries() const { return m_vecEntries; }
    const std::vector<std::string> &lines() const { return m_vecLines; }
    // The entry last made at exactly this absolute path ("/a/b"), or null.
    const Entry *find(const std::string &strPath) const
    {
        if (strPath.empty() || strPath[0] != '/' || strPath.back() == '/')
            return nullptr;
        for (auto it = m_vecEntries.rbegin(); it != m_vecEntries.rend(); ++it)
            if (it->strPath == strPath)
                return &*it;
        return nullptr;
    }

    // Empties the tree and makes the one the input describes.
    void build(const std::string &strInput)
    {
        clear();
        size_t at = 0;
        while (at < strInput.size()) {
            size_t end = strInput.find('\n', at);
            if (end == std::string::npos)
                end = strInput.size();
            addLine(strInput.substr(at, end - at));
            at = end + 1;
        }
        for (const auto &folder : m_mapFolderFds)
            ::close(folder.second);
        m_mapFolderFds.clear();
    }

    // Removes the tree and closes the FIFOs' writing ends.
    void clear()
    {
        for (const int nFd : m_vecFifoFds)
            ::close(nFd);
        m_vecFifoFds.clear();
        clearDir(m_nRootFd);
        m_vecEntries.clear();
        m_vecLines.clear();
    }

private:
    void addLine(const std::string &strLine)
    {
        if (strLine.size() < 3 || strLine[1] != ' ' || std::string("dfpl").find(strLine[0]) == std::string::npos) {
            m_vecLines.push_back(strLine);
            return;
        }
        if (m_vecEntries.size() >= kMaxEntries)
            return;
        const char cKind = strLine[0];
        const size_t space = cKind == 'd' ? std::string::npos : strLine.find(' ', 2);
        Entry e{cKind, strLine.substr(2, space == std::string::npos ? std::string::npos : space - 2),
                space == std::string::npos ? std::string() : unescape(strLine.substr(space + 1))};
        std::vector<std::string> vecParts;
        if (!split(e.strPath, vecParts))
            return;
        e.strPath.clear(); // "a/b" and "/a/b" name the same entry
        for (const std::string &part : vecParts)
            e.strPath += "/" + part;
        // The parent folders, made as needed, never through a link.
        int nDirFd = m_nRootFd;
        std::string strFolder;
        const size_t nFolders = cKind == 'd' ? vecParts.size() : vecParts.size() - 1;
        for (size_t i = 0; i < nFolders && nDirFd >= 0; ++i) {
            strFolder += "/" + vecParts[i];
            const auto it = m_mapFolderFds.find(strFolder);
            if (it != m_mapFolderFds.end()) {
                nDirFd = it->second;
                continue;
            }
            ::mkdirat(nDirFd, vecParts[i].c_str(), 0755);
            nDirFd = ::openat(nDirFd, vecParts[i].c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (nDirFd >= 0)
                m_mapFolderFds.emplace(strFolder, nDirFd);
        }
        if (nDirFd < 0)
            return;
        const char *pName = vecParts.back().c_str();
        bool bMade = cKind == 'd';
        if (cKind == 'f') {
            // Non-blocking, and only over a regular file: the name may be a FIFO already.
            const int nFd = ::openat(nDirFd, pName, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
            struct stat st;
            bMade = nFd >= 0 && ::fstat(nFd, &st) == 0 && S_ISREG(st.st_mode) && ::ftruncate(nFd, 0) == 0
                    && writeAll(nFd, e.strValue);
            if (nFd >= 0)
                ::close(nFd);
        } else if (cKind == 'p') {
            if (e.strValue.size() > kMaxFifoBytes)
                e.strValue.resize(kMaxFifoBytes);
            if (::mkfifoat(nDirFd, pName, 0644) == 0) {
                // Opened for reading and writing so the open does not wait for a reader.
                const int nFd = ::openat(nDirFd, pName, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
                bMade = nFd >= 0 && writeAll(nFd, e.strValue);
                if (nFd >= 0)
                    m_vecFifoFds.push_back(nFd);
                e.nFifoFd = nFd;
            }
        } else if (cKind == 'l') {
            e.strValue = linkTarget(e.strValue, vecParts.size() - 1, nDirFd);
            bMade = !e.strValue.empty() && ::symlinkat(e.strValue.c_str(), nDirFd, pName) == 0;
        }
        if (bMade)
            m_vecEntries.push_back(e);
    }

    static bool writeAll(int nFd, const std::string &strData)
    {
        size_t done = 0;
        while (done < strData.size()) {
            const ssize_t n = ::write(nFd, strData.data() + done, strData.size() - done);
            if (n <= 0)
                return false;
            done += size_t(n);
        }
        return true;
    }

    // The target as written, an absolute one made relative to the root; ""
    // when it cannot be kept. Up to kMaxUp ".." may lead (sysfs links start
    // so); a ".." after a name must undo that name, a real folder by then,
    // so no link climbs further than its leading ".." from where it lies.
    static std::string linkTarget(const std::string &strTarget, size_t nDepth, int nParentFd)
    {
        if (strTarget.empty() || strTarget.size() > 1024 || strTarget.find('\0') != std::string::npos)
            return std::string();
        std::string strOut = strTarget;
        size_t nAllowed = kMaxUp;
        if (strTarget[0] == '/') {
            strOut = nDepth ? std::string() : std::string(".");
            for (size_t i = 0; i < nDepth; ++i)
                strOut += i ? "/.." : "..";
            strOut += strTarget;
            nAllowed += nDepth;
        }
        std::vector<std::string> vecPath; // leading ".." then names
        size_t nLeading = 0;
        for (size_t at = 0; at <= strOut.size();) {
            size_t next = strOut.find('/', at);
            if (next == std::string::npos)
                next = strOut.size();
            const std::string part = strOut.substr(at, next - at);
            at = next + 1;
            if (part.empty() || part == ".")
                continue;
            if (part != "..") {
                vecPath.push_back(part);
            } else if (vecPath.size() == nLeading) {
                if (++nLeading > nAllowed)
                    return std::string();
                vecPath.push_back(part);
            } else {
                std::string strPrefix;
                for (const std::string &p : vecPath)
                    strPrefix += (strPrefix.empty() ? "" : "/") + p;
                struct stat st;
                if (::fstatat(nParentFd, strPrefix.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISDIR(st.st_mode))
                    return std::string();
                vecPath.pop_back();
            }
        }
        return strOut;
    }

    std::string m_strSandbox;
    std::string m_strRoot;
    int m_nRootFd = -1;
    std::vector<int> m_vecFifoFds;
    std::map<std::string, int> m_mapFolderFds; // folders open while building
    std::vector<Entry> m_vecEntries;
    std::vector<std::string> m_vecLines;
};

} // namespace FuzzTree
