#include "cusbdescriptordecoder.h"

#include "cusbdescriptortables.h"
#include "cusblinesink.h"
#include "cusbids.h"

namespace {

constexpr int kMaxFields = 32;
constexpr int kMaxStringNodes = 512; // a longer list is treated as corrupt

quint32 readLE(const quint8 *p, int nSize)
{
    quint32 v = 0;
    for (int i = qMin(nSize, 4) - 1; i >= 0; --i)
        v = (v << 8) | p[i];
    return v;
}

// "0x" and the little-endian value of nSize bytes in upper-case hex, two
// digits per byte (any size, so wide bitmaps never overflow).
QString hexOfBytes(const quint8 *p, int nSize)
{
    QString s = QStringLiteral("0x");
    for (int i = nSize - 1; i >= 0; --i)
        s += QStringLiteral("%1").arg(p[i], 2, 16, QLatin1Char('0')).toUpper();
    return s;
}

QString hexPadded(quint32 uValue, int nDigits)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(uValue, nDigits, 16, QLatin1Char('0')).toUpper();
}

const char *className(quint32 uClass)
{
    switch (uClass) {
    case 1: return "(Audio)";
    case 3: return "(HID)";
    case 9: return "(Hub)";
    default: return nullptr;
    }
}

} // namespace

CUsbDescriptorDecoder::CUsbDescriptorDecoder(CUsbLineSink &sink, const UsbStringDescriptorNode *pStrings)
    : m_sink(sink), m_pStrings(pStrings)
{
}

QString CUsbDescriptorDecoder::hexByte(quint32 uValue)
{
    return hexPadded(uValue, 2);
}

QString CUsbDescriptorDecoder::hexWord(quint32 uValue)
{
    return hexPadded(uValue, 4);
}

QString CUsbDescriptorDecoder::connectionStatusName(quint32 uStatus)
{
    static const char *const kNames[] = {
        "NoDeviceConnected", "DeviceConnected", "DeviceFailedEnumeration", "DeviceGeneralFailure",
        "DeviceCausedOvercurrent", "DeviceNotEnoughPower", "DeviceNotEnoughBandwidth",
        "DeviceHubNestedTooDeeply", "DeviceInLegacyHub", "DeviceEnumerating", "DeviceReset"};
    if (uStatus < sizeof kNames / sizeof kNames[0])
        return QString::fromLatin1(kNames[uStatus]);
    return QStringLiteral("Unknown");
}

QString CUsbDescriptorDecoder::speedName(quint32 uSpeed)
{
    switch (uSpeed) {
    case UsbSpeedLow: return QStringLiteral("Low");
    case UsbSpeedFull: return QStringLiteral("Full");
    case UsbSpeedHigh: return QStringLiteral("High");
    default: return QStringLiteral("Unknown");
    }
}

QString CUsbDescriptorDecoder::stringText(int nIndex) const
{
    int nSeen = 0;
    for (const UsbStringDescriptorNode *p = m_pStrings; p && nSeen < kMaxStringNodes; p = p->pNext, ++nSeen) {
        if (int(p->DescriptorIndex) != nIndex || !p->pDescriptor || p->Length < 2)
            continue;
        const int nLen = int(qMin<quint32>(p->Length, p->pDescriptor[0]));
        QString text;
        for (int i = 2; i + 1 < nLen; i += 2)
            text += QChar(ushort(p->pDescriptor[i] | (p->pDescriptor[i + 1] << 8)));
        return text.isNull() ? QStringLiteral("") : text;
    }
    return QString();
}

void CUsbDescriptorDecoder::printStringLine(quint32 uIndex)
{
    if (uIndex == 0)
        return;
    const QString text = stringText(int(uIndex));
    if (!text.isNull())
        m_sink.addLine(QString(), QLatin1Char('"') + text + QLatin1Char('"'));
}

