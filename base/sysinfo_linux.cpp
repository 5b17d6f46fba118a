#include "luinterface.h"
#include "luinterface_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QStringList>

#include <cctype>

// System facts read from procfs, sysfs and /etc, always below the system
// root (sysPath) so fixture trees can stand in for the machine. Every fact
// is a ready-to-show text; anything unreadable becomes "Unknown".

namespace LuInterface {
namespace {

QList<QByteArray> fileLines(const QString &strAbsolutePath)
{
    return Detail::readSmallFile(sysPath(strAbsolutePath)).split('\n');
}

// The value of the first "key<blanks>: value" line whose key is one of
// listKeys (in cpuinfo/meminfo style), or empty.
QString firstColonValue(const QList<QByteArray> &lines, const QList<QByteArray> &listKeys)
{
    for (const QByteArray &key : listKeys) {
        for (const QByteArray &line : lines) {
            const int nColon = line.indexOf(':');
            if (nColon > 0 && line.left(nColon).trimmed() == key)
                return QString::fromUtf8(line.mid(nColon + 1)).simplified();
        }
    }
    return QString();
}

// Text of a one-line sysfs attribute, trimmed.
QByteArray sysfsValue(const QString &strFile)
{
    return Detail::readSmallFile(strFile, 4096).trimmed();
}

// "0x8086" -> 0x8086; false for anything else.
bool parseHex(const QByteArray &text, unsigned &uValue)
{
    if (!text.startsWith("0x") || text.size() < 3)
        return false;
    bool bOk = false;
    uValue = text.mid(2).toUInt(&bOk, 16);
    return bOk;
}

// An os-release value: quotes removed, backslash escapes resolved.
QString osReleaseValue(const QByteArray &raw)
{
    QByteArray value = raw.trimmed();
    if (value.size() >= 2 && (value.startsWith('"') || value.startsWith('\'')) && value.endsWith(value.at(0)))
        value = value.mid(1, value.size() - 2);
    QByteArray out;
    for (int i = 0; i < value.size(); ++i) {
        if (value.at(i) == '\\' && i + 1 < value.size())
            ++i;
        out.append(value.at(i));
    }
    return QString::fromUtf8(out).simplified();
}

} // namespace

QString cpu()
{
    // x86 names the model in "model name"; other architectures use other
    // keys for the processor, and boards without any name the board model.
    const QString strName = firstColonValue(fileLines(QStringLiteral("/proc/cpuinfo")),
        {QByteArrayLiteral("model name"), QByteArrayLiteral("Processor"), QByteArrayLiteral("cpu model"),
         QByteArrayLiteral("cpu"), QByteArrayLiteral("Model"), QByteArrayLiteral("Hardware")});
    return strName.isEmpty() ? Detail::unknownText() : strName;
}

QString numOfCpu()
{
    int nCount = 0;
    for (const QByteArray &line : fileLines(QStringLiteral("/proc/cpuinfo"))) {
        const int nColon = line.indexOf(':');
        if (nColon > 0 && line.left(nColon).trimmed() == "processor")
            ++nCount;
    }
    if (nCount > 0)
        return QString::number(nCount);
    // No per-processor blocks (some architectures): count the online list,
    // e.g. "0-3,6".
    const QByteArray online = sysfsValue(sysPath(QStringLiteral("/sys/devices/system/cpu/online")));
    for (const QByteArray &range : online.split(',')) {
        const QList<QByteArray> bounds = range.split('-');
        bool bFirst = false;
        bool bLast = false;
        const int nFirst = bounds.value(0).toInt(&bFirst);
        const int nLast = bounds.size() == 2 ? bounds.at(1).toInt(&bLast) : nFirst;
        if (bounds.size() > 2 || !bFirst || (bounds.size() == 2 && !bLast) || nLast < nFirst || nLast - nFirst > 65535)
            return Detail::unknownText();
        nCount += nLast - nFirst + 1;
    }
    return nCount > 0 ? QString::number(nCount) : Detail::unknownText();
}

// MemTotal, formatted as Detail::memoryText() describes.
QString availbleMmeory()
{
    const QString strValue = firstColonValue(fileLines(QStringLiteral("/proc/meminfo")), {QByteArrayLiteral("MemTotal")});
    const QStringList parts = strValue.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    bool bOk = false;
    const qulonglong uKb = parts.value(0).toULongLong(&bOk);
    if (!bOk || uKb == 0 || uKb > (Q_UINT64_C(1) << 50)
        || (parts.size() > 1 && parts.at(1).compare(QLatin1String("kB"), Qt::CaseInsensitive) != 0))
        return Detail::unknownText();
    return Detail::memoryText(quint64(uKb) * 1024u);
}

// "<PRETTY_NAME>, Linux <kernel release>", e.g.
// "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-18-amd64".
QString operatingSys()
{
    QByteArray osRelease = Detail::readSmallFile(sysPath(QStringLiteral("/etc/os-release")), 65536);
    if (osRelease.isEmpty())
        osRelease = Detail::readSmallFile(sysPath(QStringLiteral("/usr/lib/os-release")), 65536);
    QString strPretty;
    QString strName;
    QString strVersion;
    for (const QByteArray &line : osRelease.split('\n')) {
        const int nEq = line.indexOf('=');
        if (nEq <= 0)
            continue;
        const QByteArray key = line.left(nEq).trimmed();
        if (key == "PRETTY_NAME")
            strPretty = osReleaseValue(line.mid(nEq + 1));
        else if (key == "NAME")
            strName = osReleaseValue(line.mid(nEq + 1));
        else if (key == "VERSION")
            strVersion = osReleaseValue(line.mid(nEq + 1));
    }
    if (strPretty.isEmpty())
        strPretty = (strName + QLatin1Char(' ') + strVersion).trimmed();
    if (strPretty.isEmpty())
        strPretty = QStringLiteral("Linux");
    const QString strKernel = QString::fromUtf8(sysfsValue(sysPath(QStringLiteral("/proc/sys/kernel/osrelease")))).simplified();
    if (strKernel.isEmpty())
        return strPretty;
    return strPretty + QStringLiteral(", Linux ") + strKernel;
}

// Display controllers (PCI base class 0x03) named from the PCI id database,
// in bus order, joined with "; ".
QString graphicsChips()
{
    QString strIds;
    for (const char *pCandidate : {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids", "/usr/share/pci.ids"}) {
        strIds = sysPath(QString::fromLatin1(pCandidate));
        if (QFileInfo(strIds).isFile())
            break;
    }
    const QDir devices(sysPath(QStringLiteral("/sys/bus/pci/devices")));
    if (!devices.exists()) // a system image: its sysfs is empty, the chips are not known
        return Detail::unknownText();
    QStringList listNames;
    const QStringList listEntries = devices.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
    for (const QString &strEntry : listEntries) {
        const QString strDir = devices.filePath(strEntry);
        unsigned uClass = 0;
        if (!parseHex(sysfsValue(strDir + QStringLiteral("/class")), uClass) || (uClass >> 16) != 0x03)
            continue;
        unsigned uVendor = 0;
        unsigned uDevice = 0;
        if (!parseHex(sysfsValue(strDir + QStringLiteral("/vendor")), uVendor)
            || !parseHex(sysfsValue(strDir + QStringLiteral("/device")), uDevice)
            || uVendor > 0xFFFF || uDevice > 0xFFFF) {
            listNames << QStringLiteral("PCI ") + strEntry;
            continue;
        }
        listNames << Detail::pciDeviceName(strIds, uVendor, uDevice);
    }
    if (listNames.isEmpty())
        return QCoreApplication::translate("LuInterface", "None");
    return listNames.join(QStringLiteral("; "));
}

namespace Detail {

// The first mode of the first connected DRM connector, e.g. "1920 x 1080".
QString platformResolution()
{
    const QDir drm(sysPath(QStringLiteral("/sys/class/drm")));
    const QStringList listEntries = drm.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
    for (const QString &strEntry : listEntries) {
        const QString strDir = drm.filePath(strEntry);
        if (sysfsValue(strDir + QStringLiteral("/status")) != "connected")
            continue;
        const QByteArray firstMode = readSmallFile(strDir + QStringLiteral("/modes"), 65536).split('\n').value(0).trimmed();
        const QList<QByteArray> size = firstMode.split('x');
        if (size.size() != 2)
            continue;
        bool bWidth = false;
        bool bHeight = false;
        const int nWidth = size.at(0).toInt(&bWidth);
        // Interlaced modes carry a suffix: "1920x1080i".
        QByteArray height = size.at(1);
        while (!height.isEmpty() && !std::isdigit(static_cast<unsigned char>(height.back())))
            height.chop(1);
        const int nHeight = height.toInt(&bHeight);
        if (bWidth && bHeight && nWidth > 0 && nHeight > 0)
            return QStringLiteral("%1 x %2").arg(nWidth).arg(nHeight);
    }
    return QString();
}

} // namespace Detail
} // namespace LuInterface
