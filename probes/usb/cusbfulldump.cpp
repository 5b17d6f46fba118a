#include "cusbfulldump.h"

#include "cusbfulldumptables.h"
#include "cusbidsdb.h"

namespace {

using namespace UsbDump;

quint32 readLe(const uchar *p, int nSize)
{
    quint32 v = 0;
    for (int i = qMin(nSize, 4) - 1; i >= 0; --i)
        v = v << 8 | p[i];
    return v;
}

QString hexBytes(const uchar *p, int n)
{
    QString s;
    for (int i = 0; i < n; ++i)
        s += QStringLiteral("%1 ").arg(p[i], 2, 16, QLatin1Char('0'));
    return s;
}

QString uuidText(const uchar *p)
{
    // The first three groups are stored little-endian.
    auto group = [p](int nAt, int nLen, bool bLittle) {
        QString s;
        for (int i = 0; i < nLen; ++i)
            s += QStringLiteral("%1").arg(p[nAt + (bLittle ? nLen - 1 - i : i)], 2, 16, QLatin1Char('0'));
        return s;
    };
    return QLatin1Char('{') + group(0, 4, true) + QLatin1Char('-') + group(4, 2, true) + QLatin1Char('-')
        + group(6, 2, true) + QLatin1Char('-') + group(8, 2, false) + QLatin1Char('-') + group(10, 6, false)
        + QLatin1Char('}');
}

class CDumper
{
public:
    CDumper(const CUsbDumpDevice &device, const CUsbIdsDb &names)
        : m_device(device)
        , m_names(names)
    {
    }
    QStringList run();

private:
    void line(int nIndent, const QString &strText) { m_lines << QString(nIndent, QLatin1Char(' ')) + strText; }
    void field(int nIndent, const QString &strName, const QString &strValue, const QString &strNote = QString());
    void unrecognized(int nIndent, const uchar *p, int nLen);
    void printLayout(const CLayout &layout, const uchar *p, int nLen, int nIndent);
    void printField(const CField &f, const QString &strName, const uchar *p, int nSize, int nIndent);
    QString note(Note eNote, quint32 v, QStringList &listBelow);
    void walkConfiguration(const uchar *p, int nLen);
    void dispatch(const uchar *p, int nLen);
    void walkBos(const uchar *p, int nLen);
    QString stringFor(quint32 uIndex) const { return uIndex ? m_device.mapStrings.value(int(uIndex)) : QString(); }

