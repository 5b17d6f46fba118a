// Fuzz target: the probe library's reader of the real file system
// (RealFsSource) over a tree on disk made from the input (fuzztree.h: files,
// folders, links, FIFOs that give short reads), then the reads the other
// lines ask for, in order:
//   r PATH MAX          readFile
//   i DIR NAME MAX      readFileIn (the open-folder cache)
//   s PATH              isDir, without and with following links
//   ls PATH             listDir
//   k PATH              readLink
// A line "root //" makes the reader's root end in the slashes given.
// Besides crashes it checks what the reads promise: never more than asked
// for, a file's own bytes, what waits in a FIFO in one short read,
// readFileIn and readFile agree, listings hold names only, no file
// descriptor is left open.
#include "fssource.h"
#include "fuzztree.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace {

std::vector<std::string> words(const std::string &strLine)
{
    std::vector<std::string> vecOut;
    size_t at = 0;
    while (at < strLine.size()) {
        size_t end = strLine.find(' ', at);
        if (end == std::string::npos)
            end = strLine.size();
        vecOut.push_back(FuzzTree::unescape(strLine.substr(at, end - at)));
        at = end + 1;
    }
    return vecOut;
}

int countUps(const std::string &strPath)
{
    int nUps = 0;
    for (size_t at = strPath.find(".."); at != std::string::npos; at = strPath.find("..", at + 2))
        ++nUps;
    return nUps;
}

size_t limit(const std::string &strText)
{
    return size_t(std::strtoul(strText.c_str(), nullptr, 10) % 70000);
}

// The lowest free descriptor number: the same before and after a run when
// nothing leaked.
int lowestFreeFd()
{
    const int nFd = ::dup(0);
    if (nFd >= 0)
        ::close(nFd);
    return nFd;
}

// What a path of the tree is on disk, following links.
bool isFifoOrMissing(const std::string &strFull)
{
    struct stat st;
    return ::stat(strFull.c_str(), &st) != 0 || S_ISFIFO(st.st_mode);
}

void runLine(probekit::RealFsSource &fs, const std::string &strRoot, const FuzzTree::Tree &tree,
    const std::vector<std::string> &w)
{
    // A NUL byte would end the path early: the kernel never sees such paths.
    // Paths climb at most kMaxUp above the root (fuzztree.h).
    for (const std::string &word : w)
        if (word.find('\0') != std::string::npos || countUps(word) > FuzzTree::kMaxUp)
            return;
    if (w.size() >= 3 && w[0] == "r") {
        std::string strOut = "stale";
        const size_t nMax = limit(w[2]);
        const FuzzTree::Tree::Entry *pEntry = tree.find(w[1]);
        // What is waiting in a FIFO: read whole in one short read, when it fits.
        int nPending = 0;
        if (pEntry && pEntry->cKind == 'p' && ::ioctl(pEntry->nFifoFd, FIONREAD, &nPending) != 0)
            nPending = 0;
        const bool bOk = fs.readFile(w[1], strOut, nMax);
        FuzzTree::check(strOut.size() <= nMax);
        if (pEntry && pEntry->cKind == 'f') // a regular file of the tree, by its own path
            FuzzTree::check(bOk && strOut == pEntry->strValue.substr(0, nMax));
        if (nPending > 0 && nPending < 4096 && size_t(nPending) <= nMax)
            FuzzTree::check(bOk && strOut == pEntry->strValue.substr(pEntry->strValue.size() - size_t(nPending)));
    } else if (w.size() >= 4 && w[0] == "i") {
        std::string strIn = "stale", strPlain = "stale";
        const size_t nMax = limit(w[3]);
        const bool bIn = fs.readFileIn(w[1], w[2].c_str(), strIn, nMax);
        FuzzTree::check(strIn.size() <= nMax);
        const std::string strJoined = w[1] + "/" + w[2];
        if (!w[2].empty() && w[2][0] != '/' && !isFifoOrMissing(strRoot + strJoined)) {
            const bool bPlain = fs.readFile(strJoined, strPlain, nMax);
            FuzzTree::check(bIn == bPlain && strIn == strPlain);
        }
    } else if (w.size() >= 2 && w[0] == "s") {
        if (fs.isDir(w[1], false))
            FuzzTree::check(fs.isDir(w[1], true));
    } else if (w.size() >= 2 && w[0] == "ls") {
        std::vector<std::string> vecNames {"stale"};
        if (fs.listDir(w[1], vecNames)) {
            const std::set<std::string> setNames(vecNames.begin(), vecNames.end());
            FuzzTree::check(setNames.size() == vecNames.size());
            for (const std::string &name : vecNames)
                FuzzTree::check(!name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos);
        }
    } else if (w.size() >= 2 && w[0] == "k") {
        std::string strTarget;
        const bool bOk = fs.readLink(w[1], strTarget);
        if (bOk)
            FuzzTree::check(!strTarget.empty() && strTarget.find('\0') == std::string::npos);
        if (const FuzzTree::Tree::Entry *pEntry = tree.find(w[1]))
            if (pEntry->cKind == 'l')
                FuzzTree::check(bOk && strTarget == pEntry->strValue);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 100000)
        return 0;
    static FuzzTree::Tree tree;
    const int nFreeFd = lowestFreeFd();
    tree.build(std::string(reinterpret_cast<const char *>(pData), nSize));
    {
        std::string strRoot = tree.root();
        size_t nReads = 0;
        for (const std::string &strLine : tree.lines())
            if (strLine.compare(0, 5, "root ") == 0 && strLine.find_first_not_of('/', 5) == std::string::npos)
                strRoot += strLine.substr(5, 8);
        probekit::RealFsSource fs(strRoot);
        for (const std::string &strLine : tree.lines())
            if (++nReads <= 256)
                runLine(fs, tree.root(), tree, words(strLine));
    }
    tree.clear();
    FuzzTree::check(lowestFreeFd() == nFreeFd);
    return 0;
}
