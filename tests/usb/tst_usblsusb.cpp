// The decoder against the real tool: for every device of the captured tree,
// the descriptors the probe library hands over are decoded member by member
// and each printed field must equal what `lsusb -v` printed for the same
// device (tests/usb/fixtures/xhci-hub-hid-audio/lsusb-v/).
#include "cusbdescriptordecoder.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbprobe.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

using Lines = QVector<QPair<QString, QString>>;

namespace {

const QString kFixture = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");

struct CLsusbBlock
{
    QString strHeading;
    Lines fields;           // label, rest of the line
    QStringList listParent; // per field: the field a deeper-indented line belongs to, else empty
};

// The descriptor blocks of one device as lsusb -v printed them, up to the
// parts that do not come from the device and configuration descriptors.
QVector<CLsusbBlock> parseLsusb(const QString &strText)
{
    static const QRegularExpression reField(
        QStringLiteral("^(Transfer Type|Synch Type|Usage Type|\\w+\\[\\s*\\d+\\]|\\S+)\\s*(.*)$"));
    QVector<CLsusbBlock> blocks;
    int nFieldIndent = -1;
    QString strLastField;
    for (const QString &line : strText.split('\n')) {
        const QString t = line.trimmed();
        if (t.startsWith("Hub Descriptor:") || t.startsWith("Binary Object Store") || t.startsWith("Device Qualifier")
            || t.startsWith("Device Status:"))
            break;
        if (t.endsWith("Descriptor:")) {
            blocks.append({t, {}, {}});
            nFieldIndent = -1;
            continue;
        }
        if (blocks.isEmpty() || t.isEmpty())
            continue;
        const QRegularExpressionMatch m = reField.match(t);
        if (!m.hasMatch())
            continue;
        const int nIndent = line.indexOf(t.at(0));
        if (nFieldIndent < 0)
            nFieldIndent = nIndent;
        const bool bSub = nIndent > nFieldIndent;
        blocks.last().fields.append({m.captured(1), m.captured(2).trimmed()});
        blocks.last().listParent.append(bSub ? strLastField : QString());
        if (!bSub)
            strLastField = m.captured(1);
    }
    return blocks;
}

QString lsusbLabel(const QString &strOurs)
{
    static const QRegularExpression reIndexed(QStringLiteral("^(\\w+)\\[(\\d+)\\]$"));
    const QRegularExpressionMatch m = reIndexed.match(strOurs);
    if (m.hasMatch()) {
        const int n = m.captured(2).toInt() - 1;
        if (m.captured(1) == "bInCollection")
            return QStringLiteral("baInterfaceNr(%1)").arg(n);
        if (m.captured(1) == "tSamFreq")
            return QStringLiteral("tSamFreq[%1]").arg(n, 2);
        return QStringLiteral("%1(%2)").arg(m.captured(1)).arg(n);
    }
    if (strOurs == "iSerialNumber")
        return "iSerial";
    if (strOurs == "bSoruceID")
        return "bSourceID";
    return strOurs;
}

bool parseTheirs(const QString &strLabel, const QString &strValue, quint64 &uOut)
{
    QString token = strValue.section(' ', 0, 0);
    bool ok = false;
    if (token.endsWith("mA"))
        token.chop(2);
    if (strLabel.startsWith("bcd") && token.contains('.')) {
        const quint64 hi = token.section('.', 0, 0).toULongLong(&ok, 16);
        if (!ok)
            return false;
        uOut = (hi << 8) | token.section('.', 1, 1).toULongLong(&ok, 16);
        return ok;
    }
    uOut = token.startsWith("0x") ? token.mid(2).toULongLong(&ok, 16) : token.toULongLong(&ok, 10);
    return ok;
}

// Empty when every printed field matches the lsusb block.
QString compareBlock(const Lines &ours, const CLsusbBlock &theirs)
{
    int cursor = 0;
    int lastFound = -1;
    int nCompared = 0;
    for (const auto &line : ours) {
        if (line.first.isEmpty() && !line.second.isEmpty()) { // a string line for the field before
            if (lastFound < 0)
                return "string line without a field";
            const QString text = theirs.fields[lastFound].second.section(' ', 1);
            if (QString('"' + text + '"') != line.second)
                return QString("string %1 vs lsusb %2").arg(line.second, text);
            continue;
        }
        if (line.second.isEmpty())
            continue; // headings and attribute lines
        QString label = line.first;
        label.chop(1); // the colon
        const QString mapped = lsusbLabel(label);
        int j = cursor;
        while (j < theirs.fields.size() && theirs.fields[j].first != mapped)
            ++j;
        if (j == theirs.fields.size())
            return QString("%1 not in lsusb block %2").arg(mapped, theirs.strHeading);
        const QString &their = theirs.fields[j].second;
        if (label == "Transfer Type") {
            if (line.second != their.section(' ', 0, 0))
                return QString("Transfer Type %1 vs %2").arg(line.second, their);
        } else {
            const QString ourToken = line.second.section('(', 0, 0).section(' ', 0, 0);
            bool ok = false;
            quint64 uOurs = ourToken.mid(2).toULongLong(&ok, 16);
            if (!ourToken.startsWith("0x") || !ok)
                return QString("%1: our value %2 is not hex").arg(label, line.second);
            if (label == "MaxPower")
                uOurs *= 2;
            quint64 uTheirs = 0;
            if (!parseTheirs(label, their, uTheirs))
                return QString("%1: lsusb value %2 unreadable").arg(label, their);
            if (uOurs != uTheirs)
                return QString("%1: ours %2, lsusb %3").arg(label, line.second, their);
            if (label == "bEndpointAddress" && line.second.section(' ', -1) != their.section(' ', -1))
                return QString("direction %1 vs %2").arg(line.second, their);
        }
        ++nCompared;
        lastFound = j;
        cursor = j + 1;
    }
    return nCompared > 0 ? QString() : QString("nothing compared in %1").arg(theirs.strHeading);
}

// Fields lsusb shows that the program's members do not print, per heading,
// each with the reason. Anything else lsusb shows must be among our lines.
struct CException
{
    const char *pHeading; // lsusb's heading; nullptr: every heading
    const char *pLabel;
    int nCount;           // how many lines with that label the exception covers
};
const CException kExceptions[] = {
    // The standard descriptors' members (device, configuration, interface,
    // endpoint, HID) name the descriptor by their heading and print neither
    // bLength nor bDescriptorType; the audio members print both.
    {"Device Descriptor:", "bLength", 1},
    {"Device Descriptor:", "bDescriptorType", 1},
    {"Configuration Descriptor:", "bLength", 1},
    {"Configuration Descriptor:", "bDescriptorType", 1},
    {"Interface Descriptor:", "bLength", 1},
    {"Interface Descriptor:", "bDescriptorType", 1},
    {"Endpoint Descriptor:", "bLength", 1},
    {"Endpoint Descriptor:", "bDescriptorType", 1},
    {"HID Device Descriptor:", "bLength", 1},
    {"HID Device Descriptor:", "bDescriptorType", 1}, // the second one (class descriptor type) is ours
    // The endpoint member prints bmAttributes as its transfer type (bits
    // 0-1); the isochronous synchronisation and usage bits are not printed.
    {"Endpoint Descriptor:", "bmAttributes", 1},
    {"Endpoint Descriptor:", "Synch Type", 1},
    {"Endpoint Descriptor:", "Usage Type", 1},
    // The 9-byte USB Audio 1.0 endpoint: the member knows the 7- and 10-byte
    // forms, so bRefresh and bSynchAddress of the 9-byte form are not printed.
    {"Endpoint Descriptor:", "bRefresh", 1},
    {"Endpoint Descriptor:", "bSynchAddress", 1},
    // lsusb folds the descriptors that follow an endpoint into its block:
    // the SuperSpeed endpoint companion (bMaxBurst, MaxStreams) and the UAS
    // pipe usage descriptor. They are separate descriptors, which the walk
    // lists as unknown descriptors.
    {"Endpoint Descriptor:", "bMaxBurst", 1},
    {"Endpoint Descriptor:", "MaxStreams", 1},
    {"Endpoint Descriptor:", "Command", 1},
    {"Endpoint Descriptor:", "Status", 1},
    {"Endpoint Descriptor:", "Data-in", 1},
    {"Endpoint Descriptor:", "Data-out", 1},
    // The HID report descriptor is not part of the HID class descriptor;
    // lsusb fetches it from the device ("Report Descriptors: ** UNAVAILABLE **").
    {"HID Device Descriptor:", "Report", 1},
    {"HID Device Descriptor:", "**", 1},
};

int exceptionCount(const QString &strHeading, const QString &strLabel)
{
    for (const CException &e : kExceptions)
        if (strHeading == QLatin1String(e.pHeading) && strLabel == QLatin1String(e.pLabel))
            return e.nCount;
    return 0;
}

// Empty when every field lsusb shows for the descriptor is among our lines
// (by label, each of ours used once), apart from the listed exceptions.
QString compareBack(const Lines &ours, const CLsusbBlock &theirs)
{
    QMap<QString, int> mapOurs; // lsusb label -> how many of our lines carry it
    for (const auto &line : ours) {
        if (line.first.isEmpty())
            continue; // string lines and separators
        if (line.second.isEmpty()) { // attribute lines ("Self Powered") and headings
            const QString words = line.first;
            ++mapOurs[words.section(' ', 0, 0)];
            ++mapOurs['(' + words.section(' ', 0, 0)]; // lsusb writes "(Bus Powered)"
            continue;
        }
        QString label = line.first;
        label.chop(1);
        ++mapOurs[lsusbLabel(label)];
    }
    QMap<QString, int> mapExcepted;
    for (int i = 0; i < theirs.fields.size(); ++i) {
        const auto &field = theirs.fields[i];
        // lsusb names the set bits of a bitmap on lines below it (channel
        // names under wChannelConfig, controls under bmaControls); the
        // program prints the bitmap's value, which is compared above.
        if (theirs.listParent.value(i) == "wChannelConfig" || theirs.listParent.value(i).startsWith("bmaControls"))
            continue;
        if (mapExcepted[field.first] < exceptionCount(theirs.strHeading, field.first)) {
            ++mapExcepted[field.first];
            continue;
        }
        if (mapOurs.value(field.first) <= 0)
            return QString("lsusb's %1 (%2) in %3 is not among our lines").arg(field.first, field.second, theirs.strHeading);
        --mapOurs[field.first];
    }
    return QString();
}

struct CDeviceBytes
{
    QByteArray device;
    QByteArray config;
    const UsbStringDescriptorNode *pStrings = nullptr;
};

void collect(const UsbListNode *pList, int nBus, QMap<QPair<int, int>, CDeviceBytes> &map)
{
    for (; pList; pList = pList->pNext) {
        const UsbTreeItem *pItem = pList->pItem;
        if (!pItem || !pItem->pInfo)
            continue;
        const int nKind = *static_cast<const qint32 *>(pItem->pInfo);
        int nChildBus = nBus;
        if (nKind == UsbNodeRootHub)
            nChildBus = CUsbTreeDecoder::wideText(static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pHubName).mid(3).toInt();
        const UsbPortConnectionInfo *pConn = CUsbTreeDecoder::connectionInfo(pItem->pInfo);
        if (pConn && pConn->ConnectionStatus == UsbDeviceConnected) {
            const UsbDescriptorRequest *pReq = nKind == UsbNodeDevice
                                                   ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pConfigDesc
                                                   : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pConfigDesc;
            CDeviceBytes bytes;
            bytes.device = QByteArray(reinterpret_cast<const char *>(&pConn->DeviceDescriptor), 18);
            if (pReq)
                bytes.config = QByteArray(reinterpret_cast<const char *>(pReq->Data), pReq->SetupPacket.wLength);
            bytes.pStrings = nKind == UsbNodeDevice ? static_cast<const UsbDeviceNodeInfo *>(pItem->pInfo)->pStringDescs
                                                    : static_cast<const UsbHubNodeInfo *>(pItem->pInfo)->pStringDescs;
            map.insert({nBus, pConn->DeviceAddress}, bytes);
        }
        collect(pItem->pChildren, nChildBus, map);
    }
}

} // namespace