    const CUsbDumpDevice &m_device;
    const CUsbIdsDb &m_names;
    QStringList m_lines;
    quint8 m_uClass = 0, m_uSub = 0; // for the names of the next subclass and protocol
    quint16 m_uVendor = 0;
    int m_nElementSize = 1;
    int m_nIfClass = -1, m_nIfSub = -1, m_nIfProtocol = -1; // the current interface
    bool m_bInEndpoint = false;
    quint8 m_uEndpointAttributes = 0;
};

void CDumper::field(int nIndent, const QString &strName, const QString &strValue, const QString &strNote)
{
    const int nPad = qMax(1, kFieldWidth - strName.size() - strValue.size());
    QString s = QString(nIndent, QLatin1Char(' ')) + strName + QString(nPad, QLatin1Char(' ')) + strValue;
    if (!strNote.isEmpty())
        s += QLatin1Char(' ') + strNote;
    m_lines << s;
}

void CDumper::unrecognized(int nIndent, const uchar *p, int nLen)
{
    line(nIndent, QStringLiteral("** UNRECOGNIZED: ") + hexBytes(p, nLen).trimmed());
}

QString CDumper::note(Note eNote, quint32 v, QStringList &listBelow)
{
    switch (eNote) {
    case Note::None:
        return QString();
    case Note::Vendor:
        m_uVendor = quint16(v);
        return m_names.vendor(quint16(v));
    case Note::Product:
        return m_names.product(m_uVendor, quint16(v));
    case Note::Class:
        m_uClass = quint8(v);
        return v ? m_names.className(quint8(v)) : QString();
    case Note::SubClass:
        m_uSub = quint8(v);
        return v ? m_names.subclassName(m_uClass, quint8(v)) : QString();
    case Note::Protocol:
        return m_names.protocolName(m_uClass, m_uSub, quint8(v));
    case Note::TerminalType:
        return m_names.audioTerminal(quint16(v));
    case Note::HidCountry:
        return m_names.countryCode(quint8(v));
    case Note::HidType:
        return m_names.hidType(quint8(v));
    case Note::ElementSize:
        m_nElementSize = int(v);
        return QString();
    default:
        return fixedNote(eNote, v, listBelow);
    }
}

void CDumper::printField(const CField &f, const QString &strName, const uchar *p, int nSize, int nIndent)
{
    const quint32 v = readLe(p, nSize);
    QString strValue;
    QString strNote;
    switch (f.eFmt) {
    case Fmt::Dec:
        strValue = QString::number(v);
        break;
    case Fmt::Hex:
        strValue = nSize <= 4 ? QStringLiteral("0x%1").arg(v, nSize * 2, 16, QLatin1Char('0'))
                              : hexBytes(p, nSize).trimmed();
        break;
    case Fmt::Bcd:
        strValue = QStringLiteral("%1.%2").arg(v >> 8, 0, 16).arg(v & 0xFF, 2, 16, QLatin1Char('0'));
        break;
    case Fmt::Str:
        strValue = QString::number(v);
        strNote = stringFor(v);
        break;
    case Fmt::MilliAmp: {
        // SuperSpeed counts bMaxPower in 8 mA units, slower speeds in 2 mA units.
        const bool bSuper = m_device.nSpeedMbps >= 5000;
        strValue = QString::number(v * (bSuper ? 8 : 2));
        line(nIndent,
            strName + QString(qMax(1, kFieldWidth - strName.size() - strValue.size()), QLatin1Char(' ')) + strValue
                + QStringLiteral("mA"));
        return;
    }
    case Fmt::Uuid:
        strValue = uuidText(p);
        break;
    }
    QStringList listBelow;
    const QString strNamed = note(f.eNote, v, listBelow);
    if (!strNamed.isEmpty())
        strNote = strNamed;
    field(nIndent, strName, strValue, strNote);
    for (const QString &s : listBelow)
        line(nIndent + 2, s);
}

void CDumper::printLayout(const CLayout &layout, const uchar *p, int nLen, int nIndent)
{
    if (layout.pHeading) {
        line(nIndent, QString::fromLatin1(layout.pHeading));
        nIndent += 2;
    }
    m_nElementSize = 1;
    int at = 0;
    quint32 uLast = 0;
    bool bStop = false;
    auto one = [&](const CField &f, const QString &strName) {
        const int nSize = f.nSize ? f.nSize : m_nElementSize;
        if (nSize <= 0 || at + nSize > nLen) {
            bStop = true;
            return;
        }
        printField(f, strName, p + at, nSize, nIndent);
        uLast = readLe(p + at, nSize);
        at += nSize;
    };
    auto named = [](const CField &f, int n) {
        return QString::fromLatin1(f.pName).contains(QLatin1Char('%')) ? QString::asprintf(f.pName, n)
                                                                       : QString::fromLatin1(f.pName);
    };
    for (int i = 0; i < layout.nFields && !bStop; ++i) {
        const CField &f = layout.pFields[i];
        switch (f.eRep) {
        case Rep::Once:
            one(f, named(f, 0));
            break;
        case Rep::Counted: {
            const quint32 n = uLast;
            for (quint32 k = 0; k < n && !bStop; ++k)
                one(f, named(f, int(k)));
            break;
        }
        case Rep::CountedPair: {
            const quint32 n = uLast;
            const CField &g = layout.pFields[qMin(i + 1, layout.nFields - 1)];
            for (quint32 k = 0; k < n && !bStop; ++k) {
                one(f, named(f, int(k)));
                if (!bStop && &g != &f)
                    one(g, named(g, int(k)));
            }
            ++i;
            break;
        }
        case Rep::Rest: {
            const int nSize = f.nSize ? f.nSize : m_nElementSize;
            for (int k = 0; nSize > 0 && at + nSize <= nLen - f.nReserve; ++k)
                one(f, named(f, k));
            break;
        }
        case Rep::SamFreqs:
            if (uLast == 0) {
                one(f, QStringLiteral("tLowerSamFreq"));
                one(f, QStringLiteral("tUpperSamFreq"));
            } else {
                const quint32 n = uLast;
                for (quint32 k = 0; k < n && !bStop; ++k)
                    one(f, named(f, int(k)));
            }
            break;
        }
    }
    if (nLen < layout.nMinLength)
        line(
            nIndent, QStringLiteral("** TRUNCATED: bLength %1, at least %2 expected").arg(nLen).arg(layout.nMinLength));
    else if (at < nLen) {
        line(qMax(0, nIndent - 2), QStringLiteral("Warning: Junk at end of descriptor (%1 bytes):").arg(nLen - at));
        line(nIndent, hexBytes(p + at, nLen - at));
    }
}

void CDumper::dispatch(const uchar *p, int nLen)
{
    const quint8 uType = p[1];
    const quint8 uSubtype = nLen > 2 ? p[2] : 0;
    const int nClassIndent = m_bInEndpoint ? 8 : 6;
    switch (uType) {
    case 4:
        m_bInEndpoint = false;
        m_nIfClass = nLen > 5 ? p[5] : -1;
        m_nIfSub = nLen > 6 ? p[6] : -1;
        m_nIfProtocol = nLen > 7 ? p[7] : -1;
        printLayout(kInterface, p, nLen, 4);
        return;
    case 5:
        m_bInEndpoint = true;
        m_uEndpointAttributes = nLen > 3 ? p[3] : 0;
        printLayout(kEndpoint, p, nLen, 6);
        return;
    case 0x0B:
        m_bInEndpoint = false;
        m_nIfClass = m_nIfSub = m_nIfProtocol = -1;
        printLayout(kInterfaceAssociation, p, nLen, 4);
        return;
    case 0x21:
        // HID 1.11 puts it before the endpoints; some devices put it after them.
        if (m_nIfClass == 3) {
            printLayout(kHid, p, nLen, 8);
            return;
        }
        break;
    case 0x24: {
        const CLayout *pLayout = nullptr;
        // USB Audio 2.0 and 3.0 reuse these types with other layouts (protocols 0x20, 0x30).
        const bool bAudio1 = m_nIfClass == 1 && m_nIfProtocol != 0x20 && m_nIfProtocol != 0x30;
        if (bAudio1 && m_nIfSub == 1)
            pLayout = audioControl(uSubtype);
        else if (bAudio1 && m_nIfSub == 2)
            pLayout = audioStreaming(uSubtype, nLen > 3 ? p[3] : 0);
        else if (m_nIfClass == 0xEF && m_nIfSub == 5)
            pLayout = usb3Vision(uSubtype);
        else if (m_nIfClass == 8 && nLen == 4 && *uasPipeName(uSubtype)) {
            // Mass storage (UAS) pipe usage: which pipe the endpoint before is.
            line(8,
                QStringLiteral("%1 (0x%2)")
                    .arg(QLatin1String(uasPipeName(uSubtype)))
                    .arg(uSubtype, 2, 16, QLatin1Char('0')));
            return;
        }
        if (pLayout) {
            printLayout(*pLayout, p, nLen, nClassIndent);
            return;
        }
        break;
    }
    case 0x25:
        if (m_nIfClass == 1 && m_nIfSub == 2 && m_bInEndpoint && uSubtype == 1) {
            printLayout(kAudioEndpoint, p, nLen, 8);
            return;
        }
        break;
    case 0x30:
        if (m_bInEndpoint && nLen >= 6) {
            // SuperSpeed endpoint companion: burst, and streams (bulk) or packets per interval (isochronous).
            const quint8 uAttr = p[3];
            field(8, QStringLiteral("bMaxBurst"), QString::number(p[2]));
            if ((m_uEndpointAttributes & 3) == 2 && (uAttr & 0x1F))
                field(8, QStringLiteral("MaxStreams"), QString::number(1ull << (uAttr & 0x1F)));
            else if ((m_uEndpointAttributes & 3) == 1 && (uAttr & 3))
                field(8, QStringLiteral("Mult"), QString::number((uAttr & 3) + 1));
            return;
        }
        break;
    default:
        break;
    }
    unrecognized(m_nIfClass >= 0 ? nClassIndent : 4, p, nLen);
}

void CDumper::walkConfiguration(const uchar *p, int nLen)
{
    m_nIfClass = m_nIfSub = m_nIfProtocol = -1;
    m_bInEndpoint = false;
    printLayout(kConfiguration, p, qMin<int>(p[0], nLen), 2);
    int at = p[0];
    while (at < nLen) {
        if (nLen - at < 2) {
            line(4, QStringLiteral("** JUNK: 1 byte at the end of the configuration"));
            return;
        }
        const int nDescLen = p[at];
        if (nDescLen < 2) {
            line(4,
                QStringLiteral("** INVALID: bLength %1 at offset %2, the %3 bytes after it are not decoded")
                    .arg(nDescLen)
                    .arg(at)
                    .arg(nLen - at));
            return;
        }
        if (at + nDescLen > nLen) {
            line(4,
                QStringLiteral("** TRUNCATED: bLength %1 at offset %2 runs past the end (%3 bytes left)")
                    .arg(nDescLen)
                    .arg(at)
                    .arg(nLen - at));
            return;
        }
        dispatch(p + at, nDescLen);
        at += nDescLen;
    }
}

void CDumper::walkBos(const uchar *p, int nLen)
{
    if (nLen < 2 || p[0] < 2 || p[1] != 15) {
        line(0, QStringLiteral("** INVALID: the BOS data does not start with a BOS descriptor"));
        return;
    }
    const int nHead = qMin<int>(p[0], nLen);
    printLayout(kBos, p, nHead, 0);
    const int nTotal = nHead >= 4 ? qMin<int>(readLe(p + 2, 2), nLen) : nHead;
    int at = nHead;
    while (at + 2 <= nTotal) {
        const int nDescLen = p[at];
        if (nDescLen < 2 || at + nDescLen > nTotal) {
            line(2, QStringLiteral("** INVALID: bLength %1 at offset %2 of the BOS").arg(nDescLen).arg(at));
            return;
        }
        const CLayout *pLayout = (p[at + 1] == 16 && nDescLen >= 3) ? deviceCapability(p[at + 2]) : nullptr;
        if (pLayout)
            printLayout(*pLayout, p + at, nDescLen, 2);
        else
            unrecognized(2, p + at, nDescLen);
        at += nDescLen;
    }
}

QStringList CDumper::run()
{
    const auto *p = reinterpret_cast<const uchar *>(m_device.descriptors.constData());
    const int n = m_device.descriptors.size();
    if (!m_device.strPort.isEmpty())
        m_lines << QStringLiteral("/sys/bus/usb/devices/") + m_device.strPort;
    if (n >= 18) {
        const quint16 uVendor = quint16(readLe(p + 8, 2));
        const quint16 uProduct = quint16(readLe(p + 10, 2));
        QString strVendor = m_names.vendor(uVendor);
        if (strVendor.isEmpty())
            strVendor = stringFor(p[14]);
        QString strProduct = m_names.product(uVendor, uProduct);
        if (strProduct.isEmpty())
            strProduct = stringFor(p[15]);
        m_lines << QStringLiteral("Bus %1 Device %2: ID %3:%4 %5")
                       .arg(m_device.nBus, 3, 10, QLatin1Char('0'))
                       .arg(m_device.nDevNum, 3, 10, QLatin1Char('0'))
                       .arg(uVendor, 4, 16, QLatin1Char('0'))
                       .arg(uProduct, 4, 16, QLatin1Char('0'))
                       .arg(QStringList({strVendor, strProduct}).join(QLatin1Char(' ')).trimmed());
    }
    printLayout(kDevice, p, qMin(n, 18), 0);
    int at = 18;
    while (at + 2 <= n) {
        const int nDescLen = p[at];
        if (p[at + 1] != 2 || nDescLen < 9 || at + nDescLen > n) {
            line(2,
                QStringLiteral("** INVALID: no configuration descriptor at offset %1 (%2 bytes left)")
                    .arg(at)
                    .arg(n - at));
            break;
        }
        const int nTotal = int(readLe(p + at + 2, 2));
        const int nBlock = qBound(nDescLen, nTotal, n - at);
        walkConfiguration(p + at, nBlock);
        if (nTotal > nBlock)
            line(2, QStringLiteral("** TRUNCATED: wTotalLength %1, %2 bytes present").arg(nTotal).arg(nBlock));
        at += nBlock;
    }
    if (!m_device.bos.isEmpty())
        walkBos(reinterpret_cast<const uchar *>(m_device.bos.constData()), m_device.bos.size());
    return m_lines;
}

} // namespace

QStringList CUsbFullDump::dump(const CUsbDumpDevice &device, const CUsbIdsDb &names)
{
    return CDumper(device, names).run();
}
