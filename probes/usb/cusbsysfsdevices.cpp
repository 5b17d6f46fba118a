#include "cusbsysfsdevices.h"

#include "luinterface.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr qint64 kMaxDescriptorBytes = 65536 + 18;

const QString kDevicesDir = QStringLiteral("/sys/bus/usb/devices");

// Only regular files: a FIFO planted in a system image would block the read.
QByteArray readFile(const QString &strPath, qint64 nMax)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.read(nMax);
}

QString readText(const QString &strPath)
{
    return QString::fromUtf8(readFile(strPath, 4096)).trimmed();
}

int readNumber(const QString &strPath, int nDefault)
{
    bool ok = false;
    const int n = readText(strPath).toInt(&ok);
    return ok ? n : nDefault;
}

// Sort key: bus, then each port number; a root hub sorts before its bus's devices.
QVector<int> sortKey(const QString &strName)
{
    QVector<int> key;
    if (strName.startsWith(QLatin1String("usb"))) {
        key << strName.mid(3).toInt() << -1;
        return key;
    }
    for (const QString &part : strName.split(QRegularExpression(QStringLiteral("[-.]"))))
        key << part.toInt();
    return key;
}

quint16 le16(const QByteArray &data, int nAt)
{
    return quint16(quint8(data.at(nAt)) | quint8(data.at(nAt + 1)) << 8);
}

// The strings sysfs keeps, by index.
void readStrings(const QString &strDir, const QString &strName, CUsbDumpDevice &device)
{
    const QByteArray &d = device.descriptors;
    const struct
    {
        int nAt;
        const char *pFile;
    } kDeviceStrings[] = {{14, "manufacturer"}, {15, "product"}, {16, "serial"}};
    for (const auto &s : kDeviceStrings) {
        const int nIndex = quint8(d.at(s.nAt));
        if (nIndex != 0 && QFileInfo(strDir + QLatin1Char('/') + QLatin1String(s.pFile)).isFile())
            device.mapStrings.insert(nIndex, readText(strDir + QLatin1Char('/') + QLatin1String(s.pFile)));
    }
    const int nActive = readNumber(strDir + QStringLiteral("/bConfigurationValue"), -1);
    // Interfaces are named after the device ("1-1:1.0"); a root hub's after its bus ("1-0:1.0").
    const QString strIfPrefix
        = strName.startsWith(QLatin1String("usb")) ? strName.mid(3) + QStringLiteral("-0") : strName;
    int at = 18;
    while (at + 9 <= d.size()) {
        const int nTotal = le16(d, at + 2);
        if (quint8(d.at(at + 1)) != 2 || quint8(d.at(at)) < 9 || nTotal < 9)
            return;
        const int nEnd = qMin(at + nTotal, d.size());
        if (quint8(d.at(at + 5)) == nActive) {
            const int nConfigString = quint8(d.at(at + 6));
            if (nConfigString != 0 && QFileInfo(strDir + QStringLiteral("/configuration")).isFile())
                device.mapStrings.insert(nConfigString, readText(strDir + QStringLiteral("/configuration")));
            int pos = at + quint8(d.at(at));
            while (pos + 2 <= nEnd) {
                const int nLen = quint8(d.at(pos));
                if (nLen < 2 || pos + nLen > nEnd)
                    break;
                if (quint8(d.at(pos + 1)) == 4 && nLen >= 9 && d.at(pos + 8) != 0) {
                    // The interface's string is known for its current alternate setting only.
                    const QString strIf = QStringLiteral("%1/%2:%3.%4")
                                              .arg(strDir, strIfPrefix)
                                              .arg(nActive)
                                              .arg(quint8(d.at(pos + 2)));
                    if (readNumber(strIf + QStringLiteral("/bAlternateSetting"), -1) == quint8(d.at(pos + 3))
                        && QFileInfo(strIf + QStringLiteral("/interface")).isFile())
                        device.mapStrings.insert(quint8(d.at(pos + 8)), readText(strIf + QStringLiteral("/interface")));
                }
                pos += nLen;
            }
        }
        at = nEnd;
    }
}

} // namespace

bool CUsbSysfsDevices::isDeviceName(const QString &strName)
{
    static const QRegularExpression re(QStringLiteral("^(usb[0-9]{1,3}|[0-9]{1,3}-[0-9]{1,3}(\\.[0-9]{1,3}){0,6})$"));
    return re.match(strName).hasMatch();
}

QStringList CUsbSysfsDevices::deviceNames()
{
    QStringList list;
    const QDir dir(LuInterface::sysPath(kDevicesDir));
    for (const QString &strName : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System))
        if (isDeviceName(strName))
            list << strName;
    std::sort(list.begin(), list.end(), [](const QString &a, const QString &b) { return sortKey(a) < sortKey(b); });
    return list;
}

bool CUsbSysfsDevices::read(const QString &strName, CUsbDumpDevice &device)
{
    if (!isDeviceName(strName))
        return false;
    const QString strDir = LuInterface::sysPath(kDevicesDir + QLatin1Char('/') + strName);
    device = CUsbDumpDevice();
    device.strPort = strName;
    device.descriptors = readFile(strDir + QStringLiteral("/descriptors"), kMaxDescriptorBytes);
    if (device.descriptors.isEmpty())
        return false;
    device.bos = readFile(strDir + QStringLiteral("/bos_descriptors"), 65536);
    device.nBus = readNumber(strDir + QStringLiteral("/busnum"), 0);
    device.nDevNum = readNumber(strDir + QStringLiteral("/devnum"), 0);
    bool ok = false;
    const double dSpeed = readText(strDir + QStringLiteral("/speed")).toDouble(&ok);
    device.nSpeedMbps = ok && dSpeed > 0 && dSpeed < 1e6 ? qMax(1, int(dSpeed)) : 0;
    if (device.descriptors.size() >= 18)
        readStrings(strDir, strName, device);
    return true;
}