class TestUsbLsusb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void matchesLsusb_data();
    void matchesLsusb();
    void treeBytesEqualSysfs();

private:
    UsbRootItem *m_pRoot = nullptr;
    QMap<QPair<int, int>, CDeviceBytes> m_mapDevices;
};

void TestUsbLsusb::initTestCase()
{
    qputenv("VETRIX_SYSROOT", kFixture.toLocal8Bit());
    VxUsbProbe::setLibraryPath(QStringLiteral(VX_BIN_DIR "/probekit"));
    m_pRoot = VxUsbProbe::buildTree();
    QVERIFY(m_pRoot);
    collect(m_pRoot->pChildren, 0, m_mapDevices);
    QCOMPARE(m_mapDevices.size(), 9); // every device but the two root hubs
}

void TestUsbLsusb::cleanupTestCase()
{
    VxUsbProbe::destroyTree(m_pRoot);
    VxUsbProbe::unloadLibrary();
}

void TestUsbLsusb::matchesLsusb_data()
{
    QTest::addColumn<QString>("name");
    const QStringList files = QDir(kFixture + "/lsusb-v").entryList({"*.txt"}, QDir::Files, QDir::Name);
    QCOMPARE(files.size(), 11);
    for (const QString &f : files)
        QTest::newRow(qPrintable(f.chopped(4))) << f.chopped(4);
}