int CUsbDescriptorDecoder::printFields(const CUsbDescriptorDef &def, const quint8 *p, int nLen, quint32 *pValues,
                                       bool bHeading)
{
    using K = EUsbFieldKind;
    if (bHeading)
        m_sink.addHeading(QString::fromLatin1(def.pHeading));
    int off = 0;
    for (int i = 0; i < def.nFields && i < kMaxFields; ++i) {
        const CUsbFieldDef &f = def.pFields[i];
        const QString label = QString::fromLatin1(f.pLabel);
        const quint32 uRef = f.nRef >= 0 && f.nRef < i ? pValues[f.nRef] : 0;
        pValues[i] = 0;
        switch (f.eKind) {
        case K::Array:
        case K::FreqArray:
        case K::SizedArray: {
            const int nElem = f.eKind == K::SizedArray ? int(uRef) : f.eKind == K::FreqArray ? 3 : f.nSize;
            if (nElem <= 0)
                break;
            const int nCount = f.eKind == K::SizedArray ? qMax(0, nLen - off - f.nTrailing) / nElem : int(uRef);
            for (int k = 0; k < nCount; ++k) {
                if (off + nElem > nLen)
                    return -1;
                QString value = hexOfBytes(p + off, nElem);
                if (f.eKind == K::FreqArray)
                    value += QStringLiteral("(%1 Hz)").arg(readLE(p + off, 3));
                m_sink.addLine(label.arg(k + 1), value);
                off += nElem;
            }
            break;
        }
        case K::HidList:
            for (quint32 k = 0; k < uRef; ++k) {
                if (off + 3 > nLen)
                    return -1;
                m_sink.addLine(QStringLiteral("bDescriptorType:"), hexByte(p[off]));
                m_sink.addLine(QStringLiteral("wDescriptorLength:"), hexWord(readLE(p + off + 1, 2)));
                off += 3;
            }
            break;
        case K::RestBytes: {
            QStringList bytes;
            for (; off < nLen; ++off)
                bytes << hexByte(p[off]);
            m_sink.addLine(label, bytes.isEmpty() ? QStringLiteral("None") : bytes.join(QLatin1Char(' ')));
            break;
        }
        default: {
            int nSize = f.nSize;
            if (f.eKind == K::SizedValue)
                nSize = int(uRef);
            else if (f.eKind == K::RestValue)
                nSize = nLen - off - f.nTrailing;
            if (nSize <= 0) {
                if (f.eKind == K::SizedValue || f.eKind == K::RestValue)
                    break; // a zero-sized bitmap has nothing to print
                return -1;
            }
            if (off + nSize > nLen)
                return -1;
            const quint32 v = readLE(p + off, nSize);
            pValues[i] = v;
            const QString hex = hexOfBytes(p + off, nSize);
            switch (f.eKind) {
            case K::Skip:
                break;
            case K::HexName: {
                const char *pName = f.pNames ? f.pNames->find(v) : nullptr;
                m_sink.addLine(label, pName ? hex + QLatin1Char('(') + QLatin1String(pName) + QLatin1Char(')') : hex);
                break;
            }
            case K::HexDecimal:
                m_sink.addLine(label, hex + QStringLiteral("(%1)").arg(v));
                break;
            case K::StringIndex:
                m_sink.addLine(label, hex);
                printStringLine(v);
                break;
            case K::VendorId: {
                const QString name = CUsbIds::vendorName(quint16(v));
                m_sink.addLine(label, name.isEmpty() ? hex : hex + QLatin1Char('(') + name + QLatin1Char(')'));
                break;
            }
            case K::EndpointAddr:
                m_sink.addLine(label, hex + ((v & 0x80) ? QStringLiteral("  IN") : QStringLiteral("  OUT")));
                break;
            case K::TransferType: {
                static const char *const kTypes[] = {"Control", "Isochronous", "Bulk", "Interrupt"};
                m_sink.addLine(label, QString::fromLatin1(kTypes[v & 3]));
                break;
            }
            case K::PowerAttr:
                m_sink.addLine(label, hex);
                if (v & 0x80)
                    m_sink.addLine(QStringLiteral("Bus Powered"), QString());
                if (v & 0x40)
                    m_sink.addLine(QStringLiteral("Self Powered"), QString());
                if (v & 0x20)
                    m_sink.addLine(QStringLiteral("Remote Wakeup"), QString());
                break;
            case K::MaxPower:
                m_sink.addLine(label, hex + QStringLiteral("(%1 mA)").arg(v * 2));
                break;
            case K::Frequency:
                m_sink.addLine(label, hex + QStringLiteral("(%1 Hz)").arg(v));
                break;
            case K::ClassName: {
                const char *pName = className(v);
                m_sink.addLine(label, pName ? hex + QLatin1String(pName) : hex);
                break;
            }
            case K::SubClassName: {
                QString value = hex;
                if (uRef == 1 && v == 1)
                    value += QStringLiteral("(Audio Control)");
                else if (uRef == 1 && v == 2)
                    value += QStringLiteral("(Audio Streaming)");
                m_sink.addLine(label, value);
                break;
            }
            default:
                m_sink.addLine(label, hex);
                break;
            }
            off += nSize;
            break;
        }
        }
    }
    return off;
}

