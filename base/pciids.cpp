#include "luinterface_p.h"

#include "pciidsdb.h"

#include <QFile>

// Names from the PCI id database (pci.ids). The file is read and indexed once
// per process by the parser the USB tree builder uses too (pciidsdb.h), and a
// vendor's device lines only when one of its devices is asked for.

namespace LuInterface {
namespace Detail {
namespace {

QString hexId(unsigned uId)
{
    return QStringLiteral("%1").arg(uId & 0xFFFFu, 4, 16, QLatin1Char('0'));
}

} // namespace

QString pciDeviceName(const QString &strIdsFile, unsigned uVendor, unsigned uDevice)
{
    QString strVendor;
    QString strDevice;
    if (!strIdsFile.isEmpty() && uVendor <= 0xFFFF && uDevice <= 0xFFFF) {
        if (const auto pDb = pciids::databaseOfFile(QFile::encodeName(strIdsFile).toStdString())) {
            std::string strName;
            if (pDb->vendorName(uint16_t(uVendor), strName)) {
                strVendor = QString::fromStdString(strName);
                if (pDb->deviceName(uint16_t(uVendor), uint16_t(uDevice), strName))
                    strDevice = QString::fromStdString(strName);
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
