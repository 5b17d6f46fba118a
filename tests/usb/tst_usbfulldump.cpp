// The full descriptor dump against the real tool: for every device of every
// captured tree below tests/usb/fixtures (a sys/ folder and lsusb-v/<device>.txt),
// the dump read from the tree's sysfs must print, line for line and in the
// same order, every field `lsusb -v` printed for that device, except what
// sysfs does not hold (see kExcluded below). Then bad input: every kind of
// broken descriptor data ends in a defined line, never a crash or a hang.
#include "cusbfulldump.h"
#include "cusbidsdb.h"
#include "cusbsysfsdevices.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kFixtures = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures");

// What lsusb shows that the dump cannot, and why. Blocks are left out with
// everything below them; the other kinds are single fields.
//  - "Hub Descriptor:", "Hub Port Status:": class requests to the live hub
//    (needs the device node and root); sysfs keeps no copy.
//  - "Device Qualifier (for other device speed):", "Device Status:": requests
//    to the live device; sysfs keeps no copy.
//  - "Binary Object Store Descriptor:": a request to the live device; sysfs
//    has it as bos_descriptors only from Linux 6.9 on (the capture runs 6.1).
//    Compared where the file exists (bosFromSysfs below).
//  - "Report Descriptors:": the HID report descriptor is fetched from the
//    live device (lsusb shows it only with the driver unbound); the dump
//    prints its length (wDescriptorLength), which is compared.
//  - the text after a string index (iInterface 10 "...") when sysfs does not
//    hold that string: sysfs keeps manufacturer, product, serial, the active
//    configuration's string and those of the current alternate settings.
//  - a class, subclass or protocol name the dump prints where lsusb prints
//    none: lsusb takes class names from udev's hardware database, built from
//    an older usb.ids than the one the dump reads.
//  - an Audio 1.0 feature unit (subtype 6) of an interface with protocol 4
//    (QEMU): lsusb decodes it as a selector unit and warns of junk; only its
//    bLength, bDescriptorType and subtype number are compared.
const char *const kExcludedBlocks[] = {"Hub Descriptor:", "Hub Port Status:",
    "Device Qualifier (for other device speed):", "Device Status:", "Report Descriptors:"};

struct CEntry
{
    QString strPath; // headings above the line, joined by " / "
    QString strText; // the line with its blanks collapsed
};

bool isHeading(const QString &strText)
{
    return strText.endsWith(QLatin1Char(':')) || strText.startsWith(QLatin1String("Device Status:"));
}

// The lines from the "Bus ..." line on, each with the headings it sits under.
QVector<CEntry> parse(const QStringList &listLines)
{
    QVector<CEntry> entries;
    QVector<QPair<int, QString>> stack;
    bool bStarted = false;
    for (const QString &line : listLines) {
        const QString text = line.simplified();
        if (text.isEmpty())
            continue;
        if (text.startsWith(QLatin1String("Bus ")))
            bStarted = true;
        if (!bStarted)
            continue;
        int nIndent = 0;
        while (nIndent < line.size() && line.at(nIndent) == QLatin1Char(' '))
            ++nIndent;
        while (!stack.isEmpty() && stack.last().first >= nIndent)
            stack.removeLast();
        QStringList listPath;
        for (const auto &h : stack)
            listPath << h.second;
        entries.append({listPath.join(QStringLiteral(" / ")), text});
        if (isHeading(text))
            stack.append({nIndent, text});
    }
    return entries;
}

