// Fuzz target for the Linux system-fact readers of base/: the input is cut
// at lines "%%" into the files of a small system tree (cpuinfo, meminfo,
// os-release, kernel release, pci.ids, one PCI function's class/vendor/device,
// one DRM connector's status/modes, the online CPU list), which is written
// below a private system root; then every fact is read. Any crash, hang or
// sanitizer report is a bug.
#include "luinterface.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

const char *const g_files[] = {
    "proc/cpuinfo",
    "proc/meminfo",
    "etc/os-release",
    "proc/sys/kernel/osrelease",
    "usr/share/misc/pci.ids",
    "sys/bus/pci/devices/0000:00:02.0/class",
    "sys/bus/pci/devices/0000:00:02.0/vendor",
    "sys/bus/pci/devices/0000:00:02.0/device",
    "sys/class/drm/card0-DP-1/status",
    "sys/class/drm/card0-DP-1/modes",
    "sys/devices/system/cpu/online",
};

QTemporaryDir *root()
{
    static QTemporaryDir *s_pRoot = [] {
        static int nArgc = 1;
        static char szName[] = "fuzz_sysfacts";
        static char *argv[] = {szName, nullptr};
        new QCoreApplication(nArgc, argv);
        auto *pDir = new QTemporaryDir;
        qputenv("VETRIX_SYSROOT", QFile::encodeName(pDir->path()));
        return pDir;
    }();
    return s_pRoot;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    QTemporaryDir *pRoot = root();
    if (!pRoot->isValid())
        std::abort();
    const QByteArray input(reinterpret_cast<const char *>(pData), int(nSize));
    QList<QByteArray> sections;
    for (int nStart = 0;;) {
        const int nCut = input.indexOf("\n%%\n", nStart);
        sections << input.mid(nStart, nCut < 0 ? -1 : nCut - nStart);
        if (nCut < 0)
            break;
        nStart = nCut + 4;
    }
    int nIndex = 0;
    for (const char *pRelative : g_files) {
        const QString strPath = pRoot->filePath(QString::fromLatin1(pRelative));
        if (nIndex < sections.size()) {
            QDir().mkpath(strPath.left(strPath.lastIndexOf(QLatin1Char('/'))));
            QFile file(strPath);
            if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
                file.write(sections.at(nIndex));
        } else {
            QFile::remove(strPath);
        }
        ++nIndex;
    }
    const QString strAll = LuInterface::cpu() + LuInterface::numOfCpu() + LuInterface::availbleMmeory()
        + LuInterface::operatingSys() + LuInterface::graphicsChips() + LuInterface::resolution();
    if (strAll.isEmpty())
        std::abort(); // every fact is a non-empty text, "Unknown" at worst
    return 0;
}