void CUsbDescriptorDecoder::printUnknown(const quint8 *p, int nLen)
{
    m_sink.addHeading(QStringLiteral("Unknown Descriptor:"));
    if (nLen >= 2)
        m_sink.addLine(QStringLiteral("bDescriptorType:"), hexByte(p[1]));
    if (nLen >= 1)
        m_sink.addLine(QStringLiteral("bLength:"), hexByte(p[0]));
}

void CUsbDescriptorDecoder::printFormatType(const quint8 *p, int nLen)
{
    quint32 values[kMaxFields] = {};
    const int nType = nLen > 3 ? p[3] : -1;
    const CUsbDescriptorDef &def = (nType == 1 || nType == 3) ? UsbTables::asFormatTypeI
                                   : nType == 2               ? UsbTables::asFormatTypeII
                                                              : UsbTables::asFormatTypeOther;
    int off = printFields(def, p, nLen, values);
    if (off < 0 || &def == &UsbTables::asFormatTypeOther)
        return;
    const quint32 uFreqType = values[def.nFields - 1];
    auto frequency = [&](const QString &label) {
        if (off + 3 > nLen)
            return false;
        const quint32 v = readLE(p + off, 3);
        m_sink.addLine(label, hexOfBytes(p + off, 3) + QStringLiteral("(%1 Hz)").arg(v));
        off += 3;
        return true;
    };
    if (uFreqType == 0) {
        if (frequency(QStringLiteral("tLowerSamFreq:")))
            frequency(QStringLiteral("tUpperSamFreq:"));
        return;
    }
    for (quint32 k = 0; k < uFreqType; ++k)
        if (!frequency(QStringLiteral("tSamFreq[%1]:").arg(k + 1)))
            return;
}

void CUsbDescriptorDecoder::printMember(EUsbMember eMember, const quint8 *p, int nLen)
{
    if (!p || nLen <= 0)
        return;
    quint32 values[kMaxFields] = {};
    switch (eMember) {
    case EUsbMember::Device: printFields(UsbTables::device, p, nLen, values); break;
    case EUsbMember::Configuration: printFields(UsbTables::configuration, p, nLen, values); break;
    case EUsbMember::Interface:
        printFields(nLen >= 12 && p[0] >= 12 ? UsbTables::interface12 : UsbTables::interface9, p, nLen, values);
        break;
    case EUsbMember::Endpoint:
        printFields(nLen >= 10 && p[0] == 10 ? UsbTables::endpoint10 : UsbTables::endpoint7, p, nLen, values);
        break;
    case EUsbMember::Hid: printFields(UsbTables::hid, p, nLen, values); break;
    case EUsbMember::Unknown: printUnknown(p, nLen); break;
    case EUsbMember::AcHeader: printFields(UsbTables::acHeader, p, nLen, values); break;
    case EUsbMember::AcInputTerminal: printFields(UsbTables::acInputTerminal, p, nLen, values); break;
    case EUsbMember::AcOutputTerminal: printFields(UsbTables::acOutputTerminal, p, nLen, values); break;
    case EUsbMember::AcMixerUnit: printFields(UsbTables::acMixerUnit, p, nLen, values); break;
    case EUsbMember::AcSelectorUnit: printFields(UsbTables::acSelectorUnit, p, nLen, values); break;
    case EUsbMember::AcFeatureUnit: printFields(UsbTables::acFeatureUnit, p, nLen, values); break;
    case EUsbMember::AcProcessingUnit: printFields(UsbTables::acProcessingUnit, p, nLen, values); break;
    case EUsbMember::AcExtensionUnit: printFields(UsbTables::acExtensionUnit, p, nLen, values); break;
    case EUsbMember::AsGeneral: printFields(UsbTables::asGeneral, p, nLen, values); break;
    case EUsbMember::AsFormatType: printFormatType(p, nLen); break;
    case EUsbMember::AsFormatSpecific: printFields(UsbTables::asFormatSpecific, p, nLen, values); break;
    case EUsbMember::AsDataEndpoint: printFields(UsbTables::asDataEndpoint, p, nLen, values); break;
    }
}