// Drops the blocks and lines the comparison leaves out (kExcludedBlocks,
// the BOS when the dump has none, the body of an Audio 1.0 feature unit and
// the junk warning lsusb prints after it).
QVector<CEntry> filtered(const QVector<CEntry> &entries, bool bKeepBos, QMap<QString, int> &mapExcluded)
{
    QVector<CEntry> out;
    QString strSkipUnder; // a dropped block: its full path
    QString strFeatureUnit; // full path of the feature unit block being reduced
    bool bAfterFeatureUnit = false;
    for (int i = 0; i < entries.size(); ++i) {
        const CEntry &e = entries[i];
        const QString strFull = e.strPath.isEmpty() ? e.strText : e.strPath + QStringLiteral(" / ") + e.strText;
        if (!strSkipUnder.isEmpty() && (e.strPath == strSkipUnder || e.strPath.startsWith(strSkipUnder + " / ")))
            continue;
        strSkipUnder.clear();
        const bool bHeading = isHeading(e.strText);
        bool bDrop = false;
        for (const char *pBlock : kExcludedBlocks)
            bDrop = bDrop || e.strText.startsWith(QLatin1String(pBlock));
        bDrop = bDrop || (!bKeepBos && e.strText == QLatin1String("Binary Object Store Descriptor:"));
        bDrop
            = bDrop || (bAfterFeatureUnit && e.strText.startsWith(QLatin1String("Warning: Junk at end of descriptor")));
        if (bDrop) {
            ++mapExcluded[QStringLiteral("block ") + e.strText.section(QLatin1Char(':'), 0, 0)];
            strSkipUnder = strFull;
            continue;
        }
        if (bHeading) {
            bAfterFeatureUnit = false;
            strFeatureUnit.clear();
            if (e.strText == QLatin1String("AudioControl Interface Descriptor:")) {
                for (int j = i + 1; j < entries.size() && entries[j].strPath == strFull; ++j)
                    if (entries[j].strText.startsWith(QLatin1String("bDescriptorSubtype 6 ")))
                        strFeatureUnit = strFull;
                bAfterFeatureUnit = !strFeatureUnit.isEmpty();
            }
            out.append(e);
            continue;
        }
        if (!strFeatureUnit.isEmpty() && e.strPath == strFeatureUnit) {
            if (e.strText.startsWith(QLatin1String("bDescriptorSubtype ")))
                out.append({e.strPath, QStringLiteral("bDescriptorSubtype 6")});
            else if (e.strText.startsWith(QLatin1String("bLength "))
                || e.strText.startsWith(QLatin1String("bDescriptorType ")))
                out.append(e);
            else
                ++mapExcluded[QStringLiteral("feature unit field")];
            continue;
        }
        out.append(e);
    }
    return out;
}

// Empty when the two lines agree, allowing for the excluded kinds of text.
QString compareLine(const QString &strOurs, const QString &strTheirs, QMap<QString, int> &mapExcluded)
{
    if (strOurs == strTheirs)
        return QString();
    static const QRegularExpression reString(QStringLiteral("^(i[A-Z]\\w*) (\\d+)$"));
    const QRegularExpressionMatch m = reString.match(strOurs);
    if (m.hasMatch() && strTheirs.startsWith(strOurs + QLatin1Char(' '))) {
        ++mapExcluded[QStringLiteral("string not in sysfs")];
        return QString();
    }
    static const QRegularExpression reClass(
        QStringLiteral("^b(Device|Interface|Function)(Class|SubClass|Protocol) \\d+$"));
    if (reClass.match(strTheirs).hasMatch() && strOurs.startsWith(strTheirs + QLatin1Char(' '))) {
        ++mapExcluded[QStringLiteral("class name only in the newer usb.ids")];
        return QString();
    }
    return QStringLiteral("lsusb \"%1\", dump \"%2\"").arg(strTheirs, strOurs);
}

// Empty when the dump matches; else names device, descriptor and field.
QString compareDevice(const QString &strDevice, const QStringList &listOurs, const QStringList &listTheirs,
    QMap<QString, int> &mapExcluded, int &nCompared)
{
    const QVector<CEntry> ours = parse(listOurs);
    bool bOursBos = false;
    for (const CEntry &e : ours)
        bOursBos = bOursBos || e.strText == QLatin1String("Binary Object Store Descriptor:");
    const QVector<CEntry> theirs = filtered(parse(listTheirs), bOursBos, mapExcluded);
    const QVector<CEntry> oursKept = filtered(ours, true, mapExcluded);
    for (int i = 0; i < qMax(oursKept.size(), theirs.size()); ++i) {
        if (i >= oursKept.size())
            return QStringLiteral("%1: %2: field \"%3\" of lsusb missing from the dump")
                .arg(strDevice, theirs[i].strPath, theirs[i].strText);
        if (i >= theirs.size())
            return QStringLiteral("%1: %2: field \"%3\" of the dump not in lsusb")
                .arg(strDevice, oursKept[i].strPath, oursKept[i].strText);
        if (oursKept[i].strPath != theirs[i].strPath)
            return QStringLiteral("%1: descriptor \"%2\" in lsusb, \"%3\" in the dump (field \"%4\")")
                .arg(strDevice, theirs[i].strPath, oursKept[i].strPath, theirs[i].strText);
        const QString strWhy = compareLine(oursKept[i].strText, theirs[i].strText, mapExcluded);
        if (!strWhy.isEmpty())
            return QStringLiteral("%1: %2: field %3: %4")
                .arg(strDevice, theirs[i].strPath, theirs[i].strText.section(QLatin1Char(' '), 0, 0), strWhy);
        ++nCompared;
    }
    return QString();
}

