#include "luinterface_p.h"

#include <QFile>
#include <QFileInfo>

#include <cctype>

// Reader of the PCI id database (pci.ids, as shipped by the pci.ids package).
// Layout: a vendor line is four hex digits at the start of the line, blanks
// and the name; the vendor's device lines follow, each a tab, four hex
// digits, blanks and the name; two tabs start a subsystem line; '#' starts a
// comment. The file is streamed and only the lines up to the wanted device
// are looked at; nothing is kept in memory between calls.

namespace LuInterface {
namespace Detail {
namespace {

// "8086  Intel Corporation" -> id 0x8086, name "Intel Corporation".
bool parseIdLine(const QByteArray &line, int nIndent, unsigned &uId, QString &strName)
{
    if (line.size() < nIndent + 6)
        return false;
    for (int i = 0; i < nIndent; ++i) {
        if (line.at(i) != '\t')
            return false;
    }
    for (int i = nIndent; i < nIndent + 4; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(line.at(i))))
            return false;
    }
    bool bOk = false;
    uId = line.mid(nIndent, 4).toUInt(&bOk, 16);
    if (!bOk || (line.at(nIndent + 4) != ' ' && line.at(nIndent + 4) != '\t'))
        return false;
    strName = QString::fromUtf8(line.mid(nIndent + 5)).trimmed();
    return !strName.isEmpty();
}

QString hexId(unsigned uId)
{
    return QStringLiteral("%1").arg(uId & 0xFFFFu, 4, 16, QLatin1Char('0'));
}

} // namespace

QString pciDeviceName(const QString &strIdsFile, unsigned uVendor, unsigned uDevice)
{
    QString strVendor;
    QString strDevice;
    QFile file(strIdsFile);
    if (QFileInfo(strIdsFile).isFile() && file.open(QIODevice::ReadOnly)) {
        bool bInVendor = false;
        while (!file.atEnd()) {
            QByteArray line = file.readLine(4096);
            while (line.endsWith('\n') || line.endsWith('\r'))
                line.chop(1);
            if (line.isEmpty() || line.startsWith('#'))
                continue;
            unsigned uId = 0;
            QString strName;
            if (line.at(0) != '\t') {
                if (bInVendor)
                    break; // the next vendor: the device is not listed
                if (parseIdLine(line, 0, uId, strName) && uId == uVendor) {
                    strVendor = strName;
                    bInVendor = true;
                }
                continue;
            }
            if (bInVendor && parseIdLine(line, 1, uId, strName) && uId == uDevice) {
                strDevice = strName;
                break;
            }
        }
    }
    if (strVendor.isEmpty())
        strVendor = QStringLiteral("Vendor ") + hexId(uVendor);
    if (strDevice.isEmpty())
        strDevice = QStringLiteral("Device ") + hexId(uDevice);
    return strVendor + QLatin1Char(' ') + strDevice;
}

} // namespace Detail
} // namespace LuInterface
