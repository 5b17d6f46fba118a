#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace probekit {

// Read access to a system tree by absolute path ("/sys/bus/pci/devices").
// The Linux reader goes through this so tests and fuzz targets can feed it
// an in-memory tree; the real one prefixes the system root.
class FsSource
{
public:
    virtual ~FsSource() = default;
    // At most nMax bytes of a regular file; false when it cannot be read.
    virtual bool readFile(const std::string &strPath, std::string &strOut, size_t nMax) = 0;
    // Whether the path is a directory (a symlink to one counts only when
    // bFollow is set; the tree walk never follows links it did not expect).
    virtual bool isDir(const std::string &strPath, bool bFollow) = 0;
    // The entry names of a directory (no "." and ".."), unsorted.
    virtual bool listDir(const std::string &strPath, std::vector<std::string> &vecOut) = 0;
    // The target of a symbolic link.
    virtual bool readLink(const std::string &strPath, std::string &strOut) = 0;
    // A file of a directory; readers call it for many files of one folder.
    virtual bool readFileIn(const std::string &strDir, const char *pName, std::string &strOut, size_t nMax)
    {
        return readFile(strDir + "/" + pName, strOut, nMax);
    }
    // The path of a file on the machine's disk; false for a tree that is
    // not on disk.
    virtual bool localPath(const std::string &strPath, std::string &strOut)
    {
        (void)strPath;
        (void)strOut;
        return false;
    }
    // Whether the tree is the running machine's, so its device nodes lead
    // to the devices it shows. A mounted system image is not: its /dev nodes
    // would reach the devices of the machine running the program. In-memory
    // trees stand for a running machine.
    virtual bool isLiveRoot() { return true; }
    // String descriptor 0 (the language list) of the device with this bus and
    // device number, asked from the device itself; false when that is not
    // possible (by default, and without write access to the device node).
    virtual bool readLanguageDescriptor(unsigned nBus, unsigned nDevNum, std::string &strOut)
    {
        (void)nBus;
        (void)nDevNum;
        (void)strOut;
        return false;
    }
};

// The machine's tree below $VETRIX_SYSROOT (default "/").
class RealFsSource : public FsSource
{
public:
    RealFsSource();
    explicit RealFsSource(const std::string &strRoot);
    ~RealFsSource() override;
    RealFsSource(const RealFsSource &) = delete;
    RealFsSource &operator=(const RealFsSource &) = delete;
    bool readFile(const std::string &strPath, std::string &strOut, size_t nMax) override;
    bool isDir(const std::string &strPath, bool bFollow) override;
    bool listDir(const std::string &strPath, std::vector<std::string> &vecOut) override;
    bool readLink(const std::string &strPath, std::string &strOut) override;
    // Opens the folder once and the files relative to it (fewer path walks).
    bool readFileIn(const std::string &strDir, const char *pName, std::string &strOut, size_t nMax) override;
    bool localPath(const std::string &strPath, std::string &strOut) override
    {
        strOut = full(strPath);
        return true;
    }
    // Through usbfs (/dev/bus/usb/BBB/DDD below the root): a GET_DESCRIPTOR
    // control request, which needs the node open for writing (root, or a
    // udev rule that grants the user the device).
    bool readLanguageDescriptor(unsigned nBus, unsigned nDevNum, std::string &strOut) override;
    const std::string &root() const { return m_strRoot; }
    // The root is "/" (or a link to it).
    bool isLiveRoot() override;

private:
    std::string full(const std::string &strPath) const;
    std::string m_strRoot; // without trailing '/'; empty for "/"
    std::string m_strDir;  // the folder m_nDirFd refers to
    int m_nDirFd = -1;
};

} // namespace probekit