QStringList readLines(const QString &strPath)
{
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

CUsbIdsDb testNames()
{
    QFile file(kFixtures + QStringLiteral("/usbfulldump-usb.ids"));
    return file.open(QIODevice::ReadOnly) ? CUsbIdsDb::fromText(file.readAll()) : CUsbIdsDb();
}

QStringList trees()
{
    QStringList list;
    for (const QString &strName : QDir(kFixtures).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (QDir(kFixtures + QLatin1Char('/') + strName + QStringLiteral("/lsusb-v")).exists())
            list << strName;
    return list;
}

} // namespace

class TestUsbFullDump : public QObject
{
    Q_OBJECT

private slots:
    void everyDeviceHasItsLsusbOutput_data();
    void everyDeviceHasItsLsusbOutput();
    void matchesLsusb_data();
    void matchesLsusb();
    void bosFromSysfs();
    void badInput_data();
    void badInput();
    void classSpecific_data();
    void classSpecific();
    void namesFromUsbIds();
    void cleanup() { qunsetenv("VETRIX_SYSROOT"); }
};

void TestUsbFullDump::everyDeviceHasItsLsusbOutput_data()
{
    QTest::addColumn<QString>("tree");
    for (const QString &strTree : trees())
        QTest::newRow(qPrintable(strTree)) << strTree;
    QVERIFY(!trees().isEmpty());
}

// The dump must list exactly the devices lsusb listed.
void TestUsbFullDump::everyDeviceHasItsLsusbOutput()
{
    QFETCH(QString, tree);
    qputenv("VETRIX_SYSROOT", QFile::encodeName(kFixtures + QLatin1Char('/') + tree));
    QStringList listOracle = QDir(kFixtures + QLatin1Char('/') + tree + QStringLiteral("/lsusb-v"))
                                 .entryList({QStringLiteral("*.txt")}, QDir::Files);
    for (QString &s : listOracle)
        s.chop(4);
    std::sort(listOracle.begin(), listOracle.end());
    QStringList listDevices = CUsbSysfsDevices::deviceNames();
    std::sort(listDevices.begin(), listDevices.end());
    QCOMPARE(listDevices, listOracle);
}

void TestUsbFullDump::matchesLsusb_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("device");
    for (const QString &strTree : trees())
        for (QString strFile : QDir(kFixtures + QLatin1Char('/') + strTree + QStringLiteral("/lsusb-v"))
                                   .entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
            strFile.chop(4);
            QTest::newRow(qPrintable(strTree + QLatin1Char('/') + strFile)) << strTree << strFile;
        }
}

void TestUsbFullDump::matchesLsusb()
{
    QFETCH(QString, tree);
    QFETCH(QString, device);
    const QString strTree = kFixtures + QLatin1Char('/') + tree;
    qputenv("VETRIX_SYSROOT", QFile::encodeName(strTree));
    CUsbDumpDevice dev;
    QVERIFY2(CUsbSysfsDevices::read(device, dev), qPrintable(device));
    const QStringList listOurs = CUsbFullDump::dump(dev, testNames());
    const QStringList listTheirs = readLines(strTree + QStringLiteral("/lsusb-v/") + device + QStringLiteral(".txt"));
    QMap<QString, int> mapExcluded;
    int nCompared = 0;
    const QString strMismatch = compareDevice(device, listOurs, listTheirs, mapExcluded, nCompared);
    QVERIFY2(strMismatch.isEmpty(), qPrintable(strMismatch));
    // Every device has a device and a configuration descriptor with an
    // interface and an endpoint: far more than 40 fields.
    QVERIFY2(nCompared >= 40, qPrintable(QString::number(nCompared)));
    for (auto it = mapExcluded.cbegin(); it != mapExcluded.cend(); ++it)
        qInfo("%s: excluded %s x%d", qPrintable(device), qPrintable(it.key()), it.value());
}