void TestUsbLsusb::matchesLsusb()
{
    QFETCH(QString, name);
    QFile file(kFixture + "/lsusb-v/" + name + ".txt");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpressionMatch header = QRegularExpression("Bus (\\d+) Device (\\d+):").match(text);
    QVERIFY(header.hasMatch());
    const QVector<CLsusbBlock> blocks = parseLsusb(text);
    QVERIFY(blocks.size() >= 4);

    CDeviceBytes bytes;
    if (name.startsWith("usb")) { // root hubs: the tree has no port for them; use sysfs
        QFile desc(kFixture + "/sys/bus/usb/devices/" + name + "/descriptors");
        QVERIFY(desc.open(QIODevice::ReadOnly));
        const QByteArray all = desc.readAll();
        bytes.device = all.left(18);
        bytes.config = all.mid(18);
    } else {
        const auto key = qMakePair(header.captured(1).toInt(), header.captured(2).toInt());
        QVERIFY2(m_mapDevices.contains(key), "device not in the tree");
        bytes = m_mapDevices.value(key);
    }

    // The device descriptor.
    int nBlock = 0;
    {
        CUsbPairSink sink;
        CUsbDescriptorDecoder(sink, bytes.pStrings)
            .printMember(EUsbMember::Device, reinterpret_cast<const quint8 *>(bytes.device.constData()), 18);
        QCOMPARE(blocks[nBlock].strHeading, QString("Device Descriptor:"));
        const QString err = compareBlock(sink.vecLines, blocks[nBlock]);
        QVERIFY2(err.isEmpty(), qPrintable(err));
        const QString errBack = compareBack(sink.vecLines, blocks[nBlock++]);
        QVERIFY2(errBack.isEmpty(), qPrintable(errBack));
    }
    // Every descriptor of the configuration, laid out one after the other.
    const auto *p = reinterpret_cast<const quint8 *>(bytes.config.constData());
    const int n = bytes.config.size();
    int nClass = -1, nSubClass = -1, nCompared = 1, nAudio = 0;
    for (int at = 0; at + 2 <= n && p[at] >= 2 && at + p[at] <= n; at += p[at]) {
        const int len = p[at];
        const int type = p[at + 1];
        CUsbPairSink sink;
        CUsbDescriptorDecoder decoder(sink, bytes.pStrings);
        bool bHasBlock = true;
        bool bCompare = true;
        switch (type) {
        case 2: decoder.printMember(EUsbMember::Configuration, p + at, len); break;
        case 4:
            nClass = p[at + 5];
            nSubClass = p[at + 6];
            decoder.printMember(EUsbMember::Interface, p + at, len);
            break;
        case 5: decoder.printMember(EUsbMember::Endpoint, p + at, len); break;
        case 0x21: decoder.printMember(EUsbMember::Hid, p + at, len); break;
        case 0x24:
        case 0x25:
            bHasBlock = nClass == 1;
            if (bHasBlock) {
                QVERIFY2(decoder.printAudio(nSubClass, p + at, len), "audio descriptor declined");
                ++nAudio;
                // lsusb reads this device's feature unit as a selector unit
                // (the capture's audio control interfaces report protocol 4).
                bCompare = !(nSubClass == 1 && type == 0x24 && p[at + 2] == 6);
            }
            break;
        default:
            bHasBlock = false; // lsusb folds these into the endpoint before them
            break;
        }
        if (!bHasBlock)
            continue;
        QVERIFY2(nBlock < blocks.size(), "more descriptors than lsusb printed");
        if (bCompare) {
            const QString err = compareBlock(sink.vecLines, blocks[nBlock]);
            QVERIFY2(err.isEmpty(), qPrintable(QString("descriptor at %1: %2").arg(at).arg(err)));
            const QString errBack = compareBack(sink.vecLines, blocks[nBlock]);
            QVERIFY2(errBack.isEmpty(), qPrintable(QString("descriptor at %1: %2").arg(at).arg(errBack)));
            ++nCompared;
        }
        ++nBlock;
    }
    QCOMPARE(nBlock, blocks.size());
    QVERIFY(nCompared >= 4);
    // Every audio class descriptor lsusb printed was decoded as audio.
    QCOMPARE(nAudio, int(text.count(QRegularExpression("Audio(Control|Streaming) (Interface|Endpoint) Descriptor:"))));
}

void TestUsbLsusb::treeBytesEqualSysfs()
{
    // Each device node carries the device descriptor and the active
    // configuration exactly as the kernel gave them.
    const QStringList names = QDir(kFixture + "/lsusb-v").entryList({"*-*.txt"}, QDir::Files);
    QVERIFY(names.size() >= 9);
    for (QString name : names) {
        name.chop(4);
        QFile desc(kFixture + "/sys/bus/usb/devices/" + name + "/descriptors");
        QVERIFY(desc.open(QIODevice::ReadOnly));
        const QByteArray all = desc.readAll();
        QFile devnum(kFixture + "/sys/bus/usb/devices/" + name + "/devnum");
        QVERIFY(devnum.open(QIODevice::ReadOnly));
        const auto key = qMakePair(name.section('-', 0, 0).toInt(), devnum.readAll().trimmed().toInt());
        QVERIFY(m_mapDevices.contains(key));
        QCOMPARE(m_mapDevices.value(key).device, all.left(18));
        QCOMPARE(m_mapDevices.value(key).config, all.mid(18));
    }
}

QTEST_GUILESS_MAIN(TestUsbLsusb)
#include "tst_usblsusb.moc"