bool CUsbDescriptorDecoder::printAudio(int nSubClass, const quint8 *p, int nLen, int nProtocol)
{
    if (!p || nLen < 3)
        return false;
    // The layouts below are those of USB Audio 1.0. Audio 2.0 and 3.0
    // interfaces (bInterfaceProtocol 0x20, 0x30) lay their descriptors out
    // differently, and MIDI Streaming (subclass 3) has its own; those are
    // declined rather than misread.
    if (nProtocol == kAudioProtocol20 || nProtocol == kAudioProtocol30)
        return false;
    const quint8 type = p[1];
    const quint8 subtype = p[2];
    if (type == 0x25) { // class-specific endpoint: the audio data endpoint of a streaming interface
        if (nSubClass != 2 || subtype != 1)
            return false;
        printMember(EUsbMember::AsDataEndpoint, p, nLen);
        return true;
    }
    if (type != 0x24) // class-specific interface
        return false;
    static const EUsbMember kControl[] = {EUsbMember::AcHeader, EUsbMember::AcInputTerminal,
                                          EUsbMember::AcOutputTerminal, EUsbMember::AcMixerUnit,
                                          EUsbMember::AcSelectorUnit, EUsbMember::AcFeatureUnit,
                                          EUsbMember::AcProcessingUnit, EUsbMember::AcExtensionUnit};
    static const EUsbMember kStreaming[] = {EUsbMember::AsGeneral, EUsbMember::AsFormatType,
                                            EUsbMember::AsFormatSpecific};
    if (nSubClass == 1 && subtype >= 1 && subtype <= 8) {
        printMember(kControl[subtype - 1], p, nLen);
        return true;
    }
    if (nSubClass == 2 && subtype >= 1 && subtype <= 3) {
        printMember(kStreaming[subtype - 1], p, nLen);
        return true;
    }
    return false;
}

void CUsbDescriptorDecoder::walkConfiguration(const quint8 *pData, int nBytes)
{
    if (!pData || nBytes < 4)
        return;
    const int nEnd = qMin<int>(nBytes, int(readLE(pData + 2, 2)));
    int pos = 0;
    if (pos + 2 >= nEnd)
        return;
    for (;;) {
        const quint8 *p = pData + pos;
        const int nLen = p[0];
        const quint8 type = p[1];
        if (nLen == 0 || pos + nLen > nEnd)
            return;
        switch (type) {
        case 2:
            printMember(nLen == 9 ? EUsbMember::Configuration : EUsbMember::Unknown, p, nLen);
            break;
        case 4:
            if (nLen == 9 || nLen == 12) {
                m_nInterfaceClass = p[5];
                m_nInterfaceSubClass = p[6];
                m_nInterfaceProtocol = p[7];
                printMember(EUsbMember::Interface, p, nLen);
            } else {
                printMember(EUsbMember::Unknown, p, nLen);
            }
            break;
        case 5:
            printMember(nLen == 7 || nLen == 10 ? EUsbMember::Endpoint : EUsbMember::Unknown, p, nLen);
            break;
        case 0x21:
            printMember(nLen >= 10 ? EUsbMember::Hid : EUsbMember::Unknown, p, nLen);
            break;
        default:
            if (m_nInterfaceClass != 1 || !printAudio(m_nInterfaceSubClass, p, nLen, m_nInterfaceProtocol))
                printMember(EUsbMember::Unknown, p, nLen);
            break;
        }
        pos += 2 * nLen; // the stride is twice bLength
        if (pos + 2 >= nEnd)
            return;
    }
}

void CUsbDescriptorDecoder::printConnection(const UsbPortConnectionInfo *pInfo)
{
    if (!pInfo)
        return;
    m_sink.addLine(QStringLiteral("ConnectionStatus:"), connectionStatusName(pInfo->ConnectionStatus));
    m_sink.addLine(QStringLiteral("Current Config Value:"), hexByte(pInfo->CurrentConfigurationValue));
    m_sink.addLine(QStringLiteral("Device Bus Speed:"), speedName(pInfo->Speed));
    m_sink.addLine(QStringLiteral("Device Address:"), hexByte(pInfo->DeviceAddress));
    m_sink.addLine(QStringLiteral("Open Pipes:"), QString::number(pInfo->NumberOfOpenPipes));
    const auto *pDevice = reinterpret_cast<const quint8 *>(&pInfo->DeviceDescriptor);
    printMember(EUsbMember::Device, pDevice, int(sizeof(UsbDeviceDescriptor)));
}