// The 6.1 kernel of the capture has no bos_descriptors; newer kernels do.
// Here the file is added to a copy of the tree with the bytes of the BOS
// that lsusb printed for the two SuperSpeed devices, re-encoded field by
// field, and the dump's BOS must then match lsusb's as well.
void TestUsbFullDump::bosFromSysfs()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString strSource = kFixtures + QStringLiteral("/xhci-hub-hid-audio");
    QCOMPARE(
        QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-a"), strSource + QStringLiteral("/."), dir.path()}),
        0);
    const QList<QPair<QString, QByteArray>> listBos = {{QStringLiteral("usb2"),
                                                           QByteArray::fromHex("050f0f0001"
                                                                               "0a1003000800010000 00")},
        {QStringLiteral("2-4"),
            QByteArray::fromHex("050f160002"
                                "07100202000000"
                                "0a1003000c00020a2000")}};
    for (const auto &bos : listBos) {
        const QString strDevice
            = QFileInfo(dir.path() + QStringLiteral("/sys/bus/usb/devices/") + bos.first).canonicalFilePath();
        QVERIFY2(strDevice.startsWith(QFileInfo(dir.path()).canonicalFilePath()), qPrintable(strDevice));
        QFile file(strDevice + QStringLiteral("/bos_descriptors"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bos.second), qint64(bos.second.size()));
    }
    qputenv("VETRIX_SYSROOT", QFile::encodeName(dir.path()));
    for (const auto &bos : listBos) {
        CUsbDumpDevice dev;
        QVERIFY(CUsbSysfsDevices::read(bos.first, dev));
        QCOMPARE(dev.bos, bos.second);
        const QStringList listOurs = CUsbFullDump::dump(dev, testNames());
        QVERIFY(listOurs.contains(QStringLiteral("Binary Object Store Descriptor:")));
        QMap<QString, int> mapExcluded;
        int nCompared = 0;
        const QString strMismatch = compareDevice(bos.first, listOurs,
            readLines(dir.path() + QStringLiteral("/lsusb-v/") + bos.first + QStringLiteral(".txt")), mapExcluded,
            nCompared);
        QVERIFY2(strMismatch.isEmpty(), qPrintable(strMismatch));
        QVERIFY(!mapExcluded.contains(QStringLiteral("block Binary Object Store Descriptor")));
    }
}

namespace {
QByteArray deviceBytes()
{
    return QByteArray::fromHex("120100020000004009460300000102030001");
}

// A configuration descriptor with wTotalLength set for the bytes after it.
QByteArray configuration(const QByteArray &body, int nTotalExtra = 0)
{
    QByteArray c = QByteArray::fromHex("0902000001010080fa") + body;
    const int n = c.size() + nTotalExtra;
    c[2] = char(n & 0xFF);
    c[3] = char(n >> 8);
    return c;
}
} // namespace

