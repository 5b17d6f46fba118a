#pragma once

// Writes small synthetic sysfs trees of USB host controllers, hubs and
// devices for tests and the benchmark (below a chosen system root).

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

namespace UsbSysroot {

inline bool writeFile(const QString &strPath, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(strPath).path());
    QFile file(strPath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

// An 18-byte device descriptor.
inline QByteArray deviceDescriptor(quint16 bcdUSB, quint8 cls, quint8 protocol, quint16 vid, quint16 pid,
                                   quint8 iManufacturer = 1, quint8 iProduct = 2, quint8 iSerial = 0)
{
    QByteArray d(18, '\0');
    d[0] = 18; d[1] = 1;
    d[2] = char(bcdUSB & 0xFF); d[3] = char(bcdUSB >> 8);
    d[4] = char(cls); d[6] = char(protocol); d[7] = 64;
    d[8] = char(vid & 0xFF); d[9] = char(vid >> 8);
    d[10] = char(pid & 0xFF); d[11] = char(pid >> 8);
    d[14] = char(iManufacturer); d[15] = char(iProduct); d[16] = char(iSerial); d[17] = 1;
    return d;
}

// A configuration with one interface of the class and one interrupt IN endpoint.
inline QByteArray simpleConfiguration(quint8 interfaceClass, quint8 bmAttributes = 0xA0, quint8 maxPower = 50)
{
    QByteArray c;
    c += QByteArray::fromHex("09022200010100");
    c += char(bmAttributes);
    c += char(maxPower);
    c += QByteArray::fromHex("0904000001");
    c += char(interfaceClass);
    c += QByteArray::fromHex("000000");
    c += QByteArray::fromHex("0921110100012234");
    c += char(0);
    c += QByteArray::fromHex("0705810308000a");
    const int n = c.size();
    c[2] = char(n & 0xFF);
    c[3] = char(n >> 8);
    return c;
}

// A configuration with one interface of the class, subclass and protocol
// and one bulk IN endpoint.
inline QByteArray interfaceConfiguration(quint8 interfaceClass, quint8 subClass, quint8 protocol)
{
    QByteArray c = QByteArray::fromHex("09020000010100c032");
    c += QByteArray::fromHex("0904000001");
    c += char(interfaceClass);
    c += char(subClass);
    c += char(protocol);
    c += char(0);
    c += QByteArray::fromHex("0705810200040a");
    c[2] = char(c.size());
    return c;
}

// A PCI USB host controller at /sys/devices/pci0000:00/<address>, linked
// from /sys/bus/pci/devices; driver may be empty (nothing bound).
inline QString addController(const QString &strRoot, const QString &strAddress, quint16 vid, quint16 did,
                             const QString &strDriver, const QByteArray &classCode = "0x0c0330")
{
    const QString strDir = strRoot + "/sys/devices/pci0000:00/" + strAddress;
    QDir().mkpath(strDir);
    writeFile(strDir + "/class", classCode + "\n");
    writeFile(strDir + "/vendor", "0x" + QByteArray::number(vid, 16).rightJustified(4, '0') + "\n");
    writeFile(strDir + "/device", "0x" + QByteArray::number(did, 16).rightJustified(4, '0') + "\n");
    writeFile(strDir + "/subsystem_vendor", "0x1af4\n");
    writeFile(strDir + "/subsystem_device", "0x1100\n");
    writeFile(strDir + "/revision", "0x01\n");
    QDir().mkpath(strRoot + "/sys/bus/pci/devices");
    QFile::link("../../../devices/pci0000:00/" + strAddress, strRoot + "/sys/bus/pci/devices/" + strAddress);
    if (!strDriver.isEmpty())
        QFile::link("../../../bus/pci/drivers/" + strDriver, strDir + "/driver");
    return strDir;
}

// A USB device directory with the attributes the reader uses.
inline QString addUsbDevice(const QString &strParentDir, const QString &strName, const QByteArray &descriptors,
                            const QByteArray &speed, int nDevNum, int nMaxChild, const QByteArray &product)
{
    const QString strDir = strParentDir + "/" + strName;
    QDir().mkpath(strDir);
    writeFile(strDir + "/descriptors", descriptors);
    writeFile(strDir + "/speed", speed + "\n");
    writeFile(strDir + "/devnum", QByteArray::number(nDevNum) + "\n");
    writeFile(strDir + "/bConfigurationValue", "1\n");
    writeFile(strDir + "/maxchild", QByteArray::number(nMaxChild) + "\n");
    writeFile(strDir + "/manufacturer", "Vetrix Test\n");
    writeFile(strDir + "/product", product + "\n");
    return strDir;
}

// A root hub usbN under a controller directory with nPorts ports.
inline QString addRootHub(const QString &strControllerDir, int nBus, int nPorts, bool bSuperSpeed = false)
{
    QByteArray desc = deviceDescriptor(bSuperSpeed ? 0x0300 : 0x0200, 9, bSuperSpeed ? 3 : 1, 0x1d6b, bSuperSpeed ? 3 : 2);
    desc += QByteArray::fromHex("09021900010100e0000904000001090000000705810304000c");
    return addUsbDevice(strControllerDir, "usb" + QString::number(nBus), desc, bSuperSpeed ? "5000" : "480", 1, nPorts,
                        "Root Hub");
}

// The benchmarks' big PC: nControllers PCI xHCI controllers, each with a
// root hub of 8 ports holding hubs (16 ports, the last 7) full of USB 2
// devices, nDevicesPerBus devices per bus (127: a full bus); and the machine's
// pci.ids when it has one. Returns the number of devices.
// The machine's full PCI id database when it has one (as on a real
// system), else two lines of it.
inline void writeMachinePciIds(const QString &strRoot)
{
    QFile ids(QStringLiteral("/usr/share/misc/pci.ids"));
    QByteArray idsText = "8086  Intel Corporation\n\ta36d  Cannon Lake PCH USB 3.1 xHCI Host Controller\n";
    if (ids.open(QIODevice::ReadOnly))
        idsText = ids.readAll();
    writeFile(strRoot + "/usr/share/misc/pci.ids", idsText);
}

inline int addBenchTree(const QString &strRoot, int nControllers = 8, int nDevicesPerBus = 127)
{
    writeMachinePciIds(strRoot);
    QByteArray hub = deviceDescriptor(0x0200, 9, 2, 0x0409, 0x55aa);
    hub += QByteArray::fromHex("09021900010100e0000904000001090000000705810301000c");
    const QByteArray device = deviceDescriptor(0x0200, 0, 0, 0x046d, 0xc077) + simpleConfiguration(3);
    int nDevices = 0;
    for (int c = 0; c < nControllers; ++c) {
        const QString address = QStringLiteral("0000:%1:00.0").arg(c + 1, 2, 16, QLatin1Char('0'));
        const QString ctrl = addController(strRoot, address, 0x8086, 0xa36d, "xhci_hcd");
        const QString rootHub = addRootHub(ctrl, c + 1, 8);
        int nLeft = nDevicesPerBus;
        int nAddress = 2;
        for (int port = 1; port <= 8 && nLeft > 0; ++port) {
            const QString hubName = QStringLiteral("%1-%2").arg(c + 1).arg(port);
            const int nPorts = port < 8 ? 16 : 7;
            const QString hubDir = addUsbDevice(rootHub, hubName, hub, "480", nAddress++, nPorts, "Bench Hub");
            --nLeft;
            ++nDevices;
            for (int p = 1; p <= nPorts && nLeft > 0; ++p, --nLeft, ++nDevices)
                addUsbDevice(hubDir, QStringLiteral("%1.%2").arg(hubName).arg(p), device, "12", nAddress++, 0, "Bench Mouse");
        }
    }
    return nDevices;
}

} // namespace UsbSysroot