void TestUsbFullDump::badInput_data()
{
    QTest::addColumn<QByteArray>("descriptors");
    QTest::addColumn<QByteArray>("bos");
    QTest::addColumn<QString>("expected");
    const QByteArray dev = deviceBytes();
    const QByteArray hidIf = QByteArray::fromHex("090400000103010100");
    const QByteArray acIf = QByteArray::fromHex("090400000001010000");
    QTest::newRow("device descriptor cut short")
        << QByteArray::fromHex("12010002") << QByteArray() << "** TRUNCATED: bLength 4, at least 18 expected";
    QTest::newRow("configuration bLength 0") << dev + QByteArray::fromHex("00020900") << QByteArray()
                                             << "** INVALID: no configuration descriptor at offset 18 (4 bytes left)";
    QTest::newRow("descriptor bLength 0") << dev + configuration(QByteArray::fromHex("000400")) << QByteArray()
                                          << "** INVALID: bLength 0 at offset 9, the 3 bytes after it are not decoded";
    QTest::newRow("descriptor bLength 1") << dev + configuration(QByteArray::fromHex("0104")) << QByteArray()
                                          << "** INVALID: bLength 1 at offset 9, the 2 bytes after it are not decoded";
    QTest::newRow("bLength past the end") << dev + configuration(QByteArray::fromHex("09040000")) << QByteArray()
                                          << "** TRUNCATED: bLength 9 at offset 9 runs past the end (4 bytes left)";
    QTest::newRow("wTotalLength past the data")
        << dev + configuration(QByteArray(), 91) << QByteArray() << "** TRUNCATED: wTotalLength 100, 9 bytes present";
    QTest::newRow("one stray byte") << dev + configuration(QByteArray::fromHex("07")) << QByteArray()
                                    << "** JUNK: 1 byte at the end of the configuration";
    QTest::newRow("unknown type") << dev + configuration(QByteArray::fromHex("04770102")) << QByteArray()
                                  << "** UNRECOGNIZED: 04 77 01 02";
    QTest::newRow("endpoint too short") << dev + configuration(hidIf + QByteArray::fromHex("04058103")) << QByteArray()
                                        << "** TRUNCATED: bLength 4, at least 7 expected";
    QTest::newRow("HID count past the end") << dev + configuration(hidIf + QByteArray::fromHex("09211101 00ff223f00"))
                                            << QByteArray() << "wDescriptorLength 63";
    QTest::newRow("feature unit control size 0")
        << dev + configuration(acIf + QByteArray::fromHex("0a240601020000000000")) << QByteArray()
        << "Warning: Junk at end of descriptor (3 bytes):";
    QTest::newRow("all bytes 0xff") << QByteArray(300, char(0xFF)) << QByteArray()
                                    << "** INVALID: no configuration descriptor at offset 18 (282 bytes left)";
    QTest::newRow("BOS capability bLength 0")
        << dev << QByteArray::fromHex("050f0700010010") << "** INVALID: bLength 0 at offset 5 of the BOS";
    QTest::newRow("BOS without BOS descriptor")
        << dev << QByteArray::fromHex("0201") << "** INVALID: the BOS data does not start with a BOS descriptor";
    QTest::newRow("BOS unknown capability")
        << dev << QByteArray::fromHex("050f0900010410ee01") << "** UNRECOGNIZED: 04 10 ee 01";
}

// Broken data ends the walk with a line that says why, after decoding what
// came before it.
void TestUsbFullDump::badInput()
{
    QFETCH(QByteArray, descriptors);
    QFETCH(QByteArray, bos);
    QFETCH(QString, expected);
    CUsbDumpDevice dev;
    dev.descriptors = descriptors;
    dev.bos = bos;
    const QStringList listLines = CUsbFullDump::dump(dev, CUsbIdsDb());
    bool bFound = false;
    for (const QString &line : listLines)
        bFound = bFound || line.simplified() == expected;
    QVERIFY2(bFound, qPrintable(listLines.join(QLatin1Char('\n'))));
    QVERIFY(listLines.contains(QStringLiteral("Device Descriptor:")));
}

// Descriptors the captured trees lack or lsusb reads otherwise, against
// their layouts in USB Audio 1.0, USB3 Vision, the Interface Association
// ECN and USB 3.2.
void TestUsbFullDump::classSpecific_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("expected");
    // The feature unit of the captured 1-1.3 (QEMU, interface protocol 4).
    QTest::newRow("Audio 1.0 feature unit")
        << QByteArray::fromHex("090400000001010400"
                               "0d2406020102010002000200 07")
        << QStringList {"AudioControl Interface Descriptor:", "bLength 13", "bDescriptorType 36",
               "bDescriptorSubtype 6 (FEATURE_UNIT)", "bUnitID 2", "bSourceID 1", "bControlSize 2",
               "bmaControls(0) 0x0001", "Mute Control", "bmaControls(1) 0x0002", "Volume Control",
               "bmaControls(2) 0x0002", "Volume Control", "iFeature 7", "** END **"};
    QTest::newRow("Audio 2.0 is not read as 1.0") << QByteArray::fromHex(
        "090400000001012000"
        "092401000208000000") << QStringList {"** UNRECOGNIZED: 09 24 01 00 02 08 00 00 00", "** END **"};
    QTest::newRow("USB3 Vision device info")
        << QByteArray::fromHex("0904000000ef050000"
                               "142401"
                               "00000100"
                               "00000100"
                               "0102030405060708"
                               "0f")
        << QStringList {"USB3 Vision Device Info Descriptor:", "bLength 20", "bDescriptorType 36",
               "bDescriptorSubtype 1", "bGenCPVersion 0x00010000 (1.0)", "bU3VVersion 0x00010000 (1.0)",
               "iDeviceGUID 1", "iVendorName 2", "iModelName 3", "iFamilyName 4", "iDeviceVersion 5",
               "iManufacturerInfo 6", "iSerialNumber 7", "iUserDefinedName 8", "bmSpeedSupport 0x0f", "Low Speed",
               "Full Speed", "High Speed", "SuperSpeed", "** END **"};
    QTest::newRow("interface association")
        << QByteArray::fromHex("080b00020e030004")
        << QStringList {"Interface Association:", "bLength 8", "bDescriptorType 11", "bFirstInterface 0",
               "bInterfaceCount 2", "bFunctionClass 14", "bFunctionSubClass 3", "bFunctionProtocol 0", "iFunction 4",
               "** END **"};
    QTest::newRow("HID after its endpoint")
        << QByteArray::fromHex("090400000103010100"
                               "0705810308000a"
                               "092111010001223f00")
        << QStringList {"HID Device Descriptor:", "bLength 9", "bDescriptorType 33", "bcdHID 1.11", "bCountryCode 0",
               "bNumDescriptors 1", "bDescriptorType 34", "wDescriptorLength 63", "** END **"};
    QTest::newRow("isochronous SuperSpeed companion") << QByteArray::fromHex(
        "0904000001ff000000"
        "07058101000401"
        "06300202000c") << QStringList {"bInterval 1", "bMaxBurst 2", "Mult 3", "** END **"};
}

void TestUsbFullDump::classSpecific()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, expected);
    CUsbDumpDevice dev;
    dev.descriptors = deviceBytes() + configuration(body);
    QStringList listLines;
    for (const QString &line : CUsbFullDump::dump(dev, CUsbIdsDb()))
        listLines << line.simplified();
    listLines << QStringLiteral("** END **");
    const int nAt = listLines.indexOf(expected.first());
    QVERIFY2(nAt >= 0, qPrintable(listLines.join(QLatin1Char('\n'))));
    QCOMPARE(listLines.mid(nAt), expected);
}

void TestUsbFullDump::namesFromUsbIds()
{
    const CUsbIdsDb db
        = CUsbIdsDb::fromText("#\n\t0001  stray product before any vendor\n"
                              "1d6b  Linux Foundation\r\n\t0002  2.0 root hub\r\n\t0003  3.0 root hub\n"
                              "zzzz  not an id\n"
                              "C 03  Human Interface Device\n\t01  Boot Interface Subclass\n\t\t02  Mouse\n"
                              "C 09  Hub\n\t00  Unused\n\t\t00  Full speed (or root) hub\n"
                              "AT 0301  Speaker\nHID 22  Report\nHCC 00  Not supported\nHCC 33  US\n");
    QCOMPARE(db.vendor(0x1d6b), QStringLiteral("Linux Foundation"));
    QCOMPARE(db.product(0x1d6b, 0x0003), QStringLiteral("3.0 root hub"));
    QCOMPARE(db.product(0x1d6b, 0x0001), QString());
    QCOMPARE(db.className(3), QStringLiteral("Human Interface Device"));
    QCOMPARE(db.subclassName(3, 1), QStringLiteral("Boot Interface Subclass"));
    QCOMPARE(db.protocolName(3, 1, 2), QStringLiteral("Mouse"));
    QCOMPARE(db.protocolName(9, 0, 0), QStringLiteral("Full speed (or root) hub"));
    QCOMPARE(db.protocolName(3, 0, 2), QString());
    QCOMPARE(db.audioTerminal(0x0301), QStringLiteral("Speaker"));
    QCOMPARE(db.hidType(0x22), QStringLiteral("Report"));
    QCOMPARE(db.countryCode(33), QStringLiteral("US"));
    QCOMPARE(db.countryCode(0), QStringLiteral("Not supported"));
}

QTEST_GUILESS_MAIN(TestUsbFullDump)
#include "tst_usbfulldump.moc"
